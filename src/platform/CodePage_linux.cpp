#include "platform/CodePage.h"

#include <algorithm>
#include <array>
#include <optional>

namespace {

// The characters of the bytes 0x80 to 0x9F; every other byte is the character of its number.
// (The index windows-1252 of the Encoding Standard.)
constexpr std::array<char16_t, 32> UpperHalf = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, //
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F, //
    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014, //
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

} // namespace

QString fromCodePage(QByteArrayView bytes)
{
    QString text = QString::fromLatin1(bytes);
    for (QChar& character : text) {
        if (character.unicode() >= 0x80 && character.unicode() <= 0x9F)
            character = UpperHalf[character.unicode() - 0x80u];
    }
    return text;
}

std::optional<QByteArray> toCodePage(QStringView text)
{
    QByteArray bytes;
    bytes.reserve(text.size());
    for (const QChar character : text) {
        char16_t byte = character.unicode();
        if (byte > 0xFF || (byte >= 0x80 && byte <= 0x9F)) {
            const auto found = std::find(UpperHalf.begin(), UpperHalf.end(), byte);
            if (found == UpperHalf.end())
                return std::nullopt;
            byte = static_cast<char16_t>(0x80 + (found - UpperHalf.begin()));
        }
        bytes.append(static_cast<char>(byte));
    }
    return bytes;
}
