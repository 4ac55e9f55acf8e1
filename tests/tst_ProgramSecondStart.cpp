// A second start of the whole program beside one that runs: processes of their own.

#include "support/OtherProgram.h"
#include "support/Rows.h"
#include "support/RunningProgram.h"
#include "support/ScratchFile.h"

#include <csignal>

namespace {

/// The imported list of one camera, whose name and key hold `number`.
QByteArray listOf(int number)
{
    const QByteArray n = QByteArray::number(number);
    return "CAMZHanded\xFF"
           "Camera " +
           n + "\xFFhanded.example/" + n + ".jpg\r\n";
}

/// How many cameras the saved list has of those that were handed over.
qsizetype handedOver(const RunningProgram& p)
{
    return p.read("list.dat").count("\xFFhanded.example/");
}

bool has(const RunningProgram& p, int number)
{
    return p.read("list.dat").contains("\xFFhanded.example/" + QByteArray::number(number) + ".jpg");
}

/// Starts another one with these arguments, and no display, and waits until it has ended.
QByteArray handedOverBy(RunningProgram& p, const QStringList& arguments,
                        const QString& workingFolder = {})
{
    const QProcessEnvironment before = p.environment;
    p.environment.remove("DISPLAY");
    QProcess& one = p.startAnother(arguments, workingFolder);
    p.environment = before;
    const QByteArray ended = RunningProgram::ended(one);
    return ended + one.readAllStandardOutput() + one.readAllStandardError();
}

} // namespace

class ProgramSecondStartTest : public QObject
{
    Q_OBJECT
private slots:
    void helpAndVersionAnswerOnTheTerminal()
    {
        RunningProgram p;
        p.environment.remove("DISPLAY");
        for (const QString asked : {"--help", "--version"}) {
            for (const QStringList& more : {QStringList(), QStringList("more")}) {
                QProcess& one = p.startAnother(QStringList(asked) + more);
                QCOMPARE(RunningProgram::ended(one), "0");
                QCOMPARE(one.readAllStandardError(), "");
                const QByteArray printed = one.readAllStandardOutput();
                if (asked == "--version") {
                    const QRegularExpression version("^Pevora \\d+\\.\\d+\n$");
                    QVERIFY2(version.match(printed).hasMatch(), printed.constData());
                    continue;
                }
                QVERIFY2(printed.startsWith("Usage: pevora [FILE]\n"), printed.constData());
                QVERIFY(printed.contains("--help") && printed.contains("--version"));
                QVERIFY(printed.endsWith('\n'));
                for (const QByteArray& line : printed.split('\n'))
                    QVERIFY2(line.size() <= 79, line.constData());
            }
        }
        QCOMPARE(printedBy({"sh", "-c", p.program("pevora") + " --version >/dev/full; echo $?"}),
                 "1");
        QCOMPARE(namesIn(p.program()), QStringList("pevora"));
    }

    void everythingElseIsAFileName_data()
    {
        const Rows<QString> row("name");
        // Qt knows some of them as options of its own.
        for (const char* name : {"--foo", "-h", "--help.zip", "--versions", "-style", "-platform",
                                 "-platform none", "-reverse", "-", "a b"})
            row(name, name);
    }

    void everythingElseIsAFileName()
    {
        QFETCH(QString, name);
        RunningProgram p;
        p.write(name, listOf(1));
        // As the first one, which opens it itself, in its own working folder.
        p.process.setWorkingDirectory(p.program());
        QVERIFY(p.start(name.split(' ')));
        // As the second one.
        p.write(name, listOf(2));
        QCOMPARE(handedOverBy(p, name.split(' '), p.program()), "0");
        QCOMPARE(p.terminated(), "0");
        QVERIFY(has(p, 1));
        QVERIFY(has(p, 2));
    }

