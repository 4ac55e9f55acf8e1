#include "picture/FlattenedOnWhite.h"
#include "support/Rows.h"

class FlattenedOnWhiteTest : public QObject
{
    Q_OBJECT
private slots:
    void anOpaquePictureKeepsItsColours_data()
    {
        const Rows<QImage::Format> row("format");
        row("32 bits", QImage::Format_RGB32);
        row("24 bits", QImage::Format_RGB888);
        row("grey", QImage::Format_Grayscale8);
        row("indexed", QImage::Format_Indexed8);
        row("1 bit", QImage::Format_Mono);
        row("1 bit, other order", QImage::Format_MonoLSB);
        row("with alpha, all opaque", QImage::Format_ARGB32);
    }

    void anOpaquePictureKeepsItsColours()
    {
        QFETCH(QImage::Format, format);
        QImage source(9, 4, QImage::Format_RGB32);
        source.fill(Qt::black);
        for (int x = 0; x < source.width(); ++x)
            source.setPixel(x, 2, qRgb(255, 255, 255));
        const QImage opaque = flattenedOnWhite(source.convertToFormat(format));
        QCOMPARE(opaque.format(), QImage::Format_RGB32);
        QCOMPARE(opaque, source);
    }

    void whiteShowsThroughWhatIsTransparent_data()
    {
        const Rows<QRgb, QRgb> row("pixel", "seen");
        row("opaque", qRgba(10, 20, 30, 255), qRgb(10, 20, 30));
        row("clear, black", qRgba(0, 0, 0, 0), qRgb(255, 255, 255));
        row("clear, red", qRgba(255, 0, 0, 0), qRgb(255, 255, 255));
        row("a third of black", qRgba(0, 0, 0, 85), qRgb(170, 170, 170));
        row("a third of red", qRgba(255, 0, 0, 85), qRgb(255, 170, 170));
        row("nearly all of blue", qRgba(0, 0, 255, 254), qRgb(1, 1, 255));
    }

    void whiteShowsThroughWhatIsTransparent()
    {
        QFETCH(QRgb, pixel);
        QFETCH(QRgb, seen);
        QImage source(3, 2, QImage::Format_ARGB32);
        source.fill(qRgb(1, 2, 3));
        source.setPixel(2, 1, pixel);
        for (const auto format : {QImage::Format_ARGB32, QImage::Format_ARGB32_Premultiplied,
                                  QImage::Format_RGBA8888}) {
            const QImage opaque = flattenedOnWhite(source.convertToFormat(format));
            QCOMPARE(opaque.format(), QImage::Format_RGB32);
            QCOMPARE(opaque.pixelColor(2, 1), QColor(seen));
            QCOMPARE(opaque.pixelColor(0, 0), QColor(1, 2, 3));
        }
    }

    void coloursOfATableMayBeTransparent()
    {
        QImage source(2, 1, QImage::Format_Indexed8);
        source.setColorTable({qRgb(9, 8, 7), qRgba(0, 0, 0, 0)});
        source.setPixel(0, 0, 0);
        source.setPixel(1, 0, 1);
        const QImage opaque = flattenedOnWhite(source);
        QCOMPARE(opaque.pixelColor(0, 0), QColor(9, 8, 7));
        QCOMPARE(opaque.pixelColor(1, 0), QColor(Qt::white));
    }

    void everyPixelOfAWidePictureIsOpaque()
    {
        QImage source(60'000, 2, QImage::Format_ARGB32);
        source.fill(qRgba(0, 0, 0, 85));
        const QImage opaque = flattenedOnWhite(source);
        QCOMPARE(opaque.pixelColor(59'999, 1), QColor(170, 170, 170));
        QCOMPARE(opaque.pixelColor(0, 0), QColor(170, 170, 170));
    }

    void aNullImageStaysNull() { QVERIFY(flattenedOnWhite(QImage()).isNull()); }
};

QTEST_GUILESS_MAIN(FlattenedOnWhiteTest)
#include "tst_FlattenedOnWhite.moc"
