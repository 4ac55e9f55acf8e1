#pragma once

#include "network/HTTP.h"

#include <QDialog>
#include <QList>

class CheckedListView;
class FoundCamerasModel;
class MessageQueue;
class QAction;
class QMenu;
class QPushButton;

/// The window "Internet List": searches the shared camera directory, previews what it finds and
/// copies what is checked into the user's own list. Its title is its status line too.
///
/// It blocks no other window and deletes itself when it is closed, with the query that runs. It
/// knows neither viewer nor list: whoever opens it answers its signals.
class frmInt : public QDialog
{
    Q_OBJECT

public:
    /// `folder` is the application folder, `directory` the address of the directory as
    /// directoryAddress() gives it. Other ports than the default are for tests.
    frmInt(const QString& folder, const QString& directory, int port = HTTP::DefaultPort,
           QWidget* parent = nullptr);

signals:
    /// The camera of this key is to be shown in the viewer, at once. The window stays open.
    void Preview(const QString& key);
    /// The cameras of the "CAMZ" file `path` are to be added to the user's list. The file goes as
    /// soon as the slots return, and the window closes.
    void Import(const QString& path);

protected:
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void createList();
    void createButtons();
    QMenu* createMenu();
    QAction* addEntry(QMenu* menu, const QString& name, const QString& caption);
    void layOut(QMenu* options);

    void searchCategory(const QString& category);
    void searchNewest();
    void askForTerms();
    void query(const QString& queryString, bool sorted);
    void showAnswer(const QByteArray& answer);
    void setQueriesEnabled(bool on);

    void preview();
    void addSelected();
    void growNameColumn(const QResizeEvent* event);

    QString m_folder;
    QString m_directory;
    HTTP m_HTTP1;
    FoundCamerasModel* m_found;
    MessageQueue* m_messages;
    CheckedListView* m_lvwList;
    QPushButton* m_cmdAll;
    QPushButton* m_cmdNone;
    QPushButton* m_cmdPre;
    QPushButton* m_cmdAdd;
    /// Every entry and menu that starts a query.
    QList<QAction*> m_queries;
    bool m_columnsSet = false;
};