    void aFileReachesTheInstanceThatRuns()
    {
        RunningProgram p;
        p.write("1", listOf(1));
        p.write("2", listOf(2));
        p.write("3 of them.dat", listOf(3));
        QVERIFY(p.start());
        QCOMPARE(handedOverBy(p, {p.program("1")}), "0");
        // Its own working folder is another one.
        QCOMPARE(handedOverBy(p, {"../program/2"}, p.home()), "0");
        // In quotes; and without them the words of one name.
        QCOMPARE(handedOverBy(p, {'"' + p.program("3 of them.dat") + '"'}), "0");
        QCOMPARE(p.terminated(), "0");
        QCOMPARE(handedOver(p), 3);
        QVERIFY(has(p, 1) && has(p, 2) && has(p, 3));
    }

    void aMovieReachesIt()
    {
        RunningProgram p;
        QVERIFY(p.start());
        p.write("no movie.PVM", "nothing");
        // A box says so where the instance that runs reads it.
        QCOMPARE(handedOverBy(p, {p.program("no movie.PVM")}), "0");
        QTRY_VERIFY(!RunningProgram::tell("xdotool",
                                          {"search", "--all", "--onlyvisible", "--pid",
                                           QString::number(p.process.processId()), "--name", "."})
                         .trimmed()
                         .split('\n')
                         .filter(QRegularExpression("^(?!" + p.window + "$)"))
                         .isEmpty());
        QCOMPARE(p.terminated(), "0");
    }

    void whatIsHandedOverIsNeitherSavedNorShown()
    {
        RunningProgram p;
        p.write("1", listOf(1));
        QVERIFY(p.start());
        QCOMPARE(handedOverBy(p, {p.program("1")}), "0");
        // Neither that start nor the instance that runs has written anything yet.
        QCOMPARE(namesIn(p.program()), (QStringList{"1", "pevora"}));
        QCOMPARE(p.terminated(), "0");
    }

    void withoutAFileItIsASecondInstance()
    {
        RunningProgram p;
        QVERIFY(p.start());
        for (const QStringList& arguments : {QStringList(), QStringList("")}) {
            QProcess& second = p.startAnother(arguments);
            QTRY_VERIFY(!RunningProgram::windowOf(second).isEmpty());
            QVERIFY(p.process.state() == QProcess::Running);
            QCOMPARE(RunningProgram::terminated(second), "0");
            QVERIFY(p.preferences().contains("COUNT=0"));
        }
        QCOMPARE(p.terminated(), "0");
    }

    void eightyStartsAtOnce_data()
    {
        const Rows<bool> row("beforeItRuns");
        row("beside one that runs", false);
        row("where none runs yet", true);
    }

    void eightyStartsAtOnce()
    {
        QFETCH(bool, beforeItRuns);
#ifdef __SANITIZE_ADDRESS__ // Each of them needs a multiple of the memory.
        constexpr int starts = 8;
#else
        constexpr int starts = 80;
#endif
        RunningProgram p;
        for (int i = 0; i < starts; ++i)
            p.write(QString::number(i), listOf(i));
        if (!beforeItRuns)
            QVERIFY(p.start());

        QList<QProcess*> senders;
        for (int i = 0; i < starts; ++i)
            senders << &p.startAnother({p.program(QString::number(i))});
        const auto running = [&] {
            senders.removeIf(
                [](const QProcess* one) { return one->state() == QProcess::NotRunning; });
            return senders.size();
        };
        // Where none ran before, one of them is the first. The others end one by one.
        for (qsizetype left = running(); left > (beforeItRuns ? 1 : 0); left = running())
            QTRY_VERIFY(running() < left);
        QCOMPARE(running(), beforeItRuns ? 1 : 0);
        QProcess& first = beforeItRuns ? *senders.first() : p.process;
        QTRY_VERIFY(!RunningProgram::windowOf(first).isEmpty());
        QCOMPARE(RunningProgram::terminated(first), "0");
        QCOMPARE(handedOver(p), starts);
        for (int i = 0; i < starts; ++i)
            QVERIFY2(has(p, i), qPrintable(QString("%1 is missing").arg(i)));
    }

