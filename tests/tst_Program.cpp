// The whole program as a process of its own, on the display of the tests.

#include "support/Paths.h"
#include "support/Rows.h"
#include "support/RunningProgram.h"
#include "support/ScratchFile.h"

#include <csignal>
#include <functional>

namespace {

const QByteArray DesignView = "[VIEW]\r\nLIST=True\r\nTB=True\r\nGOTO=True\r\nNEW=True\r\n"
                              "TRAY=True\r\nOSIZE=False\r\nONTOP=False\r\n";

/// What the program uses until its window is there; 0 where it does not start or end.
double secondsOfAStart()
{
    RunningProgram usual;
    const double seconds = usual.start() ? usual.secondsUsed() : 0;
    return usual.terminated() == "0" ? seconds : 0;
}

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT
private slots:
    void endsCleanly_data()
    {
        const Rows<bool> row("byKeyboard");
        row("by SIGTERM", false);
        row("by the window manager", true);
    }

    void endsCleanly()
    {
        QFETCH(bool, byKeyboard);
        RunningProgram p;
        QVERIFY(p.start());
        QCOMPARE(p.property("WM_NAME"), "WM_NAME(STRING) = \"Pevora\"");
        QVERIFY(p.property("WM_CLASS").contains("\"pevora\""));
        if (byKeyboard) {
            // A window manager that is busy drawing the frame may miss a key.
            QTRY_VERIFY([&] {
                p.tell("xdotool", {"windowactivate", "--sync", p.window});
                p.tell("xdotool", {"key", "--clearmodifiers", "alt+F4"});
                return p.process.state() == QProcess::NotRunning;
            }());
        } else {
            RunningProgram::terminate(p.process);
        }
        QCOMPARE(p.ended(), "0");
        QCOMPARE(p.preferences(), DesignView + "[FAVORITES]\r\nCOUNT=0\r\n");
        QCOMPARE(namesIn(p.program()), (QStringList{"list.dat", "pevora", "pref.ini"}));
    }

    void ctrlCAndTheEndOfTheTerminalEndItToo()
    {
        for (const int number : {SIGINT, SIGHUP}) {
            RunningProgram p;
            QVERIFY(p.start());
            ::kill(pid_t(p.process.processId()), number);
            QCOMPARE(p.ended(), "0");
            QVERIFY(p.preferences().startsWith(DesignView));
        }
    }

    void printsNothing()
    {
        RunningProgram p;
        QVERIFY(p.start());
        QCOMPARE(p.terminated(), "0");
        QCOMPARE(p.process.readAllStandardOutput(), "");
        QCOMPARE(p.process.readAllStandardError(), "");
    }

    /// Each costs a file of its own to look up, map and link, for pictures that may never come.
    void aStartLoadsNoImagePlugIn()
    {
        RunningProgram p;
        QVERIFY(p.start());
        QFile maps(QStringLiteral("/proc/%1/maps").arg(p.process.processId()));
        QVERIFY(maps.open(QIODevice::ReadOnly));
        const QByteArray mapped = maps.readAll();
        QVERIFY(mapped.contains("/platforms/"));
        QVERIFY2(!mapped.contains("/imageformats/"), mapped.constData());
        QCOMPARE(p.terminated(), "0");
    }

    void theTaskBarGetsTheIcon()
    {
        RunningProgram p;
        QVERIFY(p.start());
        QTRY_VERIFY(p.property("_NET_WM_ICON").contains("128 x 128"));
        QCOMPARE(p.terminated(), "0");
    }

    void withoutARuntimeFolderOnlyQtSpeaks()
    {
        RunningProgram p;
        p.environment.remove("XDG_RUNTIME_DIR");
        QVERIFY(p.start());
        QCOMPARE(p.terminated(), "0");
        for (const QByteArray& line : p.process.readAllStandardError().split('\n')) {
            if (!line.isEmpty())
                QVERIFY2(line.startsWith("QStandardPaths: "), line.constData());
        }
    }

    void alwaysOnTopIsToldToTheWindowManager()
    {
        for (const bool on : {true, false}) {
            RunningProgram p;
            p.writePreferences(QByteArray("[VIEW]\r\nONTOP=") + (on ? "True" : "False") + "\r\n");
            QVERIFY(p.start());
            // The window manager answers when it has the window.
            QTRY_VERIFY(p.property("WM_STATE").contains("Normal"));
            if (on)
                QTRY_VERIFY(p.property("_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE"));
            else
                QVERIFY(!p.property("_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE"));
            QCOMPARE(p.terminated(), "0");
            QVERIFY(p.preferences().contains(on ? "ONTOP=True\r\n" : "ONTOP=False\r\n"));
        }
    }

