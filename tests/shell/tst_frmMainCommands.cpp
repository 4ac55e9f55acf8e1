// Files that other instances hand over to the main window that runs.

#include "instance/FileInbox.h"
#include "shared/Timer.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/ScratchFile.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

namespace {

QByteArray listOf(const QByteArray& camera)
{
    return "CAMZHanded\xFF" + camera + "\xFF" + camera + ".example/a.jpg\r\n";
}

/// A window on screen whose own list has one camera, and the files that it is handed.
struct Main : ShownMain
{
    Main()
    {
        write("list.dat", "Own\xFFMine\xFFmine.example/a.jpg\r\n");
        write("one", listOf("one"));
        write("two", listOf("two"));
        write("three.pvm", plainMovie(3));
        write("five.PVM", plainMovie(5));
        shown();
    }
    bool receive(const QString& name) { return made().inbox().receive(path(name)); }
    bool has(const QString& camera)
    {
        const auto* tree = part<QTreeView>("tvwCat").model();
        return !tree->match(tree->index(0, 0), Qt::DisplayRole, camera, 1,
                            Qt::MatchExactly | Qt::MatchRecursive)
                    .isEmpty();
    }
    WebCam& cam() { return part<WebCam>("Cam"); }
    QString caption() { return part<QLabel>("lblPic").text(); }
};

} // namespace

class frmMainCommandsTest : public QObject
{
    Q_OBJECT
private slots:
    void theBoxForThemIsTheFirstOfItsKind()
    {
        Main m;
        auto* box = m.made().findChild<QLineEdit*>();
        QVERIFY(box);
        QCOMPARE(box->objectName(), "txtCom");
        QCOMPARE(box->parentWidget(), &m.made());
        QVERIFY(!box->isVisible());
        QCOMPARE(m.made().findChildren<QLineEdit*>(Qt::FindDirectChildrenOnly).size(), 1);
    }

    void aListJoinsTheCameras()
    {
        Main m;
        QVERIFY(m.receive("one"));
        QTRY_VERIFY(m.has("one"));
        QVERIFY(m.has("Mine"));
        QCOMPARE(m.part<QLineEdit>("txtCom").text(), m.path("one"));
        QVERIFY(m.made().inbox().receive(""));
        QVERIFY(m.receive("two"));
        QTRY_VERIFY(m.has("two"));
        QVERIFY(m.has("Mine") && m.has("one"));
    }

    void aMovieIsLoaded()
    {
        Main m;
        QVERIFY(m.receive("five.PVM"));
        QTRY_COMPARE(m.caption(), "Image 1");
        QTRY_VERIFY(!m.cam().isBusy());
    }

    void theEndingAloneIsAList()
    {
        Main m;
        QVERIFY(m.made().inbox().receive(".pvm"));
        QCOMPARE(answerMessage(QMessageBox::Ok).text, "Not a valid Zipped Cam List.");
    }

    void twoMoviesInQuickSuccession()
    {
        Main m;
        QSignalSpy idle(&m.cam(), &WebCam::Idle);
        QVERIFY(m.receive("three.pvm"));
        QVERIFY(m.receive("five.PVM"));
        QCOMPARE(m.part<QLineEdit>("txtCom").text(), m.path("five.PVM"));
        // Each is loaded, one after the other.
        QTRY_COMPARE(idle.count(), 2);
    }

    void aListWaitsWhileAMoviePlays()
    {
        Main m;
        QVERIFY(m.receive("three.pvm"));
        QTRY_VERIFY(m.cam().isBusy());
        QTRY_VERIFY(!m.cam().isBusy());
        m.cam().Play();
        QVERIFY(m.cam().isBusy());
        QVERIFY(m.receive("one"));
        const auto& turn = m.part<Timer>("tmrTurn");
        QTRY_VERIFY(!turn.Enabled());
        QVERIFY(!m.has("one"));
        m.part<ToolBar>("tbMain").button(ToolBar::StopMovie)->click();
        QTRY_VERIFY(m.has("one"));
    }

    void aListWaitsWhileAMovieLoads()
    {
        Main m;
        QVERIFY(m.receive("five.PVM"));
        QVERIFY(m.receive("one"));
        QTRY_VERIFY(m.cam().isBusy());
        bool early = false;
        connect(&m.cam(), &WebCam::Idle, this, [&] { early = m.has("one"); });
        QTRY_VERIFY(!m.cam().isBusy());
        QVERIFY(!early);
        QTRY_VERIFY(m.has("one"));
    }

    void theWindowIsNeitherShownNorRaised()
    {
        Main m;
        m.made().hide();
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(waitForActive(&other));
        QVERIFY(m.receive("one"));
        QTRY_VERIFY(m.has("one"));
        QVERIFY(!m.made().isVisible());
        m.made().showMinimized();
        QVERIFY(m.receive("two"));
        QTRY_VERIFY(m.has("two"));
        QVERIFY(m.made().isMinimized() || !m.made().isVisible());
        QVERIFY(QApplication::activeWindow() != &m.made());
        QCOMPARE(m.made().windowTitle(), "Pevora");
    }

    void atTheEndNothingIsTaken()
    {
        Main m;
        m.made().shutDown();
        QVERIFY(!m.receive("one"));
        QVERIFY(!m.has("one"));
    }

    void aListThatWaitsAtTheEndIsSaved()
    {
        Main m;
        QVERIFY(m.receive("one"));
        m.made().shutDown();
        QVERIFY(contentOf(m.path("list.dat")).contains("\xFFone.example/a.jpg"));
    }
};

QTEST_MAIN(frmMainCommandsTest)
#include "tst_frmMainCommands.moc"
