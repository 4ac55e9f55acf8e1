#include "picture/ImageList.h"
#include "support/Pictures.h"

static Still still(int width)
{
    return Still::fromImage(plainImage({width, 1}, Qt::red));
}

class ImageListTest : public QObject
{
    Q_OBJECT
private slots:
    void numbersFromOneInOrder()
    {
        ImageList list;
        QCOMPARE(list.Count(), 0);
        QVERIFY(list.Add(still(1), "a"));
        QVERIFY(list.Add(still(2), "b"));
        QVERIFY(list.Add(still(3)));
        QCOMPARE(list.Count(), 3);
        list.Remove(1);
        QCOMPARE(list.Count(), 2);
        QCOMPARE(list.Picture(1).size().width(), 2);
        QCOMPARE(list.Key(1), "b");
        QCOMPARE(list.Key(2), "");
    }

    void knowsWhatItsPicturesHold()
    {
        ImageList list;
        const QByteArray bytes = encodedPicture({9, 9}, Qt::red);
        list.Add(Still::fromBytes(bytes), "a");
        QCOMPARE(list.heldBytes(), bytes.size());
        list.Add(still(5));
        list.Add(still(7), "b");
        list.Add(still(1'000), "b"); // refused
        QCOMPARE(list.heldBytes(), bytes.size() + (5 + 7) * 4);
        list.Remove(2);
        list.Remove(9);
        QCOMPARE(list.heldBytes(), bytes.size() + 7 * 4);
        list.Clear();
        QCOMPARE(list.heldBytes(), 0);
        list.Add({});
        QCOMPARE(list.heldBytes(), 0);
    }

    void refusesADuplicateKeyButNoMissingOnes()
    {
        ImageList list;
        QVERIFY(list.Add(still(1), "a"));
        QVERIFY(!list.Add(still(2), "a"));
        QVERIFY(list.Add(still(3), "A"));
        QVERIFY(list.Add(still(4)));
        QVERIFY(list.Add(still(5)));
        QCOMPARE(list.Count(), 4);
    }

    void aRemovedKeyIsFreeAgain()
    {
        ImageList list;
        list.Add(still(1), "a");
        list.Remove(1);
        QVERIFY(list.Add(still(2), "a"));
        list.Clear();
        QCOMPARE(list.Count(), 0);
        QVERIFY(list.Add(still(3), "a"));
    }

    void numbersOutsideAreIgnored()
    {
        ImageList list;
        list.Add(still(1), "a");
        for (const int n : {-1, 0, 2}) {
            list.Remove(n);
            QVERIFY(list.Picture(n).isNull());
            QCOMPARE(list.Key(n), "");
        }
        QCOMPARE(list.Count(), 1);
    }

    void serialsTellWhatComesNext()
    {
        ImageList list;
        QCOMPARE(list.firstAfter(0), 0);
        for (int i = 1; i <= 4; ++i)
            list.Add(still(i));
        const quint64 second = list.Serial(2);
        QCOMPARE(list.firstAfter(0), 1);
        QCOMPARE(list.firstAfter(second), 3);
        list.Remove(1);
        QCOMPARE(list.Serial(1), second);
        QCOMPARE(list.firstAfter(second), 2);
        // Also of one that is gone.
        list.Remove(1);
        list.Remove(1);
        QCOMPARE(list.firstAfter(second), 1);
        QCOMPARE(list.firstAfter(list.Serial(1)), 0);
        QCOMPARE(list.Serial(0), quint64(0));
        QCOMPARE(list.Serial(2), quint64(0));
        // None is given again.
        const quint64 last = list.Serial(1);
        list.Remove(1);
        list.Add(still(5));
        QVERIFY(list.Serial(1) > last);
        QCOMPARE(list.timesCleared(), 0);
        list.Clear();
        list.Add(still(6));
        QCOMPARE(list.timesCleared(), 1);
        QVERIFY(list.Serial(1) > last + 1);
    }
};

QTEST_GUILESS_MAIN(ImageListTest)
#include "tst_ImageList.moc"
