// Which folder of src/ may include which, and which part of Qt: arrows point one way. Which
// file may write files, and which test may look at the clock.

#include "support/Paths.h"
#include "support/ScratchFile.h"

#include <QDirIterator>
#include <QLibraryInfo>

#include <algorithm>

/// What each folder of src/ may include beside itself. What is not here does not exist.
static const QHash<QString, QSet<QString>>& mayInclude()
{
    static const QHash<QString, QSet<QString>> table = {
        // Qt Core alone
        {"platform", {}},
        {"platform/files", {}},
        {"shared", {"platform", "platform/files"}},
        {"cameras", {"shared"}},
        // Qt Network and Qt Gui
        {"network", {"cameras", "shared", "platform"}},
        {"picture/headers", {"shared"}},
        {"picture", {"picture/headers", "shared"}},
        // Qt Widgets
        {"widgets", {"cameras", "shared"}},
        {"settings", {"widgets", "shared", "platform/files"}},
        {"display", {"picture", "widgets", "shared", "platform"}},
        {"viewer/surface", {"display", "widgets", "cameras", "shared"}},
        {"viewer/history", {"viewer/surface", "display", "picture", "cameras", "shared"}},
        {"viewer/fetch", {"viewer/history", "network", "picture", "cameras", "shared"}},
        {"viewer/movie", {"viewer/history", "viewer/surface", "picture", "widgets", "shared"}},
        {"viewer",
         {"viewer/fetch", "viewer/movie", "viewer/history", "viewer/surface", "display", "picture",
          "widgets", "cameras", "shared"}},
        {"camlist", {"widgets", "settings", "cameras", "shared", "platform/files"}},
        {"directory", {"network", "widgets", "settings", "cameras", "shared"}},
        {"instance", {"shared", "platform/files"}},
        {"tray", {"widgets", "shared"}},
        {"shell/notices", {"viewer", "viewer/fetch", "camlist", "widgets", "cameras", "shared"}},
        {"shell/parts", {"viewer", "camlist", "widgets", "cameras", "shared"}},
        {"shell",
         {"shell/parts", "shell/notices", "viewer", "camlist", "directory", "instance", "tray",
          "widgets", "settings", "network", "cameras", "shared"}},
        {"", {"shell", "instance", "network", "shared", "platform"}}, // main.cpp
    };
    return table;
}

/// What in a source writes to a disk, or would.
static const QRegularExpression& writing()
{
    static const QRegularExpression words(
        "\\b(QSaveFile|QTemporaryFile|QTemporaryDir|QSettings|QImageWriter|EGifOpenFile\\w*|"
        "(QIODevice(Base)?|QFile)::(WriteOnly|ReadWrite|Append|Truncate|NewOnly|copy)|"
        "O_WRONLY|O_RDWR|O_CREAT|fopen|o?fstream|CreateFile[AW]?)\\b|\\.save\\((?!\\))");
    return words;
}

/// The files that matter are written by replaceFile alone, which is tested with a full disk. Who
/// writes beside it loses nothing that anybody wants to keep, or does not write to a disk at all.
static const QHash<QString, QSet<QString>>& mayWrite()
{
    static const QHash<QString, QSet<QString>> table = {
        {"shared/ReplaceFile.cpp", {"QSaveFile", "QIODevice::WriteOnly"}},
        // Whether a folder can be written: the file goes at once.
        {"shared/AppFolder.cpp", {"QTemporaryFile"}},
        // Copies of what is in memory, for whoever looks into the folder.
        {"shared/TempFiles.cpp", {"QIODevice::WriteOnly", "QIODevice::NewOnly"}},
        {"platform/files/FileOwner_linux.cpp", {"O_RDWR", "O_CREAT", "QIODevice::ReadWrite"}},
        {"platform/files/FileOwner_win.cpp", {"QIODevice::ReadWrite"}},
        // What the preferences and favourites call their own saving, which goes by the above.
        {"shell/LastSave.cpp", {".save("}},
        // A folder for the files that are dragged out; they are written as above.
        {"viewer/PictureDrag.h", {"QTemporaryDir"}},
        // Into memory.
        {"picture/SaveImage.cpp", {"QImageWriter", "QIODevice::WriteOnly"}},
        // An empty file that is locked; reading alone; a random number made anew where it is lost.
        {"platform/files/FileLock_linux.cpp", {"O_RDWR", "O_CREAT"}},
        {"platform/files/FileLock_win.cpp", {"CreateFileW"}},
        {"platform/files/FileStamp_win.cpp", {"CreateFileW"}},
        {"platform/files/PrivateFolder_win.cpp", {"QIODevice::WriteOnly", "QIODevice::NewOnly"}},
    };
    return table;
}

