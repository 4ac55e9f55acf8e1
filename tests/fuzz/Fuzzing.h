#pragma once

// What the fuzzers share. Each is a program of its own around one function, which libFuzzer calls
// again and again with bytes that it changes; it must neither crash, nor take long, nor break a
// promise that is checked by REQUIRE.

#include <QByteArray>
#include <QDebug>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

/// Ends the program where `promise` is broken: libFuzzer keeps the input and says where it is.
#define REQUIRE(promise)                                                                           \
    do {                                                                                           \
        if (!(promise)) {                                                                          \
            qCritical("%s:%d: broken: %s", __FILE__, __LINE__, #promise);                          \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

namespace fuzzing {

/// All that is left of the input.
inline QByteArray restOf(FuzzedDataProvider& input)
{
    return QByteArray::fromStdString(input.ConsumeRemainingBytesAsString());
}

/// A text of at most `most` UTF-16 units; with halves of surrogate pairs, which no text on disk
/// has.
inline QString brokenTextFrom(FuzzedDataProvider& input, std::size_t most)
{
    QString text;
    const auto length = input.ConsumeIntegralInRange<std::size_t>(0, most);
    for (std::size_t i = 0; i < length && input.remaining_bytes() > 0; ++i) {
        // Most of what is odd is below 256.
        const bool wide = input.ConsumeIntegral<quint8>() > 200;
        text += QChar(wide ? input.ConsumeIntegral<quint16>()
                           : quint16(input.ConsumeIntegral<quint8>()));
    }
    return text;
}

/// The same, of whole characters.
inline QString textFrom(FuzzedDataProvider& input, std::size_t most)
{
    return QString::fromUtf8(brokenTextFrom(input, most).toUtf8());
}

} // namespace fuzzing
