// When the strip decodes, and what that costs.

#include "support/OddPictures.h"
#include "support/Pictures.h"
#include "support/ShownStrip.h"
#include "support/Slower.h"
#include "support/TimeSeam.h"

#include <QPainter>

#include <algorithm>
#include <ctime>
#include <functional>

static double processorSeconds()
{
    return double(std::clock()) / CLOCKS_PER_SEC;
}

/// Lets all events pass that are there now.
static void turn()
{
    QCoreApplication::sendPostedEvents();
    QCoreApplication::processEvents();
}

/// 45 pictures of 3840 x 2160 pixels and about a megabyte.
static const ImageList& largePictures()
{
    static const ImageList list = [] {
        QImage image = odd::scenery({3840, 2160});
        QByteArray bytes;
        for (int quality = 95; quality > 5; quality -= 5) {
            QBuffer buffer(&bytes);
            buffer.open(QIODevice::WriteOnly | QIODevice::Truncate);
            image.save(&buffer, "jpg", quality);
            if (bytes.size() < 1'200'000)
                break;
        }
        qInfo("pictures of %lld bytes", qlonglong(bytes.size()));
        ImageList pictures;
        for (int n = 1; n <= 45; ++n) {
            // Each has bytes of its own.
            QByteArray own(bytes.constData(), bytes.size());
            pictures.Add(Still::fromBytes(own, ThumbCell::SizePx));
        }
        return pictures;
    }();
    return list;
}

class ThumbViewFillTest : public QObject
{
    Q_OBJECT
private slots:
    void showsEachPictureStretchedOverItsPlace()
    {
        // Left half red, right half blue, and far from four to three.
        QImage halves(900, 90, QImage::Format_RGB32);
        halves.fill(Qt::red);
        QPainter(&halves).fillRect(450, 0, 450, 90, Qt::blue);
        ShownStrip strip({200, 300});
        strip.view.AddImage(Still::fromImage(halves));
        strip.view.AddImage(Still::fromImage(plainImage({1, 1}, Qt::green)));
        QVERIFY(strip.waitUntilFilled());
        const QImage shown = strip.view.grab().toImage();
        for (int y : {8, 40, 67}) {
            QCOMPARE(shown.pixelColor(0, y), QColor(Qt::red));
            QCOMPARE(shown.pixelColor(38, y), QColor(Qt::red));
            QCOMPARE(shown.pixelColor(42, y), QColor(Qt::blue));
            QCOMPARE(shown.pixelColor(79, y), QColor(Qt::blue));
            QCOMPARE(shown.pixelColor(90, y), QColor(Qt::green));
            QCOMPARE(shown.pixelColor(169, y), QColor(Qt::green));
        }
        const QColor panel = strip.view.palette().color(QPalette::Base);
        for (const QPoint outside : {QPoint(0, 7), QPoint(0, 68), QPoint(80, 30), QPoint(89, 30)})
            QCOMPARE(shown.pixelColor(outside), panel);
    }

