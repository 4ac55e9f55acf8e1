// Looking at a picture in the viewer: zooming, moving it, its proportions, copying it.

#include "display/ImageView.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/Waiting.h"

#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QWheelEvent>

namespace {

constexpr QRectF Whole(0, 0, 1, 1);

/// A camera on the loopback address, with what a person does to its picture.
class Looking : public ShownCamera
{
public:
    Looking() { server.listen(); }

    ImageView& image() { return part<ImageView>("imgMain"); }
    QWidget& canvas() { return part<QWidget>("picMain"); }
    /// Fetches a picture of that size; no two are the same.
    void fetchPicture(QSize size)
    {
        const QColor colour = QColor::fromHsv(m_fetched++ * 37 % 360, 255, 255);
        server.play(pictureAnswer(encodedPicture(size, colour)));
        fetch(server.url());
    }
    void turnWheel(QPoint at, int notches)
    {
        QWheelEvent event(at, canvas().mapToGlobal(QPointF(at)), {}, QPoint(0, notches * 120),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&canvas(), &event);
    }
    /// With the left button, by so many pixels of the screen.
    void drag(QPoint by)
    {
        // Otherwise a real drag out of the window would begin, and never end.
        if (canvas().cursor().shape() != Qt::OpenHandCursor)
            qFatal("the picture cannot be moved");
        const QPoint from(60, 60);
        const QPointF global = canvas().mapToGlobal(QPointF(from));
        QTest::mousePress(&canvas(), Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, from + by, global + by, Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(&canvas(), &move);
        QTest::mouseRelease(&canvas(), Qt::LeftButton, {},
                            canvas().mapFromGlobal((global + by).toPoint()));
    }
    void key(Qt::Key key) { QTest::keyClick(&cam, key); }

    ScriptedServer server;

private:
    int m_fetched = 0;
};

} // namespace

class WebCamLookingTest : public QObject
{
    Q_OBJECT
private slots:
    void aRefreshKeepsZoomAndPlace()
    {
        Looking l;
        l.fetchPicture({320, 240});
        l.turnWheel({300, 200}, 3);
        l.drag({-30, -20});
        const QRectF place = l.image().shownRegion();
        QVERIFY(place != Whole);
        l.fetchPicture({320, 240});
        QCOMPARE(l.image().shownRegion(), place);
        l.fetchPicture({320, 241});
        QCOMPARE(l.image().shownRegion(), Whole);
    }

    void aPictureLargerThanItsRoomIsDraggedAround()
    {
        Looking l;
        l.cam.setOriginalSize(true);
        l.fetchPicture({1000, 900});
        QCOMPARE(l.image().size(), QSize(1000, 900));
        const QSize room = l.image().parentWidget()->size();
        QCOMPARE(l.image().pos(), QPoint(0, 0));
        QCOMPARE(l.canvas().cursor().shape(), Qt::OpenHandCursor);
        l.drag({-100, -50});
        QCOMPARE(l.image().pos(), QPoint(-100, -50));
        QCOMPARE(l.image().shownRegion(), Whole); // the drag was no click
        // The next picture of that size stays there, one of another does not.
        l.fetchPicture({1000, 900});
        QCOMPARE(l.image().pos(), QPoint(-100, -50));
        l.drag({300, 300});
        QCOMPARE(l.image().pos(), QPoint(0, 0));
        l.drag({-3000, -3000});
        QCOMPARE(l.image().pos(), QPoint(room.width() - 1000, room.height() - 900));
        l.fetchPicture({1000, 901});
        QCOMPARE(l.image().pos(), QPoint(0, 0));
        // What fits in one direction moves in the other only.
        l.fetchPicture({100, 900});
        const QPoint start = l.image().pos();
        l.drag({40, -40});
        QCOMPARE(l.image().pos(), start - QPoint(0, 40));
        l.fetchPicture({100, 90});
        QCOMPARE(l.canvas().cursor().shape(), Qt::ArrowCursor);
    }

