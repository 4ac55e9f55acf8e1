// The camera list in a person's hands: clicks, keys and the menu.

#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/ShownList.h"

#include <QAccessible>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QVariantList>

namespace {

/// The list with three cameras, and what was chosen in it.
struct Used : ShownList
{
    Used()
        : ShownList("Cities\377Harbour\377URL1\377Sights\377Tower\377"
                    "URL2\1Cookie: a=1\377Sights\377Bridge\377URL3\r\n")
    {
    }
    QSignalSpy clicks{&list(), &CamList::Click};
    QMenu& menu = *list().findChild<QMenu*>("mnu");
};

} // namespace

class CamListUseTest : public QObject
{
    Q_OBJECT
private slots:
    void aClickOnACameraChoosesIt()
    {
        Used shown;
        shown.click("Tower");
        QCOMPARE(shown.clicks.size(), 1);
        QCOMPARE(shown.clicks.first(), QVariantList({"Tower", "URL2\1Cookie: a=1"}));
        // The one that is shown already can be asked for again.
        shown.click("Tower");
        QCOMPARE(shown.clicks.size(), 2);
        shown.click("Bridge", Qt::RightButton);
        QCOMPARE(shown.clicks.size(), 2);
    }

    void aClickOnACategoryOpensAndClosesIt()
    {
        Used shown;
        shown.click("Cities");
        QVERIFY(!shown.tree().isExpanded(shown.node("Cities")));
        shown.click("Cities");
        QVERIFY(shown.tree().isExpanded(shown.node("Cities")));
        QCOMPARE(shown.clicks.size(), 0);
    }

    void theSecondClickOfTwoCountsForNothing()
    {
        Used shown;
        const auto twice = [&](const QString& text) {
            QWidget* rows = shown.tree().viewport();
            const QPoint place = shown.tree().visualRect(shown.node(text)).center();
            QTest::mouseClick(rows, Qt::LeftButton, {}, place);
            QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
            QTest::mouseRelease(rows, Qt::LeftButton, {}, place);
        };
        twice("Tower");
        QCOMPARE(shown.clicks.size(), 1);
        shown.click("Bridge");
        QCOMPARE(shown.clicks.size(), 2);
        twice("Cities");
        QVERIFY(!shown.tree().isExpanded(shown.node("Cities")));
    }

    void enterChoosesAndArrowsDoNot()
    {
        Used shown;
        for (const Qt::Key key : {Qt::Key_Home, Qt::Key_Down})
            QTest::keyClick(&shown.tree(), key);
        QCOMPARE(shown.tree().selected(), shown.node("Harbour"));
        QCOMPARE(shown.clicks.size(), 0);
        QTest::keyClick(&shown.tree(), Qt::Key_Return);
        QCOMPARE(shown.clicks.size(), 1);
        QCOMPARE(shown.clicks.first(), QVariantList({"Harbour", "URL1"}));
        QTest::keyClick(&shown.tree(), Qt::Key_Enter, Qt::KeypadModifier);
        QCOMPARE(shown.clicks.size(), 2);
        // One that is held down asks for the camera once.
        QTest::simulateEvent(&shown.tree(), true, Qt::Key_Return, {}, {}, true);
        QCOMPARE(shown.clicks.size(), 2);

        QTest::keyClick(&shown.tree(), Qt::Key_Home);
        QTest::keyClick(&shown.tree(), Qt::Key_Return);
        QVERIFY(!shown.tree().isExpanded(shown.node("Cities")));
        QCOMPARE(shown.clicks.size(), 2);
    }

    void plusAndMinusOpenAndClose()
    {
        Used shown;
        QTest::keyClick(&shown.tree(), Qt::Key_Home);
        QTest::keyClick(&shown.tree(), Qt::Key_Minus);
        QVERIFY(!shown.tree().isExpanded(shown.node("Cities")));
        QTest::keyClick(&shown.tree(), Qt::Key_Plus);
        QVERIFY(shown.tree().isExpanded(shown.node("Cities")));
        QTest::keyClick(&shown.tree(), Qt::Key_Left);
        QVERIFY(!shown.tree().isExpanded(shown.node("Cities")));
    }

