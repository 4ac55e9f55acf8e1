#include "shared/DiskText.h"

#include "platform/CodePage.h"
#include "shared/InputText.h"

#include <QStringDecoder>

#include <optional>

namespace {

bool isPlain(const QString& text)
{
    // Without a way out of the loop, which the compiler then does for many characters at a time.
    char16_t bits = 0;
    for (const QChar character : text)
        bits |= character.unicode();
    return bits < 0x80;
}

} // namespace

QString fromDisk(QByteArrayView field)
{
    if (!field.isValidUtf8())
        return fromCodePage(field);
    // QString::fromUtf8, which is faster, would swallow a leading U+FEFF.
    if (withoutByteOrderMark(field).size() == field.size())
        return QString::fromUtf8(field);
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    return decoder(field);
}

QByteArray toDisk(const QString& text)
{
    if (const std::optional<QByteArray> bytes = toCodePage(text)) {
        if (fromDisk(*bytes) == text)
            return *bytes;
    }
    return text.toUtf8();
}

QByteArray toDiskField(const QString& text)
{
    // Nearly every field of a list of a hundred thousand cameras is plain.
    if (isPlain(text))
        return text.toLatin1();
    const QString safe = withoutSeparator(text);
    const QByteArray bytes = toDisk(safe);
    // Other pages than windows-1252 have another letter at 0xFF; UTF-8 never has that byte.
    return bytes.contains('\xFF') ? safe.toUtf8() : bytes;
}

QByteArrayView withoutByteOrderMark(QByteArrayView file)
{
    return file.startsWith("\xEF\xBB\xBF") ? file.sliced(3) : file;
}
