#include "picture/Still.h"

#include "support/MessageLog.h"
#include "support/OddPictures.h"
#include "support/OddPng.h"
#include "support/OddWebp.h"
#include "support/Rows.h"

#include <QLoggingCategory>
#include <QtEndian>

#include <limits>
#include <utility>

namespace {

constexpr QSize Small(37, 21);

odd::JpegFrame frameOf(int marker, QList<int> sampling = {0x11, 0x11, 0x11}, QSize size = Small)
{
    return {.size = size, .marker = marker, .sampling = std::move(sampling)};
}

} // namespace

/// What Still makes of files that are broken, cut, hostile or something else.
class StillOddFilesTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        // The decoders report each of the many broken pictures below.
        QLoggingCategory::setFilterRules("qt.gui.imageio*=false");
    }

    void oddFiles_data()
    {
        const QSize refused(0, 0);
        const QImage scenery = odd::scenery(Small);
        const QByteArray jpeg = odd::encoded(scenery, "jpg");
        const Rows<QByteArray, QSize> row("bytes", "size");
        row("empty", {}, refused);
        row("text", "<html><body>404 Not Found</body></html>", refused);
        row("ico", odd::encoded(scenery, "ico"), refused);
        row("xpm", odd::encoded(scenery, "xpm"), refused);
        row("ppm", odd::encoded(scenery, "ppm"), refused);
        row("svg", "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>", refused);
        row("bitmap signature before a png", "BM" + odd::encoded(scenery, "png"), refused);
        row("jpeg signature before a png", "\xFF\xD8\xFF" + odd::encoded(scenery, "png"), refused);
        row("blank before a jpeg", " " + jpeg, refused);
        row("more than 64 MiB", jpeg + QByteArray(Still::MaxEncodedBytes - jpeg.size() + 1, 0),
            refused);
        row("64 MiB", jpeg + QByteArray(Still::MaxEncodedBytes - jpeg.size(), 0), Small);

        row("a thin line", odd::encoded(odd::scenery(QSize(1, 10'000)), "jpg"), QSize(1, 10'000));
        QByteArray corrupted = odd::encoded(odd::scenery(QSize(200, 200)), "jpg");
        for (qsizetype i = corrupted.size() / 2; i < corrupted.size() / 2 + 40; ++i)
            corrupted[i] = char(i * 7 % 255);
        row("jpeg with forty wrong bytes of data", corrupted, QSize(200, 200));
        row("jpeg with wrong tables", QByteArray(jpeg).replace("\xFF\xDB", "\xFF\xFE"), refused);
        row("jpeg and its thumbnail behind it", jpeg + jpeg, Small);
        row("jpeg of twelve bits",
            odd::jpeg({.size = Small, .sampling = {0x11, 0x11, 0x11}, .bits = 12}), refused);
        row("jpeg without losses", odd::jpeg(frameOf(0xC3)), refused);
        row("jpeg of two components", odd::jpeg(frameOf(0xC0, {0x11, 0x11})), refused);
        row("jpeg of two frames",
            odd::jpegStart() + odd::jpegTables() + odd::jpegFrame(frameOf(0xC0)) +
                odd::jpegFrame(frameOf(0xC0)) + odd::jpegScan(1, 3, {}) + odd::jpegEnd(),
            refused);
        row("jpeg of four components", odd::jpeg(frameOf(0xC0, {0x11, 0x11, 0x11, 0x11})), Small);
        row("jpeg sampled unevenly", odd::jpeg(frameOf(0xC0, {0x12, 0x41, 0x11})), Small);
        row("jpeg in arithmetic codes", odd::jpeg(frameOf(0xC9)), Small);
        row("jpeg of a hundred scans", odd::jpegInScans(frameOf(0xC2), 100), Small);
        row("jpeg of a hundred and one scans", odd::jpegInScans(frameOf(0xC2), 101), refused);
        row("jpeg of 10,000 comments",
            odd::jpegStart() + odd::jpegSegment(0xFE, "text").repeated(10'000) + jpeg.mid(2),
            refused);

        row("gif", odd::gifPattern(Small), Small);
        row("gif of no frame", odd::gifPattern(Small).left(13 + 768) + ";", refused);
        row("gif with a colour that is none",
            odd::gif(Small, QRect({}, Small), QByteArray("\x00\x03\xFE\xFF\xFF", 5)), Small);
        row("gif with a frame outside its screen",
            odd::gif(Small, QRect(500, 500, 10, 10), odd::gifCodes("abc")), Small);
        row("gif with a frame larger than its screen",
            odd::gif(Small, QRect(3, 3, 5'000, 5'000), odd::gifRuns(5'000), true), Small);
        row("gif on a wide screen",
            odd::gif(QSize(60'000, 300), QRect(0, 0, 10, 10), odd::gifCodes("abc")),
            QSize(60'000, 300));
        row("gif with a frame of nothing", odd::gif(Small, QRect(0, 0, 0, 0), odd::gifCodes("abc")),
            Small);
        row("animation of 3,000 frames",
            odd::gifPattern(Small).chopped(1) +
                odd::gifPattern(Small).mid(13 + 768).chopped(1).repeated(3'000) + ";",
            Small);

        const QByteArray png = odd::encoded(scenery, "png");
        const auto pngOf = [](QSize size, int bits = 8, int colourType = 2) {
            return odd::pngOf({.size = size, .bits = bits, .colourType = colourType}, 0);
        };
        const auto pixels = [&](const QByteArray& data) {
            return odd::pngStart({.size = Small}) + odd::pngChunk("IDAT", data) + odd::pngEnd();
        };
        const auto wrongSum = [](QByteArray bytes, const char* chunk) {
            const qsizetype at = bytes.indexOf(chunk);
            const auto length = qFromBigEndian<quint32>(bytes.data() + at - 4);
            bytes[at + 4 + length] = char(bytes[at + 4 + length] ^ 1);
            return bytes;
        };
        row("png", png, Small);
        row("png with data behind its end", png + jpeg, Small);
        row("png with a wrong check sum of its header", wrongSum(png, "IHDR"), refused);
        row("png with a wrong check sum of its pixels", wrongSum(png, "IDAT"), Small);
        row("png with a wrong check sum of its end", wrongSum(png, "IEND"), Small);
        row("png with a wrong check sum of its palette", wrongSum(pngOf(Small, 2, 3), "PLTE"),
            refused);
        row("png without its palette",
            odd::pngStart({.size = Small, .bits = 2, .colourType = 3}) +
                odd::pngChunk("IDAT", odd::deflatedRun(0, 11 * 21)) + odd::pngEnd(),
            refused);
        row("png with an unknown chunk that it cannot do without",
            pngOf(Small).insert(33, odd::pngChunk("WHAT", {})), refused);
        row("png whose pixels are none", pixels("these are no pixels"), Small);
        row("png with fewer pixels than it says", pixels(odd::deflatedRun(0, 1'000)), Small);
        row("png with more pixels than it says", pixels(odd::deflatedRun(0, 100'000)), Small);
        row("png whose rows have no filter", pixels(odd::deflatedRun(4, (1 + 37 * 3) * 21)), Small);
        row("png with pixels said to be two gigabytes",
            QByteArray(png).replace(png.indexOf("IDAT") - 4, 4, QByteArray::fromHex("7fffffff")),
            Small);
        row("png with a text that inflates to a gigabyte",
            pngOf(Small).insert(33, odd::pngChunk("zTXt", QByteArray("a\0\0", 3) +
                                                              odd::deflatedRun(0, 1'000'000'000))),
            Small);
        row("png with a profile that is none",
            pngOf(Small).insert(33, odd::pngChunk("iCCP", QByteArray("a\0\0junk", 7))), Small);
        row("png with 10,000 transparencies",
            pngOf(Small).insert(33, odd::pngChunk("tRNS", QByteArray(6, 0)).repeated(10'000)),
            Small);
        row("png of 30,000 by 30,000", pngOf(QSize(30'000, 30'000)), refused);
        row("png of 2^31 by 2^31",
            odd::pngStart(
                {.size = QSize(std::numeric_limits<int>::max(), std::numeric_limits<int>::max())}) +
                odd::pngChunk("IDAT", "pixels") + odd::pngEnd(),
            refused);

        const QByteArray webp = odd::encodedWebp(scenery, 75);
        const QByteArray lossless = odd::encodedWebp(scenery, 100);
        const QByteArray frame = odd::webpFrame({2, 2}, Small, odd::webpChunks(lossless));
        constexpr QSize canvas(50, 40);
        row("webp", webp, Small);
        row("webp without losses", lossless, Small);
        row("webp with data behind it", webp + jpeg, Small);
        row("webp without losses, with a transparency beside its own",
            odd::webp(odd::webpCanvas(Small, odd::WebpSeeThrough) +
                      odd::webpChunk("ALPH", QByteArray(1 + 37 * 21, 0)) +
                      odd::webpChunks(lossless)),
            Small);
        row("webp on another canvas", odd::webp(odd::webpCanvas(canvas, 0) + odd::webpChunks(webp)),
            refused);
        row("webp with a cut text behind it",
            odd::webp(odd::webpCanvas(Small, 0) + odd::webpChunks(webp) +
                      odd::webpChunk("XMP ", "text").chopped(1)),
            Small);
        row("webp whose pixels are none", odd::webp(odd::webpChunk("VP8L", "/no pixels at all")),
            refused);
        row("animated webp", odd::webpAnimation(canvas, frame + frame), canvas);
        row("animated webp that is cut in its second frame",
            odd::webpAnimation(canvas, frame + frame).chopped(20), canvas);
        row("animated webp of 3,000 frames", odd::webpAnimation(canvas, frame.repeated(3'000)),
            canvas);
        row("animated webp with a frame outside its canvas",
            odd::webpAnimation(canvas, odd::webpFrame({40, 40}, Small, odd::webpChunks(lossless))),
            refused);
        row("animated webp whose frame is of another size",
            odd::webpAnimation(canvas, odd::webpFrame({}, {9, 9}, odd::webpChunks(lossless))),
            canvas);
        row("animated webp on 16,777,216 by 16,777,216",
            odd::webpAnimation({1 << 24, 1 << 24}, frame), refused);
        row("webp of 16,384 by 16,384",
            odd::webp(odd::webpChunk("VP8L", odd::losslessWebp({.size = {16'384, 16'384}}))),
            refused);

        const auto bitmap = [](int width, int height, int bits, int compression = 0,
                               quint32 colours = 0, int headerSize = 40) {
            return odd::bitmap({width, height, bits, compression, colours, headerSize},
                               QByteArray(400, 1));
        };
        row("bitmap of 16 colours in runs", odd::bitmapRuns(), QSize(8, 4));
        row("bitmap of the oldest kind", bitmap(9, 5, 8, 0, 0, 12), QSize(9, 5));
        row("bitmap from the top", bitmap(9, -5, 24), QSize(9, 5));
        row("bitmap with 2^31 colours", bitmap(9, 5, 8, 0, 1u << 31), refused);
        row("bitmap with masks", bitmap(9, 5, 32, 3), QSize(9, 5));
        row("bitmap with an odd header", bitmap(9, 5, 24, 0, 0, 41), refused);
        row("bitmap whose pixels begin behind its end",
            bitmap(9, 5, 24).replace(10, 4, QByteArray::fromHex("ffffff7f")), QSize(9, 5));
        row("bitmap of three bits", bitmap(9, 5, 3), refused);
        row("bitmap that is a jpeg", bitmap(9, 5, 24, 4), refused);

        const QByteArray line(60, 0);
        row("bitmap of 30,000 by 30,000", bitmap(30'000, 30'000, 24), refused);
        row("bitmap of 2^31 by 2^31",
            bitmap(std::numeric_limits<int>::max(), std::numeric_limits<int>::min(), 1), refused);
        row("gif of 30,000 by 30,000",
            odd::gif(QSize(30'000, 30'000), QRect(0, 0, 5, 5), odd::gifCodes("abc")), refused);
        row("gif frame of 30,000 by 30,000",
            odd::gif(Small, QRect(0, 0, 30'000, 30'000), odd::gifCodes("abc")), refused);
        row("jpeg of 30,000 by 30,000",
            odd::jpeg(frameOf(0xC0, {0x11, 0x11, 0x11}, QSize(30'000, 30'000))), refused);
        row("jpeg of 65,535 by 65,535",
            odd::jpeg(frameOf(0xC0, {0x11, 0x11, 0x11}, QSize(65'535, 65'535))), refused);
        row("progressive jpeg of 30,000 by 30,000",
            odd::jpegInScans(frameOf(0xC2, {0x11, 0x11, 0x11}, QSize(30'000, 30'000)), 10),
            refused);
        row("jpeg of 20,000 scans", odd::jpegInScans(frameOf(0xC2), 20'000), refused);
    }

    void oddFiles()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QSize, size);
        QLoggingCategory::setFilterRules({});
        const QImage before = odd::scenery(QSize(3, 3));
        for (const QSize needed : {QSize(), QSize(4, 4)}) {
            const MessageLog log;
            QImage decoded = before;
            const Still still = Still::fromBytes(bytes, needed, &decoded);
            QCOMPARE(still.size(), size);
            QCOMPARE(still.isNull(), size == QSize(0, 0));
            if (still.isNull())
                QCOMPARE(decoded, before);
            else
                QCOMPARE(decoded.size(), Still::halvedSize(size, needed));
            // Without what follows the picture (tst_PictureHeader has where it ends).
            QCOMPARE(still.bytes().isEmpty(), still.isNull());
            QVERIFY(bytes.startsWith(still.bytes()));
            // Nothing but the decoders' own reports, at most one each time.
            QVERIFY(log.messages().size() <= 1);
            for (const auto& message : log.messages())
                QVERIFY2(message.first.startsWith("qt.gui.imageio"), qPrintable(message.second));
        }
    }

    void cutAnywhere_data()
    {
        const Rows<QByteArray, qsizetype> row("bytes", "shortest"); // That still gives a picture.
        const QImage image = odd::scenery(Small);
        const auto afterScanHeader = [](const QByteArray& bytes) {
            const qsizetype begin = bytes.indexOf("\xFF\xDA");
            return begin + 2 + uchar(bytes[begin + 2]) * 256 + uchar(bytes[begin + 3]);
        };
        for (const bool progressive : {false, true}) {
            const QByteArray bytes = odd::encoded(image, "jpg", progressive);
            row(progressive ? "progressive jpeg" : "jpeg", bytes, afterScanHeader(bytes));
        }
        const QByteArray scans = odd::jpegInScans(frameOf(0xC0), 6, "\x12\x34");
        row("jpeg in six scans", scans, afterScanHeader(scans));
        row("gif", odd::gifPattern(Small), qsizetype(13 + 768 + 10 + 2 + 1));
        row("bitmap", odd::encoded(image, "bmp"), qsizetype(54 + 1));
        row("bitmap in runs", odd::bitmapRuns(), qsizetype(54 + 64 + 1));
        row("bitmap of 256 colours",
            odd::bitmap({.width = 9, .height = 5, .bits = 8}, QByteArray(60, 1)),
            qsizetype(54 + 1024 + 1));
        const QByteArray png = odd::encoded(image, "png");
        row("png", png, png.indexOf("IDAT") + 4 + 1);
        const QByteArray webp = odd::encodedWebp(image, 75);
        row("webp", webp, webp.size());
        const QByteArray frame = odd::webpFrame({}, Small, odd::webpChunks(webp));
        const QByteArray animation = odd::webpAnimation(Small, frame + frame);
        row("animated webp", animation, animation.size() - frame.size());
    }

    void cutAnywhere()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(qsizetype, shortest);
        const QSize size = Still::fromBytes(bytes).size();
        QVERIFY(!size.isEmpty());
        for (qsizetype length = 0; length < bytes.size(); ++length) {
            for (const QSize needed : {QSize(), QSize(1, 1)}) {
                QImage decoded;
                const Still still = Still::fromBytes(bytes.left(length), needed, &decoded);
                QVERIFY2(still.isNull() == (length < shortest), QByteArray::number(length));
                if (!still.isNull()) {
                    QCOMPARE(still.size(), size);
                    QCOMPARE(decoded.size(), Still::halvedSize(size, needed));
                }
            }
        }
    }

    void showsWhatATruncatedJpegHas()
    {
        const QByteArray bytes = odd::encoded(odd::scenery(QSize(160, 160)), "jpg");
        const QImage whole = Still::fromBytes(bytes).image();
        const QImage cut = Still::fromBytes(bytes.left(bytes.size() * 3 / 4)).image();
        QCOMPARE(cut.size(), whole.size());
        QCOMPARE(cut.copy(0, 0, 160, 80), whole.copy(0, 0, 160, 80));
        const QRect end(0, 150, 160, 10);
        QVERIFY(cut.copy(end) != whole.copy(end));
        QCOMPARE(cut.copy(end), QImage(cut.copy(end)).scaled(1, 1).scaled(160, 10)); // One colour.
    }

    void showsWhatATruncatedPngHas_data()
    {
        const Rows<bool> row("corrupted");
        row("cut", false);
        row("with wrong pixels", true);
    }

    void showsWhatATruncatedPngHas()
    {
        QFETCH(bool, corrupted);
        const QImage whole = odd::scenery(QSize(160, 160));
        QByteArray bytes = odd::encoded(whole, "png");
        const qsizetype three = bytes.size() * 3 / 4;
        if (corrupted)
            bytes.replace(three, 200, QByteArray(200, '\xFF'));
        else
            bytes.truncate(three);
        const QImage cut = Still::fromBytes(bytes).image();
        QCOMPARE(cut.size(), whole.size());
        QCOMPARE(cut.copy(0, 0, 160, 80), whole.copy(0, 0, 160, 80));
        QImage grey(160, 5, QImage::Format_RGB32);
        grey.fill(qRgb(128, 128, 128));
        QCOMPARE(cut.copy(0, 155, 160, 5), grey);
    }

    void aSmallPngShowsAllThatCame()
    {
        // Far less than a decoder reads at once.
        const QImage whole = odd::scenery(QSize(40, 40));
        const QByteArray bytes = odd::encoded(whole, "png");
        QVERIFY(bytes.size() < 4'000);
        const QImage cut = Still::fromBytes(bytes.left(bytes.size() * 3 / 4)).image();
        QCOMPARE(cut.copy(0, 0, 40, 20), whole.copy(0, 0, 40, 20));
    }

    void survivesMutations_data()
    {
        const Rows<QByteArray> row("bytes");
        const QImage image = odd::scenery(Small);
        row("jpeg", odd::encoded(image, "jpg"));
        row("progressive jpeg", odd::encoded(image, "jpg", true));
        row("gif", odd::gifPattern(Small));
        row("bitmap", odd::encoded(image, "bmp"));
        row("bitmap in runs", odd::bitmapRuns());
        row("png", odd::encoded(image, "png"));
        row("webp", odd::encodedWebp(image, 75));
        // Next to nothing in it can change without harm: some changes hit what is behind it.
        row("webp without losses", odd::encodedWebp(image, 100) + QByteArray(5'000, 0));
        row("animated webp",
            odd::webpAnimation(
                Small, odd::webpFrame({}, Small, odd::webpChunks(odd::encodedWebp(image, 100)))));
    }

    void survivesMutations()
    {
        QFETCH(QByteArray, bytes);
        constexpr int mutations = 400; // Of each row.
        QRandomGenerator random(20'031);
        int pictures = 0;
        for (int i = 0; i < mutations; ++i) {
            QByteArray mutated = bytes;
            for (int change = random.bounded(1, 6); change > 0 && !mutated.isEmpty(); --change) {
                const auto at = qsizetype(random.bounded(quint32(mutated.size())));
                // Half of the changes hit the header, where most of what can go wrong is.
                const qsizetype place = random.bounded(2) ? at : at % 64;
                if (place >= mutated.size())
                    continue;
                switch (random.bounded(5)) {
                case 0:
                    mutated.remove(place, random.bounded(1, 9));
                    break;
                case 1:
                    mutated.insert(place, mutated.mid(place, random.bounded(1, 9)));
                    break;
                case 2:
                    mutated[place] = char(mutated[place] ^ (1 << random.bounded(8)));
                    break;
                default:
                    mutated[place] = random.bounded(2) ? char(random.bounded(256)) : '\xFF';
                    break;
                }
            }
            QImage decoded;
            const Still still =
                Still::fromBytes(mutated, random.bounded(2) ? QSize(5, 5) : QSize(), &decoded);
            QCOMPARE(still.isNull(), decoded.isNull());
            pictures += still.isNull() ? 0 : 1;
        }
        // Neither all of them nor none: the mutations meet both ways.
        QVERIFY2(pictures > mutations / 20 && pictures < mutations, QByteArray::number(pictures));
    }
};

QTEST_GUILESS_MAIN(StillOddFilesTest)
#include "tst_StillOddFiles.moc"
