#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

/// What instances send each other. A message is its kind, its text in UTF-8, and a NUL; a
/// connection carries one.
namespace instanceMessage {

enum class Kind : char {
    File = 'F', ///< a file to open; answered by Acknowledged
    Queue = 'L' ///< another instance, which waits for the server's end; never answered
};

/// The answer to a file: the server has it and the client can go.
constexpr char Acknowledged = 'T';

/// The most bytes of a message, with its kind and without its NUL: no path is that long.
constexpr qsizetype MaxBytes = 32'000;

/// The message as it is sent; empty where it would be too long or `text` holds a NUL.
QByteArray encode(Kind kind, const QString& text = {});

struct Message
{
    Kind kind;
    QString text;
};

/// The message that came as `bytes`, without its NUL. Nothing where it has no such kind, is no
/// UTF-8, or is of kind Queue with a text.
std::optional<Message> decode(QByteArrayView bytes);

} // namespace instanceMessage
