#include "shell/WindowPreferences.h"

#include "camlist/CamList.h"
#include "settings/Ini.h"
#include "settings/TruthValue.h"
#include "shell/parts/MainArea.h"
#include "viewer/RefreshTimer.h"
#include "viewer/WebCam.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>
#include <QWindow>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString PlaceSection = u"WINDOW"_s;
/// A longer value would not be read whole.
constexpr qsizetype LongestValue = 749;
/// What a window manager puts around a window: its frame, and the caption above.
constexpr QMargins FramePx(4, 28, 4, 4);

/// Writes `value` under `key`; none where it is empty or cannot be read back.
void keep(const QString& key, const QString& value, const QString& path)
{
    if (value.isEmpty() || value.size() > LongestValue)
        RemoveFromINI(PlaceSection, key, path);
    else
        WriteToINI(PlaceSection, key, value, path);
}

/// Four numbers with a blank between; invalid where they are none.
QRect readPlace(const QString& text)
{
    const QStringList parts = text.split(u' ');
    QList<int> numbers;
    for (const QString& part : parts) {
        bool isNumber = false;
        numbers << part.toInt(&isNumber);
        if (!isNumber || std::abs(numbers.last()) > 1'000'000)
            return {};
    }
    return numbers.size() == 4 ? QRect(numbers[0], numbers[1], numbers[2], numbers[3]) : QRect();
}

int area(const QRect& rect)
{
    return rect.isEmpty() ? 0 : rect.width() * rect.height();
}

} // namespace

WindowPreferences::WindowPreferences(QWidget& window, MainArea& area, CamList& list)
    : QObject(&window)
    , m_window(window)
    , m_area(area)
    , m_cam(*area.cam())
    , m_list(list)
    , m_defaultSize(window.size())
    , m_defaultListWidth(area.listWidth())
    , m_normal(window.geometry())
{
    window.installEventFilter(this);
}

QRect WindowPreferences::within(const QRect& place, const QList<QRect>& screens)
{
    QRect room;
    for (const QRect& screen : screens) {
        if (area(screen & place) > area(room & place))
            room = screen;
    }
    if (area(room & place) == 0)
        return {};
    // As the window manager let it be, frame and all.
    if (room.contains(place))
        return place;
    room = room.marginsRemoved(FramePx);
    QRect inside(place.topLeft(), place.size().boundedTo(room.size()));
    inside.moveLeft(std::clamp(inside.left(), room.left(), room.right() + 1 - inside.width()));
    inside.moveTop(std::clamp(inside.top(), room.top(), room.bottom() + 1 - inside.height()));
    return inside;
}

void WindowPreferences::load(const QString& path)
{
    const auto read = [&path](const QString& key) { return GetFromINI(PlaceSection, key, path); };
    QList<QRect> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens << screen->availableGeometry();
    const QRect place = within(readPlace(read(u"PLACE"_s)), screens);
    m_isRemembered = place.isValid();
    if (m_isRemembered)
        m_window.setGeometry(place);
    m_normal = m_window.geometry();
    m_isMaximised = readTruthValue(read(u"MAXIMISED"_s)).value_or(false);
    if (m_isMaximised)
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);

    bool isNumber = false;
    const int listWidth = read(u"LISTWIDTH"_s).toInt(&isNumber);
    if (isNumber && listWidth > 0)
        m_area.setListWidth(listWidth);
    const short interval = read(u"INTERVAL"_s).toShort(&isNumber);
    if (isNumber)
        m_cam.setInterval(interval);
    m_cam.setLastFolder(read(u"FOLDER"_s));
    m_camera = read(u"CAMERA"_s);
    m_list.select(m_camera);
}

void WindowPreferences::save(const QString& path) const
{
    const auto unless = [](int byDefault, int value) {
        return value == byDefault ? QString() : QString::number(value);
    };
    keep(u"PLACE"_s, place(), path);
    keep(u"MAXIMISED"_s, m_isMaximised ? truthValueText(true) : QString(), path);
    keep(u"LISTWIDTH"_s, unless(m_defaultListWidth, m_area.listWidth()), path);
    keep(u"INTERVAL"_s, unless(RefreshTimer::DefaultIntervalSeconds, m_cam.Interval()), path);
    keep(u"FOLDER"_s, m_cam.LastFolder(), path);
    keep(u"CAMERA"_s, camera(), path);
}

QString WindowPreferences::place() const
{
    const bool isAsPlaced = !m_placed.isValid() || m_normal == m_placed;
    if (!m_isRemembered && isAsPlaced && m_normal.size() == m_defaultSize)
        return {};
    return u"%1 %2 %3 %4"_s.arg(m_normal.x())
        .arg(m_normal.y())
        .arg(m_normal.width())
        .arg(m_normal.height());
}

/// A picture from a file is of no camera: the one before it stays.
QString WindowPreferences::camera() const
{
    const QString followed = m_list.followed();
    const QString key = followed.isEmpty() ? m_camera : followed;
    return m_list.has(key) ? key : QString();
}

/// Not by normalGeometry(), which is the whole screen's where a maximised window fills it.
void WindowPreferences::watch()
{
    if (m_area.showsPictureAlone() || !m_window.isVisible() || m_window.isMinimized())
        return;
    m_isMaximised = m_window.isMaximized();
    // The widget itself is told of its place and its size one after the other.
    const QRect now = m_window.windowHandle()->geometry();
    // On its way to that state a window fills the screen before it is said to be so.
    const QSize left = m_window.screen()->availableSize() - now.size();
    constexpr int frameWidth = FramePx.left() + FramePx.right();
    constexpr int frameHeight = FramePx.top() + FramePx.bottom();
    if (!m_isMaximised && (left.width() > frameWidth || left.height() > frameHeight))
        m_normal = now;
}

/// A window that is active has its place; what moves it from there is its user.
bool WindowPreferences::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
        watch();
        break;
    case QEvent::WindowActivate:
        watch();
        if (!m_isRemembered && !m_placed.isValid())
            m_placed = m_normal;
        break;
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}
