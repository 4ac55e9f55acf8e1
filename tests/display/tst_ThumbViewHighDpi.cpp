// The strip on a screen of two device pixels to a logical one, and moved to another.

#include "support/Pictures.h"
#include "support/ShownStrip.h"
#include "support/TimeSeam.h"

/// Has to be there before the application object.
static const bool Scaled = qputenv("QT_SCALE_FACTOR", "2");

/// A strip on a screen whose resolution is the test's.
class MovableStrip : public ThumbView
{
public:
    int ratio = 2;

protected:
    int metric(PaintDeviceMetric what) const override
    {
        if (what == PdmDevicePixelRatio)
            return ratio;
        if (what == PdmDevicePixelRatioScaled)
            return int(ratio * devicePixelRatioFScale());
        return ThumbView::metric(what);
    }
};

class ThumbViewHighDpiTest : public QObject
{
    Q_OBJECT
private slots:
    void thumbnailsUseEveryDevicePixel()
    {
        QVERIFY(Scaled);
        ShownStrip strip({200, 300});
        QCOMPARE(strip.view.devicePixelRatioF(), 2.0);
        const QImage picture = checkerboard({160, 120});
        for (int i = 0; i < 3; ++i)
            strip.view.AddImage(Still::fromImage(picture));
        QVERIFY(strip.waitUntilFilled());
        const QImage view = devicePixels(strip.view);
        QCOMPARE(view.copy(0, 16, 160, 120), picture);
        QCOMPARE(view.copy(180, 16, 160, 120), picture);
        QCOMPARE(view.copy(0, 176, 160, 120), picture);
    }

    void anotherScreensResolutionIsRenderedAnew()
    {
        MovableStrip view;
        view.resize(200, 300);
        view.show();
        QVERIFY(waitForExposed(&view));
        const QImage picture = checkerboard({240, 180});
        view.AddImage(Still::fromImage(picture));
        auto& cell = *view.findChild<ThumbCell*>("img(0)");
        // The focus would be marked on the picture.
        view.setEnabled(false);
        Timer& fill = timerOf(view, "tmrFill");
        QTRY_VERIFY(!fill.Enabled());
        QVERIFY(!cell.needsRendering());
        view.ratio = 3;
        QVERIFY(cell.needsRendering());
        // It is painted on the new screen, at first as it was.
        QVERIFY(cell.isRendered());
        view.grab();
        QVERIFY(fill.Enabled());
        QTRY_VERIFY(!fill.Enabled());
        QVERIFY(!cell.needsRendering());
        QCOMPARE(devicePixels(view).copy(0, 24, 240, 180), picture);
    }
};

QTEST_MAIN(ThumbViewHighDpiTest)
#include "tst_ThumbViewHighDpi.moc"
