#include "cameras/CameraKey.h"
#include "camlist/Favourites.h"
#include "settings/Ini.h"
#include "support/Cost.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

class FavouritesTest : public QObject
{
    Q_OBJECT
private slots:
    void entryZeroIsHiddenAtFirst()
    {
        Favourites favourites;
        QCOMPARE(favourites.entries().size(), 1);
        QVERIFY(favourites.isHidden(0));
        QVERIFY(favourites.entries()[0].name.isEmpty());
        QVERIFY(favourites.entries()[0].key.isEmpty());
        const QString path = file({});
        favourites.save(path);
        QCOMPARE(GetFromINI("FAVORITES", "COUNT", path), "0");
        QCOMPARE(GetFromINI("FAVORITES", "NAME[0]", path), "");
    }

    void everyFavouriteOfAKeyGetsTheNewOne()
    {
        Favourites favourites;
        favourites.replaceAll({{"One", "host/a"}, {"Two", "host/b"}, {"Three", "http://host/a"}});
        QSignalSpy changed(&favourites, &Favourites::Changed);
        favourites.changeKey("host/a", "host/c");
        QCOMPARE(changed.count(), 1);
        QStringList kept;
        for (const Favourite& one : favourites.entries())
            kept << one.name + " " + one.key;
        QCOMPARE(kept, (QStringList{"One host/c", "Two host/b", "Three host/c"}));
        favourites.changeKey("host/none", "host/d");
        QCOMPARE(changed.count(), 1);
    }

    void readsWhatTheFileHolds()
    {
        Favourites favourites;
        QSignalSpy changed(&favourites, &Favourites::Changed);
        favourites.load(file("[favorites]\r\nname[0]=Harbour\r\nurl[0]=cam/h.jpg\x01"
                             "Cookie: a\r\n"
                             "NAME[1]=AT&T\r\nURL[1]=att/a\r\nCOUNT=2\r\n"));
        QCOMPARE(changed.count(), 1);
        QCOMPARE(favourites.entries().size(), 2);
        QCOMPARE(favourites.entries()[0].name, "Harbour");
        QCOMPARE(favourites.entries()[0].key, QString("cam/h.jpg\x01") + "Cookie: a");
        QCOMPARE(favourites.entries()[1].name, "AT&T");
        QVERIFY(!favourites.isHidden(0));
    }

    void withoutACountThereAreNone_data()
    {
        const Rows<QByteArray> row("count");
        row("absent", {});
        row("empty", "COUNT=\r\n");
        row("zero", "COUNT=0\r\n");
        row("negative", "COUNT=-1\r\n");
    }

