#pragma once

#include <QList>
#include <QString>

#include <utility>

/// What Qt writes to the console, from the making of this object to its end, which is when the
/// handler of before comes back. One at a time.
class MessageLog
{
public:
    MessageLog();
    ~MessageLog();
    MessageLog(const MessageLog&) = delete;
    MessageLog& operator=(const MessageLog&) = delete;

    /// Category and text of each message.
    const QList<std::pair<QString, QString>>& messages() const { return m_messages; }

private:
    static inline MessageLog* s_current = nullptr;
    QtMessageHandler m_before = nullptr;
    QList<std::pair<QString, QString>> m_messages;
};
