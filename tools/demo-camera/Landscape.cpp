#include "Landscape.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

using Landscape::waterline;

constexpr double sunrise = 5.6;
constexpr double sunset = 20.4;

/// How much of the way across the sky the sun (by day) or the moon (by night) has gone.
double progress(double hour)
{
    const bool day = hour > sunrise && hour < sunset;
    const double since = day ? hour - sunrise : std::fmod(hour - sunset + 24.0, 24.0);
    return since / (day ? sunset - sunrise : 24.0 - (sunset - sunrise));
}

void paintLamp(QPainter& painter, double width, double hour, const Light& light)
{
    const double way = progress(hour);
    const QPointF centre(width * Landscape::lampAcross(hour),
                         waterline + 10 - 385 * std::sin(way * std::numbers::pi));
    const bool day = hour > sunrise && hour < sunset;
    const double low = 1.0 - std::sin(way * std::numbers::pi);
    const QColor core = day ? mix(QColor(0xfffbe8), QColor(0xffd27a), low) : QColor(0xf3f1e4);
    const QColor glow = day ? mix(QColor(0xfff3c9), QColor(0xffa24d), low) : QColor(0xa9bde8);

    const double reach = day ? 260 : 130;
    QRadialGradient halo(centre, reach);
    halo.setColorAt(0, faded(glow, day ? 0.75 : 0.35));
    halo.setColorAt(0.25, faded(glow, day ? 0.32 : 0.12));
    halo.setColorAt(1, faded(glow, 0));
    painter.setBrush(halo);
    painter.drawEllipse(centre, reach, reach);
    painter.setBrush(core);
    const double radius = day ? 27 : 22;
    painter.drawEllipse(centre, radius, radius);
    if (day)
        return;
    painter.setBrush(faded(light.sky, 0.16));
    painter.drawEllipse(centre + QPointF(-7, -4), 6, 5);
    painter.drawEllipse(centre + QPointF(6, 5), 7, 6);
    painter.drawEllipse(centre + QPointF(5, -10), 4, 3);
}

/// From `from` to `to` in steps that stray sideways, rougher where `roughness` is larger.
void crag(QPolygonF& line, QPointF from, QPointF to, double roughness, quint32 seed)
{
    constexpr int steps = 9;
    for (int step = 1; step < steps; ++step) {
        const double part = double(step) / steps;
        const double stray = (scatter(seed, quint32(step)) - 0.5) * roughness;
        line << from + (to - from) * part + QPointF(stray * 0.5, stray);
    }
    line << to;
}

/// One mountain: a lit flank, a flank in shadow, and snow on both.
void paintPeak(QPainter& painter, QPointF summit, double spread, quint32 seed, bool sunOnLeft,
               const Light& light)
{
    const double height = waterline - summit.y();
    const QPointF left(summit.x() - spread, waterline);
    const QPointF right(summit.x() + spread * 1.1, waterline);
    const QPointF foot(summit.x() + spread * (scatter(seed, 50) - 0.5) * 0.7, waterline);

    QPolygonF leftRidge{summit};
    crag(leftRidge, summit, left, height * 0.07, seed);
    QPolygonF rightRidge{summit};
    crag(rightRidge, summit, right, height * 0.07, seed + 1);
    QPolygonF spine{summit};
    crag(spine, summit, foot, height * 0.12, seed + 2);

    const auto flank = [&](const QPolygonF& ridge, bool lit) {
        QPolygonF area = ridge;
        for (auto point = spine.crbegin(); point != spine.crend(); ++point)
            area << *point;
        const QColor rock = lit ? QColor(0x8d9bb0) : QColor(0x5d6c88);
        QLinearGradient haze(0, summit.y(), 0, waterline);
        haze.setColorAt(0, light.far(rock, 0.12));
        haze.setColorAt(1, light.far(rock, 0.62));
        painter.setBrush(haze);
        painter.drawPolygon(area);

        // The snow follows the ridge down to its third point and comes back in a zigzag.
        QPolygonF snow;
        for (int point = 0; point <= 3; ++point)
            snow << ridge.at(point);
        const QPointF outer = ridge.at(3);
        const QPointF inner = spine.at(4);
        for (int tooth = 1; tooth <= 4; ++tooth) {
            const double part = tooth / 5.0;
            const double drop = (tooth % 2 ? -0.06 : 0.05) + 0.04 * scatter(seed, quint32(tooth));
            snow << outer + (inner - outer) * part + QPointF(0, drop * height);
        }
        for (int point = 4; point >= 1; --point)
            snow << spine.at(point);
        painter.setBrush(light.far(lit ? QColor(0xffffff) : QColor(0xb9c9e2), 0.1));
        painter.drawPolygon(snow);
    };
    flank(leftRidge, sunOnLeft);
    flank(rightRidge, !sunOnLeft);
}

