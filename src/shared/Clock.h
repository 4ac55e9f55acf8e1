#pragma once

#include <QDateTime>

#include <functional>

/// Tells the time. Whoever needs it is given one, so that a test can give another.
using Clock = std::function<QDateTime()>;

/// The system's own clock.
inline QDateTime systemClock()
{
    return QDateTime::currentDateTime();
}
