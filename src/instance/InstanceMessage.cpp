#include "instance/InstanceMessage.h"

#include <QStringDecoder>

QByteArray instanceMessage::encode(Kind kind, const QString& text)
{
    const QByteArray message = static_cast<char>(kind) + text.toUtf8();
    if (message.size() > MaxBytes || message.contains('\0'))
        return {};
    return message + '\0';
}

std::optional<instanceMessage::Message> instanceMessage::decode(QByteArrayView bytes)
{
    if (bytes.isEmpty())
        return std::nullopt;
    const auto kind = static_cast<Kind>(bytes.front());
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = utf8(bytes.sliced(1));
    const bool known = kind == Kind::File || (kind == Kind::Queue && text.isEmpty());
    if (!known || utf8.hasError())
        return std::nullopt;
    return Message{kind, text};
}
