#include "widgets/Topmost.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// What the window manager says of a window, as xprop prints it.
QString windowState(const QWidget& window)
{
    // Not QWidget::winId(), which Qt does not renew with the system's window.
    const QString id = QString::number(window.windowHandle()->winId());
    QProcess xprop;
    xprop.start(u"xprop"_s, {u"-id"_s, id, u"_NET_WM_STATE"_s});
    if (!xprop.waitForFinished(HangMs) || xprop.exitCode() != 0)
        qFatal("xprop: %s", xprop.readAllStandardError().constData());
    return QString::fromLatin1(xprop.readAllStandardOutput());
}

bool isAbove(const QWidget& window)
{
    return windowState(window).contains("_NET_WM_STATE_ABOVE"_L1);
}

/// The windows of the program from the lowest to the highest, as the window manager stacks them.
QList<WId> stacking()
{
    QProcess xprop;
    xprop.start(u"xprop"_s, {u"-root"_s, u"_NET_CLIENT_LIST_STACKING"_s});
    xprop.waitForFinished(HangMs);
    QList<WId> windows;
    static const QRegularExpression number(u"0x[0-9a-f]+"_s);
    auto match = number.globalMatch(QString::fromLatin1(xprop.readAllStandardOutput()));
    while (match.hasNext())
        windows << match.next().captured().toULongLong(nullptr, 16);
    return windows;
}

class Watched : public QWidget
{
public:
    Watched()
    {
        setWindowTitle(u"Watched"_s);
        setGeometry(200, 150, 300, 200);
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
        window.show();
        QVERIFY(waitForExposed(&window));
        QTRY_VERIFY(isAbove(window));
        QCOMPARE(window.winId(), id);
        QCOMPARE(window.windowHandle()->winId(), id);
        QVERIFY(window.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    }

    void aShownWindowIsRaisedAndReleasedInPlace()
    {
        Watched window;
        window.show();
        QVERIFY(waitForExposed(&window));
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
        window.show();
        QVERIFY(waitForExposed(&window));
        QVERIFY(setTopmost(window, true));
        QTRY_VERIFY(isAbove(window));
        window.hide();
        window.show();
        QVERIFY(waitForExposed(&window));
        QTRY_VERIFY(isAbove(window));
    }

    void itIsReleasedWhileHidden()
    {
        Watched window;
        QVERIFY(setTopmost(window, true));
        window.show();
        QVERIFY(waitForExposed(&window));
        QTRY_VERIFY(isAbove(window));
        window.hide();
        QVERIFY(setTopmost(window, false));
        window.show();
        QVERIFY(waitForExposed(&window));
        QTRY_VERIFY(!isAbove(window));
    }

    void itStaysAboveAWindowThatIsRaised()
    {
        Watched window;
        Watched other;
        window.show();
        QVERIFY(waitForExposed(&window));
        other.show();
        QVERIFY(waitForExposed(&other));
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
        window.show();
        QVERIFY(waitForExposed(&window));
        QVERIFY(setTopmost(window, true));
        // This is what makes Qt hide the window and apply the widget's own flags.
        window.setWindowFlag(Qt::WindowMaximizeButtonHint, false);
        window.show();
        QVERIFY(waitForExposed(&window));
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
