#include "support/Rows.h"
#include "widgets/SymbolIcon.h"

#include <QPainter>
#include <QToolButton>

#include <cmath>

namespace {

constexpr QSize toolbarSize(20, 20);

QImage imageOf(const QIcon& icon, QSize size, QIcon::Mode mode = QIcon::Normal, qreal ratio = 1)
{
    return icon.pixmap(size, ratio, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The painted area in pixels; one that is half covered counts half.
double ink(const QImage& image)
{
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            sum += image.pixelColor(x, y).alphaF();
    }
    return sum;
}

/// Some pixels are painted all over, and all of those in `colour` (within what rounding does).
bool isDrawnIn(QColor colour, const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor found = image.pixelColor(x, y);
            if (found.alpha() < 250)
                continue;
            ++count;
            if (std::abs(found.red() - colour.red()) > 2 ||
                std::abs(found.green() - colour.green()) > 2 ||
                std::abs(found.blue() - colour.blue()) > 2)
                return false;
        }
    }
    return count > 10;
}

/// How far the icon stands out from a ground: 0 for not at all.
double contrast(const QImage& icon, QColor ground)
{
    double sum = 0;
    for (int y = 0; y < icon.height(); ++y) {
        for (int x = 0; x < icon.width(); ++x) {
            const QColor colour = icon.pixelColor(x, y);
            sum += std::abs(qGray(colour.rgb()) - qGray(ground.rgb())) * double(colour.alphaF());
        }
    }
    return sum;
}

void setButtonText(QColor normal, QColor disabled)
{
    QPalette palette;
    palette.setColor(QPalette::ButtonText, normal);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled);
    palette.setColor(QPalette::HighlightedText, QColor(0xfedcba));
    QGuiApplication::setPalette(palette);
}

} // namespace

class SymbolIconTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        symbolIcon("open"); // brings the icons of the library in
        for (const QString& file : QDir(":/icons").entryList({"*.svg"}, QDir::Files, QDir::Name))
            m_names << QFileInfo(file).completeBaseName();
        for (const char* name :
             {"open", "save", "back", "forward", "stop", "refresh", "timer", "timer-paused",
              "delete", "play", "stop-movie", "toggle-view", "pevora"})
            QVERIFY2(m_names.contains(name), name);
    }

    void init() { setButtonText(QColor(0x202428), QColor(0xb0b0b0)); }

    void isDrawnAtEverySize_data() { eachName(); }

    void isDrawnAtEverySize()
    {
        QFETCH(QString, name);
        const QIcon icon = symbolIcon(name);
        QVERIFY(!icon.isNull());
        for (const int side : {16, 20, 40, 80}) {
            const QImage image = imageOf(icon, QSize(side, side));
            QCOMPARE(image.size(), QSize(side, side));
            // Strokes of a tenth of the width, on a ground that stays empty.
            const double part = ink(image) / (side * side);
            QVERIFY2(part > 0.1 && part < 0.7, qPrintable(QString::number(part)));
            QCOMPARE(image.pixelColor(0, 0).alpha(), 0);
        }
    }

    void looksLikeNoOther()
    {
        for (const QString& one : m_names) {
            for (const QString& other : m_names) {
                if (one >= other)
                    continue;
                const QImage first = imageOf(symbolIcon(one), toolbarSize);
                const QImage second = imageOf(symbolIcon(other), toolbarSize);
                int differing = 0;
                for (int y = 0; y < first.height(); ++y) {
                    for (int x = 0; x < first.width(); ++x)
                        differing +=
                            std::abs(qAlpha(first.pixel(x, y)) - qAlpha(second.pixel(x, y))) > 128;
                }
                QVERIFY2(differing >= 12, qPrintable(one + " and " + other));
            }
        }
    }

    void isCrispOnADenseScreen()
    {
        const QIcon icon = symbolIcon("stop-movie");
        const QImage dense = imageOf(icon, toolbarSize, QIcon::Normal, 2);
        QCOMPARE(dense.size(), 2 * toolbarSize);
        QCOMPARE(dense.devicePixelRatio(), 2.0);
        // Drawn for the screen's own pixels: the same as an icon of twice the size.
        QImage large = imageOf(icon, 2 * toolbarSize);
        large.setDevicePixelRatio(2);
        QCOMPARE(dense, large);
        // The square's straight edges lie between pixels, so its middle row is full or empty.
        for (int x = 0; x < dense.width(); ++x) {
            const int alpha = dense.pixelColor(x, dense.height() / 2).alpha();
            QVERIFY2(alpha == 0 || alpha == 255, qPrintable(QString::number(x)));
        }
        QCOMPARE(imageOf(icon, toolbarSize, QIcon::Normal, 1.5).size(), QSize(30, 30));
    }

    void followsThePalette_data() { eachName(); }

    void followsThePalette()
    {
        QFETCH(QString, name);
        const QIcon icon = symbolIcon(name);
        if (name == "pevora") {
            // The program's own icon is coloured, and the same on every ground.
            const QImage before = imageOf(icon, toolbarSize);
            QVERIFY(!isDrawnIn(QColor(0x202428), before));
            setButtonText(Qt::white, Qt::gray);
            QCOMPARE(imageOf(icon, toolbarSize), before);
            return;
        }
        QVERIFY(isDrawnIn(QColor(0x202428), imageOf(icon, toolbarSize)));
        setButtonText(QColor(0xf0f1f2), QColor(0x606060));
        QVERIFY(isDrawnIn(QColor(0xf0f1f2), imageOf(icon, toolbarSize)));
        QVERIFY(isDrawnIn(QColor(0xf0f1f2), imageOf(icon, toolbarSize, QIcon::Active)));
        QVERIFY(isDrawnIn(QColor(0x606060), imageOf(icon, toolbarSize, QIcon::Disabled)));
        QVERIFY(isDrawnIn(QColor(0xfedcba), imageOf(icon, toolbarSize, QIcon::Selected)));
    }

    void isPalerWhereItIsDisabled_data() { eachName(); }

    void isPalerWhereItIsDisabled()
    {
        QFETCH(QString, name);
        const QIcon icon = symbolIcon(name);
        const auto paler = [&](QColor ground) {
            const double disabled = contrast(imageOf(icon, toolbarSize, QIcon::Disabled), ground);
            return disabled > 0 &&
                   disabled < 0.7 * contrast(imageOf(icon, toolbarSize, QIcon::Normal), ground);
        };
        QVERIFY(paler(Qt::white));
        setButtonText(QColor(0xf0f1f2), QColor(0x606060));
        QVERIFY(paler(QColor(0x202020)));
    }

    void keepsItsShapeInAnOblong()
    {
        const QIcon icon = symbolIcon("stop-movie");
        QImage wide(60, 20, QImage::Format_ARGB32);
        wide.fill(Qt::transparent);
        QPainter painter(&wide);
        icon.paint(&painter, wide.rect());
        painter.end();
        QCOMPARE(wide.copy(20, 0, 20, 20), imageOf(icon, toolbarSize));
        QCOMPARE(ink(wide), ink(imageOf(icon, toolbarSize)));
    }

    void takesTheTranslucencyOfItsColour()
    {
        setButtonText(QColor(0, 0, 0, 102), Qt::gray);
        const QImage image = imageOf(symbolIcon("stop-movie"), toolbarSize);
        QVERIFY(std::abs(image.pixelColor(10, 10).alpha() - 102) <= 1);
    }

    void aButtonChangesWithThePalette()
    {
        QToolButton button;
        button.setAutoRaise(true);
        button.setIconSize(toolbarSize);
        button.setIcon(symbolIcon("stop-movie"));
        button.show();
        QVERIFY(waitForExposed(&button));
        const auto middle = [&] {
            const QImage image = button.grab().toImage();
            return image.pixelColor(image.rect().center());
        };
        QCOMPARE(middle(), QColor(0x202428));
        setButtonText(QColor(0xf0f1f2), QColor(0x606060));
        QCOMPARE(middle(), QColor(0xf0f1f2));
        button.setEnabled(false);
        QCOMPARE(middle(), QColor(0x606060));
    }

    void isPaintedCrispOnADenseScreen()
    {
        const QIcon icon = symbolIcon("stop-movie");
        for (const double ratio : {1.0, 1.5, 2.0}) {
            QImage dense(toolbarSize * ratio, QImage::Format_ARGB32);
            dense.setDevicePixelRatio(ratio);
            dense.fill(Qt::transparent);
            QPainter painter(&dense);
            icon.paint(&painter, QRect(QPoint(), toolbarSize));
            painter.end();
            QCOMPARE(dense, imageOf(icon, toolbarSize, QIcon::Normal, ratio));
        }
    }

    void isDrawnOnceForEachSizeAndLook()
    {
        const QIcon icon = symbolIcon("camera");
        const QList<QIcon> copies{icon};
        const auto key = [](const QIcon& of, int side, QIcon::Mode mode = QIcon::Normal) {
            return of.pixmap(QSize(side, side), 1, mode).cacheKey();
        };
        const qint64 first = key(icon, 16);
        QCOMPARE(key(icon, 16), first);
        QCOMPARE(key(copies.first(), 16), first);
        QVERIFY(key(icon, 20) != first);
        QVERIFY(key(icon, 16, QIcon::Selected) != first);
        QCOMPARE(key(icon, 16), first);
    }

    void whatIsKeptIsOfOneModeAlone()
    {
        // Coloured icons take no colour that could tell the two apart.
        setButtonText(Qt::black, Qt::black);
        const QIcon icon = symbolIcon("pevora");
        QVERIFY(ink(imageOf(icon, toolbarSize, QIcon::Disabled)) <
                0.7 * ink(imageOf(icon, toolbarSize)));
    }

    void howManyDrawingsAreKeptIsBounded()
    {
        const QIcon icon = symbolIcon("camera");
        const qint64 first = icon.pixmap(16, 16).cacheKey();
        for (int side = 17; side < 40; ++side)
            icon.pixmap(side, side);
        QVERIFY(icon.pixmap(16, 16).cacheKey() != first);
    }

    void anUnknownNameGivesANullIcon()
    {
        for (const char* name : {"", "no-such-icon", "open.svg", "../icons/open/"}) {
            const QIcon icon = symbolIcon(name);
            QVERIFY2(icon.isNull(), name);
            QVERIFY2(icon.pixmap(toolbarSize).isNull(), name);
        }
    }

private:
    void eachName()
    {
        const Rows<QString> row("name");
        for (const QString& name : m_names)
            row(qPrintable(name), name);
    }

    QStringList m_names;
};

QTEST_MAIN(SymbolIconTest)
#include "tst_SymbolIcon.moc"
