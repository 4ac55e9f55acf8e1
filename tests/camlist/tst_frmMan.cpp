// The window "Manage Favorites" in a person's hands.

#include "cameras/CameraKey.h"
#include "camlist/Favourites.h"
#include "support/Cost.h"
#include "support/Rows.h"
#include "support/ShownManager.h"
#include "widgets/Twips.h"

#include <QHeaderView>
#include <QToolTip>

#include <utility>

namespace {

const QList<Favourite> Three = {
    {"Zoo", "zoo.example/a.jpg"}, {"alpha", "alpha.example"}, {"Mole", "mole.example/m"}};

/// Some favourites and a window that owns their manager.
struct Owned
{
    explicit Owned(const QList<Favourite>& list)
    {
        favourites.replaceAll(list);
        owner.resize(700, 500);
        owner.show();
        owner.activateWindow();
        // Else its own keyboard focus may come after the manager's.
        if (!waitForActive(&owner))
            qFatal("the owner does not become active");
        QObject::connect(&favourites, &Favourites::Changed, [this] { ++changes; });
    }
    frmMan& opened()
    {
        auto* window = new frmMan(&favourites, &owner);
        window->open();
        return *window;
    }
    QStringList names() const
    {
        QStringList found;
        for (const Favourite& one : favourites.entries())
            found << one.name;
        return found;
    }

    QWidget owner;
    Favourites favourites;
    int changes = 0;
};

/// The manager of some favourites, open above a window.
struct Opened : Owned, ShownManager
{
    explicit Opened(const QList<Favourite>& list = Three)
        : Owned(list)
        , ShownManager(opened())
    {
    }
};

} // namespace

class frmManTest : public QObject
{
    Q_OBJECT
private slots:
    void listsTheFavouritesUnchecked()
    {
        const Opened o;
        QCOMPARE(o.window()->windowTitle(), "Manage Favorites");
        QCOMPARE(o.items(), (QStringList{"Zoo", "alpha", "Mole"}));
        QCOMPARE(o.list().model()->columnCount(), 1);
        QCOMPARE(o.list().model()->headerData(0, Qt::Horizontal).toString(), "Name");
        QVERIFY(!o.list().header()->isHidden());
        // It blocks its owner.
        QVERIFY(o.window()->isModal());
        QCOMPARE(QApplication::activeModalWidget(), o.window());
        for (const auto& [name, caption] :
             {std::pair{"cmdOk", "Ok"}, std::pair{"cmdCan", "Cancel"},
              std::pair{"cmdRem", "Remove"}, std::pair{"cmdAll", "Select All"},
              std::pair{"cmdNone", "De-Select All"}, std::pair{"cmdSort", "Sort"}}) {
            QCOMPARE(o.button(name).text(), caption);
            QVERIFY(o.button(name).isVisible());
        }
    }

    void listsWhatHasANameAndAKeyOnly()
    {
        const Opened o({{"first", "1"}, {"", "2"}, {"third", "3"}, {"fourth", ""}});
        QCOMPARE(o.items(), (QStringList{"first", "third"}));
        o.press("cmdOk");
        QCOMPARE(o.names(), (QStringList{"first", "third"}));
    }

    void keysTellItemsOfOneCameraApart()
    {
        const Opened o({{"a", "cam/1\x01X: y"}, {"a", "cam/1\x01X: y"}});
        static const QRegularExpression form("^cam/1\x01X: y\u00ff ([0-9.e-]+) ([0-9.e-]+)$");
        for (int row : {0, 1}) {
            const auto match = form.match(o.key(row));
            QVERIFY2(match.hasMatch(), qPrintable(o.key(row)));
            for (int part : {1, 2}) {
                bool isNumber = false;
                const double number = match.captured(part).toDouble(&isNumber);
                QVERIFY(isNumber);
                QVERIFY(number >= 0 && number <= 32000);
            }
            QVERIFY(match.captured(1) != match.captured(2));
        }
        QVERIFY(o.key(0) != o.key(1));
    }