    void itsWindowFitsIntoASmallScreen()
    {
        // One of 640 x 480, which is still more than the room that the toolbar needs.
        RunningProgram p;
        p.environment.insert("QT_SCALE_FACTOR", "2.5");
        QVERIFY(p.start());
        QSize outer;
        QTRY_VERIFY([&] {
            const QString frame = p.tell("xwininfo", {"-frame", "-id", p.window});
            const auto number = [&](const QString& name) {
                const QRegularExpression line(name + ":\\s*(\\d+)");
                return line.match(frame).captured(1).toInt();
            };
            outer = QSize(number("Width"), number("Height"));
            return !outer.isEmpty();
        }());
        const QSize screen = QGuiApplication::primaryScreen()->size();
        QVERIFY2(outer.width() <= screen.width() && outer.height() <= screen.height(),
                 qPrintable(QString("%1 x %2").arg(outer.width()).arg(outer.height())));
        QVERIFY(outer.height() > screen.height() / 2);
        QCOMPARE(p.terminated(), "0");
    }

    void theNextStartFindsTheWindowWhereItWas()
    {
        RunningProgram p;
        QVERIFY(p.start());
        QTRY_VERIFY(p.property("WM_STATE").contains("Normal"));
        p.tell("xdotool", {"windowactivate", "--sync", p.window});
        p.tell("xdotool", {"windowsize", "--sync", p.window, "777", "444"});
        p.tell("xdotool", {"windowmove", "--sync", p.window, "130", "90"});
        QTRY_COMPARE(p.place().size(), QSize(777, 444));
        const QRect before = p.place();
        QCOMPARE(p.terminated(), "0");
        QVERIFY(p.preferences().contains("[WINDOW]\r\n"));
        QVERIFY(p.start());
        QTRY_COMPARE(p.place(), before);
        QCOMPARE(p.terminated(), "0");
    }

    void aBadPreferencesFileDoesNoHarm_data()
    {
        using Make = std::function<void(const RunningProgram&)>;
        const Rows<Make, std::function<bool(const RunningProgram&)>> row("make", "isIntact");
        row(
            "a folder",
            [](const RunningProgram& p) { QVERIFY(QDir().mkdir(p.program("pref.ini"))); },
            [](const RunningProgram& p) { return QFileInfo(p.program("pref.ini")).isDir(); });
        row(
            "unreadable",
            [](const RunningProgram& p) {
                p.writePreferences("[VIEW]\r\nTB=False\r\n");
                QVERIFY(QFile::setPermissions(p.program("pref.ini"), {}));
            },
            [](const RunningProgram& p) {
                QFile::setPermissions(p.program("pref.ini"), QFile::ReadOwner);
                return p.preferences() == "[VIEW]\r\nTB=False\r\n";
            });

        QByteArray noise(1'000'000, 0);
        QRandomGenerator random(7);
        for (char& byte : noise)
            byte = char(random.generate() & 0xFF);
        row(
            "binary", [noise](const RunningProgram& p) { p.writePreferences(noise); },
            // All of it is kept, and the preferences stand below.
            [noise](const RunningProgram& p) {
                return p.preferences().startsWith(noise) && p.preferences().contains(DesignView);
            });

        constexpr qint64 large = 100'000'000;
        const QByteArray line = "[VIEW]\r\nTB=False\r\n";
        row(
            "100 MB",
            [line](const RunningProgram& p) {
                p.writePreferences(line);
                QVERIFY(QFile::resize(p.program("pref.ini"), large));
            },
            [line](const RunningProgram& p) {
                QFile file(p.program("pref.ini"));
                return file.size() == large && file.open(QIODevice::ReadOnly) &&
                       file.read(line.size()) == line;
            });
    }

