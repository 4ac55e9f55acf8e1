#include "platform/files/FileStamp.h"
#include "settings/Ini.h"
#include "settings/IniCache.h"
#include "support/Cost.h"
#include "support/Rows.h"
#include "support/RunAgain.h"
#include "support/ScratchFile.h"

#include <memory>

using namespace Qt::Literals::StringLiterals;

/// The bytes that this process has read so far.
static qint64 bytesRead()
{
    QFile file("/proc/self/io");
    if (!file.open(QIODevice::ReadOnly))
        return -1;
    return QRegularExpression("rchar: (\\d+)").match(file.readAll()).captured(1).toLongLong();
}

class IniTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_file = std::make_unique<ScratchFile>("pref.ini");
        m_path = m_file->path();
    }

    void cleanup() { FlushINI(); }

    void keysAreWrittenInCapitalsAndFoundInAnySpelling()
    {
        WriteToINI("Favorites", "name[3]", "A camera", m_path);
        QCOMPARE(GetFromINI("FAVORITES", "NAME[3]", m_path), QString("A camera"));
        QCOMPARE(GetFromINI("favorites", "name[3]", m_path), QString("A camera"));
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[Favorites]\r\nNAME[3]=A camera\r\n"));
        QCOMPARE(GetFromINI("FAVORITES", "Name[3]", m_path), QString("A camera"));

        setContent("[VIEW]\nlist=True\ntb = True\n");
        WriteToINI("VIEW", "List", "False", m_path);
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[VIEW]\nLIST=False\r\ntb = True\n"));
    }

    void aValueReadsBackUpToItsLimit()
    {
        const QString x800(800, u'x');
        WriteToINI("S", "K", x800, m_path);
        QCOMPARE(GetFromINI("S", "K", m_path), x800.first(749));
        // The file has all of it.
        QVERIFY(FlushINI());
        QCOMPARE(content(), "[S]\r\nK=" + QByteArray(800, 'x') + "\r\n");
        WriteToINI("S", "K", x800.first(749), m_path);
        QCOMPARE(GetFromINI("S", "K", m_path), x800.first(749));
        // It counts characters: neither bytes nor halves of a surrogate pair.
        const QString camera = u"\U0001F4F7"_s;
        WriteToINI("S", "K", camera.repeated(800), m_path);
        QCOMPARE(GetFromINI("S", "K", m_path), camera.repeated(749));
        WriteToINI("S", "K", u"東"_s.repeated(749), m_path);
        QCOMPARE(GetFromINI("S", "K", m_path), u"東"_s.repeated(749));
    }

    void whatIsNotThereIsEmpty()
    {
        QCOMPARE(GetFromINI("S", "K", m_path), QString());
        QCOMPARE(GetFromINI("S", "K", m_file->folder() + "/none/pref.ini"), QString());
        QCOMPARE(GetFromINI("S", "K", {}), QString());
        setContent("[S]\r\nK=\r\n");
        QCOMPARE(GetFromINI("S", "K", m_path), QString());
        QCOMPARE(GetFromINI("S", "L", m_path), QString());
        QCOMPARE(GetFromINI("T", "K", m_path), QString());
        QCOMPARE(GetFromINI({}, {}, m_path), QString());
        QVERIFY(FlushINI());
        QCOMPARE(QDir(m_file->folder()).entryList(QDir::Files), QStringList("pref.ini"));
    }

    void fileAndSectionAreCreated()
    {
        WriteToINI("VIEW", "LIST", "True", m_path);
        WriteToINI("FAVORITES", "COUNT", "0", m_path);
        WriteToINI("VIEW", "TB", " ", m_path);
        QVERIFY(FlushINI());
        QCOMPARE(content(),
                 QByteArray("[VIEW]\r\nLIST=True\r\nTB=\" \"\r\n[FAVORITES]\r\nCOUNT=0\r\n"));
    }

    void removesAKey()
    {
        setContent("[S]\na=1\nb=2\n");
        RemoveFromINI("s", "A", m_path);
        QCOMPARE(GetFromINI("S", "a", m_path), QString());
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[S]\nb=2\n"));
        const FileStamp before = fileStamp(m_path);
        RemoveFromINI("s", "A", m_path);
        QVERIFY(FlushINI());
        QVERIFY(fileStamp(m_path) == before);
    }

    void aFileThatCannotBeReadIsEmptyAndNeverWritten_data()
    {
        const Rows<QString> row("what");
        row("a folder", "folder");
        row("a pipe", "pipe");
        row("too long", "long");
        row("too many lines", "lines");
    }

    void aFileThatCannotBeReadIsEmptyAndNeverWritten()
    {
        QFETCH(QString, what);
        if (what == "folder") {
            QVERIFY(QDir(m_file->folder()).mkdir("pref.ini"));
        } else if (what == "pipe") {
            QCOMPARE(QProcess::execute("mkfifo", {m_path}), 0);
        } else {
            setContent("[S]\nA=1\n" + QByteArray("b=\n").repeated(what == "lines" ? 1'000'000 : 0));
            if (what == "long")
                QVERIFY(QFile(m_path).resize(IniCache::MaxBytes + 1));
        }
        const FileStamp before = fileStamp(m_path);
        QCOMPARE(GetFromINI("S", "A", m_path), QString());
        WriteToINI("S", "A", "2", m_path);
        RemoveFromINI("S", "A", m_path);
        QCOMPARE(GetFromINI("S", "A", m_path), QString());
        QVERIFY(FlushINI());
        QVERIFY(fileStamp(m_path) == before);
        // One byte less is an ini file like any other.
        if (what == "long") {
            QVERIFY(QFile(m_path).resize(IniCache::MaxBytes));
            QCOMPARE(GetFromINI("S", "A", m_path), QString("1"));
        }
    }

    void aFileThatMustNotBeReadIsEmptyUntilItMay()
    {
        if (ranAsOrdinaryUser())
            return;
        setContent("[S]\nA=1\n");
        QVERIFY(QFile::setPermissions(m_path, QFile::WriteOwner));
        waitUntilSettled();
        QCOMPARE(GetFromINI("S", "A", m_path), QString());
        WriteToINI("S", "A", "2", m_path);
        QCOMPARE(GetFromINI("S", "A", m_path), QString());
        QVERIFY(FlushINI());
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
        QCOMPARE(content(), QByteArray("[S]\nA=1\n"));
        QCOMPARE(GetFromINI("S", "A", m_path), QString("1"));
    }

    void aFileThatCannotBeWrittenStays()
    {
        if (ranAsOrdinaryUser())
            return;
        const auto all = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
        setContent("[S]\nA=1\n");
        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner));
        waitUntilSettled();
        WriteToINI("S", "A", "2", m_path);
        QCOMPARE(GetFromINI("S", "A", m_path), QString("2"));
        QVERIFY(!FlushINI());
        QCOMPARE(content(), QByteArray("[S]\nA=1\n"));
        QCOMPARE(GetFromINI("S", "A", m_path), QString("1"));

        QVERIFY(QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(QFile::setPermissions(m_file->folder(), QFile::ReadOwner | QFile::ExeOwner));
        WriteToINI("S", "A", "2", m_path);
        QVERIFY(!FlushINI());
        QCOMPARE(content(), QByteArray("[S]\nA=1\n"));
        // Nothing of that is left behind to be written later.
        QVERIFY(QFile::setPermissions(m_file->folder(), all));
        QVERIFY(FlushINI());
        QCOMPARE(content(), QByteArray("[S]\nA=1\n"));
        WriteToINI("S", "A", "3", m_path);
        WriteToINI("S", "A", "3", m_file->folder() + "/none/pref.ini");
        QVERIFY(!FlushINI());
        QCOMPARE(content(), QByteArray("[S]\nA=3\r\n"));
    }

    void garbageIsEmptyAndReadOnceThrough()
    {
        const double times = growth(int(IniCache::MaxBytes / 10), [&](int size) {
            QByteArray bytes(size / 4 * 4, Qt::Uninitialized);
            QRandomGenerator random(1);
            random.fillRange(reinterpret_cast<quint32*>(bytes.data()), bytes.size() / 4);
            setContent(bytes);
            QCOMPARE(GetFromINI("MAIN", "VIEW", m_path), QString());
        });
        qInfo("ten times as much garbage at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }

    void aHugeFileIsEmptyAndNotRead()
    {
        setContent("[MAIN]\nVIEW=x\n" + QByteArray("\0\xFF=[\n", 5).repeated(20'000'000));
        const qint64 before = bytesRead();
        QVERIFY(before > 0);
        for (int i = 0; i < 24; ++i)
            QCOMPARE(GetFromINI("MAIN", "VIEW", m_path), QString());
        const qint64 read = bytesRead() - before;
        QVERIFY2(read < IniCache::MaxBytes, qPrintable(QString::number(read)));
    }

private:
    QByteArray content() const { return m_file->content(); }
    void setContent(const QByteArray& bytes) const { m_file->setContent(bytes); }
    void waitUntilSettled() const { m_file->waitUntilSettled(); }

    std::unique_ptr<ScratchFile> m_file;
    QString m_path;
};

QTEST_GUILESS_MAIN(IniTest)
#include "tst_Ini.moc"
