#include "picture/headers/PictureHeader.h"

#include "support/OddPictures.h"
#include "support/OddPng.h"
#include "support/OddWebp.h"
#include "support/Rows.h"

#include <limits>
#include <utility>

using Format = PictureHeader::Format;

namespace {

constexpr QSize Small(37, 21);

odd::JpegFrame frameOf(int marker, QList<int> sampling = {0x11, 0x11, 0x11}, QSize size = Small)
{
    return {.size = size, .marker = marker, .sampling = std::move(sampling)};
}

odd::Png pngFrameOf(int bits, int colourType, QSize size = Small)
{
    return {.size = size, .bits = bits, .colourType = colourType};
}

QByteArray smallWebp(int quality = 75)
{
    return odd::encodedWebp(odd::scenery(Small), quality);
}

QByteArray smallBitmap(int headerSize, int width = Small.width(), int height = Small.height())
{
    return odd::bitmap({.width = width, .height = height, .headerSize = headerSize}, "pixels");
}

QByteArray smallGif(const QByteArray& extensions = {})
{
    return odd::gif(Small, QRect({}, Small), odd::gifCodes(QByteArray(37 * 21, 5)), false,
                    extensions);
}

} // namespace

class PictureHeaderTest : public QObject
{
    Q_OBJECT
private slots:
    void tellsFormatAndSize_data()
    {
        const Rows<QByteArray, Format> row("bytes", "format");
        for (const int size : {12, 40, 64, 108, 124})
            row("bitmap with a header of " + std::to_string(size) + " bytes", smallBitmap(size),
                Format::Bmp);
        row("bitmap from the top", smallBitmap(40, Small.width(), -Small.height()), Format::Bmp);
        row("gif 89a", smallGif(), Format::Gif);
        row("gif 87a", smallGif().replace(0, 6, "GIF87a"), Format::Gif);
        row("gif with extensions first",
            smallGif(QByteArray::fromHex("21f904050a000000"
                                         "21ff0b4e45545343415045322e300301000000"
                                         "21fe0361626302642c00")),
            Format::Gif);
        row("gif whose screen is left out", smallGif().replace(6, 4, QByteArray(4, 0)),
            Format::Gif);
        row("jpeg as written", odd::encoded(odd::scenery(Small), "jpg"), Format::Jpeg);
        row("progressive jpeg as written", odd::encoded(odd::scenery(Small), "jpg", true),
            Format::Jpeg);
        for (const int marker : {0xC0, 0xC1, 0xC2, 0xC3, 0xC5, 0xC9, 0xCA, 0xCF})
            row("jpeg frame " + std::to_string(marker), odd::jpeg(frameOf(marker)), Format::Jpeg);
        row("grey jpeg", odd::jpeg(frameOf(0xC0, {0x11})), Format::Jpeg);
        row("jpeg of four colours", odd::jpeg(frameOf(0xC0, {0x11, 0x11, 0x11, 0x11})),
            Format::Jpeg);
        const QList<std::pair<int, int>> kinds{{1, 0},  {2, 0}, {4, 0},  {8, 0}, {16, 0},
                                               {1, 3},  {2, 3}, {4, 3},  {8, 3}, {8, 2},
                                               {16, 2}, {8, 4}, {16, 4}, {8, 6}, {16, 6}};
        for (const auto& [bits, colourType] : kinds)
            row("png of type " + std::to_string(colourType) + " and " + std::to_string(bits) +
                    " bits",
                odd::pngOf(pngFrameOf(bits, colourType), 0), Format::Png);
        row("png as written", odd::encoded(odd::scenery(Small), "png"), Format::Png);
        row("png with a text first",
            odd::pngOf(pngFrameOf(8, 2), 0, odd::pngChunk("tEXt", "Title")), Format::Png);
        row("png whose pixels end early", odd::encoded(odd::scenery(Small), "png").left(100),
            Format::Png);
        row("webp as written", smallWebp(), Format::Webp);
        row("webp without losses", smallWebp(100), Format::Webp);
        row("webp with a canvas and a text first",
            odd::webp(odd::webpCanvas(Small, 0) + odd::webpChunk("TEXT", "abc") +
                      odd::webpChunks(smallWebp())),
            Format::Webp);
        row("webp with something behind it", smallWebp() + "behind it", Format::Webp);
    }