    void aBadPreferencesFileDoesNoHarm()
    {
        QFETCH(std::function<void(const RunningProgram&)>, make);
        QFETCH(std::function<bool(const RunningProgram&)>, isIntact);
        const double usualSeconds = secondsOfAStart();

        RunningProgram p;
        make(p);
        QVERIFY(p.start());
        const double seconds = p.secondsUsed();
        QCOMPARE(p.terminated(), "0");
        QVERIFY(isIntact(p));
        QCOMPARE(p.process.readAllStandardError(), "");
        qInfo("window at %.2f times the usual cost", seconds / usualSeconds);
        QVERIFY(usualSeconds > 0 && seconds < 6 * usualSeconds);
    }

    /// Not even a look-up that never ends holds the program, and nothing is lost by that.
    void aLookUpWithoutAnswerDoesNotHoldTheEnd()
    {
        RunningProgram p;
        const QString begun = p.home("look-up");
        p.write("silent-resolver.so", contentOf(silentResolver()));
        p.environment.insert("LD_PRELOAD", p.program("silent-resolver.so"));
        p.environment.insert("PEVORA_TEST_LOOKUP", begun);
        const QString sanitizer = p.environment.value("ASAN_OPTIONS");
        p.environment.insert("ASAN_OPTIONS", sanitizer + ":verify_asan_link_order=0");
        QVERIFY(p.start());
        // A window manager that is busy drawing the frame may miss a key.
        QTRY_VERIFY([&] {
            p.tell("xdotool", {"windowactivate", "--sync", p.window});
            p.tell("xdotool", {"key", "--clearmodifiers", "ctrl+a"}); // of the goto bar
            p.tell("xdotool", {"type", "cam.example/a.jpg"});
            p.tell("xdotool", {"key", "Return"});
            return QFileInfo::exists(begun);
        }());
        QCOMPARE(p.terminated(), "0");
        QVERIFY(p.preferences().startsWith(DesignView));
        QVERIFY(namesIn(p.program()).contains("list.dat"));
    }

    void anUnwritableFolderGivesWayToTheUsersOwn()
    {
        RunningProgram p;
        QVERIFY(QFile::setPermissions(p.program(), QFile::Permissions(0x5555)));
        p.environment.insert("XDG_DATA_HOME", p.home("data"));
        QVERIFY(p.start());
        QCOMPARE(p.terminated(), "0");
        QVERIFY(!QFileInfo::exists(p.program("pref.ini")));
        QVERIFY(QFileInfo(p.home("data/pevora/pref.ini")).isFile());
    }

    void aSignalLosesNothingWhereTheFolderRefuses()
    {
        RunningProgram p;
        p.write("list.dat", "Odd\xFF"
                            "Clock\xFF"
                            "cam.example/clock.jpg\r\n");
        p.writePreferences("[DIRECTORY]\r\nHOST=directory.example\r\n");
        QVERIFY(p.start());
        QVERIFY(QFile::setPermissions(p.program(), QFile::Permissions(0x5555)));
        QCOMPARE(p.terminated(), "1");
        const QByteArray told = p.process.readAllStandardError();
        QVERIFY2(told.contains("Not saved: " + p.program("pref.ini").toUtf8()), told);
        // Nobody changed the list, so that is no loss.
        QVERIFY2(!told.contains("list.dat"), told);
        const QString copy = p.home(".local/share/pevora/pref.ini");
        QVERIFY2(told.contains("A copy is in " + copy.toUtf8()), told);
        QVERIFY(contentOf(copy).contains("HOST=directory.example"));
        QVERIFY(contentOf(copy).contains("TRAY=True"));
    }

    void tenThousandFavouritesCostNoMoreThanAFewStarts()
    {
        const double usualSeconds = secondsOfAStart();

        QByteArray content = "[FAVORITES]\r\n";
        for (int i = 0; i < 10'000; ++i) {
            const QByteArray n = QByteArray::number(i);
            content += "NAME[" + n + "]=Camera number " + n + "\r\nURL[" + n + "]=cam.example/" +
                       n + ".jpg\r\n";
        }
        RunningProgram p;
        p.writePreferences(content + "COUNT=10000\r\n");
        QVERIFY(p.start());
        const double atStart = p.secondsUsed();
        QCOMPARE(p.terminated(), "0");
        QCOMPARE(p.preferences(), content + "COUNT=10000\r\n" + DesignView);
        qInfo("window at %.2f times the usual cost", atStart / usualSeconds);
        // Six to seven times is usual; work that grows with the square is a hundred times and more.
        QVERIFY(usualSeconds > 0 && atStart < 16 * usualSeconds);
    }
};

QTEST_MAIN(ProgramTest)
#include "tst_Program.moc"
