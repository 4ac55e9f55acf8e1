#include "support/MessageLog.h"

MessageLog::MessageLog()
{
    s_current = this;
    m_before = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext& context, const QString& text) {
            s_current->m_messages.append({QString::fromLatin1(context.category), text});
        });
}

MessageLog::~MessageLog()
{
    qInstallMessageHandler(m_before);
    s_current = nullptr;
}
