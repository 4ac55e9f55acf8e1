#include "support/Cost.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ShownView.h"
#include "support/Waiting.h"

#include <QVariantList>

#include <algorithm>
#include <cmath>
#include <limits>

class ImageViewTest : public QObject
{
    Q_OBJECT
private slots:
    void isEmptyUntilTheFirstPicture()
    {
        ShownView v({300, 200});
        QVERIFY(v.view.Picture().isNull());
        QCOMPARE(v.view.IWidth(), 0);
        QCOMPARE(v.view.IHeight(), 0);
        v.click(10, 10);
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
        v.click(10, 10, Qt::RightButton);
        QVERIFY(!v.menu().isVisible());
    }

    void stretchesOverTheWholeView()
    {
        // 320 x 240 in 640 x 240: distorted, no letter-boxing.
        ShownView v({640, 240});
        QSignalSpy loaded(&v.view, &ImageView::PictureLoad);
        v.view.setPicture(Still::fromImage(quarters({320, 240})));
        QCOMPARE(loaded.count(), 1);
        QCOMPARE(v.view.IWidth(), 320);
        QCOMPARE(v.view.IHeight(), 240);
        QVERIFY(alike(v.at(2, 2), Qt::red));
        QVERIFY(alike(v.at(637, 2), Qt::green));
        QVERIFY(alike(v.at(2, 237), Qt::blue));
        QVERIFY(alike(v.at(637, 237), Qt::white));
        QVERIFY(alike(v.at(315, 2), Qt::red));
        QVERIFY(alike(v.at(325, 2), Qt::green));
    }

    void loadsOnlyPictures()
    {
        ShownView v({300, 200});
        const QByteArray picture = encodedPicture({64, 48}, Qt::red);
        const Still given = v.view.loadPicture(picture);
        QCOMPARE(given.bytes(), picture);
        QVERIFY(given.isSameAs(v.view.Picture()));
        QSignalSpy loaded(&v.view, &ImageView::PictureLoad);
        QVERIFY(v.view.loadPicture("no picture").isNull());
        QVERIFY(v.view.loadPicture({}).isNull());
        QCOMPARE(loaded.count(), 0);
        QCOMPARE(v.view.Picture().bytes(), picture);
        QVERIFY(alike(v.at(150, 100), Qt::red));
        for (const char* format : {"bmp", "jpg"}) {
            QVERIFY(!v.view.loadPicture(encodedPicture({10, 10}, Qt::blue, format)).isNull());
            QVERIFY(alike(v.at(150, 100), Qt::blue));
        }
        QVERIFY(!v.view.loadPicture(smallGif()).isNull());
        QCOMPARE(v.view.IWidth(), 2);
        QCOMPARE(v.view.GetOriginalPic().bytes(), smallGif());
    }

    void stretchingIsSmoothBothWays()
    {
        // Shrunk: lines a pixel wide become their mean. Grown: a step becomes a ramp.
        QImage lines(800, 100, QImage::Format_RGB32);
        for (int x = 0; x < lines.width(); ++x) {
            for (int y = 0; y < lines.height(); ++y)
                lines.setPixelColor(x, y, x % 2 ? Qt::white : Qt::black);
        }
        ShownView shrunk({100, 100});
        shrunk.view.setPicture(Still::fromImage(lines));
        const int grey = shrunk.at(50, 50).red();
        QVERIFY2(grey > 100 && grey < 156, qPrintable(QString::number(grey)));

        QImage step(2, 1, QImage::Format_RGB32);
        step.setPixelColor(0, 0, Qt::black);
        step.setPixelColor(1, 0, Qt::white);
        ShownView grown({400, 20});
        grown.view.setPicture(Still::fromImage(step));
        const int middle = grown.at(200, 10).red();
        QVERIFY2(middle > 60 && middle < 196, qPrintable(QString::number(middle)));
        QCOMPARE(grown.at(2, 10).red(), 0);
    }

    void aClickZoomsTheSquareAroundIt_data()
    {
        const Rows<QSize, QPoint, QPoint> row("size", "click", "corner");
        row("near the top left", QSize(400, 300), QPoint(10, 10), QPoint(0, 0));
        row("50 from the right edge", QSize(400, 300), QPoint(350, 100), QPoint(200, 0));
        row("middle", QSize(400, 400), QPoint(200, 220), QPoint(100, 120));
        row("exactly at the edge", QSize(400, 400), QPoint(300, 300), QPoint(200, 200));
        row("a view smaller than the square", QSize(150, 400), QPoint(60, 200), QPoint(-50, 100));
    }

