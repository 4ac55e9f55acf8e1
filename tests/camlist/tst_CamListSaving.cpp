// When the camera list is written, and what it is merged with.

#include "camlist/frmEdit.h"
#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ShownList.h"
#include "support/TimeSeam.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>

#include <functional>

namespace {

const QByteArray Harbour = "Cities\377Harbour\377URL1";
const QByteArray Tower = "Sights\377Tower\377URL2";
const QByteArray Bridge = "Sights\377Bridge\377URL3";
const QByteArray Two = Harbour + '\xFF' + Tower;

/// A list of two cameras, shown.
struct Saved : ShownList
{
    explicit Saved(const QByteArray& listDat = Two + "\r\n")
        : ShownList(listDat)
    {
    }
    Timer& timer() { return timerOf(list(), "tmrSave"); }
    QByteArray content(const QString& name = "list.dat") const { return contentOf(path(name)); }
    void add(const QString& key = "URL9") { QVERIFY(list().AddCam("New", key, "News")); }
    void addOfAnother() const { write("list.dat", Two + '\xFF' + Bridge + "\r\n"); }
};

const QByteArray New = "News\377New\377URL9";

} // namespace

class CamListSavingTest : public QObject
{
    Q_OBJECT
private slots:
    void aChangeIsSavedAWhileLater_data()
    {
        const Rows<std::function<void(Saved&)>, QByteArray> row("change", "content");
        using Change = std::function<void(Saved&)>;
        row("added", Change([](Saved& s) { s.add(); }), Two + '\xFF' + New);
        row("imported", Change([](Saved& s) { s.import("CAMZ" + New + "\r\n"); }),
            Two + '\xFF' + New);
        row("removed", Change([](Saved& s) { s.choose("Harbour", "mnuRem"); }), Tower);
        row("brought back", Change([](Saved& s) {
                s.choose("Harbour", "mnuRem");
                s.timer().elapse();
                s.list().undo();
            }),
            Two);
        row("another key", Change([](Saved& s) { s.list().changeKey("URL1", "URL7"); }),
            "Cities\377Harbour\377URL7\377" + Tower);
    }

    void aChangeIsSavedAWhileLater()
    {
        QFETCH(std::function<void(Saved&)>, change);
        Saved shown;
        QVERIFY(!shown.timer().Enabled());
        QCOMPARE(shown.timer().Interval(), CamList::SaveMs);
        change(shown);
        QVERIFY(shown.timer().Enabled());
        shown.timer().elapse();
        QVERIFY(!shown.timer().Enabled());
        QTEST(shown.content().chopped(2), "content");
        QCOMPARE(namesIn(shown.path("")).filter("list.dat"), QStringList("list.dat"));
    }

    /// The second change does not make the first one wait longer.
    void aTimerThatRunsIsLeftAlone()
    {
        Saved shown;
        shown.timer().setInterval(1'000'000);
        shown.add();
        const int left = shown.timer().remainingMs();
        QTRY_VERIFY(shown.timer().remainingMs() < left);
        shown.add("URL10");
        QVERIFY(shown.timer().remainingMs() < left);
    }

    void whatNobodyChangedIsNotWritten_data()
    {
        const Rows<std::function<void(Saved&)>> row("change");
        using Change = std::function<void(Saved&)>;
        row("nothing", Change([](Saved&) {}));
        row("added and removed", Change([](Saved& s) {
                s.add();
                s.list().Remove();
            }));
        row("saved before", Change([](Saved& s) {
                s.add();
                s.timer().elapse();
            }));
        row("loaded again", Change([](Saved& s) {
                s.add();
                s.list().LoadFile();
            }));
    }

    void whatNobodyChangedIsNotWritten()
    {
        QFETCH(std::function<void(Saved&)>, change);
        Saved shown;
        change(shown);
        const QByteArray others = "Others\xFFOther\xFFURL5\r\n";
        for (const QByteArray& content : {others, QByteArray("no list"), QByteArray()}) {
            shown.write("list.dat", content);
            QVERIFY(shown.list().SaveFile());
            QCOMPARE(shown.content(), content);
        }
        // Nor one that another instance emptied.
        QVERIFY(QFile::remove(shown.path()));
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(namesIn(shown.path("")), QStringList());
    }

    void whatIsOddStaysAsLongAsNobodyChangesIt()
    {
        const QByteArray odd = "\xEF\xBB\xBF" + Two + "\xFF" + Harbour + "\xFFhalf\n";
        Saved shown(odd);
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(shown.content(), odd);
    }

