#pragma once

#include <QList>
#include <QObject>

class QWidget;

/// Tells of cameras that the list has already: one message for each, one after the other, as soon
/// as the program waits for events. Its check box ends those of the list being told about.
class AlreadyListed : public QObject
{
    Q_OBJECT

public:
    /// The messages belong to the window that `owner` is in.
    explicit AlreadyListed(QWidget* owner);

    /// `cameras` of one list, or one that was added alone, were refused. Nothing for 0.
    void tell(qsizetype cameras);

    /// Tells no more, neither of what waits nor of what comes.
    void stop();

private:
    void showNext();
    void answered(bool noMoreOfThisList);

    QWidget* m_owner;
    /// How many messages are still to come, of one list after the other.
    QList<qsizetype> m_waiting;
    bool m_stopped = false;
};
