#pragma once

#include <QByteArrayView>
#include <QImage>
#include <QSize>

#include <optional>

/// The pixels of the JPEG `bytes` at `size`, which is that of the picture, or its half, quarter or
/// eighth: those of Qt's reader, decoded straight to where the screen wants them, and nothing
/// beside them (no resolution, no colour profile). That is for looking at; what is kept or saved
/// is read by Qt.
///
/// A null image where the decoder fails, or meets more scans than `mostScans` (1 or more). Each
/// scan is work on all of the picture, so this is what bounds the work: no clock does. Nothing for
/// another size, and for a picture of another kind than three colours or greys: Qt's reader knows
/// what to do with it, and meets no more scans either. The end of a truncated file is grey. What is
/// too large was refused before this.
///
/// TurboJPEG's own interface (2.1) would be a third of the code and as fast (1.00 to 1.02 times the
/// processor time, from 640 x 480 to 3840 x 2160 pixels, whole and at a quarter). But it refuses
/// pictures whose colours are subsampled in an unusual way (three to one, four lines to one, each
/// colour another way), and a fatal error after a warning passes for the warning.
std::optional<QImage> jpegPixels(QByteArrayView bytes, QSize size, int mostScans);
