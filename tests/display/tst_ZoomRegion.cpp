#include "display/ZoomRegion.h"
#include "support/Rows.h"

#include <cmath>

static bool near(double a, double b)
{
    return std::abs(a - b) < 1e-9;
}

static bool near(const QRectF& a, const QRectF& b)
{
    return near(a.x(), b.x()) && near(a.y(), b.y()) && near(a.width(), b.width()) &&
           near(a.height(), b.height());
}

static QString told(const QRectF& region)
{
    return QString("%1 %2 %3 %4")
        .arg(region.x())
        .arg(region.y())
        .arg(region.width())
        .arg(region.height());
}

#define COMPARE_REGIONS(actual, expected) QVERIFY2(near(actual, expected), qPrintable(told(actual)))

static ZoomRegion region(QSizeF picture, QSizeF view, bool keepProportions = false)
{
    ZoomRegion made;
    made.restore(picture, view, keepProportions);
    return made;
}

/// The place in the picture that is shown at that place in a view.
static QPointF under(const ZoomRegion& region, QSizeF view, QPointF at)
{
    const QRectF shown = region.shown();
    return {shown.x() + at.x() / view.width() * shown.width(),
            shown.y() + at.y() / view.height() * shown.height()};
}

class ZoomRegionTest : public QObject
{
    Q_OBJECT
private slots:
    void theWholePictureFirst_data()
    {
        const Rows<QSizeF, QSizeF, bool, QRectF> row("picture", "view", "proportions", "shown");
        row("stretched", {100, 100}, {400, 200}, false, {0, 0, 1, 1});
        row("room at both sides", {100, 100}, {400, 200}, true, {-0.5, 0, 2, 1});
        row("room above and below", {200, 100}, {200, 200}, true, {0, -0.5, 1, 2});
        row("of the view's shape", {64, 48}, {640, 480}, true, {0, 0, 1, 1});
        row("no picture", {0, 0}, {400, 200}, true, {0, 0, 1, 1});
        row("no view", {100, 100}, {0, 200}, true, {0, 0, 1, 1});
    }

    void theWholePictureFirst()
    {
        QFETCH(QSizeF, picture);
        QFETCH(QSizeF, view);
        QFETCH(bool, proportions);
        QFETCH(QRectF, shown);
        const ZoomRegion r = region(picture, view, proportions);
        COMPARE_REGIONS(r.shown(), shown);
        QVERIFY(!r.isZoomed());
        QVERIFY(!r.canMove());
    }

    void theWheelKeepsThePlaceUnderThePointer_data()
    {
        const Rows<bool, QPointF> row("proportions", "at");
        row("middle", false, {200, 100});
        row("anywhere", false, {301, 44});
        row("corner", false, {0, 0});
        row("undistorted", true, {200, 120});
    }

    void theWheelKeepsThePlaceUnderThePointer()
    {
        QFETCH(bool, proportions);
        QFETCH(QPointF, at);
        const QSizeF view(400, 200);
        ZoomRegion r = region({300, 200}, view, proportions);
        const QSizeF whole = r.shown().size();
        const QPointF place = under(r, view, at);
        for (int i = 1; i <= 4; ++i) {
            r.zoomByWheel(1, at);
            QVERIFY(r.isZoomed());
            QVERIFY(near(r.shown().width(), whole.width() / std::pow(1.25, i)));
            QVERIFY(near(r.shown().height(), whole.height() / std::pow(1.25, i)));
        }
        const QPointF now = under(r, view, at);
        QVERIFY(near(now.x(), place.x()) && near(now.y(), place.y()));
    }

    void outAgainNoFurtherThanTheWhole_data()
    {
        const Rows<bool> row("proportions");
        row("stretched", false);
        row("undistorted", true);
    }

    void outAgainNoFurtherThanTheWhole()
    {
        QFETCH(bool, proportions);
        ZoomRegion r = region({300, 200}, {400, 200}, proportions);
        const QRectF whole = r.shown();
        r.zoomByWheel(-1, {10, 10});
        QCOMPARE(r.shown(), whole);
        for (int i = 0; i < 7; ++i)
            r.zoomByWheel(1, {390, 10});
        for (int i = 0; i < 6; ++i) {
            r.zoomByWheel(-1, {5, 190});
            QVERIFY(r.isZoomed());
            QVERIFY(r.shown().left() >= -1e-9 || r.shown().width() > 1);
            QVERIFY(r.shown().right() <= 1 + 1e-9 || r.shown().width() > 1);
            QVERIFY(r.shown().top() >= -1e-9 && r.shown().bottom() <= 1 + 1e-9);
        }
        r.zoomByWheel(-1, {5, 190});
        QCOMPARE(r.shown(), whole);
        QVERIFY(!r.isZoomed());
        // Parts of a notch add up to it.
        for (const double part : {0.5, 0.25, 0.25})
            r.zoomByWheel(part, {100, 100});
        QVERIFY(near(r.shown().height(), whole.height() / 1.25));
    }

