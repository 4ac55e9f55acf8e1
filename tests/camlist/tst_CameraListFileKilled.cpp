#include "camlist/CameraListFile.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <QElapsedTimer>

#include <algorithm>
#include <csignal>
#include <ctime>

#include <sys/wait.h>
#include <unistd.h>

static const QByteArray& ours(int number)
{
    static const QByteArray lines[] = {QByteArray("Cities\xFFHarbour\xFFhttp").repeated(12'000),
                                       QByteArray("Sights\xFFTower\xFFwww").repeated(8'000)};
    return lines[number % 2];
}
static const QByteArray Theirs = QByteArray("their\xFFlist\xFFk").repeated(5'000);

/// Puts the file `name` of that folder in the place of list.dat, at one moment.
static bool putInPlace(const QString& folder, const char* name, const QByteArray& bytes)
{
    QFile file(folder + "/" + name);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    // A list that nobody reads is too long, and takes no room.
    if (bytes.isEmpty() ? !file.resize(CameraListFile::MaxBytes + 1)
                        : file.write(bytes) != bytes.size())
        return false;
    file.close();
    return rename(qPrintable(file.fileName()), qPrintable(folder + "/list.dat")) == 0;
}

/// Saves one list; every second time another program was there before.
using Save = bool (*)(CameraListFile& list, const QString& folder, int number);

static bool saveOwn(CameraListFile& list, const QString&, int number)
{
    return list.write(ours(number));
}

static bool saveOverAnothers(CameraListFile& list, const QString& folder, int number)
{
    return (number % 2 || putInPlace(folder, "theirs", Theirs)) && list.write(ours(number));
}

static bool saveOverUnreadable(CameraListFile& list, const QString& folder, int number)
{
    return (number % 2 || (putInPlace(folder, "theirs", {}) && !list.read())) &&
           list.write(ours(number));
}

static bool saveCarelessly(CameraListFile&, const QString& folder, int number)
{
    QFile file(folder + "/list.dat");
    const QByteArray bytes = ours(number) + "\r\n";
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Lets the system kill this process after so many nanoseconds.
static bool killLater(qint64 ns)
{
    sigevent event = {};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer = {};
    itimerspec time = {};
    time.it_value = {time_t(ns / 1'000'000'000), long(ns % 1'000'000'000)};
    return timer_create(CLOCK_MONOTONIC, &event, &timer) == 0 &&
           timer_settime(timer, 0, &time, nullptr) == 0;
}

/// Starts a process that saves again and again until it is killed. Returns whether it was.
static bool isKilledWhileSaving(Save save, const QString& folder, qint64 afterNs)
{
    const pid_t child = fork();
    if (child == 0) {
        CameraListFile list(folder);
        list.read();
        bool good = killLater(afterNs);
        for (int i = 0; good && i < 10'000; ++i)
            good = save(list, folder, i);
        _exit(good ? 1 : 2);
    }
    int status = 0;
    return child > 0 && waitpid(child, &status, 0) == child && WIFSIGNALED(status) &&
           WTERMSIG(status) == SIGKILL;
}

/// What a folder held after a kill.
struct Found
{
    int ours = 0;
    int theirs = 0;
    int cut = 0; ///< Or missing.
    int cutBackups = 0;
    qsizetype mostFiles = 0;
};

static bool isTooLong(const QString& path)
{
    return QFileInfo(path).size() == CameraListFile::MaxBytes + 1;
}

static bool isOurs(const QByteArray& content)
{
    return content == ours(0) + "\r\n" || content == ours(1) + "\r\n";
}

static bool isWhole(const QString& path, Found& found)
{
    if (isTooLong(path)) {
        ++found.theirs;
        return true;
    }
    const QByteArray content = contentOf(path);
    found.theirs += content == Theirs;
    found.ours += isOurs(content);
    return content == Theirs || isOurs(content);
}

/// Kills so many saving processes one after the other, each at a moment of its own.
static Found foundAfterKills(Save save, int count)
{
    constexpr quint32 seed = 20260804;
    QRandomGenerator random(seed);
    ScratchFile file("list.dat");
    CameraListFile list(file.folder());
    // A moment within some two saves, however long they take here.
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 4; ++i) {
        if (!save(list, file.folder(), i))
            qFatal("cannot save");
    }
    const qint64 span = timer.nsecsElapsed() / 2;

    Found found;
    for (int i = 0; i < count; ++i) {
        const qint64 moment = 1 + qint64(random.generateDouble() * double(span));
        if (!isKilledWhileSaving(save, file.folder(), moment))
            qFatal("not killed");
        found.cut += !isWhole(file.path(), found);
        Found backup;
        const QString path = file.path() + ".bak";
        found.cutBackups += QFile::exists(path) && !isWhole(path, backup);
        found.mostFiles = std::max(
            found.mostFiles, QDir(file.folder()).entryList(QDir::Files | QDir::Hidden).size());
    }
    qInfo("seed %u, killed within %.1f ms: %d times our list, %d times theirs, %d cut; at most "
          "%lld files",
          seed, double(span) / 1e6, found.ours, found.theirs, found.cut, qint64(found.mostFiles));
    return found;
}

/// A program that is killed at any moment of a save leaves the old list or the new one.
class CameraListFileKilledTest : public QObject
{
    Q_OBJECT
private slots:
    void theOldListOrTheNewOneIsThere_data()
    {
        const Rows<Save, int> row("save", "count");
        row("own list", Save(saveOwn), 200);
        row("another's list is kept beside", Save(saveOverAnothers), 100);
        row("an unreadable list is kept beside", Save(saveOverUnreadable), 100);
    }

    void theOldListOrTheNewOneIsThere()
    {
        QFETCH(Save, save);
        QFETCH(int, count);
        const Found found = foundAfterKills(save, count);
        QCOMPARE(found.cut, 0);
        QCOMPARE(found.cutBackups, 0);
        QCOMPARE(found.ours + found.theirs, count);
        QVERIFY(found.ours > 0);
        QCOMPARE(found.theirs > 0, save != saveOwn);
    }

    /// The same look at a careless program finds the cut lists.
    void whatIsCutIsSeen()
    {
        int cut = 0;
        for (int round = 0; round < 40 && cut <= 5; ++round)
            cut += foundAfterKills(saveCarelessly, 50).cut;
        QVERIFY(cut > 5);
    }
};

QTEST_GUILESS_MAIN(CameraListFileKilledTest)
#include "tst_CameraListFileKilled.moc"
