// Which folder of src/ may include which: arrows point one way.

#include <QtTest/QtTest>

static const QHash<QString, QSet<QString>>& mayInclude()
{
    // A folder always knows itself, shared/, settings/ and platform/, but for the rows of these
    // three, which say all that they know.
    static const QHash<QString, QSet<QString>> table = {
        {"shared", {"shared", "platform"}},
        {"platform", {"platform", "shared"}},
        {"settings", {"settings", "shared", "platform"}},
        {"display", {"display", "shared", "settings", "platform"}},
        {"viewer", {"viewer", "display", "shared", "settings", "platform", "tray/frmMovie.h"}},
        {"camlist", {"camlist", "shared", "settings", "platform"}},
        {"directory", {"directory", "shared", "settings", "platform"}},
        {"tray", {"tray", "shared", "settings", "platform"}},
        {"shell",
         {"shell", "viewer", "display", "camlist", "directory", "tray", "shared", "settings",
          "platform"}},
        {"", // main.cpp
         {"shell", "shared", "settings", "platform"}},
    };
    return table;
}

static QStringList sources()
{
    QStringList found;
    QDirIterator files(PEVORA_SOURCE_DIR "/src", {"*.h", "*.cpp"}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext())
        found.append(files.next());
    return found;
}

static QStringList includesOf(const QString& path, const QString& pattern)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QString text = QString::fromUtf8(file.readAll());
    QStringList found;
    const QRegularExpression include(pattern, QRegularExpression::MultilineOption);
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
            const QString relative = QDir(PEVORA_SOURCE_DIR "/src").relativeFilePath(path);
            const QString folder = relative.contains('/') ? relative.section('/', 0, 0) : QString();
            QVERIFY2(mayInclude().contains(folder), qPrintable("unknown folder of " + relative));
            const QSet<QString> allowed = mayInclude().value(folder);
            for (const QString& header : includesOf(path, R"re(^\s*#\s*include\s+"([^"]+)")re")) {
                if (header.endsWith(".moc"))
                    continue;
                ++arrows;
                QVERIFY2(QFileInfo::exists(PEVORA_SOURCE_DIR "/src/" + header),
                         qPrintable(relative + " includes " + header + ", not named from src/"));
                QVERIFY2(allowed.contains(header.section('/', 0, 0)) || allowed.contains(header),
                         qPrintable(relative + " may not include " + header));
            }
        }
        QVERIFY(arrows > 50);
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
            for (const QString& header : includesOf(path, R"re(^\s*#\s*include\s+<([^>]+)>)re"))
                QVERIFY2(!system.match(header).hasMatch(),
                         qPrintable(path + " includes " + header));
            QFile file(path);
            QVERIFY(file.open(QIODevice::ReadOnly));
            QVERIFY2(!file.readAll().contains("Q_OS_"), qPrintable(path + " asks for the system"));
        }
    }
};

QTEST_GUILESS_MAIN(IncludesTest)
#include "tst_Includes.moc"
