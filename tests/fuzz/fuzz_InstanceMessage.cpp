#include "fuzz/Fuzzing.h"

#include "instance/InstanceMessage.h"

/// Whatever comes from another process is a message or none, and each message reads back.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    if (const auto message = instanceMessage::decode(bytes)) {
        const QByteArray sent = instanceMessage::encode(message->kind, message->text);
        const bool sendable =
            !message->text.contains(QChar()) && bytes.size() <= instanceMessage::MaxBytes;
        REQUIRE(sent.isEmpty() != sendable);
        if (sendable) {
            const auto again = instanceMessage::decode(QByteArrayView(sent).chopped(1));
            REQUIRE(again && again->kind == message->kind && again->text == message->text);
        }
    }
    return 0;
}