    void theColumnFollowsTheList()
    {
        const Opened o;
        auto& list = o.list();
        QCOMPARE(list.columnWidth(0), list.width() - pixelsFromTwips(400));
        const int before = list.width();
        o.window()->resize(o.window()->size() + QSize(150, 60));
        QTRY_COMPARE(list.width(), before + 150);
        QCOMPARE(list.columnWidth(0), list.width() - 27);
        o.window()->resize(1, 1);
        QTRY_VERIFY(list.width() < before);
        QCOMPARE(list.columnWidth(0), list.width() - 27);
        QVERIFY(list.columnWidth(0) > 100);
    }

    void selectAllAndDeSelectAll()
    {
        const Opened o;
        o.tick(1);
        QCOMPARE(o.items(), (QStringList{"Zoo", "[x] alpha", "Mole"}));
        o.press("cmdAll");
        QCOMPARE(o.items(), (QStringList{"[x] Zoo", "[x] alpha", "[x] Mole"}));
        o.tick(0);
        QCOMPARE(o.items(), (QStringList{"Zoo", "[x] alpha", "[x] Mole"}));
        o.press("cmdNone");
        QCOMPARE(o.items(), (QStringList{"Zoo", "alpha", "Mole"}));
        QCOMPARE(o.changes, 0);
    }

    void removeTakesTheCheckedItems()
    {
        const Opened o;
        o.tick(0);
        o.tick(2);
        o.press("cmdRem");
        QCOMPARE(o.items(), QStringList{"alpha"});
        QCOMPARE(o.changes, 0);
        QCOMPARE(o.names(), (QStringList{"Zoo", "alpha", "Mole"}));
        o.press("cmdOk");
        QCOMPARE(o.names(), QStringList{"alpha"});
        QCOMPARE(o.favourites.entries()[0].key, "alpha.example");
    }

