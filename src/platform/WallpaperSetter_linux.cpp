#include "platform/WallpaperSetter_linux.h"

#include <QDBusPendingCallWatcher>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>
#include <QUrl>
#include <QVariant>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

// What a command may print, and how many settings of Xfce are changed at most (one for each
// pair of monitor and workspace): far above what a real desktop has.
constexpr qint64 MaxOutputBytes = 1024 * 1024;
constexpr qsizetype MaxXfceSettings = 256;

bool is(const QString& name, QLatin1StringView desktop)
{
    return name.compare(desktop, Qt::CaseInsensitive) == 0;
}

// The gsettings commands for the desktop of that name; none for one that keeps its background
// elsewhere. MATE wants the plain path, the others the address.
QList<QStringList> gsettingsCommands(const QString& name, const QString& path,
                                     const QString& address)
{
    const auto set = [](const QString& schema, const QString& key, const QString& value) {
        return QStringList{u"gsettings"_s, u"set"_s, schema, key, value};
    };
    if (is(name, "GNOME"_L1) || is(name, "Unity"_L1) || is(name, "Budgie"_L1) ||
        is(name, "Pantheon"_L1)) {
        const QString schema = u"org.gnome.desktop.background"_s;
        return {set(schema, u"picture-uri"_s, address),
                set(schema, u"picture-uri-dark"_s, address)};
    }
    if (is(name, "X-Cinnamon"_L1) || is(name, "Cinnamon"_L1))
        return {set(u"org.cinnamon.desktop.background"_s, u"picture-uri"_s, address)};
    if (is(name, "MATE"_L1))
        return {set(u"org.mate.background"_s, u"picture-filename"_s, path)};
    return {};
}

} // namespace

QObject* WallpaperSetter::start(const QString& path, const QDBusConnection& bus,
                                const QString& desktops, const Limits& limits)
{
    auto* setter = new WallpaperSetter(path, bus, desktops, limits);
    setter->askPortal();
    return setter;
}

WallpaperSetter::WallpaperSetter(const QString& path, const QDBusConnection& bus,
                                 const QString& desktops, const Limits& limits)
    : m_path(QFileInfo(path).absoluteFilePath())
    , m_address(QString::fromLatin1(QUrl::fromLocalFile(m_path).toEncoded()))
    , m_bus(bus)
    , m_desktops(desktops.split(u':', Qt::SkipEmptyParts))
    , m_limits(limits)
{
}

void WallpaperSetter::askPortal()
{
    QFile file(m_path);
    // Opening anything but a regular file might wait for ever.
    if (!QFileInfo(m_path).isFile() || !file.open(QIODevice::ReadOnly)) {
        deleteLater();
        return;
    }
    QDBusMessage message = QDBusMessage::createMethodCall(
        u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
        u"org.freedesktop.portal.Wallpaper"_s, u"SetWallpaperFile"_s);
    // The message keeps a duplicate of the descriptor. No parent window is named.
    message << QString() << QVariant::fromValue(QDBusUnixFileDescriptor(file.handle()))
            << QVariantMap{{u"set-on"_s, u"background"_s}, {u"show-preview"_s, false}};
    call(message, [this](bool taken) {
        if (taken)
            deleteLater();
        else
            changeSettings();
    });
}

void WallpaperSetter::changeSettings()
{
    for (const QString& name : std::as_const(m_desktops)) {
        if (is(name, "KDE"_L1))
            return changePlasma();
        if (is(name, "XFCE"_L1))
            return changeXfce();
        m_commands = gsettingsCommands(name, m_path, m_address);
        if (!m_commands.isEmpty())
            break;
    }
    runCommands();
}

void WallpaperSetter::changePlasma()
{
    // The address is percent-encoded: it holds neither a quote that would end the JavaScript
    // string nor a backslash.
    const QString script =
        u"var all = desktops();"
        "for (var i = 0; i < all.length; i++) {"
        "all[i].wallpaperPlugin = \"org.kde.image\";"
        "all[i].currentConfigGroup = [\"Wallpaper\", \"org.kde.image\", \"General\"];"
        "all[i].writeConfig(\"Image\", \"%1\");"
        "}"_s.replace("%1"_L1, m_address);
    QDBusMessage message = QDBusMessage::createMethodCall(
        u"org.kde.plasmashell"_s, u"/PlasmaShell"_s, u"org.kde.PlasmaShell"_s, u"evaluateScript"_s);
    message << script;
    call(message, [this](bool answered) {
        if (!answered)
            m_commands = {{u"plasma-apply-wallpaperimage"_s, m_path}};
        runCommands();
    });
}

void WallpaperSetter::changeXfce()
{
    const QStringList command{u"xfconf-query"_s, u"-c"_s, u"xfce4-desktop"_s};
    run(command + QStringList{u"-l"_s}, [this, command](const QByteArray& output) {
        const QStringList properties = QString::fromUtf8(output).split(u'\n');
        for (const QString& property : properties) {
            if (property.endsWith("/last-image"_L1) && m_commands.size() < MaxXfceSettings)
                m_commands << command + QStringList{u"-p"_s, property, u"-s"_s, m_path};
        }
        runCommands();
    });
}

void WallpaperSetter::runCommands()
{
    if (m_commands.isEmpty())
        deleteLater();
    else
        run(m_commands.takeFirst(), [this](const QByteArray&) { runCommands(); });
}

void WallpaperSetter::call(const QDBusMessage& message,
                           const std::function<void(bool answered)>& then)
{
    // A call on a bus that is not there would never be reported as finished.
    if (!m_bus.isConnected())
        return then(false);
    auto* watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message, m_limits.replyMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this, [watcher, then] {
        watcher->deleteLater();
        then(!watcher->isError());
    });
}

void WallpaperSetter::run(const QStringList& command,
                          const std::function<void(const QByteArray& output)>& then)
{
    auto* process = new QProcess(this);
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    const auto ended = [process, then] {
        process->deleteLater();
        then(process->readAllStandardOutput());
    };
    connect(process, &QProcess::finished, this, ended);
    connect(process, &QProcess::errorOccurred, this, [ended](QProcess::ProcessError error) {
        // Every other error is followed by finished().
        if (error == QProcess::FailedToStart)
            ended();
    });
    connect(process, &QProcess::readyReadStandardOutput, process, [process] {
        if (process->bytesAvailable() > MaxOutputBytes)
            process->kill();
    });
    QTimer::singleShot(m_limits.commandMs, process, &QProcess::kill);
    process->start(command.first(), command.mid(1));
}
