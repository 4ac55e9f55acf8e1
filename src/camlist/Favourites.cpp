#include "camlist/Favourites.h"

#include "cameras/CameraKey.h"
#include "cameras/CameraTexts.h"
#include "camlist/MergedLists.h"
#include "settings/Ini.h"
#include "shared/FolderLock.h"
#include "shared/InputText.h"

#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>
#include <limits>
#include <numeric>
#include <optional>

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

/// The numbers below `count` for which there is a name or a key, rising.
QList<qlonglong> numbersThere(const QStringList& keys, qlonglong count)
{
    QList<qlonglong> numbers;
    for (const QString& key : keys) {
        const qsizetype open = key.indexOf(u'[');
        // Whatever stands in the brackets: the key has to be the one of this number.
        const qlonglong number = key.mid(open + 1, key.lastIndexOf(u']') - open - 1).toLongLong();
        if (number >= 0 && number < count &&
            (key == nameKey(number).toLower() || key == urlKey(number).toLower()))
            numbers.append(number);
    }
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    return numbers;
}

/// The favourites in the file; nothing where it says nothing of any.
std::optional<QList<Favourite>> readFavourites(const QString& path)
{
    const QString count = GetFromINI(Section, u"COUNT"_s, path);
    if (count.isEmpty())
        return std::nullopt;
    bool isNumber = false;
    qlonglong announced = count.toLongLong(&isNumber);
    if (!isNumber)
        announced = std::numeric_limits<qlonglong>::max();
    const QStringList keys = KeysInINI(Section, path);
    QList<qlonglong> numbers;
    if (announced > keys.size()) {
        numbers = numbersThere(keys, announced);
    } else if (announced > 0) {
        // Kept: a number for which there is nothing is an entry without a name.
        numbers.resize(announced);
        std::iota(numbers.begin(), numbers.end(), 0);
    }
    QList<Favourite> found;
    found.reserve(numbers.size());
    for (const qlonglong i : numbers)
        found.append(separatorsAway(GetWholeFromINI(Section, nameKey(i), path),
                                    GetWholeFromINI(Section, urlKey(i), path)));
    return found;
}

} // namespace

QString Favourite::shownName() const
{
    return shownLine(name);
}

Favourites::Favourites(QObject* parent)
    : QObject(parent)
    , m_tmrSave(u"tmrSaveFavourites"_s, SaveMs, this)
{
    connect(&m_tmrSave, &Timer::Tick, this, [this] { save(m_path); });
}

void Favourites::add(const QString& name, const QString& key)
{
    const Favourite one = separatorsAway(name, key);
    if (!one.isWhole())
        return;
    // Kept: the first favourite becomes entry 1 and leaves entry 0 hidden and empty. The gap
    // closes with the next start, or when the manager rebuilds the list.
    m_entries.append(one);
    changed();
}

void Favourites::changeKey(const QString& key, const QString& newKey)
{
    const QString wanted = comparableKey(key);
    bool isChanged = false;
    for (Favourite& one : m_entries) {
        if (!one.isWhole() || comparableKey(one.key) != wanted)
            continue;
        one = separatorsAway(one.name, newKey);
        isChanged = true;
    }
    if (isChanged)
        changed();
}

void Favourites::replaceAll(const QList<Favourite>& favourites)
{
    put(favourites);
    changed();
}

void Favourites::put(const QList<Favourite>& favourites)
{
    m_entries.clear();
    m_entries.reserve(favourites.size());
    for (const auto& [name, key] : favourites)
        m_entries.append(separatorsAway(name, key));
    m_firstHidden = m_entries.isEmpty();
    if (m_firstHidden)
        m_entries.append(Favourite());
}

void Favourites::load(const QString& path)
{
    m_path = path;
    if (const auto found = readFavourites(path); found && !found->isEmpty())
        replaceAll(*found);
    m_base = wholeOnes();
    m_tmrSave.setEnabled(false);
}

SaveOutcome Favourites::save(const QString& path)
{
    m_tmrSave.setEnabled(false);
    // Writing lets events be handled, and one of them may be the timer's.
    if (m_isSaving)
        return {};
    const QScopedValueRollback isSaving(m_isSaving, true);
    // Or it may change the entries.
    const QList<Favourite> mine = wholeOnes();
    const FolderLock lock(QFileInfo(path).path());
    RefreshINI(path);
    const auto theirs = readFavourites(path);
    const QList<Favourite> merged = theirs ? mergedFavourites(m_base, mine, *theirs) : mine;
    for (qsizetype i = 0; i < merged.size(); ++i) {
        WriteToINI(Section, nameKey(i), merged[i].name, path);
        WriteToINI(Section, urlKey(i), merged[i].key, path);
    }
    WriteToINI(Section, u"COUNT"_s, QString::number(merged.size()), path);
    SaveOutcome outcome;
    outcome.isDone = FlushINI(&outcome.reason);
    if (!outcome)
        return outcome;
    if (merged != mine) {
        put(mergedFavourites(mine, wholeOnes(), merged));
        emit Changed();
    }
    m_base = merged;
    return outcome;
}

QList<Favourite> Favourites::wholeOnes() const
{
    QList<Favourite> whole;
    for (const Favourite& one : m_entries) {
        if (one.isWhole())
            whole.append(one);
    }
    return whole;
}

void Favourites::changed()
{
    m_tmrSave.setEnabled(!m_path.isEmpty());
    emit Changed();
}
