#include "camlist/CameraListFile.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <iterator>
#include <memory>
#include <optional>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>

static const QStringList Both{"list.dat", "list.dat.bak"};

/// The number of a file, which goes with it when its name changes.
static quint64 numberOf(const QString& path)
{
    struct stat info = {};
    return lstat(QFile::encodeName(path).constData(), &info) == 0 ? info.st_ino : 0;
}

/// From here on the system refuses this process to exchange two names, as it does on many file
/// systems.
static bool refuseExchange()
{
    constexpr auto flags = offsetof(seccomp_data, args) + 4 * sizeof(quint64);
    constexpr quint32 exchange = 2;
    sock_filter rules[] = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_renameat2, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, flags),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, exchange, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EINVAL),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    };
    sock_fprog program = {std::size(rules), rules};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

/// What is kept as list.dat.bak before list.dat is replaced or removed.
class CameraListFileKeptTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_file = std::make_unique<ScratchFile>("list.dat");
        m_list = std::make_unique<CameraListFile>(m_file->folder());
    }

    void whatAnotherWroteIsKept_data()
    {
        const Rows<QByteArray, QByteArray> row("theirs", "ours");
        // Kept byte for byte, whatever it is.
        row("longer", "their list\r\n", "new");
        row("as long", "ale\r\n", "new");
        row("empty", "", "new");
        row("no line end", QByteArray("\xEF\xBB\xBF\0\xFFx", 6), "new");
        row("large", QByteArray(3'000'000, 'l'), "new");
        row("removed by us", "their list\r\n", {});
    }

    void whatAnotherWroteIsKept()
    {
        QFETCH(QByteArray, theirs);
        QFETCH(QByteArray, ours);
        m_file->setContent("old\r\n");
        QVERIFY(m_list->read().has_value());
        m_file->setContent(theirs); // after it was read
        QVERIFY(m_list->write(ours));
        QCOMPARE(content(), ours.isEmpty() ? "none" : ours + "\r\n");
        QCOMPARE(backup(), theirs);

        QVERIFY(QFile::remove(m_file->path() + ".bak"));
        QVERIFY(m_list->write("mine"));
        QVERIFY(!names().contains("list.dat.bak"));
        m_file->setContent(theirs); // after it was written
        QVERIFY(m_list->write(ours));
        QCOMPARE(backup(), theirs);
        QCOMPARE(names(), ours.isEmpty() ? QStringList("list.dat.bak") : Both);
    }

    void whatAnotherWroteAlikeIsNotKept()
    {
        m_file->setContent("old\r\n");
        QVERIFY(m_list->read().has_value());
        m_file->setContent("ours\r\n");
        QVERIFY(m_list->write("ours"));
        QCOMPARE(names(), QStringList("list.dat"));
    }

    void whatIsNoListIsKept()
    {
        m_file->setContent("no list\r\n");
        QVERIFY(m_list->read().has_value());
        m_list->distrust();
        QVERIFY(!m_list->write({}));
        QCOMPARE(content(), QByteArray("no list\r\n"));
        QVERIFY(m_list->write("ours"));
        QCOMPARE(content(), QByteArray("ours\r\n"));
        QCOMPARE(backup(), QByteArray("no list\r\n"));
    }

    void whatAnotherMadeIsKept()
    {
        QCOMPARE(m_list->read(), std::optional(QByteArray())); // none there
        m_file->setContent("theirs\r\n");
        QVERIFY(m_list->write("ours"));
        QCOMPARE(backup(), QByteArray("theirs\r\n"));
        // The same after this one removed it.
        QVERIFY(m_list->write({}));
        m_file->setContent("their second\r\n");
        QVERIFY(m_list->write({}));
        QCOMPARE(backup(), QByteArray("their second\r\n"));
        QCOMPARE(names(), QStringList({"list.dat.bak", "list.dat.bak.1"}));
        // One that another removed leaves nothing to keep.
        QVERIFY(m_list->write("ours"));
        QVERIFY(QFile::remove(m_file->path()));
        QVERIFY(m_list->write("ours again"));
        QCOMPARE(backup(), QByteArray("their second\r\n"));
    }

    void whatWasNeverReadIsKept()
    {
        m_file->setContent("old\r\n");
        QVERIFY(m_list->write("new"));
        QCOMPARE(backup(), QByteArray("old\r\n"));
    }

    void aChangeBackIsNoChange()
    {
        m_file->setContent("old\r\n");
        QVERIFY(m_list->read().has_value());
        m_file->setContent("other\r\n");
        m_file->setContent("old\r\n");
        QVERIFY(QFile::setPermissions(m_file->path(), QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(QFile::link(m_file->path(), m_file->folder() + "/link"));
        QVERIFY(m_list->write("new"));
        QCOMPARE(names(), QStringList({"link", "list.dat"}));
    }

    void aChangeWithinOneStepOfTheClockIsKept()
    {
        if (ranWithOwnMounts())
            return;
        QCOMPARE(mountCoarseClock(m_file->folder()), "mounted");
        int sameTime = 0;
        for (int i = 100; i < 300; ++i) {
            const QByteArray theirs = QByteArray::number(i) + "\r\n";
            QVERIFY(m_list->write("our"));
            const QDateTime before = QFileInfo(m_file->path()).lastModified();
            m_file->setContent(theirs);
            sameTime += QFileInfo(m_file->path()).lastModified() == before;
            QVERIFY(m_list->write("new"));
            QCOMPARE(backup(), theirs);
        }
        QVERIFY(sameTime > 0); // or it was no test
    }

    void sixAreKeptAndTheOldestLeaves()
    {
        QByteArrayList kept;
        QStringList expected("list.dat");
        for (int round = 0; round < 9; ++round) {
            const QByteArray theirs = "theirs of round " + QByteArray::number(round);
            m_file->setContent(theirs);
            QVERIFY(m_list->write("ours"));
            kept.prepend(theirs);
            kept = kept.first(std::min<qsizetype>(kept.size(), 6));
            if (expected.size() <= 6)
                expected << nameOfBackup(int(kept.size()) - 1);
            QCOMPARE(names(), expected);
            for (int i = 0; i < kept.size(); ++i)
                QCOMPARE(contentOf(m_file->folder() + "/" + nameOfBackup(i)), kept[i]);
        }
    }

    /// A killed program may leave one: those above it stay where they are.
    void aGapInTheNumbersIsFilled()
    {
        m_file->setContent("theirs");
        for (const char* name : {"list.dat.bak", "list.dat.bak.1", "list.dat.bak.3"})
            writeFile(m_file->folder() + "/" + name, name);
        QVERIFY(m_list->write("ours"));
        QCOMPARE(backup(), QByteArray("theirs"));
        QCOMPARE(contentOf(m_file->path() + ".bak.1"), QByteArray("list.dat.bak"));
        QCOMPARE(contentOf(m_file->path() + ".bak.2"), QByteArray("list.dat.bak.1"));
        QCOMPARE(contentOf(m_file->path() + ".bak.3"), QByteArray("list.dat.bak.3"));
    }

    void aCopyHasTheRightsOfTheList()
    {
        const auto privately =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        const QString path = m_file->path() + ".bak";
        m_file->setContent("theirs\r\n");
        QVERIFY(QFile::setPermissions(m_file->path(), privately));
        QVERIFY(m_list->write("ours"));
        QCOMPARE(QFile::permissions(path), privately);
        QCOMPARE(QFile::permissions(m_file->path()), privately);
        // Whatever an older one has.
        QVERIFY(QFile::setPermissions(path, privately | QFile::ReadOther));
        m_file->setContent("their second\r\n");
        QVERIFY(m_list->write("ours"));
        QCOMPARE(QFile::permissions(path), privately);
        QCOMPARE(backup(), QByteArray("their second\r\n"));
    }

    void aLinkedListIsCopied()
    {
        QVERIFY(QDir(m_file->folder()).mkdir("other"));
        QVERIFY(QFile::link("other/real", m_file->path()));
        m_file->setContent("theirs\r\n");
        QVERIFY(m_list->write("ours"));
        QCOMPARE(contentOf(m_file->folder() + "/other/real"), QByteArray("ours\r\n"));
        QVERIFY(QFileInfo(m_file->path()).isSymLink());
        QVERIFY(!QFileInfo(m_file->path() + ".bak").isSymLink());
        QCOMPARE(backup(), QByteArray("theirs\r\n"));
    }

    void whatCannotBeReadIsKept_data()
    {
        const Rows<QByteArray> row("kind");
        for (const char* kind : {"folder", "pipe", "too long"})
            row(kind, kind);
    }

    void whatCannotBeReadIsKept()
    {
        QFETCH(QByteArray, kind);
        keepsWhatCannotBeRead(kind);
    }

    void whatCannotBeReadIsKeptWhereNamesCannotBeExchanged_data() { whatCannotBeReadIsKept_data(); }

    void whatCannotBeReadIsKeptWhereNamesCannotBeExchanged()
    {
        if (ranAsOrdinaryUser())
            return;
        QFETCH(QByteArray, kind);
        QVERIFY(refuseExchange());
        keepsWhatCannotBeRead(kind);
    }

    void whatMayNotBeReadIsKept()
    {
        if (ranAsOrdinaryUser())
            return;
        const QString path = m_file->path() + ".bak";
        // The second time an older one is in the way that may not be read or written either.
        for (const QByteArray& old : QByteArrayList{"old\r\n", "old, but later\r\n"}) {
            m_file->setContent(old);
            QVERIFY(QFile::setPermissions(m_file->path(), {}));
            QCOMPARE(m_list->read(), std::nullopt);
            QVERIFY(m_list->write("new"));
            QCOMPARE(content(), QByteArray("new\r\n")); // and can be read
            QCOMPARE(QFile::permissions(path), QFile::Permissions());
            QVERIFY(QFile::setPermissions(path, QFile::ReadOwner));
            QCOMPARE(backup(), old);
            QVERIFY(QFile::setPermissions(path, {}));
        }
        QCOMPARE(names(), Both + QStringList("list.dat.bak.1"));
        // A copy, too, takes its place.
        m_file->setContent("theirs\r\n");
        QVERIFY(m_list->write("new"));
        QCOMPARE(backup(), QByteArray("theirs\r\n"));
    }

    void whatBecameReadableIsKept()
    {
        QVERIFY(QDir().mkdir(m_file->path()));
        QCOMPARE(m_list->read(), std::nullopt);
        QVERIFY(QDir().rmdir(m_file->path()));
        m_file->setContent("theirs\r\n");
        QVERIFY(m_list->write("ours"));
        QCOMPARE(content(), QByteArray("ours\r\n"));
        QCOMPARE(backup(), QByteArray("theirs\r\n"));
    }

    void aLinkToWhatCannotBeReadIsKept()
    {
        QVERIFY(QDir(m_file->folder()).mkdir("other"));
        QVERIFY(QFile::link("other", m_file->path()));
        QCOMPARE(m_list->read(), std::nullopt);
        QVERIFY(m_list->write("new"));
        QCOMPARE(content(), QByteArray("new\r\n"));
        QCOMPARE(QFile::symLinkTarget(m_file->path() + ".bak"), m_file->folder() + "/other");
        QCOMPARE(names(), QStringList({"list.dat", "list.dat.bak", "other"}));
    }

    void aLeftoverIsNoHindrance()
    {
        const QString bystander = m_file->folder() + "/bystander";
        writeFile(bystander, {});
        QStringList expected = QStringList{"bystander"} + Both;
        for (const bool readable : {true, false}) {
            QVERIFY(QFile::link(bystander, m_file->path() + ".new"));
            if (readable)
                m_file->setContent("theirs\r\n");
            else
                QVERIFY(QFile::remove(m_file->path()) && QDir().mkdir(m_file->path()));
            QVERIFY(m_list->write("ours"));
            QCOMPARE(content(), QByteArray("ours\r\n"));
            QVERIFY(!QFileInfo(m_file->path()).isSymLink());
            QVERIFY(!QFileInfo(m_file->path() + ".bak").isSymLink());
            QCOMPARE(contentOf(bystander), QByteArray());
            QCOMPARE(names(), expected);
            expected << "list.dat.bak.1";
        }
    }

    void withoutABackupTheOldListStays_data()
    {
        const Rows<QStringList, bool> row("inTheWay", "readable");
        QStringList all;
        for (int i = 0; i < 6; ++i)
            all << nameOfBackup(i);
        row("no name for the backup, another's", all, true);
        row("no place to make it, another's", {"list.dat.new"}, true);
        row("no name for the backup, unreadable", all, false);
        row("no place to make it, unreadable", {"list.dat.new"}, false);
    }

    void withoutABackupTheOldListStays()
    {
        QFETCH(QStringList, inTheWay);
        QFETCH(bool, readable);
        // None of these folders can be removed, and the last name is the one to leave.
        for (const QString& name : inTheWay)
            QVERIFY(QDir(m_file->folder()).mkpath(name + "/inner"));
        if (readable)
            m_file->setContent("theirs\r\n");
        else
            QVERIFY(QDir().mkpath(m_file->path() + "/inner"));
        const quint64 number = numberOf(m_file->path());
        for (const QByteArray& line : {QByteArray("new"), QByteArray()}) {
            // A removed list needs no place to make a copy.
            if (line.isEmpty() && readable && inTheWay == QStringList("list.dat.new"))
                break;
            const SaveOutcome outcome = m_list->write(line);
            QVERIFY(!outcome);
            QVERIFY(!outcome.reason.isEmpty());
            QCOMPARE(numberOf(m_file->path()), number);
            QVERIFY(!readable || content() == "theirs\r\n");
            QCOMPARE(names(), QStringList("list.dat") + inTheWay);
        }
        // A failure forgets nothing: it is kept as soon as it can be.
        QVERIFY(QDir(m_file->folder() + "/" + inTheWay.last()).removeRecursively());
        QVERIFY(m_list->write("new"));
        QCOMPARE(numberOf(m_file->path() + ".bak") == number, !readable);
        QVERIFY(names().contains("list.dat.bak"));
    }

private:
    QByteArray content() const { return m_file->content(); }
    QByteArray backup() const { return contentOf(m_file->path() + ".bak"); }
    QStringList names() const { return m_file->names(); }

    static QString nameOfBackup(int i)
    {
        return i == 0 ? "list.dat.bak" : QString("list.dat.bak.%1").arg(i);
    }

    void keepsWhatCannotBeRead(const QByteArray& kind)
    {
        // Once without an older backup, once with one.
        quint64 before = 0;
        QStringList expected = Both;
        for (const QByteArray& line : QByteArrayList{"first", "second"}) {
            QFile::remove(m_file->path());
            if (kind == "folder")
                QVERIFY(QDir().mkpath(m_file->path() + "/inner"));
            else if (kind == "pipe")
                QCOMPARE(QProcess::execute("mkfifo", {m_file->path()}), 0);
            else
                QVERIFY(QFile(m_file->path()).open(QIODevice::WriteOnly) &&
                        QFile::resize(m_file->path(), CameraListFile::MaxBytes + 1));
            const quint64 number = numberOf(m_file->path());
            QCOMPARE(m_list->read(), std::nullopt);
            QVERIFY(m_list->write(line));
            QCOMPARE(content(), line + "\r\n");
            QCOMPARE(numberOf(m_file->path() + ".bak"), number);
            QCOMPARE(numberOf(m_file->path() + ".bak.1"), before);
            QCOMPARE(names(), expected);
            expected << "list.dat.bak.1";
            before = number;
            // From here on it is a list like any other.
            QVERIFY(m_list->write("more"));
            QCOMPARE(numberOf(m_file->path() + ".bak"), number);
        }
    }

    std::unique_ptr<ScratchFile> m_file;
    std::unique_ptr<CameraListFile> m_list;
};

QTEST_GUILESS_MAIN(CameraListFileKeptTest)
#include "tst_CameraListFileKept.moc"
