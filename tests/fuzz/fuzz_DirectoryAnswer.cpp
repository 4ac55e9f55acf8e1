#include "fuzz/Fuzzing.h"

#include "directory/DirectoryAnswer.h"

/// Whatever a directory's server sends is some cameras, none, or a fault.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray answer(reinterpret_cast<const char*>(data), qsizetype(size));
    if (const auto fault = faultOfDirectoryAnswer(answer)) {
        REQUIRE(!fault->status.contains(u'\n'));
        REQUIRE((fault->kind == DirectoryFault::Kind::Nothing) == answer.isEmpty());
    }
    if (const auto cameras = readDirectoryAnswer(answer)) {
        REQUIRE(cameras->size() <= MostFoundCameras);
        REQUIRE(3 * cameras->size() <= answer.count('\xFF') + 1);
    }
    return 0;
}
