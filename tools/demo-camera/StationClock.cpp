#include "StationClock.h"

#include <QFont>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>

namespace {

void paintPost(QPainter& painter, QPointF centre, double radius, double foot, const Light& light)
{
    const double half = radius * 0.075;
    QLinearGradient round(centre.x() - half, 0, centre.x() + half, 0);
    round.setColorAt(0, light.on(QColor(0x1d2a33)));
    round.setColorAt(0.35, light.on(QColor(0x6b7f8c)));
    round.setColorAt(1, light.on(QColor(0x141d24)));
    painter.setBrush(round);
    painter.drawRect(QRectF(centre.x() - half, centre.y(), 2 * half, foot - centre.y()));
    painter.drawPolygon(QPolygonF{{centre.x() - half, foot - 7 * half},
                                  {centre.x() + half, foot - 7 * half},
                                  {centre.x() + 2.2 * half, foot - half},
                                  {centre.x() - 2.2 * half, foot - half}});
    painter.drawRoundedRect(QRectF(centre.x() - 3 * half, foot - half, 6 * half, 1.3 * half),
                            half * 0.4, half * 0.4);
    painter.drawRoundedRect(
        QRectF(centre.x() - 1.7 * half, centre.y() + radius * 1.08, 3.4 * half, 1.6 * half),
        half * 0.5, half * 0.5);
}

/// A bar on the dial or a hand: from `inner` to `outer` (parts of the radius) at `angle` degrees.
void paintBar(QPainter& painter, double radius, double angle, double inner, double outer,
              double innerWidth, double outerWidth)
{
    painter.save();
    painter.rotate(angle);
    painter.drawPolygon(QPolygonF{{-innerWidth * radius / 2, -inner * radius},
                                  {-outerWidth * radius / 2, -outer * radius},
                                  {outerWidth * radius / 2, -outer * radius},
                                  {innerWidth * radius / 2, -inner * radius}});
    painter.restore();
}

void paintHands(QPainter& painter, double radius, const QTime& time)
{
    const double second = time.second() + time.msec() / 1000.0;
    const double minute = time.minute() + second / 60.0;
    const double hour = time.hour() % 12 + minute / 60.0;
    const auto all = [&](QColor hands, QColor pointer) {
        painter.setBrush(hands);
        paintBar(painter, radius, hour * 30, -0.20, 0.58, 0.105, 0.085);
        paintBar(painter, radius, minute * 6, -0.20, 0.86, 0.085, 0.06);
        painter.setBrush(pointer);
        paintBar(painter, radius, second * 6, -0.28, 0.90, 0.034, 0.024);
        painter.drawEllipse(QPointF(), radius * 0.055, radius * 0.055);
    };
    painter.save();
    painter.translate(radius * 0.018, radius * 0.028);
    all(QColor(0, 0, 0, 46), QColor(0, 0, 0, 46));
    painter.restore();
    all(QColor(0x15181c), QColor(0xd3202b));
}

} // namespace

void StationClock::paint(QPainter& painter, QPointF centre, double radius, double foot,
                         const QDateTime& time, quint64 frame, const Light& light)
{
    painter.save();
    painter.setPen(Qt::NoPen);
    paintPost(painter, centre, radius, foot, light);
    painter.translate(centre);

    if (light.night > 0) {
        QRadialGradient glow(QPointF(), radius * 1.9);
        glow.setColorAt(0.55, faded(QColor(0xfff3cf), 0.42 * light.night));
        glow.setColorAt(0.7, faded(QColor(0xfff3cf), 0.15 * light.night));
        glow.setColorAt(1, faded(QColor(0xfff3cf), 0));
        painter.setBrush(glow);
        painter.drawEllipse(QPointF(), radius * 1.9, radius * 1.9);
    }
    QLinearGradient rim(0, -radius * 1.1, 0, radius * 1.1);
    rim.setColorAt(0, light.on(QColor(0x66757f)));
    rim.setColorAt(0.5, light.on(QColor(0x2b363e)));
    rim.setColorAt(1, light.on(QColor(0x151c21)));
    painter.setBrush(rim);
    painter.drawEllipse(QPointF(), radius * 1.1, radius * 1.1);
    QRadialGradient dial(QPointF(-radius * 0.2, -radius * 0.3), radius * 1.4);
    // Lit from within, the dial darkens less than the land around it.
    const QColor white =
        mix(mix(light.on(QColor(0xffffff)), QColor(0xffffff), 0.55), QColor(0xfff6dd), light.night);
    dial.setColorAt(0, white);
    dial.setColorAt(1, mix(white, QColor(0x8d99a6), 0.25));
    painter.setBrush(dial);
    painter.drawEllipse(QPointF(), radius, radius);

    painter.setBrush(QColor(0x15181c));
    for (int minute = 0; minute < 60; ++minute) {
        const bool hour = minute % 5 == 0;
        const double width = hour ? 0.072 : 0.028;
        paintBar(painter, radius, minute * 6, hour ? 0.73 : 0.885, 0.95, width, width);
    }

    const auto write = [&](const QString& text, double y, double size, int weight) {
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(std::max(4, qRound(radius * size)));
        font.setWeight(QFont::Weight(weight));
        painter.setFont(font);
        painter.setPen(QColor(0x4b555f));
        painter.drawText(QRectF(-radius * 0.6, radius * y, radius * 1.2, radius * 0.22),
                         Qt::AlignCenter, text);
        painter.setPen(Qt::NoPen);
    };
    write(QStringLiteral("PEVORA"), -0.50, 0.115, QFont::Bold);
    write(QStringLiteral("No. %1").arg(frame), 0.30, 0.105, QFont::Normal);
    paintHands(painter, radius, time.time());
    painter.restore();
}
