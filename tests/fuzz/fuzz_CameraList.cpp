#include "fuzz/Fuzzing.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraListLine.h"
#include "cameras/TypedCamera.h"

/// Whatever a list's file holds reads as some cameras, and what was read survives a save and a
/// load.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray line(reinterpret_cast<const char*>(data), qsizetype(size));
    const QList<CameraRecord> cameras = readCameraListLine(withoutLineEnd(line));
    REQUIRE(3 * cameras.size() <= line.count('\xFF') + 1);
    const QByteArray written = writeCameraListLine(cameras);
    REQUIRE(written.isEmpty() == cameras.isEmpty());
    REQUIRE(readCameraListLine(written) == cameras);
    REQUIRE(writeCameraListLine(readCameraListLine(written)) == written);

    for (const CameraRecord& camera : cameras) {
        const auto [address, extraHeader] = splitCameraKey(camera.key);
        REQUIRE(extraHeader.isEmpty() || joinCameraKey(address, extraHeader) == camera.key);
        if (const auto cleaned = cleanedCameraKey(camera.key))
            REQUIRE(cleanedCameraKey(*cleaned) == cleaned);
    }
    return 0;
}