    void aClickZoomsTheSquareAroundIt()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, click);
        QFETCH(QPoint, corner);
        ShownView v(size);
        v.view.setPicture(Still::fromImage(quarters({800, 600})));
        v.click(click.x(), click.y());
        const QRectF region = v.view.shownRegion();
        QCOMPARE(region.x() * size.width(), corner.x());
        QCOMPARE(region.y() * size.height(), corner.y());
        QCOMPARE(region.width() * size.width(), 200.0);
        QCOMPARE(region.height() * size.height(), 200.0);
    }

    void zoomShowsTheRegionFromTheUnscaledPicture()
    {
        // A picture four times the view: lines that blur to grey in the whole view show in the
        // zoom.
        QImage image(1600, 1200, QImage::Format_RGB32);
        for (int x = 0; x < image.width(); ++x) {
            for (int y = 0; y < image.height(); ++y)
                image.setPixelColor(x, y, (x / 2) % 2 ? Qt::white : Qt::black);
        }
        ShownView v({400, 300});
        v.view.setPicture(Still::fromImage(image));
        const auto contrast = [&] {
            const QImage shown = v.shown();
            int least = 255;
            int most = 0;
            for (int x = 50; x < 350; ++x) {
                least = std::min(least, shown.pixelColor(x, 150).red());
                most = std::max(most, shown.pixelColor(x, 150).red());
            }
            return most - least;
        };
        QVERIFY(contrast() < 40);
        v.click(200, 150);
        v.click(200, 150);
        QVERIFY2(contrast() > 200, qPrintable(QString::number(contrast())));

        // And it is exactly that region: the border of the quarters runs through its middle.
        ShownView q({400, 400});
        q.view.setPicture(Still::fromImage(quarters({800, 800})));
        q.click(200, 200);
        QVERIFY(alike(q.at(195, 195), Qt::red));
        QVERIFY(alike(q.at(205, 195), Qt::green));
        QVERIFY(alike(q.at(195, 205), Qt::blue));
        QVERIFY(alike(q.at(205, 205), Qt::white));
    }

    void eachClickZoomsIntoTheLast()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({800, 800})));
        v.click(100, 100);
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 0.5, 0.5));
        v.click(399, 399);
        QCOMPARE(v.view.shownRegion(), QRectF(0.25, 0.25, 0.25, 0.25));
        QVERIFY(alike(v.at(200, 200), Qt::red));
        v.click(200, 200);
        QCOMPARE(v.view.shownRegion(), QRectF(0.3125, 0.3125, 0.125, 0.125));
    }

    void restoreAndResizeUndoTheZoom()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({800, 800})));
        v.click(10, 10);
        QVERIFY(alike(v.at(390, 390), Qt::red));
        v.menu().findChild<QAction*>("mnuRcRe")->trigger();
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
        QVERIFY(alike(v.at(390, 390), Qt::white));
        v.click(10, 10);
        v.view.resize(401, 400);
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
        QVERIFY(alike(v.at(390, 390), Qt::white));
    }

    void restoreAfterSeveralZoomsShowsTheWholePicture()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({800, 800})));
        for (int i = 0; i < 3; ++i)
            v.click(10, 10);
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 0.125, 0.125));
        QVERIFY(alike(v.at(390, 390), Qt::red));
        v.menu().findChild<QAction*>("mnuRcRe")->trigger();
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
        QVERIFY(alike(v.at(10, 10), Qt::red));
        QVERIFY(alike(v.at(390, 10), Qt::green));
        QVERIFY(alike(v.at(10, 390), Qt::blue));
        QVERIFY(alike(v.at(390, 390), Qt::white));
    }

    void aNewPictureUndoesTheZoom()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({800, 800})));
        v.click(10, 10);
        v.view.setPicture(Still::fromImage(quarters({400, 400})));
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
        QVERIFY(alike(v.at(390, 390), Qt::white));
    }

    void zoomingShowsThePictureThatIsOnShow()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({800, 800})));
        v.click(10, 10);
        QVERIFY(alike(v.at(200, 200), Qt::red));
        v.view.setPicture(Still::fromImage(plainImage({800, 800}, Qt::darkCyan)));
        v.click(10, 10);
        QVERIFY(alike(v.at(200, 200), Qt::darkCyan));
    }

    void aZoomThatShrinksIsSmoothToo()
    {
        // Even the zoomed part of this picture is five times the view.
        QImage lines(4000, 3000, QImage::Format_RGB32);
        for (int y = 0; y < lines.height(); ++y) {
            auto* row = reinterpret_cast<QRgb*>(lines.scanLine(y));
            for (int x = 0; x < lines.width(); ++x)
                row[x] = x % 2 ? 0xffffffff : 0xff000000;
        }
        ShownView v({400, 300});
        v.view.setPicture(Still::fromImage(lines));
        v.click(200, 150);
        const QImage shown = v.shown();
        for (int x = 20; x < 380; ++x) {
            const int grey = shown.pixelColor(x, 150).red();
            QVERIFY2(grey > 90 && grey < 166, qPrintable(QString::number(grey)));
        }
    }

    void decodesByHalves()
    {
#ifndef __SANITIZE_ADDRESS__
        const QByteArray picture = encodedImage(quarters({3840, 2160}));
        ShownView v({400, 225});
        const double times = timesTheCost([&] { QVERIFY(!v.view.loadPicture(picture).isNull()); },
                                          [&] { Still::fromBytes(picture); });
        qInfo("shown at %.2f of the cost of a whole decode", times);
        QVERIFY(times < 0.7);
#endif
    }

    void endlessZoomingStaysHarmless()
    {
        for (const QSize size : {QSize(800, 600), QSize(100, 80)}) {
            ShownView v(size);
            v.view.setPicture(Still::fromImage(quarters({64, 48})));
            for (int i = 0; i < 200; ++i) {
                v.click(size.width() / 3, size.height() / 3);
                v.shown();
            }
            const QRectF region = v.view.shownRegion();
            QVERIFY(std::isfinite(region.width()) && region.width() > 0);
            v.menu().findChild<QAction*>("mnuRcRe")->trigger();
            QVERIFY(alike(v.at(2, 2), Qt::red));
        }
    }

    void otherButtonsPopUpTheMenu()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({800, 800})));
        for (const auto button : {Qt::RightButton, Qt::MiddleButton}) {
            v.click(50, 60, button);
            QTRY_VERIFY(v.menu().isVisible());
            QCOMPARE(v.menu().pos(), v.canvas().mapToGlobal(QPoint(50, 60)));
            QTest::keyClick(&v.menu(), Qt::Key_Escape);
            QTRY_VERIFY(!v.menu().isVisible());
        }
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
    }

    void theMenuKeepsItsCaptions()
    {
        ImageView view;
        const auto actions = view.findChild<QMenu*>("mnuRc")->actions();
        QCOMPARE(actions.size(), 4);
        QCOMPARE(actions[0]->objectName(), "mnuRcRe");
        QCOMPARE(actions[0]->text(), "Restore Image");
        QVERIFY(actions[1]->isSeparator());
        QCOMPARE(actions[2]->objectName(), "mnuRcDesk");
        QCOMPARE(actions[2]->text(), "Set as Desktop Background");
        QCOMPARE(actions[3]->objectName(), "mnuRcCopy");
        QCOMPARE(actions[3]->text(), "Copy Image");
        QCOMPARE(actions[3]->shortcut(), QKeySequence("Ctrl+C"));
    }

    void originalSizeTakesThePicturesSize()
    {
        ShownView v({640, 480});
        QVERIFY(!v.view.OriginalSize());
        v.view.setOriginalSize(true);
        QCOMPARE(v.view.size(), QSize(640, 480)); // no picture yet
        v.view.setPicture(Still::fromImage(quarters({352, 288})));
        QCOMPARE(v.view.size(), QSize(352, 288));
        QVERIFY(!v.view.loadPicture(encodedPicture({100, 50}, Qt::red)).isNull());
        QCOMPARE(v.view.size(), QSize(100, 50));
        QCOMPARE(v.canvas().size(), QSize(100, 50));
        // Shown one to one: each pixel is the picture's own.
        v.view.setPicture(Still::fromImage(quarters({60, 40})));
        QCOMPARE(v.shown().convertToFormat(QImage::Format_RGB32), quarters({60, 40}));
    }

    void switchingOriginalSizeOffLeavesTheSize()
    {
        ShownView v({640, 480});
        v.view.setPicture(Still::fromImage(quarters({352, 288})));
        QCOMPARE(v.view.size(), QSize(640, 480));
        v.view.setOriginalSize(true);
        QCOMPARE(v.view.size(), QSize(352, 288));
        v.view.setOriginalSize(false);
        QCOMPARE(v.view.size(), QSize(352, 288));
    }

    void setPictureEmitsAndEmptyOneClears()
    {
        ShownView v({400, 400});
        v.view.setPicture(Still::fromImage(quarters({80, 80})));
        QVERIFY(alike(v.at(10, 10), Qt::red));
        v.view.setPicture({});
        QVERIFY(v.view.Picture().isNull());
        QVERIFY(!alike(v.at(10, 10), Qt::red));
        v.click(10, 10);
        QCOMPARE(v.view.shownRegion(), QRectF(0, 0, 1, 1));
    }

    void mouseMovesArePassedOn()
    {
        ShownView v({400, 400});
        QSignalSpy moves(&v.view, &ImageView::MouseMove);
        const auto move = [&](Qt::MouseButtons buttons, Qt::KeyboardModifiers modifiers) {
            QMouseEvent event(QEvent::MouseMove, QPointF(30, 40), QPointF(30, 40), Qt::NoButton,
                              buttons, modifiers);
            QApplication::sendEvent(&v.canvas(), &event);
            return moves.takeLast();
        };
        QCOMPARE(move(Qt::NoButton, Qt::NoModifier), (QVariantList{0, 0, 30, 40}));
        QCOMPARE(move(Qt::LeftButton | Qt::MiddleButton, Qt::ShiftModifier),
                 (QVariantList{5, 1, 30, 40}));
        QCOMPARE(move(Qt::RightButton, Qt::ControlModifier | Qt::AltModifier),
                 (QVariantList{2, 6, 30, 40}));
        QVERIFY(v.canvas().hasMouseTracking());
    }
};

QTEST_MAIN(ImageViewTest)
#include "tst_ImageView.moc"
