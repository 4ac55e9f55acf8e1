#include "picture/ImageList.h"

#include <algorithm>

bool ImageList::Add(const Still& picture, const QString& key)
{
    if (!key.isEmpty()) {
        if (m_keys.contains(key))
            return false;
        m_keys.insert(key);
    }
    m_heldBytes += picture.heldBytes();
    m_entries.push_back({picture, key, ++m_lastSerial});
    return true;
}

void ImageList::Remove(int n)
{
    if (!holds(n))
        return;
    m_keys.remove(at(n).key);
    m_heldBytes -= at(n).picture.heldBytes();
    m_entries.erase(m_entries.begin() + (n - 1));
}

void ImageList::Clear()
{
    ++m_timesCleared;
    m_entries.clear();
    m_keys.clear();
    m_heldBytes = 0;
}

Still ImageList::Picture(int n) const
{
    return holds(n) ? at(n).picture : Still();
}

QString ImageList::Key(int n) const
{
    return holds(n) ? at(n).key : QString();
}

quint64 ImageList::Serial(int n) const
{
    return holds(n) ? at(n).serial : 0;
}

int ImageList::firstAfter(quint64 serial) const
{
    const auto found =
        std::upper_bound(m_entries.begin(), m_entries.end(), serial,
                         [](quint64 wanted, const Entry& entry) { return wanted < entry.serial; });
    return found == m_entries.end() ? 0 : static_cast<int>(found - m_entries.begin()) + 1;
}
