#include "support/TimeSeam.h"
#include "support/Waiting.h"
#include "widgets/FirstPaint.h"

#include <QPaintEvent>
#include <QSignalSpy>

namespace {

/// Says whether it, and all that it holds, was painted.
class Leaf : public QWidget
{
public:
    using QWidget::QWidget;
    int paints = 0;

protected:
    void paintEvent(QPaintEvent* /*event*/) override { ++paints; }
};

} // namespace

class FirstPaintTest : public QObject
{
    Q_OBJECT
private slots:
    void isToldOnceAfterAllIsPainted()
    {
        QWidget window;
        auto* leaf = new Leaf(&window);
        FirstPaint first(window);
        int paintedBefore = -1;
        connect(&first, &FirstPaint::Over, &window, [&] { paintedBefore = leaf->paints; });
        const QSignalSpy over(&first, &FirstPaint::Over);
        window.show();
        QCOMPARE(over.count(), 0);
        QTRY_COMPARE(over.count(), 1);
        QCOMPARE(paintedBefore, 1);

        window.update();
        window.repaint();
        leaf->repaint();
        QTRY_VERIFY(leaf->paints > 1);
        QCOMPARE(over.count(), 1);
        QVERIFY(!timerOf(window, "tmrFirstPaint").Enabled());
    }

    void twoPaintsInARowAreOne()
    {
        QWidget window;
        FirstPaint first(window);
        const QSignalSpy over(&first, &FirstPaint::Over);
        QPaintEvent paint(window.rect());
        QCoreApplication::sendEvent(&window, &paint);
        QCoreApplication::sendEvent(&window, &paint);
        QCOMPARE(over.count(), 0);
        QCoreApplication::sendPostedEvents(&first);
        QCOMPARE(over.count(), 1);
    }

    void aWindowThatNobodySeesIsNotWaitedForForEver()
    {
        QWidget window;
        FirstPaint first(window);
        const QSignalSpy over(&first, &FirstPaint::Over);
        timerOf(window, "tmrFirstPaint").elapse();
        QCOMPARE(over.count(), 1);
        window.show();
        QVERIFY(waitForExposed(&window));
        window.repaint();
        QCOMPARE(over.count(), 1);
    }
};

QTEST_MAIN(FirstPaintTest)
#include "tst_FirstPaint.moc"
