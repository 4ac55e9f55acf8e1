#include "picture/SmoothScale.h"

namespace {

constexpr int MostSamples = 16;

int sampled(int from, int to)
{
    return from / MostSamples > to ? to * MostSamples : from;
}

} // namespace

QImage smoothlyScaled(const QImage& image, QSize size)
{
    if (image.isNull() || image.size() == size)
        return image;
    const QSize enough(sampled(image.width(), size.width()),
                       sampled(image.height(), size.height()));
    const QImage samples = image.size() == enough ? image
                                                  : image.scaled(enough, Qt::IgnoreAspectRatio,
                                                                 Qt::FastTransformation);
    return samples.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}
