#include "directory/DirectoryAnswer.h"

namespace {

constexpr char Separator = '\xFF';
constexpr qsizetype FieldsOfACamera = 3;

QByteArrayView bodyOf(QByteArrayView answer)
{
    constexpr QByteArrayView headerEnd = "\r\n\r\n";
    const auto end = answer.indexOf(headerEnd);
    if (end >= 0)
        return answer.sliced(end + headerEnd.size());
    // Kept: where no header ends, the body begins with the fourth byte.
    return answer.sliced(std::min<qsizetype>(3, answer.size()));
}

QByteArrayView firstCameras(QByteArrayView line, qsizetype most)
{
    qsizetype end = -1;
    for (qsizetype fields = 0; fields < most * FieldsOfACamera; ++fields) {
        end = line.indexOf(Separator, end + 1);
        if (end < 0)
            return line;
    }
    return line.first(end);
}

} // namespace

std::optional<QList<CameraRecord>> readDirectoryAnswer(QByteArrayView answer)
{
    const QByteArrayView body = bodyOf(answer);
    if (body.contains("No Luck090877"))
        return std::nullopt;
    return readCameraListLine(firstCameras(withoutLineEnd(body), MostFoundCameras));
}