    void typingFindsACamera()
    {
        Used shown;
        QTest::keyClicks(&shown.tree(), "bri");
        QCOMPARE(shown.tree().selected(), shown.node("Bridge"));
    }

    void theMenuComesWithTheReleaseOfTheRightButton()
    {
        Used shown;
        QWidget* rows = shown.tree().viewport();
        const QPoint place = shown.tree().visualRect(shown.node("Bridge")).center();
        QTest::mousePress(rows, Qt::RightButton, {}, place);
        QContextMenuEvent withThePress(QContextMenuEvent::Mouse, place, rows->mapToGlobal(place));
        QApplication::sendEvent(rows, &withThePress);
        QVERIFY(!shown.menu.isVisible());
        QTest::mouseRelease(rows, Qt::RightButton, {}, place);
        QVERIFY(shown.menu.isVisible());
        QCOMPARE(shown.menu.pos(), rows->mapToGlobal(place));
        QCOMPARE(shown.tree().selected(), shown.node("Bridge"));
        QTest::keyClick(&shown.menu, Qt::Key_Escape);
        QVERIFY(!shown.menu.isVisible());
    }

    void theMenuKeyOpensTheMenuAtTheNode()
    {
        Used shown;
        // The keyboard is at the node although it is not selected yet, as after the Tab key.
        shown.tree().selectionModel()->setCurrentIndex(shown.node("Tower"),
                                                       QItemSelectionModel::NoUpdate);
        QVERIFY(!shown.tree().selected().isValid());
        QContextMenuEvent byKey(QContextMenuEvent::Keyboard, QPoint(1, 1), QPoint(1, 1));
        QApplication::sendEvent(&shown.tree(), &byKey);
        QVERIFY(shown.menu.isVisible());
        const QRect row = shown.tree().visualRect(shown.node("Tower"));
        QVERIFY(row.contains(shown.tree().viewport()->mapFromGlobal(shown.menu.pos())));
        QCOMPARE(shown.tree().selected(), shown.node("Tower"));
        QVERIFY(shown.entry("mnuEdit").isEnabled());
        shown.menu.close();
    }

    void theMenuHasItsEntries()
    {
        ShownList shown;
        QStringList captions;
        for (const QAction* entry : shown.list().findChild<QMenu*>("mnu")->actions())
            captions.append(entry->isSeparator() ? "-" : entry->text());
        QCOMPARE(captions, QStringList({"Add to Favorites", "-", "Select", "Copy Url", "-", "Edit",
                                        "Remove"}));
    }

    void entriesActOnTheSelectedNode_data()
    {
        const Rows<QString, QString, QString> row("entry", "node", "key");
        for (const std::string entry : {"mnuFav", "mnuSel"}) {
            row(entry + ", a camera", entry.c_str(), "Tower", "URL2\1Cookie: a=1");
            row(entry + ", a category", entry.c_str(), "Sights", "Sights");
        }
    }

    void entriesActOnTheSelectedNode()
    {
        QFETCH(QString, entry);
        QFETCH(QString, node);
        QFETCH(QString, key);
        Used shown;
        QSignalSpy favourites(&shown.list(), &CamList::AddFavorite);
        shown.choose(node, entry);
        const bool select = entry == "mnuSel";
        QCOMPARE(shown.clicks.size(), select ? 1 : 0);
        QCOMPARE(favourites.size(), select ? 0 : 1);
        QCOMPARE((select ? shown.clicks : favourites).first(), QVariantList({node, key}));
        QVERIFY(!shown.entry("mnuEdit").isEnabled() || node == "Tower");
    }

    void withNothingSelectedEntriesDoNothing()
    {
        Used shown;
        QGuiApplication::clipboard()->setText("mine");
        QSignalSpy favourites(&shown.list(), &CamList::AddFavorite);
        const QStringList before = shown.all();
        for (const char* entry : {"mnuFav", "mnuSel", "mnuCopy", "mnuEdit", "mnuRem"}) {
            QVERIFY2(!shown.entry(entry).isEnabled(), entry);
            emit shown.entry(entry).triggered();
        }
        QCOMPARE(shown.clicks.size() + favourites.size(), 0);
        QCOMPARE(QGuiApplication::clipboard()->text(), "mine");
        QCOMPARE(shown.all(), before);
        // On the empty part below the nodes the menu opens all the same.
        QTest::mouseClick(shown.tree().viewport(), Qt::RightButton, {},
                          shown.tree().viewport()->rect().bottomRight() - QPoint(5, 5));
        QVERIFY(shown.menu.isVisible());
        shown.menu.close();
    }

