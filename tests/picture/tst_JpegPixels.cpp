// The pixels that a view is given are those of Qt's reader, whatever the camera's encoder did.

#include "picture/JpegPixels.h"

#include "support/OddPictures.h"

#include <QImageReader>

#include <algorithm>

namespace {

constexpr QSize Odd(101, 75);

/// `image` as `cjpeg` encodes it with `options`.
QByteArray fromEncoder(const QImage& image, const QStringList& options)
{
    QProcess encoder;
    encoder.start("cjpeg", options);
    encoder.write(odd::encoded(image, "bmp"));
    encoder.closeWriteChannel();
    if (!encoder.waitForFinished(HangMs) || encoder.exitCode() != 0)
        qFatal("cjpeg failed: %s", encoder.readAllStandardError().constData());
    return encoder.readAllStandardOutput();
}

QImage fromQt(QByteArray bytes, QSize size)
{
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "jpeg");
    if (size != reader.size())
        reader.setScaledSize(size);
    return reader.read().convertToFormat(QImage::Format_RGB32);
}

} // namespace

class JpegPixelsTest : public QObject
{
    Q_OBJECT
private slots:
    void areThoseOfQtsReader_data()
    {
        QTest::addColumn<QStringList>("options");
        QTest::addColumn<QSize>("whole");
        QTest::newRow("half the colours") << QStringList{"-sample", "2x2"} << Odd;
        QTest::newRow("half of them across") << QStringList{"-sample", "2x1"} << Odd;
        QTest::newRow("half of them down") << QStringList{"-sample", "1x2"} << Odd;
        QTest::newRow("all the colours") << QStringList{"-sample", "1x1"} << Odd;
        QTest::newRow("a third of them across") << QStringList{"-sample", "3x1"} << Odd;
        QTest::newRow("a quarter of them down") << QStringList{"-sample", "1x4"} << Odd;
        QTest::newRow("each colour in its way") << QStringList{"-sample", "2x2,1x2,2x1"} << Odd;
        QTest::newRow("progressive") << QStringList{"-progressive"} << Odd;
        QTest::newRow("arithmetic") << QStringList{"-arithmetic"} << Odd;
        QTest::newRow("red, green and blue") << QStringList{"-rgb"} << Odd;
        QTest::newRow("whole blocks") << QStringList{} << QSize(128, 64);
        QTest::newRow("narrow") << QStringList{} << QSize(9, 1000);
        QTest::newRow("one pixel") << QStringList{} << QSize(1, 1);
    }

    void areThoseOfQtsReader()
    {
        QFETCH(QStringList, options);
        QFETCH(QSize, whole);
        const QByteArray bytes = fromEncoder(odd::scenery(whole), options);
        for (const int shrink : {1, 2, 4, 8}) {
            const QSize size(std::max(whole.width() / shrink, 1),
                             std::max(whole.height() / shrink, 1));
            const auto pixels = jpegPixels(bytes, size);
            QVERIFY(pixels.has_value());
            QCOMPARE(pixels->format(), QImage::Format_RGB32);
            QCOMPARE(pixels->size(), size);
            QCOMPARE(*pixels, fromQt(bytes, size));
        }
    }

    void leaveOtherKindsToQtsReader_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QSize>("size");
        const QByteArray coloured = odd::encoded(odd::scenery(Odd), "jpg");
        QTest::newRow("grey") << fromEncoder(odd::scenery(Odd), {"-grayscale"}) << Odd;
        QTest::newRow("four colours")
            << odd::jpeg({.size = {16, 16}, .sampling = {0x11, 0x11, 0x11, 0x11}}) << QSize(16, 16);
        QTest::newRow("a third") << coloured << QSize(34, 25);
        QTest::newRow("larger") << coloured << QSize(102, 75);
        QTest::newRow("no size") << coloured << QSize();
    }

    void leaveOtherKindsToQtsReader()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        QVERIFY(!jpegPixels(bytes, size).has_value());
    }

    void ofACutFileEndInGrey()
    {
        const QByteArray whole = odd::encoded(odd::scenery(Odd), "jpg");
        const QByteArray cut = whole.first(whole.size() / 2);
        const auto pixels = jpegPixels(cut, Odd);
        QVERIFY(pixels.has_value());
        QCOMPARE(*pixels, fromQt(cut, Odd));
        QCOMPARE(pixels->pixelColor(Odd.width() - 1, Odd.height() - 1), QColor(128, 128, 128));
    }

    void areNullWhereTheDecoderGivesUp_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QByteArray whole = odd::encoded(odd::scenery(Odd), "jpg");
        QByteArray withoutTables = odd::jpegStart() + odd::jpegFrame({.size = Odd}) +
                                   odd::jpegScan(1, 3, {}) + odd::jpegEnd();
        const QByteArray endsInAWarning = odd::jpegStart() + odd::jpegTables() +
                                          odd::jpegFrame({.size = Odd, .marker = 0xC2}) +
                                          odd::jpegScan(1, 3, {}, 0, 0);
        QVERIFY(jpegPixels(endsInAWarning + odd::jpegEnd(), Odd).value_or(QImage()).size() == Odd);
        QTest::newRow("a table of nonsense after a warning")
            << endsInAWarning + odd::jpegSegment(0xC4, QByteArray(1, 0) + QByteArray(16, '\xFF')) +
                   odd::jpegScan(1, 1, {}, 1, odd::WholeBlock) + odd::jpegEnd();
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JPEG") << QByteArray("GIF89a");
        QTest::newRow("the start alone") << odd::jpegStart();
        QTest::newRow("without tables") << withoutTables;
    }

    void areNullWhereTheDecoderGivesUp()
    {
        QFETCH(QByteArray, bytes);
        const auto pixels = jpegPixels(bytes, Odd);
        QVERIFY(pixels.has_value());
        QVERIFY(pixels->isNull());
    }
};

QTEST_GUILESS_MAIN(JpegPixelsTest)
#include "tst_JpegPixels.moc"
