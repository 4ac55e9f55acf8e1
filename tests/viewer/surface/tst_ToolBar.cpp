#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "widgets/Twips.h"

#include <memory>

class ToolBarTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        bar = std::make_unique<ToolBar>(nullptr);
        clicks = std::make_unique<QSignalSpy>(bar.get(), &ToolBar::ButtonClick);
        dropDowns = std::make_unique<QSignalSpy>(bar.get(), &ToolBar::ButtonDropDown);
        bar->resize(500, ToolBar::HeightPx);
        bar->show();
        QVERIFY(waitForExposed(bar.get()));
    }

    void placesBearTheirTips()
    {
        QStringList tips;
        for (int index = 1; index <= 15; ++index)
            tips << (bar->button(index) ? bar->button(index)->toolTip() : "-");
        QCOMPARE(tips,
                 (QStringList{"Open", "Save (Ctrl+S)", "-", "Back (Alt+Left)",
                              "Forward (Alt+Right)", "Stop (Esc)", "Refresh (F5)", "-", "Timer",
                              "Delete", "-", "Play Movie", "Stop Movie", "-", "Toogle View"}));
    }

    void theTimerButtonStandsWhereItsMenuPopsUp()
    {
        QCOMPARE(bar->button(9)->x() * TwipsPerPixel, 15 * 17 * 10 + 120);
    }

    void clicksNameTheirButton()
    {
        for (const int index : {1, 2, 4, 5, 6, 7, 9, 10, 12, 13, 15}) {
            QTest::mouseClick(bar->button(index), Qt::LeftButton, {}, QPoint(12, 14));
            QCOMPARE(clicks->count(), 1);
            QCOMPARE(clicks->takeFirst().value(0).toInt(), index);
        }
        bar->button(6)->setEnabled(false);
        QTest::mouseClick(bar->button(6), Qt::LeftButton, {}, QPoint(12, 14));
        QCOMPARE(clicks->count(), 0);
        QCOMPARE(dropDowns->count(), 0);
    }

    void arrowsNameTheirButton()
    {
        auto* timer = bar->button(9);
        QTest::mouseClick(timer, Qt::LeftButton, {}, QPoint(timer->width() - 4, 14));
        QCOMPARE(dropDowns->count(), 1);
        QCOMPARE(dropDowns->first().value(0).toInt(), 9);
        QCOMPARE(clicks->count(), 0);
    }

    void arrowsOpenByKey()
    {
        QTest::keyClick(bar->button(9), Qt::Key_Down);
        QTest::keyClick(bar->button(9), Qt::Key_F4);
        QCOMPARE(dropDowns->count(), 2);
    }

    void menusNameTheirItem()
    {
        QSignalSpy items(bar.get(), &ToolBar::ButtonMenuClick);
        const QHash<int, QStringList> expected = {{1, {"Image", "Movie"}},
                                                  {2, {"Image", "Movie"}},
                                                  {10, {"Current", "All"}},
                                                  {12, {"Fast", "Normal", "Slow"}}};
        for (auto row = expected.begin(); row != expected.end(); ++row) {
            auto* menu = bar->button(row.key())->findChild<QMenu*>();
            QVERIFY(menu);
            QStringList captions;
            for (int item = 1; item <= menu->actions().size(); ++item) {
                captions << menu->actions()[item - 1]->text();
                menu->actions()[item - 1]->trigger();
                const auto told = items.takeFirst();
                QCOMPARE(told.value(0).toInt(), row.key());
                QCOMPARE(told.value(1).toInt(), item);
            }
            QCOMPARE(captions, row.value());
        }
    }

    void theTimerButtonDoesNotToggleByItself()
    {
        QTest::mouseClick(bar->button(9), Qt::LeftButton, {}, QPoint(12, 14));
        QVERIFY(!bar->button(9)->isChecked());
        bar->setPressed(9, true);
        QVERIFY(bar->button(9)->isChecked());
        QTest::mouseClick(bar->button(9), Qt::LeftButton, {}, QPoint(12, 14));
        QVERIFY(bar->button(9)->isChecked());
    }

    void buttonsAreReachedByKeyAndNamed()
    {
        for (int index = 1; index <= 15; ++index) {
            auto* button = bar->button(index);
            if (!button)
                continue;
            QCOMPARE(button->accessibleName(), button->toolTip().section(" (", 0, 0));
            QVERIFY(button->focusPolicy() & Qt::TabFocus);
            QVERIFY(!button->icon().isNull());
            QTest::keyClick(button, Qt::Key_Space);
            QCOMPARE(clicks->takeFirst().value(0).toInt(), index);
        }
    }

    void namesOutsideAreIgnored()
    {
        for (const int index : {-1, 0, 3, 16}) {
            QVERIFY(!bar->button(index));
            bar->setPressed(index, true);
            bar->setToolTipText(index, "x");
            bar->setIconName(index, "stop");
        }
    }

    void buttonsAreSwitchedTogetherButForSome()
    {
        const auto enabled = [&] {
            QList<int> found;
            for (int index = 1; index <= 15; ++index) {
                if (bar->button(index) && bar->button(index)->isEnabled())
                    found << index;
            }
            return found;
        };
        bar->setButtonsEnabled(false, {6, 13});
        QCOMPARE(enabled(), (QList<int>{6, 13}));
        bar->setButtonsEnabled(false);
        QCOMPARE(enabled(), QList<int>{});
        bar->setButtonsEnabled(true, {13});
        QCOMPARE(enabled(), (QList<int>{1, 2, 4, 5, 6, 7, 9, 10, 12, 15}));
    }

private:
    std::unique_ptr<ToolBar> bar;
    std::unique_ptr<QSignalSpy> clicks;
    std::unique_ptr<QSignalSpy> dropDowns;
};

QTEST_MAIN(ToolBarTest)
#include "tst_ToolBar.moc"
