#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <memory>

/// A still image as a cheap value: the encoded bytes as they came, or pixels where it never had
/// any. Copies share. It knows its size and decodes when asked; it caches no pixels.
///
/// A Still exists only for bytes that were decoded once: what does not decode is a null Still.
/// Formats are Windows bitmap, GIF (its first frame), JPEG, PNG and WebP (its first frame), told
/// from the content alone. Where Qt's plug-in for WebP is missing, a WebP is no picture.
class Still
{
public:
    /// What passes one of these is refused before anything is decoded, and so is a side of over
    /// 65,535 pixels, a GIF of over 30 megapixels, and a JPEG whose scans times its pixels pass 250
    /// million (2.1 million with arithmetic coding), its pixels and coefficients 250 MB together,
    /// or its marker segments 10,000; each pixel of four inks counts twice. So is a PNG of over 20
    /// megapixels, or 10 where samples are of 16 bits; and a WebP of over 16 megapixels (of an
    /// animation the canvas and its first frame together), or 4,000 blocks with codes of their own.
    /// Whatever a megabyte holds then costs no more than eight times as much processor time as a
    /// whole baseline JPEG of 12 megapixels, and 500 MB.

    /// So much one picture may hold in memory, in the history as well.
    static constexpr qsizetype MaxEncodedBytes = 64 * 1024 * 1024;
    /// A few bytes of a header would take gigabytes of pixels else: these are 200 MB.
    static constexpr qint64 MaxPixels = 50'000'000;
    /// Each scan goes through the whole picture once more, and needs a dozen bytes for that.
    static constexpr int MaxJpegScans = 100;

    /// A null image, of size 0 x 0.
    Still() = default;

    /// Decodes `bytes` once, no smaller than `needed` (device pixels; an empty size: whole).
    /// Gives the pixels of that one decode in `decoded`, where that is asked for, so that a view
    /// that shows them at once decodes nothing twice. A truncated JPEG decodes (the rest grey),
    /// and so does a PNG with a byte of pixel data, up to where its data end or err. A WebP needs
    /// all of its (first) picture.
    /// Returns a null Still, and leaves `decoded` alone, where `bytes` are none of the formats,
    /// pass one of the bounds above, or end in a fatal decoder error.
    static Still fromBytes(const QByteArray& bytes, QSize needed = {}, QImage* decoded = nullptr);

    /// A still of pixels that never were a file. Null for a null image.
    static Still fromImage(const QImage& image);

    bool isNull() const { return !m_data; }

    /// Whether both are copies of one still (or null both).
    bool isSameAs(const Still& other) const { return m_data == other.m_data; }

    /// Width and height of the whole image in pixels.
    QSize size() const;

    /// The bytes as they came, without what follows the picture's file (see
    /// PictureHeader::fileBytes); empty for a still of pixels.
    QByteArray bytes() const;

    /// So many bytes of memory it holds, be it shared with copies.
    qint64 heldBytes() const;

    /// The whole image, decoded anew. Null only for a null still (or when memory runs out).
    QImage image() const;

    /// The image halved (rounding down) as often as it stays no smaller than `needed` in both
    /// directions, three times at most: the sizes at which a JPEG decodes fastest. An empty
    /// `needed` gives the whole image.
    QImage imageNoSmallerThan(QSize needed) const;

    /// The size that imageNoSmallerThan gives for an image of `size`.
    static QSize halvedSize(QSize size, QSize needed);

private:
    struct Data;
    std::shared_ptr<const Data> m_data;
};
