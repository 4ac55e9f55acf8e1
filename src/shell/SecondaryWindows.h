#pragma once

#include "network/HTTP.h"

#include <QObject>
#include <QPointer>

#include <memory>

class MessageQueue;
class frmInt;
struct EnteredCamera;

/// What the main window opens beside itself, and its line to the camera directory. What these
/// windows ask for goes on by the signals of the same names.
class SecondaryWindows : public QObject
{
    Q_OBJECT

public:
    /// Owned by `form`. `folder` is the application folder. Other ports than the directory's own
    /// are for tests.
    SecondaryWindows(QWidget* form, const QString& folder, int port = HTTP::DefaultPort);
    ~SecondaryWindows() override;

    /// Shows the internet list, which blocks nothing and belongs to no window. One that is open
    /// comes to the front.
    void showInternetList(bool topmost);

    /// The main window went above all others, or is no more: an open internet list goes with it,
    /// or it would lie below.
    void setListTopmost(bool topmost);

    /// The program ends: closes the internet list, and drops the offer that runs.
    void shutDown();

    /// Asks for a list to import. Cancelled, it ends without a word.
    void askForList();

    /// Asks for the file to export the list to; one without the ending ".zip" gets it. Cancelled,
    /// it ends without a word.
    void askForExport();

    /// Shows the about window, above all others where the main window is.
    void showAbout(bool topmost);

    /// Offers a camera to the directory. Nobody hears what becomes of it.
    void submit(const EnteredCamera& camera);

signals:
    void Preview(const QString& key);
    void Import(const QString& path);
    void Export(const QString& path);

private:
    QString directory() const;
    void exportTo(const QString& path);

    QWidget* m_form;
    QString m_folder;
    int m_port;
    MessageQueue* m_messages;
    std::unique_ptr<HTTP> m_HTTP1;
    QPointer<frmInt> m_frmInt;
};
