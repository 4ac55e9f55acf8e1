#pragma once

#include <QByteArray>
#include <QSize>

#include <optional>

/// What a WebP is made of, as far as its first picture needs it, as views of its bytes, which must
/// outlive it.
///
/// A WebP is a RIFF file: either one chunk of coded pixels (VP8, or VP8L without losses), or VP8X
/// with the size of a canvas and then an image with its transparency, or frames of an animation.
struct WebpParts
{
    QSize canvas;            ///< Of the whole picture; 0 x 0 where no VP8X says so.
    QSize frame;             ///< Of the (first) coded pixels, as these say it.
    int features = 0;        ///< The flags of VP8X.
    qsizetype fileBytes = 0; ///< As the file announces, and no more than there are.
    QByteArrayView anim;     ///< Whole chunks, or nothing: the animation's background,
    QByteArrayView anmf;     ///< its first frame, with alpha and pixels inside,
    QByteArrayView alpha;    ///< or the transparency
    QByteArrayView pixels;   ///< and the pixels themselves.

    static constexpr int Animated = 0x02;
    static constexpr int SeeThrough = 0x10;
    bool isAnimated() const { return features & Animated; }

    /// Nothing where `bytes` are no WebP, or end or err before their (first) picture is complete.
    static std::optional<WebpParts> read(QByteArrayView bytes);
};

/// The WebP (one that PictureHeader reads) with nothing but its first picture. Later frames,
/// profiles and texts are left out, so that a decoder neither walks through them nor minds where
/// they are cut.
QByteArray bareWebp(QByteArrayView bytes);
