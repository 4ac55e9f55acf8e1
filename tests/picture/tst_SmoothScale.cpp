#include "picture/SmoothScale.h"
#include "support/Cost.h"
#include "support/Pictures.h"
#include "support/Rows.h"

class SmoothScaleTest : public QObject
{
    Q_OBJECT
private slots:
    void shrinksToMeans_data()
    {
        const Rows<QSize> row("from");
        row("to a half", QSize(64, 64));
        row("to a tenth", QSize(320, 320));
        row("to a fiftieth", QSize(1600, 1600));
    }

    void shrinksToMeans()
    {
        QFETCH(QSize, from);
        QImage image(from, QImage::Format_RGB32);
        QRandomGenerator random(1);
        for (int y = 0; y < from.height(); ++y) {
            for (int x = 0; x < from.width(); ++x)
                image.setPixel(x, y, random.bounded(2) ? 0xffffffff : 0xff000000);
        }
        const QImage scaled = smoothlyScaled(image, {32, 32});
        QCOMPARE(scaled.size(), QSize(32, 32));
        int extremes = 0;
        for (int y = 0; y < 32; ++y) {
            for (int x = 0; x < 32; ++x) {
                const int grey = qRed(scaled.pixel(x, y));
                extremes += grey < 20 || grey > 235;
            }
        }
        // A half takes means of four: an eighth of them may come out black or white.
        QVERIFY2(extremes < 32 * 32 / 4, qPrintable(QString::number(extremes)));
        if (from.width() > 64)
            QCOMPARE(extremes, 0);
    }

    void growsInBlends()
    {
        QImage step(2, 1, QImage::Format_RGB32);
        step.setPixel(0, 0, 0xff000000);
        step.setPixel(1, 0, 0xffffffff);
        const int middle = qRed(smoothlyScaled(step, {100, 1}).pixel(50, 0));
        QVERIFY(middle > 60 && middle < 196);
    }

    void theSameSizeIsTheSameImage()
    {
        const QImage image = plainImage({5, 5}, Qt::red);
        QCOMPARE(smoothlyScaled(image, {5, 5}).cacheKey(), image.cacheKey());
        QVERIFY(smoothlyScaled({}, {5, 5}).isNull());
    }

    void anEndlessColumnCostsNoMoreThanASquare()
    {
        const auto plain = [](QSize size) {
            QImage image(size, QImage::Format_RGB32);
            image.fill(Qt::red);
            return image;
        };
        const QImage square = plain({2'450, 2'450});
        for (const QSize size : {QSize(1, 6'000'000), QSize(6'000'000, 1)}) {
            const QImage image = plain(size);
            QImage scaled;
            const double times = timesTheCost(
                [&] {
                    scaled = smoothlyScaled(image, {900, 600});
                },
                [&] {
                    smoothlyScaled(square, {900, 600});
                });
            QCOMPARE(scaled.pixelColor(450, 300), QColor(Qt::red));
            qInfo("%.1f times a square of as many pixels", times);
            QVERIFY(times < 10);
        }
    }
};

QTEST_GUILESS_MAIN(SmoothScaleTest)
#include "tst_SmoothScale.moc"
