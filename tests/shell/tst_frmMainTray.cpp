// The main window, the tray and the window manager: minimising, coming back, always on top.

#include "instance/FileInbox.h"
#include "shared/Timer.h"
#include "support/Desktop.h"
#include "support/Rows.h"
#include "support/ShownMain.h"
#include "support/TimeSeam.h"

#include <memory>

namespace {

bool isIconic(const QWidget& window)
{
    return windowProperty(window, "WM_STATE").contains("Iconic");
}

/// Whether a task bar would show a window of the program.
bool isInTaskBar()
{
    return !managedWindows("Pevora").isEmpty();
}

bool isNormal(const QWidget& window)
{
    return windowProperty(window, "WM_STATE").contains("window state: Normal");
}

bool isAbove(const QWidget& window)
{
    return windowProperty(window, "_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE");
}

/// As the button in the window's frame does it.
void minimise(const QWidget& window)
{
    QProcess tool;
    tool.start("xdotool", {"windowminimize", QString::number(window.windowHandle()->winId())});
    QVERIFY(tool.waitForFinished(HangMs));
}

/// The main window on screen with its icon in the tray.
struct InTray : DesktopTray, OpenMain
{
    InTray() { QVERIFY(!place.isEmpty()); }

    /// Minimises the window, which hides it.
    void hide()
    {
        minimise(made());
        QTRY_VERIFY(made().isHidden());
    }
    void clickIcon() const { pointer(place.center(), "click", 1); }

    const QRect place = DesktopTray::icon();
};

} // namespace

class frmMainTrayTest : public QObject
{
    Q_OBJECT
private slots:
    /// A click soon after another one is a click of its own.
    void init() { QApplication::setDoubleClickInterval(0); }

    void theIconComesAfterTheFirstPaint()
    {
        const DesktopTray tray;
        ShownMain m;
        m.made();
        QCOMPARE(DesktopTray::icons(), 0);
        m.made().show();
        QCOMPARE(DesktopTray::icons(), 0);
        // The timer is for a window that is not painted.
        timerOf(m.made(), "tmrTray").setInterval(3'600'000);
        QVERIFY(!DesktopTray::icon().isEmpty());
        QVERIFY(m.made().windowHandle()->isExposed());
        QVERIFY(!timerOf(m.made(), "tmrTray").Enabled());
    }

    void theIconComesToAWindowThatIsNotPainted()
    {
        const DesktopTray tray;
        ShownMain m;
        m.made();
        timerOf(m.made(), "tmrTray").elapse();
        QVERIFY(!DesktopTray::icon().isEmpty());
        QVERIFY(!m.made().isVisible());
        QVERIFY(!timerOf(m.made(), "tmrTray").Enabled());
    }

    void theIconGoesByThePreference_data()
    {
        const Rows<QByteArray, bool, int> row("value", "checked", "icons");
        row("True", "True", true, 1);
        row("False", "False", false, 0);
        row("no truth value", "maybe", true, 1);
        row("nothing", {}, true, 1);
    }

    void theIconGoesByThePreference()
    {
        QFETCH(QByteArray, value);
        QFETCH(int, icons);
        const DesktopTray tray;
        OpenMain m("[VIEW]\r\nTRAY=" + value + "\r\n");
        timerOf(m.made(), "tmrTray").elapse();
        QTEST(m.entry("mnuViewTray").isChecked(), "checked");
        QTRY_COMPARE(DesktopTray::icons(), icons);
    }

    void theMenuAddsAndRemovesTheIcon()
    {
        InTray m;
        for (const bool on : {false, true, false, true}) {
            m.choose("mnuOpt", "mnuViewTray");
            QTRY_COMPARE(m.entry("mnuViewTray").isChecked(), on);
            QTRY_COMPARE(DesktopTray::icons(), on ? 1 : 0);
        }
        // One that was taken back before it came does not come.
        m.madeAgain();
        m.entry("mnuViewTray").trigger();
        m.shown();
        QVERIFY(!timerOf(m.made(), "tmrTray").Enabled());
        QCOMPARE(DesktopTray::icons(), 0);
    }

