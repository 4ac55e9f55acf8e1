// What a person does with the list's files in the main window: Reload, Import, Export, and lists
// that another instance hands over.

#include "camlist/CamList.h"
#include "camlist/CameraTreeModel.h"
#include "camlist/CameraTreeView.h"
#include "instance/FileInbox.h"
#include "support/Desktop.h"
#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "widgets/FileDialog.h"
#include "widgets/Notice.h"

#include <QPushButton>

#include <functional>

namespace {

const QByteArray Two = "Cities\377Harbour\377URL1\377Sights\377Tower\377URL2\1Cookie: a=1\r\n";
const QByteArray Bridge = "Sights\377Bridge\377URL3";

/// The main window with a list of two cameras.
class Listed : public ShownMain
{
public:
    explicit Listed(const QByteArray& listDat = Two)
    {
        if (!listDat.isNull())
            write("list.dat", listDat);
        shown();
    }

    CamList& list() { return part<CamList>("cList"); }
    CameraTreeView& tree() { return part<CameraTreeView>("tvwCat"); }
    QString sentence() { return part<WebCam>("Cam").notice().sentence(); }

    QStringList cameras()
    {
        QStringList names;
        for (const CameraRecord& one : list().findChild<CameraTreeModel*>()->cameras())
            names << one.name;
        return names;
    }

    QModelIndex category(int row) { return tree().model()->index(row, 0); }

    /// Chooses the entry, types the name into the dialog that opens and accepts it.
    void chooseFile(const QString& entryName, const QString& file)
    {
        choose("mnuOpt", entryName);
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        QSignalSpy gone(dialog, &QObject::destroyed);
        auto* input = dialog->findChild<QLineEdit*>("fileNameEdit");
        input->setText(file);
        QTest::keyClick(input, Qt::Key_Return);
        QTRY_COMPARE(gone.count(), 1);
    }
};

} // namespace

class frmMainListFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void reloadAsksBeforeChangesAreLost_data()
    {
        const Rows<std::function<void(Listed&)>> row("change");
        using Change = std::function<void(Listed&)>;
        row("added", Change([](Listed& m) { m.list().AddCam("New", "URL9", "Cities"); }));
        row("removed", Change([](Listed& m) {
                m.list().select("URL1");
                m.list().Remove();
            }));
        row("another key", Change([](Listed& m) { m.list().changeKey("URL1", "URL9"); }));
        row("file gone", Change([](Listed& m) {
                m.list().AddCam("New", "URL9", "Cities");
                QVERIFY(QFile::remove(m.path("list.dat")));
            }));
        row("file unreadable", Change([](Listed& m) {
                m.list().AddCam("New", "URL9", "Cities");
                QVERIFY(QFile::remove(m.path("list.dat")) && QDir().mkdir(m.path("list.dat")));
            }));
    }

    void reloadAsksBeforeChangesAreLost()
    {
        QFETCH(std::function<void(Listed&)>, change);
        Listed m;
        change(m);
        const QStringList before = m.cameras();
        m.choose("mnuOpt", "mnuOptReload");
        auto* question = openDialog<QMessageBox>();
        QVERIFY(question);
        QCOMPARE(question->defaultButton(), question->button(QMessageBox::No));
        const auto asked = answerMessage(QMessageBox::No);
        QCOMPARE(asked.title, "Reload List");
        QCOMPARE(asked.text,
                 "The list has changes that are not saved. Load list.dat again and lose "
                 "them?");
        QCOMPARE(asked.icon, int(QMessageBox::Question));
        QCOMPARE(m.cameras(), before);
        QTRY_COMPARE(QApplication::activeWindow(), &m.made());
        QSignalSpy reloaded(&m.list(), &CamList::Reloaded);
        m.choose("mnuOpt", "mnuOptReload");
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QCOMPARE(reloaded.count(), 1);
    }

    void reloadDoesNotAskWhereNothingIsLost_data()
    {
        const Rows<std::function<void(Listed&)>, QStringList> row("change", "cameras");
        using Change = std::function<void(Listed&)>;
        const QStringList two{"Harbour", "Tower"};
        row("nothing changed", Change([](Listed&) {}), two);
        row("added and removed", Change([](Listed& m) {
                m.list().AddCam("New", "URL9", "Cities");
                m.list().Remove();
            }),
            two);
        row("a category without a camera", Change([](Listed& m) {
                m.list().AddCam("Again", "URL1", "Empty");
                QVERIFY(answerMessage(QMessageBox::Ok).shown);
            }),
            two);
        row("another instance wrote",
            Change([](Listed& m) { m.write("list.dat", Bridge + "\r\n"); }), {"Bridge"});
        row("another instance wrote the same", Change([](Listed& m) {
                m.list().AddCam("Bridge", "URL3", "Sights");
                m.write("list.dat", Two.chopped(2) + '\xFF' + Bridge + "\r\n");
            }),
            {"Harbour", "Tower", "Bridge"});
    }

    void reloadDoesNotAskWhereNothingIsLost()
    {
        QFETCH(std::function<void(Listed&)>, change);
        Listed m;
        change(m);
        QSignalSpy reloaded(&m.list(), &CamList::Reloaded);
        m.choose("mnuOpt", "mnuOptReload");
        QTRY_COMPARE(reloaded.count(), 1);
        QTEST(m.cameras(), "cameras");
    }

    void theListOfANewUserIsReloadedWithoutAQuestion()
    {
        Listed m{QByteArray()};
        QSignalSpy reloaded(&m.list(), &CamList::Reloaded);
        m.choose("mnuOpt", "mnuOptReload");
        QTRY_COMPARE(reloaded.count(), 1);
        QCOMPARE(m.cameras().size(), 12);
    }

    /// Asking looks at the file; what another instance wrote is merged all the same.
    void aNoLeavesTheFileToBeMerged()
    {
        Listed m;
        const QByteArray others = Bridge + "\r\n";
        m.list().AddCam("New", "URL9", "Cities");
        m.write("list.dat", others);
        m.choose("mnuOpt", "mnuOptReload");
        QVERIFY(answerMessage(QMessageBox::No).shown);
        m.made().close();
        QCOMPARE(contentOf(m.path("list.dat")), Bridge + "\xFF"
                                                         "Cities\xFF"
                                                         "New\xFFURL9\r\n");
        QVERIFY(!QFile::exists(m.path("list.dat.bak")));
    }

    void importTakesTheFilesOfAnotherFolder_data()
    {
        const Rows<QString, QByteArray> row("name", "content");
        row("exported", "more.zip", "CAMZ" + Bridge + "\r\n");
        row("list.dat", "other/list.dat", Bridge + "\r\n");
        row("its backup", "other/list.dat.bak", Bridge + "\r\n");
    }

    void importTakesTheFilesOfAnotherFolder()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, content);
        Listed m;
        QVERIFY(QDir(m.path({})).mkpath("other"));
        m.write(name, content);
        m.chooseFile("mnuOptImport", m.path(name));
        QTRY_COMPARE(m.cameras(), (QStringList{"Harbour", "Tower", "Bridge"}));
        QCOMPARE(m.sentence(), "1 camera added.");
    }

    void aCancelledImportSaysNothing()
    {
        Listed m;
        m.choose("mnuOpt", "mnuOptImport");
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        QSignalSpy gone(dialog, &QObject::destroyed);
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_COMPARE(gone.count(), 1);
        // A message would be told by an event of its own: one that comes later is the first.
        m.list().LoadFile(m.path("list.dat"));
        QCOMPARE(answerMessage(QMessageBox::Ok).text, "Cam is already in your list.");
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
    }

    void importTellsWhatIsNoList_data()
    {
        const Rows<QByteArray> row("content");
        row("half a camera", "Sights\xFF"
                             "Bridge\r\n");
        row("text", "Shopping: bread, milk\r\n");
        row("the mark in small letters", "camz" + Bridge + "\r\n");
        row("nothing", {});
    }

    void importTellsWhatIsNoList()
    {
        QFETCH(QByteArray, content);
        Listed m;
        m.write("notes.dat", content);
        m.chooseFile("mnuOptImport", m.path("notes.dat"));
        const auto message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.text, "Not a valid Zipped Cam List.");
        QCOMPARE(message.icon, int(QMessageBox::Critical));
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
    }

    void whatComesInIsSeen_data()
    {
        const Rows<std::function<void(Listed&)>> row("way");
        using Way = std::function<void(Listed&)>;
        row("import", Way([](Listed& m) { m.chooseFile("mnuOptImport", m.path("more.zip")); }));
        row("hand-over", Way([](Listed& m) { m.made().inbox().receive(m.path("more.zip")); }));
    }

    void whatComesInIsSeen()
    {
        QFETCH(std::function<void(Listed&)>, way);
        Listed m;
        // The second one is in the list already: nothing comes into its category.
        m.write("more.zip", "CAMZ" + Bridge +
                                "\377Cities\377Again\377URL1\377 New\tone \377A\377"
                                "URL4\r\n");
        m.tree().collapseAll();
        way(m);
        QTRY_COMPARE(m.cameras().size(), 4);
        QVERIFY(answerMessage(QMessageBox::Ok).shown);
        QVERIFY(!m.tree().isExpanded(m.category(0)));
        QVERIFY(m.tree().isExpanded(m.category(1)));
        QVERIFY(m.tree().isExpanded(m.category(2)));
    }

    void aHandOverBehindAnotherWindowAlertsTheTaskBar()
    {
        const char* wanted = "_NET_WM_STATE_DEMANDS_ATTENTION";
        Listed m;
        m.write("more.zip", "CAMZ" + Bridge + "\r\n");
        // In front it needs none.
        m.made().inbox().receive(m.path("more.zip"));
        QTRY_COMPARE(m.cameras().size(), 3);
        QVERIFY(!windowProperty(m.made(), "_NET_WM_STATE").contains(wanted));

        QWidget other;
        other.setWindowTitle("other");
        other.resize(300, 200);
        other.show();
        other.activateWindow();
        QVERIFY(waitForActive(&other));
        const QList<WId> before = stacking();
        // A camera that the list has not got: no message opens.
        m.write("another.zip", "CAMZCities\377Square\377URL5\r\n");
        m.made().inbox().receive(m.path("another.zip"));
        QTRY_VERIFY(windowProperty(m.made(), "_NET_WM_STATE").contains(wanted));
        QCOMPARE(stacking(), before);
        QCOMPARE(QApplication::activeWindow(), &other);
    }

    void exportWritesWhatImportReads_data()
    {
        const Rows<QString, QString> row("typed", "file");
        row("as offered", "cameras.zip", "cameras.zip");
        row("without an ending", "mine", "mine.zip");
        row("another ending", "mine.2026", "mine.2026.zip");
        row("capitals", "MINE.ZIP", "MINE.ZIP");
    }

    void exportWritesWhatImportReads()
    {
        QFETCH(QString, typed);
        QFETCH(QString, file);
        Listed m;
        m.chooseFile("mnuOptExport", m.path(typed));
        QTRY_COMPARE(m.sentence(), "Saved \"" + file + "\".");
        QCOMPARE(contentOf(m.path(file)), "CAMZ" + Two);
        QCOMPARE(contentOf(m.path("list.dat")), Two);
        auto& notice = m.part<WebCam>("Cam").notice();
        QStringList offers;
        for (const auto* button : notice.findChildren<QPushButton*>())
            offers << button->text();
        QCOMPARE(offers, QStringList("Open Folder"));

        Listed other(Bridge + "\r\n");
        other.chooseFile("mnuOptImport", m.path(file));
        QTRY_COMPARE(other.cameras(), (QStringList{"Bridge", "Harbour", "Tower"}));
    }

    void theExportDialogOffersAName()
    {
        Listed m;
        m.choose("mnuOpt", "mnuOptExport");
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        QVERIFY(dialog->isModal());
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
        QCOMPARE(dialog->findChild<QLineEdit*>("fileNameEdit")->text(), "cameras.zip");
        const auto* types = dialog->findChild<QComboBox*>("fileTypeCombo");
        QCOMPARE(types->currentText(), "Camera lists (*.zip)");
        QSignalSpy gone(dialog, &QObject::destroyed);
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_COMPARE(gone.count(), 1);
        QCOMPARE(m.sentence(), "");
    }

    void exportAsksBeforeAFileIsReplaced_data()
    {
        const Rows<QString> row("typed");
        row("its name", "mine.zip");
        row("without the ending", "mine");
    }

    void exportAsksBeforeAFileIsReplaced()
    {
        QFETCH(QString, typed);
        Listed m;
        m.write("mine.zip", "old");
        m.choose("mnuOpt", "mnuOptExport");
        acceptFile(m.path(typed));
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QVERIFY2(box->text().startsWith("mine.zip already exists."), qPrintable(box->text()));
        box->button(QMessageBox::No)->click();
        QCOMPARE(contentOf(m.path("mine.zip")), "old");
        acceptFile(m.path(typed));
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_COMPARE(contentOf(m.path("mine.zip")), "CAMZ" + Two);
    }

    void exportAsksBeforeAFileOfAnotherNameIsReplaced()
    {
        Listed m;
        m.write("mine.2026.zip", "old");
        for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            m.chooseFile("mnuOptExport", m.path("mine.2026"));
            QCOMPARE(contentOf(m.path("mine.2026.zip")), "old");
            const auto question = answerMessage(answer);
            QCOMPARE(question.text, "mine.2026.zip already exists.\nDo you want to replace it?");
            QTRY_COMPARE(QApplication::activeWindow(), &m.made());
        }
        QCOMPARE(contentOf(m.path("mine.2026.zip")), "CAMZ" + Two);
    }

    void aFailedExportSaysWhy_data()
    {
        const Rows<QByteArray, QString, QString> row("list", "typed", "sentence");
        row("no folder", Two, "nowhere/mine.zip",
            "\"mine.zip\" was not saved: No such file or directory.");
        row("a folder of that name", Two, "folder",
            "\"folder.zip\" was not saved: Is a directory.");
        row("no camera", " ", "mine.zip", "\"mine.zip\" was not saved: the list has no cameras.");
    }

    void aFailedExportSaysWhy()
    {
        QFETCH(QByteArray, list);
        QFETCH(QString, typed);
        Listed m(list);
        QVERIFY(QDir().mkdir(m.path("folder.zip")));
        m.list().ExportFile(m.path(typed == "folder" ? "folder.zip" : typed));
        QTEST(m.sentence(), "sentence");
        QVERIFY(!QFile::exists(m.path("mine.zip")));
    }
};

QTEST_MAIN(frmMainListFilesTest)
#include "tst_frmMainListFiles.moc"
