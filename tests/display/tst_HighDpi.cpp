// The view on a screen of two device pixels to a logical one.

#include "display/ImageView.h"
#include "support/Pictures.h"

/// Has to be there before the application object.
static const bool Scaled = qputenv("QT_SCALE_FACTOR", "2");

class HighDpiTest : public QObject
{
    Q_OBJECT
private slots:
    void picturesUseEveryDevicePixel()
    {
        QVERIFY(Scaled);
        ImageView view;
        view.resize(300, 200);
        view.show();
        QVERIFY(waitForExposed(&view));
        QCOMPARE(view.devicePixelRatioF(), 2.0);
        const QImage picture = checkerboard({600, 400});
        view.setPicture(Still::fromImage(picture));
        QCOMPARE(devicePixels(view), picture);
        QVERIFY(!view.loadPicture(encodedImage(picture, "bmp")).isNull());
        QCOMPARE(devicePixels(view), picture);
    }

    void zoomCountsLogicalPixels()
    {
        ImageView view;
        view.resize(400, 400);
        view.show();
        QVERIFY(waitForExposed(&view));
        view.setPicture(Still::fromImage(checkerboard({800, 800})));
        QTest::mouseClick(view.findChild<QWidget*>("picMain"), Qt::LeftButton, {},
                          QPoint(200, 200));
        QCOMPARE(view.shownRegion(), QRectF(0.25, 0.25, 0.5, 0.5));
        // 400 picture pixels over 800 device pixels: each is two wide.
        const QImage zoomed = devicePixels(view);
        QCOMPARE(zoomed.size(), QSize(800, 800));
        QVERIFY(zoomed.pixelColor(400, 400).red() != zoomed.pixelColor(402, 400).red());
    }
};

QTEST_MAIN(HighDpiTest)
#include "tst_HighDpi.moc"
