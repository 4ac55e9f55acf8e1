#include "viewer/History.h"

#include "shared/CameraKey.h"

#include <QRandomGenerator>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A random number in [0, below), as the shortest text that keeps seven significant digits.
QString randomText(QRandomGenerator& generator, double below)
{
    return QString::number(generator.generateDouble() * below, 'g', 7);
}

} // namespace

History::History(QObject* parent)
    : QObject(parent)
{
}

void History::Append(const Still& picture, const QString& address, const QString& lastModified)
{
    if (m_ilHis.Count() >= MaxImages) {
        m_ilHis.Remove(1);
        emit OldestRemoved();
    }
    const QString head = address + FieldSeparator + lastModified + FieldSeparator;
    QRandomGenerator generator(static_cast<quint32>(m_clock().toMSecsSinceEpoch()));
    // Two keys within one tick of the clock draw the same digits: draw on until one is new.
    while (
        !m_ilHis.Add(picture, head + randomText(generator, 32000) + randomText(generator, 200))) {
    }
    m_currentImage = m_ilHis.Count();
}

QString History::lastModifiedOf(const QString& address) const
{
    for (int n = m_ilHis.Count(); n >= 1; --n) {
        const QString key = m_ilHis.Key(n);
        const auto first = key.indexOf(FieldSeparator);
        if (first < 0 || QStringView(key).left(first) != address)
            continue;
        const auto second = key.indexOf(FieldSeparator, first + 1);
        return key.mid(first + 1, second < 0 ? -1 : second - first - 1);
    }
    return {};
}
