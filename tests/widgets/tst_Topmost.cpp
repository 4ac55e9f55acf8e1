#include "support/Desktop.h"
#include "widgets/Topmost.h"

using namespace Qt::Literals::StringLiterals;

namespace {

bool isAbove(const QWidget& window)
{
    return windowProperty(window, u"_NET_WM_STATE"_s).contains("_NET_WM_STATE_ABOVE"_L1);
}

class Watched : public QWidget
{
public:
    Watched()
    {
        setWindowTitle(u"Watched"_s);
        setGeometry(200, 150, 300, 200);
    }
    /// Shows it and waits until it is on the screen.
    void appear()
    {
        show();
        QVERIFY(waitForExposed(this));
    }
    int hidden = 0;
    int renewed = 0;

protected:
    bool event(QEvent* event) override
    {
        hidden += event->type() == QEvent::Hide ? 1 : 0;
        renewed += event->type() == QEvent::WinIdChange ? 1 : 0;
        return QWidget::event(event);
    }
};

} // namespace

class TopmostTest : public QObject
{
    Q_OBJECT
private slots:
    void aWindowNotYetShownIsShownAbove()
    {
        Watched window;
        QVERIFY(!window.windowHandle());
        QVERIFY(setTopmost(window, true));
        QVERIFY(window.windowHandle());
        QVERIFY(!window.isVisible());
        const WId id = window.winId();
        window.appear();
        QTRY_VERIFY(isAbove(window));
        QCOMPARE(window.winId(), id);
        QCOMPARE(window.windowHandle()->winId(), id);
        QVERIFY(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void aShownWindowIsRaisedAndReleasedInPlace()
    {
        Watched window;
        window.appear();
        const WId id = window.winId();
        QVERIFY(!isAbove(window));
        const QRect geometry = window.geometry();
        const int renewed = window.renewed;

        for (int round = 0; round < 2; ++round) {
            QVERIFY(setTopmost(window, true));
            QTRY_VERIFY(isAbove(window));
            QVERIFY(setTopmost(window, true));
            QVERIFY(isAbove(window));
            QVERIFY(setTopmost(window, false));
            QTRY_VERIFY(!isAbove(window));
            QVERIFY(!window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        }

        QCOMPARE(window.winId(), id);
        QCOMPARE(window.windowHandle()->winId(), id);
        QCOMPARE(window.renewed, renewed);
        QCOMPARE(window.hidden, 0);
        QVERIFY(window.isVisible());
        QCOMPARE(window.geometry(), geometry);
    }

    void itStaysAboveAfterItWasHiddenAndShown()
    {
        Watched window;
        window.appear();
        QVERIFY(setTopmost(window, true));
        QTRY_VERIFY(isAbove(window));
        window.hide();
        window.appear();
        QTRY_VERIFY(isAbove(window));
    }

    void itIsReleasedWhileHidden()
    {
        Watched window;
        QVERIFY(setTopmost(window, true));
        window.appear();
        QTRY_VERIFY(isAbove(window));
        window.hide();
        QVERIFY(setTopmost(window, false));
        window.appear();
        QTRY_VERIFY(!isAbove(window));
    }

    void itStaysAboveAWindowThatIsRaised()
    {
        Watched window;
        Watched other;
        window.appear();
        other.appear();
        QVERIFY(setTopmost(window, true));
        QTRY_COMPARE(stacking().last(), window.winId());
        other.raise();
        other.activateWindow();
        QTRY_VERIFY(other.isActiveWindow());
        QCOMPARE(stacking().last(), window.winId());
        QVERIFY(setTopmost(window, false));
        QTRY_VERIFY(!isAbove(window));
        other.raise();
        QTRY_COMPARE(stacking().last(), other.winId());
    }

    void aWindowMadeAnewStaysAbove()
    {
        Watched window;
        window.appear();
        QVERIFY(setTopmost(window, true));
        // This is what makes Qt hide the window and apply the widget's own flags.
        window.setWindowFlag(Qt::WindowMaximizeButtonHint, false);
        window.appear();
        QTRY_VERIFY(isAbove(window));
    }

    void anInnerWidgetIsRefused()
    {
        QWidget window;
        auto* inner = new QWidget(&window);
        QVERIFY(!setTopmost(*inner, true));
        QVERIFY(!inner->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
        QVERIFY(!window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }
};

QTEST_MAIN(TopmostTest)
#include "tst_Topmost.moc"
