#pragma once

#include "shared/SaveOutcome.h"
#include "shared/Timer.h"

#include <QList>
#include <QObject>
#include <QString>

/// A camera that is opened straight from the menu.
struct Favourite
{
    QString name;
    /// The whole camera key, extra header included.
    QString key;

    /// Whether it can be kept: it has both a name and a key.
    bool isWhole() const { return !name.isEmpty() && !key.isEmpty(); }

    bool operator==(const Favourite&) const = default;

    /// The name as one line of a menu or list: line breaks and control characters are blanks.
    QString shownName() const;
};

/// The user's favourites, in menu order. Entry 0 always exists: while no favourite uses it, it is
/// empty and hidden. Menus and windows mirror this object. No name or key in it holds "ÿ", which
/// separates the fields of a record: it becomes y with a combining diaeresis on the way in.
///
/// Once they were loaded, a change is in the file a few seconds after it was made (timer
/// "tmrSaveFavourites"). What another instance of the program changed there meanwhile is merged in
/// with every save, by name and key (camlist/MergedLists.h), and nothing of it is lost.
class Favourites : public QObject
{
    Q_OBJECT

public:
    explicit Favourites(QObject* parent = nullptr);

    const QList<Favourite>& entries() const { return m_entries; }

    /// Entry 0 alone can be hidden.
    bool isHidden(qsizetype index) const { return index == 0 && m_firstHidden; }

    /// Adds an entry behind the last one, whether or not there is one like it; nothing where
    /// `name` or `key` is empty.
    void add(const QString& name, const QString& key);

    /// Gives each favourite of `key` the key `newKey`. "http://" goes without saying.
    void changeKey(const QString& key, const QString& newKey);

    /// Puts `favourites` in the place of all entries, from entry 0 on. Without any, entry 0 is
    /// empty and hidden again.
    void replaceAll(const QList<Favourite>& favourites);

    static constexpr int SaveMs = 3'000;

    /// Takes what the section FAVORITES of the ini file at `path` holds, names and keys of any
    /// length; it is the file of the timer from here on. A COUNT that is greater than what the
    /// file holds, or is no number, takes every favourite below it that is there, and makes no
    /// entries out of nothing.
    void load(const QString& path);

    /// Makes the section hold the entries that have both a name and a key, without gaps, and their
    /// COUNT last, and puts the file on the disk. Where another instance changed the section since
    /// it was loaded or saved here, both are merged, and the entries become what is in the file; a
    /// section that is gone is no list of removals. Entries that nobody changed here remove and
    /// bring back nothing. Pairs of an earlier, longer list stay in the file; COUNT alone bounds
    /// what is read back. What is done to the entries meanwhile is not written.
    SaveOutcome save(const QString& path);

signals:
    void Changed();

private:
    QList<Favourite> wholeOnes() const;
    void put(const QList<Favourite>& favourites);
    void changed();

    QList<Favourite> m_entries{{}};
    bool m_firstHidden = true;
    /// What was in the file when it was last read or written.
    QList<Favourite> m_base;
    QString m_path;
    Timer m_tmrSave;
    bool m_isSaving = false;
};
