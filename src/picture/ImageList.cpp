#include "picture/ImageList.h"

bool ImageList::Add(const Still& picture, const QString& key)
{
    if (!key.isEmpty()) {
        if (m_keys.contains(key))
            return false;
        m_keys.insert(key);
    }
    m_entries.push_back({picture, key});
    return true;
}

void ImageList::Remove(int n)
{
    if (!holds(n))
        return;
    m_keys.remove(at(n).key);
    m_entries.erase(m_entries.begin() + (n - 1));
}

void ImageList::Clear()
{
    m_entries.clear();
    m_keys.clear();
}

Still ImageList::Picture(int n) const
{
    return holds(n) ? at(n).picture : Still();
}

QString ImageList::Key(int n) const
{
    return holds(n) ? at(n).key : QString();
}
