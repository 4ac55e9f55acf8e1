#include "directory/DirectoryAnswer.h"

#include "network/AnswerHead.h"
#include "network/BodyFraming.h"
#include "network/HeaderEnd.h"

#include <algorithm>
#include <utility>

namespace {

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

QByteArray bodyOf(const QByteArray& answer)
{
    const AnswerHead head(answer);
    const auto start = bodyStart(answer, head);
    // Kept: where no header ends, the body begins with the fourth byte.
    if (start < 0)
        return answer.mid(3);
    BodyFraming framing;
    framing.begin(head);
    const QByteArray body = answer.mid(start);
    return framing.isChunked() ? framing.picture(body) : body;
}

bool isWhole(const QByteArray& answer, const AnswerHead& head)
{
    if (head.isNull())
        return true;
    const auto start = bodyStart(answer, head);
    if (start < 0)
        return false;
    const QByteArray body = answer.mid(start);
    BodyFraming framing;
    framing.begin(head);
    if (framing.isChunked())
        return framing.isWhole(body);
    return body.size() >= head.contentLength().value_or(0);
}

} // namespace

std::optional<QList<CameraRecord>> readDirectoryAnswer(const QByteArray& answer)
{
    const QByteArray body = bodyOf(answer);
    if (body.contains("No Luck090877"))
        return std::nullopt;
    QList<CameraRecord> cameras;
    CameraListReader reader(withoutLineEnd(body));
    while (cameras.size() < MostFoundCameras) {
        auto camera = reader.next();
        if (!camera)
            break;
        cameras.append(std::move(*camera));
    }
    return cameras;
}

std::optional<DirectoryFault> faultOfDirectoryAnswer(const QByteArray& answer)
{
    if (answer.isEmpty())
        return DirectoryFault{DirectoryFault::Kind::Nothing};
    const AnswerHead head(answer);
    if (head.code() != 0 && head.code() != Ok)
        return DirectoryFault{DirectoryFault::Kind::OtherStatus, head.status().left(LongestStatus)};
    if (!isWhole(answer, head))
        return DirectoryFault{DirectoryFault::Kind::Incomplete};
    return std::nullopt;
}
