#include "instance/FileInbox.h"
#include "shared/Timer.h"
#include "support/Rows.h"

#include <QVariantList>

namespace {

/// A box, and what its owner opened.
struct Box : QObject
{
    Box()
    {
        connect(&box, &FileInbox::FileWaits, this, [this] {
            if (busy)
                return;
            switch (const CommandLineFile file = box.takeNext(); file.kind) {
            case CommandLineFile::Kind::Movie:
                opened << "movie " + file.name;
                busy = busyAfterMovie;
                break;
            case CommandLineFile::Kind::CameraList:
                opened << "list " + file.name;
                break;
            case CommandLineFile::Kind::None:
                break;
            }
        });
    }

    QStringList opened;
    bool busy = false;
    bool busyAfterMovie = false;
    FileInbox box;
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
        const Rows<QString, QString> row("text", "opened");
        row("movie", "/a/b.pvm", "movie /a/b.pvm");
        row("capitals", "/a/B.PVM", "movie /a/B.PVM");
        row("five characters", "a.pvm", "movie a.pvm");
        row("the ending alone is a list", ".pvm", "list .pvm");
        row("in capitals, too", ".PVM", "list .PVM");
        row("list", "/a/cams.zip", "list /a/cams.zip");
        row("short", "a", "list a");
        row("an ending that only looks so", "/a/b.pvmx", "list /a/b.pvmx");
        row("no dot", "/a/bpvm", "list /a/bpvm");
        row("a line break in the name", "/a\nb\t.pvm", "movie /a\nb\t.pvm");
        row("other scripts", QString::fromUtf8("/日本/ÿ\U0001F600.pvm"),
            QString::fromUtf8("movie /日本/ÿ\U0001F600.pvm"));
        row("long", QString(32'000, 'x'), "list " + QString(32'000, 'x'));
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
    }

    void whereNothingWaitsNothingIsTaken()
    {
        FileInbox box;
        QCOMPARE(box.takeNext().kind, CommandLineFile::Kind::None);
        QVERIFY(!box.findChild<Timer*>("tmrTurn")->Enabled());
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

    void eachIsAnnouncedAsItComes()
    {
        FileInbox box;
        QSignalSpy received(&box, &FileInbox::Received);
        QVERIFY(box.receive("/a.pvm"));
        QVERIFY(box.receive("/a.pvm"));
        QCOMPARE(received, (QList<QVariantList>{{"/a.pvm"}, {"/a.pvm"}}));
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

    void atTheEndTheListsThatWaitAreGiven()
    {
        Box b;
        b.busy = true;
        for (const char* name : {"a", "b.pvm", ".pvm", ""})
            QVERIFY(b.box.receive(name));
        QCOMPARE(b.box.close(), (QStringList{"a", ".pvm"}));
        QVERIFY(!b.box.receive("c"));
        b.busy = false;
        b.box.wake();
        QVERIFY(!b.turn.Enabled());
        QCOMPARE(b.told(), QStringList());
        QCOMPARE(b.box.close(), QStringList());
    }
};

QTEST_GUILESS_MAIN(FileInboxTest)
#include "tst_FileInbox.moc"
