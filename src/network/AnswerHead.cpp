#include "network/AnswerHead.h"

#include "cameras/CameraKey.h"
#include "network/HeaderEnd.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"

#include <QUrl>

namespace {

/// A head is small; what pretends to have more headers than that is not read further.
constexpr qsizetype MostHeaders = 1'000;

} // namespace

AnswerHead::AnswerHead(const QByteArray& answer)
{
    if (!answer.startsWith("HTTP/"))
        return;
    const auto end = headerEnd(answer);
    m_size = end < 0 ? answer.size() : end;
    for (qsizetype start = 0; start < m_size;) {
        const auto found = answer.indexOf('\n', start);
        const auto lineEnd = found < 0 ? m_size : found;
        const QByteArray line = answer.mid(start, lineEnd - start).trimmed();
        const bool isFirst = start == 0;
        start = lineEnd + 1;
        if (isFirst)
            readStatus(line);
        else if (const auto colon = line.indexOf(':'); colon > 0 && m_headers.size() < MostHeaders)
            m_headers.append({line.left(colon).trimmed(), line.mid(colon + 1).trimmed()});
    }
}

void AnswerHead::readStatus(const QByteArray& line)
{
    const auto blank = line.indexOf(' ');
    if (blank < 0)
        return;
    const QByteArray status = line.mid(blank + 1).trimmed();
    m_status = cleanInput(fromDisk(status), false);
    m_code = status.left(3).toInt();
}

QByteArray AnswerHead::value(const QByteArray& name) const
{
    for (const Header& one : m_headers) {
        if (one.name.compare(name, Qt::CaseInsensitive) == 0)
            return one.value;
    }
    return {};
}

std::optional<qint64> AnswerHead::contentLength() const
{
    bool isNumber = false;
    const qint64 length = value("Content-Length").toLongLong(&isNumber);
    return isNumber && length >= 0 ? std::optional(length) : std::nullopt;
}

QString AnswerHead::locationFrom(const QString& address) const
{
    const QString location = cleanInput(fromDisk(value("Location")), false);
    if (location.isEmpty())
        return {};
    const QUrl found = QUrl(address).resolved(QUrl(location));
    const QString text = found.toString(QUrl::FullyEncoded | QUrl::RemoveFragment);
    return hasWebScheme(text) && !found.host().isEmpty() ? text : QString();
}