    void theWheelTakesBackTheClickInASmallView()
    {
        // Kept: the click shows more than the picture there.
        ZoomRegion r = region({300, 200}, {150, 400});
        r.zoomIntoSquare({60, 200});
        QVERIFY(r.shown().width() > 1);
        r.zoomByWheel(-20, {60, 200});
        QCOMPARE(r.shown(), ZoomRegion::WholePicture);
    }

    void neitherSideGrowsBeyondThePicture()
    {
        // A click shows half of the width and a fifth of the height.
        ZoomRegion r = region({400, 1000}, {400, 1000});
        r.zoomIntoSquare({200, 500});
        r.zoomByWheel(-4, {200, 500});
        QCOMPARE(r.shown().width(), 1.0);
        QVERIFY(near(r.shown().height(), 0.2 * std::pow(1.25, 4)));
        QVERIFY(r.isZoomed());
    }

    void theClicksSquareIsShownUndistorted_data()
    {
        const Rows<QPoint, QRectF> row("at", "shown");
        // 400 x 200 shows a square picture 200 wide in its middle: nothing to zoom by 200 of 200.
        // 800 x 400 shows it 400 wide from 200 on: the square is half as high.
        row("middle", QPoint(400, 200), QRectF(0, 0.25, 1, 0.5));
        row("top left of the picture", QPoint(200, 0), QRectF(0, 0, 1, 0.5));
        row("beside it", QPoint(10, 390), QRectF(0, 0.5, 1, 0.5));
    }

    void theClicksSquareIsShownUndistorted()
    {
        QFETCH(QPoint, at);
        QFETCH(QRectF, shown);
        ZoomRegion r = region({100, 100}, {800, 400}, true);
        r.zoomIntoSquare(at);
        COMPARE_REGIONS(r.shown(), shown);
        r.zoomIntoSquare({400, 200});
        QVERIFY(near(r.shown().width(), 0.5));
        QVERIFY(near(r.shown().width() * 400, r.shown().height() * 800)); // undistorted
        ZoomRegion small = region({100, 100}, {400, 200}, true);
        small.zoomIntoSquare(at);
        QVERIFY(!small.isZoomed());
    }

    void movesUpToTheEdges()
    {
        ZoomRegion r = region({400, 200}, {400, 200});
        QCOMPARE(r.moveBy({10, 10}), QPointF(10, 10));
        QCOMPARE(r.shown(), ZoomRegion::WholePicture);
        r.zoomIntoSquare({200, 100}); // a square 200 wide and high: (0.25, 0, 0.5, 1)
        QVERIFY(r.canMove());
        QCOMPARE(r.moveBy({-40, 30}), QPointF(0, 30));
        COMPARE_REGIONS(r.shown(), QRectF(0.3, 0, 0.5, 1));
        QCOMPARE(r.moveBy({-1000, 0}).x(), -1000 + 0.2 * 800);
        COMPARE_REGIONS(r.shown(), QRectF(0.5, 0, 0.5, 1));
        r.moveBy({1000, 0});
        COMPARE_REGIONS(r.shown(), QRectF(0, 0, 0.5, 1));
    }

    void endlessZoomingStaysFinite()
    {
        for (const bool proportions : {false, true}) {
            ZoomRegion r = region({1, 50'000'000}, {900, 560}, proportions);
            for (int i = 0; i < 2000; ++i) {
                r.zoomByWheel(1, {300, 200});
                r.zoomIntoSquare({300, 200});
                r.moveBy({3, -5});
            }
            const QRectF shown = r.shown();
            QVERIFY(std::isfinite(shown.x()) && shown.width() > 0 && shown.height() > 0);
            r.zoomByWheel(-4000, {1, 1});
            QVERIFY(!r.isZoomed());
        }
    }

    void restoreUndoesEverything()
    {
        ZoomRegion r = region({400, 200}, {400, 200});
        r.zoomByWheel(3, {1, 1});
        r.moveBy({-20, -20});
        r.restore({400, 200}, {400, 200}, false);
        QCOMPARE(r.shown(), ZoomRegion::WholePicture);
    }
};

QTEST_GUILESS_MAIN(ZoomRegionTest)
#include "tst_ZoomRegion.moc"
