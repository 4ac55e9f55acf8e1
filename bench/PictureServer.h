#pragma once

#include <QTcpServer>

class Pictures;

/// A camera: whatever it is asked for, it answers with the next picture.
class PictureServer : public QObject
{
    Q_OBJECT

public:
    /// Listens on 127.0.0.1, on a free port.
    PictureServer();

    /// What is given out from now on, from its first file.
    void serve(const Pictures* pictures);

    /// The camera's address, without its scheme.
    QString address() const;
    /// Number of pictures given out since serve().
    int answers() const { return m_answers; }

signals:
    /// A request is here, and nothing was sent yet.
    void Asked();

private:
    void accept();

    QTcpServer m_server;
    const Pictures* m_pictures = nullptr;
    int m_answers = 0;
};
