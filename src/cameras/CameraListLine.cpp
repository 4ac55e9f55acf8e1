#include "cameras/CameraListLine.h"

#include "cameras/CameraKey.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"

#include <utility>

namespace {

constexpr char Separator = '\xFF';
constexpr char HeaderByte = '\x01';

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

CameraListReader::CameraListReader(QByteArrayView line)
    : m_rest(line)
    , m_more(!line.isEmpty())
{
}

/// False where there is no field left.
bool CameraListReader::takeField(QByteArrayView& field)
{
    if (!m_more)
        return false;
    const qsizetype end = m_rest.indexOf(Separator);
    m_more = end >= 0;
    field = m_more ? m_rest.first(end) : m_rest;
    m_rest = m_more ? m_rest.sliced(end + 1) : QByteArrayView();
    return true;
}

std::optional<CameraRecord> CameraListReader::next()
{
    QByteArrayView category;
    QByteArrayView name;
    QByteArrayView key;
    if (!takeField(category) || !takeField(name) || !takeField(key))
        return std::nullopt;
    // Most cameras stand beside others of their category, and share its text.
    if (category != m_categoryBytes) {
        m_categoryBytes = category;
        m_category = fieldText(category);
    }
    return CameraRecord{m_category, fieldText(name), keyText(key)};
}

QList<CameraRecord> readCameraListLine(QByteArrayView line)
{
    QList<CameraRecord> cameras;
    CameraListReader reader(line);
    while (auto camera = reader.next())
        cameras.append(std::move(*camera));
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
