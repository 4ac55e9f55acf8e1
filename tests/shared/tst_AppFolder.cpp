#include "shared/AppFolder.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <memory>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

/// What `id` tells of the user who runs this.
static QByteArray told(const QString& option)
{
    QProcess id;
    id.start(u"id"_s, {option});
    return id.waitForFinished() ? id.readAllStandardOutput() : QByteArray();
}

class AppFolderTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_scratch = std::make_unique<QTemporaryDir>();
        QVERIFY(m_scratch->isValid());
    }

    void aPortableCopyKeepsItsFilesBesideItself()
    {
        QVERIFY(make(u"copy"_s));
        QCOMPARE(applicationFolder(scratch(u"copy"_s), scratch(u"data/pevora"_s)),
                 scratch(u"copy"_s));
        QCOMPARE(namesIn(scratch(u"copy"_s)), QStringList());
        QVERIFY(!QFileInfo::exists(scratch(u"data"_s)));
    }

    void anInstalledProgramUsesTheDataFolder()
    {
        QVERIFY(make(u"usr/bin"_s) && make(u"usr/share/pevora"_s));
        const QString data = scratch(u"data/pevora"_s);
        QCOMPARE(applicationFolder(scratch(u"usr/bin"_s), data), data);
        QVERIFY(QFileInfo(data).isDir());
        QCOMPARE(namesIn(scratch(u"usr/bin"_s)), QStringList());
        // It is there the second time.
        QVERIFY(write(u"data/pevora/list.dat"_s));
        QCOMPARE(applicationFolder(scratch(u"usr/bin"_s), data), data);
        QCOMPARE(namesIn(data), QStringList{u"list.dat"_s});
    }

    void aFolderThatCannotBeWrittenGivesWayToTheDataFolder()
    {
        if (ranAsOrdinaryUser())
            return;
        QVERIFY(make(u"copy"_s));
        const QString copy = scratch(u"copy"_s);
        QVERIFY(QFile::setPermissions(copy, QFile::ReadOwner | QFile::ExeOwner));
        const QString data = scratch(u"data/pevora"_s);
        QCOMPARE(applicationFolder(copy, data), data);
        QVERIFY(QFileInfo(data).isDir());
        QCOMPARE(namesIn(copy), QStringList());
        QVERIFY(
            QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));

        // Where the test program itself lies in such a folder, its own answer is the user's.
        if (!QFileInfo(QCoreApplication::applicationDirPath()).isWritable()) {
            qputenv("XDG_DATA_HOME", QFile::encodeName(scratch(u"home"_s)));
            QCOMPARE(applicationFolder(), scratch(u"home/pevora"_s));
            QVERIFY(QFileInfo(scratch(u"home/pevora"_s)).isDir());
        }
    }

    void aFolderThatOthersMayWriteGivesWayToTheDataFolder_data()
    {
        const Rows<int, QString> row("mode", "answer");
        row("the user's alone", 0700, u"copy"_s);
        row("readable by all", 0755, u"copy"_s);
        row("all write", 0757, u"data/pevora"_s);
        row("all write, as into the temporary folder", 01777, u"data/pevora"_s);
    }

    void aFolderThatOthersMayWriteGivesWayToTheDataFolder()
    {
        QFETCH(int, mode);
        QFETCH(QString, answer);
        QVERIFY(make(u"copy"_s));
        QCOMPARE(::chmod(QFile::encodeName(scratch(u"copy"_s)).constData(), mode_t(mode)), 0);
        QCOMPARE(applicationFolder(scratch(u"copy"_s), scratch(u"data/pevora"_s)), scratch(answer));
    }

    /// Some systems make a group for each user, and let it write into each new folder.
    void aGroupThatIsTheUsersAloneIsTheUser()
    {
        QVERIFY(make(u"copy"_s));
        const QByteArray copy = QFile::encodeName(scratch(u"copy"_s));
        QCOMPARE(::chmod(copy.constData(), 0775), 0);
        const auto folder = [this] {
            return applicationFolder(scratch(u"copy"_s), scratch(u"data/pevora"_s));
        };
        const bool isPrivate = told(u"-un"_s) == told(u"-gn"_s);
        QCOMPARE(folder(), scratch(isPrivate ? u"copy"_s : u"data/pevora"_s));
        // Another group has others in it.
        constexpr gid_t other = 65534;
        if (::chown(copy.constData(), uid_t(-1), other) != 0)
            QSKIP("Only root can give a folder to another group.");
        QCOMPARE(folder(), scratch(u"data/pevora"_s));
    }

    /// Here the administrator is the one who could write there all the same.
    void aFolderOfAnotherUserGivesWayToTheDataFolder()
    {
        QVERIFY(make(u"copy"_s));
        const QString copy = scratch(u"copy"_s);
        const QString data = scratch(u"data/pevora"_s);
        if (::chown(QFile::encodeName(copy).constData(), 65534, 65534) != 0)
            QSKIP("Only root can give a folder away.");
        QCOMPARE(applicationFolder(copy, data), data);
    }

    void theProgramItselfRunsAsAPortableCopy()
    {
        const QString folder = QCoreApplication::applicationDirPath();
        const QStringList before = namesIn(folder);
        QCOMPARE(applicationFolder(), folder);
        QCOMPARE(namesIn(folder), before);
    }

    void aSeparatorIsAddedWhereThereIsNone()
    {
        QCOMPARE(pathInFolder(u"/home/a"_s, u"list.dat"_s), u"/home/a/list.dat"_s);
        QCOMPARE(pathInFolder(u"/home/a/"_s, u"list.dat"_s), u"/home/a/list.dat"_s);
        QCOMPARE(pathInFolder(u"/"_s, u"list.dat"_s), u"/list.dat"_s);
        QCOMPARE(pathInFolder(u"C:/"_s, u"pref.ini"_s), u"C:/pref.ini"_s);
    }

    void theLanguageFileIsFoundInTheApplicationFolderFirst()
    {
        QVERIFY(make(u"data"_s) && make(u"bin"_s));
        const auto found = [this] { return languageFolder(scratch(u"data"_s), scratch(u"bin"_s)); };
        QCOMPARE(found(), QString());
        // A folder of that name is no file.
        QVERIFY(make(u"data/lan.ini"_s));
        QCOMPARE(found(), QString());
        QVERIFY(write(u"bin/lan.ini"_s));
        QCOMPARE(found(), scratch(u"bin"_s));
        QVERIFY(QDir().rmdir(scratch(u"data/lan.ini"_s)));
        QVERIFY(write(u"data/lan.ini"_s));
        QCOMPARE(found(), scratch(u"data"_s));
        QVERIFY(QFile::remove(scratch(u"bin/lan.ini"_s)));
        QCOMPARE(found(), scratch(u"data"_s));
    }

private:
    QString scratch(const QString& name) const { return m_scratch->filePath(name); }
    bool make(const QString& name) const { return QDir().mkpath(scratch(name)); }
    bool write(const QString& name) const
    {
        QFile file(scratch(name));
        return file.open(QIODevice::WriteOnly);
    }

    std::unique_ptr<QTemporaryDir> m_scratch;
};

QTEST_GUILESS_MAIN(AppFolderTest)
#include "tst_AppFolder.moc"
