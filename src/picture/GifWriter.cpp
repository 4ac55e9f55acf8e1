#include "picture/GifWriter.h"

#include "picture/FixedPalette.h"
#include "picture/FlattenedOnWhite.h"

#include <array>
#include <gif_lib.h>

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace {

constexpr int MaxGifSide = 65535;
constexpr int BitsPerPixel = 8;

int appendBytes(GifFileType* file, const GifByteType* bytes, int count)
{
    static_cast<QByteArray*>(file->UserData)->append(reinterpret_cast<const char*>(bytes), count);
    return count;
}

std::unique_ptr<ColorMapObject, decltype(&GifFreeMapObject)> colourMap()
{
    std::array<GifColorType, fixedPalette::Size> colours;
    std::transform(fixedPalette::colours().begin(), fixedPalette::colours().end(), colours.begin(),
                   [](QRgb colour) {
                       return GifColorType{GifByteType(qRed(colour)), GifByteType(qGreen(colour)),
                                           GifByteType(qBlue(colour))};
                   });
    return {GifMakeMapObject(fixedPalette::Size, colours.data()), GifFreeMapObject};
}

bool putHeader(GifFileType* file, QSize size)
{
    const auto map = colourMap();
    return map &&
           EGifPutScreenDesc(file, size.width(), size.height(), BitsPerPixel, 0, map.get()) ==
               GIF_OK &&
           EGifPutImageDesc(file, 0, 0, size.width(), size.height(), false, nullptr) == GIF_OK;
}

bool putPixels(GifFileType* file, const QImage& image)
{
    std::vector<GifPixelType> indices(image.width());
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        std::transform(line, line + image.width(), indices.begin(), fixedPalette::nearest);
        if (EGifPutLine(file, indices.data(), image.width()) != GIF_OK)
            return false;
    }
    return true;
}

} // namespace

QByteArray encodeGif(QImage image)
{
    if (image.width() > MaxGifSide || image.height() > MaxGifSide)
        return {};
    const QImage pixels = flattenedOnWhite(std::move(image));
    if (pixels.isNull())
        return {};
    QByteArray bytes;
    GifFileType* file = EGifOpen(&bytes, appendBytes, nullptr);
    if (!file)
        return {};
    const bool whole = putHeader(file, pixels.size()) && putPixels(file, pixels);
    return EGifCloseFile(file, nullptr) == GIF_OK && whole ? bytes : QByteArray();
}
