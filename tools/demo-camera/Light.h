#pragma once

#include <QColor>

/// The light of one hour of the day: the colours that everything in the scene is drawn with.
struct Light
{
    QColor zenith;  ///< the sky at the top of the picture
    QColor sky;     ///< half way down
    QColor horizon; ///< just above the water; distant things fade towards it
    QColor ambient; ///< white at noon; what a white wall looks like at this hour
    double night;   ///< 0 by day to 1 in the dark: stars and lamps

    /// The light at `hour`, in hours since midnight; any value, taken modulo 24.
    static Light at(double hour);

    /// `colour` as it looks in this light.
    QColor on(QColor colour) const;

    /// As `on`, seen through haze: `distance` 0 is near, 1 is lost in the horizon's colour.
    QColor far(QColor colour, double distance) const;
};

/// `first` at 0, `second` at 1, in between a straight mixture, opacity included.
QColor mix(QColor first, QColor second, double part);

/// `colour` at an opacity of 0 to 1.
QColor faded(QColor colour, double opacity);

/// An even but patternless number in [0, 1), always the same for the same arguments.
double scatter(quint32 seed, quint32 index);
