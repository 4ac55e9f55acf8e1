#pragma once

#include <QByteArray>
#include <QString>

/// What becomes of an older, longer file's bytes behind the new ones.
enum class OldEnd {
    Cut,
    Stays,
};

/// Writes one frame of a movie into the temporary file `path`, over what it holds from its
/// beginning. A failure costs only that file and is not reported. Nothing is written through a
/// path that is there already and is no ordinary file: a folder, a link, a pipe, a device.
void writeFrameFile(const QString& path, const QByteArray& frame, OldEnd oldEnd);
