// The window "Internet List" in a person's hands: keyboard and mouse.

#include "support/Dialogs.h"
#include "support/ShownDirectory.h"

#include <QInputDialog>
#include <QStyleOptionViewItem>

namespace {

const QByteArray Three =
    directoryBody({"Sights|Tower|tower", "animals|Zoo|zoo", "Cities|Rome|rome"});

/// The middle of a cell; in the first column of its check box.
QPoint pointIn(QTreeView& list, int row, int column)
{
    const QModelIndex index = list.model()->index(row, column);
    if (column != 0)
        return list.visualRect(index).center();
    QStyleOptionViewItem option;
    option.initFrom(&list);
    option.rect = list.visualRect(index);
    option.features = QStyleOptionViewItem::HasCheckIndicator | QStyleOptionViewItem::HasDisplay;
    return list.style()
        ->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &option, &list)
        .center();
}

} // namespace

class frmIntUseTest : public QObject
{
    Q_OBJECT
private slots:
    void aClickOnABoxChecksIt()
    {
        ShownDirectory d(Three);
        QTest::mouseClick(d.list().viewport(), Qt::LeftButton, {}, pointIn(d.list(), 1, 0));
        QCOMPARE(d.rows(), (QStringList{"Sights|Tower", "[x] animals|Zoo", "Cities|Rome"}));
        QTest::mouseClick(d.list().viewport(), Qt::LeftButton, {}, pointIn(d.list(), 1, 0));
        QCOMPARE(d.rows()[1], "animals|Zoo");
        // A click elsewhere in the row chooses it.
        QTest::mouseClick(d.list().viewport(), Qt::LeftButton, {}, pointIn(d.list(), 2, 1));
        QCOMPARE(d.rows()[2], "Cities|Rome");
        QCOMPARE(d.list().currentIndex().row(), 2);
        QVERIFY(d.list().selectionModel()->isRowSelected(2));
        QVERIFY(!d.list().selectionModel()->isRowSelected(0));
    }

    void theSpaceBarChecksWhicheverColumnIsCurrent()
    {
        ShownDirectory d(Three);
        for (int column : {0, 1}) {
            d.list().setCurrentIndex(d.list().model()->index(1, column));
            QTest::keyClick(&d.list(), Qt::Key_Space);
            QCOMPARE(d.rows()[1], "[x] animals|Zoo");
            QTest::keyClick(&d.list(), Qt::Key_Space);
            QCOMPARE(d.rows()[1], "animals|Zoo");
        }
    }

    void theSpaceBarOnNothingDoesNothing()
    {
        ShownDirectory d;
        QTest::keyClick(&d.list(), Qt::Key_Space);
        d.find(Three);
        QTest::keyClick(&d.list(), Qt::Key_Down);
        QTest::keyClick(&d.list(), Qt::Key_Space);
        QCOMPARE(d.rows()[1], "[x] animals|Zoo");
    }

    void enterPreviews()
    {
        ShownDirectory d(Three);
        QTest::keyClick(&d.list(), Qt::Key_Return);
        QTest::keyClick(&d.list(), Qt::Key_Down);
        QTest::keyClick(&d.list(), Qt::Key_Enter);
        QCOMPARE(d.previews, (QStringList{"tower", "zoo"}));
        QVERIFY(d.window->isVisible());
    }

    void enterStaysPreviewAfterAClick()
    {
        for (const char* name : {"cmdAll", "cmdNone", "cmdPre"}) {
            ShownDirectory d(Three);
            QTest::mouseClick(&d.button(name), Qt::LeftButton);
            const auto before = d.previews.size();
            QVERIFY(d.list().hasFocus());
            QTest::keyClick(&d.list(), Qt::Key_Return);
            QVERIFY2(d.previews.size() == before + 1, name);
        }
    }

    void typedLettersFindARow()
    {
        ShownDirectory d(Three);
        QTest::keyClicks(&d.list(), "ci");
        QCOMPARE(d.list().currentIndex().row(), 2);
    }

    void escapeCloses()
    {
        const ShownDirectory d;
        QTest::keyClick(&d.list(), Qt::Key_Escape);
        QTRY_VERIFY(!d.window);
    }

    void escapeInThePromptClosesThePromptOnly()
    {
        const ShownDirectory d;
        d.entry("mnuOptSearch").trigger();
        auto* prompt = openDialog<QInputDialog>();
        QVERIFY(prompt);
        QTest::keyClick(prompt, Qt::Key_Escape);
        QTRY_VERIFY(!d.window->findChild<QInputDialog*>());
        QVERIFY(d.window->isVisible());
        QCOMPARE(d.title(), "Internet List");
    }

    void theMenuOpensByItsAccessKey()
    {
        const ShownDirectory d;
        auto* options = d.window->findChild<QMenu*>("mnuOpt");
        QTest::keyClick(&d.list(), Qt::Key_O, Qt::AltModifier);
        QTRY_VERIFY(options->isVisible());
        QTest::keyClick(options, Qt::Key_Escape);
        QTRY_VERIFY(!options->isVisible());
        QVERIFY(d.window->isVisible());
    }

    void thePromptTakesWhatIsTyped()
    {
        ShownDirectory d;
        d.server.play(httpAnswer(Three));
        d.entry("mnuOptSearch").trigger();
        auto* prompt = openDialog<QInputDialog>();
        QVERIFY(prompt);
        auto* box = prompt->findChild<QLineEdit*>();
        QTRY_VERIFY(box->hasFocus());
        QTest::keyClicks(box, "old zoo");
        QTest::keyClick(box, Qt::Key_Return);
        QTRY_COMPARE(d.title(), "Finished [Found 3 Cams]");
        QVERIFY(d.server.requests()[0].startsWith("GET /pevora/index.cgi?q=old zoo HTTP/1.0\r\n"));
        QCOMPARE(d.previews.size(), 0);
    }

    void theWindowsPartsFollowItsSize()
    {
        const ShownDirectory d;
        const QSize before = d.list().size();
        const QPoint add = d.button("cmdAdd").pos();
        const QSize asked = d.window->size() + QSize(120, 80);
        d.window->resize(asked);
        QTRY_COMPARE(d.list().size(), before + QSize(120, 80));
        QCOMPARE(d.button("cmdAdd").pos(), add + QPoint(120, 80));
        d.window->resize(1, 1);
        QTRY_VERIFY(d.window->width() < asked.width());
        // At the smallest everything still has its place.
        const QRect inside = d.window->rect();
        for (const char* name : {"cmdAll", "cmdNone", "cmdPre", "cmdAdd"})
            QVERIFY2(inside.contains(d.button(name).geometry()), name);
        QVERIFY(d.button("cmdNone").geometry().right() < d.button("cmdPre").geometry().left());
        QVERIFY(d.list().height() >= 100);
    }
};

QTEST_MAIN(frmIntUseTest)
#include "tst_frmIntUse.moc"