/// A range of soft hills between `low` and `high` units above the water.
QPainterPath hills(double width, double low, double high, quint32 seed)
{
    QPainterPath path(QPointF(0, waterline));
    const double shift = scatter(seed, 0) * 20;
    for (double x = 0; x <= width + 8; x += 8) {
        const double at = x / 1280.0 * 2 * std::numbers::pi;
        const double wave = 0.5 + 0.26 * std::sin(at * 1.3 + shift) +
                            0.15 * std::sin(at * 2.9 + shift * 1.7) +
                            0.09 * std::sin(at * 6.1 + shift * 2.3);
        path.lineTo(x, waterline - low - (high - low) * wave);
    }
    path.lineTo(width + 8, waterline);
    path.closeSubpath();
    return path;
}

/// Conifers along the shore, higher towards both edges of the picture.
void paintWood(QPainter& painter, double width, const Light& light)
{
    quint32 index = 0;
    for (double x = -10; x < width + 10; x += 5.5, ++index) {
        const double edge = std::abs(x / width - 0.5) * 2;
        const double height = 5 + 24 * edge * edge + 15 * edge * scatter(31, index);
        const double half = 3.5 + 2 * scatter(32, index);
        const QColor green = mix(QColor(0x2f5d47), QColor(0x1d4038), scatter(33, index));
        painter.setBrush(light.far(green, 0.16 - 0.1 * edge));
        painter.drawPolygon(QPolygonF{{x - half, waterline},
                                      {x - half * 0.45, waterline - height * 0.55},
                                      {x, waterline - height},
                                      {x + half * 0.45, waterline - height * 0.55},
                                      {x + half, waterline}});
    }
}

void paintHouse(QPainter& painter, QPointF foot, double size, quint32 seed, const Light& light)
{
    static constexpr std::array<QRgb, 4> walls{0xf6efe2, 0xf0d9b5, 0xe8c1a0, 0xdfe5ea};
    static constexpr std::array<QRgb, 3> roofs{0xa8473a, 0x8a4a3c, 0x6b5560};
    const QColor wall = light.on(QColor(walls.at(size_t(scatter(seed, 1) * 4))));
    const QColor roof = light.on(QColor(roofs.at(size_t(scatter(seed, 2) * 3))));
    const double half = size * 0.62;
    painter.setBrush(wall);
    painter.drawRect(QRectF(foot.x() - half, foot.y() - size, 2 * half, size));
    painter.setBrush(roof);
    painter.drawPolygon(QPolygonF{{foot.x() - half - 2, foot.y() - size},
                                  {foot.x(), foot.y() - size * 1.62},
                                  {foot.x() + half + 2, foot.y() - size}});
    for (int column = -1; column <= 1; column += 2) {
        const bool awake = scatter(seed, quint32(5 + column)) < 0.75;
        const QColor dark = light.on(QColor(0x46566b));
        painter.setBrush(awake ? mix(dark, QColor(0xffd982), light.night) : dark);
        painter.drawRect(QRectF(foot.x() + column * half * 0.45 - size * 0.11,
                                foot.y() - size * 0.68, size * 0.22, size * 0.3));
    }
}

