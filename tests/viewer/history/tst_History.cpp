#include "support/Pictures.h"
#include "viewer/history/History.h"

#include <memory>
#include <optional>

static Still still(int width)
{
    return Still::fromImage(plainImage({width, 1}, Qt::red));
}

class HistoryTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { history = std::make_unique<History>(); }

    void theNewestIsTheCurrentImage()
    {
        QCOMPARE(history->CurrentImage(), 0);
        history->Append(still(1), "cam/a", "");
        history->Append(still(2), "cam/a", "");
        QCOMPARE(history->CurrentImage(), 2);
        QCOMPARE(history->ilHis().Picture(2).size().width(), 2);
    }

    void the46thImageRemovesTheOldest()
    {
        for (int i = 1; i <= 45; ++i)
            history->Append(still(i), "cam/a", "");
        QCOMPARE(history->ilHis().Count(), 45);
        history->Append(still(46), "cam/a", "");
        QCOMPARE(history->ilHis().Count(), 45);
        QCOMPARE(history->CurrentImage(), 45);
        QCOMPARE(history->ilHis().Picture(1).size().width(), 2);
        QCOMPARE(history->ilHis().Picture(45).size().width(), 46);
    }

    void keysHoldAddressAndDateAndAreUnique()
    {
        QSet<QString> tails;
        for (int i = 0; i < 20; ++i) {
            history->Append(still(1), "cam/a.jpg", "Thu");
            const QStringList fields = history->ilHis().Key(i + 1).split(QChar(0xFF));
            QCOMPARE(fields.size(), 3);
            QCOMPARE(fields[0], "cam/a.jpg");
            QCOMPARE(fields[1], "Thu");
            tails.insert(fields[2]);
        }
        QCOMPARE(tails.size(), 20);
    }

    void lastModifiedIsTheNewestOfItsAddress()
    {
        QCOMPARE(history->lastModifiedOf("cam/a"), "");
        history->Append(still(1), "cam/a", "Mon");
        history->Append(still(1), "cam/b", "Tue");
        history->Append(still(1), "cam/a", "Wed");
        history->Append(still(1), "cam/c", "");
        QCOMPARE(history->lastModifiedOf("cam/a"), "Wed");
        QCOMPARE(history->lastModifiedOf("cam/b"), "Tue");
        QCOMPARE(history->lastModifiedOf("cam/c"), "");
        QCOMPARE(history->lastModifiedOf("cam/A"), "");
        QCOMPARE(history->lastModifiedOf("cam"), "");
    }

    void anOpenedFileHasNoAddress()
    {
        QSet<QString> keys;
        for (int n = 1; n <= 20; ++n) {
            history->AppendFile(still(n));
            QCOMPARE(history->CurrentImage(), n);
            QCOMPARE(history->addressOf(n), std::optional<QString>(""));
            const QString key = history->ilHis().Key(n);
            QCOMPARE(key.count(QChar(0xFF)), 1);
            QVERIFY(key.startsWith(QChar(0xFF)));
            QVERIFY(key.size() > 1);
            keys.insert(key);
        }
        QCOMPARE(keys.size(), 20);
    }

    void keysStayUniqueWhateverIsRemoved()
    {
        for (int i = 0; i < 3; ++i) {
            history->Append(still(1), "cam/a", "");
            history->AppendFile(still(2));
            history->setCurrentImage(1);
            QVERIFY(history->removeCurrent());
        }
        QCOMPARE(history->Count(), 3);
        history->Clear();
        history->Append(still(1), "cam/a", "");
        QCOMPARE(history->Count(), 1);
    }

    void the46thFileRemovesTheOldestToo()
    {
        addFiles(46);
        QCOMPARE(history->Count(), 45);
        QCOMPARE(history->CurrentImage(), 45);
        QCOMPARE(history->ilHis().Picture(1).size().width(), 2);
    }

    void framesHaveNoKeyAndNoLimit()
    {
        for (int i = 1; i <= 60; ++i)
            history->AppendFrame(still(i));
        QCOMPARE(history->Count(), 60);
        QCOMPARE(history->CurrentImage(), 0);
        QCOMPARE(history->addressOf(7), std::nullopt);
        QCOMPARE(history->ilHis().Key(7), "");

        // Then one goes for each that comes.
        history->Append(still(61), "cam/a", "");
        QCOMPARE(history->Count(), 60);
        QCOMPARE(history->CurrentImage(), 60);
        history->AppendFile(still(62));
        QCOMPARE(history->Count(), 60);
        QCOMPARE(history->ilHis().Picture(1).size().width(), 3);
    }

    /// All copies share their pixels, but count each.
    void largeImagesDriveOutTheOldest()
    {
        const Still quarter = Still::fromImage(QImage({4'096, 4'096}, QImage::Format_RGB32));
        QCOMPARE(4 * quarter.heldBytes(), History::MaxBytes);
        for (int i = 0; i < 4; ++i)
            history->Append(quarter, "cam/a", "");
        QCOMPARE(history->Count(), 4);
        QVERIFY(!history->hasGivenUpBytes());
        history->Append(still(1), "cam/b", "");
        QCOMPARE(history->Count(), 4);
        QVERIFY(history->hasGivenUpBytes());
        QCOMPARE(history->CurrentImage(), 4);
        QCOMPARE(history->newestOf("cam/b"), 4);
        history->AppendFile(still(2));
        QCOMPARE(history->Count(), 5);
        QVERIFY(!history->hasGivenUpBytes());

        // All leave for one that alone is too large, and it does not.
        history->Append(Still::fromImage(QImage({8'192, 8'193}, QImage::Format_RGB32)), "cam/c",
                        "");
        QCOMPARE(history->Count(), 1);
        QCOMPARE(history->CurrentImage(), 1);
        QCOMPARE(history->addressOf(1), "cam/c");
        history->Append(still(1), "cam/d", "");
        QCOMPARE(history->Count(), 1);
        QCOMPARE(history->addressOf(1), "cam/d");
    }

    void aMovieMayBeLargeAndTheNextImageMakesRoom()
    {
        const Still quarter = Still::fromImage(QImage({4'096, 4'096}, QImage::Format_RGB32));
        history->beginMovie();
        for (int i = 0; i < 6; ++i)
            history->AppendFrame(quarter);
        // Of what waits, the last four are all that can be kept.
        for (int i = 0; i < 7; ++i)
            history->Append(quarter, QString("cam/%1").arg(i), "");
        QCOMPARE(history->Count(), 6);
        QCOMPARE(history->heldBytes(), (6 + 4) * quarter.heldBytes());
        QVERIFY(history->endMovie());
        QCOMPARE(history->heldBytes(), History::MaxBytes);
        QCOMPARE(history->Count(), 4);
        QCOMPARE(history->addressOf(1), "cam/3");
        QCOMPARE(history->addressOf(4), "cam/6");

        history->Clear();
        for (int i = 0; i < 6; ++i)
            history->AppendFrame(quarter);
        QCOMPARE(history->Count(), 6);
        history->Append(still(1), "cam/a", "");
        QCOMPARE(history->Count(), 4);
        QCOMPARE(history->CurrentImage(), 4);
    }

    void stepsWrapAround()
    {
        addFiles(3);
        QCOMPARE(history->forward(), 1);
        QCOMPARE(history->forward(), 2);
        QCOMPARE(history->back(), 1);
        QCOMPARE(history->back(), 3);
        QCOMPARE(history->CurrentImage(), 3);
        history->setCurrentImage(0);
        QCOMPARE(history->forward(), 1);
        history->setCurrentImage(0);
        QCOMPARE(history->back(), 3);
    }

    void stepsFromAboveTheEndLeadToTheNewest()
    {
        addFiles(2);
        history->setCurrentImage(9);
        QCOMPARE(history->back(), 2);
        history->setCurrentImage(9);
        QCOMPARE(history->forward(), 2);
    }

    void anEmptyHistoryHasNoSteps()
    {
        history->setCurrentImage(7);
        QCOMPARE(history->back(), 0);
        QCOMPARE(history->forward(), 0);
        QCOMPARE(history->CurrentImage(), 7);
        QCOMPARE(history->addressOf(0), std::nullopt);
        QVERIFY(!history->removeCurrent());
    }

    void removalLeavesTheNumber()
    {
        addFiles(3);
        history->setCurrentImage(2);
        QVERIFY(history->removeCurrent());
        QCOMPARE(history->CurrentImage(), 2);
        QCOMPARE(history->ilHis().Picture(2).size().width(), 3);
        history->setCurrentImage(3);
        QVERIFY(!history->removeCurrent());
        history->Clear();
        QCOMPARE(history->Count(), 0);
        QCOMPARE(history->CurrentImage(), 3);
    }

    void eachEntryKnowsItsCamera()
    {
        history->Append(still(1), "cam/a", "Mon", "cam:81/a");
        history->Append(still(2), "cam/a", "Mon", "cam:82/a");
        history->AppendFile(still(3));
        QCOMPARE(history->cameraOf(1), "cam:81/a");
        QCOMPARE(history->cameraOf(2), "cam:82/a");
        QCOMPARE(history->cameraOf(3), "");
        QCOMPARE(history->newestOf("cam/a"), 2);
        QCOMPARE(history->newestOf("cam/a", "cam:81/a"), 1);
        QCOMPARE(history->newestOf("cam/a", "cam:82/a"), 2);
        QCOMPARE(history->newestOf("cam/a", "cam:83/a"), 0);
        QCOMPARE(history->newestOf("cam/b"), 0);
        history->setCurrentImage(1);
        history->removeCurrent();
        QCOMPARE(history->cameraOf(1), "cam:82/a");
        history->Clear();
        QCOMPARE(history->cameraOf(1), "");
    }

private:
    void addFiles(int count)
    {
        for (int i = 1; i <= count; ++i)
            history->AppendFile(still(i));
    }

    std::unique_ptr<History> history;
};

QTEST_GUILESS_MAIN(HistoryTest)
#include "tst_History.moc"
