#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// The bytes of the file `path`, `maxBytes` at most. Nothing where there is no such file, it
/// is no ordinary file (a folder, a pipe, a device: none is waited for), it cannot be read to its
/// end, or it is longer than `maxBytes`; a file that is too long is not read at all.
std::optional<QByteArray> readFile(const QString& path, qint64 maxBytes);
