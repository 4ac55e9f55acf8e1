#include "display/GridKeys.h"
#include "support/Rows.h"

class GridKeysTest : public QObject
{
    Q_OBJECT
private slots:
    void keysLeadTo_data()
    {
        const Rows<int, int, int> row("key", "from", "to");
        // Eleven in rows of three: 0 1 2 / 3 4 5 / 6 7 8 / 9 10, two rows a page.
        row("left", Qt::Key_Left, 4, 3);
        row("left into the row above", Qt::Key_Left, 3, 2);
        row("left of the first", Qt::Key_Left, 0, 0);
        row("right into the row below", Qt::Key_Right, 5, 6);
        row("right of the last", Qt::Key_Right, 10, 10);
        row("up", Qt::Key_Up, 7, 4);
        row("up from the first row", Qt::Key_Up, 1, 1);
        row("down", Qt::Key_Down, 4, 7);
        row("down where the last row is short", Qt::Key_Down, 8, 10);
        row("down from the last row", Qt::Key_Down, 9, 9);
        row("page up", Qt::Key_PageUp, 10, 4);
        row("page up from the second row", Qt::Key_PageUp, 5, 2);
        row("page down", Qt::Key_PageDown, 1, 7);
        row("page down past the end", Qt::Key_PageDown, 6, 9);
        row("home", Qt::Key_Home, 7, 0);
        row("end", Qt::Key_End, 0, 10);
        row("any other", Qt::Key_A, 4, -1);
    }

    void keysLeadTo()
    {
        QFETCH(int, key);
        QFETCH(int, from);
        QTEST(gridKeyTarget(key, from, {11, 3, 2}), "to");
    }

    void keysNeverLeaveTheGrid()
    {
        for (int key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down, Qt::Key_PageUp,
                        Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End}) {
            for (int count = 1; count < 8; ++count) {
                for (int columns = 1; columns < 5; ++columns) {
                    for (int from = 0; from < count; ++from) {
                        const int to = gridKeyTarget(key, from, {count, columns, 3});
                        QVERIFY(to >= 0 && to < count);
                    }
                }
            }
        }
    }
};

QTEST_GUILESS_MAIN(GridKeysTest)
#include "tst_GridKeys.moc"
