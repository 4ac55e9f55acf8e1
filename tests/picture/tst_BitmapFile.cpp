#include "picture/BitmapFile.h"
#include "support/OddPictures.h"
#include "support/OtherProgram.h"
#include "support/Rows.h"

#include <QtEndian>

class BitmapFileTest : public QObject
{
    Q_OBJECT
private slots:
    void everyPictureGives24Bits_data()
    {
        const Rows<QImage> row("image");
        const QImage scenery = odd::scenery({61, 47});
        row("32 bits", scenery);
        row("grey", scenery.convertToFormat(QImage::Format_Grayscale8));
        row("1 bit", scenery.convertToFormat(QImage::Format_Mono));
        row("indexed", scenery.convertToFormat(QImage::Format_Indexed8));
        row("with alpha", scenery.convertToFormat(QImage::Format_ARGB32));
        row("1 x 1", odd::scenery({1, 1}));
        row("2 x 3", odd::scenery({2, 3}));
        row("3 x 70", odd::scenery({3, 70}));
        row("4 x 4", odd::scenery({4, 4}));
        row("wide", odd::scenery({70'000, 1}));
        row("tall", odd::scenery({1, 70'000}));
    }

    void everyPictureGives24Bits()
    {
        QFETCH(QImage, image);
        const BitmapFile file(image);
        const QByteArray& bytes = file.bytes();
        QVERIFY(bytes.startsWith("BM"));
        constexpr int bitsAt = 28;
        QCOMPARE(qFromLittleEndian<quint16>(bytes.constData() + bitsAt), 24);
        // Sizes are limited there, for the program's own safety.
        if (image.width() < 10'000 && image.height() < 10'000) {
            const QByteArray size =
                QByteArray::number(image.width()) + ' ' + QByteArray::number(image.height());
            QCOMPARE(printedBy({"identify", "-format", "%m %w %h %z", "bmp:-"}, bytes),
                     "BMP3 " + size + " 8");
        }
        QImage read;
        QVERIFY(read.loadFromData(bytes, "bmp"));
        QCOMPARE(read.convertToFormat(QImage::Format_RGB32),
                 image.convertToFormat(QImage::Format_RGB32));
    }

    void whatIsTransparentIsWhite()
    {
        QImage image(4, 4, QImage::Format_ARGB32);
        image.fill(qRgba(200, 0, 0, 0));
        QImage read;
        QVERIFY(read.loadFromData(BitmapFile(image).bytes(), "bmp"));
        QCOMPARE(read.pixelColor(3, 3), QColor(Qt::white));
    }

    void theImageItselfStaysAsItWas()
    {
        const QImage image = odd::scenery({40, 30});
        const QList<QImage> copies{image};
        const BitmapFile file(image);
        QCOMPARE(image, odd::scenery({40, 30}));
        QCOMPARE(copies.first(), image);
    }

    void isThatOfQtsWriter()
    {
        QImage image = odd::scenery({41, 30});
        image.setDotsPerMeterX(1'234);
        image.setDotsPerMeterY(4'321);
        QCOMPARE(BitmapFile(image).bytes(),
                 odd::encoded(image.convertToFormat(QImage::Format_RGB888), "bmp"));
    }

    void aNullImageGivesNothing() { QCOMPARE(BitmapFile({}).bytes(), QByteArray()); }
};

QTEST_GUILESS_MAIN(BitmapFileTest)
#include "tst_BitmapFile.moc"
