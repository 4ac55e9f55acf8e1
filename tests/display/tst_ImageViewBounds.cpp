// Pictures of extreme shapes, from a megabyte of data: what it costs to show and to zoom them.

#include "display/ImageView.h"
#include "support/Cost.h"
#include "support/OddPictures.h"

class ImageViewBoundsTest : public QObject
{
    Q_OBJECT
private slots:
    void extremeShapesCostNoMoreThanLargePictures_data()
    {
        QTest::addColumn<Still>("picture");
        const auto row = [](const char* name, const odd::Bitmap& header) {
            const QByteArray data(1'000'000, 'a');
            QTest::newRow(name) << Still::fromBytes(odd::bitmap(header, data), {1, 1});
        };
        constexpr int longest = 65'535;
        constexpr int most = 50'000'000 / longest;
        row("a column", {.width = 1, .height = -longest, .bits = 32});
        row("a row", {.width = longest, .height = 1, .bits = 8});
        row("a tall one", {.width = most, .height = -longest, .bits = 32});
        row("a tall one of bits", {.width = most, .height = -longest, .bits = 1});
        row("a wide one", {.width = longest, .height = most, .bits = 8});
        row("a square", {.width = 7071, .height = -7071, .bits = 24});
        // No file gives these, but nothing keeps the program from them.
        QTest::newRow("an endless column")
            << Still::fromImage(QImage(1, 50'000'000, QImage::Format_RGB32));
        QTest::newRow("an endless row")
            << Still::fromImage(QImage(50'000'000, 1, QImage::Format_RGB32));
    }

    void extremeShapesCostNoMoreThanLargePictures()
    {
        QFETCH(Still, picture);
        QVERIFY(!picture.isNull());
        ImageView view;
        view.resize(900, 560);
        view.show();
        QVERIFY(waitForExposed(&view));
        const double reference = costOf(decodeTwelveMegapixels);
        const double shown = costOf([&] {
            view.setPicture(picture);
            view.grab();
        });
        const double zoomed = costOf([&] {
            QTest::mouseClick(view.findChild<QWidget*>("picMain"), Qt::LeftButton, {},
                              QPoint(450, 280));
            view.grab();
        });
        qInfo("shown at %.2f times the cost of a large picture, zoomed at %.2f", shown / reference,
              zoomed / reference);
        QVERIFY(shown < 8 * reference);
        QVERIFY(zoomed < 8 * reference);
    }
};

QTEST_MAIN(ImageViewBoundsTest)
#include "tst_ImageViewBounds.moc"
