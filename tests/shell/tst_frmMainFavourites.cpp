// Favourites through the main window: the menu, the manager, and the next run of the program.

#include "camlist/Favourites.h"
#include "support/Cost.h"
#include "support/Pictures.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/ShownManager.h"
#include "viewer/WebCam.h"

#include <utility>

namespace {

using Pairs = QList<std::pair<QByteArray, QByteArray>>;

QByteArray preferencesOf(const Pairs& pairs)
{
    QByteArray content = "[FAVORITES]\r\n";
    for (qsizetype i = 0; i < pairs.size(); ++i) {
        const QByteArray n = QByteArray::number(i);
        content +=
            "NAME[" + n + "]=" + pairs[i].first + "\r\nURL[" + n + "]=" + pairs[i].second + "\r\n";
    }
    return content + "COUNT=" + QByteArray::number(pairs.size()) + "\r\n";
}

/// The manager, opened from the menu.
ShownManager openManager(ShownMain& m)
{
    m.shown();
    m.choose("mnuFav", "mnuFavMan");
    return ShownManager(m.part<frmMan>("frmMan"));
}

/// The main window with these favourites and the manager open.
struct Managed : OpenMain
{
    explicit Managed(const Pairs& pairs)
        : OpenMain(preferencesOf(pairs))
    {
    }
    ShownManager manager = openManager(*this);
};

Favourites& favouritesOf(ShownMain& m)
{
    return *m.made().findChild<Favourites*>();
}

/// What the menu shows below its separator; an entry that is not visible in brackets.
QStringList menuOf(ShownMain& m)
{
    QStringList found;
    for (const auto* one : m.part<QMenu>("mnuFav").actions().mid(2))
        found << (one->isVisible() ? one->text() : "(" + one->text() + ")");
    return found;
}

} // namespace

static QByteArray preferencesOfMany(int count)
{
    Pairs pairs;
    for (int i = 0; i < count; ++i) {
        const QByteArray n = QByteArray::number(i);
        pairs.append({"Camera number " + n, "cam.example/" + n});
    }
    return preferencesOf(pairs);
}

class frmMainFavouritesTest : public QObject
{
    Q_OBJECT
private slots:
    void theManagerBlocksTheWindow()
    {
        Managed m(Pairs{{"a", "1"}});
        QVERIFY(m.manager.window()->isModal());
        QCOMPARE(m.manager.window()->parentWidget(), &m.made());
        QCOMPARE(QApplication::activeModalWidget(), m.manager.window());
        QVERIFY(m.made().screen()->geometry().contains(m.manager.window()->frameGeometry()));
    }

    void theManagerCanBeOpenedAgain()
    {
        ShownMain m;
        m.write("pref.ini", preferencesOf({{"a", "1"}, {"b", "2"}}));
        for (int i = 0; i < 3; ++i) {
            const auto manager = openManager(m);
            QCOMPARE(manager.items(), (QStringList{"a", "b"}));
            manager.tick(0);
            QTest::keyClick(&manager.list(), Qt::Key_Escape);
            QTRY_VERIFY(!manager.window());
        }
        QCOMPARE(m.made().findChildren<frmMan*>().size(), 0);
    }

    void theFirstOneAddedBecomesEntryOne()
    {
        OpenMain m;
        QCOMPARE(menuOf(m), QStringList{"()"});
        favouritesOf(m).add("first", "cam.example/1");
        QCOMPARE(menuOf(m), (QStringList{"()", "first"}));
        QVERIFY(!m.entry("mnuFavGo(0)").isVisible());
        m.choose("mnuFav", "mnuFavGo(1)");
        QTRY_COMPARE(m.part<WebCam>("Cam").Url(), "cam.example/1");
    }

    void okClosesTheGap()
    {
        ShownMain m;
        favouritesOf(m).add("first", "cam/1");
        favouritesOf(m).add("second", "cam/2");
        const auto manager = openManager(m);
        QCOMPARE(manager.items(), (QStringList{"first", "second"}));
        manager.press("cmdOk");
        QCOMPARE(menuOf(m), (QStringList{"first", "second"}));
    }

    void theNextStartClosesTheGap()
    {
        ShownMain m;
        favouritesOf(m).add("first", "cam/1");
        m.made().close();
        QVERIFY(m.preferences().endsWith(preferencesOf({{"first", "cam/1"}})));
        m.madeAgain();
        QCOMPARE(menuOf(m), QStringList{"first"});
    }

    void withEveryItemRemovedNoneIsLeft()
    {
        Managed m({{"a", "1"}, {"b", "2"}, {"c", "3"}});
        m.manager.press("cmdAll");
        m.manager.press("cmdRem");
        QCOMPARE(menuOf(m), (QStringList{"a", "b", "c"}));
        m.manager.press("cmdOk");
        QCOMPARE(menuOf(m), QStringList{"()"});
        m.made().close();
        QVERIFY(m.preferences().contains("COUNT=0\r\n"));
        m.madeAgain();
        QCOMPARE(menuOf(m), QStringList{"()"});
    }