    void restoreImageUndoesPanning_data()
    {
        const Rows<bool> row("originalSize");
        row("stretched", false);
        row("original size", true);
    }

    void restoreImageUndoesPanning()
    {
        QFETCH(bool, originalSize);
        Looking l;
        l.cam.setOriginalSize(originalSize);
        l.fetchPicture({1000, 900});
        const QPoint start = l.image().pos();
        l.cam.setFocus();
        l.key(Qt::Key_Left);
        l.key(Qt::Key_Down);
        if (originalSize)
            l.drag({-100, -50});
        QVERIFY(l.image().pos() != start);
        l.part<QAction>("mnuRcRe").trigger();
        QCOMPARE(l.image().pos(), start);
        // And the arrow keys go on from there.
        for (int i = 0; i < 3; ++i)
            l.key(Qt::Key_Right);
        QCOMPARE(l.image().pos(), start + QPoint(20, 0));
        l.cam.resize(l.cam.size() + QSize(1, 0));
        QCOMPARE(l.image().pos(), start);
    }

    void draggingBringsBackWhatTheKeysHaveMovedTooFar()
    {
        Looking l;
        l.cam.setOriginalSize(true);
        l.fetchPicture({1000, 900});
        l.cam.setFocus();
        for (int i = 0; i < 30; ++i)
            l.key(Qt::Key_Right); // 200 pixels
        QCOMPARE(l.image().pos(), QPoint(200, 0));
        l.drag({50, 0});
        QCOMPARE(l.image().pos(), QPoint(200, 0));
        l.drag({-50, 0});
        QCOMPARE(l.image().pos(), QPoint(150, 0));
    }

    void aDragShowsNoBanner()
    {
        Looking l;
        l.cam.setOriginalSize(true);
        l.fetchPicture({1000, 900});
        QTest::mousePress(&l.canvas(), Qt::LeftButton, {}, {100, 40});
        for (const int y : {30, 20, 10, 4}) {
            const QPointF at(100, y);
            QMouseEvent move(QEvent::MouseMove, at, l.canvas().mapToGlobal(at), Qt::NoButton,
                             Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&l.canvas(), &move);
        }
        QTest::mouseRelease(&l.canvas(), Qt::LeftButton, {}, {100, 40});
        QVERIFY(!l.part<QWidget>("lblURl").isVisible());
        QVERIFY(l.image().y() < 0);
    }

    void keepProportionsShowsTheViewersPictureUndistorted()
    {
        Looking l;
        QVERIFY(!l.cam.KeepProportions());
        l.cam.setKeepProportions(true);
        l.fetchPicture({100, 300});
        const QImage shown = l.image().grab().toImage();
        const QColor room = l.image().palette().color(QPalette::Window);
        const int middle = shown.width() / 2;
        const int half = shown.height() / 6;
        QCOMPARE(shown.pixelColor(middle - half - 3, 100), room);
        QVERIFY(shown.pixelColor(middle - half + 3, 100) != room);
        QVERIFY(shown.pixelColor(middle + half - 3, 100) != room);
        QCOMPARE(shown.pixelColor(middle + half + 3, 100), room);
        l.cam.setKeepProportions(false);
        QVERIFY(l.image().grab().toImage().pixelColor(0, 0) != room);
    }

    void ctrlCCopiesTheImage()
    {
        Looking l;
        QClipboard& clipboard = *QApplication::clipboard();
        l.fetchPicture({64, 48});
        clipboard.setText("before");
        l.cam.activateWindow();
        QVERIFY(waitForActive(&l.cam));
        QTest::keyClick(&l.cam, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard.image().size(), QSize(64, 48));
        QCOMPARE(clipboard.image().pixelColor(5, 5),
                 Still::fromBytes(l.picture()).image().pixelColor(5, 5));
    }
};

QTEST_MAIN(WebCamLookingTest)
#include "tst_WebCamLooking.moc"
