#include "support/Desktop.h"

#include "support/Waiting.h"

#include <QApplication>
#include <QRegularExpression>
#include <QSystemTrayIcon>
#include <QTest>
#include <QWindow>

#include <optional>

namespace {

QByteArray run(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    if (!process.waitForFinished(HangMs) || process.exitCode() != 0)
        qFatal("%s: %s", qPrintable(program), process.readAllStandardError().constData());
    return process.readAllStandardOutput();
}

/// The windows that Qt puts into the tray.
QList<QWidget*> trayWindows()
{
    QList<QWidget*> found;
    for (auto* widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QSystemTrayIconSys") && widget->isVisible())
            found.append(widget);
    }
    return found;
}

} // namespace

QString windowProperty(const QWidget& window, const QString& property)
{
    const QString id = QString::number(window.windowHandle()->winId());
    return QString::fromLatin1(run(QStringLiteral("xprop"), {QStringLiteral("-id"), id, property}));
}

QList<WId> managedWindows(const QString& title)
{
    const QString all = QString::fromLatin1(run(
        QStringLiteral("xprop"), {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST")}));
    QList<WId> found;
    static const QRegularExpression number(QStringLiteral("0x[0-9a-f]+"));
    for (auto each = number.globalMatch(all); each.hasNext();) {
        const QString id = each.next().captured();
        // It may have gone since.
        QProcess xprop;
        xprop.start(QStringLiteral("xprop"),
                    {QStringLiteral("-id"), id, QStringLiteral("_NET_WM_NAME")});
        xprop.waitForFinished(HangMs);
        if (xprop.readAllStandardOutput().contains('"' + title.toUtf8() + '"'))
            found.append(id.toULongLong(nullptr, 16));
    }
    return found;
}

QList<WId> stacking()
{
    const QString told = QString::fromLatin1(
        run(QStringLiteral("xprop"),
            {QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")}));
    QList<WId> windows;
    static const QRegularExpression number(QStringLiteral("0x[0-9a-f]+"));
    auto match = number.globalMatch(told);
    while (match.hasNext())
        windows << match.next().captured().toULongLong(nullptr, 16);
    return windows;
}

void pointer(const QPoint& at, const QString& action, int button)
{
    run(QStringLiteral("xdotool"), {QStringLiteral("mousemove"), QString::number(at.x()),
                                    QString::number(at.y()), action, QString::number(button)});
}

void movePointer(const QPoint& at)
{
    run(QStringLiteral("xdotool"),
        {QStringLiteral("mousemove"), QString::number(at.x()), QString::number(at.y())});
}

DesktopTray::DesktopTray()
{
    m_trayer.start(QStringLiteral("trayer"),
                   {QStringLiteral("--edge"), QStringLiteral("bottom"), QStringLiteral("--align"),
                    QStringLiteral("right"), QStringLiteral("--widthtype"), QStringLiteral("pixel"),
                    QStringLiteral("--width"), QStringLiteral("200")});
    if (!waitFor([] { return QSystemTrayIcon::isSystemTrayAvailable(); }))
        qFatal("the tray does not start");
}

DesktopTray::~DesktopTray()
{
    m_trayer.kill();
    m_trayer.waitForFinished(HangMs);
    (void)waitFor([] { return !QSystemTrayIcon::isSystemTrayAvailable(); });
}

QRect DesktopTray::icon()
{
    QRect place;
    std::optional<QPoint> pointedAt;
    const bool found = waitFor([&] {
        const auto windows = trayWindows();
        // Not before the tray has given it its place.
        if (windows.size() != 1 || !windows.first()->windowHandle()->isExposed())
            return false;
        place = QRect(windows.first()->mapToGlobal(QPoint()), windows.first()->size());
        if (place.width() <= 1)
            return false;
        if (pointedAt == place.center())
            return windows.first()->underMouse();
        // Trays move an icon that is new: it is where the pointer meets it.
        pointedAt = place.center();
        run(QStringLiteral("xdotool"),
            {QStringLiteral("mousemove"), QString::number(pointedAt->x()),
             QString::number(pointedAt->y())});
        return false;
    });
    return found ? place : QRect();
}

int DesktopTray::icons()
{
    return static_cast<int>(trayWindows().size());
}
