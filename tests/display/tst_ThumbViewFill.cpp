// When the strip decodes, and what that costs.

#include "support/Cost.h"
#include "support/OddPictures.h"
#include "support/Pictures.h"
#include "support/ShownStrip.h"
#include "support/TimeSeam.h"

#include <QPainter>

#include <algorithm>
#include <functional>

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

/// What the strip has to do at least.
static void decodeAll(const ImageList& list)
{
    for (int n = 1; n <= list.Count(); ++n)
        QVERIFY(!list.Picture(n).imageNoSmallerThan(ThumbCell::SizePx).isNull());
}

class ThumbViewFillTest : public QObject
{
    Q_OBJECT
private slots:
    void showsEachFormat()
    {
        ShownStrip strip({200, 300});
        strip.view.AddImage(Still::fromBytes(encodedPicture({80, 60}, Qt::red, "png")));
        strip.view.AddImage(Still::fromBytes(encodedPicture({80, 60}, Qt::blue, "webp")));
        QVERIFY(strip.waitUntilFilled());
        const QImage shown = strip.view.grab().toImage();
        QCOMPARE(shown.pixelColor(40, 40), QColor(Qt::red));
        const QColor blue = shown.pixelColor(130, 40); // With losses.
        QVERIFY(blue.blue() > 240 && blue.red() < 15);
    }

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
        const double times = timesTheCost(
            [&] {
                strip.view.ShowImages({});
                for (int n = 1; n <= list.Count(); ++n) {
                    strip.view.AddImage(list.Picture(n));
                    turn();
                }
            },
            [&] { decodeAll(list); });
        qInfo("45 pictures added at %.3f of the cost of decoding them", times);
        QVERIFY(times < 0.25);
        QCOMPARE(strip.view.ThumbCount(), list.Count());
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

    void theWindowAnswersBetweenTwoLargePictures()
    {
        const ImageList& list = largePictures();
        ShownStrip strip({900, 560});
        // Something else that happens in the window, again and again.
        int most = 0;
        int before = 0;
        const std::function<void()> answer = [&] {
            const int now = strip.filled();
            most = std::max(most, now - before);
            before = now;
            if (now < list.Count())
                QTimer::singleShot(0, &strip.window, answer);
        };
        strip.view.ShowImages(list);
        QCOMPARE(strip.filled(), 0);
        answer();
        QVERIFY(strip.waitUntilFilled());
        QVERIFY(most <= 2);
    }

    void largePicturesCostLittleMoreThanTheirDecoding()
    {
        const ImageList& list = largePictures();
        ShownStrip strip({900, 560});
        const double times = timesTheCost(
            [&] {
                strip.view.ShowImages({});
                strip.view.ShowImages(list);
                QVERIFY(strip.waitUntilFilled());
                strip.view.repaint();
            },
            [&] { decodeAll(list); });
        qInfo("%.2f times the cost of decoding them", times);
        QVERIFY(times < 3);
    }

    void theLastOfManyCostsNoMoreThanTheFirst()
    {
        const Still picture = numberedStill(1);
        const auto costOf45After = [&](int count) {
            ShownStrip strip({900, 560});
            strip.view.hide();
            ImageList list;
            for (int n = 0; n < count; ++n)
                list.Add(picture);
            strip.view.ShowImages(list);
            return costOf([&] {
                for (int n = 0; n < 45; ++n)
                    strip.view.AddImage(picture);
            });
        };
        const double first = costOf45After(400);
        const double times = costOf45After(4000) / first;
        qInfo("45 after 4000 others cost %.2f times as much as after 400", times);
        QVERIFY(times < 5);
    }

    void eachOfTenThousandCostsTheSame()
    {
        constexpr int few = 1'000;
        QMap<int, ImageList> lists;
        for (const int count : {few, 10 * few})
            lists[count] = numberedList(1, count);
        ShownStrip strip({900, 560});
        const double shown = growth(few, [&](int count) {
            strip.view.ShowImages({});
            strip.view.ShowImages(lists[count]);
            turn();
            QCOMPARE(strip.view.ThumbCount(), count);
        });
        const double again = growth(few, [&](int count) {
            strip.view.ShowImages(lists[count]);
            turn();
        });
        const auto costOfResizing = [&](int count) {
            strip.view.ShowImages(lists[count]);
            turn();
            return costOf([&] {
                for (const int width : {800, 900}) {
                    strip.view.resize(width, 560);
                    turn();
                }
            });
        };
        const double ofFew = costOfResizing(few);
        const double resized = costOfResizing(10 * few) / ofFew;
        qInfo("ten times as many: %.1f times to show, %.1f to show again, %.1f to resize", shown,
              again, resized);
        for (const double times : {shown, again, resized})
            QVERIFY(times < MostGrowth);
    }

    void whatChangesAllOfThousandsCostsEachTheSame_data()
    {
        QTest::addColumn<bool>("disabled");
        QTest::newRow("disabled, as when the window closes") << true;
        QTest::newRow("another window is active") << false;
    }

    void whatChangesAllOfThousandsCostsEachTheSame()
    {
        QFETCH(bool, disabled);
        constexpr int few = 400;
        ShownStrip strip({900, 560});
        // Else a window that is not active looks like one that is.
        QPalette palette = strip.window.palette();
        palette.setColor(QPalette::Inactive, QPalette::Text, Qt::darkGray);
        const auto costOfChange = [&](int count) {
            strip.view.ShowImages(numberedList(1, count));
            strip.view.hide(); // Other colours, too, are slow where thousands are on show.
            strip.window.setPalette(palette);
            strip.view.show();
            turn();
            return costOf([&] {
                for (const bool isFirst : {true, false}) {
                    QEvent event(isFirst ? QEvent::WindowDeactivate : QEvent::WindowActivate);
                    if (disabled)
                        strip.window.setEnabled(!isFirst);
                    else
                        QCoreApplication::sendEvent(&strip.window, &event);
                    turn();
                }
            });
        };
        const double ofFew = std::max(costOfChange(few), costOf(decodeTwelveMegapixels) / 100);
        const double times = costOfChange(10 * few) / ofFew;
        qInfo("ten times as many: %.1f times", times);
        QVERIFY(times < MostGrowth);
    }

    void whatComesIntoViewIsAsItIsByThen()
    {
        ShownStrip strip({200, 300});
        strip.add(1, 60);
        const auto lastCaption = [&] {
            strip.bar().setValue(strip.bar().maximum());
            turn();
            const QRect place(strip.lbl(59).mapTo(&strip.window, QPoint()), strip.lbl(59).size());
            const QImage seen = strip.window.screen()
                                    ->grabWindow(strip.window.winId(), place.x(), place.y(),
                                                 place.width(), place.height())
                                    .toImage();
            strip.bar().setValue(0);
            turn();
            return seen;
        };
        const QImage enabled = lastCaption();
        QVERIFY(!enabled.isNull());
        strip.window.setEnabled(false);
        turn();
        QVERIFY(lastCaption() != enabled);
        strip.window.setEnabled(true);
        turn();
        QCOMPARE(lastCaption(), enabled);
    }
};

QTEST_MAIN(ThumbViewFillTest)
#include "tst_ThumbViewFill.moc"
