#include "directory/DirectoryAnswer.h"

#include <algorithm>
#include <utility>

namespace {

QByteArrayView bodyOf(QByteArrayView answer)
{
    constexpr QByteArrayView headerEnd = "\r\n\r\n";
    const auto end = answer.indexOf(headerEnd);
    if (end >= 0)
        return answer.sliced(end + headerEnd.size());
    // Kept: where no header ends, the body begins with the fourth byte.
    return answer.sliced(std::min<qsizetype>(3, answer.size()));
}

} // namespace

std::optional<QList<CameraRecord>> readDirectoryAnswer(QByteArrayView answer)
{
    const QByteArrayView body = bodyOf(answer);
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
