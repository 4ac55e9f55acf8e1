#include "platform/CodePage.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <optional>
#include <windows.h>

#include <limits>

namespace {

// With UTF-8 as the ANSI page the old files would have no page left to be read in.
UINT codePage()
{
    const UINT page = GetACP();
    return page == CP_UTF8 ? 1252 : page;
}

// The system counts in int.
bool tooLong(qsizetype size)
{
    return size > std::numeric_limits<int>::max() / 4;
}

} // namespace

QString fromCodePage(QByteArrayView bytes)
{
    if (bytes.isEmpty() || tooLong(bytes.size()))
        return {};
    const int size = static_cast<int>(bytes.size());
    const int needed = MultiByteToWideChar(codePage(), 0, bytes.data(), size, nullptr, 0);
    if (needed <= 0)
        return {};
    QString text(needed, Qt::Uninitialized);
    const int written = MultiByteToWideChar(codePage(), 0, bytes.data(), size,
                                            reinterpret_cast<wchar_t*>(text.data()), needed);
    text.truncate(written);
    return text;
}

std::optional<QByteArray> toCodePage(QStringView text)
{
    if (text.isEmpty())
        return QByteArray();
    if (tooLong(text.size()))
        return std::nullopt;
    const auto* characters = reinterpret_cast<const wchar_t*>(text.utf16());
    const int size = static_cast<int>(text.size());
    BOOL lacksOne = FALSE;
    const int needed = WideCharToMultiByte(codePage(), WC_NO_BEST_FIT_CHARS, characters, size,
                                           nullptr, 0, nullptr, &lacksOne);
    if (needed <= 0 || lacksOne)
        return std::nullopt;
    QByteArray bytes(needed, Qt::Uninitialized);
    const int written = WideCharToMultiByte(codePage(), WC_NO_BEST_FIT_CHARS, characters, size,
                                            bytes.data(), needed, nullptr, &lacksOne);
    if (written != needed || lacksOne)
        return std::nullopt;
    return bytes;
}
