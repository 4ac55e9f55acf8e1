#include "cameras/CameraListLine.h"
#include "camlist/CameraListFile.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <memory>
#include <optional>

using namespace Qt::Literals::StringLiterals;

static const std::optional<QByteArray> EmptyList = QByteArray();

/// Puts something in the place of `path` that no user can read as a list.
static void makeUnreadable(const QString& path, const QByteArray& kind)
{
    if (kind == "folder")
        QVERIFY(QDir().mkpath(path + "/inner"));
    else if (kind == "pipe")
        QCOMPARE(QProcess::execute("mkfifo", {path}), 0);
    else if (kind == "too long")
        QVERIFY(QFile(path).open(QIODevice::WriteOnly) &&
                QFile::resize(path, CameraListFile::MaxBytes + 1));
    else if (kind == "link to itself")
        QVERIFY(QFile::link(path, path));
}

/// What list.dat holds, and how it is replaced. What is kept of an old one beside it: see
/// tst_CameraListFileKept.
class CameraListFileTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_file = std::make_unique<ScratchFile>("list.dat"); }

    void aMissingOrEmptyFileIsAnEmptyList()
    {
        QCOMPARE(CameraListFile(m_file->folder()).read(), EmptyList);
        QCOMPARE(CameraListFile(m_file->folder() + "/none").read(), EmptyList);
        QVERIFY(QFile::link(m_file->folder() + "/none", m_file->path()));
        QCOMPARE(CameraListFile(m_file->folder()).read(), EmptyList);
        QVERIFY(QFile::remove(m_file->path()));
        m_file->setContent({});
        QCOMPARE(CameraListFile(m_file->folder()).read(), EmptyList);
        QCOMPARE(CameraListFile(m_file->folder() + "/").read(), EmptyList);
    }

    void readsTheLineWithoutItsEnd_data()
    {
        const Rows<QByteArray, QByteArray> row("content", "line");
        row("CR LF", "c\xFFn\xFFk\r\n", "c\xFFn\xFFk");
        row("LF", "c\xFFn\xFFk\n", "c\xFFn\xFFk");
        row("CR", "c\xFFn\xFFk\r", "c\xFFn\xFFk");
        row("none", "c\xFFn\xFFk", "c\xFFn\xFFk");
        row("two CR LF", "k\r\n\r\n", "k\r\n");
        row("two LF", "k\n\n", "k\n");
        row("two CR", "k\r\r", "k\r");
        row("a line end only", "\r\n", {});
        row("one letter", "k", "k");
        row("blank at the end", " k ", " k ");
        row("line end inside", "\na\r\nb", "\na\r\nb");
        row("mark", "\xEF\xBB\xBFk\r\n", "k");
        row("mark only", "\xEF\xBB\xBF", {});
        row("mark and line end", "\xEF\xBB\xBF\n", {});
        row("two marks", "\xEF\xBB\xBF\xEF\xBB\xBFk", "\xEF\xBB\xBFk");
        row("no import", "CAMZc\r\n", "CAMZc");
    }

    void readsTheLineWithoutItsEnd()
    {
        QFETCH(QByteArray, content);
        QFETCH(QByteArray, line);
        m_file->setContent(content);
        QCOMPARE(CameraListFile(m_file->folder()).read(), std::optional(line));
        // Reading changes nothing.
        QCOMPARE(m_file->content(), content);
        QCOMPARE(names(), QStringList("list.dat"));
    }

    void whatCannotBeReadIsNoEmptyList_data()
    {
        const Rows<QByteArray> row("kind");
        for (const char* kind : {"folder", "pipe", "too long", "link to itself"})
            row(kind, kind);
    }

    void whatCannotBeReadIsNoEmptyList()
    {
        QFETCH(QByteArray, kind);
        makeUnreadable(m_file->path(), kind);
        CameraListFile list(m_file->folder());
        QCOMPARE(list.read(), std::nullopt);
        QCOMPARE(readImportedList(m_file->path()), std::nullopt);
        // An empty list does not remove it.
        QVERIFY(!list.write({}));
        QCOMPARE(names(), QStringList("list.dat"));
        QCOMPARE(list.read(), std::nullopt);

        // Nor where it was a good list when it was read.
        QVERIFY(QFile::rename(m_file->path(), m_file->folder() + "/odd"));
        m_file->setContent("old\r\n");
        QCOMPARE(list.read(), std::optional(QByteArray("old")));
        QVERIFY(QFile::remove(m_file->path()));
        makeUnreadable(m_file->path(), kind);
        QVERIFY(!list.write({}));
        QCOMPARE(names(), QStringList({"list.dat", "odd"}));
    }

    void whatMayNotBeReadIsNoEmptyList()
    {
        if (ranAsOrdinaryUser())
            return;
        m_file->setContent("CAMZold\r\n");
        QVERIFY(QFile::setPermissions(m_file->path(), {}));
        CameraListFile list(m_file->folder());
        QCOMPARE(list.read(), std::nullopt);
        QCOMPARE(readImportedList(m_file->path()), std::nullopt);
        QVERIFY(!list.write({}));
        QCOMPARE(names(), QStringList("list.dat"));
        // Also not where it can be read by now: nobody has seen what is in it.
        QVERIFY(QFile::setPermissions(m_file->path(), QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(!list.write({}));
        QCOMPARE(content(), QByteArray("CAMZold\r\n"));
        QCOMPARE(list.read(), std::optional(QByteArray("CAMZold")));
        QVERIFY(list.write({}));
        QCOMPARE(names(), QStringList());

        // A folder that may not be looked into is not one without a list.
        QVERIFY(QDir(m_file->folder()).mkdir("inner"));
        const QString inner = m_file->folder() + "/inner";
        QVERIFY(QFile::setPermissions(inner, {}));
        CameraListFile hidden(inner);
        QCOMPARE(hidden.read(), std::nullopt);
        QVERIFY(!hidden.write({}));
        QVERIFY(!hidden.write("new"));
        QVERIFY(
            QFile::setPermissions(inner, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    }

    void writesTheLineAndItsEnd()
    {
        CameraListFile list = loaded();
        const QByteArray first("c\xFFn\xFFk\x01h");
        QVERIFY(list.write(first));
        QCOMPARE(content(), first + "\r\n");
        // Again and again, longer and shorter, without a list kept beside: it is this program's
        // own.
        for (const QByteArray& line :
             {first.repeated(100'000), QByteArray("short"), QByteArray("\r"), QByteArray("\n"),
              QByteArray("CAMZ"), QByteArray("\xFF\xFF")}) {
            QVERIFY(list.write(line));
            QCOMPARE(content(), line + "\r\n");
            QCOMPARE(CameraListFile(m_file->folder()).read(), std::optional(line));
            QCOMPARE(names(), QStringList("list.dat"));
        }
        QVERIFY(list.read().has_value());
        QVERIFY(list.write("after reading"));
        QVERIFY(loaded().write("by the next run"));
        QCOMPARE(content(), QByteArray("by the next run\r\n"));
        QCOMPARE(names(), QStringList("list.dat"));
    }

    void anEmptyLineRemovesTheFile()
    {
        CameraListFile list = loaded();
        QVERIFY(list.write({}));
        QCOMPARE(names(), QStringList());
        QVERIFY(list.write("line"));
        QVERIFY(list.write({}));
        QCOMPARE(names(), QStringList());
        QVERIFY(list.write({}));
        QVERIFY(list.write("line"));
        QCOMPARE(names(), QStringList("list.dat"));
        QVERIFY(loaded().write({}));
        QCOMPARE(names(), QStringList());
    }

    void camerasSurvive()
    {
        const QString odd = u"<b>AT&T</b> \u05D7\u05D9 東京 Zürich \U0001F4F7"_s;
        const QList<QList<CameraRecord>> lists{
            {{"Cities", "L.A., CA", "url"}, {"Sights", odd, "url2"}},
            {{"c", QString(10'000, 'n'), QString(10'000, QChar(0x05D0))}},
            // Line ends at the end of the file that belong to the last field.
            {{"c", "n", "k\r\n"}},
            {{"c", "n", "k\n"}},
            {{"c", "n", "k\r"}},
            {{"c\r\n", "n\r\n", "k\u0001h\r\n"}},
            // First fields that look like a byte order mark, in UTF-8 and in the code page.
            {{u"\uFEFFc"_s, "n", "k"}},
            {{u"ï»¿é"_s, "n", "k"}},
            {{u"\uFEFF"_s, "", ""}},
            {{"", "", ""}},
        };
        CameraListFile list = loaded();
        for (const QList<CameraRecord>& cameras : lists) {
            QVERIFY(list.write(writeCameraListLine(cameras)));
            const auto line = CameraListFile(m_file->folder()).read();
            QVERIFY(line.has_value());
            QVERIFY2(readCameraListLine(*line) == cameras, content().toPercentEncoding().left(100));
        }
        QCOMPARE(names(), QStringList("list.dat"));
    }

    void whatCouldNotBeReadBackIsNotWritten()
    {
        CameraListFile list = loaded();
        QByteArray line(CameraListFile::MaxBytes - 2, 'x');
        QVERIFY(list.write(line));
        QCOMPARE(QFileInfo(m_file->path()).size(), CameraListFile::MaxBytes);
        QCOMPARE(list.read(), std::optional(line));
        line.append('y');
        QVERIFY(!list.write(line));
        QVERIFY(list.read()->endsWith('x'));
    }

    void aLinkStaysALink()
    {
        QVERIFY(QDir(m_file->folder()).mkdir("other"));
        const QString target = m_file->folder() + "/other/real";
        QVERIFY(QFile::link("other/real", m_file->path()));
        QVERIFY(loaded().write("one"));
        QVERIFY(loaded().write("two"));
        QVERIFY(QFileInfo(m_file->path()).isSymLink());
        QCOMPARE(contentOf(target), QByteArray("two\r\n"));
        QCOMPARE(names(), QStringList({"list.dat", "other"}));
    }

    void whatCannotBeWrittenKeepsTheOldFile()
    {
        if (ranAsOrdinaryUser())
            return;
        m_file->setContent("old\r\n");
        CameraListFile own = loaded();
        QVERIFY(QFile::setPermissions(m_file->path(), QFile::ReadOwner));
        QVERIFY(!own.write("new"));
        QCOMPARE(content(), QByteArray("old\r\n"));
        QVERIFY(QFile::setPermissions(m_file->path(), QFile::ReadOwner | QFile::WriteOwner));

        CameraListFile changed(m_file->folder()); // has not seen it
        const auto readable = QFile::ReadOwner | QFile::ExeOwner;
        QVERIFY(QFile::setPermissions(m_file->folder(), readable));
        for (CameraListFile* list : {&own, &changed}) {
            QVERIFY(!list->write("new"));
            QVERIFY(!list->write({}));
            QCOMPARE(content(), QByteArray("old\r\n"));
            QCOMPARE(names(), QStringList("list.dat"));
        }
        QVERIFY(QFile::setPermissions(m_file->folder(), readable | QFile::WriteOwner));
        // A failure forgets nothing.
        QVERIFY(own.write("new"));
        QCOMPARE(names(), QStringList("list.dat"));
        QVERIFY(changed.write("newer"));
        QCOMPARE(names(), QStringList({"list.dat", "list.dat.bak"}));
    }

    void aMissingFolderIsNotMade()
    {
        CameraListFile list(m_file->folder() + "/none");
        QCOMPARE(list.read(), EmptyList);
        QVERIFY(!list.write("line"));
        QVERIFY(list.write({}));
        QCOMPARE(names(), QStringList());
    }

private:
    QByteArray content() const { return m_file->content(); }
    QStringList names() const { return m_file->names(); }
    /// A list of that folder that has been read.
    CameraListFile loaded() const
    {
        CameraListFile list(m_file->folder());
        list.read();
        return list;
    }

    std::unique_ptr<ScratchFile> m_file;
};

QTEST_GUILESS_MAIN(CameraListFileTest)
#include "tst_CameraListFile.moc"