/// What tells a test how long something took, or lets it wait for a time and for nothing else.
static const QRegularExpression& clocks()
{
    static const QRegularExpression words(
        "\\b(QElapsedTimer|std::clock(?!_t)|\\w*steady_clock|system_clock|high_resolution_clock|"
        "clock_gettime|getrusage|ru_utime|currentMSecsSinceEpoch|QTest::qWait(?!\\w)|QTest::qSleep|"
        "QThread::m?sleep|sleep_for|QBENCHMARK)\\b");
    return words;
}

static const QHash<QString, QSet<QString>>& mayLookAtTheClock()
{
    static const QHash<QString, QSet<QString>> table = {
        // Compares work with work of the same run.
        {"support/Cost.cpp", {"std::clock"}},
        {"support/ChildCost.cpp", {"ru_utime"}},
        {"support/RunningProgram.cpp", {"clock_gettime"}},
        {"viewer/fetch/tst_FetchFloods.cpp", {"std::clock"}},
        // Finds a moment within a save.
        {"camlist/tst_CameraListFileKilled.cpp", {"QElapsedTimer"}},
    };
    return table;
}

static QString folderOf(const QString& path)
{
    return path.contains('/') ? path.section('/', 0, -2) : QString();
}

static QStringList sources(const QString& folder = "src")
{
    QStringList found;
    QDirIterator files(sourcePath(folder), {"*.h", "*.cpp"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        found.append(files.next());
    return found;
}

/// The headers that a source includes in quotes, or with `"<([^>]+)>"` in angle brackets.
static QStringList includesOf(const QString& path, const QString& header = "\"([^\"]+)\"")
{
    const QString text = QString::fromUtf8(contentOf(path));
    QStringList found;
    const QRegularExpression include("^\\s*#\\s*include\\s+" + header,
                                     QRegularExpression::MultilineOption);
    for (auto all = include.globalMatch(text); all.hasNext();)
        found.append(all.next().captured(1));
    return found;
}

class IncludesTest : public QObject
{
    Q_OBJECT
private slots:
    void foldersIncludeOnlyWhatTheyMayKnow()
    {
        int arrows = 0;
        for (const QString& path : sources()) {
            const QString relative = QDir(sourcePath("src")).relativeFilePath(path);
            const QString folder = folderOf(relative);
            QVERIFY2(mayInclude().contains(folder), qPrintable("unknown folder of " + relative));
            const QSet<QString> allowed = mayInclude().value(folder);
            for (const QString& header : includesOf(path)) {
                if (header.endsWith(".moc"))
                    continue;
                ++arrows;
                QVERIFY2(QFileInfo::exists(sourcePath("src/") + header),
                         qPrintable(relative + " includes " + header + ", not named from src/"));
                const QString other = folderOf(header);
                QVERIFY2(other == folder || allowed.contains(other),
                         qPrintable(relative + " may not include " + header));
            }
        }
        QVERIFY(arrows > 50);
    }

    /// No circle: a folder does not reach itself through those that it may include.
    void arrowsPointOneWay()
    {
        QHash<QString, QSet<QString>> left = mayInclude();
        while (!left.isEmpty()) {
            const auto reachesNone = [&](const QString& folder) {
                return !left.value(folder).intersects(QSet(left.keyBegin(), left.keyEnd()));
            };
            const QStringList folders = left.keys();
            const auto last = std::find_if(folders.begin(), folders.end(), reachesNone);
            QVERIFY2(last != folders.end(), qPrintable("in a circle: " + folders.join(", ")));
            left.remove(*last);
        }
    }

    /// What is Qt Core alone can be shared with a program that has no window.
    void lowFoldersUseOneLevelOfQt()
    {
        const QHash<QString, QStringList> modules = {
            {"shared", {"QtCore"}},
            {"cameras", {"QtCore"}},
            {"network", {"QtCore", "QtNetwork"}},
            {"picture", {"QtCore", "QtGui"}},
            {"picture/headers", {"QtCore", "QtGui"}},
        };
        const QDir qt = QLibraryInfo::path(QLibraryInfo::HeadersPath);
        int headers = 0;
        for (const QString& path : sources()) {
            const QString folder = folderOf(QDir(sourcePath("src")).relativeFilePath(path));
            if (!modules.contains(folder))
                continue;
            for (const QString& header : includesOf(path, "<(Q[^>]+)>")) {
                ++headers;
                const QStringList allowed = modules.value(folder);
                QVERIFY2(std::any_of(allowed.begin(), allowed.end(),
                                     [&](const QString& module) {
                                         return qt.exists(module + "/" + header);
                                     }),
                         qPrintable(path + " includes " + header));
            }
        }
        QVERIFY(headers > 50);
    }

    void onlyPlatformKnowsTheOperatingSystem()
    {
        static const QRegularExpression system(
            "^(X11/|xcb/|unistd\\.h|fcntl\\.h|signal\\.h|csignal|sys/|windows\\.h|shellapi\\.h|"
            "QtDBus|QDBus)");
        for (const QString& path : sources()) {
            if (path.contains("/src/platform/")) {
                // Headers of platform/ are read by everybody.
                if (path.endsWith(".cpp") || path.contains("_linux") || path.contains("_win"))
                    continue;
            }
            for (const QString& header : includesOf(path, "<([^>]+)>"))
                QVERIFY2(!system.match(header).hasMatch(),
                         qPrintable(path + " includes " + header));
            QVERIFY2(!contentOf(path).contains("Q_OS_"), qPrintable(path + " asks for the system"));
        }
    }

    void onlyReplaceFileWritesWhatMatters() { compareWords("src", writing(), mayWrite()); }

    void onlyOpenAddressReachesOtherPrograms()
    {
        static const QRegularExpression words(
            "\\b(QDesktopServices|setOpenExternalLinks|xdg-open|ShellExecute\\w*|gtk_show_uri)\\b");
        compareWords("src", words, {{"widgets/OpenAddress.cpp", {"QDesktopServices"}}});
    }

    void testsDoNotJudgeByTheClock() { compareWords("tests", clocks(), mayLookAtTheClock()); }

private:
    /// Each source of `folder` has just those words that the table has for it.
    static void compareWords(const QString& folder, const QRegularExpression& words,
                             const QHash<QString, QSet<QString>>& allowed)
    {
        static const QRegularExpression noCode("//[^\n]*|^#include[^\n]*",
                                               QRegularExpression::MultilineOption);
        QHash<QString, QSet<QString>> found;
        for (const QString& path : sources(folder)) {
            if (path.endsWith("tst_Includes.cpp"))
                continue; // the tables themselves
            const QString code = QString::fromUtf8(contentOf(path)).remove(noCode);
            for (auto all = words.globalMatch(code); all.hasNext();)
                found[QDir(sourcePath(folder)).relativeFilePath(path)] << all.next().captured();
        }
        QSet<QString> files(found.keyBegin(), found.keyEnd());
        for (const QString& file : files.unite({allowed.keyBegin(), allowed.keyEnd()}))
            QVERIFY2(found.value(file) == allowed.value(file),
                     qPrintable(file + " has " + found.value(file).values().join(", ")));
    }
};

QTEST_GUILESS_MAIN(IncludesTest)
#include "tst_Includes.moc"