    void withoutACountThereAreNone()
    {
        QFETCH(QByteArray, count);
        Favourites favourites;
        favourites.load(file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=b\r\n" + count));
        QCOMPARE(favourites.entries().size(), 1);
        QVERIFY(favourites.isHidden(0));
    }

    void eachBelowTheCountIsTaken_data()
    {
        const Rows<QByteArray, QStringList> row("content", "keys");
        const QByteArray gap = "NAME[0]=a\r\nURL[0]=k0\r\nURL[100]=k100\r\nNAME[100]=b\r\n"
                               "NAME[7]=c\r\nURL[7]=k7\r\n";
        row("behind a gap", gap + "COUNT=101\r\n", {"k0", "k7", "k100"});
        row("the last beyond", gap + "COUNT=100\r\n", {"k0", "k7"});
        row("a word", gap + "COUNT=many\r\n", {"k0", "k7", "k100"});
        row("too great", gap + "COUNT=99999999999999999999\r\n", {"k0", "k7", "k100"});
        row("odd numbers",
            "NAME[0]=a\r\nURL[0]=k0\r\nNAME[01]=b\r\nURL[01]=k1\r\nNAME[-1]=c\r\n"
            "URL[-1]=k-1\r\nNAMEx=d\r\nCOUNT=?\r\n",
            {"k0"});
        row("cut keys", "NAME[0]=a\r\nURL[0]=k0\r\nNAME[=b\r\n[=c\r\nURL=d\r\n=e\r\nCOUNT=?\r\n",
            {"k0"});
    }

    void eachBelowTheCountIsTaken()
    {
        QFETCH(QByteArray, content);
        const QString path = file("[FAVORITES]\r\n" + content);
        Favourites favourites;
        favourites.load(path);
        QTEST(keysOf(favourites), "keys");
        // And none is lost by the next save.
        QVERIFY(favourites.save(path));
        Favourites next;
        next.load(path);
        QTEST(keysOf(next), "keys");
    }

    void longTextsAreKeptWhole()
    {
        const QString key =
            "cam.example/" + QString(5'000, u'k') + QChar(1) + "Cookie: " + QString(5'000, u'c');
        const QString name(2'000, QChar(0x6771));
        const QString path = file({});
        Favourites first;
        first.replaceAll({{name, key}, {"short", "k"}});
        QVERIFY(first.save(path));
        for (int run = 0; run < 2; ++run) {
            QVERIFY(FlushINI());
            Favourites next;
            next.load(path);
            QCOMPARE(next.entries().size(), 2);
            QCOMPARE(next.entries()[0].name, name);
            QCOMPARE(next.entries()[0].key, key);
            QVERIFY(next.save(path));
        }
    }

    void aCountBeyondTheFileMakesNoEntries()
    {
        for (const char* count : {"2000000000", "9223372036854775807", "100"}) {
            Favourites favourites;
            favourites.load(file(QByteArray("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=b\r\nCOUNT=") +
                                 count + "\r\n"));
            QVERIFY(favourites.entries().size() <= 3);
            QCOMPARE(favourites.entries()[0].name, "a");
        }
    }

    void writesFullPairsWithoutGapsAndTheCountLast()
    {
        // The middle one of three has no caption, a fourth no address.
        const QString from =
            file("[FAVORITES]\r\nNAME[0]=one\r\nURL[0]=1\r\nNAME[1]=\r\nURL[1]=2\r\n"
                 "NAME[2]=three\r\nURL[2]=3\r\nNAME[3]=four\r\nURL[3]=\r\nCOUNT=4\r\n");
        Favourites favourites;
        favourites.load(from);
        QCOMPARE(favourites.entries().size(), 4);
        const QString to = m_folder.filePath("written.ini");
        favourites.save(to);
        QVERIFY(FlushINI());
        QCOMPARE(contentOf(to), "[FAVORITES]\r\nNAME[0]=one\r\nURL[0]=1\r\nNAME[1]=three\r\n"
                                "URL[1]=3\r\nCOUNT=2\r\n");
    }

    void longerListsLeaveTheirPairsBehind()
    {
        const QString path =
            file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nNAME[7]=old\r\nURL[7]=8\r\n"
                 "COUNT=1\r\n");
        Favourites favourites;
        favourites.load(path);
        favourites.save(path);
        QCOMPARE(GetFromINI("FAVORITES", "NAME[7]", path), "old");
        QCOMPARE(GetFromINI("FAVORITES", "COUNT", path), "1");
    }

    void eachOfTenThousandCostsTheSameToReadAndWrite()
    {
        constexpr int few = 1'000;
        QMap<int, QByteArray> contents;
        for (const int count : {few, 10 * few}) {
            QByteArray content = "[FAVORITES]\r\n";
            for (int i = 0; i < count; ++i) {
                const QByteArray n = QByteArray::number(i);
                content += "NAME[" + n + "]=Camera number " + n + "\r\nURL[" + n +
                           "]=cam.example/pictures/" + n + ".jpg\r\n";
            }
            contents[count] = content + "COUNT=" + QByteArray::number(count) + "\r\n";
        }
        const double times = growth(few, [&](int count) {
            const QString path = file(contents[count]);
            Favourites favourites;
            favourites.load(path);
            favourites.save(path);
            QVERIFY(FlushINI());
            QCOMPARE(favourites.entries().size(), count);
            QCOMPARE(favourites.entries().last().key,
                     QString("cam.example/pictures/%1.jpg").arg(count - 1));
        });
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }

    void addedOnesFollowTheOthers()
    {
        Favourites favourites;
        favourites.load(file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nCOUNT=1\r\n"));
        QSignalSpy changed(&favourites, &Favourites::Changed);
        favourites.add("Tom & Jerry", "cam/t\x01Cookie: a");
        QCOMPARE(changed.count(), 1);
        QCOMPARE(favourites.entries().size(), 2);
        QCOMPARE(favourites.entries()[0].name, "a");
        QCOMPARE(favourites.entries()[1].name, "Tom & Jerry");
        QCOMPARE(favourites.entries()[1].key, "cam/t\x01Cookie: a");
        QVERIFY(!favourites.isHidden(1));
    }

    void theFirstOneAddedLeavesEntryZeroHidden()
    {
        Favourites favourites;
        favourites.add("first", "cam/1");
        QCOMPARE(favourites.entries().size(), 2);
        QVERIFY(favourites.isHidden(0));
        QVERIFY(favourites.entries()[0].name.isEmpty());
        QVERIFY(favourites.entries()[0].key.isEmpty());
        QCOMPARE(favourites.entries()[1].name, "first");
        favourites.add("second", "cam/2");
        QCOMPARE(favourites.entries().size(), 3);
        QVERIFY(favourites.isHidden(0));
        // The file knows no gap, and so the next start closes it.
        const QString path = file({});
        favourites.save(path);
        Favourites next;
        next.load(path);
        QCOMPARE(next.entries().size(), 2);
        QVERIFY(!next.isHidden(0));
        QCOMPARE(next.entries()[0].name, "first");
    }

    void withoutANameOrAKeyNothingIsAdded()
    {
        Favourites favourites;
        QSignalSpy changed(&favourites, &Favourites::Changed);
        favourites.add("", "cam/1");
        favourites.add("first", "");
        favourites.add({}, {});
        QCOMPARE(favourites.entries().size(), 1);
        QVERIFY(favourites.isHidden(0));
        QCOMPARE(changed.count(), 0);
    }

    void theSameOneCanBeAddedTwice()
    {
        Favourites favourites;
        favourites.add("a", "cam/1");
        favourites.add("a", "cam/1");
        QCOMPARE(favourites.entries().size(), 3);
        QCOMPARE(favourites.entries()[1].key, favourites.entries()[2].key);
        const QString path = file({});
        favourites.save(path);
        QCOMPARE(GetFromINI("FAVORITES", "COUNT", path), "2");
    }

    void allCanBeReplaced()
    {
        Favourites favourites;
        favourites.add("gone", "cam/0");
        QSignalSpy changed(&favourites, &Favourites::Changed);
        favourites.replaceAll({{"one", "cam/1"}, {"two", "cam/2"}, {"three", "cam/3"}});
        QCOMPARE(changed.count(), 1);
        QCOMPARE(favourites.entries().size(), 3);
        QVERIFY(!favourites.isHidden(0));
        QCOMPARE(favourites.entries()[0].name, "one");
        QCOMPARE(favourites.entries()[2].key, "cam/3");
    }

    void withoutAnyEntryZeroIsHiddenAgain()
    {
        Favourites favourites;
        favourites.replaceAll({{"one", "cam/1"}, {"two", "cam/2"}});
        favourites.replaceAll({});
        QCOMPARE(favourites.entries().size(), 1);
        QVERIFY(favourites.isHidden(0));
        QVERIFY(favourites.entries()[0].name.isEmpty());
        QVERIFY(favourites.entries()[0].key.isEmpty());
    }

    void noSeparatorComesIn()
    {
        const QString separator(FieldSeparator);
        const QString harmless = QString("y") + QChar(0x308);
        Favourites added;
        added.add("n" + separator, "k" + separator + "x");
        Favourites replaced;
        replaced.replaceAll({{}, {"n" + separator, "k" + separator + "x"}});
        Favourites loaded;
        loaded.load(file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nNAME[1]=n\xFF\r\n"
                         "URL[1]=k\xFFx\r\nCOUNT=2\r\n"));
        for (const auto* one : {&added, &replaced, &loaded}) {
            QCOMPARE(one->entries().size(), 2);
            QCOMPARE(one->entries()[1].name, "n" + harmless);
            QCOMPARE(one->entries()[1].key, "k" + harmless + "x");
        }
    }

    void textsSurviveTheFile_data()
    {
        const Rows<QString> row("name");
        row("ampersand", "AT&T");
        row("two ampersands", "a && b &c &");
        row("markup", "<b>bold</b> &amp;");
        row("brackets and equals signs", "[a]=b;c");
        row("quotes and outer blanks", " \"quoted\" ");
        row("accents", QString::fromUtf8("K\u00f6ln Sk\u00e5ne"));
        row("other letters", QString::fromUtf8("\u041c\u043e\u0441\u043a\u0432\u0430 "
                                               "\u6771\u4eac \U0001F4F7"));
        row("right to left", QString::fromUtf8("\u05d7\u05d9\u05e4\u05d4 cam"));
        row("separator", QString(u'\u00ff'));
        row("tab", "left\tright");
    }

    void textsSurviveTheFile()
    {
        QFETCH(QString, name);
        const QString path = file({});
        Favourites first;
        first.replaceAll({{name, name}});
        const Favourite kept = first.entries()[0];
        first.save(path);
        for (int run = 0; run < 3; ++run) {
            QVERIFY(FlushINI());
            Favourites next;
            next.load(path);
            QCOMPARE(next.entries().size(), 1);
            QCOMPARE(next.entries()[0].name, kept.name);
            QCOMPARE(next.entries()[0].key, kept.key);
            next.save(path);
        }
    }

    void whatHappensDuringASaveIsNotWritten()
    {
        Favourites favourites;
        favourites.replaceAll({{"one", "cam/1"}, {"two", "cam/2"}, {"three", "cam/3"}});
        const QString path = file({});
        QTimer::singleShot(0, &favourites, [&] { favourites.replaceAll({}); });
        favourites.save(path);
        QVERIFY(favourites.isHidden(0)); // it did happen
        QCOMPARE(GetFromINI("FAVORITES", "COUNT", path), "3");
        QCOMPARE(GetFromINI("FAVORITES", "NAME[2]", path), "three");
    }

    void aNameIsShownOnOneLine()
    {
        QString name = "a\r\nb\tc";
        name += QChar(QChar::LineSeparator);
        name += QChar(QChar::ParagraphSeparator);
        QCOMPARE((Favourite{name + "&<d>", {}}.shownName()), "a  b c  &<d>");
        QCOMPARE((Favourite{"as  it is", {}}.shownName()), "as  it is");
    }

private:
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

QTEST_GUILESS_MAIN(FavouritesTest)
#include "tst_Favourites.moc"
