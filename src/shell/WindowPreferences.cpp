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
    if (readTruthValue(read(u"MAXIMISED"_s)).value_or(false))
        m_window.setWindowState(m_window.windowState() | Qt::WindowMaximized);

    bool isNumber = false;
    const int listWidth = read(u"LISTWIDTH"_s).toInt(&isNumber);
    if (isNumber && listWidth > 0)
        m_area.setListWidth(listWidth);
    const short interval = read(u"INTERVAL"_s).toShort(&isNumber);
    if (isNumber)
        m_cam.setInterval(interval);
    m_cam.setLastFolder(read(u"FOLDER"_s));
    m_list.followCamera(read(u"CAMERA"_s));
}

void WindowPreferences::save(const QString& path) const
{
    const auto unless = [](int byDefault, int value) {
        return value == byDefault ? QString() : QString::number(value);
    };
    keep(u"PLACE"_s, place(), path);
    keep(u"MAXIMISED"_s, m_window.isMaximized() ? truthValueText(true) : QString(), path);
    keep(u"LISTWIDTH"_s, unless(m_defaultListWidth, m_area.listWidth()), path);
    keep(u"INTERVAL"_s, unless(RefreshTimer::DefaultIntervalSeconds, m_cam.Interval()), path);
    keep(u"FOLDER"_s, m_cam.LastFolder(), path);
    keep(u"CAMERA"_s, m_list.followed(), path);
}

QString WindowPreferences::place() const
{
    const QRect now = m_window.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)
                          ? m_window.normalGeometry()
                          : m_window.geometry();
    const bool isAsPlaced = !m_placed.isValid() || now == m_placed;
    if (!now.isValid() || (!m_isRemembered && isAsPlaced && now.size() == m_defaultSize))
        return {};
    return u"%1 %2 %3 %4"_s.arg(now.x()).arg(now.y()).arg(now.width()).arg(now.height());
}

/// A window that is active has its place; what moves it from there is its user.
bool WindowPreferences::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && !m_isRemembered && !m_placed.isValid())
        m_placed = m_window.geometry();
    return QObject::eventFilter(watched, event);
}
