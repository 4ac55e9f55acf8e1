// The pixels that a view is given are those of Qt's reader, whatever the camera's encoder did.

#include "picture/JpegPixels.h"

#include "support/OddPictures.h"
#include "support/Rows.h"

#include <QImageReader>

#include <algorithm>

namespace {

constexpr QSize Odd(101, 75);
constexpr int MostScans = 100;

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
    return reader.read();
}

} // namespace

class JpegPixelsTest : public QObject
{
    Q_OBJECT
private slots:
    void areThoseOfQtsReader_data()
    {
        const Rows<QStringList, QSize> row("options", "whole");
        row("half the colours", {"-sample", "2x2"}, Odd);
        row("half of them across", {"-sample", "2x1"}, Odd);
        row("half of them down", {"-sample", "1x2"}, Odd);
        row("all the colours", {"-sample", "1x1"}, Odd);
        row("a third of them across", {"-sample", "3x1"}, Odd);
        row("a quarter of them down", {"-sample", "1x4"}, Odd);
        row("each colour in its way", {"-sample", "2x2,1x2,2x1"}, Odd);
        row("progressive", {"-progressive"}, Odd);
        row("arithmetic", {"-arithmetic"}, Odd);
        row("red, green and blue", {"-rgb"}, Odd);
        row("grey", {"-grayscale"}, Odd);
        row("grey, progressive", {"-grayscale", "-progressive"}, Odd);
        row("whole blocks", {}, QSize(128, 64));
        row("narrow", {}, QSize(9, 1000));
        row("one pixel", {}, QSize(1, 1));
    }

    void areThoseOfQtsReader()
    {
        QFETCH(QStringList, options);
        QFETCH(QSize, whole);
        const QByteArray bytes = fromEncoder(odd::scenery(whole), options);
        for (const int shrink : {1, 2, 4, 8}) {
            const QSize size(std::max(whole.width() / shrink, 1),
                             std::max(whole.height() / shrink, 1));
            const auto pixels = jpegPixels(bytes, size, MostScans);
            QVERIFY(pixels.has_value());
            QCOMPARE(pixels->format(), options.contains("-grayscale") ? QImage::Format_Grayscale8
                                                                      : QImage::Format_RGB32);
            QCOMPARE(pixels->size(), size);
            QCOMPARE(*pixels, fromQt(bytes, size));
        }
    }

    void leaveOtherKindsToQtsReader_data()
    {
        const Rows<QByteArray, QSize> row("bytes", "size");
        const QByteArray coloured = odd::encoded(odd::scenery(Odd), "jpg");
        row("four colours", odd::jpeg({.size = {16, 16}, .sampling = {0x11, 0x11, 0x11, 0x11}}),
            QSize(16, 16));
        row("four colours in scans",
            odd::jpegInScans({.size = {16, 16}, .sampling = {0x11, 0x11, 0x11, 0x11}}, 7),
            QSize(16, 16));
        row("a third", coloured, QSize(34, 25));
        row("larger", coloured, QSize(102, 75));
        row("no size", coloured, QSize());
    }

    void leaveOtherKindsToQtsReader()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        QVERIFY(!jpegPixels(bytes, size, MostScans).has_value());
    }

    void endAtTheScanTooMany_data()
    {
        const Rows<QList<int>, int> row("sampling", "marker");
        for (const int marker : {0xC0, 0xC2}) {
            const std::string kind = marker == 0xC0 ? ", one by one" : ", progressive";
            // One scan has all of a grey picture that is not progressive.
            if (marker == 0xC2)
                row("grey" + kind, {0x11}, marker);
            row("three colours" + kind, {0x11, 0x11, 0x11}, marker);
            row("four colours" + kind, {0x11, 0x11, 0x11, 0x11}, marker);
        }
    }

    void endAtTheScanTooMany()
    {
        QFETCH(QList<int>, sampling);
        QFETCH(int, marker);
        constexpr int scans = 9;
        const QByteArray bytes =
            odd::jpegInScans({.size = Odd, .marker = marker, .sampling = sampling}, scans);
        const auto isPicture = [&](int mostScans) {
            const auto pixels = jpegPixels(bytes, Odd, mostScans);
            return !pixels || !pixels->isNull();
        };
        QVERIFY(isPicture(scans));
        QVERIFY(!isPicture(scans - 1));
        QVERIFY(!isPicture(1));
    }

    void ofACutFileEndInGrey()
    {
        const QByteArray whole = odd::encoded(odd::scenery(Odd), "jpg");
        const QByteArray cut = whole.first(whole.size() / 2);
        const auto pixels = jpegPixels(cut, Odd, MostScans);
        QVERIFY(pixels.has_value());
        QCOMPARE(*pixels, fromQt(cut, Odd));
        QCOMPARE(pixels->pixelColor(Odd.width() - 1, Odd.height() - 1), QColor(128, 128, 128));
    }

    void areNullWhereTheDecoderGivesUp_data()
    {
        const Rows<QByteArray> row("bytes");
        const QByteArray whole = odd::encoded(odd::scenery(Odd), "jpg");
        QByteArray withoutTables = odd::jpegStart() + odd::jpegFrame({.size = Odd}) +
                                   odd::jpegScan(1, 3, {}) + odd::jpegEnd();
        const QByteArray endsInAWarning = odd::jpegStart() + odd::jpegTables() +
                                          odd::jpegFrame({.size = Odd, .marker = 0xC2}) +
                                          odd::jpegScan(1, 3, {}, 0, 0);
        QVERIFY(
            jpegPixels(endsInAWarning + odd::jpegEnd(), Odd, MostScans).value_or(QImage()).size() ==
            Odd);
        row("a table of nonsense after a warning",
            endsInAWarning + odd::jpegSegment(0xC4, QByteArray(1, 0) + QByteArray(16, '\xFF')) +
                odd::jpegScan(1, 1, {}, 1, odd::WholeBlock) + odd::jpegEnd());
        row("nothing", {});
        row("no JPEG", "GIF89a");
        row("the start alone", odd::jpegStart());
        row("without tables", withoutTables);
    }

    void areNullWhereTheDecoderGivesUp()
    {
        QFETCH(QByteArray, bytes);
        const auto pixels = jpegPixels(bytes, Odd, MostScans);
        QVERIFY(pixels.has_value());
        QVERIFY(pixels->isNull());
    }
};

QTEST_GUILESS_MAIN(JpegPixelsTest)
#include "tst_JpegPixels.moc"
