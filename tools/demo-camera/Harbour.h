#pragma once

#include "Light.h"

class QPainter;

/// What floats, flies and stands in the foreground; lengths are in scene units, as in Landscape.
namespace Harbour {

/// Sailing boats and a rowing boat, each with its reflection; `drift` is how far they have gone.
void paintBoats(QPainter& painter, double width, double drift, const Light& light);

/// A few gulls.
void paintGulls(QPainter& painter, double width, double drift, const Light& light);

/// The quay along the lower edge, with bollards and their chain.
void paintQuay(QPainter& painter, double width, const Light& light);

/// Top of the quay in scene units: what stands on it stands here.
constexpr double quayTop = 636;

} // namespace Harbour