    void afterAKillTheNextStartServes()
    {
        RunningProgram p;
        p.write("1", listOf(1));
        p.write("2", listOf(2));
        QProcess& killed = p.startAnother({});
        QTRY_VERIFY(!RunningProgram::windowOf(killed).isEmpty());
        QCOMPARE(handedOverBy(p, {p.program("1")}), "0");
        killed.kill();
        QVERIFY(RunningProgram::ends(killed));
        QVERIFY(!QDir(p.home("pevora")).isEmpty(QDir::AllEntries | QDir::System));

        // The next one is the first, whether it is given a file or not.
        QVERIFY(p.start({p.program("1")}));
        QCOMPARE(handedOverBy(p, {p.program("2")}), "0");
        QCOMPARE(p.terminated(), "0");
        QVERIFY(has(p, 1) && has(p, 2));
    }

    void theOtherInstanceTakesOver_data()
    {
        const Rows<bool> row("byKill");
        row("when the first ends", false);
        row("when the first is killed", true);
    }

    void theOtherInstanceTakesOver()
    {
        QFETCH(bool, byKill);
        RunningProgram p;
        p.write("1", listOf(1));
        QProcess& first = p.startAnother({});
        QTRY_VERIFY(!RunningProgram::windowOf(first).isEmpty());
        QVERIFY(p.start());
        if (byKill)
            first.kill();
        else
            RunningProgram::terminate(first);
        QVERIFY(RunningProgram::ends(first));
        // Else the third could be the one that takes over.
        QTRY_VERIFY(contentOf("/proc/net/unix").contains(p.home().toUtf8()));
        // With a display: where nobody served, it would stay.
        QProcess& sender = p.startAnother({p.program("1")});
        QCOMPARE(RunningProgram::ended(sender), "0");
        QCOMPARE(p.terminated(), "0");
        QVERIFY(has(p, 1));
    }

    void besideOneThatHangsItEndsAllTheSame()
    {
        RunningProgram p;
        p.write("1", listOf(1));
        QVERIFY(p.start());
        QCOMPARE(::kill(pid_t(p.process.processId()), SIGSTOP), 0);
        // With a display: where it took itself for the first, it would stay.
        QCOMPARE(RunningProgram::ended(p.startAnother({p.program("1")})), "0");
        QCOMPARE(::kill(pid_t(p.process.processId()), SIGCONT), 0);
        // What it was told meanwhile it does when it can: it hears one after the other.
        p.write("2", listOf(2));
        QCOMPARE(handedOverBy(p, {p.program("2")}), "0");
        QCOMPARE(p.terminated(), "0");
        QVERIFY(has(p, 1) && has(p, 2));
    }

    void theWindowStaysAsItIs()
    {
        RunningProgram p;
        p.write("1", listOf(1));
        // Without a tray icon a minimised window stays one.
        p.writePreferences("[VIEW]\r\nTRAY=False\r\n");
        QVERIFY(p.start());
        QTRY_VERIFY(p.property("WM_STATE").contains("Normal"));
        RunningProgram::tell("xdotool", {"windowminimize", p.window});
        QTRY_VERIFY(p.property("WM_STATE").contains("Iconic"));
        QCOMPARE(handedOverBy(p, {p.program("1")}), "0");
        // Whatever that did to the window, the window manager has done it before it shows another
        // one that comes later.
        QCOMPARE(handedOverBy(p, {p.program("1")}), "0");
        QWidget later;
        later.show();
        QVERIFY(waitForExposed(&later));
        QVERIFY(p.property("WM_STATE").contains("Iconic"));
        QCOMPARE(p.property("WM_NAME"), "WM_NAME(STRING) = \"Pevora\"");
        QCOMPARE(p.terminated(), "0");
        QVERIFY(has(p, 1));
    }

    void theDesktopsSessionStartsItAgain()
    {
        RunningProgram p;
        p.write("-session 1", listOf(1));
        p.process.setWorkingDirectory(p.program());
        QVERIFY(p.start({"-session", "1"}));
        QCOMPARE(p.terminated(), "0");
        QCOMPARE(handedOver(p), 0);
    }
};

QTEST_MAIN(ProgramSecondStartTest)
#include "tst_ProgramSecondStart.moc"
