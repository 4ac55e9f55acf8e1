// Where instances meet: a folder that only the user reaches, or none.

#include "platform/files/PrivateFolder.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <functional>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr uid_t AnotherUser = 65534;

unsigned modeOf(const QString& path)
{
    struct stat info = {};
    return ::lstat(path.toLocal8Bit().constData(), &info) == 0 ? info.st_mode & 07777U : 0;
}

void setMode(const QString& path, mode_t mode)
{
    QCOMPARE(::chmod(path.toLocal8Bit().constData(), mode), 0);
}

void giveAway(const QString& path)
{
    QCOMPARE(::chown(path.toLocal8Bit().constData(), AnotherUser, AnotherUser), 0);
}

/// What may stand at a path instead of the user's own folder.
using Make = std::function<void(const QString& path)>;

void makeFolder(const QString& path, mode_t mode)
{
    QVERIFY(QDir().mkdir(path));
    setMode(path, mode);
}

} // namespace

class PrivateFolderTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        makeFolder(runtime(), 0700);
        qputenv("XDG_RUNTIME_DIR", runtime().toLocal8Bit());
        qputenv("XDG_CACHE_HOME", cache().toLocal8Bit());
    }

    void isMadeInTheRuntimeFolder()
    {
        QCOMPARE(privateFolder(), runtime("/pevora"));
        QCOMPARE(modeOf(runtime("/pevora")), 0700U);
        QVERIFY(!QFileInfo::exists(cache()));
    }

    void isUsedAgain()
    {
        makeFolder(runtime("/pevora"), 0700);
        writeFile(runtime("/pevora/kept"), {});
        QCOMPARE(privateFolder(), runtime("/pevora"));
        QVERIFY(QFile::exists(runtime("/pevora/kept")));
    }

    void whatIsNotTheUsersOwnIsLeftAlone_data()
    {
        const Rows<Make, bool> named("make", "needsRoot");
        const auto row = [&](const char* name, const Make& make, bool needsRoot = false) {
            named(name, make, needsRoot);
        };
        row("others look in", [](const QString& path) { makeFolder(path, 0755); });
        row("the group writes", [](const QString& path) { makeFolder(path, 0770); });
        row("the user has no right", [](const QString& path) { makeFolder(path, 0500); });
        row("sticky", [](const QString& path) { makeFolder(path, 01700); });
        row("a file", [](const QString& path) {
            writeFile(path, {});
            setMode(path, 0700);
        });
        row("a link to a folder of the user's", [](const QString& path) {
            makeFolder(path + "-elsewhere", 0700);
            QVERIFY(QFile::link(path + "-elsewhere", path));
        });
        row("a dangling link",
            [](const QString& path) { QVERIFY(QFile::link(path + "-elsewhere", path)); });
        row(
            "another user's",
            [](const QString& path) {
                makeFolder(path, 0700);
                giveAway(path);
            },
            true);
    }

    void whatIsNotTheUsersOwnIsLeftAlone()
    {
        QFETCH(Make, make);
        QFETCH(bool, needsRoot);
        if (needsRoot && geteuid() != 0)
            QSKIP("Only root can give a folder away.");
        make(runtime("/pevora"));
        const unsigned mode = modeOf(runtime("/pevora"));
        QCOMPARE(privateFolder(), "");
        QCOMPARE(modeOf(runtime("/pevora")), mode);
        // Nor is there a second choice: the instances of one user must not part.
        QVERIFY(!QFileInfo::exists(cache()));
        QVERIFY(QDir(runtime("/pevora-elsewhere")).isEmpty());
    }

    void withoutARuntimeFolderItIsInTheUsersCache_data()
    {
        const Rows<QByteArray, int, bool> row("variable", "mode", "isAnothers");
        row("unset", {}, 0700, false);
        row("empty", "", 0700, false);
        row("relative", "run", 0700, false);
        row("missing", "missing", 0700, false);
        row("all write into it", "own", 0777, false);
        row("as the temporary folder", "own", 01777, false);
        row("the group writes into it", "own", 0770, false);
        row("another user's", "own", 0700, true);
    }

    void withoutARuntimeFolderItIsInTheUsersCache()
    {
        QFETCH(QByteArray, variable);
        QFETCH(int, mode);
        QFETCH(bool, isAnothers);
        if (variable.isNull())
            qunsetenv("XDG_RUNTIME_DIR");
        else if (variable == "missing")
            qputenv("XDG_RUNTIME_DIR", runtime("-missing").toLocal8Bit());
        else if (variable != "own")
            qputenv("XDG_RUNTIME_DIR", variable);
        // In which the relative one would be a folder of the user's.
        const QString before = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_scratch->path()));
        const auto back = qScopeGuard([&] { QDir::setCurrent(before); });
        setMode(runtime(), mode_t(mode));
        if (isAnothers && geteuid() != 0)
            QSKIP("Only root can give a folder away.");
        if (isAnothers)
            giveAway(runtime());
        QCOMPARE(privateFolder(), cache("/pevora"));
        QCOMPARE(modeOf(cache()), 0700U);
        QCOMPARE(modeOf(cache("/pevora")), 0700U);
        QVERIFY(!QFileInfo::exists(runtime("/pevora")));
    }

    void withoutAnyThereIsNone()
    {
        qunsetenv("XDG_RUNTIME_DIR");
        makeFolder(cache(), 0777);
        QCOMPARE(privateFolder(), "");
        qputenv("XDG_CACHE_HOME", (m_scratch->path() + "/no/cache").toLocal8Bit());
        QCOMPARE(privateFolder(), "");
    }

private:
    QString runtime(const QString& name = {}) const { return m_scratch->path() + "/run" + name; }
    QString cache(const QString& name = {}) const { return m_scratch->path() + "/cache" + name; }

    std::unique_ptr<QTemporaryDir> m_scratch;
};

QTEST_GUILESS_MAIN(PrivateFolderTest)
#include "tst_PrivateFolder.moc"
