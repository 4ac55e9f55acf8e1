#pragma once

#include "Light.h"

class QPainter;

/// What lies above the waterline. All lengths are in scene units: the picture is 720 high, and
/// `width` wide. Everything is painted from the back to the front.
namespace Landscape {

/// Where the water begins, in scene units from the top.
constexpr double waterline = 432;

/// Sky, stars, and the sun or the moon where `hour` puts it.
void paintSky(QPainter& painter, double width, double hour, const Light& light);

/// Clouds; `drift` is how far the wind has carried them.
void paintClouds(QPainter& painter, double width, double drift, const Light& light);

/// Snow-capped mountains, two ranges of hills and the wood on the shore.
void paintMountains(QPainter& painter, double width, double hour, const Light& light);

/// The village with its church on one shore and the lighthouse on the other.
void paintVillage(QPainter& painter, double width, const Light& light);

/// Where the sun or the moon stands across the picture, 0 at the left edge to 1 at the right.
double lampAcross(double hour);

} // namespace Landscape