    void theCurrentItemStaysNearby()
    {
        const Opened o({{"a", "1"}, {"b", "2"}, {"c", "3"}, {"d", "4"}, {"e", "5"}});
        auto& list = o.list();
        const auto current = [&] { return list.currentIndex().data().toString(); };
        QCOMPARE(current(), "a");
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&list, Qt::Key_Down);
        o.tick(0);
        list.setCurrentIndex(list.model()->index(3, 0));
        o.press("cmdRem");
        QCOMPARE(current(), "d");
        QVERIFY(list.selectionModel()->isSelected(list.currentIndex()));
        o.tick(2); // itself
        o.press("cmdRem");
        QCOMPARE(current(), "e");
        o.tick(2); // the last one
        o.press("cmdRem");
        QCOMPARE(current(), "c");
        o.press("cmdAll");
        o.press("cmdRem");
        QVERIFY(!list.currentIndex().isValid());
    }

    void okHandsOver_data()
    {
        const Rows<bool> row("byKey");
        row("a click", false);
        row("Enter in the list", true);
    }

    void okHandsOver()
    {
        QFETCH(bool, byKey);
        const Opened o;
        o.tick(1);
        o.press("cmdRem");
        if (byKey)
            QTest::keyClick(&o.list(), Qt::Key_Return);
        else
            o.press("cmdOk");
        QCOMPARE(o.changes, 1);
        QCOMPARE(o.names(), (QStringList{"Zoo", "Mole"}));
        QVERIFY(!o.favourites.isHidden(0));
        QTRY_VERIFY(!o.window()); // and is gone
    }

    void withoutOkTheFavouritesStay_data()
    {
        const Rows<QString> row("how");
        for (const char* how : {"Cancel", "Escape", "the frame"})
            row(how, QString(how));
    }

    void withoutOkTheFavouritesStay()
    {
        QFETCH(QString, how);
        const Opened o;
        o.press("cmdSort");
        o.tick(1);
        o.press("cmdRem");
        if (how == "Cancel")
            o.press("cmdCan");
        else if (how == "Escape")
            QTest::keyClick(&o.list(), Qt::Key_Escape);
        else
            o.window()->close();
        QTRY_VERIFY(!o.window());
        QCOMPARE(o.changes, 0);
        QCOMPARE(o.names(), (QStringList{"Zoo", "alpha", "Mole"}));
    }

    void itsEndAmidstWorkChangesNothing()
    {
        const Opened o;
        o.press("cmdAll");
        o.press("cmdRem");
        delete o.window();
        QCOMPARE(o.changes, 0);
        QCOMPARE(o.favourites.entries().size(), 3);
    }

    void withEveryItemRemovedOkHidesEntryZero()
    {
        const Opened o;
        o.press("cmdAll");
        o.press("cmdRem");
        QCOMPARE(o.items(), QStringList());
        o.press("cmdOk");
        QCOMPARE(o.names(), QStringList{""});
        QCOMPARE(o.favourites.entries()[0].key, "");
        QVERIFY(o.favourites.isHidden(0));
    }

    void twoOfOneCameraBothSurvive()
    {
        const Opened o({{"a", "cam/1"}, {"b", "cam/1"}, {"a", "cam/1"}});
        QCOMPARE(o.items(), (QStringList{"a", "b", "a"}));
        o.press("cmdOk");
        QCOMPARE(o.names(), (QStringList{"a", "b", "a"}));
        for (const Favourite& one : o.favourites.entries())
            QCOMPARE(one.key, "cam/1");
    }

    void keysAreHandedOverWhole()
    {
        // A separator from an old file was made harmless before: nothing is cut at it.
        const QString key = QString("cam/\u00ff/") + HeaderMark + "Cookie: a=\u00ffb";
        const Opened o({{"\u00ff", key}});
        const Favourite before = o.favourites.entries()[0];
        QVERIFY(before.key.endsWith("b"));
        QVERIFY(before.key.contains(HeaderMark));
        o.press("cmdOk");
        QCOMPARE(o.favourites.entries()[0].key, before.key);
        QCOMPARE(o.favourites.entries()[0].name, before.name);
    }

    void sortsByNameWithoutRegardToCase()
    {
        const Opened o(
            {{"zoo", "1"}, {"Alpha", "2"}, {"mole", "3"}, {"beta", "4"}, {"Cam 10", "5"}});
        auto& list = o.list();
        list.setCurrentIndex(list.model()->index(2, 0));
        o.tick(3);
        list.setCurrentIndex(list.model()->index(2, 0));
        o.press("cmdSort");
        QCOMPARE(o.items(), (QStringList{"Alpha", "[x] beta", "Cam 10", "mole", "zoo"}));
        QCOMPARE(list.currentIndex().data().toString(), "mole");
        // It stays sorted.
        o.press("cmdRem");
        QCOMPARE(o.items(), (QStringList{"Alpha", "Cam 10", "mole", "zoo"}));
        o.press("cmdSort");
        QCOMPARE(o.items(), (QStringList{"Alpha", "Cam 10", "mole", "zoo"}));
        QCOMPARE(o.changes, 0);
        o.press("cmdOk");
        QCOMPARE(o.names(), (QStringList{"Alpha", "Cam 10", "mole", "zoo"}));
        QCOMPARE(o.favourites.entries()[1].key, "5");
    }

    void sortsAsTheUsersLanguageDoes()
    {
        const QLocale before;
        QLocale::setDefault(QLocale(QLocale::German));
        const auto restore = qScopeGuard([&] { QLocale::setDefault(before); });
        const Opened o({{"zoo", "1"}, {"\u00c4rzte", "2"}, {"Birne", "3"}, {"arm", "4"}});
        o.press("cmdSort");
        QCOMPARE(o.items(), (QStringList{"arm", "\u00c4rzte", "Birne", "zoo"}));
    }

    void equalNamesKeepTheirOrder()
    {
        QList<Favourite> list;
        for (int i = 0; i < 40; ++i)
            list.append(Favourite{i % 2 ? "same" : "SAME", QString::number(i)});
        list.append(Favourite{"a", "last"});
        const Opened o(list);
        o.press("cmdSort");
        o.press("cmdOk");
        QCOMPARE(o.favourites.entries()[0].key, "last");
        for (int i = 0; i < 40; ++i)
            QCOMPARE(o.favourites.entries()[i + 1].key, QString::number(i));
    }

    void theHeaderDoesNotSort()
    {
        const Opened o;
        QHeaderView& header = *o.list().header();
        for (int i = 0; i < 2; ++i) {
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, header.rect().center());
            QCOMPARE(o.items(), (QStringList{"Zoo", "alpha", "Mole"}));
        }
    }

    void namesAreOneLineOfPlainText()
    {
        const Opened o(
            {{"AT&T && more", "1"}, {"<b>bold</b>", "2"}, {"two\r\nlines\tand more", "3"}});
        auto& list = o.list();
        QCOMPARE(o.items(), (QStringList{"AT&T && more", "<b>bold</b>", "two  lines and more"}));
        QCOMPARE(list.model()->index(1, 0).data(Qt::ToolTipRole).toString(),
                 "<p>&lt;b&gt;bold&lt;/b&gt;</p>");
        for (int row : {1, 2}) {
            QCOMPARE(list.visualRect(list.model()->index(row, 0)).height(),
                     list.visualRect(list.model()->index(0, 0)).height());
        }
        o.press("cmdOk");
        QCOMPARE(o.names(), (QStringList{"AT&T && more", "<b>bold</b>", "two\r\nlines\tand more"}));
    }

    void onlyCutNamesAreSaidInATooltip()
    {
        const Opened o({{"short", "1"},
                        {"A " + QString("long name ").repeated(60), "2"},
                        {QString(700, 'W'), "3"},
                        {QString("word ").repeated(2'000), "4"}});
        auto& list = o.list();
        const auto hover = [&](int row) {
            const QPoint at = list.visualRect(list.model()->index(row, 0)).center();
            QHelpEvent event(QEvent::ToolTip, at, list.viewport()->mapToGlobal(at));
            QApplication::sendEvent(list.viewport(), &event);
        };
        hover(1);
        QTRY_VERIFY(QToolTip::isVisible());
        QVERIFY(QToolTip::text().contains("A long name"));
        hover(0);
        QVERIFY(!QToolTip::text().contains("short"));
        QTRY_VERIFY(!QToolTip::isVisible());
        QCOMPARE(list.model()->index(2, 0).data(Qt::ToolTipRole).toString().count('W'), 500);
        // A very long one still fits on the screen.
        for (int row : {2, 3}) {
            hover(row);
            QWidget* tip = nullptr;
            for (auto* one : QApplication::topLevelWidgets()) {
                if (one->isVisible() && one->windowType() == Qt::ToolTip)
                    tip = one;
            }
            QVERIFY(tip);
            QVERIFY(tip->screen()->size().width() > tip->width());
            QVERIFY(tip->screen()->size().height() > tip->height());
            hover(0);
            QTRY_VERIFY(!QToolTip::isVisible());
        }
    }

    void theKeyboardDoesAll()
    {
        const Opened o;
        auto& list = o.list();
        QCOMPARE(QApplication::focusWidget(), &list);
        QCOMPARE(list.currentIndex().row(), 0);
        QVERIFY(list.selectionModel()->isSelected(list.currentIndex())); // it is seen where one is
        QTest::keyClick(&list, Qt::Key_Space);
        QCOMPARE(o.items(), (QStringList{"[x] Zoo", "alpha", "Mole"}));
        QTest::keyClick(&list, Qt::Key_Space);
        QCOMPARE(o.items(), (QStringList{"Zoo", "alpha", "Mole"}));
        QTest::keyClick(&list, Qt::Key_Down);
        QTest::keyClick(&list, Qt::Key_Space);
        QCOMPARE(o.items(), (QStringList{"Zoo", "[x] alpha", "Mole"}));
        QTest::keyClicks(&list, "mo");
        QCOMPARE(list.currentIndex().row(), 2);

        QTest::keyClick(&list, Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &o.button("cmdRem"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(o.items(), (QStringList{"Zoo", "Mole"}));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(o.names(), (QStringList{"Zoo", "Mole"}));
    }

    void theDeleteKeyIsNotRemove()
    {
        // It would remove what is checked, where people expect it to remove what is current.
        const Opened o;
        o.tick(0);
        QTest::keyClick(&o.list(), Qt::Key_Delete);
        QCOMPARE(o.items().size(), 3);
    }

    void enterIsOkAfterAClick()
    {
        for (const char* button : {"cmdAll", "cmdNone", "cmdSort", "cmdRem"}) {
            const Opened o;
            o.tick(0);
            o.press(button);
            QVERIFY(QApplication::focusWidget());
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
            QVERIFY2(o.changes == 1, button);
        }
    }

    void buttonsWithoutWorkAreOff()
    {
        const Opened o;
        auto& remove = o.button("cmdRem");
        QVERIFY(!remove.isEnabled());
        o.tick(2);
        QVERIFY(remove.isEnabled());
        o.tick(2);
        QVERIFY(!remove.isEnabled());
        o.press("cmdAll");
        QVERIFY(remove.isEnabled());
        o.press("cmdNone");
        QVERIFY(!remove.isEnabled());
        o.press("cmdAll");
        o.press("cmdRem");
        for (const char* name : {"cmdRem", "cmdAll", "cmdNone", "cmdSort"})
            QVERIFY2(!o.button(name).isEnabled(), name);
        for (const char* name : {"cmdOk", "cmdCan"})
            QVERIFY2(o.button(name).isEnabled(), name);
    }

    void aButtonThatGoesOffLeavesTheKeyboardToTheList()
    {
        const Opened o;
        o.tick(0);
        auto& remove = o.button("cmdRem");
        remove.setFocus();
        QTest::keyClick(&remove, Qt::Key_Space);
        QVERIFY(!remove.isEnabled());
        QCOMPARE(QApplication::focusWidget(), &o.list());
    }

    void withoutFavouritesThereIsAnEmptyList()
    {
        const Opened o(QList<Favourite>{});
        QCOMPARE(o.items(), QStringList());
        QCOMPARE(QApplication::focusWidget(), &o.list());
        for (const char* name : {"cmdRem", "cmdAll", "cmdNone", "cmdSort"})
            QVERIFY2(!o.button(name).isEnabled(), name);
        QTest::keyClick(&o.list(), Qt::Key_Space);
        QTest::keyClick(&o.list(), Qt::Key_Down);
        o.press("cmdOk");
        QVERIFY(o.favourites.isHidden(0));
        QCOMPARE(o.favourites.entries().size(), 1);
    }

    void eachOfTenThousandCostsTheSame()
    {
        const auto change = [](int count) {
            QList<Favourite> list;
            for (int i = 0; i < count; ++i)
                list.append(Favourite{
                    QString("Camera number %1").arg((i * 7919) % count, 5, 10, QChar('0')),
                    QString("cam.example/%1.jpg").arg(i)});
            const Opened o(list);
            o.press("cmdAll");
            o.press("cmdSort");
            o.press("cmdNone");
            for (int row = 0; row < count; row += 2)
                o.list().model()->setData(o.list().model()->index(row, 0), Qt::Checked,
                                          Qt::CheckStateRole);
            o.press("cmdRem");
            QTest::keyClick(&o.list(), Qt::Key_End);
            o.press("cmdOk");
            QCOMPARE(o.favourites.entries().size(), count / 2);
            QCOMPARE(o.favourites.entries()[0].name, "Camera number 00001");
            QCOMPARE(o.favourites.entries().last().name,
                     QString("Camera number %1").arg(count - 1, 5, 10, QChar('0')));
        };
        const double times = growth(1'000, change);
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }
};

QTEST_MAIN(frmManTest)
#include "tst_frmMan.moc"