    void twoOfOneCameraBothSurvive()
    {
        Managed m({{"one", "cam/1"}, {"other", "cam/1"}});
        QCOMPARE(m.manager.items(), (QStringList{"one", "other"}));
        m.manager.press("cmdOk");
        QCOMPARE(menuOf(m), (QStringList{"one", "other"}));
        m.made().close();
        QVERIFY(m.preferences().startsWith(preferencesOf({{"one", "cam/1"}, {"other", "cam/1"}})));
    }

    void theSortedOrderIsTheMenus()
    {
        Managed m({{"zoo", "z"}, {"Mole", "m"}, {"alpha", "a"}});
        m.manager.press("cmdSort");
        QCOMPARE(menuOf(m), (QStringList{"zoo", "Mole", "alpha"}));
        m.manager.press("cmdOk");
        QCOMPARE(menuOf(m), (QStringList{"alpha", "Mole", "zoo"}));
        m.choose("mnuFav", "mnuFavGo(2)");
        QTRY_COMPARE(m.part<WebCam>("Cam").Url(), "z");
        m.made().close();
        QVERIFY(m.preferences().startsWith(
            preferencesOf({{"alpha", "a"}, {"Mole", "m"}, {"zoo", "z"}})));
    }

    void cancelLeavesTheMenu()
    {
        Managed m({{"b", "2"}, {"a", "1"}});
        m.manager.press("cmdSort");
        m.manager.tick(0);
        m.manager.press("cmdRem");
        m.manager.press("cmdCan");
        QTRY_VERIFY(!m.manager.window());
        QCOMPARE(menuOf(m), (QStringList{"b", "a"}));
    }

    void theMenuFollowsAListThatGrowsAndShrinks()
    {
        OpenMain m(preferencesOf({{"a", "1"}, {"b", "2"}, {"c", "3"}}));
        Favourites& favourites = favouritesOf(m);
        favourites.add("d", "4");
        QCOMPARE(menuOf(m), (QStringList{"a", "b", "c", "d"}));
        favourites.replaceAll({{"x", "9"}});
        QCOMPARE(menuOf(m), QStringList{"x"});
        QVERIFY(!m.made().findChild<QAction*>("mnuFavGo(1)"));
        favourites.add("y", "8");
        QCOMPARE(menuOf(m), (QStringList{"x", "y"}));
        m.choose("mnuFav", "mnuFavGo(0)");
        QTRY_COMPARE(m.part<WebCam>("Cam").Url(), "9");
    }

    void aSortedFavouriteOpensWithItsHeader()
    {
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        ShownMain m;
        const QString key = server.url("/f.jpg") + QChar(1) + "Cookie: a=b";
        m.write("pref.ini", preferencesOf({{"Other", "other.example"}, {"AT&T", key.toLatin1()}}));
        const auto manager = openManager(m);
        manager.press("cmdSort");
        manager.press("cmdOk");
        QTRY_VERIFY(!manager.window());
        auto& cam = m.part<WebCam>("Cam");
        QSignalSpy changes(&cam, &WebCam::ImageChange);
        m.choose("mnuFav", "mnuFavGo(0)");
        QTRY_COMPARE(cam.Url(), key);
        // Its address, but not its header.
        QCOMPARE(m.part<QComboBox>("cmbUrl").currentText(), "http://" + server.url("/f.jpg"));
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(server.requests()[0].contains("\r\nCookie: a=b\r\n"));
    }

    void anAmpersandStaysOne()
    {
        ShownMain m;
        const auto content = preferencesOf({{"AT&T", "1"}, {"Black && White", "2"}, {"&&&", "3"}});
        m.write("pref.ini", content);
        for (int run = 0; run < 3; ++run) {
            m.madeAgain();
            const auto manager = openManager(m);
            QCOMPARE(manager.items(), (QStringList{"AT&T", "Black && White", "&&&"}));
            manager.press("cmdOk");
            QCOMPARE(menuOf(m), (QStringList{"AT&&T", "Black &&&& White", "&&&&&&"}));
            QTRY_VERIFY(!manager.window());
            m.made().close();
            QVERIFY(m.preferences().startsWith(content));
        }
    }

    void anAddedNameIsOneLineOfPlainText()
    {
        ShownMain m;
        m.made();
        favouritesOf(m).add("two\r\nlines\t& <b>more</b>", "cam/1");
        QCOMPARE(menuOf(m), (QStringList{"()", "two  lines && <b>more</b>"}));
    }

    void anEmptyNameLeavesNoGap()
    {
        ShownMain m;
        m.write("pref.ini", preferencesOf({{"first", "1"}, {"", "2"}, {"third", "3"}}));
        m.made();
        QVERIFY(QFile::remove(m.path("pref.ini")));
        m.shown().close();
        QVERIFY(m.preferences().endsWith(preferencesOf({{"first", "1"}, {"third", "3"}})));
    }