    void minimisingHidesAndAClickBringsBackNormal_data()
    {
        const Rows<bool> row("maximised");
        row("normal", false);
        row("maximised", true);
    }

    void minimisingHidesAndAClickBringsBackNormal()
    {
        QFETCH(bool, maximised);
        InTray m;
        const QSize size = m.made().size();
        m.made().move(37, 91); // where no window manager puts it by itself
        QTRY_COMPARE(m.made().pos(), QPoint(37, 91));
        if (maximised) {
            m.made().showMaximized();
            QTRY_VERIFY(m.made().width() > size.width());
        }
        m.hide();
        QCOMPARE(m.made().windowState(), Qt::WindowNoState);
        QTRY_VERIFY(!isInTaskBar());
        QVERIFY(m.entry("mnuViewTray").isChecked());

        m.clickIcon();
        QTRY_VERIFY(m.made().isVisible());
        QVERIFY(waitForActive(&m.made()));
        QTRY_VERIFY(isNormal(m.made()));
        QVERIFY(isInTaskBar());
        QCOMPARE(m.made().windowState() & ~Qt::WindowActive, Qt::WindowNoState);
        QTRY_COMPARE(m.made().size(), size);
        if (!maximised)
            QTRY_COMPARE(m.made().pos(), QPoint(37, 91));
        QVERIFY(!windowProperty(m.made(), "_NET_WM_STATE").contains("MAXIMIZED"));
    }

    void aClickShowsAWindowThatIsBehindOrMinimised()
    {
        InTray m;
        QWidget other;
        other.setGeometry(m.made().geometry());
        other.show();
        other.activateWindow();
        QVERIFY(waitForActive(&other));
        m.clickIcon();
        QVERIFY(waitForActive(&m.made()));
        // One that was minimised before its icon could be reached.
        m.entry("mnuViewTray").trigger();
        minimise(m.made());
        QTRY_VERIFY(m.made().isMinimized());
        m.entry("mnuViewTray").trigger();
        pointer(DesktopTray::icon().center(), "click", 1);
        QVERIFY(waitForActive(&m.made()));
        QVERIFY(!m.made().isMinimized());
    }

    /// It would stay behind, unseen, and block the window that comes back.
    void withADialogOpenItMinimisesAsUsual()
    {
        InTray m;
        m.entry("mnuFavMan").trigger();
        QVERIFY(QApplication::activeModalWidget());
        QVERIFY(waitForExposed(QApplication::activeModalWidget()));
        minimise(m.made());
        QTRY_VERIFY(m.made().isMinimized());
        QCoreApplication::processEvents();
        QVERIFY(!m.made().isHidden());
    }

    /// A list that was handed over told something while nobody saw the window.
    void aMessageLiesAboveTheWindowThatComesBack()
    {
        InTray m;
        m.hide();
        QVERIFY(m.made().inbox().receive("no such list"));
        QTRY_VERIFY(QApplication::activeModalWidget());
        QWidget* box = QApplication::activeModalWidget();
        QVERIFY(waitForExposed(box));
        QVERIFY(m.made().isHidden());
        m.clickIcon();
        QTRY_VERIFY(m.made().isVisible());
        QTRY_COMPARE(QApplication::activeWindow(), box);
    }

    void aDialogOfAnotherWindowDoesNotKeepItOnScreen()
    {
        InTray m;
        QWidget other;
        other.show();
        QDialog prompt(&other);
        prompt.open();
        QVERIFY(waitForExposed(&prompt));
        m.hide();
    }

    void minimisingTwiceInARowHidesTwice()
    {
        InTray m;
        for (int round = 0; round < 3; ++round) {
            m.hide();
            m.clickIcon();
            QVERIFY(waitForActive(&m.made()));
            // What was hidden is laid out and painted as before.
            QTRY_VERIFY(m.part<QComboBox>("cmbUrl").isVisible());
        }
    }

    void minimisesAsUsual_data()
    {
        const Rows<bool, bool> row("tray", "checked");
        row("without the check", true, false);
        row("without a tray", false, true);
    }