    void theFirstListIsWritten()
    {
        ShownList shown;
        shown.list().LoadFile();
        QVERIFY(shown.list().SaveFile());
        QVERIFY(contentOf(shown.path()).startsWith("Cities\377NewYork, NY\377"));
    }

    void twoListsAreMergedAndShown()
    {
        Saved shown;
        shown.add();
        shown.tree().select(shown.node("Tower"));
        shown.addOfAnother();
        QSignalSpy clicks(&shown.list(), &CamList::Click);
        QSignalSpy kept(&shown.list(), &CamList::KeptBeside);
        shown.timer().elapse();
        const QByteArray all = Two + '\xFF' + Bridge + '\xFF' + New + "\r\n";
        QCOMPARE(shown.content(), all);
        QCOMPARE(shown.all(), QStringList({"Cities", "Cities/Harbour", "Sights", "Sights/Tower",
                                           "Sights/Bridge", "News", "News/New"}));
        QCOMPARE(shown.tree().selected(), shown.node("Tower"));
        QVERIFY(shown.tree().isExpanded(shown.node("Sights")));
        QVERIFY(shown.entry("mnuEdit").isEnabled());
        QCOMPARE(clicks.size() + kept.size(), 0);
        // That is the list of both from here on.
        QVERIFY(!shown.timer().Enabled());
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(shown.content(), all);
        shown.choose("New", "mnuRem");
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(shown.content(), Two + '\xFF' + Bridge + "\r\n");
        QCOMPARE(namesIn(shown.path("")), QStringList("list.dat"));
    }

    void bothRemovedAll()
    {
        Saved shown(Two + "\r\n");
        shown.choose("Harbour", "mnuRem");
        shown.write("list.dat", Harbour + "\r\n");
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(shown.all(), QStringList());
        QCOMPARE(namesIn(shown.path("")), QStringList());
    }

    void theFirstListsOfTwoAreMerged()
    {
        ShownList shown;
        shown.list().LoadFile();
        const QByteArray harbour = Harbour + "\r\n";
        shown.write("list.dat", harbour); // who removed all the others
        shown.list().AddCam("New", "URL9", "News");
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(contentOf(shown.path()), Harbour + '\xFF' + New + "\r\n");
    }

    void whatIsGoneIsWrittenAgain()
    {
        Saved shown;
        shown.add();
        QVERIFY(QFile::remove(shown.path()));
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(shown.content(), Two + '\xFF' + New + "\r\n");
    }

    void whatCannotBeMergedIsKeptAndTold_data()
    {
        const Rows<QByteArray, QByteArray> row("theirs", "merged");
        row("two names", "Cities\377Port\377URL1\377" + Tower,
            "Cities\377Haven\377URL1\377" + Tower);
        row("no list", "Dear diary", Tower + "\377" + "Cities\377Haven\377URL1");
        row("control characters", Two + "\377\002\377n\377k",
            Tower + "\377" + "Cities\377Haven\377URL1");
    }

    void whatCannotBeMergedIsKeptAndTold()
    {
        QFETCH(QByteArray, theirs);
        Saved shown;
        shown.list().edit("URL1");
        auto* editor = shown.window().findChild<frmEdit*>();
        QVERIFY(editor);
        editor->findChild<QLineEdit*>("txtName")->setText("Haven");
        editor->findChild<QPushButton*>("cmdGo")->click();
        shown.write("list.dat", theirs + "\r\n");
        QSignalSpy kept(&shown.list(), &CamList::KeptBeside);
        shown.timer().elapse();
        QVERIFY(shown.content().contains("Haven"));
        QCOMPARE(shown.content("list.dat.bak"), theirs + "\r\n");
        QCOMPARE(kept.size(), 1);
        QCOMPARE(kept.first().first(), shown.path("list.dat.bak"));
    }

    /// The editor goes on with the camera that it was opened for.
    void anEditorStaysOpenOverAMerge()
    {
        Saved shown;
        shown.add();
        shown.list().edit("URL1");
        auto* editor = shown.window().findChild<frmEdit*>();
        QVERIFY(editor);
        shown.addOfAnother();
        shown.timer().elapse();
        editor->findChild<QLineEdit*>("txtName")->setText("Haven");
        editor->findChild<QPushButton*>("cmdGo")->click();
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(shown.content(), Tower + '\xFF' + Bridge + '\xFF' + New +
                                      "\xFF"
                                      "Cities\xFFHaven\xFFURL1\r\n");
    }

