// What is written is read by other programs.

#include "picture/SaveImage.h"

#include "picture/FixedPalette.h"
#include "picture/GifWriter.h"
#include "support/Cost.h"
#include "support/OddPictures.h"
#include "support/OtherProgram.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

static QByteArray sizeOf(const QImage& image)
{
    return QByteArray::number(image.width()) + ' ' + QByteArray::number(image.height());
}

/// The pixels of a GIF file; null where it cannot be read.
static QImage readGif(const QByteArray& bytes)
{
    QImage image;
    image.loadFromData(bytes, "gif");
    return image.convertToFormat(QImage::Format_RGB32);
}

class SaveImageTest : public QObject
{
    Q_OBJECT
private slots:
    void aGifHasEightBitsForEverySource_data() { sources(); }

    void aGifHasEightBitsForEverySource()
    {
        QFETCH(QImage, image);
        ScratchFile file("a.gif");
        QVERIFY(SaveImage(file.path(), Still::fromImage(image), "gif"));
        QVERIFY(file.content().startsWith("GIF8"));
        QCOMPARE(printedBy({"identify", "-format", "%m %w %h %z %n", file.path()}),
                 "GIF " + sizeOf(image) + " 8 1");

        const QByteArray text = printedBy({"giftext", file.path()});
        const QByteArray width = QByteArray::number(image.width());
        const QByteArray height = QByteArray::number(image.height());
        QVERIFY2(text.contains("Width = " + width + ", Height = " + height), text.constData());
        QVERIFY2(text.contains("ColorResolution = 8, BitsPerPixel = 8"), text.constData());
        QVERIFY2(text.contains("Image Size - Left = 0, Top = 0, Width = " + width),
                 text.constData());
    }

