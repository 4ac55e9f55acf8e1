#pragma once

#include <QByteArray>

#include <algorithm>

/// Where the body of the HTTP message in `bytes` begins: behind the first empty line, whose line
/// ends are CR LF or, as some cameras write them, LF alone. -1 where there is no empty line yet.
/// The look begins at `from`, which may be where an earlier one has ended.
inline qsizetype headerEnd(const QByteArray& bytes, qsizetype from = 0)
{
    // An empty line that has come in part is seen by the next look.
    const auto start = std::max<qsizetype>(0, from - 3);
    const auto usual = bytes.indexOf("\r\n\r\n", start);
    const auto bare = bytes.indexOf("\n\n", start);
    if (bare >= 0 && (usual < 0 || bare < usual))
        return bare + 2;
    return usual < 0 ? -1 : usual + 4;
}
