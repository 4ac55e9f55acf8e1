#include "viewer/OfferedName.h"

#include <QCoreApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

/// File systems take 255 bytes; time and ending need some.
constexpr qsizetype LongestInBytes = 200;

bool mayNotBeInFileName(QChar c)
{
    return c.category() == QChar::Other_Control || u"/\\:*?\"<>|"_s.contains(c);
}

} // namespace

QString offeredName(const QString& camera, const QDateTime& time)
{
    QString name = camera.left(LongestInBytes).trimmed();
    if (name.isEmpty())
        name = QCoreApplication::translate("OfferedName", "Image");
    for (QChar& c : name) {
        if (mayNotBeInFileName(c))
            c = u'_';
    }
    // The file would be hidden.
    if (name.startsWith(u'.'))
        name[0] = u'_';
    while (name.toUtf8().size() > LongestInBytes)
        name.chop(name.size() > 1 && name.back().isLowSurrogate() ? 2 : 1);
    return name + u' ' + time.toLocalTime().toString(u"yyyy-MM-dd HH-mm-ss"_s);
}
