#include "viewer/history/History.h"

#include "cameras/CameraKey.h"

#include <QRandomGenerator>

namespace {

/// `number` as the shortest text that keeps seven significant digits, as single precision has.
QString singleText(double number)
{
    constexpr int significantDigits = 7;
    return QString::number(number, 'g', significantDigits);
}

} // namespace

History::History(QObject* parent)
    : QObject(parent)
{
}

void History::Append(const Still& picture, const QString& address, const QString& lastModified,
                     const QString& camera)
{
    if (makeRoom())
        emit OldestRemoved();
    const QString head = address + FieldSeparator + lastModified + FieldSeparator;
    add(picture, camera, [&](QRandomGenerator& random) {
        return head + singleText(random.generateDouble() * 32000) +
               singleText(random.generateDouble() * 200);
    });
}

void History::AppendFile(const Still& picture)
{
    makeRoom();
    const double secondsOfDay = m_clock().time().msecsSinceStartOfDay() / 1000.0;
    add(picture, {}, [&](QRandomGenerator& random) {
        return FieldSeparator + singleText(random.generateDouble() * 32000) +
               singleText(secondsOfDay * random.generateDouble()) +
               singleText(random.generateDouble() * 32000);
    });
}

void History::AppendFrame(const Still& picture)
{
    m_ilHis.Add(picture);
    m_cameras.append(QString());
}

/// A movie may have brought more than fits: each picture drives out just one.
bool History::makeRoom()
{
    if (Count() < MaxImages)
        return false;
    remove(1);
    return true;
}

/// Two keys within one tick of the clock draw the same digits: draws on until one is new.
template<typename MakeKey>
void History::add(const Still& picture, const QString& camera, MakeKey makeKey)
{
    QRandomGenerator random(static_cast<quint32>(m_clock().toMSecsSinceEpoch()));
    while (!m_ilHis.Add(picture, makeKey(random))) {
    }
    m_cameras.append(camera);
    m_currentImage = Count();
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
    m_cameras.removeAt(n - 1);
}

void History::Clear()
{
    m_ilHis.Clear();
    m_cameras.clear();
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
    return m_cameras.value(n - 1);
}

int History::newestOf(const QString& address) const
{
    int n = Count();
    while (n >= 1 && addressOf(n) != address)
        --n;
    return n;
}

QString History::lastModifiedOf(const QString& address) const
{
    return m_ilHis.Key(newestOf(address)).section(FieldSeparator, 1, 1);
}
