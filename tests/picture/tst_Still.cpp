#include "picture/Still.h"

#include "support/Cost.h"
#include "support/MessageLog.h"
#include "support/OddPictures.h"
#include "support/OddPng.h"
#include "support/OddWebp.h"
#include "support/Rows.h"

#include <QImageIOHandler>
#include <QImageReader>

namespace {

constexpr QSize Small(37, 21);

} // namespace

class StillTest : public QObject
{
    Q_OBJECT
private slots:
    void isNullWithoutAPicture()
    {
        const Still still;
        QVERIFY(still.isNull());
        QCOMPARE(still.size(), QSize(0, 0));
        QVERIFY(still.bytes().isEmpty());
        QVERIFY(still.image().isNull());
        QVERIFY(still.imageNoSmallerThan(QSize(1, 1)).isNull());
        QVERIFY(Still::fromImage(QImage()).isNull());
    }

    void keepsTheBytesAndGivesThePixels_data()
    {
        const Rows<QByteArray, QImage> row("bytes", "pixels");
        const QImage scenery = odd::scenery(Small);
        const QByteArray bitmap = odd::encoded(scenery, "bmp");
        const QByteArray jpeg = odd::encoded(scenery, "jpg");
        const QByteArray progressive = odd::encoded(scenery, "jpg", true);
        const QByteArray grey = odd::encoded(scenery.convertedTo(QImage::Format_Grayscale8), "jpg");
        row("bitmap", bitmap, scenery);
        row("bitmap of 256 colours",
            odd::encoded(scenery.convertedTo(QImage::Format_Indexed8), "bmp"),
            scenery.convertedTo(QImage::Format_Indexed8).convertedTo(QImage::Format_RGB32));
        row("gif", odd::gifPattern(Small), odd::gifPatternPixels(Small));
        row("jpeg", jpeg, QImage::fromData(jpeg));
        row("progressive jpeg", progressive, QImage::fromData(progressive));
        row("grey jpeg", grey, QImage::fromData(grey));
        const QImage greyPixels = scenery.convertedTo(QImage::Format_Grayscale8);
        const QImage few = scenery.convertedTo(QImage::Format_Indexed8);
        row("png", odd::encoded(scenery, "png"), scenery);
        row("grey png", odd::encoded(greyPixels, "png"), greyPixels);
        row("png of 256 colours", odd::encoded(few, "png"), few.convertedTo(QImage::Format_RGB32));
        row("png of two colours", odd::encoded(few.convertedTo(QImage::Format_Mono), "png"),
            few.convertedTo(QImage::Format_Mono).convertedTo(QImage::Format_RGB32));
        row("png of 16 bits", odd::encoded(scenery.convertedTo(QImage::Format_RGBX64), "png"),
            scenery);
        row("webp without losses", odd::encodedWebp(scenery, 100), scenery);
        const QByteArray lossy = odd::encodedWebp(scenery, 75);
        row("webp", lossy, QImage::fromData(lossy));
        QImage red = scenery;
        red.fill(Qt::red);
        const auto frame = [](const QImage& image) {
            return odd::webpFrame({}, Small, odd::webpChunks(odd::encodedWebp(image, 100)));
        };
        row("animated webp: its first frame",
            odd::webpAnimation(Small, frame(scenery) + frame(red)),
            scenery.convertedTo(QImage::Format_ARGB32));
    }

