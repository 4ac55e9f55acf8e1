#pragma once

#include <QByteArray>
#include <QImage>

/// A picture as a Windows bitmap file of 24 bits a pixel, transparent parts over white.
///
/// The file is made in the memory that the pixels had: the largest picture takes 200 MB, and a copy
/// of it would pass what a picture may cost. So give it an image that nobody else holds.
class BitmapFile
{
public:
    explicit BitmapFile(QImage image);
    Q_DISABLE_COPY_MOVE(BitmapFile)

    /// The file; as long as this object lives, unless copied. Empty for a null image, or where
    /// memory runs out.
    const QByteArray& bytes() const { return m_bytes; }

private:
    QImage m_pixels;
    QByteArray m_bytes; ///< A view of `m_pixels`, where that has room for all of it.
};