    void aGifHasTheNearestColourOfOnePalette()
    {
        const QImage image = odd::scenery({300, 200});
        const QImage written = readGif(encodeGif(image));
        QCOMPARE(written.size(), image.size());
        QSet<QRgb> colours;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb nearest =
                    fixedPalette::colours()[fixedPalette::nearest(image.pixel(x, y))];
                QCOMPARE(written.pixel(x, y), nearest);
                colours.insert(nearest);
            }
        }
        QVERIFY(colours.size() > 30);
    }

    void allGifsHaveTheSamePalette()
    {
        constexpr int headerBytes = 13;
        QByteArray expected;
        for (const QRgb colour : fixedPalette::colours())
            expected += QByteArray{}
                            .append(char(qRed(colour)))
                            .append(char(qGreen(colour)))
                            .append(char(qBlue(colour)));
        for (const QImage& image : {odd::scenery({80, 60}), plainImage({3, 3}, Qt::red)})
            QCOMPARE(encodeGif(image).mid(headerBytes, expected.size()), expected);
    }

    void aGifIsWhiteWhereThePictureIsTransparent()
    {
        QImage image(4, 4, QImage::Format_ARGB32);
        image.fill(qRgba(255, 0, 0, 0));
        image.setPixel(1, 1, qRgb(0, 0, 255));
        const QByteArray bytes = encodeGif(image);
        QCOMPARE(readGif(bytes).pixelColor(0, 0), QColor(Qt::white));
        QCOMPARE(readGif(bytes).pixelColor(1, 1), QColor(Qt::blue));
        QCOMPARE(printedBy({"identify", "-format", "%[opaque]", "gif:-"}, bytes).toLower(), "true");
    }

    void aPictureTooLargeForAGifIsRefused_data()
    {
        const Rows<QSize, bool> row("size", "isWritten");
        row("widest", QSize(65'535, 2), true);
        row("too wide", QSize(65'536, 2), false);
        row("highest", QSize(2, 65'535), true);
        row("too high", QSize(2, 65'536), false);
    }

    void aPictureTooLargeForAGifIsRefused()
    {
        QFETCH(QSize, size);
        QFETCH(bool, isWritten);
        ScratchFile file("a.gif");
        file.setContent("old");
        const Still picture = Still::fromImage(plainImage(size, Qt::green));
        QCOMPARE(SaveImage(file.path(), picture, "gif"), isWritten);
        if (isWritten) {
            const QImage written = readGif(file.content());
            QCOMPARE(written.size(), size);
            QCOMPARE(written.pixelColor(size.width() - 1, size.height() - 1), QColor(Qt::green));
        } else {
            QCOMPARE(file.content(), "old");
        }
    }

    void aLargeGifCostsLittle()
    {
        const QImage image = odd::scenery({1920, 1080});
        QByteArray bytes;
        const double times =
            timesTheCost([&] { bytes = encodeGif(image); }, [&] { odd::encoded(image, "png"); });
        QVERIFY(!bytes.isEmpty());
        qInfo("%.2f times a PNG", times);
        QVERIFY(times < 8);
    }

    void aJpegHas24BitsAndQuality75ForEverySource_data() { sources(); }

    void aJpegHas24BitsAndQuality75ForEverySource()
    {
        QFETCH(QImage, image);
        ScratchFile file("a.jpg");
        QVERIFY(SaveImage(file.path(), Still::fromImage(image), "jpg"));
        QCOMPARE(printedBy({"identify", "-format", "%m %w %h %z %Q", file.path()}),
                 "JPEG " + sizeOf(image) + " 8 75");
        // Three components: one of grey would come out as "P5".
        const QByteArray pixels = printedBy({"djpeg", "-pnm", file.path()});
        QVERIFY(pixels.startsWith("P6\n" + sizeOf(image) + "\n255\n"));
        // The encoder by itself makes no less of a grey picture.
        QVERIFY(printedBy({"djpeg", "-pnm"}, encodeJpeg(image)).startsWith("P6\n"));
    }

    void aJpegIsEncodedAnew()
    {
        QByteArray fine;
        QBuffer buffer(&fine);
        buffer.open(QIODevice::WriteOnly);
        QVERIFY(odd::scenery({200, 100}).save(&buffer, "jpg", 98));
        ScratchFile file("a.jpg");
        QVERIFY(SaveImage(file.path(), Still::fromBytes(fine), "jpg"));
        QVERIFY(file.content() != fine);
        QCOMPARE(printedBy({"identify", "-format", "%Q %w %h", file.path()}), "75 200 100");
    }

    void whatCameAsAPngOrWebpIsEncodedAnew()
    {
        for (const char* format : {"png", "webp"}) {
            const Still still = Still::fromBytes(odd::encoded(odd::scenery({64, 48}), format));
            for (const auto& [name, signature] :
                 {std::pair{"a.jpg", "\xFF\xD8\xFF"}, std::pair{"a.gif", "GIF8"},
                  std::pair{"a.bmp", "BM"}, std::pair{"a.png", "BM"}}) {
                ScratchFile file(name);
                QVERIFY(savePicture(file.path(), still));
                QVERIFY(file.content().startsWith(signature));
                QCOMPARE(Still::fromBytes(file.content()).size(), QSize(64, 48));
            }
        }
    }

    void aJpegIsWhiteWhereThePictureIsTransparent()
    {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(qRgba(255, 0, 0, 0));
        ScratchFile file("a.jpg");
        QVERIFY(SaveImage(file.path(), Still::fromImage(image), "jpg"));
        const QImage written = Still::fromBytes(file.content()).image();
        QCOMPARE(written.pixelColor(8, 8), QColor(Qt::white));
    }

    void aPictureTooLargeForAJpegIsRefused()
    {
        ScratchFile file("a.jpg");
        file.setContent("old");
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression("65500"));
        QVERIFY(!SaveImage(file.path(), Still::fromImage(plainImage({65'536, 2}, Qt::red)), "jpg"));
        QCOMPARE(file.content(), "old");
    }

    void anyOtherWordGivesAGif()
    {
        const Still picture = Still::fromImage(plainImage({8, 8}, Qt::red));
        for (const char* word : {"gif", "", "bmp", "JPG", "jpeg"}) {
            ScratchFile file("a.jpg");
            QVERIFY(SaveImage(file.path(), picture, word));
            QVERIFY2(file.content().startsWith("GIF8"), word);
        }
    }

    void theLastThreeCharactersTellTheFormat_data()
    {
        const Rows<QString, QByteArray> row("name", "begins");
        const QByteArray gif = "GIF8";
        const QByteArray jpeg = "\xFF\xD8\xFF";
        const QByteArray bitmap = "BM";
        row("a.gif", "a.gif", gif);
        row("a.GIF", "a.GIF", gif);
        row("a.Gif", "a.Gif", gif);
        row("a.jpg", "a.jpg", jpeg);
        row("a.JPG", "a.JPG", jpeg);
        row("a.bmp", "a.bmp", bitmap);
        row("a.jpeg", "a.jpeg", bitmap);
        row("a.png", "a.png", bitmap);
        row("no ending", "a", bitmap);
        row("xgif", "xgif", gif);
        row("xjpg", "xjpg", jpeg);
        row("jpg alone", "jpg", jpeg);
        row("a.gif.bmp", "a.gif.bmp", bitmap);
        row("a.jpg and a dot", "a.jpg.", bitmap);
        row("two characters", "if", bitmap);
        row("two others", "pg", bitmap);
        row("letters beyond ASCII", "\u0130.\u00fcjpg", jpeg);
    }

    void theLastThreeCharactersTellTheFormat()
    {
        QFETCH(QString, name);
        QFETCH(QByteArray, begins);
        ScratchFile file(name);
        QVERIFY(savePicture(file.path(), Still::fromImage(plainImage({20, 10}, Qt::red))));
        QVERIFY(file.content().startsWith(begins));
        QCOMPARE(Still::fromBytes(file.content()).size(), QSize(20, 10));
        QCOMPARE(QDir(file.folder()).entryList(QDir::Files), QStringList{name});
    }

    void nothingIsSavedOfANullPicture()
    {
        for (const char* name : {"a.gif", "a.jpg", "a.bmp"}) {
            ScratchFile file(name);
            file.setContent("old");
            QString reason;
            QVERIFY(!savePicture(file.path(), {}, &reason));
            QCOMPARE(reason, "The picture does not fit into such a file");
            QCOMPARE(file.content(), "old");
        }
        QCOMPARE(encodeGif({}), QByteArray());
        QCOMPARE(encodeJpeg({}), QByteArray());
    }

    void aFolderAsTargetIsRefused()
    {
        const Still picture = Still::fromImage(plainImage({8, 8}, Qt::red));
        for (const char* name : {"a.gif", "a.jpg", "a.bmp"}) {
            QTemporaryDir folder;
            QVERIFY(QDir(folder.path()).mkdir(name));
            QString reason;
            QVERIFY(!savePicture(folder.filePath(name), picture, &reason));
            QCOMPARE(reason, "Is a directory");
            QVERIFY(!savePicture(folder.filePath("none/") + name, picture));
            QVERIFY(QFileInfo(folder.filePath(name)).isDir());
        }
    }

    void aFileThatMustNotBeWrittenIsKept()
    {
        if (ranAsOrdinaryUser())
            return;
        for (const char* name : {"a.gif", "a.jpg", "a.bmp"}) {
            ScratchFile file(name);
            file.setContent("old");
            QVERIFY(QFile::setPermissions(file.path(), QFile::ReadOwner));
            QVERIFY(!savePicture(file.path(), Still::fromImage(plainImage({8, 8}, Qt::red))));
            QCOMPARE(file.content(), "old");
        }
    }

private:
    /// Pictures of each kind, no larger than the other programs take.
    static void sources()
    {
        const Rows<QImage> row("image");
        const QImage scenery = odd::scenery({61, 47});
        row("32 bits", scenery);
        row("grey", scenery.convertToFormat(QImage::Format_Grayscale8));
        row("16 bits of grey", scenery.convertToFormat(QImage::Format_Grayscale16));
        row("1 bit", scenery.convertToFormat(QImage::Format_Mono));
        row("indexed", scenery.convertToFormat(QImage::Format_Indexed8));
        row("with alpha", scenery.convertToFormat(QImage::Format_ARGB32));
        row("1 x 1", odd::scenery({1, 1}));
        row("1 wide", odd::scenery({1, 300}));
        row("large", odd::scenery({3840, 2160}));
    }
};

QTEST_GUILESS_MAIN(SaveImageTest)
#include "tst_SaveImage.moc"
