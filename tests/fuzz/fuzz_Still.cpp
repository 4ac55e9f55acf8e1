#include "fuzz/Fuzzing.h"

#include "picture/Still.h"
#include "picture/headers/PictureHeader.h"

namespace {

/// Larger ones are read as well, but take a fuzzer's time from it.
constexpr qint64 MostPixels = 300'000;

} // namespace

/// Whatever bytes claim to be a picture: they are refused, or are one of the size that they say.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const int needed = input.ConsumeIntegralInRange(1, 64);
    const QByteArray bytes = fuzzing::restOf(input);
    const auto header = PictureHeader::read(bytes);
    if (!header) {
        REQUIRE(Still::fromBytes(bytes).isNull());
        return 0;
    }
    REQUIRE(header->size.width() > 0 && header->size.height() > 0);
    REQUIRE(header->usedBytes >= 0 && header->usedBytes <= bytes.size());
    if (header->pixels > MostPixels || header->scans * header->pixels > 20 * MostPixels)
        return 0;

    QImage decoded;
    const Still still = Still::fromBytes(bytes, QSize(needed, needed), &decoded);
    if (still.isNull())
        return 0;
    REQUIRE(!decoded.isNull());
    const QSize sizes = still.size();
    REQUIRE(decoded.width() <= sizes.width() && decoded.height() <= sizes.height());
    const QImage small = still.imageNoSmallerThan(QSize(needed, needed));
    REQUIRE(small.size() == Still::halvedSize(sizes, QSize(needed, needed)));
    REQUIRE(still.image().size() == sizes);
    return 0;
}
