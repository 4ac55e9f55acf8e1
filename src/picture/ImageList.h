#pragma once

#include "picture/Still.h"

#include <QSet>
#include <QString>

#include <deque>

/// An ordered list of pictures, numbered from 1, each with an optional key that no other entry
/// bears. Holds values only; nobody is told of changes.
class ImageList
{
public:
    int Count() const { return static_cast<int>(m_entries.size()); }

    /// Appends at the end. False, and nothing is added, where another entry has `key` already;
    /// an empty key is no key.
    bool Add(const Still& picture, const QString& key = {});

    /// Removes entry `n`; a number outside 1..Count is ignored.
    void Remove(int n);

    void Clear();

    /// Picture and key of entry `n`; null and empty outside 1..Count.
    Still Picture(int n) const;
    QString Key(int n) const;

    /// What all pictures hold in memory.
    qint64 heldBytes() const { return m_heldBytes; }

    /// For whoever walks the list while it changes. Each entry has a serial number, greater than
    /// that of any entry before it and never given again; 0 outside 1..Count.
    quint64 Serial(int n) const;
    /// The number of the first entry whose serial is greater than `serial`; 0 where there is none.
    int firstAfter(quint64 serial) const;
    /// How often the list has been cleared.
    int timesCleared() const { return m_timesCleared; }

private:
    struct Entry
    {
        Still picture;
        QString key;
        quint64 serial = 0;
    };

    bool holds(int n) const { return n >= 1 && n <= Count(); }
    const Entry& at(int n) const { return m_entries[static_cast<std::size_t>(n) - 1]; }

    /// Mostly the first ones leave.
    std::deque<Entry> m_entries;
    QSet<QString> m_keys;
    qint64 m_heldBytes = 0;
    quint64 m_lastSerial = 0;
    int m_timesCleared = 0;
};
