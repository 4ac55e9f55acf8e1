#include "shared/CameraListLine.h"

#include "shared/CameraKey.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"

namespace {

constexpr char Separator = '\xFF';

/// Takes the next field off `rest`; nothing is left of it after the last one.
QByteArrayView takeField(QByteArrayView& rest, bool& more)
{
    const qsizetype end = rest.indexOf(Separator);
    more = end >= 0;
    const QByteArrayView field = more ? rest.first(end) : rest;
    rest = more ? rest.sliced(end + 1) : QByteArrayView();
    return field;
}

QString fieldText(QByteArrayView field)
{
    return withoutSeparator(fromDisk(field));
}

} // namespace

QList<CameraRecord> readCameraListLine(QByteArrayView line)
{
    QList<CameraRecord> cameras;
    bool more = !line.isEmpty();
    while (more) {
        const QByteArrayView category = takeField(line, more);
        if (!more)
            break;
        const QByteArrayView name = takeField(line, more);
        if (!more)
            break;
        const QByteArrayView key = takeField(line, more);
        cameras.append({fieldText(category), fieldText(name), fieldText(key)});
    }
    return cameras;
}

QByteArray writeCameraListLine(const QList<CameraRecord>& cameras)
{
    QByteArray line;
    for (const CameraRecord& camera : cameras) {
        for (const QString& field : {camera.category, camera.name, camera.key})
            line.append(toDiskField(field)).append(Separator);
    }
    line.chop(line.isEmpty() ? 0 : 1);
    return line;
}

QByteArrayView withoutLineEnd(QByteArrayView content)
{
    if (content.endsWith("\r\n"))
        return content.chopped(2);
    if (content.endsWith('\n') || content.endsWith('\r'))
        return content.chopped(1);
    return content;
}
