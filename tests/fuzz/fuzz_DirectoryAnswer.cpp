#include "fuzz/Fuzzing.h"

#include "directory/DirectoryAnswer.h"

/// Whatever a directory's server sends is some cameras, none, or a fault.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    const DirectoryAnswer answer(bytes);
    if (const auto& fault = answer.fault()) {
        REQUIRE(!fault->status.contains(u'\n'));
        REQUIRE((fault->kind == DirectoryFault::Kind::Nothing) == bytes.isEmpty());
    }
    if (const auto cameras = answer.cameras()) {
        REQUIRE(cameras->size() <= MostFoundCameras);
        REQUIRE(3 * cameras->size() <= bytes.count('\xFF') + 1);
    }
    return 0;
}
