#include "picture/FixedPalette.h"

#include <algorithm>

static int distance(QRgb a, QRgb b)
{
    const int red = qRed(a) - qRed(b);
    const int green = qGreen(a) - qGreen(b);
    const int blue = qBlue(a) - qBlue(b);
    return red * red + green * green + blue * blue;
}

class FixedPaletteTest : public QObject
{
    Q_OBJECT
private slots:
    void itsColoursAllDifferAndHoldTheEnds()
    {
        const auto& colours = fixedPalette::colours();
        const QSet<QRgb> all(colours.begin(), colours.end());
        QCOMPARE(all.size(), 256);
        for (const QRgb corner : {0xFF000000, 0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFF00,
                                  0xFFFF00FF, 0xFF00FFFF, 0xFFFFFFFF}) {
            QVERIFY(all.contains(corner));
            QCOMPARE(colours[fixedPalette::nearest(corner)], corner);
        }
    }

    /// Against all 256 of them: every colour of a grid of 52 steps, and every colour near grey.
    void noColourOfItIsNearerThanTheOneChosen()
    {
        const auto& colours = fixedPalette::colours();
        const auto isNearest = [&](QRgb colour) {
            int least = distance(colour, colours[0]);
            for (const QRgb other : colours)
                least = std::min(least, distance(colour, other));
            return distance(colour, colours[fixedPalette::nearest(colour)]) == least;
        };
        int wrong = 0;
        for (int red = 0; red < 256; red += 5) {
            for (int green = 0; green < 256; green += 5) {
                for (int blue = 0; blue < 256; blue += 5)
                    wrong += !isNearest(qRgb(red, green, blue));
            }
        }
        const int reach = 9;
        for (int grey = 0; grey < 256; ++grey) {
            for (int i = 0; i < reach * reach; ++i) {
                const int red = std::clamp(grey + i % reach - reach / 2, 0, 255);
                const int blue = std::clamp(grey + i / reach - reach / 2, 0, 255);
                wrong += !isNearest(qRgb(red, grey, blue));
            }
        }
        QCOMPARE(wrong, 0);
    }

    void everyGreyIsWithinThreeSteps()
    {
        for (int grey = 0; grey < 256; ++grey) {
            const QRgb found =
                fixedPalette::colours()[fixedPalette::nearest(qRgb(grey, grey, grey))];
            QVERIFY(qIsGray(found));
            QVERIFY(std::abs(qRed(found) - grey) <= 3);
        }
    }

    void alphaDoesNotCount()
    {
        QCOMPARE(fixedPalette::nearest(qRgba(200, 10, 10, 0)),
                 fixedPalette::nearest(qRgb(200, 10, 10)));
    }
};

QTEST_GUILESS_MAIN(FixedPaletteTest)
#include "tst_FixedPalette.moc"