void paintLighthouse(QPainter& painter, QPointF foot, const Light& light)
{
    const double height = 78;
    const auto part = [&](double bottom, double top, QColor colour) {
        const double below = 8.5 - 3.0 * bottom;
        const double above = 8.5 - 3.0 * top;
        painter.setBrush(light.on(colour));
        painter.drawPolygon(QPolygonF{{foot.x() - below, foot.y() - bottom * height},
                                      {foot.x() - above, foot.y() - top * height},
                                      {foot.x() + above, foot.y() - top * height},
                                      {foot.x() + below, foot.y() - bottom * height}});
    };
    for (int band = 0; band < 5; ++band)
        part(band * 0.16, (band + 1) * 0.16, band % 2 ? QColor(0xc8443c) : QColor(0xf7f3ea));
    painter.setBrush(light.on(QColor(0x39424f)));
    painter.drawRect(QRectF(foot.x() - 8, foot.y() - height * 0.83, 16, 3));
    painter.setBrush(mix(light.on(QColor(0xcfe3ee)), QColor(0xfff0b0), light.night));
    painter.drawRect(QRectF(foot.x() - 4.5, foot.y() - height * 0.95, 9, 10));
    painter.setBrush(light.on(QColor(0xa8382f)));
    painter.drawPolygon(QPolygonF{{foot.x() - 6.5, foot.y() - height * 0.95},
                                  {foot.x(), foot.y() - height * 1.09},
                                  {foot.x() + 6.5, foot.y() - height * 0.95}});
    if (light.night <= 0)
        return;
    const QPointF lamp(foot.x(), foot.y() - height * 0.89);
    QRadialGradient glow(lamp, 46);
    glow.setColorAt(0, faded(QColor(0xffefb0), 0.85 * light.night));
    glow.setColorAt(0.4, faded(QColor(0xffefb0), 0.22 * light.night));
    glow.setColorAt(1, faded(QColor(0xffefb0), 0));
    painter.setBrush(glow);
    painter.drawEllipse(lamp, 46, 46);
}

/// A fair-weather cloud: round on top, flat below, `size` from its middle to either end.
void paintCloud(QPainter& painter, QPointF centre, double size, quint32 seed, const Light& light)
{
    const QColor crown = mix(light.on(QColor(0xffffff)), light.horizon, 0.15);
    const QColor belly = mix(light.on(QColor(0xc3d0e0)), light.sky, 0.3);
    const double opacity = 0.85 - 0.55 * light.night;
    const auto puff = [&](QPointF at, double radius, QColor colour, double strength) {
        painter.save();
        painter.translate(at);
        painter.scale(1.2, 0.85);
        QRadialGradient soft(QPointF(), radius);
        soft.setColorAt(0, faded(colour, strength));
        soft.setColorAt(0.6, faded(colour, strength * 0.75));
        soft.setColorAt(1, faded(colour, 0));
        painter.setBrush(soft);
        painter.drawEllipse(QPointF(), radius, radius);
        painter.restore();
    };
    constexpr quint32 puffs = 13;
    for (quint32 index = 0; index < puffs; ++index) {
        const double along = (index + 0.5) / puffs * 2 - 1;
        puff(centre + QPointF(along * size * 0.8, -size * 0.01), size * 0.17, belly, opacity * 0.7);
    }
    for (quint32 index = 0; index < puffs; ++index) {
        const double along = (index + 0.5) / puffs * 2 - 1;
        const double bulge = std::sqrt(1 - along * along);
        const double radius = size * (0.1 + 0.25 * bulge * (0.55 + 0.6 * scatter(seed, index)));
        puff(centre + QPointF(along * size * 0.85, -radius * 0.55), radius, crown, opacity);
    }
}

} // namespace

double Landscape::lampAcross(double hour)
{
    return 0.1 + 0.8 * progress(hour);
}

void Landscape::paintSky(QPainter& painter, double width, double hour, const Light& light)
{
    QLinearGradient sky(0, 0, 0, waterline);
    sky.setColorAt(0, light.zenith);
    sky.setColorAt(0.55, light.sky);
    sky.setColorAt(1, light.horizon);
    painter.fillRect(QRectF(0, 0, width, waterline), sky);

    if (light.night > 0.3) {
        for (quint32 star = 0; star < 170; ++star) {
            const QPointF at(scatter(11, star) * width, scatter(12, star) * waterline * 0.85);
            const double size = 0.5 + 1.1 * scatter(13, star) * scatter(14, star);
            const double glitter = 0.35 + 0.65 * scatter(15, star + quint32(hour * 60));
            const double height = 1 - at.y() / waterline;
            painter.setBrush(faded(QColor(0xf4f6ff), (light.night - 0.3) * glitter * height * 1.6));
            painter.drawEllipse(at, size, size);
        }
    }
    paintLamp(painter, width, hour, light);
}

