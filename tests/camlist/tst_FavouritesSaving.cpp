// When the favourites are written, and that what another instance did to them stays.

#include "camlist/Favourites.h"
#include "platform/files/FileStamp.h"
#include "settings/Ini.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/TimeSeam.h"

#include <functional>

class FavouritesSavingTest : public QObject
{
    Q_OBJECT
private slots:
    void aChangeIsSavedAWhileLater()
    {
        const QString path = file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nCOUNT=1\r\n");
        Favourites favourites;
        Timer& timer = timerOf(favourites, "tmrSaveFavourites");
        favourites.add("before", "it is known where");
        QVERIFY(!timer.Enabled());
        favourites.load(path);
        QVERIFY(!timer.Enabled());
        QCOMPARE(timer.Interval(), Favourites::SaveMs);
        favourites.add("b", "2");
        QVERIFY(timer.Enabled());
        timer.elapse();
        QVERIFY(!timer.Enabled());
        QVERIFY(contentOf(path).contains("NAME[1]=b\r\nURL[1]=2\r\n"));
        favourites.changeKey("2", "3");
        timer.elapse();
        QVERIFY(contentOf(path).contains("URL[1]=3\r\n"));
        favourites.replaceAll({{"c", "4"}});
        timer.elapse();
        QVERIFY(contentOf(path).contains("NAME[0]=c\r\nURL[0]=4\r\n"));
        QVERIFY(contentOf(path).contains("COUNT=1\r\n"));
    }

    void whatAnotherInstanceDidStays_data()
    {
        const Rows<std::function<void(Favourites&)>, QByteArray, QStringList> row("change",
                                                                                  "theirs", "keys");
        using Change = std::function<void(Favourites&)>;
        const Change none([](Favourites&) {});
        const Change add([](Favourites& f) { f.add("mine", "m"); });
        row("nothing, added", none, section({"a=1", "b=2", "c=3"}), {"1", "2", "3"});
        row("nothing, removed", none, section({"b=2"}), {"2"});
        row("nothing, removed all", none, section({}), {});
        row("added, added", add, section({"a=1", "b=2", "c=3"}), {"1", "2", "3", "m"});
        row("added, removed", add, section({"b=2"}), {"2", "m"});
        row("added, gone", add, "[OTHER]\r\nKEY=1\r\n", {"1", "2", "m"});
        row("removed, added", Change([](Favourites& f) {
                f.replaceAll({{"b", "2"}});
            }),
            section({"a=1", "b=2", "c=3"}), {"2", "3"});
        row("sorted, added", Change([](Favourites& f) {
                f.replaceAll({{"b", "2"}, {"a", "1"}});
            }),
            section({"a=1", "b=2", "c=3"}), {"2", "1", "3"});
    }

    void whatAnotherInstanceDidStays()
    {
        QFETCH(std::function<void(Favourites&)>, change);
        QFETCH(QByteArray, theirs);
        const QString path = file(section({"a=1", "b=2"}));
        Favourites favourites;
        favourites.load(path);
        change(favourites);
        writeFile(path, theirs);
        QSignalSpy changed(&favourites, &Favourites::Changed);
        const QStringList before = keysOf(favourites);
        QVERIFY(favourites.save(path));
        QTEST(keysOf(favourites), "keys");
        QCOMPARE(changed.count(), before == keysOf(favourites) ? 0 : 1);
        Favourites next;
        next.load(path);
        QTEST(keysOf(next), "keys");
        // That is the base from here on.
        QVERIFY(favourites.save(path));
        QTEST(keysOf(favourites), "keys");
        QVERIFY(!timerOf(favourites, "tmrSaveFavourites").Enabled());
    }

    void whatNobodyChangedIsNotWritten()
    {
        const QString path = file(section({"a=1"}));
        Favourites favourites;
        favourites.load(path);
        const QByteArray theirs = "; mine\n" + section({"x=7", "y=8"}) + "NAME[9]=old\n";
        writeFile(path, theirs);
        const quint64 inode = fileStamp(path).inode;
        QVERIFY(favourites.save(path));
        QCOMPARE(contentOf(path), theirs);
        QCOMPARE(fileStamp(path).inode, inode);
    }

    /// In the run of writes at the end, with other keys that are not on the disk yet.
    void aRunOfWritesHidesNothing()
    {
        const QString path = file(section({"a=1"}));
        Favourites favourites;
        favourites.load(path);
        WriteToINI("VIEW", "LIST", "True", path);
        writeFile(path, section({"a=1", "b=2"}));
        favourites.add("mine", "m");
        QVERIFY(favourites.save(path));
        QCOMPARE(keysOf(favourites), QStringList({"1", "2", "m"}));
        QVERIFY(contentOf(path).contains("LIST=True"));
    }

    void whatIsAddedDuringAMergeStays()
    {
        const QString path = file(section({"a=1"}));
        Favourites favourites;
        favourites.load(path);
        favourites.add("mine", "m");
        writeFile(path, section({"a=1", "b=2"}));
        QTimer::singleShot(0, &favourites, [&] { favourites.add("late", "l"); });
        QVERIFY(favourites.save(path));
        QCOMPARE(keysOf(favourites), QStringList({"1", "2", "m", "l"}));
        QVERIFY(timerOf(favourites, "tmrSaveFavourites").Enabled());
    }

    void aRefusedSaveSaysWhy()
    {
        Favourites favourites;
        favourites.add("a", "1");
        const SaveOutcome outcome = favourites.save(m_folder.filePath("none/pref.ini"));
        QVERIFY(!outcome);
        QCOMPARE(outcome.reason, "No such file or directory");
    }

private:
    /// Of favourites like "name=key".
    static QByteArray section(const QByteArrayList& favourites)
    {
        QByteArray text = "[FAVORITES]\r\n";
        for (qsizetype i = 0; i < favourites.size(); ++i) {
            const QByteArray n = QByteArray::number(i);
            const auto parts = favourites[i].split('=');
            text += "NAME[" + n + "]=" + parts[0] + "\r\nURL[" + n + "]=" + parts[1] + "\r\n";
        }
        return text + "COUNT=" + QByteArray::number(favourites.size()) + "\r\n";
    }

    static QStringList keysOf(const Favourites& favourites)
    {
        QStringList keys;
        for (const Favourite& one : favourites.entries()) {
            if (one.isWhole())
                keys << one.key;
        }
        return keys;
    }

    QString file(const QByteArray& content)
    {
        const QString path = m_folder.filePath(QString("pref%1.ini").arg(++m_files));
        writeFile(path, content);
        return path;
    }

    QTemporaryDir m_folder;
    int m_files = 0;
};

QTEST_GUILESS_MAIN(FavouritesSavingTest)
#include "tst_FavouritesSaving.moc"
