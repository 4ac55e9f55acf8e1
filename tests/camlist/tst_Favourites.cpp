#include "camlist/Favourites.h"
#include "settings/Ini.h"
#include "support/Slower.h"

class FavouritesTest : public QObject
{
    Q_OBJECT
private slots:
    void entryZeroIsHiddenAtFirst();
    void readsWhatTheFileHolds();
    void withoutACountThereAreNone_data();
    void withoutACountThereAreNone();
    void aCountBeyondTheFileMakesNoEntries();
    void writesFullPairsWithoutGapsAndTheCountLast();
    void longerListsLeaveTheirPairsBehind();
    void tenThousandAreReadAndWrittenWithinASecond();

private:
    QString file(const QByteArray& content);
    QTemporaryDir m_folder;
    int m_files = 0;
};

QString FavouritesTest::file(const QByteArray& content)
{
    const QString path = m_folder.filePath(QString("pref%1.ini").arg(++m_files));
    QFile ini(path);
    if (!ini.open(QIODevice::WriteOnly) || ini.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

void FavouritesTest::entryZeroIsHiddenAtFirst()
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

void FavouritesTest::readsWhatTheFileHolds()
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

void FavouritesTest::withoutACountThereAreNone_data()
{
    QTest::addColumn<QByteArray>("count");
    QTest::newRow("absent") << QByteArray();
    QTest::newRow("empty") << QByteArray("COUNT=\r\n");
    QTest::newRow("zero") << QByteArray("COUNT=0\r\n");
    QTest::newRow("word") << QByteArray("COUNT=two\r\n");
    QTest::newRow("negative") << QByteArray("COUNT=-1\r\n");
}

void FavouritesTest::withoutACountThereAreNone()
{
    QFETCH(QByteArray, count);
    Favourites favourites;
    favourites.load(file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=b\r\n" + count));
    QCOMPARE(favourites.entries().size(), 1);
    QVERIFY(favourites.isHidden(0));
}

void FavouritesTest::aCountBeyondTheFileMakesNoEntries()
{
    for (const char* count : {"2000000000", "9223372036854775807", "100"}) {
        Favourites favourites;
        favourites.load(
            file(QByteArray("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=b\r\nCOUNT=") + count + "\r\n"));
        QVERIFY(favourites.entries().size() <= 3);
        QCOMPARE(favourites.entries()[0].name, "a");
    }
}

void FavouritesTest::writesFullPairsWithoutGapsAndTheCountLast()
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
    QFile written(to);
    QVERIFY(written.open(QIODevice::ReadOnly));
    QCOMPARE(written.readAll(), "[FAVORITES]\r\nNAME[0]=one\r\nURL[0]=1\r\nNAME[1]=three\r\n"
                                "URL[1]=3\r\nCOUNT=2\r\n");
}

void FavouritesTest::longerListsLeaveTheirPairsBehind()
{
    const QString path = file("[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nNAME[7]=old\r\nURL[7]=8\r\n"
                              "COUNT=1\r\n");
    Favourites favourites;
    favourites.load(path);
    favourites.save(path);
    QCOMPARE(GetFromINI("FAVORITES", "NAME[7]", path), "old");
    QCOMPARE(GetFromINI("FAVORITES", "COUNT", path), "1");
}

void FavouritesTest::tenThousandAreReadAndWrittenWithinASecond()
{
    QByteArray content = "[FAVORITES]\r\n";
    for (int i = 0; i < 10'000; ++i) {
        const QByteArray n = QByteArray::number(i);
        content += "NAME[" + n + "]=Camera number " + n + "\r\nURL[" + n +
                   "]=cam.example/pictures/" + n + ".jpg\r\n";
    }
    const QString path = file(content + "COUNT=10000\r\n");
    QElapsedTimer clock;
    clock.start();
    Favourites favourites;
    favourites.load(path);
    favourites.save(path);
    QVERIFY(FlushINI());
    const auto elapsed = clock.elapsed();
    QCOMPARE(favourites.entries().size(), 10'000);
    QCOMPARE(favourites.entries().last().key, "cam.example/pictures/9999.jpg");
    qInfo("10,000 favourites read and written in %lld ms", static_cast<long long>(elapsed));
    QVERIFY2(elapsed < 1000 * Slower, qPrintable(QString::number(elapsed)));
}

QTEST_GUILESS_MAIN(FavouritesTest)
#include "tst_Favourites.moc"
