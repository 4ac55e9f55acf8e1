#include "picture/SmoothScale.h"

#include <QPainter>

#include <algorithm>
#include <cstring>

namespace {

constexpr int MostSamples = 16;

/// Qt's scaler computes with products of a side in 32 bits: from a side of 131,072 on it reads
/// what is no part of the picture. Up to here it is right, whatever the other side.
constexpr int MostOfASide = 65'535;

int sampled(int from, int to)
{
    return from / MostSamples > to ? to * MostSamples : from;
}

/// `image` at `size`, each pixel that of its middle. Qt's own loses its way beyond a million
/// pixels in a row.
QImage samplesOf(QImage image, QSize size)
{
    if (image.depth() < 8)
        image.convertTo(QImage::Format_ARGB32_Premultiplied);
    QImage samples(size, image.format());
    if (samples.isNull())
        return {};
    samples.setColorTable(image.colorTable());
    const auto middle = [](int n, int from, int to) { return (2 * qint64(n) + 1) * from / to / 2; };
    const auto bytes = size_t(image.depth() / 8);
    for (int y = 0; y < size.height(); ++y) {
        const uchar* from = image.constScanLine(int(middle(y, image.height(), size.height())));
        uchar* to = samples.scanLine(y);
        if (size.width() == image.width()) {
            std::memcpy(to, from, bytes * size_t(size.width()));
            continue;
        }
        for (int x = 0; x < size.width(); ++x, to += bytes)
            std::memcpy(to, from + bytes * size_t(middle(x, image.width(), size.width())), bytes);
    }
    return samples;
}

/// Strip by strip along a direction that is too long for Qt's scaler, each of them by itself.
QImage scaledInStrips(const QImage& image, QSize size, Qt::Orientation along)
{
    const bool across = along == Qt::Horizontal;
    const qint64 from = across ? image.width() : image.height();
    const qint64 to = across ? size.width() : size.height();
    const qint64 strips = std::max(from, to) / MostOfASide + 1;
    QImage scaled;
    for (qint64 i = 0; i < strips; ++i) {
        const int begin = int(to * i / strips);
        const int length = int(to * (i + 1) / strips) - begin;
        const int sourceBegin = int(from * i / strips);
        const int sourceLength = std::max(int(from * (i + 1) / strips) - sourceBegin, 1);
        if (length == 0)
            continue;
        QImage strip =
            across ? smoothlyScaled(image.copy(sourceBegin, 0, sourceLength, image.height()),
                                    {length, size.height()})
                   : smoothlyScaled(image.copy(0, sourceBegin, image.width(), sourceLength),
                                    {size.width(), length});
        if (scaled.isNull())
            scaled = QImage(size, strip.format());
        if (strip.isNull() || scaled.isNull())
            return {};
        strip.convertTo(scaled.format());
        const auto pixelBytes = size_t(scaled.depth() / 8);
        for (int y = 0; y < strip.height(); ++y) {
            uchar* line = across ? scaled.scanLine(y) + pixelBytes * size_t(begin)
                                 : scaled.scanLine(begin + y);
            std::memcpy(line, strip.constScanLine(y), pixelBytes * size_t(strip.width()));
        }
    }
    return scaled;
}

/// Whether a painter may enlarge `image`: its own bound of a side, and nothing to blend with.
bool isPaintable(const QImage& image, QSize size)
{
    constexpr int mostOfASide = 32'767;
    return image.format() == QImage::Format_RGB32 && size.width() >= image.width() &&
           size.height() >= image.height() && std::max(size.width(), size.height()) <= mostOfASide;
}

/// A painter blends the same four pixels as Qt's scaler, in a quarter of the instructions.
QImage painted(const QImage& image, QSize size)
{
    QImage larger(size, image.format());
    if (larger.isNull())
        return {};
    QPainter painter(&larger);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect({}, size), image);
    return larger;
}

} // namespace

QImage smoothlyScaled(const QImage& image, QSize size)
{
    if (image.isNull() || image.size() == size)
        return image;
    const QSize enough(sampled(image.width(), size.width()),
                       sampled(image.height(), size.height()));
    const QImage samples = image.size() == enough ? image : samplesOf(image, enough);
    if (samples.isNull())
        return {};
    if (std::max(enough.width(), size.width()) > MostOfASide)
        return scaledInStrips(samples, size, Qt::Horizontal);
    if (std::max(enough.height(), size.height()) > MostOfASide)
        return scaledInStrips(samples, size, Qt::Vertical);
    if (isPaintable(samples, size))
        return painted(samples, size);
    return samples.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
