#include "camlist/DefaultCameras.h"

#include "cameras/CameraKey.h"

#include <QFile>
#include <QStringList>

using namespace Qt::Literals::StringLiterals;

/// A resource in a static library is there only once somebody asks for it by this name, which the
/// macro can do outside of every namespace alone.
static void registerResources()
{
    Q_INIT_RESOURCE(pevora);
}

QList<CameraRecord> defaultCameras()
{
    registerResources();
    QFile file(u":/default-cameras.tsv"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};

    QList<CameraRecord> cameras;
    const QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    // Behind the names of the columns.
    for (const QString& line : lines.mid(1)) {
        const QStringList columns = line.split(u'\t');
        cameras.append({columns.value(0), columns.value(1), withoutHttpScheme(columns.value(2))});
    }
    return cameras;
}