    void showsEmptyFramesUntilThen()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 2);
        // Not even a turn of the event loop has passed.
        QCOMPARE(strip.filled(), 0);
        const QImage empty = strip.view.grab().toImage();
        const QColor panel = strip.view.palette().color(QPalette::Base);
        QVERIFY(empty.pixelColor(0, 30) != panel);
        QVERIFY(empty.pixelColor(40, 30) != panel);
        QVERIFY(empty.pixelColor(0, 30) != empty.pixelColor(40, 30));
        QVERIFY(strip.waitUntilFilled());
        strip.view.AddImage({});
        QCOMPARE(strip.view.ThumbCount(), 3);
        QCOMPARE(strip.view.grab(QRect(0, 88, 80, 60)).toImage(), empty.copy(0, 8, 80, 60));
    }

    void decodesOneAtATurnThoseInViewFirst()
    {
        ShownStrip strip({200, 160});
        strip.add(1, 12);
        strip.bar().setValue(160);
        Timer& fill = timerOf(strip.view, "tmrFill");
        QVERIFY(fill.Enabled());
        // Rows of two; the third and fourth are in view, wholly or in part. Then those behind.
        const QList<int> order{4, 5, 6, 7, 8, 9, 10, 11, 0, 1, 2, 3};
        for (int done = 0; done < order.size(); ++done) {
            QCOMPARE(strip.filled(), done);
            QVERIFY(!strip.img(order[done]).isRendered());
            fill.elapse();
            QVERIFY(strip.img(order[done]).isRendered());
        }
        fill.elapse();
        QVERIFY(!fill.Enabled());
    }

    void decodesWhatIsScrolledInto()
    {
        ShownStrip strip({200, 160});
        const ImageList many = numberedList(1, 1000);
        strip.view.ShowImages(many);
        Timer& fill = timerOf(strip.view, "tmrFill");
        QTRY_VERIFY(!fill.Enabled());
        // Those in view, and a hundred behind them, which keeps few pixels and costs little.
        QCOMPARE(strip.filled(), 104);
        QVERIFY(strip.img(103).isRendered());
        strip.bar().setValue(strip.bar().maximum());
        QTRY_VERIFY(strip.img(999).isRendered());
        QTRY_VERIFY(!fill.Enabled());
        QVERIFY(!strip.img(500).isRendered());
    }

    void decodesNothingWhileHidden()
    {
        const ImageList& list = largePictures();
        ShownStrip strip({900, 560});
        strip.view.hide();
        const double before = processorSeconds();
        for (int n = 1; n <= list.Count(); ++n) {
            strip.view.AddImage(list.Picture(n));
            turn();
        }
        const double cost = processorSeconds() - before;
        qInfo("45 pictures added in %.1f ms of processor time", cost * 1000);
        QVERIFY(cost < 0.1 * Slower);
        QVERIFY(!timerOf(strip.view, "tmrFill").Enabled());
        QCOMPARE(strip.filled(), 0);
        strip.window.hide();
        strip.view.show();
        turn();
        QCOMPARE(strip.filled(), 0);
        strip.window.show();
        QVERIFY(strip.waitUntilFilled());
    }

    void stopsWhenItIsHidden()
    {
        ShownStrip strip({200, 160});
        strip.add(1, 12);
        Timer& fill = timerOf(strip.view, "tmrFill");
        fill.elapse();
        strip.view.hide();
        QVERIFY(!fill.Enabled());
        turn();
        QCOMPARE(strip.filled(), 1);
        strip.view.show();
        QVERIFY(fill.Enabled());
    }

    void rendersNoPictureTwice()
    {
        ShownStrip strip({200, 160});
        strip.add(1, 6);
        QVERIFY(strip.waitUntilFilled());
        // What moves takes its pixels along.
        strip.view.RemImage(1);
        QCOMPARE(strip.filled(), 5);
        for (int i = 0; i < 5; ++i)
            QVERIFY(!strip.img(i).needsRendering());
        // What is not rendered yet does not count as such where something rendered stood.
        strip.add(7, 7);
        strip.view.RemImage(1);
        QCOMPARE(strip.filled(), 4);
        QVERIFY(!strip.img(4).isRendered());
        QVERIFY(strip.waitUntilFilled());
        QCOMPARE(strip.img(0).grab().toImage().pixelColor(40, 30), QColor(0, 0, 3));
        QCOMPARE(strip.img(4).grab().toImage().pixelColor(40, 30), QColor(0, 0, 7));
        Timer& fill = timerOf(strip.view, "tmrFill");
        QTRY_VERIFY(!fill.Enabled());
        strip.view.grab();
        QVERIFY(!fill.Enabled());
    }

    void whatDoesNotDecodeAnyMoreStaysEmpty()
    {
        // The bytes are spoilt after the still has seen them whole.
        QByteArray bytes = encodedPicture({200, 100}, Qt::red);
        const Still spoilt =
            Still::fromBytes(QByteArray::fromRawData(bytes.constData(), bytes.size()));
        QVERIFY(!spoilt.isNull());
        bytes.fill(0);
        QVERIFY(spoilt.image().isNull());
        ShownStrip strip({200, 160});
        strip.view.AddImage(spoilt);
        strip.add(1, 1);
        Timer& fill = timerOf(strip.view, "tmrFill");
        QTRY_VERIFY(!fill.Enabled());
        QVERIFY(!strip.img(0).isRendered());
        QVERIFY(strip.img(1).isRendered());
        strip.view.AddImage({});
        QCOMPARE(strip.img(0).grab().toImage(), strip.img(2).grab().toImage());
        // Nor is it tried again and again.
        strip.view.grab();
        QTRY_VERIFY(!fill.Enabled());
    }

    void largePicturesAreOnScreenInTimeAndTheWindowAnswers()
    {
        const ImageList& list = largePictures();
        ShownStrip strip({900, 560});
        // Something else that happens in the window, again and again.
        QElapsedTimer sinceAnswer;
        qint64 longest = 0;
        int most = 0;
        int before = 0;
        const std::function<void()> answer = [&] {
            longest = std::max(longest, sinceAnswer.restart());
            const int now = strip.filled();
            most = std::max(most, now - before);
            before = now;
            if (now < list.Count())
                QTimer::singleShot(0, &strip.window, answer);
        };
        QElapsedTimer clock;
        clock.start();
        const double costBefore = processorSeconds();
        strip.view.ShowImages(list);
        const qint64 shown = clock.elapsed();
        sinceAnswer.start();
        answer();
        QVERIFY(strip.waitUntilFilled());
        strip.view.repaint();
        const double cost = processorSeconds() - costBefore;
        qInfo(
            "shown in %lld ms, filled in %lld ms, %.2f s of processor time, answers every %lld ms "
            "at the latest",
            qlonglong(shown), qlonglong(clock.elapsed()), cost, qlonglong(longest));
        // In processor time, so that a busy machine does not matter.
        QVERIFY(cost < 1.5 * Slower);
        QVERIFY(shown < 100 * Slower);
        QVERIFY(longest < 300 * Slower);
        QVERIFY(most <= 2);
    }

    void theLastOfManyCostsNoMoreThanTheFirst()
    {
        const Still picture = numberedStill(1);
        const auto costOf45From = [&](int count) {
            ShownStrip strip({900, 560});
            strip.view.hide();
            ImageList list;
            for (int n = 0; n < count; ++n)
                list.Add(picture);
            strip.view.ShowImages(list);
            const double before = processorSeconds();
            for (int n = 0; n < 45; ++n)
                strip.view.AddImage(picture);
            return processorSeconds() - before;
        };
        costOf45From(0);
        const double first = costOf45From(0);
        const double late = costOf45From(4000);
        qInfo("45 cost %.2f ms, after 4000 others %.2f ms", first * 1000, late * 1000);
        QVERIFY(late < 5 * first + 0.003 * Slower);
    }

    void thousandsAreShownInTime()
    {
        const ImageList list = numberedList(1, 10'000);
        ShownStrip strip({900, 560});
        double before = processorSeconds();
        strip.view.ShowImages(list);
        turn();
        const double first = processorSeconds() - before;
        before = processorSeconds();
        strip.view.ShowImages(list);
        turn();
        const double again = processorSeconds() - before;
        before = processorSeconds();
        strip.view.resize(800, 560);
        turn();
        const double resized = processorSeconds() - before;
        qInfo("10,000 shown in %.2f s, again in %.2f s, resized in %.2f s", first, again, resized);
        QCOMPARE(strip.view.ThumbCount(), 10'000);
        QVERIFY(first < 1 * Slower);
        QVERIFY(again < 1 * Slower);
        QVERIFY(resized < 1 * Slower);
    }
};

QTEST_MAIN(ThumbViewFillTest)
#include "tst_ThumbViewFill.moc"
