#include "shared/DiskText.h"

#include "platform/CodePage.h"
#include "shared/InputText.h"

#include <QStringDecoder>

QString fromDisk(QByteArrayView field)
{
    if (!field.isValidUtf8())
        return fromCodePage(field);
    // QString::fromUtf8 would swallow a leading U+FEFF.
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
    const QString safe = withoutSeparator(text);
    const QByteArray bytes = toDisk(safe);
    // Other pages than windows-1252 have another letter at 0xFF; UTF-8 never has that byte.
    return bytes.contains('\xFF') ? safe.toUtf8() : bytes;
}

QByteArrayView withoutByteOrderMark(QByteArrayView file)
{
    return file.startsWith("\xEF\xBB\xBF") ? file.sliced(3) : file;
}
