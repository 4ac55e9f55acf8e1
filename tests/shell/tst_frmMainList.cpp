// The camera list in the main window: its file, what a click shows, and the commands of the menu.

#include "camlist/CamList.h"
#include "camlist/CameraTreeView.h"
#include "shell/parts/GotoBar.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"

#include <QFileDialog>

#include <functional>

namespace {

const QByteArray TwoCameras = "Cities\377Harbour\377127.0.0.1:1/h.jpg\377"
                              "Sights\377Tower\377127.0.0.1:1/t.jpg\1Cookie: a=1\r\n";
const QByteArray OneMore = "CAMZSights\377Bridge\377127.0.0.1:1/b.jpg\r\n";

/// The main window with a list, another one beside it, and what a person does to them.
class Listed : public ShownMain
{
public:
    explicit Listed(const QByteArray& list = TwoCameras)
    {
        write("list.dat", list);
        write("more.dat", OneMore);
    }

    CameraTreeView& tree() { return part<CameraTreeView>("tvwCat"); }

    QStringList cameras()
    {
        QStringList names;
        const auto* model = tree().model();
        for (int row = 0; row < model->rowCount(); ++row) {
            const QModelIndex category = model->index(row, 0);
            for (int camera = 0; camera < model->rowCount(category); ++camera)
                names.append(model->index(camera, 0, category).data().toString());
        }
        return names;
    }

    QModelIndex node(const QString& text)
    {
        return tree()
            .model()
            ->match(tree().model()->index(0, 0), Qt::DisplayRole, text, 1,
                    Qt::MatchExactly | Qt::MatchRecursive)
            .value(0);
    }

    void click(const QString& text, Qt::MouseButton button = Qt::LeftButton)
    {
        tree().scrollTo(node(text));
        QTest::mouseClick(tree().viewport(), button, {}, tree().visualRect(node(text)).center());
    }

    QByteArray list() const { return contentOf(path("list.dat")); }

    QString bar() { return part<GotoBar>("cmbUrl").currentText(); }

    /// Chooses Import List, and the file in its dialog.
    void import(const QString& name)
    {
        choose("mnuOpt", "mnuOptImport");
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        QSignalSpy gone(dialog, &QObject::destroyed);
        auto* input = dialog->findChild<QLineEdit*>("fileNameEdit");
        QVERIFY(input);
        input->setText(path(name));
        QTest::keyClick(input, Qt::Key_Return);
        QTRY_COMPARE(gone.count(), 1);
    }
};

} // namespace

class frmMainListTest : public QObject
{
    Q_OBJECT
private slots:
    void theListIsLoadedFirst()
    {
        Listed m;
        m.made();
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
        // Without a file it is the list that comes with the program.
        QVERIFY(QFile::remove(m.path("list.dat")));
        m.madeAgain();
        QCOMPARE(m.cameras().size(), 12);
    }

    void theCommandLineAddsAList()
    {
        Listed m;
        m.write("more cameras.dat", OneMore);
        m.made("\"" + m.path("more cameras.dat") + "\"");
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower", "Bridge"}));
        QCOMPARE(m.part<WebCam>("Cam").Url(), "");
    }

