// Two instances of the program that save at the same moment, as processes of their own.

#include "camlist/CameraListFile.h"
#include "camlist/Favourites.h"
#include "settings/Ini.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <array>

#include <sys/wait.h>
#include <unistd.h>

namespace {

/// What an instance does: loads, then changes and saves. `number` is its own.
using Load = void (*)(const QString& folder);
using Save = bool (*)(int number);

CameraListFile* theList = nullptr;
Favourites* theFavourites = nullptr;
QString thePath;

QByteArray listOf(int cameras)
{
    QByteArray line = "Cities\xFFHarbour\xFFURL";
    for (int i = 1; i < cameras; ++i)
        line += "\xFF"
                "Cities\xFFHarbour\xFFURL" +
                QByteArray::number(i);
    return line;
}

void loadList(const QString& folder)
{
    theList = new CameraListFile(folder); // the process ends with it
    theList->read();
}

bool saveList(int number)
{
    const QByteArray own = "\xFF"
                           "Mine\xFFOne\xFFown" +
                           QByteArray::number(number);
    return theList->saveMerged(theList->base() + own);
}

void loadFavourites(const QString& folder)
{
    thePath = folder + "/pref.ini";
    theFavourites = new Favourites;
    theFavourites->load(thePath);
}

bool saveFavourites(int number)
{
    const QString own = "own" + QString::number(number);
    theFavourites->add(own, own);
    WriteToINI("VIEW", own, "True", thePath);
    return theFavourites->save(thePath) && FlushINI();
}

/// Starts an instance that has loaded when this returns, and saves when `go` is closed.
pid_t started(Load load, Save save, const QString& folder, int number, const std::array<int, 2>& go)
{
    std::array<int, 2> ready = {};
    if (pipe(ready.data()) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        close(go[1]);
        load(folder);
        char nothing = 0;
        if (write(ready[1], "r", 1) != 1 || read(go[0], &nothing, 1) != 0)
            _exit(2);
        _exit(save(number) ? 0 : 1);
    }
    char nothing = 0;
    const bool isReady = read(ready[0], &nothing, 1) == 1;
    close(ready[0]);
    close(ready[1]);
    return isReady ? child : -1;
}

/// Whether two instances that save at one moment both could.
bool bothSave(Load load, Save save, const QString& folder)
{
    std::array<int, 2> go = {};
    if (pipe(go.data()) != 0)
        return false;
    const std::array<pid_t, 2> children = {started(load, save, folder, 0, go),
                                           started(load, save, folder, 1, go)};
    close(go[0]);
    close(go[1]);
    bool areGood = true;
    for (const pid_t child : children) {
        int status = 0;
        areGood = child > 0 && waitpid(child, &status, 0) == child && status == 0 && areGood;
    }
    return areGood;
}

} // namespace

class TwoInstancesTest : public QObject
{
    Q_OBJECT
private slots:
    void bothListsAreSaved()
    {
        const QByteArray base = listOf(2'000);
        for (int round = 0; round < 40; ++round) {
            const ScratchFile file("list.dat");
            file.setContent(base + "\r\n");
            QVERIFY(bothSave(loadList, saveList, file.folder()));
            const QByteArray content = file.content();
            for (const char* own : {"\xFFown0", "\xFFown1"})
                QVERIFY2(content.contains(own), qPrintable(QString("round %1").arg(round)));
            QVERIFY(content.startsWith(base + '\xFF'));
            QCOMPARE(file.names(), QStringList("list.dat"));
        }
    }

    void bothSaveAFirstList()
    {
        for (int round = 0; round < 40; ++round) {
            const ScratchFile file("list.dat");
            QVERIFY(bothSave(
                loadList,
                [](int number) {
                    return bool(
                        theList->saveMerged("Mine\xFFOne\xFFown" + QByteArray::number(number)));
                },
                file.folder()));
            QVERIFY(file.content().contains("own0") && file.content().contains("own1"));
        }
    }

    void bothFavouritesAreSaved()
    {
        QByteArray base = "[FAVORITES]\r\n";
        for (int i = 0; i < 300; ++i) {
            const QByteArray n = QByteArray::number(i);
            base += "NAME[" + n + "]=a\r\nURL[" + n + "]=k" + n + "\r\n";
        }
        for (int round = 0; round < 40; ++round) {
            const ScratchFile file("pref.ini");
            file.setContent(base + "COUNT=300\r\n");
            QVERIFY(bothSave(loadFavourites, saveFavourites, file.folder()));
            Favourites found;
            found.load(file.path());
            QCOMPARE(found.entries().size(), 302);
            // The other keys of both, too.
            for (const char* own : {"own0", "own1"})
                QCOMPARE(GetFromINI("VIEW", own, file.path()), "True");
        }
    }
};

QTEST_GUILESS_MAIN(TwoInstancesTest)
#include "tst_TwoInstances.moc"
