#include "directory/DirectoryAnswer.h"

#include "network/AnswerHead.h"
#include "network/BodyFraming.h"
#include "network/HeaderEnd.h"
#include "shared/DiskText.h"

#include <utility>

namespace {

using Kind = DirectoryFault::Kind;

constexpr QByteArrayView HeadStart = "HTTP/";
constexpr int Ok = 200;
constexpr qsizetype LongestStatus = 80;

/// Where the body begins; -1 where no header ends.
qsizetype bodyStart(const QByteArray& answer, const AnswerHead& head)
{
    if (!head.isNull())
        return headerEnd(answer);
    constexpr QByteArrayView end = "\r\n\r\n";
    const auto found = answer.indexOf(end);
    return found < 0 ? -1 : found + end.size();
}

} // namespace

DirectoryAnswer::DirectoryAnswer(const QByteArray& bytes)
{
    const AnswerHead head(bytes);
    const auto start = bodyStart(bytes, head);
    // Kept: where no header ends, the body begins with the fourth byte.
    m_body = bytes.mid(start < 0 ? 3 : start);
    BodyFraming framing;
    framing.begin(head);
    bool isWhole = m_body.size() >= head.contentLength().value_or(0);
    if (start >= 0 && framing.isChunked()) {
        isWhole = framing.isWhole(m_body);
        m_body = framing.picture(m_body);
    }
    if (bytes.isEmpty())
        m_fault = {Kind::Nothing};
    else if (head.code() != 0 && head.code() != Ok)
        m_fault = {Kind::OtherStatus, head.status().left(LongestStatus)};
    else if ((start < 0 && !head.isNull()) || !isWhole || HeadStart.startsWith(bytes))
        m_fault = {Kind::Incomplete};
}

std::optional<QList<CameraRecord>> DirectoryAnswer::cameras() const
{
    if (m_body.contains("No Luck090877"))
        return std::nullopt;
    QList<CameraRecord> cameras;
    CameraListReader reader(withoutLineEnd(withoutByteOrderMark(m_body)));
    while (cameras.size() < MostFoundCameras) {
        auto camera = reader.next();
        if (!camera)
            break;
        cameras.append(std::move(*camera));
    }
    return cameras;
}