void Landscape::paintClouds(QPainter& painter, double width, double drift, const Light& light)
{
    struct Cloud
    {
        double x, y, size, speed;
    };
    static constexpr std::array<Cloud, 6> clouds{{{0.08, 92, 105, 1.0},
                                                  {0.30, 165, 60, 0.55},
                                                  {0.47, 58, 80, 0.8},
                                                  {0.70, 128, 120, 1.15},
                                                  {0.88, 200, 55, 0.5},
                                                  {0.97, 70, 70, 0.75}}};
    quint32 seed = 70;
    for (const Cloud& cloud : clouds) {
        const double margin = cloud.size * 1.6;
        const double span = width + 2 * margin;
        const double x = std::fmod(cloud.x * span + drift * cloud.speed, span) - margin;
        paintCloud(painter, QPointF(x, cloud.y), cloud.size, seed++, light);
    }
}

void Landscape::paintMountains(QPainter& painter, double width, double hour, const Light& light)
{
    struct Peak
    {
        double x, height, spread;
    };
    static constexpr std::array<Peak, 7> peaks{{{0.33, 128, 150},
                                                {0.80, 150, 170},
                                                {0.52, 150, 190},
                                                {0.02, 165, 210},
                                                {0.95, 210, 230},
                                                {0.20, 236, 260},
                                                {0.67, 196, 235}}};
    quint32 seed = 100;
    for (const Peak& peak : peaks) {
        const QPointF summit(peak.x * width, waterline - peak.height);
        paintPeak(painter, summit, peak.spread, seed, lampAcross(hour) < 0.5, light);
        seed += 10;
    }

    const auto range = [&](double low, double high, QColor colour, double haze, quint32 shape) {
        QLinearGradient mist(0, waterline - high, 0, waterline);
        mist.setColorAt(0, light.far(colour, haze));
        mist.setColorAt(1, light.far(colour, haze + 0.22));
        painter.setBrush(mist);
        painter.drawPath(hills(width, low, high, shape));
    };
    range(26, 112, QColor(0x5d7f86), 0.40, 3);
    range(10, 74, QColor(0x4f7d5c), 0.22, 8);
    paintWood(painter, width, light);
}

void Landscape::paintVillage(QPainter& painter, double width, const Light& light)
{
    const double left = width * 0.13;
    painter.setBrush(light.on(QColor(0x6d7f58)));
    painter.drawEllipse(QPointF(left + 95, waterline + 2), 190, 15);
    for (quint32 house = 0; house < 11; ++house) {
        const double x = left - 40 + house * 27 + 8 * scatter(200, house);
        const double size = 15 + 7 * scatter(201, house);
        const double rise = 9 - std::abs(double(house) - 5.0) * 1.3;
        paintHouse(painter, QPointF(x, waterline - std::max(0.0, rise)), size, 210 + house, light);
    }
    const QPointF church(left + 88, waterline - 8);
    painter.setBrush(light.on(QColor(0xfbf6ea)));
    painter.drawRect(QRectF(church.x() - 7, church.y() - 46, 14, 46));
    painter.setBrush(light.on(QColor(0x4d6a72)));
    painter.drawPolygon(QPolygonF{{church.x() - 9, church.y() - 46},
                                  {church.x(), church.y() - 84},
                                  {church.x() + 9, church.y() - 46}});
    painter.setBrush(mix(light.on(QColor(0x46566b)), QColor(0xffd982), light.night));
    painter.drawRect(QRectF(church.x() - 2, church.y() - 38, 4, 8));

    const double right = width * 0.88;
    painter.setBrush(light.on(QColor(0x5f6b63)));
    painter.drawEllipse(QPointF(right + 40, waterline + 4), 130, 17);
    painter.setBrush(light.on(QColor(0x6f8a5c)));
    painter.drawEllipse(QPointF(right + 40, waterline), 112, 11);
    paintLighthouse(painter, QPointF(right, waterline - 7), light);
    paintHouse(painter, QPointF(right + 32, waterline - 6), 17, 240, light);
}
