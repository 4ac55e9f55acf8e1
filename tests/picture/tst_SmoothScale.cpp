#include "picture/SmoothScale.h"
#include "support/Cost.h"
#include "support/Pictures.h"
#include "support/Rows.h"

#include <QRandomGenerator>

#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr QRgb Grey = 0xff808080;

/// A grey picture in memory of its own, before and behind which nothing may be read: who does so
/// ends the test.
class Guarded
{
public:
    enum class Against { ReadingBefore, ReadingBehind };

    Guarded(QSize size, Against what)
        : m_page(sysconf(_SC_PAGESIZE))
    {
        const qsizetype bytes = qsizetype(size.width()) * size.height() * 4;
        const qsizetype whole = (bytes + m_page - 1) / m_page * m_page;
        m_length = size_t(whole + 2 * m_page);
        m_memory =
            mmap(nullptr, m_length, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (m_memory == MAP_FAILED)
            qFatal("no memory");
        auto* begin = static_cast<uchar*>(m_memory) + m_page;
        uchar* pixels = what == Against::ReadingBehind ? begin + (whole - bytes) : begin;
        std::fill_n(reinterpret_cast<QRgb*>(pixels), bytes / 4, Grey);
        mprotect(m_memory, size_t(m_page), PROT_NONE);
        mprotect(begin + whole, size_t(m_page), PROT_NONE);
        image = QImage(std::as_const(pixels), size.width(), size.height(), size.width() * 4,
                       QImage::Format_RGB32);
    }
    ~Guarded() { munmap(m_memory, m_length); }
    Q_DISABLE_COPY_MOVE(Guarded)

    QImage image;

private:
    qsizetype m_page;
    void* m_memory = nullptr;
    size_t m_length = 0;
};

/// Whether all of a grey picture is there at `to`, and nothing else.
bool staysGrey(QSize from, QSize to)
{
    for (const auto what : {Guarded::Against::ReadingBefore, Guarded::Against::ReadingBehind}) {
        const Guarded picture(from, what);
        const QImage scaled = smoothlyScaled(picture.image, to);
        if (scaled.size() != to)
            return false;
        for (int y = 0; y < to.height(); ++y) {
            const auto* line = reinterpret_cast<const QRgb*>(scaled.constScanLine(y));
            // What is blended may be rounded by one or two.
            if (std::any_of(line, line + to.width(),
                            [](QRgb pixel) { return qAbs(qRed(pixel) - qRed(Grey)) > 2; }))
                return false;
        }
    }
    return true;
}

QString text(QSize from, QSize to)
{
    return QString("%1 x %2 to %3 x %4")
        .arg(from.width())
        .arg(from.height())
        .arg(to.width())
        .arg(to.height());
}

} // namespace

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

    void growsAsByQtsScaler_data()
    {
        const Rows<QSize, QSize> row("from", "to");
        row("twice", QSize(32, 24), QSize(64, 48));
        row("a quarter more", QSize(64, 48), QSize(80, 60));
        row("across alone", QSize(33, 25), QSize(101, 25));
        row("down alone", QSize(33, 25), QSize(33, 40));
        row("one pixel", QSize(1, 1), QSize(7, 5));
        row("a single row", QSize(9, 1), QSize(40, 3));
    }

    /// Within the two of 255 by which either rounds.
    void growsAsByQtsScaler()
    {
        QFETCH(QSize, from);
        QFETCH(QSize, to);
        QImage image(from, QImage::Format_RGB32);
        QRandomGenerator random(3);
        for (int y = 0; y < from.height(); ++y) {
            for (int x = 0; x < from.width(); ++x)
                image.setPixel(x, y, random.generate() | 0xff000000);
        }
        const QImage ours = smoothlyScaled(image, to);
        const QImage qts = image.scaled(to, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QCOMPARE(ours.size(), to);
        QCOMPARE(ours.format(), QImage::Format_RGB32);
        for (int y = 0; y < to.height(); ++y) {
            for (int x = 0; x < to.width(); ++x) {
                const QColor one = ours.pixelColor(x, y);
                const QColor other = qts.pixelColor(x, y);
                const int apart =
                    std::max({qAbs(one.red() - other.red()), qAbs(one.green() - other.green()),
                              qAbs(one.blue() - other.blue())});
                QVERIFY2(apart <= 2, qPrintable(QString("%1 at %2, %3").arg(apart).arg(x).arg(y)));
            }
        }
    }

    void theSameSizeIsTheSameImage()
    {
        const QImage image = plainImage({5, 5}, Qt::red);
        QCOMPARE(smoothlyScaled(image, {5, 5}).cacheKey(), image.cacheKey());
        QVERIFY(smoothlyScaled({}, {5, 5}).isNull());
    }

    void readsNothingBesideThePicture_data()
    {
        const Rows<QSize> row("from");
        for (const int side : {1, 2, 3, 255, 4'096, 32'768, 65'535}) {
            row(std::to_string(side) + " in a row", QSize(side, 1));
            row(std::to_string(side) + " in a column", QSize(1, side));
        }
        row("a long row of three", QSize(65'535, 3));
        row("a long column of three", QSize(3, 65'535));
        row("an ordinary one", QSize(320, 240));
        row("a row that no file gives", QSize(2'097'152, 1));
        row("a column that no file gives", QSize(1, 2'097'152));
        row("as wide, and ninety rows", QSize(524'288, 90));
    }

    void readsNothingBesideThePicture()
    {
        QFETCH(QSize, from);
        constexpr qint64 mostPixels = 300'000;
        const QList<int> sides{1, 2, 3, 16, 620, 65'535, 65'536, 131'071, 131'072, 262'144};
        for (const int width : sides) {
            for (const int height : sides) {
                const QSize to(width, height);
                if (qint64(width) * height <= mostPixels)
                    QVERIFY2(staysGrey(from, to), qPrintable(text(from, to)));
            }
        }
    }

    void readsNothingBesideAnyPicture()
    {
        QRandomGenerator random(42);
        const auto side = [&] { return 1 + int(random.bounded(1u << random.bounded(19))); };
        constexpr qint64 mostPixels = 100'000;
        int tried = 0;
        while (tried < 2'000) {
            const QSize from(side(), side());
            const QSize to(side(), side());
            if (qint64(from.width()) * from.height() > mostPixels ||
                qint64(to.width()) * to.height() > mostPixels)
                continue;
            ++tried;
            QVERIFY2(staysGrey(from, to), qPrintable(text(from, to)));
        }
    }

    void longSidesKeepTheirOrder_data()
    {
        const Rows<QSize, QSize> row("from", "to");
        row("shrunk", QSize(2'097'152, 1), QSize(262'144, 1));
        row("grown", QSize(1'000, 1), QSize(300'000, 1));
        row("a little", QSize(200'000, 2), QSize(190'000, 1));
        row("much", QSize(3'000'000, 1), QSize(500, 1));
    }

    /// From dark to light, and in a column as in a row.
    void longSidesKeepTheirOrder()
    {
        QFETCH(QSize, from);
        QFETCH(QSize, to);
        const auto greyAt = [](int n, int of) { return int(255 * qint64(n) / of); };
        QImage row(from, QImage::Format_RGB32);
        QImage column(from.transposed(), QImage::Format_RGB32);
        for (int y = 0; y < from.height(); ++y) {
            for (int x = 0; x < from.width(); ++x) {
                const int grey = greyAt(x, from.width());
                row.setPixel(x, y, qRgb(grey, grey, grey));
                column.setPixel(y, x, qRgb(grey, grey, grey));
            }
        }
        const QImage wide = smoothlyScaled(row, to);
        const QImage tall = smoothlyScaled(column, to.transposed());
        QCOMPARE(wide.size(), to);
        QCOMPARE(tall.size(), to.transposed());
        for (int x = 0; x < to.width(); ++x) {
            const int expected = greyAt(x, to.width());
            if (qAbs(qRed(wide.pixel(x, 0)) - expected) > 2 ||
                qAbs(qRed(tall.pixel(0, x)) - expected) > 2)
                QFAIL(qPrintable(QString::number(x)));
        }
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
