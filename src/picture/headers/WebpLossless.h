#pragma once

#include <QByteArrayView>
#include <QSize>

#include <optional>

/// How many blocks of a losslessly coded WebP may have prefix codes of their own; 0 where there
/// are no such blocks. Their codes cost a decoder far more than their pixels, and take next to no
/// bits: it is what keeps a hundred kilobytes from costing a second.
///
/// `data` is the stream of a VP8L chunk behind its header, or of a compressed ALPH chunk, and
/// `size` that of the picture. Only what stands before the blocks is read, and of the small images
/// in it (which the transforms have) only how long they are. Nothing where it errs or ends there.
std::optional<qint64> losslessBlocks(QByteArrayView data, QSize size);