    void aQuestionStaysOpenOverAMerge()
    {
        Saved shown;
        shown.add();
        shown.choose("Sights", "mnuRem");
        QVERIFY(openDialog<QMessageBox>());
        shown.addOfAnother();
        shown.timer().elapse();
        QVERIFY(answerMessage(QMessageBox::Yes).shown);
        QCOMPARE(shown.all(), QStringList({"Cities", "Cities/Harbour", "News", "News/New"}));
    }

    void aRemovalIsUndoneAfterAMerge()
    {
        Saved shown;
        shown.choose("Harbour", "mnuRem");
        shown.addOfAnother();
        shown.timer().elapse();
        QCOMPARE(shown.content(), Tower + '\xFF' + Bridge + "\r\n");
        shown.list().undo();
        QVERIFY(shown.list().has("URL1"));
        QVERIFY(shown.list().has("URL3"));
    }

    void changesCanBeTakenBack_data()
    {
        const Rows<QByteArray, int> row("atStart", "saves");
        for (const int saves : {0, 1, 3}) {
            const std::string times = ", saved " + std::to_string(saves) + " times";
            row("a list" + times, Two + "\r\n", saves);
            row("an odd list" + times, "\xEF\xBB\xBF" + Two + "\xFF" + Harbour + "\n", saves);
            row("none" + times, {}, saves);
            row("no list" + times, "Dear diary,\r\n", saves);
        }
    }

    void changesCanBeTakenBack()
    {
        QFETCH(QByteArray, atStart);
        QFETCH(int, saves);
        Saved shown(atStart);
        if (atStart.isEmpty()) {
            QVERIFY(QFile::remove(shown.path()));
            shown.list().LoadFile();
        }
        for (int i = 0; i < saves; ++i) {
            shown.add("URL" + QString::number(10 + i));
            shown.timer().elapse();
            QVERIFY(shown.content().contains("URL1"));
        }
        shown.add();
        QVERIFY(shown.list().dropChanges());
        QVERIFY(!shown.timer().Enabled());
        QCOMPARE(shown.content(), atStart.isEmpty() ? "none" : atStart);
        QVERIFY(!QFile::exists(shown.path("list.dat.bak")));
    }

    /// What another instance changed meanwhile is not taken back, whenever that was.
    void onlyOwnChangesAreTakenBack_data()
    {
        const Rows<bool> row("isMergedBefore");
        row("merged before", true);
        row("not merged", false);
    }

    void onlyOwnChangesAreTakenBack()
    {
        QFETCH(bool, isMergedBefore);
        Saved shown;
        shown.choose("Harbour", "mnuRem");
        shown.add();
        shown.timer().elapse();
        QCOMPARE(shown.content(), Tower + '\xFF' + New + "\r\n");
        shown.write("list.dat", Tower + '\xFF' + New + '\xFF' + Bridge + "\r\n");
        if (isMergedBefore) {
            shown.add("URL10");
            shown.timer().elapse();
            QVERIFY(shown.content().contains("URL10"));
        }
        QVERIFY(shown.list().dropChanges());
        const auto records = readCameraListLine(shown.content().chopped(2));
        QStringList keys;
        for (const CameraRecord& one : records)
            keys << one.key;
        keys.sort();
        QCOMPARE(keys, QStringList({"URL1", "URL2", "URL3"}));
    }

    void aReloadKeepsWhatWasThereAtTheStart()
    {
        Saved shown;
        shown.add();
        shown.timer().elapse();
        shown.write("list.dat", Two + '\xFF' + New + '\xFF' + Bridge + "\r\n");
        shown.list().LoadFile();
        QVERIFY(shown.list().has("URL9"));
        QVERIFY(shown.list().dropChanges());
        QCOMPARE(shown.content(), Two + '\xFF' + Bridge + "\r\n");
    }

    void whatAKilledSaveLeftIsRemoved()
    {
        Saved shown;
        const QStringList others{"list.dat.backup", "list.dat.BACKUP", "list.dat.old",
                                 "pref.ini.AbCdEf"};
        for (const QString& name : others + QStringList{"list.dat.aBcDeF", "list.dat.XYZabc"})
            shown.write(name, "x");
        QVERIFY(shown.list().SaveFile());
        QVERIFY(QFile::exists(shown.path("list.dat.aBcDeF"))); // nothing was saved
        shown.add();
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(namesIn(shown.path("")), QStringList("list.dat") + others);
    }
};

QTEST_MAIN(CamListSavingTest)
#include "tst_CamListSaving.moc"
