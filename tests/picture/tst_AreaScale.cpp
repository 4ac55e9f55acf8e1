#include "picture/AreaScale.h"

#include "support/Rows.h"

#include <QRandomGenerator>

#include <algorithm>
#include <array>
#include <cmath>

namespace {

/// How much of pixel `n` of the picture lies in pixel `i` of the result.
double shareOf(int n, int i, int from, int to)
{
    const double begin = double(i) * from / to;
    const double end = double(i + 1) * from / to;
    return std::max(0.0, std::min(end, n + 1.0) - std::max(begin, double(n))) / (end - begin);
}

/// Blue, green, red and alpha of the mean of what pixel `at` of the result covers.
std::array<double, 4> meanOf(const QImage& image, QSize size, QPoint at)
{
    std::array<double, 4> mean{};
    for (int y = 0; y < image.height(); ++y) {
        const double down = shareOf(y, at.y(), image.height(), size.height());
        for (int x = 0; down > 0 && x < image.width(); ++x) {
            const double share = down * shareOf(x, at.x(), image.width(), size.width());
            for (size_t part = 0; part < mean.size(); ++part)
                mean[part] += share * image.constScanLine(y)[size_t(x) * 4 + part];
        }
    }
    return mean;
}

QImage noise(QSize size, QImage::Format format)
{
    QImage image(size, format);
    QRandomGenerator random(7);
    for (int y = 0; y < size.height(); ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            line[x] = random.generate();
            if (format == QImage::Format_RGB32)
                line[x] |= 0xff000000;
            else
                line[x] = qPremultiply(line[x]);
        }
    }
    return image;
}

} // namespace

class AreaScaleTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        if (areaScaled(noise({2, 2}, QImage::Format_RGB32), {1, 1}).isNull())
            QSKIP("This processor has no SSE2: Qt's scaler does it all");
    }

    void givesTheMeanOfWhatEachPixelCovers_data()
    {
        const Rows<QSize, QSize, QImage::Format> row("from", "to", "format");
        const auto opaque = QImage::Format_RGB32;
        row("a half", QSize(64, 48), QSize(32, 24), opaque);
        row("a picture for a view", QSize(192, 108), QSize(80, 60), opaque);
        row("a little", QSize(101, 75), QSize(100, 74), opaque);
        row("across alone", QSize(103, 20), QSize(40, 20), opaque);
        row("down alone", QSize(21, 103), QSize(21, 40), opaque);
        row("to one pixel", QSize(31, 31), QSize(1, 1), opaque);
        row("a long row", QSize(3'001, 1), QSize(100, 1), opaque);
        row("a long column", QSize(1, 3'001), QSize(1, 100), opaque);
        row("with alpha", QSize(67, 45), QSize(20, 31), QImage::Format_ARGB32_Premultiplied);
    }

    void givesTheMeanOfWhatEachPixelCovers()
    {
        QFETCH(QSize, from);
        QFETCH(QSize, to);
        QFETCH(QImage::Format, format);
        const QImage image = noise(from, format);
        const QImage scaled = areaScaled(image, to);
        QCOMPARE(scaled.size(), to);
        QCOMPARE(scaled.format(), format);
        for (int y = 0; y < to.height(); ++y) {
            for (int x = 0; x < to.width(); ++x) {
                const auto mean = meanOf(image, to, {x, y});
                for (size_t part = 0; part < mean.size(); ++part) {
                    const int is = scaled.constScanLine(y)[size_t(x) * 4 + part];
                    QVERIFY2(std::abs(is - mean[part]) < 1,
                             qPrintable(QString("%1 for %2").arg(is).arg(mean[part])));
                }
            }
        }
    }

    void keepsBlackAndWhite()
    {
        for (const QRgb colour : {0xff000000, 0xffffffff}) {
            QImage image(97, 89, QImage::Format_RGB32);
            image.fill(colour);
            const QImage scaled = areaScaled(image, {10, 44});
            QImage expected(10, 44, QImage::Format_RGB32);
            expected.fill(colour);
            QCOMPARE(scaled, expected);
        }
    }

    void leavesTheRestToQt_data()
    {
        const Rows<QSize, QImage::Format, QSize> row("from", "format", "to");
        row("grown across", QSize(8, 8), QImage::Format_RGB32, QSize(9, 4));
        row("grown down", QSize(8, 8), QImage::Format_RGB32, QSize(4, 9));
        row("no size", QSize(8, 8), QImage::Format_RGB32, QSize(0, 4));
        row("no picture", QSize(), QImage::Format_RGB32, QSize(1, 1));
        row("grey", QSize(8, 8), QImage::Format_Grayscale8, QSize(4, 4));
        row("alpha that blends wrongly", QSize(8, 8), QImage::Format_ARGB32, QSize(4, 4));
    }

    void leavesTheRestToQt()
    {
        QFETCH(QSize, from);
        QFETCH(QImage::Format, format);
        QFETCH(QSize, to);
        QImage image(from, format);
        image.fill(Qt::white);
        QVERIFY(areaScaled(image, to).isNull());
    }
};

QTEST_GUILESS_MAIN(AreaScaleTest)
#include "tst_AreaScale.moc"
