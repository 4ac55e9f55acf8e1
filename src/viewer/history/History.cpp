#include "viewer/history/History.h"

#include "cameras/CameraKey.h"

#include <utility>

History::History(QObject* parent)
    : QObject(parent)
{
}

void History::Append(const Still& picture, const QString& address, const QString& lastModified,
                     const QString& camera)
{
    add(picture, address + FieldSeparator + lastModified + FieldSeparator, {camera, m_clock()});
}

void History::AppendFile(const Still& picture)
{
    add(picture, FieldSeparator, {});
}

void History::AppendFrame(const Still& picture)
{
    m_ilHis.Add(picture);
    m_origins.append(Origin());
}

/// A movie may have brought more than fits: each picture drives out just one, unless all are too
/// large.
void History::makeRoom(qint64 bytes)
{
    if (Count() >= MaxImages)
        remove(1);
    m_hasGivenUpBytes = false;
    while (Count() > 0 && m_ilHis.heldBytes() + bytes > MaxBytes) {
        remove(1);
        m_hasGivenUpBytes = true;
    }
}

void History::add(const Still& picture, const QString& keyHead, const Origin& origin)
{
    if (m_takesMovie) {
        m_waiting.append({picture, keyHead, origin});
        m_waitingBytes += picture.heldBytes();
        // Those behind it would drive it out.
        while (m_waitingBytes > MaxBytes && m_waiting.size() > 1)
            m_waitingBytes -= m_waiting.takeFirst().picture.heldBytes();
        return;
    }
    makeRoom(picture.heldBytes());
    m_ilHis.Add(picture, keyHead + QString::number(++m_keys));
    m_origins.append(origin);
    m_currentImage = Count();
}

bool History::endMovie()
{
    m_takesMovie = false;
    const auto waiting = std::exchange(m_waiting, {});
    m_waitingBytes = 0;
    for (const Waiting& one : waiting)
        add(one.picture, one.keyHead, one.origin);
    return !waiting.isEmpty();
}

bool History::removeCurrent()
{
    if (m_currentImage < 1 || m_currentImage > Count())
        return false;
    remove(m_currentImage);
    return true;
}

void History::remove(int n)
{
    m_ilHis.Remove(n);
    m_origins.removeAt(n - 1);
}

void History::Clear()
{
    m_ilHis.Clear();
    m_origins.clear();
    m_waiting.clear();
    m_waitingBytes = 0;
}

int History::back()
{
    if (Count() == 0)
        return 0;
    if (m_currentImage <= 1 || m_currentImage > Count())
        m_currentImage = Count();
    else
        --m_currentImage;
    return m_currentImage;
}

int History::forward()
{
    if (Count() == 0)
        return 0;
    if (m_currentImage > Count())
        m_currentImage = Count();
    else
        m_currentImage = m_currentImage == Count() ? 1 : m_currentImage + 1;
    return m_currentImage;
}

std::optional<QString> History::addressOf(int n) const
{
    const QString key = m_ilHis.Key(n);
    const auto end = key.indexOf(FieldSeparator);
    return end < 0 ? std::nullopt : std::optional(key.left(end));
}

QString History::cameraOf(int n) const
{
    return m_origins.value(n - 1).camera;
}

QDateTime History::fetchedAt(int n) const
{
    return m_origins.value(n - 1).fetched;
}

/// A file's key has none: there the second field is the end of the key.
QString History::lastModifiedAt(int n) const
{
    const QString key = m_ilHis.Key(n);
    return key.count(FieldSeparator) < 2 ? QString() : key.section(FieldSeparator, 1, 1);
}

bool History::isOf(int n, const QString& address, const QString& camera) const
{
    const QString known = cameraOf(n);
    return addressOf(n) == address &&
           (known.isEmpty() || camera.isEmpty() || comparableKey(known) == comparableKey(camera));
}

int History::newestOf(const QString& address, const QString& camera) const
{
    int n = Count();
    while (n >= 1 && !isOf(n, address, camera))
        --n;
    return n;
}

QString History::lastModifiedOf(const QString& address, const QString& camera) const
{
    return m_ilHis.Key(newestOf(address, camera)).section(FieldSeparator, 1, 1);
}
