#pragma once

#include "shared/CameraListLine.h"

/// The cameras of a user who has no list yet.
QList<CameraRecord> defaultCameras();
