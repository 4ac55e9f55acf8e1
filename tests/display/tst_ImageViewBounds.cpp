// Pictures of extreme shapes, from a megabyte of data: shown and zoomed within two seconds of
// processor time each.

#include "display/ImageView.h"
#include "support/OddPictures.h"
#include "support/Slower.h"

#include <ctime>

class ImageViewBoundsTest : public QObject
{
    Q_OBJECT
private slots:
    void extremeShapesAreShownInTime_data()
    {
        QTest::addColumn<QByteArray>("picture");
        constexpr int most = 50'000'000;
        const QByteArray data(1'000'000, 'a');
        QTest::newRow("a column") << odd::bitmap({.width = 1, .height = -most, .bits = 32}, data);
        QTest::newRow("a column of bits")
            << odd::bitmap({.width = 1, .height = -most, .bits = 1}, data);
        QTest::newRow("a row") << odd::bitmap({.width = most, .height = 1, .bits = 8}, data);
        QTest::newRow("a square") << odd::bitmap({.width = 7071, .height = -7071, .bits = 24},
                                                 data);
    }

    void extremeShapesAreShownInTime()
    {
        QFETCH(QByteArray, picture);
        ImageView view;
        view.resize(900, 560);
        view.show();
        QVERIFY(QTest::qWaitForWindowExposed(&view));
        const auto seconds = [](auto&& work) {
            const auto start = std::clock();
            work();
            return double(std::clock() - start) / CLOCKS_PER_SEC;
        };
        const double shown = seconds([&] {
            QVERIFY(!view.loadPicture(picture).isNull());
            view.grab();
        });
        const double zoomed = seconds([&] {
            QTest::mouseClick(view.findChild<QWidget*>("picMain"), Qt::LeftButton, {},
                              QPoint(450, 280));
            view.grab();
        });
        qInfo("shown in %.2f s, zoomed in %.2f s", shown, zoomed);
        QVERIFY(shown < 2 * Slower);
        QVERIFY(zoomed < 2 * Slower);
    }
};

QTEST_MAIN(ImageViewBoundsTest)
#include "tst_ImageViewBounds.moc"
