#include "picture/Still.h"

#include "support/ChildCost.h"
#include "support/OddPictures.h"

#include <QLoggingCategory>
#include <QtEndian>

#include <functional>
#include <utility>

using Recipe = std::function<QByteArray()>;

namespace {

constexpr auto DecodeOption = "--decode";
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
    if (!encoder.waitForFinished())
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

/// With arguments as boundsHoldInTimeAndMemory gives them: decodes that file and ends.

/// That no megabyte costs much, whatever it holds.
class StillBoundsTest : public QObject
{
    Q_OBJECT
private slots:
    void boundsHoldInTimeAndMemory_data()
    {
        QTest::addColumn<Recipe>("recipe");
        QTest::addColumn<bool>("isPicture");
        const auto row = [](const char* name, bool isPicture, const Recipe& recipe) {
            QTest::newRow(name) << recipe << isPicture;
        };
        const auto zeros = [](qsizetype count) { return QByteArray(count, 0); };

        row("jpeg of 50 megapixels as written", true,
            [] { return odd::encoded(odd::scenery(Largest), "jpg"); });
        row("jpeg of 50 megapixels and no data", true,
            [] { return odd::jpeg(frameOf(0xC0, Full)); });
        row("jpeg of 50 megapixels of ink", true,
            [=] { return odd::jpeg(frameOf(0xC0, Inks), zeros(Megabyte)); });
        row("jpeg that restarts at each block", true, [=] {
            const QByteArray restarts = QByteArray::fromHex("00ffd3").repeated(Megabyte / 3);
            return odd::jpegStart() + odd::jpegSegment(0xDD, QByteArray::fromHex("0001")) +
                   odd::jpeg(frameOf(0xC0, Full), restarts).mid(2);
        });
        row("jpeg just over 50 megapixels", false,
            [] { return odd::jpeg(frameOf(0xC0, Full, Largest + QSize(1, 0))); });
        row("progressive jpeg, 10 scans of 50 megapixels", true,
            [=] { return odd::jpegInScans(frameOf(0xC2, Halved), 10, zeros(Megabyte / 10)); });
        row("progressive jpeg, 11 scans of 50 megapixels", false,
            [] { return odd::jpegInScans(frameOf(0xC2, Halved), 11); });
        row("progressive jpeg, 100 scans of 5 megapixels", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Full, QSize(2'500, 2'000)), 100,
                                    zeros(Megabyte / 100));
        });
        row("progressive jpeg of 40 megapixels, all colours", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Full, QSize(8'000, 4'990)), 12,
                                    zeros(Megabyte / 12));
        });
        row("progressive jpeg of 33 megapixels of ink", true, [=] {
            return odd::jpegInScans(frameOf(0xC2, Inks, QSize(7'000, 4'750)), 15,
                                    zeros(Megabyte / 15));
        });
        row("progressive jpeg of 50 megapixels, all colours", false,
            [] { return odd::jpegInScans(frameOf(0xC2, Full), 1); });
        row("jpeg of 33 megapixels of ink, a scan for each", true, [=] {
            return odd::jpegInScans(frameOf(0xC0, Inks, QSize(7'000, 4'750)), 15,
                                    zeros(Megabyte / 15));
        });
        row("arithmetic jpeg of 8 megapixels", true,
            [] { return trainedArithmeticJpeg(QSize(4'000, 2'000)); });
        row("arithmetic jpeg of more", false,
            [] { return trainedArithmeticJpeg(QSize(4'000, 2'001)); });
        row("jpeg with comments in a megabyte", false, [] {
            return odd::jpegStart() + odd::jpegSegment(0xFE, {}).repeated(Megabyte / 4) +
                   odd::jpeg(frameOf(0xC0, Full, QSize(37, 21))).mid(2);
        });
        row("jpeg with all comments that may be", true, [] {
            return odd::jpegStart() + odd::jpegSegment(0xFE, "k: v").repeated(9'990) +
                   odd::jpeg(frameOf(0xC0, Full, QSize(37, 21))).mid(2);
        });

        static const QRect WholeGif({}, Largest);
        const QByteArray keepBelow = QByteArray::fromHex("21f9040c00000000");
        row("gif of 50 megapixels", true,
            [] { return odd::gif(Largest, WholeGif, odd::gifRuns(Megabyte)); });
        row("gif of 50 megapixels, interlaced, with what is below kept", true,
            [=] { return odd::gif(Largest, WholeGif, odd::gifRuns(Megabyte), true, keepBelow); });
        row("gif of one pixel with data for a thousand million", true, [] {
            return odd::gif({1, 1}, QRect(0, 0, 1, 1), odd::gifRuns(Megabyte));
        });
        row("gif with a frame far larger than its screen", true, [] {
            return odd::gif({1, 1}, QRect(0, 0, 65'535, 762), odd::gifRuns(Megabyte), true);
        });
        row("gif just over 50 megapixels", false, [] {
            return odd::gif(Largest + QSize(0, 1), QRect(0, 0, 9, 9), odd::gifCodes("abc"));
        });

        const auto bitmapRow = [&](const char* name, const odd::Bitmap& header,
                                   const QByteArray& unit) {
            row(name, true,
                [=] { return odd::bitmap(header, unit.repeated(Megabyte / unit.size())); });
        };
        constexpr int most = 50'000'000;
        bitmapRow("bitmap of one column of bits", {.width = 1, .height = -most, .bits = 1}, "a");
        bitmapRow("bitmap of one column of nibbles", {.width = 1, .height = -most, .bits = 4}, "a");
        bitmapRow("bitmap of one column of bytes", {.width = 1, .height = -most, .bits = 8}, "a");
        bitmapRow("bitmap of one row of bytes", {.width = most, .height = 1, .bits = 8}, "a");
        bitmapRow("bitmap of one column", {.width = 1, .height = -most, .bits = 32}, "a");
        const odd::Bitmap runs{.width = 8'000, .height = 6'250, .bits = 8, .compression = 1};
        bitmapRow("bitmap of empty runs", runs, QByteArray("\0\0", 2));
        bitmapRow("bitmap of jumps", runs, QByteArray("\0\2\1\0", 4));
        bitmapRow("bitmap of long runs", runs, "\xFF\x01");
    }

    void boundsHoldInTimeAndMemory()
    {
        QFETCH(Recipe, recipe);
        QFETCH(bool, isPicture);
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write(recipe());
        file.close();
        for (const int needed : {0, 1}) {
            const ChildCost cost =
                costOfChild({DecodeOption, file.fileName(), QString::number(needed)});
            qInfo("%4.2f s, %3.0f MB", cost.seconds, cost.peakMegabytes);
            QCOMPARE(cost.exitCode, isPicture ? IsPicture : IsNone);
            QVERIFY(cost.seconds < 2);
#ifndef __SANITIZE_ADDRESS__ // It needs memory of its own.
            QVERIFY(cost.peakMegabytes < 500);
#endif
        }
    }
};

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (arguments.size() == 4 && arguments[1] == DecodeOption) {
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
