#include "instance/InstanceMessage.h"

QByteArray instanceMessage::encode(Kind kind, const QString& text)
{
    const QByteArray message = static_cast<char>(kind) + text.toUtf8();
    if (message.size() > MaxBytes || message.contains('\0'))
        return {};
    return message + '\0';
}
