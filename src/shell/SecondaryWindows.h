#pragma once

#include "network/HTTP.h"

#include <QObject>
#include <QPointer>

#include <memory>

class MessageQueue;
class Offers;
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

    /// The program ends: closes the internet list, and drops the offers that are not over.
    void shutDown();

    /// Asks for a list to import. Cancelled, it ends without a word.
    void askForList();

    /// Asks for the file to export the list to; one without the ending ".zip" gets it. Cancelled,
    /// it ends without a word.
    void askForExport();

    /// Shows the about window, above all others where the main window is.
    void showAbout(bool topmost);

    /// Offers a camera to the directory, when its turn comes (see directory/Offers.h). Only one
    /// that fails is heard of.
    void submit(const EnteredCamera& camera);
    /// Offers those that have failed anew.
    void submitFailed();

signals:
    void Preview(const QString& key);
    void Import(const QString& path);
    void Export(const QString& path);
    /// These cameras could not be offered; `reason` is why the last of them could not.
    void OfferFailed(const QStringList& names, const QString& reason);

private:
    QString directory() const;
    void exportTo(const QString& path);

    QWidget* m_form;
    QString m_folder;
    int m_port;
    MessageQueue* m_messages;
    /// Null from the end of the program on.
    std::unique_ptr<Offers> m_offers;
    QPointer<frmInt> m_frmInt;
};
