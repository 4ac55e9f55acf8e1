#include "camlist/DefaultCameras.h"

QList<CameraRecord> defaultCameras()
{
    return {};
}
