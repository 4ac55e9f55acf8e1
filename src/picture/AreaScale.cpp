#include "picture/AreaScale.h"

#if defined(__SSE2__) || defined(_M_X64)

#include <algorithm>
#include <cstring>
#include <vector>

#include <emmintrin.h>

namespace {

/// What of a row or column of the picture goes into one pixel of the result.
struct Share
{
    int first;
    std::vector<quint16> weights; ///< together 65535
};

std::vector<Share> sharesOf(int from, int to)
{
    std::vector<Share> shares;
    shares.reserve(size_t(to));
    for (int i = 0; i < to; ++i) {
        // In parts, of which a pixel of the picture has `to` and one of the result `from`.
        const qint64 begin = qint64(i) * from;
        const qint64 end = begin + from;
        Share share{int(begin / to), {}};
        qint64 given = 0;
        for (qint64 part = begin; part < end;) {
            part = std::min(end, (part / to + 1) * to);
            const qint64 upToHere = (part - begin) * 65'535 / from;
            share.weights.push_back(quint16(upToHere - given));
            given = upToHere;
        }
        shares.push_back(std::move(share));
    }
    return shares;
}

/// Adds eight numbers, weighted. Sums stay below 65,281: 255 times 256 is the most.
void add(__m128i& sum, __m128i numbers, __m128i weight)
{
    sum = _mm_add_epi16(sum, _mm_mulhi_epu16(numbers, weight));
}

/// The sums of up to four pixels' parts down the rows of `share`, each of them 256 times a part.
/// Of the rows nothing beyond these pixels is read.
void mixRows(quint16* sums, const uchar* pixels, int count, qsizetype perRow, const Share& share)
{
    constexpr int group = 4;
    const __m128i zero = _mm_setzero_si128();
    __m128i low = zero;
    __m128i high = zero;
    for (const quint16 weight : share.weights) {
        __m128i four = zero;
        if (count >= group)
            four = _mm_loadu_si128(reinterpret_cast<const __m128i*>(pixels));
        else
            std::memcpy(&four, pixels, size_t(4 * count));
        const __m128i weights = _mm_set1_epi16(short(weight));
        add(low, _mm_unpacklo_epi8(zero, four), weights);
        add(high, _mm_unpackhi_epi8(zero, four), weights);
        pixels += perRow;
    }
    auto* to = reinterpret_cast<__m128i*>(sums);
    _mm_storeu_si128(to, low);
    _mm_storeu_si128(to + 1, high);
}

QRgb mixed(const quint16* sums, const Share& share)
{
    const quint16* from = sums + 4 * share.first;
    __m128i sum = _mm_set1_epi16(128); // so that it is rounded, not cut
    for (const quint16 weight : share.weights) {
        add(sum, _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from)),
            _mm_set1_epi16(short(weight)));
        from += 4;
    }
    sum = _mm_srli_epi16(sum, 8);
    return QRgb(_mm_cvtsi128_si32(_mm_packus_epi16(sum, sum)));
}

} // namespace

QImage areaScaled(const QImage& image, QSize size)
{
    const bool isOpaque = image.format() == QImage::Format_RGB32;
    if ((!isOpaque && image.format() != QImage::Format_ARGB32_Premultiplied) || size.isEmpty() ||
        size.width() > image.width() || size.height() > image.height())
        return {};
    QImage scaled(size, image.format());
    if (scaled.isNull())
        return {};
    const QRgb opaque = isOpaque ? 0xff000000 : 0;
    const auto across = sharesOf(image.width(), size.width());
    const auto down = sharesOf(image.height(), size.height());
    std::vector<quint16> sums(size_t(image.width() + 3) / 4 * 16);
    for (int y = 0; y < size.height(); ++y) {
        const Share& rows = down[size_t(y)];
        const uchar* first = image.constScanLine(rows.first);
        for (int x = 0; x < image.width(); x += 4) {
            mixRows(sums.data() + 4 * x, first + 4 * x, image.width() - x, image.bytesPerLine(),
                    rows);
        }
        auto* line = reinterpret_cast<QRgb*>(scaled.scanLine(y));
        for (const Share& share : across)
            *line++ = mixed(sums.data(), share) | opaque;
    }
    return scaled;
}

#else

QImage areaScaled(const QImage&, QSize)
{
    return {};
}

#endif
