#include "Scene.h"

#include "Harbour.h"
#include "Landscape.h"
#include "Light.h"
#include "StationClock.h"

#include <QFont>
#include <QLocale>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr double sceneHeight = 720;
constexpr quint64 framesADay = 72;

/// Mirrors what lies above row `waterRow` into the rows below it, in waves that grow wider
/// towards the viewer.
void mirror(QImage& image, int waterRow, double phase)
{
    const int height = image.height() - waterRow;
    const int width = image.width();
    const double unit = image.height() / sceneHeight;
    for (int row = 0; row < height; ++row) {
        const double depth = double(row) / height;
        // Waves look closer together the further off they are.
        const double crest = 22.0 / (0.08 + depth);
        const double wave = std::sin(crest + phase) + 0.5 * std::sin(crest * 2.3 + phase * 1.7 + 1);
        const double slope = wave * (0.4 + 9 * depth * depth) * unit;
        const int source =
            std::clamp(waterRow - 1 - int(row * 1.12 + slope), 0, std::max(0, waterRow - 1));
        const int shift =
            std::clamp(int(std::sin(crest * 1.4 + phase * 0.6) * (0.6 + 7 * depth) * unit),
                       -width + 1, width - 1);
        const auto* from = reinterpret_cast<const QRgb*>(image.constScanLine(source));
        auto* to = reinterpret_cast<QRgb*>(image.scanLine(waterRow + row));
        const int kept = width - std::abs(shift);
        std::memcpy(to + std::max(0, shift), from + std::max(0, -shift),
                    size_t(kept) * sizeof(QRgb));
        if (shift > 0)
            std::fill(to, to + shift, from[0]);
        else
            std::fill(to + kept, to + width, from[width - 1]);
    }
}

/// The water's own colour over the reflection, and the lights that play on it.
void paintWater(QPainter& painter, double width, double hour, quint64 frame, const Light& light)
{
    const double top = Landscape::waterline;
    const double height = sceneHeight - top;
    const QColor deep = mix(light.on(QColor(0x12506b)), light.zenith, 0.3);
    QLinearGradient tint(0, top, 0, sceneHeight);
    tint.setColorAt(0, faded(mix(light.horizon, deep, 0.35), 0.30));
    tint.setColorAt(0.35, faded(deep, 0.38));
    tint.setColorAt(1, faded(deep, 0.78));
    painter.fillRect(QRectF(0, top, width, height), tint);

    const double lamp = Landscape::lampAcross(hour) * width;
    const QColor shine = mix(light.horizon, QColor(0xffffff), 0.45);
    painter.setPen(Qt::NoPen);
    for (quint32 glint = 0; glint < 420; ++glint) {
        const double depth = std::pow(scatter(400, glint), 1.6);
        const double y = top + 3 + depth * (height - 6);
        const double x = width * scatter(401, glint + quint32(frame % framesADay) * 97);
        const double reach = 26 + 120 * depth;
        const double near = std::exp(-std::pow((x - lamp) / reach, 2));
        const double length = (4 + 30 * depth) * (0.5 + scatter(402, glint));
        painter.setBrush(faded(shine, 0.10 + 0.65 * near));
        painter.drawEllipse(QPointF(x, y), length, 0.6 + 1.1 * depth);
    }
}

void paintCaption(QPainter& painter, double width, const QDateTime& time)
{
    const QLocale english(QLocale::English, QLocale::UnitedKingdom);
    const QString date = english.toString(time, QStringLiteral("dddd, d MMMM yyyy"));
    const QString clock = english.toString(time, QStringLiteral("HH:mm:ss"));
    // A narrow picture gets smaller letters rather than words on top of each other.
    const double fit = std::min(1.0, width / 860);
    const auto write = [&](const QString& text, double size, QFont::Weight weight, bool onRight,
                           double inset) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(std::max(4, qRound(size * fit)));
        font.setWeight(weight);
        painter.setFont(font);
        const QRectF area(28 * fit, 668, width - 56 * fit - inset * fit, 40);
        const int flags =
            static_cast<int>(Qt::AlignVCenter | (onRight ? Qt::AlignRight : Qt::AlignLeft));
        painter.setPen(QColor(0, 0, 0, 170));
        painter.drawText(area.translated(0, 1.6), flags, text);
        painter.setPen(Qt::white);
        painter.drawText(area, flags, text);
    };
    write(QStringLiteral("Pevora demo camera"), 25, QFont::Bold, false, 0);
    write(clock, 27, QFont::Bold, true, 0);
    write(date, 20, QFont::Normal, true, 150);
}

} // namespace

double Scene::hourOf(quint64 frame)
{
    return std::fmod(7.4 + double(frame % framesADay) * 24.0 / framesADay, 24.0);
}

QImage Scene::draw(const QDateTime& time, quint64 frame, QSize size)
{
    QImage image(size.expandedTo(smallest).boundedTo(largest), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const double unit = image.height() / sceneHeight;
    const double width = image.width() / unit;
    const double hour = hourOf(frame);
    const Light light = Light::at(hour);
    // The remainder keeps the numbers exact after years of pictures.
    const double drift = double(frame % 1'000'000) * 23.0;

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(unit, unit);
    Landscape::paintSky(painter, width, hour, light);
    Landscape::paintClouds(painter, width, drift * 0.6, light);
    Landscape::paintMountains(painter, width, hour, light);
    Landscape::paintVillage(painter, width, light);
    painter.end();

    mirror(image, int(Landscape::waterline * unit), double(frame % framesADay) * 0.9);

    painter.begin(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.scale(unit, unit);
    paintWater(painter, width, hour, frame, light);
    Harbour::paintBoats(painter, width, drift, light);
    Harbour::paintGulls(painter, width, drift, light);
    Harbour::paintQuay(painter, width, light);
    StationClock::paint(painter, QPointF(width / 2, 292), std::min(122.0, width * 0.2),
                        Harbour::quayTop + 6, time, frame, light);
    paintCaption(painter, width, time);
    painter.end();
    return image;
}
