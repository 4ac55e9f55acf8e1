#pragma once

#include "network/HTTP.h"
#include "shared/Timer.h"

#include <QDialog>
#include <QList>

class CheckedListView;
class ElidedLabel;
class FoundCamerasModel;
class MessageQueue;
struct DirectoryFault;
class QAction;
class QLabel;
class QMenu;
class QPushButton;

/// The window "Internet List": searches the shared camera directory, previews what it finds and
/// copies what is checked into the user's own list. Its title is its status line too; the line
/// below the list says the same. A query that brings no answer leaves the rows as they were.
///
/// It blocks no other window and deletes itself when it is closed, with the query that runs. It
/// knows neither viewer nor list: whoever opens it answers its signals.
class frmInt : public QDialog
{
    Q_OBJECT

public:
    /// So long after the connection a server may be silent.
    static constexpr int SilenceMs = 30'000;

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
    void createStatusLine();
    QMenu* createMenu();
    QAction* addEntry(QMenu* menu, const QString& name, const QString& caption);
    void layOut(QMenu* options);

    void searchCategory(const QString& category);
    void searchNewest();
    void askForTerms();
    void query(const QString& queryString, bool sorted);
    void stop();
    void showAnswer(const QByteArray& bytes);
    static QString reasonOf(const DirectoryFault& fault);
    void tellState(const QString& text);
    void tellNoDirectory();
    void queryEnded();
    void setQueriesEnabled(bool on);

    void preview();
    void addSelected();
    void growNameColumn(const QResizeEvent* event);

    QString m_folder;
    QString m_directory;
    HTTP m_HTTP1;
    /// From the connection to the first byte of the answer.
    Timer m_tmrSilent;
    /// Something came of the answer to the last query.
    bool m_heard = false;
    FoundCamerasModel* m_found;
    MessageQueue* m_messages;
    CheckedListView* m_lvwList;
    QPushButton* m_cmdAll;
    QPushButton* m_cmdNone;
    QPushButton* m_cmdPre;
    QPushButton* m_cmdAdd;
    QPushButton* m_cmdStop;
    ElidedLabel* m_lblStatus;
    /// Where to turn when no directory answers; hidden until then.
    QLabel* m_lblHint;
    /// Every entry and menu that starts a query.
    QList<QAction*> m_queries;
    bool m_columnsSet = false;
};
