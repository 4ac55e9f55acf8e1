#include "picture/Still.h"

#include "support/ChildCost.h"
#include "support/Cost.h"
#include "support/OddPictures.h"
#include "support/OddPng.h"
#include "support/OddWebp.h"
#include "support/Rows.h"

#include <QLoggingCategory>
#include <QtEndian>

#include <algorithm>
#include <functional>
#include <utility>

using Recipe = std::function<QByteArray()>;

namespace {

constexpr auto DecodeOption = "--decode";
constexpr auto BareDecodeOption = "--decode-without-plug-ins";
constexpr int IsPicture = 10;
constexpr int IsNone = 11;

constexpr QSize Largest(8'000, 6'250);
constexpr qsizetype Megabyte = 1'000'000;
const QList<int> Full{0x11, 0x11, 0x11};
const QList<int> Halved{0x22, 0x11, 0x11};
const QList<int> Inks{0x11, 0x11, 0x11, 0x11};

odd::JpegFrame frameOf(int marker, QList<int> sampling, QSize size = Largest)
{
    return {.size = size, .marker = marker, .sampling = std::move(sampling)};
}

/// One that ends early, but whose coder has learned by then to expect the costliest blocks.
QByteArray trainedArithmeticJpeg(QSize size)
{
    // A dot in each block of 8 x 8, because then all of its coefficients differ from 0.
    QImage image(512, 512, QImage::Format_RGB32);
    image.fill(Qt::cyan);
    for (int y = 0; y < image.height(); y += 8)
        for (int x = 0; x < image.width(); x += 8)
            image.setPixelColor(x, y, Qt::red);
    QProcess encoder;
    encoder.start("cjpeg", {"-arithmetic", "-quality", "100", "-sample", "1x1"});
    encoder.write(odd::encoded(image, "ppm"));
    encoder.closeWriteChannel();
    if (!encoder.waitForFinished(HangMs))
        qFatal("no cjpeg");
    QByteArray bytes = encoder.readAllStandardOutput();
    const qsizetype frame = bytes.indexOf("\xFF\xC9");
    if (frame < 0)
        qFatal("not arithmetically coded");
    qToBigEndian(quint16(size.height()), bytes.data() + frame + 5);
    qToBigEndian(quint16(size.width()), bytes.data() + frame + 7);
    return bytes;
}

} // namespace

Q_DECLARE_METATYPE(Recipe)

/// With arguments as boundsHoldInWorkAndMemory gives them: decodes that file and ends.

