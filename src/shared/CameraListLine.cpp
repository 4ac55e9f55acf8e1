#include "shared/CameraListLine.h"

#include "shared/CameraKey.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"

namespace {

constexpr char Separator = '\xFF';
constexpr char HeaderByte = '\x01';

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

QString keyText(QByteArrayView key)
{
    const qsizetype mark = key.indexOf(HeaderByte);
    if (mark < 0)
        return fieldText(key);
    return fieldText(key.first(mark)) + HeaderMark + fieldText(key.sliced(mark + 1));
}

QByteArray keyBytes(const QString& key)
{
    const qsizetype mark = key.indexOf(HeaderMark);
    if (mark < 0)
        return toDiskField(key);
    return toDiskField(key.first(mark)) + HeaderByte + toDiskField(key.sliced(mark + 1));
}

} // namespace

QList<CameraRecord> readCameraListLine(QByteArrayView line)
{
    QList<CameraRecord> cameras;
    cameras.reserve((line.count(Separator) + 1) / 3);
    bool more = !line.isEmpty();
    while (more) {
        const QByteArrayView category = takeField(line, more);
        if (!more)
            break;
        const QByteArrayView name = takeField(line, more);
        if (!more)
            break;
        const QByteArrayView key = takeField(line, more);
        cameras.append({fieldText(category), fieldText(name), keyText(key)});
    }
    return cameras;
}

QByteArray writeCameraListLine(const QList<CameraRecord>& cameras)
{
    QByteArray line;
    for (const CameraRecord& camera : cameras) {
        line.append(toDiskField(camera.category)).append(Separator);
        line.append(toDiskField(camera.name)).append(Separator);
        line.append(keyBytes(camera.key)).append(Separator);
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
