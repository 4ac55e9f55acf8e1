#include "shell/parts/MainLayout.h"
#include "support/Rows.h"
#include "widgets/Twips.h"

#include <cmath>

namespace {

constexpr int ListTwips = 3300;
constexpr int BarHeight = 26;

MainLayoutInput window(const QSize& client)
{
    return {.client = client,
            .listWidthTwips = ListTwips,
            .optionHeight = 20,
            .gotoBarHeight = BarHeight};
}

} // namespace

class MainLayoutTest : public QObject
{
    Q_OBJECT
private slots:
    void everyPlaceGoesByItsRule()
    {
        // Form 9,100 twips wide (600 * 15 + 100) and 6,675 high (400 * 15 + 675).
        const MainLayout layout = layOutMainWindow(window({600, 400}));
        QCOMPARE(layout.viewer.top(), 0);
        QCOMPARE(layout.viewer.left(), 224);   // 3300 + 60
        QCOMPARE(layout.viewer.width(), 375);  // 9100 - 3370 - 100 = 5630
        QCOMPARE(layout.viewer.height(), 370); // 6675 - (390 + 60) - 675 = 5550
        QCOMPARE(layout.gotoBar, QRect(224, 374, 375, BarHeight));
        QCOMPARE(layout.listHeight, 380); // 6675 - 300 - 680 = 5695
        QCOMPARE(layout.optionsTop, 380);
    }

    void withoutTheListTheViewerBeginsAtTheLeft()
    {
        MainLayoutInput input = window({600, 400});
        input.listChecked = false;
        const MainLayout layout = layOutMainWindow(input);
        QCOMPARE(layout.viewer, QRect(0, 0, 600, 370));
        QCOMPARE(layout.gotoBar, QRect(0, 374, 600, BarHeight));
    }

    void partsMeetWithinAPixel_data()
    {
        const Rows<QSize, int> row("client", "listTwips");
        row("usual", QSize(900, 600), 0);
        row("list", QSize(900, 600), ListTwips);
        row("list between two pixels", QSize(900, 600), 2500);
        row("odd", QSize(641, 481), 0);
        row("large", QSize(3840, 2100), 3750);
    }

    void partsMeetWithinAPixel()
    {
        QFETCH(QSize, client);
        QFETCH(int, listTwips);
        MainLayoutInput input = window(client);
        input.listChecked = listTwips > 0;
        input.listWidthTwips = listTwips;
        const MainLayout layout = layOutMainWindow(input);
        QCOMPARE(layout.viewer.left(), listTwips ? pixelsFromTwips(listTwips + 60) : 0);
        QVERIFY(std::abs(layout.viewer.right() + 1 - client.width()) <= 1);
        QCOMPARE(layout.gotoBar.left(), layout.viewer.left());
        QCOMPARE(layout.gotoBar.width(), layout.viewer.width());
        QCOMPARE(layout.gotoBar.top(), layout.viewer.height() + 4);
        QVERIFY(std::abs(layout.gotoBar.bottom() + 1 - client.height()) <= 1);
        QCOMPARE(layout.optionsTop, layout.listHeight);
        QVERIFY(std::abs(layout.optionsTop + input.optionHeight - client.height()) <= 1);
    }

    void hidingTheGotoBarGivesItsRoomToTheViewer()
    {
        MainLayoutInput input = window({900, 600});
        const MainLayout with = layOutMainWindow(input);
        input.gotoBarVisible = false;
        const MainLayout without = layOutMainWindow(input);
        QCOMPARE(without.viewer.height(), with.viewer.height() + BarHeight + 60 / TwipsPerPixel);
        QCOMPARE(without.viewer.height(), 600);
        QCOMPARE(without.gotoBar.top(), 604);
    }

    void aHiddenListIsLaidOutAllTheSame()
    {
        MainLayoutInput input = window({900, 600});
        const int height = layOutMainWindow(input).listHeight;
        input.listChecked = false;
        QCOMPARE(layOutMainWindow(input).listHeight, height);
    }

    void theMinimumWidthIsTheToolBars_data()
    {
        const Rows<bool, bool, int, int> row("toolBar", "list", "listTwips", "minimum");
        row("list and toolbar", true, true, 2500, 8670);
        row("without the list", true, false, 2500, 6170);
        row("without a wider list", true, false, ListTwips, 5370);
        row("without the toolbar", false, true, 2500, 0);
        row("without both", false, false, 2500, 0);
    }

