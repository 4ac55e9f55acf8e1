#include "camlist/Favourites.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"
#include "settings/Ini.h"
#include "shared/InputText.h"

#include <algorithm>

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

/// A favourite as the list keeps it.
Favourite separatorsAway(const QString& name, const QString& key)
{
    return {withoutSeparator(name), withoutSeparator(key)};
}

} // namespace

QString Favourite::shownName() const
{
    return shownLine(name);
}

Favourites::Favourites(QObject* parent)
    : QObject(parent)
{
}

void Favourites::add(const QString& name, const QString& key)
{
    const Favourite one = separatorsAway(name, key);
    if (!one.isWhole())
        return;
    // Kept: the first favourite becomes entry 1 and leaves entry 0 hidden and empty. The gap
    // closes with the next start, or when the manager rebuilds the list.
    m_entries.append(one);
    emit Changed();
}

void Favourites::changeKey(const QString& key, const QString& newKey)
{
    const QString wanted = comparableKey(key);
    bool changed = false;
    for (Favourite& one : m_entries) {
        if (!one.isWhole() || comparableKey(one.key) != wanted)
            continue;
        one = separatorsAway(one.name, newKey);
        changed = true;
    }
    if (changed)
        emit Changed();
}

void Favourites::replaceAll(const QList<Favourite>& favourites)
{
    m_entries.clear();
    m_entries.reserve(favourites.size());
    for (const auto& [name, key] : favourites)
        m_entries.append(separatorsAway(name, key));
    m_firstHidden = m_entries.isEmpty();
    if (m_firstHidden)
        m_entries.append(Favourite());
    emit Changed();
}

void Favourites::load(const QString& path)
{
    const qsizetype announced = GetFromINI(Section, u"COUNT"_s, path).toLongLong();
    const qsizetype count = std::min<qsizetype>(announced, CountKeysInINI(Section, path));
    if (count <= 0)
        return;
    QList<Favourite> found;
    found.reserve(count);
    for (qsizetype i = 0; i < count; ++i)
        found.append({GetFromINI(Section, nameKey(i), path), GetFromINI(Section, urlKey(i), path)});
    replaceAll(found);
}

void Favourites::save(const QString& path) const
{
    // Writing lets events be handled, and one of them may change the entries.
    const QList<Favourite> entries = m_entries;
    qsizetype written = 0;
    for (const Favourite& one : entries) {
        if (!one.isWhole())
            continue;
        WriteToINI(Section, nameKey(written), one.name, path);
        WriteToINI(Section, urlKey(written), one.key, path);
        ++written;
    }
    WriteToINI(Section, u"COUNT"_s, QString::number(written), path);
}