    void keepsTheBytesAndGivesThePixels()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QImage, pixels);
        QVERIFY(!pixels.isNull());
        QImage decoded;
        const Still still = Still::fromBytes(bytes, {}, &decoded);
        QVERIFY(!still.isNull());
        QCOMPARE(still.size(), pixels.size());
        QCOMPARE(still.bytes(), bytes);
        QCOMPARE(decoded, pixels);
        QCOMPARE(still.image(), pixels);
        QVERIFY(decoded.format() == QImage::Format_RGB32 ||
                decoded.format() == QImage::Format_ARGB32 ||
                decoded.format() == QImage::Format_Grayscale8);
    }

    void keepsTransparency_data()
    {
        const Rows<QByteArray> row("bytes");
        QImage image(8, 8, QImage::Format_ARGB32);
        image.fill(qRgba(200, 100, 50, 128));
        row("png", odd::encoded(image, "png"));
        row("png of 16 bits", odd::encoded(image.convertedTo(QImage::Format_RGBA64), "png"));
        QImage few(8, 8, QImage::Format_Indexed8);
        few.setColorTable({qRgba(200, 100, 50, 128)});
        few.fill(0);
        row("png of few colours", odd::encoded(few, "png"));
        row("webp", odd::encodedWebp(image, 100));
    }

    void keepsTransparency()
    {
        QFETCH(QByteArray, bytes);
        const QImage image = Still::fromBytes(bytes).image();
        QCOMPARE(image.format(), QImage::Format_ARGB32);
        QCOMPARE(image.pixel(3, 3), qRgba(200, 100, 50, 128));
    }

    void keepsPixelsThatNeverWereAFile()
    {
        const QImage pixels = odd::scenery(QSize(64, 48));
        const Still still = Still::fromImage(pixels);
        QVERIFY(!still.isNull());
        QCOMPARE(still.size(), QSize(64, 48));
        QVERIFY(still.bytes().isEmpty());
        QCOMPARE(still.image(), pixels);
        QCOMPARE(still.image().constBits(), pixels.constBits());
        QCOMPARE(still.imageNoSmallerThan(QSize(16, 12)).size(), QSize(16, 12));
    }

    void halvesWhileNoSmallerThanNeeded_data()
    {
        const Rows<QSize, QSize, QSize> row("size", "needed", "halved");
        row("larger than the image", {640, 480}, {1000, 1000}, {640, 480});
        row("the image", {640, 480}, {640, 480}, {640, 480});
        row("just over a half", {640, 480}, {321, 10}, {640, 480});
        row("just over a half in height", {640, 480}, {10, 241}, {640, 480});
        row("a half", {640, 480}, {320, 240}, {320, 240});
        row("a quarter", {640, 480}, {160, 120}, {160, 120});
        row("an eighth", {640, 480}, {80, 60}, {80, 60});
        row("next to nothing", {640, 480}, {1, 1}, {80, 60});
        row("odd", {1081, 721}, {200, 100}, {270, 180});
        row("odd, one too many", {1081, 721}, {271, 100}, {540, 360});
        row("a line", {1, 10'000}, {1, 1'000}, {1, 1'250});
        row("a dot", {1, 1}, {1, 1}, {1, 1});
        row("empty", {640, 480}, {}, {640, 480});
        row("0 by 0", {640, 480}, {0, 0}, {640, 480});
        row("of no height", {640, 480}, {5, 0}, {640, 480});
        row("of nothing", {0, 0}, {5, 5}, {0, 0});
    }

    void halvesWhileNoSmallerThanNeeded()
    {
        QFETCH(QSize, size);
        QFETCH(QSize, needed);
        QTEST(Still::halvedSize(size, needed), "halved");
    }

    void decodesAtTheHalvedSize_data()
    {
        const Rows<QByteArray> row("bytes");
        for (const QSize size : {QSize(64, 48), QSize(137, 81), QSize(9, 7), QSize(1, 300)}) {
            const QImage image = odd::scenery(size);
            const std::string by =
                " of " + std::to_string(size.width()) + " by " + std::to_string(size.height());
            row("bitmap" + by, odd::encoded(image, "bmp"));
            row("gif" + by, odd::gifPattern(size));
            row("png" + by, odd::encoded(image, "png"));
            row("webp" + by, odd::encodedWebp(image, 75));
            row("jpeg" + by, odd::encoded(image, "jpg"));
            row("progressive jpeg" + by, odd::encoded(image, "jpg", true));
            row("grey jpeg" + by,
                odd::encoded(image.convertedTo(QImage::Format_Grayscale8), "jpg"));
        }
    }

    void decodesAtTheHalvedSize()
    {
        QFETCH(QByteArray, bytes);
        const Still still = Still::fromBytes(bytes);
        QVERIFY(!still.isNull());
        const QImage whole = still.image();
        for (const int part : {1, 2, 4, 8}) {
            const QSize wanted(qMax(1, still.size().width() / part),
                               qMax(1, still.size().height() / part));
            QImage decoded;
            QVERIFY(!Still::fromBytes(bytes, wanted, &decoded).isNull());
            QCOMPARE(decoded.size(), Still::halvedSize(still.size(), wanted));
            QCOMPARE(still.imageNoSmallerThan(wanted), decoded);
            if (wanted.width() < 4 || wanted.height() < 4)
                continue;
            // It is the same picture: the mean colours of both agree.
            const QColor mean = whole.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                                    .pixelColor(0, 0);
            const QColor halved =
                decoded.scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                    .pixelColor(0, 0);
            QVERIFY(qAbs(mean.red() - halved.red()) < 12);
            QVERIFY(qAbs(mean.green() - halved.green()) < 12);
            QVERIFY(qAbs(mean.blue() - halved.blue()) < 12);
        }
    }

    void keepsNothingThatFollowsThePicture_data()
    {
        const Rows<QByteArray> row("bytes");
        for (const char* format : {"bmp", "jpg", "png"})
            row(format, odd::encoded(odd::scenery(Small), format));
        row("gif", odd::gifPattern(Small));
        row("webp", odd::encodedWebp(odd::scenery(Small), 75));
    }

    void keepsNothingThatFollowsThePicture()
    {
        QFETCH(QByteArray, bytes);
        const Still alone = Still::fromBytes(bytes);
        const Still still = Still::fromBytes(bytes + QByteArray(1'000'000, 0));
        QCOMPARE(still.bytes(), bytes);
        QCOMPARE(still.heldBytes(), bytes.size());
        QVERIFY(still.bytes().capacity() < 2 * bytes.size() + 100);
        QCOMPARE(still.image(), alone.image());
        // Nothing to take away, and nothing copied.
        QCOMPARE(alone.bytes().constData(), bytes.constData());
    }

    void letsTheJpegLibraryHalve_data()
    {
        const Rows<int> row("part");
        for (const int part : {1, 2, 4, 8})
            row("1/" + std::to_string(part), part);
    }

    void letsTheJpegLibraryHalve()
    {
        QFETCH(int, part);
        constexpr QSize size(640, 480);
        const QByteArray bytes = odd::encoded(odd::scenery(size), "jpg");
        QProcess reference;
        reference.start("djpeg", {"-scale", QString("1/%1").arg(part), "-pnm"});
        reference.write(bytes);
        reference.closeWriteChannel();
        QVERIFY(reference.waitForFinished(HangMs));
        const QImage expected = QImage::fromData(reference.readAllStandardOutput(), "PPM");
        QCOMPARE(expected.size(), size / part);
        const QImage decoded = Still::fromBytes(bytes).imageNoSmallerThan(size / part);
        QCOMPARE(decoded, expected.convertedTo(QImage::Format_RGB32));
    }

    void decodesAQuarterMuchFaster_data()
    {
        const Rows<QSize> row("size");
        row("even", QSize(3840, 2160));
        row("odd", QSize(3841, 2163));
    }

    void decodesAQuarterMuchFaster()
    {
        QFETCH(QSize, size);
        const QByteArray bytes = odd::encoded(odd::scenery(size), "jpg");
        QImage whole;
        QImage quarter;
        const double times = timesTheCost([&] { Still::fromBytes(bytes, size / 5, &quarter); },
                                          [&] { Still::fromBytes(bytes, {}, &whole); });
        QCOMPARE(whole.size(), size);
        QCOMPARE(quarter.size(), QSize(size.width() / 4, size.height() / 4));
        qInfo("%.2f of the cost of a whole decode", times);
        QVERIFY(times < 0.9);
    }

    void decodesOnceOnTheWayIn_data()
    {
        const Rows<QSize> row("needed");
        row("whole", QSize());
        row("halved", QSize(100, 100));
    }

    void decodesOnceOnTheWayIn()
    {
        QFETCH(QSize, needed);
        // The JPEG library reports the missing end of a picture once each time it decodes it.
        const QByteArray bytes = odd::encoded(odd::scenery(QSize(400, 300)), "jpg").chopped(500);
        const MessageLog log;
        QImage decoded;
        const Still still = Still::fromBytes(bytes, needed, &decoded);
        QVERIFY(!decoded.isNull());
        QCOMPARE(log.messages().size(), 1);
        still.image();
        QCOMPARE(log.messages().size(), 2);
    }

    void fillsWhatABitmapLeavesOut_data()
    {
        const Rows<QByteArray, QImage> row("bytes", "pixels");
        const auto colour = [](int index) { return qRgb(index, 255 - index, 128); };

        QImage runs(8, 4, QImage::Format_RGB32);
        runs.fill(colour(0));
        for (int x = 0; x < 8; ++x)
            runs.setPixel(x, 3, colour(1 + x % 2));
        for (int x = 2; x < 6; ++x)
            runs.setPixel(x, 1, colour(3));
        row("in runs", odd::bitmapRuns(), runs);

        const QImage scenery = odd::scenery(QSize(64, 64));
        const QByteArray whole = odd::encoded(scenery, "bmp");
        QImage upper = scenery;
        upper.fill(Qt::black);
        for (int y = 32; y < 64; ++y)
            for (int x = 0; x < 64; ++x)
                upper.setPixel(x, y, scenery.pixel(x, y));
        row("cut in the middle", whole.left(54 + 64 * 3 * 32 + 5), upper);
    }

    void fillsWhatABitmapLeavesOut()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QImage, pixels);
        const auto dirty = [](QSize size, QImage::Format format) {
            QImage(size, format).fill(0x5A);
        };
        for (int i = 0; i < 3; ++i) {
            dirty(pixels.size(), QImage::Format_RGB32);
            dirty(pixels.size(), QImage::Format_Indexed8);
            QCOMPARE(Still::fromBytes(bytes).image(), pixels);
        }
    }

    void pixelsBesideTheColourTableAreBlack()
    {
        const QImage image =
            Still::fromBytes(odd::bitmap({.width = 4, .height = 1, .bits = 8, .colours = 2},
                                         QByteArray("\x00\x01\x02\xFF", 4)))
                .image();
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QCOMPARE(image.pixel(0, 0), qRgb(0, 255, 128));
        QCOMPARE(image.pixel(1, 0), qRgb(1, 254, 128));
        QCOMPARE(image.pixel(2, 0), qRgb(0, 0, 0));
        QCOMPARE(image.pixel(3, 0), qRgb(0, 0, 0));
    }

    void turnsNothingByItself()
    {
        // Exif with one entry: orientation 6, a quarter to the right.
        const QByteArray exif = QByteArray::fromHex("457869660000"
                                                    "4d4d002a00000008"
                                                    "0001"
                                                    "011200030000000100060000"
                                                    "00000000");
        const QByteArray jpeg = odd::encoded(odd::scenery(Small), "jpg");
        const QByteArray turned = odd::jpegStart() + odd::jpegSegment(0xE1, exif) + jpeg.mid(2);
        QBuffer buffer;
        buffer.setData(turned);
        buffer.open(QIODevice::ReadOnly);
        QCOMPARE(QImageReader(&buffer).transformation(), QImageIOHandler::TransformationRotate90);

        const Still still = Still::fromBytes(turned);
        QCOMPARE(still.size(), Small);
        QCOMPARE(still.image(), Still::fromBytes(jpeg).image());
    }

    void mixesTheInksOfFourColours()
    {
        // Without any differences all four samples are 128, of inks that are stored inverted.
        const odd::JpegFrame frame{.size = QSize(32, 16), .sampling = {0x11, 0x11, 0x11, 0x11}};
        constexpr int bits = 4 * 2 * 4 * 2;
        const QImage image = Still::fromBytes(odd::jpeg(frame, QByteArray(bits / 8, 0))).image();
        QCOMPARE(image.size(), frame.size);
        QCOMPARE(image.format(), QImage::Format_RGB32);
        QCOMPARE(image.pixel(5, 5), qRgb(64, 64, 64));
    }
};

QTEST_GUILESS_MAIN(StillTest)
#include "tst_Still.moc"