    void aCommandLineThatIsNoListIsTold()
    {
        Listed m;
        m.made(m.path("nothing.dat"));
        m.shown();
        const auto message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.text, "Not a valid Zipped Cam List.");
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
    }

    void aClickShowsTheCamera()
    {
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        const QString key = server.url("/t.jpg") + QChar(1) + "Cookie: a=b";
        Listed m("Sights\xFFTower\xFF" + key.toLatin1() + "\r\n");
        m.shown();
        auto& cam = m.part<WebCam>("Cam");
        QSignalSpy changes(&cam, &WebCam::ImageChange);
        m.click("Tower");
        QCOMPARE(m.bar(), "http://" + server.url("/t.jpg")); // without the header
        QCOMPARE(cam.Url(), key);
        QTRY_COMPARE(changes.count(), 1);
        QCOMPARE(server.requests().size(), 1);
        QVERIFY(server.requests()[0].startsWith("GET /t.jpg HTTP/1."));
        QVERIFY(server.requests()[0].contains("\r\nCookie: a=b\r\n"));
        // It is not one that was confirmed in the bar.
        QCOMPARE(m.part<GotoBar>("cmbUrl").count(), 0);
        // By its category nothing is shown, and once more it is asked for again.
        m.click("Sights");
        QCOMPARE(cam.Url(), key);
        m.tree().setExpanded(m.node("Sights"), true);
        m.tree().setCurrentIndex(m.node("Tower"));
        QTest::keyClick(&m.tree(), Qt::Key_Return);
        QTRY_COMPARE(server.requests().size(), 2);
    }

    void aClickReplacesWhatIsBeingTyped()
    {
        Listed m;
        m.shown();
        QTest::keyClicks(&m.part<GotoBar>("cmbUrl"), "half an addr");
        m.click("Harbour");
        QCOMPARE(m.bar(), "http://127.0.0.1:1/h.jpg");
    }

    void aCameraBecomesAFavourite()
    {
        Listed m;
        m.shown();
        m.click("Tower", Qt::RightButton);
        auto& menu = m.part<QMenu>("mnu");
        QVERIFY(waitForExposed(&menu));
        QTest::mouseClick(&menu, Qt::LeftButton, {},
                          menu.actionGeometry(menu.actions()[0]).center());
        m.made().close();
        QVERIFY(m.preferences().contains("=Tower\r\n"));
        QVERIFY(m.preferences().contains("=127.0.0.1:1/t.jpg\1Cookie: a=1\r\n"));
    }

    void theGotoBarKnowsTheNames()
    {
        Listed m;
        m.shown();
        auto& bar = m.part<GotoBar>("cmbUrl");
        QTest::keyClicks(&bar, "to");
        QCOMPARE(m.bar(), "tower");
        QCOMPARE(bar.lineEdit()->selectedText(), "wer");
        QTest::keyClick(&bar, Qt::Key_Backspace);
        QCOMPARE(m.bar(), "to");
        QTest::keyClicks(&bar, "w");
        QTest::keyClick(&bar, Qt::Key_Return);
        QCOMPARE(m.part<WebCam>("Cam").Url(), QString("127.0.0.1:1/t.jpg\x01") + "Cookie: a=1");
        QCOMPARE(bar.itemText(0), "tower");
    }

    void importAddsTheCamerasOfAFile()
    {
        Listed m;
        m.shown();
        m.import("more.dat");
        QTRY_COMPARE(m.cameras(), (QStringList{"Harbour", "Tower", "Bridge"}));
        // It is no camera that is shown, and nothing is written yet.
        QCOMPARE(m.part<WebCam>("Cam").Url(), "");
        QCOMPARE(m.list(), TwoCameras);
    }

    void importOffersListsAndAllFiles()
    {
        Listed m;
        m.shown();
        m.choose("mnuOpt", "mnuOptImport");
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        QVERIFY(dialog->isModal());
        QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptOpen);
        QCOMPARE(dialog->window()->parentWidget(), &m.made());
        QStringList shown;
        const auto* types = dialog->findChild<QComboBox*>("fileTypeCombo");
        QVERIFY(types);
        for (int i = 0; i < types->count(); ++i)
            shown.append(types->itemText(i));
        QCOMPARE(shown, (QStringList{"Camera lists (*.zip, list.dat, *.bak)", "All Files (*)"}));
        dialog->close();
    }

    void aCancelledImportDoesNothing()
    {
        Listed m;
        m.shown();
        m.choose("mnuOpt", "mnuOptImport");
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        QSignalSpy gone(dialog, &QObject::destroyed);
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_COMPARE(gone.count(), 1);
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
        QTRY_COMPARE(QApplication::activeWindow(), &m.made());
        for (const auto* window : QApplication::topLevelWidgets())
            QVERIFY(!qobject_cast<const QDialog*>(window) || !window->isVisible());
    }

    void anImportLeavesTheRest()
    {
        Listed m;
        m.shown();
        m.import("is not there.dat");
        QCOMPARE(answerMessage(QMessageBox::Ok).text, "Not a valid Zipped Cam List.");
        QCOMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
        m.made().close();
        QCOMPARE(m.list(), TwoCameras);
    }

    void reloadReadsTheFileAnew()
    {
        Listed m;
        m.shown();
        m.import("more.dat");
        QTRY_COMPARE(m.cameras().size(), 3);
        m.choose("mnuOpt", "mnuOptReload");
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_COMPARE(m.cameras(), (QStringList{"Harbour", "Tower"}));
    }

    void everyEndSavesTheList_data()
    {
        const Rows<std::function<void(Listed&)>> row("end");
        using End = std::function<void(Listed&)>;
        row("the window", End([](Listed& m) { m.made().close(); }));
        row("Exit", End([](Listed& m) { m.choose("mnuOpt", "mnuOptExit"); }));
        row("the session's end", End([](Listed&) {
                int manager = 0;
                QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                                          QGenericArgument("QSessionManager&", &manager));
            }));
        row("SIGTERM's slot", End([](Listed& m) { m.made().shutDown(); }));
    }

    void everyEndSavesTheList()
    {
        QFETCH(std::function<void(Listed&)>, end);
        Listed m;
        m.shown();
        m.part<CamList>("cList").AddCam("New", "127.0.0.1:1/n.jpg", "Cities");
        QCOMPARE(m.list(), TwoCameras);
        end(m);
        QTRY_VERIFY(m.list() != TwoCameras);
        QVERIFY(m.list().startsWith(TwoCameras.chopped(2)));
        QVERIFY(m.list().endsWith("\377New\377127.0.0.1:1/n.jpg\r\n"));
        QVERIFY(!m.preferences().isEmpty());
    }

    void exitWithoutSavingKeepsTheOldList()
    {
        Listed m;
        m.shown();
        m.part<CamList>("cList").AddCam("New", "127.0.0.1:1/n.jpg", "Cities");
        m.choose("mnuOpt", "mnuOptExitWO");
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_VERIFY(!m.made().isVisible());
        QCOMPARE(m.list(), TwoCameras);
        QVERIFY(m.preferences().contains("LIST=True"));
    }

    void answeringNoSavesLater()
    {
        Listed m;
        m.shown();
        m.part<CamList>("cList").AddCam("New", "127.0.0.1:1/n.jpg", "Cities");
        m.choose("mnuOpt", "mnuOptExitWO");
        QVERIFY(answerMessage(QMessageBox::No).shown);
        QTRY_COMPARE(QApplication::activeWindow(), &m.made());
        m.made().close();
        QVERIFY(m.list().contains("New"));
    }

    void theListIsSavedOnce()
    {
        Listed m;
        m.shown().close();
        m.write("list.dat", "another instance wrote this");
        m.made().close();
        m.made().shutDown();
        QCOMPARE(m.list(), "another instance wrote this");
    }

    void aListThatIsNotReadableIsNotReplacedByNothing()
    {
        Listed m;
        QVERIFY(QFile::remove(m.path("list.dat")) && QDir().mkdir(m.path("list.dat")));
        m.shown().close();
        QVERIFY(QFileInfo(m.path("list.dat")).isDir());
        QVERIFY(m.preferences().contains("LIST=True"));
    }
};

QTEST_MAIN(frmMainListTest)
#include "tst_frmMainList.moc"