    void theEndOfTheProgramDropsTheManagersWork()
    {
        Managed m({{"b", "2"}, {"a", "1"}});
        const auto content = preferencesOf({{"b", "2"}, {"a", "1"}});
        m.manager.press("cmdSort");
        m.manager.press("cmdAll");
        m.manager.press("cmdRem");
        // A key that waits while the preferences are written comes to nothing.
        QTimer::singleShot(0, m.manager.window(),
                           [&] { QTest::keyClick(&m.manager.list(), Qt::Key_Return); });
        m.made().shutDown();
        QVERIFY(m.preferences().startsWith(content));
        QCOMPARE(menuOf(m), (QStringList{"b", "a"}));
        m.madeAgain();
        QVERIFY(!m.manager.window());
        QCOMPARE(menuOf(m), (QStringList{"b", "a"}));
    }

    void aWindowDestroyedWithTheManagerOpenDoesNoHarm()
    {
        Managed m({{"b", "2"}, {"a", "1"}});
        const auto content = preferencesOf({{"b", "2"}, {"a", "1"}});
        m.manager.press("cmdSort");
        m.madeAgain();
        QVERIFY(!m.manager.window());
        QCOMPARE(m.preferences(), content);
    }

    void exitWithoutSavingKeepsThem()
    {
        ShownMain m;
        favouritesOf(m).add("new", "cam/new");
        m.shown();
        m.choose("mnuOpt", "mnuOptExitWO");
        QMessageBox* box = nullptr;
        QTRY_VERIFY((box = m.made().findChild<QMessageBox*>()));
        QTest::mouseClick(box->button(QMessageBox::Yes), Qt::LeftButton);
        QTRY_VERIFY(!m.made().isVisible());
        QVERIFY(m.preferences().endsWith(preferencesOf({{"new", "cam/new"}})));
    }

    void aThousandStayUsable()
    {
        OpenMain m(preferencesOfMany(1'000));
        auto& menu = m.part<QMenu>("mnuFav");
        for (const Qt::Key way : {Qt::Key_End, Qt::Key_Up}) {
            m.part<WebCam>("Cam").setUrl("none");
            // Else the menu bar does not hear of its access key.
            QVERIFY(waitForActive(&m.made()));
            QTest::keyClick(&m.made(), Qt::Key_F, Qt::AltModifier);
            QVERIFY(waitForExposed(&menu));
            QVERIFY(m.made().screen()->geometry().contains(menu.geometry()));
            // The access key has chosen the first entry: up from there is the last one.
            QTest::keyClick(&menu, way);
            QTRY_COMPARE(menu.activeAction(), &m.entry("mnuFavGo(999)"));
            QVERIFY(menu.rect().contains(menu.actionGeometry(menu.activeAction())));
            QTest::keyClick(&menu, Qt::Key_Return);
            QTRY_COMPARE(m.part<WebCam>("Cam").Url(), "cam.example/999");
            QTRY_VERIFY(!menu.isVisible());
        }
    }

    void eachOfAThousandCostsTheSameToShow()
    {
        constexpr int few = 100;
        const auto open = [](ShownMain& m) {
            auto& menu = m.part<QMenu>("mnuFav");
            QVERIFY(waitForActive(&m.made()));
            QTest::keyClick(&m.made(), Qt::Key_F, Qt::AltModifier);
            QVERIFY(waitForExposed(&menu));
            menu.close();
            QTRY_VERIFY(!menu.isVisible());
        };
        const auto costOfMany = [&](int count) {
            OpenMain m(preferencesOfMany(count));
            return costOf([&] { open(m); });
        };
        // Below that it is the waiting that is measured.
        const double least = costOf(decodeTwelveMegapixels) / 50;
        const double ofFew = std::max(costOfMany(few), least);
        const double times = costOfMany(10 * few) / ofFew;
        qInfo("ten times as many open at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }

    void eachOfTenThousandCostsTheSameToChange()
    {
        constexpr int few = 1'000;
        OpenMain m;
        Favourites& favourites = favouritesOf(m);
        QMap<int, QList<Favourite>> lists;
        for (const int count : {few, 10 * few}) {
            for (int i = 0; i < count; ++i)
                lists[count].append(Favourite{QString("Camera number %1").arg(i), "cam"});
        }
        const double times = growth(few, [&](int count) {
            favourites.replaceAll(lists[count]);
            favourites.add("one more", "cam/more");
            favourites.replaceAll({});
        });
        qInfo("ten times as many change at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
        QCOMPARE(menuOf(m), QStringList{"()"});
    }
};

QTEST_MAIN(frmMainFavouritesTest)
#include "tst_frmMainFavourites.moc"
