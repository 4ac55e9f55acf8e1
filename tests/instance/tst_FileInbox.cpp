#include "instance/FileInbox.h"
#include "shared/Timer.h"

namespace {

/// A box and what it asked its window for.
struct Box
{
    QWidget window;
    QStringList opened;
    bool busy = false;
    bool busyAfterMovie = false;
    FileInbox box{{[this] { return busy; },
                   [this](const QString& name) {
                       opened << "movie " + name;
                       busy = busyAfterMovie;
                   },
                   [this](const QString& name) { opened << "list " + name; }},
                  &window};
    Timer& turn = *box.findChild<Timer*>("tmrTurn");

    /// Lets all events run that are due.
    QStringList& told()
    {
        for (int events = 0; turn.Enabled() && events < 2000; ++events)
            turn.elapse();
        return opened;
    }
};

} // namespace

class FileInboxTest : public QObject
{
    Q_OBJECT
private slots:
    void tellsMoviesFromLists_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("opened");
        QTest::newRow("movie") << "/a/b.pvm"
                               << "movie /a/b.pvm";
        QTest::newRow("capitals") << "/a/B.PVM"
                                  << "movie /a/B.PVM";
        QTest::newRow("five characters") << "a.pvm"
                                         << "movie a.pvm";
        QTest::newRow("the ending alone is a list") << ".pvm"
                                                    << "list .pvm";
        QTest::newRow("in capitals, too") << ".PVM"
                                          << "list .PVM";
        QTest::newRow("list") << "/a/cams.zip"
                              << "list /a/cams.zip";
        QTest::newRow("short") << "a"
                               << "list a";
        QTest::newRow("an ending that only looks so") << "/a/b.pvmx"
                                                      << "list /a/b.pvmx";
        QTest::newRow("no dot") << "/a/bpvm"
                                << "list /a/bpvm";
        QTest::newRow("a line break in the name") << "/a\nb\t.pvm"
                                                  << "movie /a\nb\t.pvm";
        QTest::newRow("other scripts") << QString::fromUtf8("/日本/ÿ\U0001F600.pvm")
                                       << QString::fromUtf8("movie /日本/ÿ\U0001F600.pvm");
        QTest::newRow("long") << QString(32'000, 'x') << "list " + QString(32'000, 'x');
    }

    void tellsMoviesFromLists()
    {
        QFETCH(QString, text);
        Box b;
        QVERIFY(b.box.receive(text));
        QTEST(b.told().join('|'), "opened");
    }

    void emptyTextsAreNothing()
    {
        Box b;
        QVERIFY(b.box.receive(""));
        QVERIFY(b.box.receive("a"));
        QVERIFY(b.box.receive(""));
        QCOMPARE(b.told(), QStringList("list a"));
        b.box.clear();
        QCOMPARE(b.told(), QStringList("list a"));
    }

    void theSameFileTwiceIsTwoFiles()
    {
        Box b;
        QVERIFY(b.box.receive("a.pvm"));
        QVERIFY(b.box.receive("a.pvm"));
        QCOMPARE(b.told(), (QStringList{"movie a.pvm", "movie a.pvm"}));
        QVERIFY(b.box.receive("a.pvm"));
        QCOMPARE(b.told().size(), 3);
    }

    void itsChangeIsWhatCounts()
    {
        Box b;
        b.box.setText("a.pvm");
        QCOMPARE(b.told(), QStringList("movie a.pvm"));
    }

    void theTextIsThatOfTheLastFileAndStays()
    {
        Box b;
        QVERIFY(b.box.receive("/a.pvm"));
        QVERIFY(b.box.receive("/b.pvm"));
        QCOMPARE(b.told(), (QStringList{"movie /a.pvm", "movie /b.pvm"}));
        QCOMPARE(b.box.text(), "/b.pvm");
    }

    void filesWaitUntilNothingLongRuns()
    {
        Box b;
        b.busy = true;
        QVERIFY(b.box.receive("a.pvm"));
        QVERIFY(b.box.receive("b"));
        QCOMPARE(b.told(), QStringList());
        QVERIFY(!b.turn.Enabled());
        b.box.wake();
        QCOMPARE(b.told(), QStringList());
        b.busy = false;
        b.box.wake();
        QCOMPARE(b.told(), (QStringList{"movie a.pvm", "list b"}));
        b.box.wake();
        QVERIFY(!b.turn.Enabled());
    }

    void aFileThatTakesLongKeepsTheNextWaiting()
    {
        Box b;
        b.busyAfterMovie = true;
        QVERIFY(b.box.receive("a.pvm"));
        QVERIFY(b.box.receive("b"));
        QCOMPARE(b.told(), QStringList("movie a.pvm"));
        b.busy = false;
        b.box.wake();
        QCOMPARE(b.told(), (QStringList{"movie a.pvm", "list b"}));
    }

    void oneFileAnEvent()
    {
        Box b;
        QVERIFY(b.box.receive("a"));
        QVERIFY(b.box.receive("b"));
        QCOMPARE(b.opened, QStringList());
        b.turn.elapse();
        QCOMPARE(b.opened, QStringList("list a"));
        QTRY_COMPARE(b.opened, (QStringList{"list a", "list b"}));
    }

    void onlySoManyWait()
    {
        Box b;
        b.busy = true;
        for (int i = 0; i < FileInbox::MaxWaiting; ++i)
            QVERIFY(b.box.receive(QString::number(i)));
        QVERIFY(!b.box.receive("one more"));
        b.busy = false;
        b.box.wake();
        QCOMPARE(b.told().size(), FileInbox::MaxWaiting);
        QCOMPARE(b.opened.last(), "list " + QString::number(FileInbox::MaxWaiting - 1));
        QVERIFY(b.box.receive("one more"));
        QCOMPARE(b.told().last(), "list one more");
    }

    void atTheEndTheListsThatWaitAreOpened()
    {
        Box b;
        b.busy = true;
        for (const char* name : {"a", "b.pvm", ".pvm", ""})
            QVERIFY(b.box.receive(name));
        b.box.openWaitingLists();
        QCOMPARE(b.opened, (QStringList{"list a", "list .pvm"}));
        b.busy = false;
        b.box.wake();
        QCOMPARE(b.told().size(), 2);
    }

    void isNeverSeenAndNeverHasTheKeyboard()
    {
        Box b;
        QLineEdit other(&b.window);
        QCOMPARE(b.box.objectName(), "txtCom");
        QVERIFY(!b.box.accessibleName().isEmpty());
        b.window.show();
        QVERIFY(waitForExposed(&b.window));
        QVERIFY(!b.box.isVisible());
        b.box.setFocus();
        QVERIFY(!b.box.hasFocus());
        QVERIFY(b.box.receive("a"));
        QCOMPARE(b.told(), QStringList("list a"));
        QVERIFY(!b.box.isVisible());
    }
};

QTEST_MAIN(FileInboxTest)
#include "tst_FileInbox.moc"