    void theMinimumWidthIsTheToolBars()
    {
        QFETCH(bool, toolBar);
        QFETCH(bool, list);
        QFETCH(int, listTwips);
        QTEST(minimumOuterWidthTwips(toolBar, list, listTwips), "minimum");
    }

    void theMinimumIsRoundedUpToAPixel()
    {
        QCOMPARE(clientWidthForOuterTwips(8670), 572); // 8570 / 15 = 571.3
        QCOMPARE(clientWidthForOuterTwips(6170), 405); // 6070 / 15 = 404.7
        QCOMPARE(clientWidthForOuterTwips(115), 1);
        QCOMPARE(clientWidthForOuterTwips(100), 0);
        QCOMPARE(clientWidthForOuterTwips(0), 0);
    }

    void aNegativeSizeIsNotSet_data()
    {
        const Rows<QSize, QSize, int> row("client", "viewer", "listHeight");
        // Before: viewer 375 x 370, list 380 high.
        row("as before", QSize(600, 400), QSize(375, 370), 380);
        row("nothing left for the viewer", QSize(225, 30), QSize(0, 0), 10);
        row("too narrow for the viewer", QSize(223, 300), QSize(375, 270), 280);
        row("too low for the viewer", QSize(300, 29), QSize(75, 370), 9);
        row("too low for the list", QSize(300, 19), QSize(75, 370), 380);
        row("nothing", QSize(0, 0), QSize(375, 370), 380);
    }

    void aNegativeSizeIsNotSet()
    {
        QFETCH(QSize, client);
        const MainLayout before = layOutMainWindow(window({600, 400}));
        const MainLayout layout = layOutMainWindow(window(client), before);
        QTEST(layout.viewer.size(), "viewer");
        QTEST(layout.listHeight, "listHeight");
        // The statements in between are carried out.
        QCOMPARE(layout.viewer.topLeft(), QPoint(224, 0));
    }

    void whatFollowsAnUnsetHeightGoesByTheOldOne()
    {
        const MainLayout before = layOutMainWindow(window({600, 400}));
        const MainLayout layout = layOutMainWindow(window({100, 10}), before);
        QCOMPARE(layout.gotoBar, QRect(224, 374, 375, BarHeight));
        QCOMPARE(layout.optionsTop, 380);
    }

    void noPartEverCoversAnother()
    {
        MainLayout layout;
        for (const bool listChecked : {true, false}) {
            for (int width = 1; width <= 3840; width += width < 700 ? 1 : 157) {
                for (int height = 1; height <= 2160; height += height < 70 ? 1 : 61) {
                    MainLayoutInput input = window({width, height});
                    input.listChecked = listChecked;
                    layout = layOutMainWindow(input, layout);
                    const QRect client({}, input.client);
                    const QRect list(0, 0, listChecked ? 220 : 0, layout.listHeight);
                    const QRect options(0, layout.optionsTop, list.width(), input.optionHeight);
                    QVERIFY(!layout.viewer.intersects(layout.gotoBar));
                    QVERIFY(!list.intersects(options));
                    for (const QRect& left : {list, options}) {
                        QVERIFY(!left.intersects(layout.viewer));
                        QVERIFY(!left.intersects(layout.gotoBar));
                    }
                    // Nothing falls off a window that has room for every part.
                    if (width <= (listChecked ? 225 : 0) || height <= BarHeight + 4)
                        continue;
                    for (const QRect& part : {list, options, layout.viewer, layout.gotoBar})
                        QVERIFY(part.isEmpty() || client.contains(part));
                }
            }
        }
    }

    void twipsRoundToTheNearestPixel()
    {
        QCOMPARE(pixelsFromTwips(15), 1);
        QCOMPARE(pixelsFromTwips(22), 1);
        QCOMPARE(pixelsFromTwips(23), 2);
        QCOMPARE(pixelsFromTwips(-22), -1);
        QCOMPARE(pixelsFromTwips(-23), -2);
    }
};

QTEST_GUILESS_MAIN(MainLayoutTest)
#include "tst_MainLayout.moc"
