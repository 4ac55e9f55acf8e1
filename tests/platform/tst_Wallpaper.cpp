#include "platform/Wallpaper.h"
#include "platform/WallpaperSetter_linux.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>
#include <QtDBus/QtDBus>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A session bus for this test alone, on which no service starts by itself.
class PrivateBus
{
public:
    bool start()
    {
        const QString config = m_folder.filePath(u"bus.conf"_s);
        writeFile(config, "<busconfig><type>session</type><auth>EXTERNAL</auth><listen>unix:path=" +
                              QFile::encodeName(m_folder.filePath(u"bus"_s)) +
                              "</listen><policy context=\"default\">"
                              "<allow send_destination=\"*\"/><allow receive_sender=\"*\"/>"
                              "<allow own=\"*\"/></policy></busconfig>");
        m_daemon.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_daemon.start(u"dbus-daemon"_s,
                       {u"--config-file="_s + config, u"--print-address"_s, u"--nofork"_s});
        while (!m_daemon.canReadLine()) {
            if (!m_daemon.waitForReadyRead(HangMs))
                return false;
        }
        m_address = QString::fromLatin1(m_daemon.readLine()).trimmed();
        return true;
    }
    ~PrivateBus()
    {
        m_daemon.kill();
        m_daemon.waitForFinished(HangMs);
    }
    QString address() const { return m_address; }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};

enum class Answer { Accept, Error, Never };

} // namespace

/// The portal as the desktop would offer it.
class FakePortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Wallpaper")
public:
    Answer answer = Answer::Accept;
    int calls = 0;
    QString parentWindow;
    QByteArray bytes;
    QVariantMap options;

public slots:
    QDBusObjectPath SetWallpaperFile(const QString& parent, const QDBusUnixFileDescriptor& file,
                                     const QVariantMap& given, const QDBusMessage& message)
    {
        ++calls;
        parentWindow = parent;
        options = given;
        QFile content;
        if (content.open(file.fileDescriptor(), QIODevice::ReadOnly))
            bytes = content.readAll();
        if (answer != Answer::Accept)
            message.setDelayedReply(true);
        if (answer == Answer::Error) {
            QDBusConnection(u"desktop"_s)
                .send(message.createErrorReply(QDBusError::AccessDenied, u"no"_s));
        }
        return QDBusObjectPath(u"/org/freedesktop/portal/desktop/request/1"_s);
    }
};

/// The shell of the KDE desktop.
class FakePlasma : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.PlasmaShell")
public:
    QStringList scripts;

public slots:
    QString evaluateScript(const QString& script)
    {
        scripts << script;
        return {};
    }
};

class WallpaperTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        QVERIFY(m_bus.start());
        // Both ends are in this process, each with a connection of its own: the program's as the
        // session bus too, which is read from the environment once.
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toLatin1());
        QVERIFY(QDBusConnection::sessionBus().isConnected());
        QVERIFY(QDBusConnection::connectToBus(m_bus.address(), u"program"_s).isConnected());
        QVERIFY(QDBusConnection::connectToBus(m_bus.address(), u"desktop"_s).isConnected());
        m_searchPath = qgetenv("PATH");
    }

    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        QVERIFY(m_scratch->isValid());
        QVERIFY(QDir(m_scratch->path()).mkdir(u"bin"_s));
        for (const auto& name :
             {u"gsettings"_s, u"xfconf-query"_s, u"plasma-apply-wallpaperimage"_s})
            QVERIFY(writeCommand(name));
        qputenv("PATH", QFile::encodeName(m_scratch->filePath(u"bin"_s)) + ":" + m_searchPath);

        m_picture = m_scratch->filePath(u"a b 'c' \"d\" & $e%20#?\\ \u00e4\u20ac.bmp"_s);
        writeFile(m_picture, "BM pixels");
        m_address = u"file://"_s + m_scratch->path() +
                    u"/a%20b%20'c'%20%22d%22%20&%20$e%2520%23%3F%5C%20%C3%A4%E2%82%AC.bmp"_s;
    }

    void cleanup()
    {
        QDBusConnection desktop(u"desktop"_s);
        desktop.unregisterService(u"org.freedesktop.portal.Desktop"_s);
        desktop.unregisterObject(u"/org/freedesktop/portal/desktop"_s);
        desktop.unregisterService(u"org.kde.plasmashell"_s);
        desktop.unregisterObject(u"/PlasmaShell"_s);
        m_portal.answer = Answer::Accept;
        m_portal.calls = 0;
        m_portal.bytes.clear();
        m_plasma.scripts.clear();
        qputenv("PATH", m_searchPath);
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    void thePictureFolderIsMade()
    {
        // The user's own table of folders names the picture folder.
        const QString folder = m_scratch->filePath(u"home/My Pictures"_s);
        QVERIFY(QDir().mkpath(m_scratch->filePath(u"config"_s)));
        writeFile(m_scratch->filePath(u"config/user-dirs.dirs"_s),
                  "XDG_PICTURES_DIR=\"" + QFile::encodeName(folder) + "\"\n");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(m_scratch->filePath(u"config"_s)));
        const auto restore = qScopeGuard([] { qunsetenv("XDG_CONFIG_HOME"); });

        QCOMPARE(wallpaperFolder(), folder);
        QVERIFY(QFileInfo(folder).isDir());
        QCOMPARE(wallpaperFolder(), folder);
    }

    void thePortalIsGivenTheFile()
    {
        QVERIFY(offerPortal());
        QVERIFY(run(bus(), u"GNOME"_s));
        QCOMPARE(m_portal.calls, 1);
        QCOMPARE(m_portal.parentWindow, QString());
        QCOMPARE(m_portal.bytes, QByteArray("BM pixels"));
        const QVariantMap options{{u"set-on"_s, u"background"_s}, {u"show-preview"_s, false}};
        QCOMPARE(m_portal.options, options);
        QCOMPARE(commands(), QList<QStringList>());
    }

    void theCallReturnsAtOnce()
    {
        qputenv("XDG_CURRENT_DESKTOP", "GNOME");
        QVERIFY(offerPortal());
        m_portal.answer = Answer::Error;
        setWallpaper(m_picture);
        QCOMPARE(m_portal.calls, 0);
        QTRY_COMPARE(commands().size(), 2);
        QCOMPARE(m_portal.calls, 1);
        QCOMPARE(commands().at(0).last(), m_address);

        // Once more with a portal that takes it: the session bus is the one that is used.
        m_portal.answer = Answer::Accept;
        setWallpaper(m_picture);
        QTRY_COMPARE(m_portal.calls, 2);
    }

    void noPortalAnswerLeadsToTheSettings_data()
    {
        const Rows<QString> row("portal");
        for (const char* portal : {"no bus", "no service", "no interface", "error", "silent"})
            row(portal, portal);
    }

    void noPortalAnswerLeadsToTheSettings()
    {
        QFETCH(QString, portal);
        if (portal == "no interface"_L1) {
            QVERIFY(offer(u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                          &m_plasma));
        } else if (portal == "error"_L1 || portal == "silent"_L1) {
            QVERIFY(offerPortal());
            m_portal.answer = portal == "error"_L1 ? Answer::Error : Answer::Never;
        }
        const QDBusConnection on = portal == "no bus"_L1 ? QDBusConnection(u"none"_s) : bus();
        QCOMPARE(on.isConnected(), portal != "no bus"_L1);

        QVERIFY(run(on, u"GNOME"_s, portal == "silent"_L1 ? ShortMs : LongMs));
        const QString schema = u"org.gnome.desktop.background"_s;
        const QList<QStringList> expected{
            {u"gsettings"_s, u"set"_s, schema, u"picture-uri"_s, m_address},
            {u"gsettings"_s, u"set"_s, schema, u"picture-uri-dark"_s, m_address}};
        QCOMPARE(m_portal.calls, portal == "error"_L1 || portal == "silent"_L1 ? 1 : 0);
        QCOMPARE(commands(), expected);
    }

    void everyDesktopIsToldInItsOwnWay_data()
    {
        const Rows<QString, QStringList> row("desktops", "firstCommand");
        const QString gnome = u"gsettings set org.gnome.desktop.background picture-uri @ADDRESS@"_s;
        for (const char* name : {"GNOME", "ubuntu:GNOME", "gnome", "Unity", "Budgie:GNOME",
                                 "Pantheon", "GNOME-Flashback:GNOME"})
            row(name, QString::fromLatin1(name), gnome.split(u' '));
        row("X-Cinnamon", u"X-Cinnamon"_s,
            u"gsettings set org.cinnamon.desktop.background picture-uri @ADDRESS@"_s.split(u' '));
        row("MATE", u"MATE"_s,
            u"gsettings set org.mate.background picture-filename @PATH@"_s.split(u' '));
        row("KDE", u"KDE"_s, u"plasma-apply-wallpaperimage @PATH@"_s.split(u' '));
        row("XFCE", u"XFCE"_s, u"xfconf-query -c xfce4-desktop -l"_s.split(u' '));
        row("unknown", u"Openbox:Other"_s, {});
        row("none", {}, {});
        row("only colons", u"::"_s, {});
    }

    void everyDesktopIsToldInItsOwnWay()
    {
        QFETCH(QString, desktops);
        QFETCH(QStringList, firstCommand);
        firstCommand.replaceInStrings(u"@ADDRESS@"_s, m_address);
        firstCommand.replaceInStrings(u"@PATH@"_s, m_picture);
        QVERIFY(run(QDBusConnection(u"none"_s), desktops));
        if (firstCommand.isEmpty())
            QCOMPARE(commands(), QList<QStringList>());
        else
            QCOMPARE(commands().value(0), firstCommand);
    }

    void plasmaIsGivenAScript()
    {
        QVERIFY(offer(u"org.kde.plasmashell"_s, u"/PlasmaShell"_s, &m_plasma));
        QVERIFY(run(bus(), u"KDE"_s));
        QCOMPARE(m_plasma.scripts.size(), 1);
        const QString script = m_plasma.scripts.first();
        QVERIFY2(script.contains(u"writeConfig(\"Image\", \"%1\");"_s.replace("%1"_L1, m_address)),
                 qPrintable(script));
        QVERIFY(script.contains("wallpaperPlugin = \"org.kde.image\";"_L1));
        QCOMPARE(commands(), QList<QStringList>());
    }

    void plasmaThatDoesNotAnswerIsToldByItsTool()
    {
        QVERIFY(run(bus(), u"KDE"_s));
        const QList<QStringList> expected{{u"plasma-apply-wallpaperimage"_s, m_picture}};
        QCOMPARE(commands(), expected);
    }

    void xfceIsToldForEveryMonitor()
    {
        QVERIFY(writeCommand(u"xfconf-query"_s,
                             "[ \"$3\" = -l ] && cat <<'END'\n"
                             "/backdrop/screen0/monitorVGA 1/workspace0/last-image\n"
                             "/backdrop/screen0/monitor0/image-style\n"
                             "/backdrop/screen0/monitor0/workspace1/last-image\n"
                             "/last-image-list\n"
                             "END\n"));
        QVERIFY(run(bus(), u"XFCE"_s));
        const QStringList command{u"xfconf-query"_s, u"-c"_s, u"xfce4-desktop"_s};
        const auto set = [&](const QString& property) {
            return command + QStringList{u"-p"_s, property, u"-s"_s, m_picture};
        };
        const QList<QStringList> expected{
            command + QStringList{u"-l"_s},
            set(u"/backdrop/screen0/monitorVGA 1/workspace0/last-image"_s),
            set(u"/backdrop/screen0/monitor0/workspace1/last-image"_s)};
        QCOMPARE(commands(), expected);
    }

    void aCommandThatHangsIsEnded()
    {
        QVERIFY(writeCommand(u"plasma-apply-wallpaperimage"_s, "exec sleep 1000\n"));
        QObject* setter = WallpaperSetter::start(m_picture, QDBusConnection(u"none"_s), u"KDE"_s,
                                                 {LongMs, ShortMs});
        QSignalSpy done(setter, &QObject::destroyed);
        const auto* process = setter->findChild<QProcess*>();
        QVERIFY(process);
        const QString entry = u"/proc/%1"_s.arg(process->processId());
        QVERIFY(QFileInfo::exists(entry));
        QVERIFY(waitForSignal(done));
        QVERIFY(!QFileInfo::exists(entry));
    }

    void aCommandThatFloodsIsEnded()
    {
        QVERIFY(writeCommand(u"xfconf-query"_s, "[ \"$3\" = -l ] && exec yes /x/last-image\n"));
        QVERIFY(run(bus(), u"XFCE"_s));
        // The list, and no more settings than a desktop could have.
        QCOMPARE(commands().size(), 257);
    }

    void missingCommandsDoNoHarm()
    {
        qputenv("PATH", QFile::encodeName(m_scratch->filePath(u"nowhere"_s)));
        for (const auto& desktop : {u"GNOME"_s, u"KDE"_s, u"XFCE"_s})
            QVERIFY(run(bus(), desktop));
        QCOMPARE(commands(), QList<QStringList>());
    }

    void aMissingFileChangesNothing_data()
    {
        const Rows<QString> row("path");
        row("none", "");
        row("missing", "/nowhere/Pevora.bmp");
        row("folder", "/");
        row("device", "/dev/zero");
    }

    void aMissingFileChangesNothing()
    {
        QFETCH(QString, path);
        QVERIFY(offerPortal());
        m_picture = path;
        QVERIFY(run(bus(), u"GNOME"_s));
        QCOMPARE(m_portal.calls, 0);
        QCOMPARE(commands(), QList<QStringList>());
    }

