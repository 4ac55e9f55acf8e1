#pragma once

#include "Light.h"

#include <QDateTime>
#include <QPointF>

class QPainter;

/// A clock as it hangs over a platform: white dial, bars for the hours and minutes, a red second
/// hand that moves smoothly.
namespace StationClock {

/// Draws the dial of `radius` around `centre`, a post down to `foot`, and the hands at `time`,
/// which counts to the millisecond. `frame` is written on the dial. The dial shines at night.
void paint(QPainter& painter, QPointF centre, double radius, double foot, const QDateTime& time,
           quint64 frame, const Light& light);

} // namespace StationClock
