#include "support/Rows.h"
#include "viewer/surface/ViewerLayout.h"

static ViewerLayoutInput input()
{
    ViewerLayoutInput given;
    given.control = {800, 600};
    given.toolBarHeight = 32;
    given.statusHeight = 20;
    given.captionWidth = 90;
    given.bannerHeight = 20;
    return given;
}

class ViewerLayoutTest : public QObject
{
    Q_OBJECT
private slots:
    void partsTileTheControl_data()
    {
        const Rows<bool, bool> row("toolBar", "debug");
        row("all", true, false);
        row("no toolbar", false, false);
        row("debug box", true, true);
        row("debug box, no toolbar", false, true);
    }

    void partsTileTheControl()
    {
        QFETCH(bool, toolBar);
        QFETCH(bool, debug);
        ViewerLayoutInput given = input();
        given.toolBarVisible = toolBar;
        given.debugVisible = debug;
        const ViewerLayout layout = layOutViewer(given);
        const QRect control({}, given.control);
        const QList<QRect> parts = {layout.toolBar, layout.imageArea, layout.debugBox,
                                    layout.statusLine, layout.caption};
        for (const QRect& part : parts)
            QVERIFY(part.isEmpty() || control.contains(part));
        for (qsizetype i = 0; i < parts.size(); ++i) {
            for (qsizetype j = i + 1; j < parts.size(); ++j)
                QVERIFY(!parts[i].intersects(parts[j]));
        }
        QCOMPARE(layout.imageArea.top(), (toolBar ? 32 : 0) + 3);
        QCOMPARE(layout.statusLine.bottom(), control.bottom());
        QCOMPARE(layout.caption.right(), control.right() - 3);
        QCOMPARE(layout.debugBox.isEmpty(), !debug);
        // Between the bars only margins are left over.
        const int used = layout.toolBar.height() + layout.imageArea.height() +
                         layout.debugBox.height() + layout.statusLine.height();
        QCOMPARE(control.height() - used, debug ? 9 : 6);
    }

    void aloneTheImageTakesTheWholeControl()
    {
        ViewerLayoutInput given = input();
        given.alone = true;
        given.debugVisible = true;
        ViewerLayout layout = layOutViewer(given);
        QCOMPARE(layout.imageArea, QRect({}, given.control));
        QCOMPARE(layout.image, layout.imageArea);
        QCOMPARE(layout.banner, QRect(0, 0, 800, 20));
        for (const QRect& part :
             {layout.toolBar, layout.debugBox, layout.statusLine, layout.caption})
            QVERIFY(part.isEmpty());
        given.originalSize = true;
        given.picture = {200, 100};
        layout = layOutViewer(given);
        QCOMPARE(layout.image, QRect(300, 250, 200, 100));
        QCOMPARE(layout.banner, QRect(300, 250, 200, 20));
        given.picture = {2000, 1000};
        QCOMPARE(layOutViewer(given).image, QRect(0, 0, 2000, 1000));
    }

    void stretchedPicturesHaveNoFrame()
    {
        ViewerLayoutInput given = input();
        given.picture = {100, 100};
        const ViewerLayout layout = layOutViewer(given);
        QCOMPARE(layout.image, layout.imageArea);
        QCOMPARE(layout.banner.width(), layout.image.width());
        QCOMPARE(layout.banner.topLeft(), layout.image.topLeft());
        QVERIFY(layout.frame.isEmpty());
    }

    void originalSizeIsCentredAndFramed()
    {
        ViewerLayoutInput given = input();
        given.originalSize = true;
        given.picture = {352, 288};
        const ViewerLayout layout = layOutViewer(given);
        QCOMPARE(layout.image.size(), given.picture);
        QCOMPARE(layout.image.top(), layout.imageArea.top());
        QCOMPARE(layout.image.left() - layout.imageArea.left(),
                 layout.imageArea.right() - layout.image.right());
        QCOMPARE(layout.banner.width(), 352);
        QCOMPARE(layout.frame.size(), 4);
        for (const QLine& line : layout.frame) {
            QVERIFY(!layout.image.contains(line.p1()));
            QVERIFY(!layout.image.contains(line.p2()));
        }
        given.picture = {};
        QVERIFY(layOutViewer(given).frame.isEmpty());
    }

    void aPictureLargerThanTheAreaBeginsAtItsCorner()
    {
        ViewerLayoutInput given = input();
        given.originalSize = true;
        given.picture = {3840, 2160};
        const ViewerLayout layout = layOutViewer(given);
        QCOMPARE(layout.image.topLeft(), layout.imageArea.topLeft());
        QCOMPARE(layout.image.size(), given.picture);
    }

    void aControlSmallerThanItsPartsStaysSane()
    {
        ViewerLayoutInput given = input();
        given.control = {40, 30};
        const ViewerLayout layout = layOutViewer(given);
        QVERIFY(layout.imageArea.height() >= 0);
        QVERIFY(layout.imageArea.width() >= 0);
        QVERIFY(layout.statusLine.width() >= 0);
    }
};

QTEST_GUILESS_MAIN(ViewerLayoutTest)
#include "tst_ViewerLayout.moc"
