#include "picture/FixedPalette.h"

namespace fixedPalette {

namespace {

constexpr int Levels = 6; ///< Of each channel, in the cube.
constexpr int Step = 255 / (Levels - 1);
constexpr int CubeSize = Levels * Levels * Levels;
constexpr int GreysPerGap = 8; ///< Between two greys of the cube.
constexpr int Greys = GreysPerGap * (Levels - 1);
static_assert(CubeSize + Greys == Size);

constexpr int squared(int value)
{
    return value * value;
}

/// The grey `index` of those outside of the cube: each gap is divided evenly.
constexpr int greyLevel(int index)
{
    constexpr int parts = GreysPerGap + 1;
    const int position = index % GreysPerGap + 1;
    return index / GreysPerGap * Step + (position * Step + parts / 2) / parts;
}

/// For each value of a channel, the level of the cube that is nearest to it, and how far it is.
/// The distance in the cube is a sum over the channels, so each is least by itself.
struct Channel
{
    std::array<quint8, 256> level{};
    std::array<int, 256> distance{};
};

constexpr Channel nearestLevels()
{
    Channel channel;
    for (int value = 0; value < 256; ++value) {
        const int level = (value + Step / 2) / Step;
        channel.level[value] = quint8(level);
        channel.distance[value] = squared(value - level * Step);
    }
    return channel;
}

/// For each sum of red, green and blue, the nearest grey outside of the cube. The distance to the
/// grey g is 3g² - 2g(r + g + b) and what does not depend on g: least where 3g is nearest to the
/// sum.
constexpr int MaxSum = 3 * 255;
constexpr std::array<quint8, MaxSum + 1> nearestGreys()
{
    std::array<quint8, MaxSum + 1> greys{};
    int grey = 0;
    for (int sum = 0; sum <= MaxSum; ++sum) {
        while (grey + 1 < Greys &&
               squared(3 * greyLevel(grey + 1) - sum) < squared(3 * greyLevel(grey) - sum))
            ++grey;
        greys[sum] = quint8(grey);
    }
    return greys;
}

constexpr std::array<QRgb, Size> allColours()
{
    std::array<QRgb, Size> colours{};
    for (int i = 0; i < CubeSize; ++i)
        colours[i] =
            qRgb(i / (Levels * Levels) * Step, i / Levels % Levels * Step, i % Levels * Step);
    for (int i = 0; i < Greys; ++i)
        colours[CubeSize + i] = qRgb(greyLevel(i), greyLevel(i), greyLevel(i));
    return colours;
}

constexpr Channel LevelOf = nearestLevels();
constexpr std::array<quint8, MaxSum + 1> GreyOf = nearestGreys();
constexpr std::array<QRgb, Size> Colours = allColours();

} // namespace

const std::array<QRgb, Size>& colours()
{
    return Colours;
}

quint8 nearest(QRgb colour)
{
    const int red = qRed(colour);
    const int green = qGreen(colour);
    const int blue = qBlue(colour);
    const int index = CubeSize + GreyOf[red + green + blue];
    const int grey = qRed(Colours[index]);
    const int toGrey = squared(red - grey) + squared(green - grey) + squared(blue - grey);
    const int toCube = LevelOf.distance[red] + LevelOf.distance[green] + LevelOf.distance[blue];
    if (toGrey < toCube)
        return quint8(index);
    return quint8((LevelOf.level[red] * Levels + LevelOf.level[green]) * Levels +
                  LevelOf.level[blue]);
}

} // namespace fixedPalette
