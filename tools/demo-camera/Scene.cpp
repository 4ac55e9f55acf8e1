#include "Scene.h"

#include <QFont>
#include <QLocale>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <numbers>

// All lengths are in scene units: the picture is 720 high, and `width` wide. Everything is painted
// from the back to the front and as at noon; the light of the hour is laid over it.

namespace {

constexpr double sceneHeight = 720;
constexpr double waterline = 432;
constexpr double quayTop = 640;
constexpr quint64 framesADay = 72;
constexpr QRgb haze = 0xcfe8f6;
constexpr QRgb ink = 0x15181c;

/// `first` at 0, `second` at 1, in between a straight mixture.
QColor mix(QRgb first, QRgb second, double part)
{
    const auto between = [&](int from, int to) { return qRound(from + (to - from) * part); };
    return {between(qRed(first), qRed(second)), between(qGreen(first), qGreen(second)),
            between(qBlue(first), qBlue(second))};
}

QColor faded(QColor colour, double opacity)
{
    colour.setAlphaF(float(opacity));
    return colour;
}

/// An even but patternless number in [0, 1), always the same for the same arguments.
double scatter(quint32 seed, quint32 index)
{
    quint32 bits = seed * 0x9e3779b9U + index * 0x85ebca6bU + 0x27d4eb2fU;
    bits = (bits ^ (bits >> 16)) * 0x7feb352dU;
    bits = (bits ^ (bits >> 15)) * 0x846ca68bU;
    return (bits ^ (bits >> 16)) / 4294967296.0;
}

QLinearGradient downwards(double top, double bottom, const QGradientStops& colours)
{
    QLinearGradient gradient(0, top, 0, bottom);
    gradient.setStops(colours);
    return gradient;
}

/// A number that goes on from `start` (a part of `span`) and comes in again at the other end.
double wrapped(double start, double way, double span)
{
    const double at = std::fmod(start * span + way, span);
    return at < 0 ? at + span : at;
}

void paintSky(QPainter& painter, double width, double hour, double drift)
{
    painter.fillRect(
        QRectF(0, 0, width, waterline),
        downwards(0, waterline, {{0, QColor(0x2a78d0)}, {0.55, QColor(0x73b4ec)}, {1, haze}}));

    const double way = (hour - 5.5) / 15;
    const QPointF sun(width * (0.1 + 0.8 * way),
                      waterline - 375 * std::sin(way * std::numbers::pi));
    QRadialGradient halo(sun, 260);
    halo.setStops({{0, QColor(0xfffbe8)},
                   {0.105, QColor(0xfff6d0)},
                   {0.11, faded(0xfff3c9, 0.6)},
                   {0.3, faded(0xfff3c9, 0.3)},
                   {1, faded(0xfff3c9, 0)}});
    painter.setBrush(halo);
    painter.drawEllipse(sun, 260, 260);

    for (quint32 cloud = 0; cloud < 6; ++cloud) {
        const double size = 55 + 70 * scatter(1, cloud);
        const QPointF centre(wrapped(scatter(2, cloud), drift * size / 160, width + 300) - 150,
                             60 + 28 * cloud);
        for (quint32 puff = 0; puff < 13; ++puff) {
            const double along = (puff + 0.5) / 6.5 - 1;
            const double radius =
                size * (0.12 + (0.14 + 0.15 * scatter(cloud, puff)) * std::sqrt(1 - along * along));
            const QPointF at = centre + QPointF(along * size * 0.85, -radius * 0.55);
            QRadialGradient soft(at, radius * 1.2);
            soft.setStops(
                {{0, faded(Qt::white, 0.8)}, {0.6, faded(0xf4f7fb, 0.6)}, {1, faded(0xe6ecf4, 0)}});
            painter.setBrush(soft);
            painter.drawEllipse(at, radius * 1.2, radius * 0.8);
        }
    }
}

/// One flank of a mountain, with snow: from the summit along a rough ridge to `foot`, and back
/// along the spine to `inner`.
void paintFlank(QPainter& painter, QPointF summit, double foot, double inner, quint32 seed,
                QRgb rock, QRgb snow)
{
    const double height = waterline - summit.y();
    const auto onRidge = [&](double part, double to, quint32 line) {
        const double stray = part < 1 ? (scatter(line, quint32(part * 9)) - 0.5) * height / 11 : 0;
        return QPointF(summit.x() + (to - summit.x()) * part, summit.y() + height * part + stray);
    };
    QPolygonF flank{summit};
    for (int step = 1; step <= 9; ++step)
        flank << onRidge(step / 9.0, foot, seed);
    for (int step = 9; step > 0; --step)
        flank << onRidge(step / 9.0, inner, seed / 2);
    painter.setBrush(downwards(summit.y(), waterline, {{0, rock}, {1, mix(rock, haze, 0.6)}}));
    painter.drawPolygon(flank);
    // The snow ends in a zigzag.
    QPolygonF cap = flank.first(4);
    for (int tooth = 1; tooth <= 4; ++tooth)
        cap << flank.at(3) + (flank.at(15) - flank.at(3)) * tooth / 5 +
                   QPointF(0, (tooth % 2 ? -0.08 : 0.06) * height);
    cap += flank.sliced(15);
    painter.setBrush(QColor(snow));
    painter.drawPolygon(cap);
}

void paintLand(QPainter& painter, double width)
{
    static constexpr std::array<std::array<double, 2>, 7> summits{{{0.33, 128},
                                                                   {0.80, 150},
                                                                   {0.52, 150},
                                                                   {0.02, 165},
                                                                   {0.95, 210},
                                                                   {0.20, 236},
                                                                   {0.67, 196}}};
    quint32 seed = 100;
    for (const auto& [x, height] : summits) {
        const QPointF summit(x * width, waterline - height);
        const double inner = summit.x() + height * (scatter(seed, 50) - 0.5);
        paintFlank(painter, summit, summit.x() - height * 1.1, inner, seed, 0x9aa7ba, 0xffffff);
        paintFlank(painter, summit, summit.x() + height * 1.2, inner, seed + 1, 0x71809a, 0xc0cee4);
        seed += 2;
    }
    const auto hills = [&](double low, double high, QRgb colour, double shift) {
        QPolygonF line{{0, waterline}};
        for (double x = 0; x <= width + 8; x += 8) {
            const double at = x / 200 + shift;
            const double wave = 0.5 + 0.3 * std::sin(at * 1.3) + 0.2 * std::sin(at * 2.9 + shift);
            line << QPointF(x, waterline - low - (high - low) * wave);
        }
        line << QPointF(width + 8, waterline);
        painter.setBrush(
            downwards(waterline - high, waterline, {{0, colour}, {1, mix(colour, haze, 0.3)}}));
        painter.drawPolygon(line);
    };
    hills(26, 112, 0x8ba9b0, 3);
    hills(10, 74, 0x6c957f, 8);
    // Conifers along the shore, higher towards both edges of the picture.
    for (quint32 tree = 0; tree * 5.5 < width + 10; ++tree) {
        const QPointF foot(tree * 5.5, waterline);
        const double edge = std::abs(foot.x() / width - 0.5) * 2;
        const double height = 6 + 26 * edge * edge + 18 * edge * scatter(31, tree);
        painter.setBrush(mix(0x4a7566, 0x2c5248, scatter(33, tree)));
        painter.drawPolygon(QPolygonF{foot - QPointF(5, 0), foot - QPointF(2, height * 0.55),
                                      foot - QPointF(0, height), foot + QPointF(2, -height * 0.55),
                                      foot + QPointF(5, 0)});
    }
}

/// Mirrors what lies above row `waterRow` into the rows below it, in waves that grow wider
/// towards the viewer.
void mirror(QImage& image, int waterRow, double phase)
{
    const double unit = image.height() / sceneHeight;
    for (int row = 0; row < image.height() - waterRow; ++row) {
        const double depth = double(row) / (image.height() - waterRow);
        // Waves look closer together the further off they are.
        const double crest = 22 / (0.08 + depth) + phase;
        const double wave = std::sin(crest) + 0.5 * std::sin(crest * 2.3);
        const double slope = wave * (0.6 + 11 * depth * depth) * unit;
        const int source = std::clamp(waterRow - 1 - int(row * 1.12 + slope), 0, waterRow - 1);
        std::memcpy(image.scanLine(waterRow + row), image.constScanLine(source),
                    size_t(image.bytesPerLine()));
    }
}

void paintWater(QPainter& painter, double width, double phase)
{
    painter.fillRect(
        QRectF(0, waterline, width, sceneHeight - waterline),
        downwards(waterline, sceneHeight, {{0, faded(0x6fa5bd, 0.3)}, {1, faded(0x12506b, 0.75)}}));
    for (quint32 glint = 0; glint < 420; ++glint) {
        const double depth = std::pow(scatter(400, glint), 1.6);
        const QPointF at(width * wrapped(scatter(401, glint), phase / 9, 1),
                         waterline + 3 + depth * (sceneHeight - waterline));
        painter.setBrush(faded(Qt::white, 0.08 + 0.4 * std::pow(scatter(402, glint), 4)));
        painter.drawEllipse(at, (4 + 30 * depth) * (0.5 + scatter(403, glint)), 0.6 + 1.1 * depth);
    }
}

/// Sailing boats, the smaller ones further off.
void paintBoats(QPainter& painter, double width, double drift)
{
    struct Boat
    {
        double x, y, scale, speed;
        QRgb hull, sail;
    };
    static constexpr std::array<Boat, 4> boats{{{0.62, 446, 0.34, 0.35, 0x3c5a78, 0xf6f2ea},
                                                {0.40, 452, 0.42, -0.5, 0x6b3b3b, 0xf3e3c6},
                                                {0.80, 488, 0.85, 0.9, 0x23496b, 0xffffff},
                                                {0.17, 540, 1.35, 1.3, 0x9b3430, 0xfaf3e4}}};
    for (const Boat& boat : boats) {
        for (const double upright : {-0.8, 1.0}) {
            painter.save();
            painter.setOpacity(upright < 0 ? 0.26 : 1);
            painter.translate(wrapped(boat.x, drift * boat.speed, width + 160) - 80,
                              boat.y + (upright < 0 ? 6 * boat.scale : 0));
            painter.scale(boat.speed < 0 ? -boat.scale : boat.scale, boat.scale * upright);
            painter.setBrush(QColor(boat.hull));
            painter.drawPolygon(QPolygonF{{-30, -9}, {34, -11}, {27, -2}, {18, 4}, {-22, 4}});
            painter.setBrush(QColor(0x7a6248));
            painter.drawRect(QRectF(2, -92, 2.2, 82));
            painter.setBrush(QColor(boat.sail));
            painter.drawPolygon(QPolygonF{{1, -88}, {-12, -46}, {-25, -19}, {1, -17}});
            painter.setBrush(mix(boat.sail, 0xb8c4d4, 0.3));
            painter.drawPolygon(QPolygonF{{5, -82}, {21, -42}, {31, -14}, {5, -17}});
            painter.restore();
        }
    }
}

void paintQuay(QPainter& painter, double width)
{
    painter.fillRect(
        QRectF(0, quayTop, width, 80),
        downwards(quayTop, sceneHeight,
                  {{0.14, QColor(0xa39076)}, {0.15, QColor(0x6f6353)}, {1, 0x393430}}));
    // Joints between the stones, every second course half a stone further.
    for (int course = 0; course < 3; ++course) {
        const double top = quayTop + 12 + course * 24;
        painter.fillRect(QRectF(0, top, width, 1.4), QColor(0, 0, 0, 70));
        for (double x = course % 2 * 32; x < width; x += 64)
            painter.fillRect(QRectF(x, top, 1.4, 24), QColor(0, 0, 0, 60));
    }
}

/// Lays the light of the hour over the picture; by night there are stars.
void paintLight(QPainter& painter, double width, double hour)
{
    struct Moment
    {
        double hour;
        QRgb high, low; ///< the light at the top of the picture and just above the water
    };
    static constexpr std::array<Moment, 8> moments{{{0, 0x222c58, 0x3a4a78},
                                                    {5, 0x36427c, 0x6a5a84},
                                                    {6.2, 0x98a0cc, 0xffb490},
                                                    {8, 0xffffff, 0xfff4e0},
                                                    {17.5, 0xffffff, 0xfff0d8},
                                                    {19.4, 0xa088b0, 0xffa070},
                                                    {20.8, 0x444a84, 0x9a6a84},
                                                    {24, 0x222c58, 0x3a4a78}}};
    const auto* next = std::find_if(moments.begin() + 1, moments.end() - 1,
                                    [&](const Moment& moment) { return moment.hour > hour; });
    const auto* last = next - 1;
    const double part = (hour - last->hour) / (next->hour - last->hour);
    const QColor high = mix(last->high, next->high, part);
    const QColor low = mix(last->low, next->low, part);
    painter.setCompositionMode(QPainter::CompositionMode_Multiply);
    painter.fillRect(QRectF(0, 0, width, sceneHeight),
                     downwards(0, sceneHeight, {{0, high}, {0.6, low}, {1, high}}));
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    const double night = 1 - high.redF() * 2.5;
    for (quint32 star = 0; night > 0 && star < 120; ++star) {
        painter.setBrush(faded(0xf4f6ff, night * scatter(13, star)));
        const double size = 0.5 + 1.2 * scatter(14, star);
        painter.drawEllipse(QPointF(scatter(11, star) * width, scatter(12, star) * 190), size,
                            size);
    }
}

void write(QPainter& painter, const QRectF& area, int flags, const QString& text, double size,
           QFont::Weight weight, const QColor& colour)
{
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(std::max(4, qRound(size)));
    font.setWeight(weight);
    painter.setFont(font);
    painter.setPen(colour);
    painter.drawText(area, flags, text);
    painter.setPen(Qt::NoPen);
}

/// A clock as it hangs over a platform: white dial that shines, bars for the hours and minutes, a
/// red second hand that moves smoothly; on the dial the number of the picture.
void paintClock(QPainter& painter, QPointF centre, double radius, const QTime& time, quint64 frame)
{
    painter.save();
    painter.setBrush(QColor(0x2b363e));
    painter.drawRect(QRectF(centre.x() - 9, centre.y(), 18, quayTop + 6 - centre.y()));
    painter.drawRect(QRectF(centre.x() - 28, quayTop - 5, 56, 11));
    painter.translate(centre);
    painter.scale(radius, radius);
    painter.drawEllipse(QPointF(), 1.1, 1.1);
    painter.setBrush(QColor(0xf7f6f1));
    painter.drawEllipse(QPointF(), 1, 1);

    // A bar of the dial or a hand; lengths are parts of the radius.
    const auto bar = [&](double angle, double inner, double outer, double thickness) {
        painter.save();
        painter.rotate(angle);
        painter.drawRect(QRectF(-thickness / 2, -outer, thickness, outer - inner));
        painter.restore();
    };
    painter.setBrush(QColor(ink));
    for (int minute = 0; minute < 60; ++minute)
        bar(minute * 6, minute % 5 ? 0.885 : 0.73, 0.95, minute % 5 ? 0.028 : 0.072);
    painter.scale(0.01, 0.01); // letters are counted in whole units
    write(painter, QRectF(-60, -50, 120, 22), Qt::AlignCenter, QStringLiteral("PEVORA"), 12,
          QFont::Bold, 0x4b555f);
    write(painter, QRectF(-60, 30, 120, 22), Qt::AlignCenter, QStringLiteral("No. %1").arg(frame),
          11, QFont::Normal, 0x4b555f);
    painter.scale(100, 100);
    const double second = time.msecsSinceStartOfDay() / 1000.0;
    bar(second / 120, -0.20, 0.58, 0.09);
    bar(second / 10, -0.20, 0.86, 0.07);
    painter.setBrush(QColor(0xd3202b));
    bar(second * 6, -0.28, 0.90, 0.03);
    painter.drawEllipse(QPointF(), 0.055, 0.055);
    painter.restore();
}

void paintCaption(QPainter& painter, double width, const QDateTime& time)
{
    const QLocale english(QLocale::English, QLocale::UnitedKingdom);
    // A narrow picture gets smaller letters rather than words on top of each other.
    const double fit = std::min(1.0, width / 860);
    const QRectF area(28 * fit, 668, width - 56 * fit, 40);
    const int right = int(Qt::AlignRight | Qt::AlignVCenter);
    write(painter, area, int(Qt::AlignLeft | Qt::AlignVCenter),
          QStringLiteral("Pevora demo camera"), 25 * fit, QFont::Bold, Qt::white);
    write(painter, area, right, english.toString(time, QStringLiteral("HH:mm:ss")), 27 * fit,
          QFont::Bold, Qt::white);
    write(painter, area.adjusted(0, 0, -150 * fit, 0), right,
          english.toString(time, QStringLiteral("dddd, d MMMM yyyy")), 20 * fit, QFont::Normal,
          Qt::white);
}

} // namespace

QImage Scene::draw(const QDateTime& time, quint64 frame, QSize size)
{
    QImage image(size.expandedTo(smallest).boundedTo(largest), QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const double unit = image.height() / sceneHeight;
    const double width = image.width() / unit;
    const double hour = std::fmod(7.4 + double(frame % framesADay) * 24 / framesADay, 24);
    // The remainder keeps the numbers exact after years of pictures.
    const double drift = double(frame % 1'000'000) * 23;
    const double phase = double(frame % framesADay) * 0.9;

    QPainter painter;
    const auto begin = [&] {
        painter.begin(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.scale(unit, unit);
    };
    begin();
    paintSky(painter, width, hour, drift);
    paintLand(painter, width);
    painter.end();
    mirror(image, int(waterline * unit), phase);
    begin();
    paintWater(painter, width, phase);
    paintBoats(painter, width, drift);
    paintQuay(painter, width);
    paintLight(painter, width, hour);
    paintClock(painter, QPointF(width / 2, 292), std::min(122.0, width * 0.2), time.time(), frame);
    paintCaption(painter, width, time);
    return image;
}
