#include "widgets/FileFilter.h"

QStringList fileFilter::toNameFilters(const QString& filter)
{
    const QStringList fields = filter.split(u'|');
    QStringList filters;
    for (qsizetype i = 0; i + 1 < fields.size(); i += 2) {
        QString patterns = fields[i + 1];
        if (!patterns.isEmpty())
            filters.append(u"%1(%2)"_s.arg(fields[i], patterns.replace(u';', u' ')));
    }
    return filters;
}
