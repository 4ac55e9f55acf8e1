#include "Light.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

struct Moment
{
    double hour;
    QRgb zenith, sky, horizon, ambient;
    double night;
};

constexpr std::array<Moment, 12> moments{{
    {0.0, 0x050b1f, 0x0c1c3d, 0x1d345c, 0x3a4a78, 1.0},
    {4.5, 0x0b1636, 0x22305f, 0x544a74, 0x4a5484, 0.9},
    {6.0, 0x31487f, 0x9a7fa6, 0xf6a67c, 0xa58a98, 0.35},
    {7.2, 0x4d80bd, 0xb9bfd4, 0xffd9a8, 0xf0cdb0, 0.0},
    {9.0, 0x3a82cd, 0x8cbfe9, 0xdfeef5, 0xfff6e6, 0.0},
    {13.0, 0x2a78d0, 0x73b4ec, 0xcfe8f6, 0xffffff, 0.0},
    {17.0, 0x3a80ca, 0x98c3e4, 0xf3e6cb, 0xfff0d8, 0.0},
    {18.8, 0x4567a6, 0xd99a8e, 0xffbb6b, 0xf5b68c, 0.05},
    {19.8, 0x2c3d78, 0x965f88, 0xf6855a, 0xa9748a, 0.4},
    {20.8, 0x141f4a, 0x3b3a6e, 0x8a5a74, 0x62597f, 0.8},
    {22.0, 0x070f29, 0x112246, 0x293d67, 0x3e4d7c, 1.0},
    {24.0, 0x050b1f, 0x0c1c3d, 0x1d345c, 0x3a4a78, 1.0},
}};

} // namespace

Light Light::at(double hour)
{
    const double wrapped = hour - 24.0 * std::floor(hour / 24.0);
    const auto after = std::find_if(moments.begin() + 1, moments.end() - 1,
                                    [&](const Moment& moment) { return moment.hour > wrapped; });
    const Moment& next = *after;
    const Moment& last = *(after - 1);
    const double part = (wrapped - last.hour) / (next.hour - last.hour);
    const auto between = [&](QRgb from, QRgb to) { return mix(QColor(from), QColor(to), part); };
    return {between(last.zenith, next.zenith), between(last.sky, next.sky),
            between(last.horizon, next.horizon), between(last.ambient, next.ambient),
            last.night + (next.night - last.night) * part};
}

QColor Light::on(QColor colour) const
{
    return QColor::fromRgbF(colour.redF() * ambient.redF(), colour.greenF() * ambient.greenF(),
                            colour.blueF() * ambient.blueF(), colour.alphaF());
}

QColor Light::far(QColor colour, double distance) const
{
    return mix(on(colour), horizon, distance);
}

QColor mix(QColor first, QColor second, double part)
{
    const auto share = float(std::clamp(part, 0.0, 1.0));
    const auto between = [&](float from, float to) { return from + (to - from) * share; };
    return QColor::fromRgbF(
        between(first.redF(), second.redF()), between(first.greenF(), second.greenF()),
        between(first.blueF(), second.blueF()), between(first.alphaF(), second.alphaF()));
}

QColor faded(QColor colour, double opacity)
{
    colour.setAlphaF(float(std::clamp(opacity, 0.0, 1.0)));
    return colour;
}

double scatter(quint32 seed, quint32 index)
{
    quint32 bits = seed * 0x9e3779b9U + index * 0x85ebca6bU + 0x27d4eb2fU;
    bits = (bits ^ (bits >> 16)) * 0x7feb352dU;
    bits = (bits ^ (bits >> 15)) * 0x846ca68bU;
    bits ^= bits >> 16;
    return bits / 4294967296.0;
}
