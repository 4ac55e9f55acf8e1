#pragma once

#include "cameras/CameraListLine.h"

#include <QList>

/// The cameras of a list that has none yet, in the order of resources/default-cameras.tsv, which
/// is built into the program. None has an extra header. Whether they answer is not known; see
/// tools/check-defaults.
QList<CameraRecord> defaultCameras();