    void aClickBelowTheNodesKeepsTheSelection()
    {
        Used shown;
        shown.tree().select(shown.node("Tower"));
        const QPoint below = shown.tree().viewport()->rect().bottomRight() - QPoint(5, 5);
        for (const auto button : {Qt::LeftButton, Qt::RightButton}) {
            QTest::mouseClick(shown.tree().viewport(), button, {}, below);
            QCOMPARE(shown.tree().selected(), shown.node("Tower"));
        }
        QVERIFY(shown.menu.isVisible());
        QVERIFY(shown.entry("mnuEdit").isEnabled());
        shown.menu.close();
    }

    void theWholeKeyIsCopied()
    {
        Used shown;
        shown.choose("Tower", "mnuCopy");
        QCOMPARE(QGuiApplication::clipboard()->text(), "URL2\1Cookie: a=1");
        shown.choose("Cities", "mnuCopy");
        QCOMPARE(QGuiApplication::clipboard()->text(), "Cities");
    }

    void deleteRemovesACameraAtOnce()
    {
        Used shown;
        shown.tree().select(shown.node("Tower"));
        QTest::keyClick(&shown.tree(), Qt::Key_Delete);
        QCOMPARE(shown.all(), QStringList({"Cities", "Cities/Harbour", "Sights", "Sights/Bridge"}));
        shown.choose("Bridge", "mnuRem");
        QCOMPARE(shown.all(), QStringList({"Cities", "Cities/Harbour", "Sights"}));
        QCOMPARE(shown.clicks.size(), 0);
    }

    void deleteElsewhereRemovesNothing()
    {
        Used shown;
        shown.tree().select(shown.node("Tower"));
        QPushButton other(&shown.window());
        other.show();
        other.setFocus();
        QTest::keyClick(&other, Qt::Key_Delete);
        QCOMPARE(shown.all().size(), 5);
    }

    void aHeldDeleteRemovesOneCamera()
    {
        Used shown;
        shown.tree().select(shown.node("Tower"));
        QTest::keyPress(&shown.tree(), Qt::Key_Delete);
        for (int i = 0; i < 3; ++i) {
            QTest::simulateEvent(&shown.tree(), true, Qt::Key_Delete, {}, {}, true);
            QCOMPARE(shown.all().size(), 4);
        }
        QTest::keyRelease(&shown.tree(), Qt::Key_Delete);
    }

    void removingACategoryAsks()
    {
        Used shown;
        const QStringList before = shown.all();
        shown.choose("Sights", "mnuRem");
        // Enter alone removes nothing.
        QTRY_VERIFY(openDialog<QMessageBox>());
        QCOMPARE(openDialog<QMessageBox>()->defaultButton(),
                 openDialog<QMessageBox>()->button(QMessageBox::No));
        const ShownMessage question = answerMessage(QMessageBox::No);
        QCOMPARE(question.text, "Remove Category and all its contents?");
        QCOMPARE(question.title, "Remove");
        QCOMPARE(question.icon, QMessageBox::Question);
        QCOMPARE(shown.all(), before);
        shown.tree().select(shown.node("Sights"));
        QTest::keyClick(&shown.tree(), Qt::Key_Delete);
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QCOMPARE(shown.all(), QStringList({"Cities", "Cities/Harbour"}));
    }

    void theTreeFillsTheControl()
    {
        ShownList shown;
        shown.list().resize(123, 77);
        QCOMPARE(shown.tree().geometry(), QRect(0, 0, 123, 77));
    }

    void aScreenReaderFindsTheCameras()
    {
        Used shown;
        QCOMPARE(shown.tree().accessibleName(), "Cameras");
        auto* spoken = QAccessible::queryAccessibleInterface(&shown.tree());
        QVERIFY(spoken && spoken->tableInterface());
        QCOMPARE(spoken->tableInterface()->cellAt(1, 0)->text(QAccessible::Name), "Harbour");
    }
};

QTEST_MAIN(CamListUseTest)
#include "tst_CamListUse.moc"