    void minimisesAsUsual()
    {
        QFETCH(bool, tray);
        QFETCH(bool, checked);
        const auto desktopTray = tray ? std::make_unique<DesktopTray>() : nullptr;
        OpenMain m(checked ? "" : "[VIEW]\r\nTRAY=False\r\n");
        timerOf(m.made(), "tmrTray").elapse();
        QCOMPARE(m.entry("mnuViewTray").isChecked(), checked);
        minimise(m.made());
        QTRY_VERIFY(m.made().isMinimized());
        QTRY_VERIFY(isIconic(m.made()));
        QCoreApplication::processEvents();
        QVERIFY(m.made().isVisible());
        // A task bar reaches it.
        QProcess tool;
        tool.start("xdotool",
                   {"windowactivate", QString::number(m.made().windowHandle()->winId())});
        QVERIFY(tool.waitForFinished(HangMs));
        QTRY_VERIFY(!m.made().isMinimized());
        QVERIFY(isNormal(m.made()));
    }

    void aTrayThatGoesBringsTheWindowBack()
    {
        auto tray = std::make_unique<DesktopTray>();
        OpenMain m;
        QVERIFY(!DesktopTray::icon().isEmpty());
        minimise(m.made());
        QTRY_VERIFY(m.made().isHidden());
        auto& timer = timerOf(m.made(), "tmrTray");
        QVERIFY(timer.Enabled());
        timer.elapse();
        QVERIFY(m.made().isHidden());
        tray.reset();
        timer.elapse();
        QVERIFY(m.made().isVisible());
        QVERIFY(waitForActive(&m.made()));
        QVERIFY(!m.made().isMinimized());
        QVERIFY(!timer.Enabled());
    }

    void nothingIsWatchedWhileTheWindowIsShown()
    {
        InTray m;
        auto& timer = timerOf(m.made(), "tmrTray");
        QVERIFY(!timer.Enabled());
        minimise(m.made());
        QTRY_VERIFY(timer.Enabled());
        m.clickIcon();
        QTRY_VERIFY(m.made().isVisible());
        QVERIFY(!timer.Enabled());
    }

    void theEndWhileHiddenIsTheSame()
    {
        InTray m;
        m.hide();
        QTimer::singleShot(0, &m.made(), &frmMain::shutDown);
        QCOMPARE(QCoreApplication::exec(), 0);
        QVERIFY(m.preferences().contains("TRAY=True\r\n"));
        QVERIFY(m.made().isHidden());
        QCOMPARE(DesktopTray::icons(), 0);
        QVERIFY(!timerOf(m.made(), "tmrTray").Enabled());
    }

    void theIconGoesWithTheProgram()
    {
        InTray m;
        m.made().close();
        QCOMPARE(DesktopTray::icons(), 0);
        // Nor does it come any more where the program ends before it came.
        m.madeAgain();
        m.made().shutDown();
        timerOf(m.made(), "tmrTray").elapse();
        m.made().show();
        QVERIFY(waitForExposed(&m.made()));
        QCOMPARE(DesktopTray::icons(), 0);
    }

    void alwaysOnTopReallyIs()
    {
        OpenMain m;
        QVERIFY(!isAbove(m.made()));
        for (const bool on : {true, false, true}) {
            m.choose("mnuOpt", "mnuOptOnTop");
            QTRY_COMPARE(isAbove(m.made()), on);
            m.made().hide();
            m.shown();
            QTRY_COMPARE(isAbove(m.made()), on);
        }
        m.made().close();
        m.madeAgain();
        m.shown();
        QTRY_VERIFY(isAbove(m.made()));
    }

    void alwaysOnTopOutlastsTheTray()
    {
        InTray m;
        m.choose("mnuOpt", "mnuOptOnTop");
        QTRY_VERIFY(isAbove(m.made()));
        m.hide();
        m.clickIcon();
        QVERIFY(waitForActive(&m.made()));
        QTRY_VERIFY(isAbove(m.made()));
        QVERIFY(isNormal(m.made()));
    }
};

QTEST_MAIN(frmMainTrayTest)
#include "tst_frmMainTray.moc"
