#include "picture/headers/WebpLossless.h"

#include "support/OddBytes.h"
#include "support/OddPictures.h"
#include "support/OddWebp.h"
#include "support/Rows.h"

Q_DECLARE_METATYPE(odd::Lossless)

namespace {

/// What stands before the stream in a file of nothing but a VP8L chunk.
constexpr qsizetype Before = 12 + 8 + 5;

QByteArray streamOf(const QImage& image)
{
    const QByteArray file = odd::encodedWebp(image, 100);
    if (!file.sliced(12).startsWith("VP8L"))
        qFatal("not without losses");
    return file.mid(Before);
}

/// Of so many colours.
QImage paintedIn(int colours, QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(0, 0, 0) | uint((x * 7 + y / 3) % colours * 70'007));
    return image;
}

QImage noise(QSize size)
{
    QRandomGenerator random(7);
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, random.generate() | 0xFF000000);
    return image;
}

QByteArray streamOf(odd::Lossless picture)
{
    return odd::losslessWebp(picture).mid(5);
}

} // namespace

class WebpLosslessTest : public QObject
{
    Q_OBJECT
private slots:
    void readsWhatAnEncoderWrites_data()
    {
        const Rows<QImage> row("image");
        for (const int width : {1, 2, 3, 17, 100, 640, 1'500}) {
            const QSize size(width, width * 3 / 4 + 1);
            const std::string by = " " + std::to_string(width) + " wide";
            row("scenery" + by, odd::scenery(size));
            row("grey" + by, odd::scenery(size)
                                 .convertedTo(QImage::Format_Grayscale8)
                                 .convertedTo(QImage::Format_RGB32));
            row("noise" + by, noise(size));
            for (const int colours : {2, 3, 9, 200})
                row(std::to_string(colours) + " colours" + by, paintedIn(colours, size));
        }
    }

    void readsWhatAnEncoderWrites()
    {
        QFETCH(QImage, image);
        constexpr qint64 mostThatEncodersMake = 2'600;
        const auto blocks = losslessBlocks(streamOf(image), image.size());
        QVERIFY(blocks);
        QVERIFY2(*blocks <= mostThatEncodersMake, QByteArray::number(*blocks));
    }

    void anEncoderMakesBlocks()
    {
        const QImage image = odd::scenery({1'500, 1'000});
        QVERIFY(losslessBlocks(streamOf(image), image.size()) > 1);
    }

    void countsTheBlocks_data()
    {
        const Rows<odd::Lossless, qint64> row("picture", "blocks");
        const QSize size(500, 300);
        row("none", {.size = size}, qint64(0));
        row("none behind transforms", {.size = size, .transforms = true}, qint64(0));
        row("none behind a table of colours", {.size = size, .cache = true}, qint64(0));
        row("of 4 by 4", {.size = size, .blockBits = 2, .codes = 9}, qint64(125 * 75));
        row("of 512 by 512", {.size = size, .blockBits = 9, .codes = 9}, qint64(1));
        row("of 16 by 16, behind all of these",
            {.size = size, .transforms = true, .cache = true, .blockBits = 4, .codes = 9},
            qint64(32 * 19));
    }

    void countsTheBlocks()
    {
        QFETCH(odd::Lossless, picture);
        const auto blocks = losslessBlocks(streamOf(picture), picture.size);
        QVERIFY(blocks);
        QTEST(*blocks, "blocks");
    }

    void fewColoursShareThePixelsOfARow_data()
    {
        const Rows<int, qint64> row("colours", "blocks");
        row("2 colours", 2, qint64(16 * 75));
        row("4 colours", 4, qint64(32 * 75));
        row("16 colours", 16, qint64(63 * 75));
        row("17 colours", 17, qint64(125 * 75));
    }

    void fewColoursShareThePixelsOfARow()
    {
        QFETCH(int, colours);
        odd::CodeWriter writer;
        writer.write(1, 1);
        writer.write(3, 2);
        writer.write(colours - 1, 8);
        writer.write(0, 1);
        for (int i = 0; i < 5; ++i)
            writer.write(0b0001, 4); // A code of one symbol.
        writer.write(0, 1);
        writer.write(0, 1);
        writer.write(1, 1);
        writer.write(0, 3);
        const auto blocks = losslessBlocks(writer.finished(), QSize(500, 300));
        QVERIFY(blocks);
        QTEST(*blocks, "blocks");
    }

    void errs_data()
    {
        const Rows<QByteArray> row("stream");
        const auto bits = [](std::initializer_list<std::pair<int, int>> codes) {
            odd::CodeWriter writer;
            for (const auto& [code, count] : codes)
                writer.write(code, count);
            return writer.finished() + QByteArray(100, 0);
        };
        row("nothing", {});
        row("green twice", bits({{1, 1}, {2, 2}, {1, 1}, {2, 2}}));
        row("a table of no colours", bits({{0, 1}, {1, 1}, {0, 4}}));
        row("a table of too many colours", bits({{0, 1}, {1, 1}, {12, 4}}));
        row("codes that are none", bits({{1, 1}, {0, 2}, {0, 3}, {0, 1}, {0, 1}, {0, 4}}));
        row("codes of a symbol that is none", bits({{1, 1},
                                                    {0, 2},
                                                    {0, 3},
                                                    {0, 1},
                                                    {0b0001, 4},
                                                    {0b0001, 4},
                                                    {0b0001, 4},
                                                    {0b0001, 4},
                                                    {0b101, 3},
                                                    {200, 8}}));
    }

    void errs()
    {
        QFETCH(QByteArray, stream);
        QVERIFY(!losslessBlocks(stream, QSize(500, 300)));
    }

    void isCutWithinItsTransforms()
    {
        const QByteArray stream = streamOf(odd::scenery({640, 480}));
        qsizetype shortest = 0;
        while (shortest < stream.size() && !losslessBlocks(stream.left(shortest), QSize(640, 480)))
            ++shortest;
        QVERIFY(shortest > 10 && shortest < stream.size() / 2);
        for (qsizetype length = shortest; length < shortest + 50; ++length)
            QCOMPARE(losslessBlocks(stream.left(length), QSize(640, 480)),
                     losslessBlocks(stream, QSize(640, 480)));
    }
};

QTEST_GUILESS_MAIN(WebpLosslessTest)
#include "tst_WebpLossless.moc"
