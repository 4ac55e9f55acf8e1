#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// What the bytes of a still image say of themselves, read without decoding anything: the format,
/// the size, and whatever else decides how much time and memory a decoder is going to need.
///
/// The formats are the Windows bitmap (BITMAPFILEHEADER and BITMAPINFOHEADER), GIF 87a and 89a,
/// JPEG (ITU-T T.81), PNG (RFC 2083) and WebP (RFC 9649). The content alone tells them apart.
struct PictureHeader
{
    enum class Format { Bmp, Gif, Jpeg, Png, Webp };

    Format format = Format::Bmp;

    /// Width and height in pixels, both at least 1. Of a GIF its logical screen, of a WebP its
    /// canvas.
    QSize size;

    /// The largest area announced, in pixels: that of `size`, or of a GIF's first frame where that
    /// is larger than the screen. Of an animated WebP its canvas and first frame together.
    qint64 pixels = 0;

    /// Of a JPEG: how many scans follow, up to the end-of-image marker. Else 0.
    int scans = 0;

    /// Of a JPEG: how many marker segments (tables, comments, application data, scan headers)
    /// stand before the end-of-image marker. Else 0.
    int segments = 0;

    /// Of a JPEG: whether it is arithmetically coded (and not in Huffman codes, as nearly all are).
    bool arithmetic = false;

    /// Of a JPEG: whether it is of four components (the inks of a printer) or more.
    bool ink = false;

    /// Of a JPEG whose pixels come in several scans, and that a decoder must therefore hold as
    /// coefficients until the last: their bytes. Else 0.
    qint64 coefficientBytes = 0;

    /// Of a PNG: whether its samples are of 16 bits, which double what a decoder holds.
    bool deep = false;

    /// Of a WebP without losses, or with transparency: how many of its blocks have codes of their
    /// own. Else 0.
    qint64 blocks = 0;

    /// How many bytes from the start a decoder needs for the (first) picture. What follows is
    /// another frame, data past the last pixel, data past the end-of-image marker, or a marker
    /// segment that the end of the data cuts in two. As many as `fileBytes` of a bitmap, PNG or
    /// WebP.
    qsizetype usedBytes = 0;

    /// How many bytes from the start are the picture's file, later frames included, as far as these
    /// tell its end: behind the last pixel of a bitmap (or what a header of 124 bytes says), the
    /// trailer of a GIF, the end-of-image marker of a JPEG, the end chunk of a PNG, the length of a
    /// WebP. What follows is no part of it. All where the end is missing.
    qsizetype fileBytes = 0;

    /// Nothing where `bytes` are none of the formats, or end or err before they tell the size.
    /// That there is something does not promise that the picture decodes.
    static std::optional<PictureHeader> read(QByteArrayView bytes);

private:
    // Each in a file of its own.
    static std::optional<PictureHeader> readBitmap(QByteArrayView bytes);
    static std::optional<PictureHeader> readGif(QByteArrayView bytes);
    static std::optional<PictureHeader> readJpeg(QByteArrayView bytes);
    static std::optional<PictureHeader> readPng(QByteArrayView bytes);
    static std::optional<PictureHeader> readWebp(QByteArrayView bytes);

    /// `header` with that size; nothing where a side is below 1 or beyond an int.
    static std::optional<PictureHeader> sized(PictureHeader header, qint64 width, qint64 height);
};