/// That no megabyte costs much, whatever it holds.
class StillBoundsTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_reference.open());
        m_reference.write(twelveMegapixels());
        m_reference.close();
        m_referenceSeconds = median({costOfReference(), costOfReference(), costOfReference()});
    }

    void withoutItsPlugInAWebpIsNoPicture()
    {
        const auto decoded = [](const QByteArray& bytes, const char* option) {
            QTemporaryFile file;
            if (!file.open())
                qFatal("no file");
            file.write(bytes);
            file.close();
            return costOfChild({option, file.fileName(), "0"}).exitCode;
        };
        const QByteArray webp = odd::encodedWebp(odd::scenery({40, 30}), 75);
        QCOMPARE(decoded(webp, DecodeOption), IsPicture);
        QCOMPARE(decoded(webp, BareDecodeOption), IsNone);
        QCOMPARE(decoded(odd::encoded(odd::scenery({40, 30}), "png"), BareDecodeOption), IsPicture);
    }

    void boundsHoldInWorkAndMemory_data()
    {
        const Rows<bool, Recipe> row("isPicture", "recipe");
        const auto zeros = [](qsizetype count) { return QByteArray(count, 0); };

        row("jpeg of 50 megapixels as written", true,
            [] { return odd::encoded(odd::scenery(Largest), "jpg"); });
        row("jpeg of 50 megapixels and no data", true,
            [] { return odd::jpeg(frameOf(0xC0, Full)); });
        row("jpeg of 25 megapixels of ink", true,
            [=] { return odd::jpeg(frameOf(0xC0, Inks, QSize(5'000, 5'000)), zeros(Megabyte)); });
        row("jpeg of more ink", false,
            [] { return odd::jpeg(frameOf(0xC0, Inks, QSize(5'000, 5'001))); });
        row("jpeg that restarts at each block", true, [=] {
            const QByteArray restarts = QByteArray::fromHex("00ffd3").repeated(Megabyte / 3);
            return odd::jpegStart() + odd::jpegSegment(0xDD, QByteArray::fromHex("0001")) +
                   odd::jpeg(frameOf(0xC0, Full), restarts).mid(2);
        });
        row("jpeg just over 50 megapixels", false,
            [] { return odd::jpeg(frameOf(0xC0, Full, Largest + QSize(1, 0))); });
        row("progressive jpeg, 5 scans of 50 megapixels", false,
            [=] { return odd::jpegInScans(frameOf(0xC2, Halved), 5, zeros(Megabyte / 5)); });
        row("progressive jpeg, 7 scans of 35 megapixels", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Halved, QSize(7'000, 5'000)), 7,
                                    zeros(Megabyte / 7));
        });
        row("progressive jpeg, 8 scans of 35 megapixels", false,
            [] { return odd::jpegInScans(frameOf(0xC2, Halved, QSize(7'000, 5'000)), 8); });
        row("progressive jpeg, 100 scans of 2.5 megapixels", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Full, QSize(2'000, 1'250)), 100,
                                    zeros(Megabyte / 100));
        });
        row("progressive jpeg of 25 megapixels, all colours", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Full, QSize(5'000, 4'992)), 10,
                                    zeros(Megabyte / 10));
        });
        row("progressive jpeg of 25 megapixels, all colours, each scan a refinement", true, [=] {
            const odd::JpegFrame frame = frameOf(0xC2, Full, QSize(5'000, 4'992));
            const QByteArray data = zeros(Megabyte / 10);
            QByteArray bytes = odd::jpegStart() + odd::jpegTables(true) + odd::jpegFrame(frame) +
                               odd::jpegScan(1, 3, data, 0, 0, 1);
            for (int scan = 1; scan < 10; ++scan) {
                const int one = 1 + scan % 3;
                bytes += odd::jpegScan(one, one, data, 1, odd::WholeBlock, 0x10);
            }
            return bytes + odd::jpegEnd();
        });
        row("progressive jpeg of 26 megapixels, all colours", false,
            [] { return odd::jpegInScans(frameOf(0xC2, Full, QSize(5'000, 5'200)), 1); });
        constexpr QSize inkInScans(4'992, 3'120);
        row("progressive jpeg of 15 megapixels of ink", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Inks, inkInScans), 8, zeros(Megabyte / 8));
        });
        row("jpeg of 15 megapixels of ink, a scan for each", true, [=] {
            return odd::jpegInScans(frameOf(0xC0, Inks, inkInScans), 8, zeros(Megabyte / 8));
        });
        row("jpeg of 15 megapixels of ink, all in each scan but the first", true, [=] {
            const odd::JpegFrame frame = frameOf(0xC0, Inks, inkInScans);
            const QByteArray data = zeros(Megabyte / 8);
            return odd::jpegStart() + odd::jpegTables() + odd::jpegFrame(frame) +
                   odd::jpegScan(1, 1, data) + odd::jpegScan(1, 4, data).repeated(7) +
                   odd::jpegEnd();
        });
        row("jpeg of 16 megapixels of ink in scans", false,
            [] { return odd::jpegInScans(frameOf(0xC0, Inks, QSize(4'992, 3'152)), 2); });
        row("arithmetic jpeg of 2.1 megapixels", true,
            [] { return trainedArithmeticJpeg(QSize(2'000, 1'050)); });
        row("arithmetic jpeg of more", false,
            [] { return trainedArithmeticJpeg(QSize(2'000, 1'051)); });
        row("jpeg with comments in a megabyte", false, [] {
            return odd::jpegStart() + odd::jpegSegment(0xFE, {}).repeated(Megabyte / 4) +
                   odd::jpeg(frameOf(0xC0, Full, QSize(37, 21))).mid(2);
        });
        row("jpeg with all comments that may be", true, [] {
            return odd::jpegStart() + odd::jpegSegment(0xFE, "k: v").repeated(9'990) +
                   odd::jpeg(frameOf(0xC0, Full, QSize(37, 21))).mid(2);
        });

        constexpr QSize largestGif(6'000, 5'000);
        static const QRect WholeGif({}, largestGif);
        const QByteArray keepBelow = QByteArray::fromHex("21f9040c00000000");
        row("gif of 30 megapixels", true,
            [=] { return odd::gif(largestGif, WholeGif, odd::gifRuns(Megabyte)); });
        row("gif of 30 megapixels, interlaced, with what is below kept", true, [=] {
            return odd::gif(largestGif, WholeGif, odd::gifRuns(Megabyte), true, keepBelow);
        });
        row("gif of one pixel with data for a thousand million", true, [] {
            return odd::gif({1, 1}, QRect(0, 0, 1, 1), odd::gifRuns(Megabyte));
        });
        row("gif with a frame far larger than its screen", true, [] {
            return odd::gif({1, 1}, QRect(0, 0, 65'535, 457), odd::gifRuns(Megabyte), true);
        });
        row("gif just over 30 megapixels", false, [=] {
            return odd::gif(largestGif + QSize(0, 1), QRect(0, 0, 9, 9), odd::gifCodes("abc"));
        });
        row("gif with a frame just over 30 megapixels", false, [=] {
            return odd::gif({1, 1}, WholeGif.adjusted(0, 0, 1, 0), odd::gifCodes("abc"));
        });

        constexpr QSize largestPng(5'000, 4'000);
        constexpr QSize largestDeepPng(4'000, 2'500);
        constexpr int costliestFilter = 4;
        const auto pngRow = [&](const char* name, const odd::Png& header, bool isPicture = true,
                                const QByteArray& before = {}) {
            row(name, isPicture, [=] { return odd::pngOf(header, costliestFilter, before); });
        };
        const odd::Png colours{.size = largestPng, .bits = 8, .colourType = 6, .interlaced = true};
        const odd::Png deep{
            .size = largestDeepPng, .bits = 16, .colourType = 6, .interlaced = true};
        row("png of 20 megapixels as written", true,
            [=] { return odd::encoded(odd::scenery(largestPng), "png"); });
        pngRow("png of 20 megapixels, see-through, interlaced", colours);
        pngRow("png just over 20 megapixels",
               {.size = largestPng + QSize(1, 0), .bits = 1, .colourType = 3}, false);
        pngRow("png of 10 megapixels of 16 bits, see-through, interlaced", deep);
        pngRow("png just over 10 megapixels of 16 bits",
               {.size = largestDeepPng + QSize(1, 0), .bits = 16, .colourType = 0}, false);
        pngRow("png of 10 megapixels of 16 bits, one colour see-through",
               {.size = largestDeepPng, .bits = 16, .colourType = 2, .interlaced = true}, true,
               odd::pngChunk("tRNS", QByteArray(6, 4)));
        pngRow("png of 20 megapixels of few colours, see-through",
               {.size = largestPng, .bits = 8, .colourType = 3, .interlaced = true}, true,
               odd::pngChunk("tRNS", QByteArray::fromHex("80408020")));
        pngRow("png of 20 megapixels of bits",
               {.size = largestPng, .bits = 1, .colourType = 0, .interlaced = true});
        pngRow("png of many rows",
               {.size = {152, 65'535}, .bits = 16, .colourType = 6, .interlaced = true});
        pngRow("png of long rows",
               {.size = {65'535, 152}, .bits = 16, .colourType = 6, .interlaced = true});
        pngRow("png of a row too long", {.size = {65'536, 1}}, false);
        pngRow("png with texts that inflate to a gigabyte", colours, true,
               odd::pngChunk("zTXt", QByteArray("a\0\0", 3) + odd::deflatedRun(0, 7'900'000))
                   .repeated(120));
        pngRow("png with 50,000 transparencies",
               {.size = largestPng, .bits = 8, .colourType = 2, .interlaced = true}, true,
               odd::pngChunk("tRNS", QByteArray(6, 0)).repeated(50'000));
        pngRow("png with 70,000 empty pieces of data", colours, true,
               odd::pngChunk("IDAT", {}).repeated(70'000));
        row("png of 16 bits with empty blocks", true,
            [=] { return odd::withEmptyBlocks(odd::pngOf(deep, costliestFilter), 900'000); });

        constexpr QSize largestWebp(4'000, 4'000);
        constexpr int blockBits = 6; // 3,969 of them
        const odd::Lossless costly{.size = largestWebp,
                                   .transforms = true,
                                   .cache = true,
                                   .blockBits = blockBits,
                                   .deepCodes = true};
        const auto lossless = [](const odd::Lossless& picture) {
            return odd::webpChunk("VP8L", odd::losslessWebp(picture));
        };
        row("webp of 16 megapixels as written", true,
            [=] { return odd::encodedWebp(odd::scenery(largestWebp), 25); });
        row("webp of 16 megapixels and no data", true,
            [=] { return odd::webp(odd::lossyWebp(largestWebp, Megabyte)); });
        row("webp just over 16 megapixels", false,
            [=] { return odd::webp(odd::lossyWebp(largestWebp + QSize(1, 0), Megabyte)); });
        row("webp of 16 megapixels without losses", true,
            [=] { return odd::webp(lossless(costly)); });
        row("webp just over 16 megapixels without losses", false,
            [=] { return odd::webp(lossless({.size = largestWebp + QSize(0, 1)})); });
        row("webp with too many blocks", false, [=] {
            return odd::webp(lossless({.size = {400, 161}, .blockBits = 2, .codes = 2}));
        });
        row("webp with 65,536 codes", false, [=] {
            return odd::webp(lossless({.size = {1'024, 1'024}, .cache = true, .blockBits = 2}));
        });
        row("webp of 16 megapixels with its transparency", true, [=] {
            return odd::webp(odd::webpCanvas(largestWebp, odd::WebpSeeThrough) +
                             odd::webpChunk("ALPH", odd::webpAlpha(costly)) +
                             odd::lossyWebp(largestWebp, Megabyte * 4 / 5));
        });
        row("webp with a transparency of 65,536 codes", false, [=] {
            constexpr QSize size(1'024, 1'024);
            return odd::webp(
                odd::webpCanvas(size, odd::WebpSeeThrough) +
                odd::webpChunk("ALPH", odd::webpAlpha({.size = size, .blockBits = 2})) +
                odd::lossyWebp(size, Megabyte / 2));
        });
        constexpr QSize half(4'000, 2'000);
        row("animated webp of 8 megapixels", true, [=] {
            odd::Lossless frame = costly;
            frame.size = half;
            return odd::webpAnimation(half, odd::webpFrame({}, half, lossless(frame)));
        });
        row("animated webp just over 8 megapixels", false, [=] {
            return odd::webpAnimation(half + QSize(1, 0),
                                      odd::webpFrame({}, half, lossless({.size = half})));
        });
        row("animated webp of 20,000 frames", true, [=] {
            const QByteArray frame = odd::webpFrame({}, {1, 1}, lossless({.size = {1, 1}}));
            return odd::webpAnimation(half, frame.repeated(20'000));
        });

        const auto bitmapRow = [&](const char* name, const odd::Bitmap& header,
                                   const QByteArray& unit, bool isPicture = true) {
            row(name, isPicture,
                [=] { return odd::bitmap(header, unit.repeated(Megabyte / unit.size())); });
        };
        constexpr int longest = 65'535;
        constexpr int most = 50'000'000 / longest;
        constexpr int side = 7'071;
        bitmapRow("bitmap of many rows of bits", {.width = most, .height = -longest, .bits = 1},
                  "a");
        bitmapRow("bitmap of many rows of nibbles", {.width = most, .height = -longest, .bits = 4},
                  "a");
        bitmapRow("bitmap of many rows of bytes", {.width = most, .height = -longest, .bits = 8},
                  "a");
        bitmapRow("bitmap of many rows", {.width = most, .height = -longest, .bits = 32}, "a");
        bitmapRow("bitmap of long rows of bytes", {.width = longest, .height = most, .bits = 8},
                  "a");
        bitmapRow("bitmap of a column", {.width = 1, .height = -longest, .bits = 1}, "a");
        bitmapRow("bitmap of a column too long", {.width = 1, .height = -longest - 1, .bits = 1},
                  "a", false);
        bitmapRow("bitmap of a row too long", {.width = longest + 1, .height = 1, .bits = 1}, "a",
                  false);
        bitmapRow("bitmap of 50 megapixels", {.width = side, .height = side}, "a");
        bitmapRow("bitmap of 50 megapixels, see-through",
                  {.width = side, .height = side, .bits = 32, .headerSize = 108}, "a");
        const odd::Bitmap runs{.width = 8'000, .height = 6'250, .bits = 8, .compression = 1};
        bitmapRow("bitmap of empty runs", runs, QByteArray("\0\0", 2));
        bitmapRow("bitmap of jumps", runs, QByteArray("\0\2\1\0", 4));
        bitmapRow("bitmap of long runs", runs, "\xFF\x01");
    }

    void boundsHoldInWorkAndMemory()
    {
        constexpr double mostTimes = 8;
        constexpr int mostRuns = 5;

        QFETCH(Recipe, recipe);
        QFETCH(bool, isPicture);
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write(recipe());
        file.close();
        for (const int needed : {0, 1}) {
            const auto look = [&] { return costOfDecoding(file.fileName(), needed); };
            ChildCost cost = look();
            double peakMegabytes = cost.peakMegabytes;
            double times = cost.seconds / m_referenceSeconds;
            QList<double> ofReference;
            QList<double> ofInput;
            // What is far below the bound needs no second look; the others are looked at in turn
            // with the reference, since a machine may become busier.
            while (times > mostTimes / 2 && ofInput.size() < mostRuns) {
                ofReference << costOfReference();
                cost = look();
                ofInput << cost.seconds;
                peakMegabytes = std::max(peakMegabytes, cost.peakMegabytes);
                times = median(ofInput) / median(ofReference);
            }
            QCOMPARE(cost.exitCode, isPicture ? IsPicture : IsNone);
            qInfo("%4.2f times, %3.0f MB", times, peakMegabytes);
            QVERIFY2(times < mostTimes, QByteArray::number(times));
#ifndef __SANITIZE_ADDRESS__ // It needs memory of its own.
            QVERIFY(peakMegabytes < 500);
#endif
        }
    }

private:
    static ChildCost costOfDecoding(const QString& path, int needed)
    {
        return costOfChild({DecodeOption, path, QString::number(needed)});
    }

    double costOfReference()
    {
        return costOfDecoding(m_reference.fileName(), 0).seconds;
    }

    double m_referenceSeconds = 0;
    QTemporaryFile m_reference; ///< A whole baseline JPEG of 12 megapixels.
};

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    const bool isBare = arguments.value(1) == BareDecodeOption;
    if (arguments.size() == 4 && (isBare || arguments[1] == DecodeOption)) {
        if (isBare)
            QCoreApplication::setLibraryPaths({});
        QLoggingCategory::setFilterRules("qt.gui.imageio*=false");
        QFile file(arguments[2]);
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        const int needed = arguments[3].toInt();
        QImage decoded;
        Still::fromBytes(file.readAll(), QSize(needed, needed), &decoded);
        return decoded.isNull() ? IsNone : IsPicture;
    }
    StillBoundsTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_StillBounds.moc"
