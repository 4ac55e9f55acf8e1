#pragma once

#include <QString>

/// The base address of the camera directory: scheme and host, without a slash at its end, ready for
/// a path that begins with one.
///
/// It is what the user's preferences file `preferencesPath` has under HOST in section DIRECTORY, so
/// that a community can run a directory of its own; without that, PEVORA_DIRECTORY, with which the
/// program was built. A host alone is taken for "http://" and that host. An address with "https://"
/// stays one, though the directory cannot be asked over TLS: better an error than a query that goes
/// out open where the user wanted it secret. The file is only read.
QString directoryAddress(const QString& preferencesPath);
