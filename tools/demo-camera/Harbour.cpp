#include "Harbour.h"

#include <QPainter>
#include <QPainterPath>
#include <QPolygonF>

#include <array>
#include <cmath>

namespace {

/// A sailing boat about 60 units long, its waterline on y = 0, sailing to the right.
void paintSailingBoat(QPainter& painter, QColor hull, QColor sail, const Light& light)
{
    painter.setPen(Qt::NoPen);
    QPainterPath body(QPointF(-30, -9));
    body.lineTo(34, -11);
    body.quadTo(27, 3, 18, 4);
    body.lineTo(-22, 4);
    body.quadTo(-29, 0, -30, -9);
    painter.setBrush(light.on(hull));
    painter.drawPath(body);
    painter.setBrush(light.on(QColor(0xf4f1e8)));
    painter.drawPolygon(QPolygonF{{-30, -9}, {34, -11}, {33, -8.5}, {-29.6, -6.5}});
    painter.setBrush(light.on(QColor(0xd9c8a4)));
    painter.drawRoundedRect(QRectF(-18, -14.5, 20, 5), 2, 2);

    painter.setBrush(light.on(QColor(0x7a6248)));
    painter.drawRect(QRectF(2, -92, 2.2, 82));
    QPainterPath main(QPointF(1, -88));
    main.quadTo(-12, -48, -25, -19);
    main.lineTo(1, -17);
    main.closeSubpath();
    painter.setBrush(light.on(sail));
    painter.drawPath(main);
    QPainterPath jib(QPointF(5, -82));
    jib.quadTo(22, -44, 31, -14);
    jib.quadTo(16, -19, 5, -17);
    jib.closeSubpath();
    painter.setBrush(light.on(mix(sail, QColor(0xb8c4d4), 0.3)));
    painter.drawPath(jib);
    if (light.night > 0.2) {
        painter.setBrush(faded(QColor(0xffe7a0), light.night));
        painter.drawEllipse(QPointF(3, -93), 2.4, 2.4);
    }
}

void paintRowingBoat(QPainter& painter, QColor hull, const Light& light)
{
    QPainterPath body(QPointF(-26, -9));
    body.quadTo(0, -4, 27, -10);
    body.quadTo(22, 3, 12, 4);
    body.lineTo(-14, 4);
    body.quadTo(-23, 2, -26, -9);
    painter.setPen(Qt::NoPen);
    painter.setBrush(light.on(hull));
    painter.drawPath(body);
    painter.setPen(QPen(light.on(QColor(0xf2e6cf)), 1.6, Qt::SolidLine, Qt::RoundCap));
    painter.setBrush(Qt::NoBrush);
    QPainterPath rim(QPointF(-26, -9));
    rim.quadTo(0, -4, 27, -10);
    painter.drawPath(rim);
    painter.setPen(QPen(light.on(QColor(0x8a6a44)), 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(0, -7), QPointF(-15, 3));
    // The rower.
    painter.setPen(Qt::NoPen);
    painter.setBrush(light.on(QColor(0x2f5f8f)));
    painter.drawRoundedRect(QRectF(-4, -20, 9, 14), 4, 4);
    painter.setBrush(light.on(QColor(0xe3b48f)));
    painter.drawEllipse(QPointF(1, -24), 4, 4.4);
}

} // namespace

void Harbour::paintBoats(QPainter& painter, double width, double drift, const Light& light)
{
    struct Boat
    {
        double x, y, scale, speed;
        QRgb hull, sail;
    };
    static constexpr std::array<Boat, 5> boats{{{0.62, 446, 0.34, 0.35, 0x3c5a78, 0xf6f2ea},
                                                {0.40, 452, 0.42, -0.5, 0x6b3b3b, 0xf3e3c6},
                                                {0.80, 488, 0.85, 0.9, 0x23496b, 0xffffff},
                                                {0.17, 540, 1.35, 1.3, 0x9b3430, 0xfaf3e4},
                                                {0.66, 592, 1.15, -0.8, 0x6f4a2c, 0}}};
    quint32 index = 0;
    for (const Boat& boat : boats) {
        const double margin = 60 * boat.scale;
        const double span = width + 2 * margin;
        double x = std::fmod(boat.x * span + drift * boat.speed, span);
        if (x < 0)
            x += span;
        const double roll = 2.2 * std::sin(drift * 0.11 + index * 1.9);
        const auto paint = [&](double upright) {
            painter.save();
            painter.translate(x - margin, boat.y + (upright < 0 ? 6 * boat.scale : 0));
            painter.rotate(roll * (upright < 0 ? -1 : 1));
            painter.scale(boat.speed < 0 ? -boat.scale : boat.scale, boat.scale * upright);
            if (boat.sail)
                paintSailingBoat(painter, QColor(boat.hull), QColor(boat.sail), light);
            else
                paintRowingBoat(painter, QColor(boat.hull), light);
            painter.restore();
        };
        painter.setOpacity(0.26);
        paint(-0.8);
        painter.setOpacity(1);
        paint(1);
        painter.setPen(Qt::NoPen);
        painter.setBrush(faded(light.on(QColor(0xffffff)), 0.4));
        painter.drawEllipse(QPointF(x - margin, boat.y + 4.6 * boat.scale), 30 * boat.scale,
                            1.5 * boat.scale);
        ++index;
    }
}

void Harbour::paintGulls(QPainter& painter, double width, double drift, const Light& light)
{
    if (light.night > 0.5)
        return;
    painter.setBrush(Qt::NoBrush);
    for (quint32 gull = 0; gull < 5; ++gull) {
        const double span = width + 80;
        const double x =
            std::fmod(scatter(300, gull) * span + drift * (1.3 + 0.5 * scatter(301, gull)), span) -
            40;
        const double y = 185 + 95 * scatter(302, gull) + 8 * std::sin(drift * 0.07 + gull);
        const double size = 7 + 6 * scatter(303, gull);
        const double lift = size * (0.35 + 0.3 * std::sin(drift * 0.23 + gull * 2.1));
        QPainterPath wings(QPointF(x - size, y - lift));
        wings.quadTo(x - size * 0.45, y - lift * 1.5, x, y);
        wings.quadTo(x + size * 0.45, y - lift * 1.5, x + size, y - lift);
        painter.setPen(QPen(faded(light.on(QColor(0xfdfdfd)), 1 - light.night), 2.0, Qt::SolidLine,
                            Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(wings);
    }
    painter.setPen(Qt::NoPen);
}

void Harbour::paintQuay(QPainter& painter, double width, const Light& light)
{
    painter.setPen(Qt::NoPen);
    QLinearGradient deck(0, quayTop, 0, 720);
    deck.setColorAt(0, light.on(QColor(0xb9a68a)));
    deck.setColorAt(0.14, light.on(QColor(0xa39076)));
    deck.setColorAt(0.15, light.on(QColor(0x6f6353)));
    deck.setColorAt(1, light.on(QColor(0x393430)));
    painter.fillRect(QRectF(0, quayTop, width, 720 - quayTop), deck);
    painter.fillRect(QRectF(0, quayTop, width, 1.5), faded(light.on(QColor(0xfff4de)), 0.7));
    // Joints between the stones, every second course half a stone further.
    for (int course = 0; course < 3; ++course) {
        const double top = quayTop + 12 + course * 24;
        painter.fillRect(QRectF(0, top, width, 1.4), QColor(0, 0, 0, 70));
        for (double x = course % 2 ? -32 : 0; x < width; x += 64)
            painter.fillRect(QRectF(x, top, 1.4, 24), QColor(0, 0, 0, 60));
    }

    const double gap = width / 8;
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(light.on(QColor(0x4a4f57)), 3, Qt::DotLine, Qt::RoundCap));
    for (int link = 0; link < 8; ++link) {
        QPainterPath chain(QPointF(gap * (link - 0.5), quayTop - 25));
        chain.quadTo(gap * link, quayTop - 3, gap * (link + 0.5), quayTop - 25);
        painter.drawPath(chain);
    }
    painter.setPen(Qt::NoPen);
    for (int post = 0; post < 8; ++post) {
        const double x = gap * (post + 0.5);
        QLinearGradient round(x - 7, 0, x + 7, 0);
        round.setColorAt(0, light.on(QColor(0x2b3138)));
        round.setColorAt(0.35, light.on(QColor(0x6d7884)));
        round.setColorAt(1, light.on(QColor(0x1c2126)));
        painter.setBrush(round);
        painter.drawRoundedRect(QRectF(x - 6, quayTop - 30, 12, 33), 3, 3);
        painter.drawEllipse(QPointF(x, quayTop - 31), 8, 5);
    }
}
