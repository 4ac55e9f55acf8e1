#include "support/Dialogs.h"
#include "support/Rows.h"
#include "viewer/surface/IntervalMenu.h"

#include <QInputDialog>

/// The menu with its record of what was chosen.
struct Menu
{
    Menu()
        : chosen(&menu, &IntervalMenu::IntervalChosen)
    {
    }
    QAction* item(int index) const
    {
        return menu.findChild<QAction*>(QString("mnuTmrSel(%1)").arg(index));
    }
    QList<int> checked() const
    {
        QList<int> found;
        for (auto* action : menu.actions()) {
            if (action->isChecked() && action->data().isValid())
                found << action->data().toInt();
        }
        return found;
    }
    void answer(const QString& text, Qt::Key key = Qt::Key_Return)
    {
        item(99)->trigger();
        auto* dialog = openDialog<QInputDialog>();
        QVERIFY(dialog);
        dialog->setTextValue(text);
        QTest::keyClick(dialog, key);
    }

    QWidget owner;
    IntervalMenu menu{&owner};
    QSignalSpy chosen;
};

class IntervalMenuTest : public QObject
{
    Q_OBJECT
private slots:
    void itemsHaveTheirNamesAndCaptions()
    {
        Menu m;
        QStringList captions;
        for (auto* action : m.menu.actions())
            captions << (action->isSeparator() ? "-" : action->text());
        QCOMPARE(captions, (QStringList{"1 sec", "5 secs", "10 secs", "15 secs", "30 secs",
                                        "45 secs", "60 secs", "Custom", "-", "Keep Refreshing"}));
        QCOMPARE(m.checked(), QList<int>{30});
    }

    void choosingAPresetChecksItAlone()
    {
        Menu m;
        m.item(10)->trigger();
        QCOMPARE(m.checked(), QList<int>{10});
        QCOMPARE(m.chosen.takeFirst().value(0).toInt(), 10);
        m.item(10)->trigger();
        QCOMPARE(m.checked(), QList<int>{10});
        QCOMPARE(m.chosen.count(), 1);
    }

    void aPresetResetsTheCustomCaption()
    {
        Menu m;
        m.answer("90");
        QCOMPARE(m.item(99)->text(), "90 sec(s)");
        QCOMPARE(m.checked(), QList<int>{99});
        m.item(5)->trigger();
        QCOMPARE(m.item(99)->text(), "Custom");
        QCOMPARE(m.checked(), QList<int>{5});
    }

    void customAsksForANumber()
    {
        Menu m;
        m.item(99)->trigger();
        auto* dialog = openDialog<QInputDialog>();
        QVERIFY(dialog);
        QCOMPARE(dialog->windowTitle(), "Custom Refresh");
        QCOMPARE(dialog->labelText(), "Enter a Refresh rate in seconds.");
        QCOMPARE(dialog->textValue(), "60");
        dialog->setTextValue("12.5");
        QTest::keyClick(dialog, Qt::Key_Return);
        QCOMPARE(m.chosen.takeFirst().value(0).toInt(), 12);
        QCOMPARE(m.item(99)->text(), "12 sec(s)");
    }

    void anAnswerOfNothingChangesNothingFurther_data()
    {
        const Rows<QString, Qt::Key> row("text", "key");
        row("empty", "", Qt::Key_Return);
        row("cancelled", "60", Qt::Key_Escape);
    }

    void anAnswerOfNothingChangesNothingFurther()
    {
        QFETCH(QString, text);
        QFETCH(Qt::Key, key);
        Menu m;
        m.answer(text, key);
        QVERIFY(m.owner.findChildren<QMessageBox*>().isEmpty());
        QCOMPARE(m.chosen.count(), 0);
        QCOMPARE(m.item(99)->text(), "Custom");
        QCOMPARE(m.checked(), QList<int>{99});
    }

    void whatIsNoIntervalIsSaid_data()
    {
        const Rows<QString, QString, int> row("text", "said", "icon");
        row("a word", "soon", "Must be a number!", QMessageBox::Information);
        for (const char* text : {"32768", "-32769", "1e999"})
            row(text, text, "Number is too large, please choose a small number.",
                QMessageBox::Critical);
    }

    void whatIsNoIntervalIsSaid()
    {
        QFETCH(QString, text);
        Menu m;
        m.answer(text);
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QVERIFY(message.shown);
        QCOMPARE(message.title, "Error");
        QTEST(message.text, "said");
        QTEST(message.icon, "icon");
        QCOMPARE(m.chosen.count(), 0);
        QCOMPARE(m.item(99)->text(), "Custom");
    }

    void readsIntervals_data()
    {
        const Rows<QString, bool, int> row("text", "isNumber", "seconds"); // -99999: none
        row("plain", "60", true, 60);
        row("blanks", " 60 ", true, 60);
        row("negative", "-5", true, -5);
        row("plus", "+5", true, 5);
        row("zero", "0", true, 0);
        row("tie down", "2.5", true, 2);
        row("tie up", "3.5", true, 4);
        row("point first", ".6", true, 1);
        row("exponent", "1e2", true, 100);
        row("largest", "32767", true, 32767);
        row("rounds down to the largest", "32767.4", true, 32767);
        row("rounds beyond the largest", "32767.5", true, -99999);
        row("smallest", "-32768", true, -32768);
        row("nan", "nan", false, -99999);
        row("inf", "inf", false, -99999);
        row("hex", "0x10", false, -99999);
        row("unit", "60s", false, -99999);
        row("blank", " ", false, -99999);
    }

    void readsIntervals()
    {
        QFETCH(QString, text);
        const auto [isNumber, seconds] = readInterval(text);
        QTEST(isNumber, "isNumber");
        QTEST(seconds.value_or(-99999), "seconds");
    }

    void keepRefreshingIsAnEntryOfItsOwn()
    {
        Menu m;
        QSignalSpy kept(&m.menu, &IntervalMenu::KeepRefreshingChosen);
        auto* keep = m.menu.findChild<QAction*>("mnuTmrKeep");
        QVERIFY(keep);
        QVERIFY(!m.menu.KeepRefreshing());
        keep->trigger();
        QVERIFY(m.menu.KeepRefreshing());
        QCOMPARE(kept.takeFirst().value(0).toBool(), true);
        QCOMPARE(m.checked(), QList<int>{30});
        m.menu.setKeepRefreshing(false);
        QVERIFY(!keep->isChecked());
        QCOMPARE(kept.count(), 0);
    }
};

QTEST_MAIN(IntervalMenuTest)
#include "tst_IntervalMenu.moc"
