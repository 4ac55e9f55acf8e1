// Two main windows on one application folder, as two instances of the program have them: neither
// undoes what the other did.

#include "camlist/CamList.h"
#include "camlist/Favourites.h"
#include "support/Dialogs.h"
#include "support/ScratchFile.h"
#include "support/ShownMain.h"
#include "support/ShownManager.h"
#include "support/TimeSeam.h"
#include "viewer/WebCam.h"
#include "widgets/Notice.h"

#include <QMessageBox>

namespace {

const QByteArray Harbour = "Cities\377Harbour\377URL1";
const QByteArray Tower = "Sights\377Tower\377URL2";
const QByteArray Two = Harbour + '\xFF' + Tower;
const QByteArray OneFavourite = "[FAVORITES]\r\nNAME[0]=a\r\nURL[0]=1\r\nCOUNT=1\r\n";

CamList& listOf(QWidget& window)
{
    return *window.findChild<CamList*>("cList");
}

Favourites& favouritesOf(QWidget& window)
{
    return *window.findChild<Favourites*>();
}

QStringList namesOf(const Favourites& favourites)
{
    QStringList names;
    for (const Favourite& one : favourites.entries()) {
        if (one.isWhole())
            names << one.name;
    }
    return names;
}

/// Two windows on one folder with a list of two cameras and a favourite.
struct Both : ShownMain
{
    Both()
    {
        write("list.dat", Two + "\r\n");
        write("pref.ini", OneFavourite);
        shown();
        other = std::make_unique<frmMain>(frmMain::Folders{path({}), programPath({})}, QString());
    }
    QByteArray list() const { return contentOf(path("list.dat")); }

    std::unique_ptr<frmMain> other;
};

} // namespace

class frmMainTwoInstancesTest : public QObject
{
    Q_OBJECT
private slots:
    void theOneThatLooksOnUndoesNothing()
    {
        Both b;
        listOf(b.made()).AddCam("New", "URL9", "News");
        favouritesOf(b.made()).add("new", "9");
        b.made().close();
        const QByteArray list = b.list();
        const QByteArray preferences = b.preferences();
        QCOMPARE(list, Two + "\xFF"
                             "News\xFFNew\xFFURL9\r\n");
        QVERIFY(preferences.contains("NAME[1]=new\r\nURL[1]=9\r\n"));
        b.other->close();
        QCOMPARE(b.list(), list);
        QVERIFY(b.preferences().contains("NAME[1]=new\r\nURL[1]=9\r\n"));
        QVERIFY(b.preferences().contains("COUNT=2\r\n"));
        QCOMPARE(namesOf(favouritesOf(*b.other)), QStringList({"a", "new"}));
    }

    void whatBothChangedIsThere()
    {
        Both b;
        listOf(b.made()).AddCam("New", "URL9", "News");
        favouritesOf(b.made()).add("new", "9");
        listOf(*b.other).select("URL1");
        listOf(*b.other).Remove();
        favouritesOf(*b.other).add("newer", "10");
        b.made().close();
        b.other->close();
        QCOMPARE(b.list(), Tower + "\xFF"
                                   "News\xFFNew\xFFURL9\r\n");
        for (const char* pair : {"NAME[0]=a\r\n", "NAME[1]=new\r\n", "NAME[2]=newer\r\n"})
            QVERIFY(b.preferences().contains(pair));
        QVERIFY(b.preferences().contains("COUNT=3\r\n"));
    }

    /// What was written a while after the change is taken back, and nothing else.
    void exitWithoutSavingTakesTheChangesBack()
    {
        Both b;
        listOf(b.made()).AddCam("New", "URL9", "News");
        timerOf(listOf(b.made()), "tmrSave").elapse();
        QVERIFY(b.list().contains("URL9"));
        listOf(*b.other).AddCam("Other", "URL10", "News");
        timerOf(listOf(*b.other), "tmrSave").elapse();
        QVERIFY(listOf(*b.other).has("URL9"));
        b.choose("mnuOpt", "mnuOptExitWO");
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QTRY_VERIFY(!b.made().isVisible());
        QCOMPARE(b.list(), Two + "\xFF"
                                 "News\xFFOther\xFFURL10\r\n");
        QVERIFY(!timerOf(listOf(b.made()), "tmrSave").Enabled());
    }

    void whatWasKeptBesideIsTold()
    {
        Both b;
        listOf(b.made()).AddCam("New", "URL9", "News");
        listOf(*b.other).AddCam("Newer", "URL9", "News");
        timerOf(listOf(*b.other), "tmrSave").elapse();
        timerOf(listOf(b.made()), "tmrSave").elapse();
        QCOMPARE(b.part<WebCam>("Cam").notice().sentence(),
                 "Another window changed the list, too: its list is kept as \"list.dat.bak\".");
        QVERIFY(contentOf(b.path("list.dat.bak")).contains("Newer"));
        QVERIFY(b.list().contains("\xFFNew\xFFURL9"));
    }

    /// At the end nobody sees a notice.
    void whatIsKeptBesideAtTheEndIsALineOfItsOwn()
    {
        Both b;
        listOf(b.made()).AddCam("New", "URL9", "News");
        b.write("list.dat", "Dear diary");
        const QString line = "Another window changed the camera list, too. It is kept as " +
                             b.path("list.dat.bak") + ".";
        QTest::ignoreMessage(QtWarningMsg, qPrintable(line));
        b.made().close();
        QCOMPARE(contentOf(b.path("list.dat.bak")), QByteArray("Dear diary"));
    }

    /// Favourites that came in while it was open are not removed by its Ok.
    void theManagerKeepsWhatCameIn()
    {
        Both b;
        favouritesOf(b.made()).add("mine", "m");
        b.choose("mnuFav", "mnuFavMan");
        const ShownManager manager(b.part<frmMan>("frmMan"));
        favouritesOf(*b.other).add("other", "o");
        timerOf(favouritesOf(*b.other), "tmrSaveFavourites").elapse();
        timerOf(favouritesOf(b.made()), "tmrSaveFavourites").elapse();
        QCOMPARE(namesOf(favouritesOf(b.made())), QStringList({"a", "other", "mine"}));
        manager.tick(0);
        manager.press("cmdRem");
        manager.press("cmdOk");
        QCOMPARE(namesOf(favouritesOf(b.made())), QStringList({"other", "mine"}));
    }
};

QTEST_MAIN(frmMainTwoInstancesTest)
#include "tst_frmMainTwoInstances.moc"
