#include "camlist/Favourites.h"

#include "settings/Ini.h"

using namespace Qt::Literals::StringLiterals;

namespace {

const QString Section = u"FAVORITES"_s;

QString nameKey(qsizetype i)
{
    return u"NAME[%1]"_s.arg(i);
}

QString urlKey(qsizetype i)
{
    return u"URL[%1]"_s.arg(i);
}

} // namespace

Favourites::Favourites(QObject* parent)
    : QObject(parent)
{
}

void Favourites::load(const QString& path)
{
    const qsizetype announced = GetFromINI(Section, u"COUNT"_s, path).toLongLong();
    const qsizetype count = std::min<qsizetype>(announced, CountKeysInINI(Section, path));
    if (count <= 0)
        return;
    m_entries.clear();
    m_entries.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        m_entries.append(
            {GetFromINI(Section, nameKey(i), path), GetFromINI(Section, urlKey(i), path)});
    m_firstHidden = false;
    emit Changed();
}

void Favourites::save(const QString& path) const
{
    qsizetype written = 0;
    for (const auto& [name, key] : m_entries) {
        if (name.isEmpty() || key.isEmpty())
            continue;
        WriteToINI(Section, nameKey(written), name, path);
        WriteToINI(Section, urlKey(written), key, path);
        ++written;
    }
    WriteToINI(Section, u"COUNT"_s, QString::number(written), path);
}
