#include "picture/EncodeBitmap.h"
#include "support/OddPictures.h"
#include "support/OtherProgram.h"
#include "support/Rows.h"

#include <QtEndian>

class EncodeBitmapTest : public QObject
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
        row("wide", odd::scenery({70'000, 1}));
    }

    void everyPictureGives24Bits()
    {
        QFETCH(QImage, image);
        const QByteArray bytes = encodeBitmap(image);
        QVERIFY(bytes.startsWith("BM"));
        constexpr int bitsAt = 28;
        QCOMPARE(qFromLittleEndian<quint16>(bytes.constData() + bitsAt), 24);
        // Sizes are limited there, for the program's own safety.
        if (image.width() < 10'000) {
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
        QVERIFY(read.loadFromData(encodeBitmap(image), "bmp"));
        QCOMPARE(read.pixelColor(3, 3), QColor(Qt::white));
    }

    void aNullImageGivesNothing() { QCOMPARE(encodeBitmap({}), QByteArray()); }
};

QTEST_GUILESS_MAIN(EncodeBitmapTest)
#include "tst_EncodeBitmap.moc"
