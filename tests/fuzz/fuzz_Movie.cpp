#include "fuzz/Fuzzing.h"

#include "viewer/movie/MovieFile.h"

/// A movie's parts are the same whatever the chunks, and lie one behind the other in the file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    const auto chunk = input.ConsumeIntegralInRange<qint64>(MovieSeparator.size() + 1, 64);
    const QByteArray movie = fuzzing::restOf(input);
    const auto scanned = [&movie](qint64 chunkBytes) {
        MovieScan scan(movie.size(), chunkBytes);
        while (!scan.isDone()) {
            REQUIRE(scan.count() > 0 && scan.position() + scan.count() <= movie.size());
            scan.take(QByteArrayView(movie).sliced(scan.position(), scan.count()));
        }
        return scan.parts();
    };
    const auto parts = scanned(chunk);
    const auto atOnce = scanned(MovieScan::DefaultChunkBytes);
    REQUIRE(parts.size() == atOnce.size());
    qint64 end = -MovieSeparator.size();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        REQUIRE(parts[i].begin == atOnce[i].begin && parts[i].size == atOnce[i].size);
        REQUIRE(parts[i].begin == end + MovieSeparator.size());
        end = parts[i].begin + parts[i].size;
        REQUIRE(end <= movie.size());
        REQUIRE(!movie.mid(parts[i].begin, parts[i].size).contains(MovieSeparator.toByteArray()));
        REQUIRE(parts[i].mayBePicture() || i + 1 == parts.size());
    }
    return 0;
}
