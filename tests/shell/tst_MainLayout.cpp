#include "shared/Twips.h"
#include "shell/MainLayout.h"

class MainLayoutTest : public QObject
{
    Q_OBJECT
private slots:
    void partsMeetWithinAPixel_data();
    void partsMeetWithinAPixel();
    void hidingTheGotoBarGivesItsRoomToTheViewer();
    void twipsRoundToTheNearestPixel();
};

void MainLayoutTest::partsMeetWithinAPixel_data()
{
    QTest::addColumn<QSize>("client");
    QTest::addColumn<int>("listWidth");
    QTest::newRow("usual") << QSize(900, 600) << 0;
    QTest::newRow("list") << QSize(900, 600) << 167;
    QTest::newRow("odd") << QSize(641, 481) << 0;
    QTest::newRow("large") << QSize(3840, 2100) << 250;
}

void MainLayoutTest::partsMeetWithinAPixel()
{
    QFETCH(QSize, client);
    QFETCH(int, listWidth);
    const MainLayout layout =
        layOutMainWindow({.client = client, .listWidth = listWidth, .gotoBarHeight = 26});
    QCOMPARE(layout.viewer.top(), 0);
    QCOMPARE(layout.viewer.left(), listWidth ? listWidth + 4 : 0);
    QVERIFY(std::abs(layout.viewer.right() + 1 - client.width()) <= 1);
    QCOMPARE(layout.gotoBar.left(), layout.viewer.left());
    QCOMPARE(layout.gotoBar.width(), layout.viewer.width());
    QCOMPARE(layout.gotoBar.top(), layout.viewer.height() + 4);
    QVERIFY(std::abs(layout.gotoBar.bottom() + 1 - client.height()) <= 1);
}

void MainLayoutTest::hidingTheGotoBarGivesItsRoomToTheViewer()
{
    MainLayoutInput input{.client = {900, 600}, .gotoBarHeight = 26};
    const int with = layOutMainWindow(input).viewer.height();
    input.gotoBarVisible = false;
    QCOMPARE(layOutMainWindow(input).viewer.height(), with + 26 + 4);
    QCOMPARE(layOutMainWindow(input).viewer.height(), 600);
}

void MainLayoutTest::twipsRoundToTheNearestPixel()
{
    QCOMPARE(pixelsFromTwips(15), 1);
    QCOMPARE(pixelsFromTwips(22), 1);
    QCOMPARE(pixelsFromTwips(23), 2);
    QCOMPARE(pixelsFromTwips(-22), -1);
    QCOMPARE(pixelsFromTwips(-23), -2);
}

QTEST_GUILESS_MAIN(MainLayoutTest)
#include "tst_MainLayout.moc"