private:
    // A limit that is to be reached, and one that no loaded machine reaches.
    static constexpr int ShortMs = 100;
    static constexpr int LongMs = 20'000;

    QDBusConnection bus() const { return QDBusConnection(u"program"_s); }

    /// Sets the picture and waits until all is done.
    bool run(const QDBusConnection& on, const QString& desktops, int replyMs = LongMs)
    {
        QObject* setter = WallpaperSetter::start(m_picture, on, desktops, {replyMs, LongMs});
        QSignalSpy done(setter, &QObject::destroyed);
        return waitForSignal(done);
    }

    bool offerPortal()
    {
        return offer(u"org.freedesktop.portal.Desktop"_s, u"/org/freedesktop/portal/desktop"_s,
                     &m_portal);
    }

    bool offer(const QString& service, const QString& path, QObject* object)
    {
        QDBusConnection desktop(u"desktop"_s);
        return desktop.registerObject(path, object, QDBusConnection::ExportAllSlots) &&
               desktop.registerService(service);
    }

    /// A command that logs its name and arguments, one a line and an empty line behind them, and
    /// then does what `body` says.
    bool writeCommand(const QString& name, const QByteArray& body = {})
    {
        QFile script(m_scratch->filePath(u"bin/"_s + name));
        return script.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
               script.write("#!/bin/sh\nprintf '%s\\n' " + name.toLatin1() + " \"$@\" '' >>'" +
                            QFile::encodeName(m_scratch->filePath(u"log"_s)) + "'\n" + body) > 0 &&
               script.setPermissions(QFile::ReadOwner | QFile::ExeOwner | QFile::WriteOwner);
    }

    QList<QStringList> commands() const
    {
        const QString log = m_scratch->filePath(u"log"_s);
        QList<QStringList> list;
        if (!QFile::exists(log))
            return list;
        for (const QString& part :
             QString::fromUtf8(contentOf(log)).split(u"\n\n"_s, Qt::SkipEmptyParts))
            list << part.split(u'\n');
        return list;
    }

    PrivateBus m_bus;
    FakePortal m_portal;
    FakePlasma m_plasma;
    QByteArray m_searchPath;
    std::unique_ptr<QTemporaryDir> m_scratch;
    QString m_picture;
    QString m_address;
};

QTEST_GUILESS_MAIN(WallpaperTest)
#include "tst_Wallpaper.moc"