    void tellsFormatAndSize()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(Format, format);
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QCOMPARE(int(header->format), int(format));
        QCOMPARE(header->size, Small);
        QCOMPARE(header->pixels, qint64(Small.width()) * Small.height());
        QCOMPARE(header->scans, format == Format::Jpeg ? bytes.count("\xFF\xDA") : 0);
    }

    void knowsNothingOf_data()
    {
        const Rows<QByteArray> row("bytes");
        row("nothing", {});
        row("text", "BUT NOT A BITMAP: <html></html>");
        row("pixmap in letters", odd::encoded(odd::scenery(Small), "xpm"));
        row("two letters of a bitmap", "BM");
        row("bitmap without a height", smallBitmap(40).left(22));
        row("bitmap with an odd header", smallBitmap(52));
        row("bitmap of no width", smallBitmap(40, 0));
        row("bitmap of negative width", smallBitmap(40, -5));
        row("bitmap of the lowest height", smallBitmap(40, 5, std::numeric_limits<int>::min()));
        row("gif of another year", smallGif().replace(0, 6, "GIF88a"));
        row("gif without a frame", smallGif().left(13 + 768) + ";");
        row("gif cut before its frame", smallGif().left(13 + 768));
        row("gif cut in an extension", smallGif("!\xFE\x20").left(13 + 768 + 3));
        row("start of a jpeg", "\xFF\xD8\xFF");
        row("jpeg of zeros", QByteArray("\xFF\xD8\xFF") + QByteArray(1000, 0));
        row("jpeg of fill bytes", QByteArray("\xFF\xD8") + QByteArray(1000, '\xFF'));
        row("jpeg of tables", odd::jpegStart() + odd::jpegTables() + odd::jpegEnd());
        row("jpeg without a scan",
            odd::jpegStart() + odd::jpegFrame(frameOf(0xC0)) + odd::jpegEnd());
        row("jpeg scan before its frame", odd::jpegStart() + odd::jpegScan(1, 3, {}) +
                                              odd::jpegFrame(frameOf(0xC0)) + odd::jpegEnd());
        row("jpeg of no height", odd::jpeg(frameOf(0xC0, {0x11, 0x11, 0x11}, QSize(37, 0))));
        row("jpeg sampled 0 by 1", odd::jpeg(frameOf(0xC0, {0x01, 0x11, 0x11})));
        const QByteArray png = odd::encoded(odd::scenery(Small), "png");
        row("png without its signature", png.mid(8));
        row("png signature", png.left(8));
        row("png cut in its header", png.left(32));
        row("png without a header", png.left(8) + png.mid(33));
        row("png with a longer header",
            odd::pngStart(pngFrameOf(8, 2)).replace(11, 1, "\x0E") + png.mid(33));
        row("png of no width", odd::pngOf(pngFrameOf(8, 2, QSize(0, 9)), 0));
        row("png of negative height", odd::pngOf(pngFrameOf(8, 2, QSize(9, -9)), 0));
        row("png of three bits", odd::pngOf(pngFrameOf(3, 0), 0));
        row("png of 16 bits and a palette", odd::pngOf(pngFrameOf(16, 3), 0));
        row("png of four bits of colour", odd::pngOf(pngFrameOf(4, 2), 0));
        row("png of type 5", odd::pngOf(pngFrameOf(8, 5), 0));
        row("png without pixels", odd::pngStart(pngFrameOf(8, 2)) + odd::pngEnd());
        row("png with empty pixels",
            odd::pngStart(pngFrameOf(8, 2)) + odd::pngChunk("IDAT", {}) + odd::pngEnd());
        row("png with pixels behind its end",
            odd::pngStart(pngFrameOf(8, 2)) + odd::pngEnd() + odd::pngChunk("IDAT", "pixels"));

        const QByteArray lossless = odd::losslessWebp({.size = Small, .transforms = true});
        row("riff of sound", smallWebp().replace(8, 4, "WAVE"));
        row("webp of no chunk", odd::webp({}));
        row("webp of one unknown chunk", odd::webp(odd::webpChunk("TEXT", "abc")));
        row("webp cut in its pixels", smallWebp().chopped(2));
        row("webp that ends before its pixels do", smallWebp().replace(4, 1, "\x20"));
        row("webp of no width", smallWebp().replace(26, 2, QByteArray(2, 0)));
        row("webp without a start code", smallWebp().replace(23, 1, "a"));
        row("webp whose losslessness is none",
            odd::webp(odd::webpChunk("VP8L", QByteArray(lossless).replace(0, 1, "a"))));
        row("webp without losses, cut in a transform",
            odd::webp(odd::webpChunk("VP8L", lossless.left(8))));
        row("webp with a canvas alone", odd::webp(odd::webpCanvas(Small, 0)));
        row("webp with half a canvas",
            odd::webp(odd::webpChunk("VP8X", QByteArray(6, 0)) + odd::webpChunks(smallWebp())));
        row("webp of an empty transparency",
            odd::webp(odd::webpCanvas(Small, odd::WebpSeeThrough) + odd::webpChunk("ALPH", {}) +
                      odd::webpChunks(smallWebp())));
        row("animation without a frame", odd::webpAnimation(Small, {}));
        row("animation of pixels in no frame",
            odd::webpAnimation(Small, odd::webpChunks(smallWebp())));
        row("animation of a frame without pixels",
            odd::webpAnimation(Small, odd::webpFrame({}, Small, {})));
        row("jpeg frame shorter than its components",
            odd::jpegStart() + odd::jpegSegment(0xC0, QByteArray::fromHex("080015002503")));
    }

    void knowsNothingOf()
    {
        QFETCH(QByteArray, bytes);
        QVERIFY(!PictureHeader::read(bytes));
    }

    void countsScansAsADecoderMeetsThem_data()
    {
        const Rows<QByteArray, int, int> row("bytes", "scans", "segments");
        const auto frame = frameOf(0xC0);
        const QByteArray whole = odd::jpeg(frame, "\x12\x34"); // 3 tables, frame, scan
        const QByteArray rest = whole.mid(2);
        row("one", whole, 1, 5);
        row("seventeen", odd::jpegInScans(frame, 17, "\x12"), 17, 21);
        row("a thumbnail in a segment",
            odd::jpegStart() + odd::jpegSegment(0xE1, "Exif" + odd::jpegInScans(frame, 9)) + rest,
            1, 6);
        row("another picture behind the end", whole + whole, 1, 5);
        row("stuffed and restart markers in the data",
            odd::jpegStart() + odd::jpegTables() + odd::jpegFrame(frame) +
                odd::jpegScan(1, 3, QByteArray::fromHex("12ff0034ffd0ff00daffd7ff01da")) +
                odd::jpegScan(1, 3, "\x12") + odd::jpegEnd(),
            2, 6);
        row("fill bytes before the marker",
            odd::jpegStart() + odd::jpegTables() + odd::jpegFrame(frame) + "garbage\xFF\xFF\xFF" +
                odd::jpegScan(1, 3, "\x12") + odd::jpegEnd(),
            1, 5);
        row("a segment of impossible length",
            odd::jpegStart() + QByteArray("\xFF\xE0\0\0", 4) + rest, 1, 6);
        row("no end", whole.chopped(2), 1, 5);
        for (const char marker : {'\x01', '\x02', '\x7F', '\xBF'}) {
            row("scans behind the reserved marker " + std::to_string(uchar(marker)),
                odd::jpegInScans(frame, 17, QByteArray("\xFF") + marker + "\xFF\xFF"), 17, 21);
        }
    }

    void countsScansAsADecoderMeetsThem()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(int, scans);
        QFETCH(int, segments);
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QCOMPARE(header->scans, scans);
        QCOMPARE(header->segments, segments);
        QCOMPARE(header->size, Small);
    }

    void theFirstFrameHeaderOfAJpegCounts()
    {
        const auto other = odd::jpegFrame(frameOf(0xC2, {0x11}, QSize(30'000, 30'000)));
        const auto header =
            PictureHeader::read(odd::jpegStart() + odd::jpegSegment(0xE1, other) +
                                odd::jpegTables() + odd::jpegFrame(frameOf(0xC0)) + other +
                                odd::jpegScan(1, 3, {}) + other + odd::jpegEnd());
        QVERIFY(header);
        QCOMPARE(header->size, Small);
        QCOMPARE(header->coefficientBytes, 0);
    }

    void tellsWhatADecoderHolds_data()
    {
        const Rows<QByteArray, qint64> row("bytes", "coefficients");
        constexpr QSize size(100, 50); // 13 x 7 blocks
        row("one scan: a few rows", odd::jpeg(frameOf(0xC0, {0x11, 0x11, 0x11}, size)), qint64(0));
        row("a scan for each component",
            odd::jpegInScans(frameOf(0xC0, {0x11, 0x11, 0x11}, size), 3), qint64(3 * 13 * 7 * 64));
        row("progressive", odd::jpegInScans(frameOf(0xC2, {0x11, 0x11, 0x11}, size), 1),
            qint64(3 * 13 * 7 * 64));
        row("progressive, colours halved",
            odd::jpegInScans(frameOf(0xC2, {0x22, 0x11, 0x11}, size), 1),
            qint64((14 * 8 + 2 * 7 * 4) * 64));
        row("progressive of four colours",
            odd::jpegInScans(frameOf(0xC2, {0x11, 0x11, 0x11, 0x11}, size), 1),
            qint64(4 * 13 * 7 * 64));
    }

    void tellsWhatADecoderHolds()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(qint64, coefficients);
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QCOMPARE(header->coefficientBytes, coefficients * 2);
    }

    void tellsArithmeticCoding()
    {
        for (const int marker : {0xC0, 0xC1, 0xC2})
            QVERIFY(!PictureHeader::read(odd::jpeg(frameOf(marker)))->arithmetic);
        for (const int marker : {0xC9, 0xCA})
            QVERIFY(PictureHeader::read(odd::jpeg(frameOf(marker)))->arithmetic);
    }

    void aGifAnnouncesItsLargerArea()
    {
        const QByteArray codes = odd::gifCodes("\1\2\3");
        const auto largeFrame =
            PictureHeader::read(odd::gif(QSize(10, 10), QRect(5, 5, 60'000, 50'000), codes));
        QCOMPARE(largeFrame->size, QSize(10, 10));
        QCOMPARE(largeFrame->pixels, 3'000'000'000);
        const auto largeScreen =
            PictureHeader::read(odd::gif(QSize(60'000, 50'000), QRect(5, 5, 10, 10), codes));
        QCOMPARE(largeScreen->size, QSize(60'000, 50'000));
        QCOMPARE(largeScreen->pixels, 3'000'000'000);
    }

    void tellsDeepSamplesOfAPng()
    {
        QVERIFY(!PictureHeader::read(odd::pngOf(pngFrameOf(8, 6), 0))->deep);
        for (const int colourType : {0, 2, 4, 6})
            QVERIFY(PictureHeader::read(odd::pngOf(pngFrameOf(16, colourType), 0))->deep);
    }

    void anAnimatedWebpAnnouncesCanvasAndFrame()
    {
        const QByteArray frame = odd::webpChunk("VP8L", odd::losslessWebp({.size = {300, 200}}));
        const QByteArray first = odd::webpFrame({}, {300, 200}, frame);
        const auto header =
            PictureHeader::read(odd::webpAnimation({20'000, 15'000}, first + first));
        QVERIFY(header);
        QCOMPARE(header->size, QSize(20'000, 15'000));
        QCOMPARE(header->pixels, 20'000 * 15'000 + 300 * 200);
    }

    void theCodedPixelsOfAWebpCountAsWell()
    {
        const auto header = PictureHeader::read(
            odd::webp(odd::webpCanvas(Small, 0) +
                      odd::webpChunk("VP8L", odd::losslessWebp({.size = {16'000, 16'000}}))));
        QVERIFY(header);
        QCOMPARE(header->size, Small);
        QCOMPARE(header->pixels, 16'000 * 16'000);
    }

    void tellsTheBlocksOfAWebp_data()
    {
        const Rows<QByteArray, qint64> row("bytes", "blocks");
        const odd::Lossless plain{.size = {300, 200}};
        const odd::Lossless coded{
            .size = {300, 200}, .transforms = true, .cache = true, .blockBits = 4, .codes = 9};
        const auto lossless = [](const odd::Lossless& picture) {
            return odd::webp(odd::webpChunk("VP8L", odd::losslessWebp(picture)));
        };
        const auto seeThrough = [](const QByteArray& alpha) {
            return odd::webp(odd::webpCanvas({300, 200}, odd::WebpSeeThrough) +
                             odd::webpChunk("ALPH", alpha) +
                             odd::webpChunks(odd::encodedWebp(odd::scenery({300, 200}), 75)));
        };
        row("none", lossless(plain), qint64(0));
        row("of 16 by 16 pixels", lossless(coded), qint64(19 * 13));
        row("of a transparency", seeThrough(odd::webpAlpha(coded)), qint64(19 * 13));
        row("of a transparency that is not compressed", seeThrough(QByteArray(1 + 300 * 200, 0)),
            qint64(0));
        row("with losses", odd::encodedWebp(odd::scenery({300, 200}), 75), qint64(0));
    }

    void tellsTheBlocksOfAWebp()
    {
        QFETCH(QByteArray, bytes);
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QTEST(header->blocks, "blocks");
    }

    void endsBehindTheFirstPicture_data()
    {
        const Rows<QByteArray, qsizetype> row("bytes", "used");
        const QByteArray bitmap = smallBitmap(40);
        row("bitmap cut in its pixels", bitmap, bitmap.size());

        const QByteArray jpeg = odd::jpeg(frameOf(0xC0), "data");
        row("jpeg with something behind it", jpeg + "behind it", jpeg.size());
        row("jpeg cut in its data", jpeg.chopped(4), jpeg.size() - 4);
        const QByteArray cut = odd::jpegInScans(frameOf(0xC2), 3, "data").chopped(2);
        for (const int bytes : {1, 3, 7})
            row("jpeg that ends with " + std::to_string(bytes) + " bytes of a table",
                cut + odd::jpegTables().left(bytes), (bytes == 1 ? cut.size() + 1 : cut.size()));

        // Blocks of 255 bytes have their length before them.
        const QByteArray before = odd::gif(Small, QRect({}, Small), {}).chopped(2);
        const QByteArray gif = smallGif();
        constexpr int clears = 4;
        const qsizetype codes = ((clears + 37 * 21) * 9 + 7) / 8;
        const auto inFrame = [&](qsizetype count) {
            return before.size() + 1 + count + count / 255;
        };
        row("gif: up to its last pixel", gif, inFrame(codes));
        row("gif of two frames", gif.chopped(1) + gif.mid(13 + 768), inFrame(codes));
        row("gif with data for a thousand times its pixels",
            odd::gif({3, 1}, QRect(0, 0, 3, 1), odd::gifRuns(100'000)),
            odd::gif({3, 1}, QRect(0, 0, 3, 1), {}).size() - 2 + 1 +
                4); // Clear, one, two: 27 bits.
        row("gif with too long codes",
            gif.left(before.size() - 1) + "\x0D\x01" + gif.mid(before.size() + 1), before.size());
    }

    void endsBehindTheFirstPicture()
    {
        QFETCH(QByteArray, bytes);
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QTEST(header->usedBytes, "used");
    }

    void tellsWhereTheFileEnds_data()
    {
        const Rows<QByteArray> row("file");
        const QImage scenery = odd::scenery(Small);
        for (const int bits : {1, 4, 8, 16, 24, 32}) {
            for (const int size : {12, 40, 108, 124}) {
                const QByteArray pixels((37 * bits + 31) / 32 * 4 * 21, 'p');
                row("bitmap of " + std::to_string(bits) + " bits, header of " +
                        std::to_string(size),
                    odd::bitmap({.width = 37,
                                 .height = size == 40 ? -21 : 21,
                                 .bits = bits,
                                 .headerSize = size},
                                pixels));
            }
        }
        row("bitmap of ten colours",
            odd::bitmap({.width = 4, .height = 1, .bits = 8, .colours = 10}, "\1\2\3\4"));
        row("bitmap with masks",
            odd::bitmap({.width = 3, .height = 2, .bits = 32, .compression = 3},
                        QByteArray(12 + 24, 'p')));
        row("bitmap in runs", odd::bitmapRuns());
        row("bitmap in runs of bytes",
            odd::bitmap({.width = 5, .height = 3, .bits = 8, .compression = 1},
                        QByteArray::fromHex("05010000"
                                            "0003020202000201"
                                            "0002020105030001")));
        QByteArray profiled = odd::bitmap({.width = 1, .height = 1, .headerSize = 124}, "p123prof");
        row("bitmap with a profile behind its pixels", profiled);
        row("gif", smallGif());
        row("gif with a text at its end",
            smallGif().chopped(1) + QByteArray::fromHex("21fe03616263003b"));
        const QByteArray frame = smallGif().mid(13 + 768).chopped(1);
        row("gif of three frames, one with colours of its own", smallGif().chopped(1) + frame +
                                                                    frame.first(9) + '\x80' +
                                                                    "colour" + frame.mid(10) + ";");
        row("jpeg", odd::encoded(scenery, "jpg"));
        row("progressive jpeg", odd::encoded(scenery, "jpg", true));
        row("png", odd::encoded(scenery, "png"));
        row("png with a text at its end", odd::encoded(scenery, "png").chopped(12) +
                                              odd::pngChunk("tEXt", "Title") + odd::pngEnd());
        row("webp", smallWebp());
        row("webp of many frames",
            odd::webpAnimation(
                Small, odd::webpFrame({}, Small,
                                      odd::webpChunk("VP8L", odd::losslessWebp({.size = Small})))
                           .repeated(3)));
    }

    void tellsWhereTheFileEnds()
    {
        QFETCH(QByteArray, file);
        const auto fileBytes = [](const QByteArray& bytes) {
            const auto header = PictureHeader::read(bytes);
            return header && header->usedBytes <= header->fileBytes ? header->fileBytes : -1;
        };
        QCOMPARE(fileBytes(file), file.size());
        for (const QByteArray& behind :
             {QByteArray(1, 0), QByteArray(100'000, 0), QByteArray(100'000, '\xFF'),
              QByteArray("&IMAGE&"), file, QByteArray(";;!!,,")})
            QCOMPARE(fileBytes(file + behind), file.size());
    }

    void whatIsNoPartOfItEndsAFileWithoutEnd()
    {
        for (const QByteArray& file :
             {odd::encoded(odd::scenery(Small), "png").chopped(12), smallGif().chopped(1)}) {
            for (const char behind : {'\0', '\xFF'}) {
                const auto header = PictureHeader::read(file + QByteArray(1'000, behind));
                QVERIFY(header);
                QCOMPARE(header->fileBytes, file.size());
            }
        }
    }

    void keepsAllWhereTheEndIsMissing_data()
    {
        const Rows<QByteArray> row("bytes");
        const QImage scenery = odd::scenery(Small);
        row("bitmap", smallBitmap(40));
        constexpr int longest = std::numeric_limits<int>::max();
        row("bitmap of the longest sides",
            odd::bitmap({.width = longest, .height = longest, .bits = 32}, "pixels"));
        row("bitmap cut in its colours",
            odd::bitmap({.width = 37, .height = 21, .bits = 8}, {}).chopped(100));
        row("bitmap of odd bits", odd::bitmap({.width = 1, .height = 1, .bits = 33}, "pixels"));
        row("bitmap in runs", odd::bitmapRuns().chopped(3));
        row("gif cut in its pixels", smallGif().chopped(100));
        row("gif without a trailer", smallGif().chopped(1));
        row("jpeg", odd::encoded(scenery, "jpg").chopped(2));
        row("jpeg with half a segment", odd::encoded(scenery, "jpg").chopped(2) + "\xFF\xE0\x20");
        row("png", odd::encoded(scenery, "png").chopped(12));
        row("png cut in its end", odd::encoded(scenery, "png").chopped(1));
    }

    void keepsAllWhereTheEndIsMissing()
    {
        QFETCH(QByteArray, bytes);
        const auto header = PictureHeader::read(bytes);
        QVERIFY(header);
        QCOMPARE(header->fileBytes, bytes.size());
    }
};

QTEST_GUILESS_MAIN(PictureHeaderTest)
#include "tst_PictureHeader.moc"
