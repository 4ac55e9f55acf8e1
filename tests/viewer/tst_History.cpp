#include "support/Pictures.h"
#include "viewer/History.h"

class HistoryTest : public QObject
{
    Q_OBJECT
private slots:
    void theNewestIsTheCurrentImage();
    void the46thImageRemovesTheOldest();
    void keysHoldAddressAndDateAndAreUnique();
    void lastModifiedIsTheNewestOfItsAddress();
};

static Still still(int width)
{
    return Still::fromImage(plainImage({width, 1}, Qt::red));
}

void HistoryTest::theNewestIsTheCurrentImage()
{
    History history;
    QCOMPARE(history.CurrentImage(), 0);
    history.Append(still(1), "cam/a", "");
    history.Append(still(2), "cam/a", "");
    QCOMPARE(history.CurrentImage(), 2);
    QCOMPARE(history.ilHis().Picture(2).size().width(), 2);
}

void HistoryTest::the46thImageRemovesTheOldest()
{
    History history;
    QSignalSpy removed(&history, &History::OldestRemoved);
    for (int i = 1; i <= 45; ++i)
        history.Append(still(i), "cam/a", "");
    QCOMPARE(history.ilHis().Count(), 45);
    QCOMPARE(removed.count(), 0);
    history.Append(still(46), "cam/a", "");
    QCOMPARE(history.ilHis().Count(), 45);
    QCOMPARE(history.CurrentImage(), 45);
    QCOMPARE(removed.count(), 1);
    QCOMPARE(history.ilHis().Picture(1).size().width(), 2);
    QCOMPARE(history.ilHis().Picture(45).size().width(), 46);
}

void HistoryTest::keysHoldAddressAndDateAndAreUnique()
{
    History history;
    // A clock that stands still seeds the same digits each time.
    const QDateTime frozen(QDate(2000, 1, 1), QTime(0, 0));
    history.setClock([&] { return frozen; });
    QSet<QString> tails;
    for (int i = 0; i < 20; ++i) {
        history.Append(still(1), "cam/a.jpg", "Thu");
        const QStringList fields = history.ilHis().Key(i + 1).split(QChar(0xFF));
        QCOMPARE(fields.size(), 3);
        QCOMPARE(fields[0], "cam/a.jpg");
        QCOMPARE(fields[1], "Thu");
        tails.insert(fields[2]);
    }
    QCOMPARE(tails.size(), 20);
}

void HistoryTest::lastModifiedIsTheNewestOfItsAddress()
{
    History history;
    QCOMPARE(history.lastModifiedOf("cam/a"), "");
    history.Append(still(1), "cam/a", "Mon");
    history.Append(still(1), "cam/b", "Tue");
    history.Append(still(1), "cam/a", "Wed");
    history.Append(still(1), "cam/c", "");
    QCOMPARE(history.lastModifiedOf("cam/a"), "Wed");
    QCOMPARE(history.lastModifiedOf("cam/b"), "Tue");
    QCOMPARE(history.lastModifiedOf("cam/c"), "");
    QCOMPARE(history.lastModifiedOf("cam/A"), "");
    QCOMPARE(history.lastModifiedOf("cam"), "");
}

QTEST_GUILESS_MAIN(HistoryTest)
#include "tst_History.moc"
