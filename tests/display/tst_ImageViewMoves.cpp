// The wheel, dragging and the cursor in a picture view, and pictures in their proportions.

#include "support/Cost.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ShownView.h"
#include "support/Waiting.h"

#include <QApplication>
#include <QClipboard>

namespace {

constexpr QRectF Whole(0, 0, 1, 1);

Still picture(QSize size = {800, 800})
{
    return Still::fromImage(quarters(size));
}

} // namespace

class ImageViewMovesTest : public QObject
{
    Q_OBJECT
private slots:
    void theWheelZoomsAtThePointer()
    {
        ShownView v({400, 400});
        v.view.setPicture(picture());
        v.turnWheel({100, 300}, 1);
        QCOMPARE(v.view.shownRegion(), QRectF(0.05, 0.15, 0.8, 0.8));
        QVERIFY(alike(v.at(100, 300), Qt::blue));
        QVERIFY(alike(v.at(218, 170), Qt::red)); // the border has moved away from the pointer
        v.turnWheel({0, 0}, -1);
        QCOMPARE(v.view.shownRegion(), Whole);
        v.turnWheel({0, 0}, -1);
        QCOMPARE(v.view.shownRegion(), Whole);
        // A click goes further into what the wheel has shown.
        v.turnWheel({0, 0}, 1);
        v.click(100, 100);
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 0.4, 0.4));
        v.view.setPicture({});
        v.turnWheel({100, 100}, 1);
        QCOMPARE(v.view.shownRegion(), Whole);
    }

    void draggingMovesWhatIsZoomed()
    {
        ShownView v({400, 400});
        v.view.setPicture(picture());
        v.click(200, 200);
        QCOMPARE(v.view.shownRegion(), QRectF(0.25, 0.25, 0.5, 0.5));
        v.drag({{200, 200}, {180, 190}, {120, 160}});
        QCOMPARE(v.view.shownRegion(), QRectF(0.35, 0.3, 0.5, 0.5));
        v.drop({120, 160});
        QCOMPARE(v.view.shownRegion(), QRectF(0.35, 0.3, 0.5, 0.5)); // no click: no zoom
        QVERIFY(alike(v.at(110, 150), Qt::red));
        QVERIFY(alike(v.at(130, 170), Qt::white));
        // Up to its edge.
        v.drag({{10, 10}, {390, 390}});
        v.drop({390, 390});
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 0.5, 0.5));
    }

    void aPressThatHardlyMovesIsAClick()
    {
        ShownView v({400, 400});
        v.view.setPicture(picture());
        v.click(200, 200);
        const int nearly = QApplication::startDragDistance() - 1;
        v.drag({{200, 200}, {200 + nearly, 200}});
        QCOMPARE(v.view.shownRegion(), QRectF(0.25, 0.25, 0.5, 0.5));
        v.drop({200, 200});
        QCOMPARE(v.view.shownRegion(), QRectF(0.375, 0.375, 0.25, 0.25));
        // The next press begins anew.
        v.drag({{200, 200}, {210, 200}, {220, 200}});
        v.drop({220, 200});
        v.click(200, 200);
        QCOMPARE(v.view.shownRegion().width(), 0.125);
    }

    void otherButtonsDragNothing()
    {
        ShownView v({400, 400});
        v.view.setPicture(picture());
        v.click(200, 200);
        const QRectF before = v.view.shownRegion();
        QTest::mousePress(&v.canvas(), Qt::RightButton, {}, {200, 200});
        QMouseEvent move(QEvent::MouseMove, {100, 100}, v.canvas().mapToGlobal(QPointF(100, 100)),
                         Qt::NoButton, Qt::RightButton, Qt::NoModifier);
        QApplication::sendEvent(&v.canvas(), &move);
        QTest::mouseRelease(&v.canvas(), Qt::RightButton, {}, {100, 100});
        QCOMPARE(v.view.shownRegion(), before);
        QTRY_VERIFY(v.menu().isVisible());
        v.menu().close();
    }

    void theCursorSaysWhatCanBeMoved()
    {
        ShownView v({400, 400});
        const auto cursor = [&] { return v.canvas().cursor().shape(); };
        QCOMPARE(cursor(), Qt::ArrowCursor);
        v.view.setPicture(picture());
        QCOMPARE(cursor(), Qt::ArrowCursor);
        v.turnWheel({100, 100}, 1);
        QCOMPARE(cursor(), Qt::OpenHandCursor);
        v.drag({{200, 200}, {201, 200}});
        QCOMPARE(cursor(), Qt::OpenHandCursor);
        v.drag({{200, 200}, {180, 180}});
        QCOMPARE(cursor(), Qt::ClosedHandCursor);
        v.drop({180, 180});
        QCOMPARE(cursor(), Qt::OpenHandCursor);
        v.turnWheel({100, 100}, -1);
        QCOMPARE(cursor(), Qt::ArrowCursor);
        v.view.setLargerThanRoom(true);
        QCOMPARE(cursor(), Qt::OpenHandCursor);
        v.view.setPicture({});
        QCOMPARE(cursor(), Qt::ArrowCursor);
    }

    void aViewLargerThanItsRoomAsksToBeMoved()
    {
        ShownView v({400, 400});
        v.view.setPicture(picture());
        QSignalSpy pans(&v.view, &ImageView::PanWanted);
        QSignalSpy out(&v.view, &ImageView::DragOutWanted);
        v.view.setLargerThanRoom(true);
        v.drag({{200, 200}, {150, 180}, {140, 180}});
        v.drop({140, 180});
        QCOMPARE(pans.count(), 2);
        QCOMPARE(pans[0][0].toPoint(), QPoint(-50, -20));
        QCOMPARE(pans[1][0].toPoint(), QPoint(-10, 0));
        // Zoomed, too: the view follows where the zoom has come to its end.
        pans.clear();
        v.click(100, 100); // (0, 0, 0.5, 0.5)
        v.drag({{100, 100}, {160, 80}});
        v.drop({160, 80});
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0.025, 0.5, 0.5));
        QCOMPARE(pans.count(), 1);
        QCOMPARE(pans[0][0].toPoint(), QPoint(60, 0));
        QCOMPARE(out.count(), 0);
    }

    void whatCannotBeMovedIsDraggedOut()
    {
        ShownView v({400, 400});
        QSignalSpy out(&v.view, &ImageView::DragOutWanted);
        v.drag({{200, 200}, {100, 200}, {50, 200}});
        v.drop({50, 200});
        QCOMPARE(out.count(), 0); // no picture
        v.view.setPicture(picture());
        v.drag({{200, 200}, {201, 200}});
        QCOMPARE(out.count(), 0);
        v.drag({{200, 200}, {100, 200}, {50, 200}});
        QCOMPARE(out.count(), 1);
        v.drop({50, 200});
        QCOMPARE(v.view.shownRegion(), Whole);
        v.click(200, 200);
        v.drag({{200, 200}, {100, 200}});
        v.drop({100, 200});
        QCOMPARE(out.count(), 1);
    }

    void aNewPictureOfTheSameSizeKeepsZoomAndPlace()
    {
        ShownView v({400, 400});
        const QByteArray red = encodedPicture({640, 480}, Qt::red);
        QVERIFY(!v.view.loadPicture(red).isNull());
        v.turnWheel({100, 100}, 2);
        v.drag({{200, 200}, {150, 150}});
        v.drop({150, 150});
        const QRectF place = v.view.shownRegion();
        QVERIFY(place != Whole);
        QVERIFY(alike(v.at(200, 200), Qt::red));
        QVERIFY(!v.view.loadPicture(encodedPicture({640, 480}, Qt::blue)).isNull());
        QCOMPARE(v.view.shownRegion(), place);
        QVERIFY(alike(v.at(200, 200), Qt::blue));
        v.view.setPicture(Still::fromImage(plainImage({640, 480}, Qt::green)));
        QCOMPARE(v.view.shownRegion(), place);
        QVERIFY(alike(v.at(200, 200), Qt::green));
        QVERIFY(!v.view.loadPicture(encodedPicture({641, 480}, Qt::blue)).isNull());
        QCOMPARE(v.view.shownRegion(), Whole);
        // The part comes from the new picture's own pixels, not from a smaller copy.
        v.view.setPicture(Still::fromImage(checkerboard({1600, 1600})));
        for (int i = 0; i < 3; ++i)
            v.click(200, 200);
        QVERIFY(!v.view.loadPicture(encodedImage(checkerboard({1600, 1600}), "bmp")).isNull());
        QCOMPARE(v.view.shownRegion().width(), 0.125);
        QVERIFY(v.shown().convertToFormat(QImage::Format_RGB32) == [&] {
            ShownView other({400, 400});
            other.view.setPicture(Still::fromImage(checkerboard({1600, 1600})));
            for (int i = 0; i < 3; ++i)
                other.click(200, 200);
            return other.shown().convertToFormat(QImage::Format_RGB32);
        }());
    }

    void restoreGoesToTheWholePictureAndTellsTheOwner()
    {
        ShownView v({400, 400});
        v.view.setPicture(picture());
        QSignalSpy restored(&v.view, &ImageView::Restored);
        v.turnWheel({100, 100}, 3);
        v.menu().findChild<QAction*>("mnuRcRe")->trigger();
        QCOMPARE(v.view.shownRegion(), Whole);
        QCOMPARE(restored.count(), 1);
        QCOMPARE(v.canvas().cursor().shape(), Qt::ArrowCursor);
        v.turnWheel({100, 100}, 3);
        v.view.resize(410, 400);
        QCOMPARE(v.view.shownRegion(), Whole);
    }

    void proportionsLeaveRoomInTheWindowsColour_data()
    {
        const Rows<QSize, QRect> row("view", "place");
        row("at the sides", QSize(640, 240), QRect(160, 0, 320, 240));
        row("above and below", QSize(320, 440), QRect(0, 100, 320, 240));
        row("none", QSize(640, 480), QRect(0, 0, 640, 480));
    }

    void proportionsLeaveRoomInTheWindowsColour()
    {
        QFETCH(QSize, view);
        QFETCH(QRect, place);
        ShownView v(view);
        QVERIFY(!v.view.KeepProportions());
        QPalette palette;
        palette.setColor(QPalette::Window, Qt::darkCyan);
        v.view.setPalette(palette);
        v.view.setKeepProportions(true);
        const QByteArray bytes = encodedImage(quarters({320, 240}), "bmp");
        // As it is decoded for the view, and as it is painted later.
        for (const bool decodedAtOnce : {true, false}) {
            if (decodedAtOnce)
                QVERIFY(!v.view.loadPicture(bytes).isNull());
            else
                v.view.setPicture(picture({320, 240}));
            const QImage shown = v.shown();
            const auto at = [&](QPoint p) { return shown.pixelColor(p); };
            QVERIFY(alike(at(place.topLeft()), Qt::red));
            QVERIFY(alike(at(place.topRight()), Qt::green));
            QVERIFY(alike(at(place.bottomLeft()), Qt::blue));
            QVERIFY(alike(at(place.bottomRight()), Qt::white));
            QVERIFY(alike(at(place.center() - QPoint(4, 4)), Qt::red));
            QVERIFY(alike(at(place.center() + QPoint(4, 4)), Qt::white));
            for (const QPoint outside :
                 {place.topLeft() - QPoint(1, 0), place.topLeft() - QPoint(0, 1),
                  place.bottomRight() + QPoint(1, 0), place.bottomRight() + QPoint(0, 1)}) {
                if (v.view.rect().contains(outside))
                    QCOMPARE(at(outside), QColor(Qt::darkCyan));
            }
        }
        palette.setColor(QPalette::Window, Qt::darkRed);
        v.view.setPalette(palette);
        if (place != v.view.rect())
            QCOMPARE(v.shown().pixelColor(0, 0), QColor(Qt::darkRed));
        v.view.setKeepProportions(false);
        QCOMPARE(v.view.shownRegion(), Whole);
        QVERIFY(alike(v.at(1, 1), Qt::red));
    }

    void proportionsMapClickAndWheelToTheRightPlace()
    {
        // The quarters meet at (320, 120), 320 pixels of 640 belong to the picture.
        ShownView v({640, 240});
        v.view.setKeepProportions(true);
        v.view.setPicture(picture({320, 240}));
        QVERIFY(alike(v.at(318, 118), Qt::red));
        for (int i = 0; i < 4; ++i)
            v.turnWheel({320, 120}, 1);
        QVERIFY(alike(v.at(316, 116), Qt::red));
        QVERIFY(alike(v.at(324, 124), Qt::white));
        QVERIFY(alike(v.at(10, 10), Qt::red)); // no room beside it any more
        v.view.setKeepProportions(true);
        v.turnWheel({470, 230}, 8); // the picture's bottom right
        QVERIFY(alike(v.at(470, 230), Qt::white));
        QVERIFY(v.view.shownRegion().left() > 0.5 && v.view.shownRegion().top() > 0.5);

        // A click, where one pixel is one pixel: undistorted as well.
        ShownView large({800, 600});
        large.view.setKeepProportions(true);
        large.view.setPicture(picture({600, 600}));
        QVERIFY(alike(large.at(120, 20), Qt::red));
        large.click(400, 300);
        const QRectF region = large.view.shownRegion();
        QVERIFY(qAbs(region.width() * 600 / 800 - region.height()) < 1e-9);
        QCOMPARE(region.center(), QPointF(0.5, 0.5));
        QVERIFY(alike(large.at(395, 295), Qt::red));
        QVERIFY(alike(large.at(405, 305), Qt::white));
        QVERIFY(qAbs(region.height() - 200.0 / 600) < 1e-9);
    }

    void proportionsDecodeNoMoreThanTheyShow()
    {
#ifndef __SANITIZE_ADDRESS__
        const QByteArray bytes = encodedImage(quarters({3840, 2160}));
        // What of the view the picture takes is as large as the other view.
        ShownView tall({480, 800});
        tall.view.setKeepProportions(true);
        QVERIFY(!tall.view.loadPicture(bytes).isNull());
        ShownView small({480, 270});
        const double times =
            timesTheCost([&] { QVERIFY(!tall.view.loadPicture(bytes).isNull()); },
                         [&] { QVERIFY(!small.view.loadPicture(bytes).isNull()); });
        qInfo("shown at %.2f of the cost of a view without room beside it", times);
        QVERIFY(times < 1.5);
#endif
    }

    void copyPutsTheImageOnTheClipboard()
    {
        ShownView v({400, 400});
        QAction& copy = *v.menu().findChild<QAction*>("mnuRcCopy");
        QClipboard& clipboard = *QApplication::clipboard();
        clipboard.setText("before");
        copy.trigger();
        QCOMPARE(clipboard.text(), "before"); // no picture
        v.view.setPicture(picture({64, 48}));
        v.click(200, 200); // all of it, zoomed or not
        copy.trigger();
        QCOMPARE(clipboard.image().convertToFormat(QImage::Format_RGB32), quarters({64, 48}));
    }

    void theEmptyViewSaysWhatToDo()
    {
        ShownView v({500, 200});
        const QString hint = "Choose a camera on the left, or type an address below.";
        const auto blank = [&] {
            QImage image(v.shown().size(), v.shown().format());
            image.fill(v.view.palette().color(QPalette::Window));
            return image;
        };
        const auto hasColour = [&](const QColor& colour) {
            const QImage shown = v.shown();
            for (int y = 0; y < shown.height(); ++y) {
                for (int x = 0; x < shown.width(); ++x) {
                    if (shown.pixelColor(x, y) == colour)
                        return true;
                }
            }
            return false;
        };
        QPalette palette;
        palette.setColor(QPalette::PlaceholderText, Qt::magenta);
        v.view.setPalette(palette);
        QCOMPARE(v.canvas().property("Caption").toString(), hint);
        QCOMPARE(v.canvas().accessibleDescription(), hint);
        QVERIFY(hasColour(Qt::magenta));
        // A dark desktop that does not set that colour.
        palette.setColor(QPalette::Window, QColor(49, 54, 59));
        palette.setColor(QPalette::WindowText, Qt::yellow);
        palette.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
        v.view.setPalette(palette);
        QImage dark = v.shown();
        int brightest = 0;
        for (int x = 0; x < dark.width(); ++x) {
            for (int y = 0; y < dark.height(); ++y)
                brightest = std::max(brightest, dark.pixelColor(x, y).red());
        }
        QVERIFY2(brightest > 150, qPrintable(QString::number(brightest)));
        palette.setColor(QPalette::PlaceholderText, Qt::magenta);
        v.view.setPalette(palette);
        // In the middle, with the edges free.
        QCOMPARE(v.shown().copy(0, 0, 500, 60), blank().copy(0, 0, 500, 60));
        QCOMPARE(v.shown().copy(0, 0, 20, 200), blank().copy(0, 0, 20, 200));
        v.view.setPicture(picture());
        QVERIFY(!hasColour(Qt::magenta));
        QCOMPARE(v.canvas().accessibleDescription(), QString());
        v.view.setPicture({});
        QVERIFY(hasColour(Qt::magenta));
        QCOMPARE(v.canvas().accessibleDescription(), hint);
        v.canvas().setProperty("Caption", "Bitte eine Kamera");
        QCOMPARE(v.canvas().accessibleDescription(), QString("Bitte eine Kamera"));
        v.canvas().setProperty("Caption", QString());
        QCOMPARE(v.shown(), blank());
    }
};

QTEST_MAIN(ImageViewMovesTest)
#include "tst_ImageViewMoves.moc"
