#include "widgets/FirstPaint.h"

#include <QEvent>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int PatienceMs = 2'000;

} // namespace

FirstPaint::FirstPaint(QWidget& window)
    : QObject(&window)
    , m_tmrFirstPaint(u"tmrFirstPaint"_s, PatienceMs, this)
{
    window.installEventFilter(this);
    connect(&m_tmrFirstPaint, &Timer::Tick, this, &FirstPaint::end);
    m_tmrFirstPaint.setEnabled(true);
}

bool FirstPaint::eventFilter(QObject* watched, QEvent* event)
{
    // Queued: the window's children are painted after it.
    if (event->type() == QEvent::Paint)
        QMetaObject::invokeMethod(this, &FirstPaint::end, Qt::QueuedConnection);
    return QObject::eventFilter(watched, event);
}

void FirstPaint::end()
{
    if (std::exchange(m_over, true))
        return;
    m_tmrFirstPaint.setEnabled(false);
    parent()->removeEventFilter(this);
    emit Over();
}
