// The table from outcome to sentence and actions, row by row.

#include "shell/notices/NoticeTable.h"
#include "support/Rows.h"

Q_DECLARE_METATYPE(Notice::Message)

using Kind = FetchOutcome::Kind;
using Sent = FetchOutcome::Sent;

namespace {

QString captions(const Notice::Message& message)
{
    QStringList found;
    for (const auto& one : message.buttons)
        found << one.caption;
    return found.join(" | ");
}

FetchOutcome outcome(Kind kind, const QString& text = {}, Sent sent = Sent::SomethingElse)
{
    return {kind, "cam.example:81/a.jpg", "cam.example", "http://new.example/b.jpg", text, sent};
}

} // namespace

class NoticeTableTest : public QObject
{
    Q_OBJECT
private slots:
    void fetches_data()
    {
        const Rows<FetchOutcome, bool, bool, QString, QString> row(
            "outcome", "isStalled", "isListed", "sentence", "buttons");
        const QString stop = "Keep Refreshing | Resume";
        row("a new picture", outcome(Kind::NewPicture), false, true, "", "");
        row("the same picture", outcome(Kind::SamePicture), false, true, "", "");
        row("not modified", outcome(Kind::NotModified), false, true, "", "");
        row("not modified, stopped", outcome(Kind::NotModified), true, true,
            "Refreshing has stopped: cam.example has nothing newer.", stop);
        row("moved", outcome(Kind::Moved), false, true,
            "This camera has moved to http://new.example/b.jpg.", "Use New Address");
        row("moved, stopped", outcome(Kind::Moved), true, true,
            "This camera has moved to http://new.example/b.jpg.", "Use New Address");
        row("points elsewhere", outcome(Kind::PointsElsewhere), true, false,
            "cam.example points to http://new.example/b.jpg.", "Follow");
        row("a circle", outcome(Kind::Circle), false, true, "cam.example redirects in a circle.",
            "Try Again");
        row("a circle, stopped", outcome(Kind::Circle), true, true,
            "Refreshing has stopped: cam.example redirects in a circle.", stop);
        row("sign in", outcome(Kind::SignInWanted), true, false,
            "cam.example wants a name and password.", "Sign In...");
        const auto refused = outcome(Kind::Refused, "503 Service Unavailable");
        row("refused", refused, false, false, "cam.example answered \"503 Service Unavailable\".",
            "Try Again");
        row("refused, in the list", refused, false, true,
            "cam.example answered \"503 Service Unavailable\".", "Try Again | Edit Camera...");
        row("refused, stopped", refused, true, true,
            "Refreshing has stopped: cam.example answered \"503 Service Unavailable\".", stop);
        const QString offer = "Open in Browser | Try Again";
        row("a page", outcome(Kind::NotAPicture, {}, Sent::WebPage), false, true,
            "cam.example sent a web page, not a picture.", offer);
        row("text", outcome(Kind::NotAPicture, {}, Sent::Text), false, true,
            "cam.example sent text, not a picture.", offer);
        row("a video", outcome(Kind::NotAPicture, {}, Sent::Video), false, true,
            "cam.example sent a video, not a picture.", offer);
        row("nothing", outcome(Kind::NotAPicture, {}, Sent::Nothing), false, true,
            "cam.example sent an empty answer, not a picture.", offer);
        row("something else", outcome(Kind::NotAPicture), false, true,
            "cam.example sent something else, not a picture.", offer);
        row("incomplete", outcome(Kind::Incomplete), false, true,
            "The picture is incomplete: the connection broke.", "Try Again");
        row("incomplete, stopped", outcome(Kind::Incomplete), true, true,
            "Refreshing has stopped: the connection broke.", stop);
        const auto failed = outcome(Kind::Failed, "Connection refused.");
        row("failed", failed, false, true, "cam.example cannot be reached: Connection refused.",
            "Try Again");
        row("failed, stopped", failed, true, true,
            "Refreshing has stopped: cam.example cannot be reached (Connection refused).", stop);
        row("no answer", outcome(Kind::NoAnswer), false, true, "cam.example does not answer.",
            "Try Again");
        row("no answer, stopped", outcome(Kind::NoAnswer), true, true,
            "Refreshing has stopped: cam.example does not answer.", stop);
        row("bad address", outcome(Kind::BadAddress, "The address names no host."), true, true,
            "The address names no host.", "Edit Camera...");
        row("bad address that is not listed",
            outcome(Kind::BadAddress, "The address names no host."), false, false,
            "The address names no host.", "");
    }

    void fetches()
    {
        QFETCH(FetchOutcome, outcome);
        QFETCH(bool, isStalled);
        QFETCH(bool, isListed);
        const Notice::Message message = noticeOf(outcome, isStalled, isListed);
        QTEST(message.sentence, "sentence");
        QTEST(captions(message), "buttons");
        QVERIFY(message.icon == Notice::Icon::Warning || message.sentence.isEmpty());
    }

    void textsFromOutsideAreOneShortLine()
    {
        FetchOutcome moved = outcome(Kind::Moved);
        moved.address = "http://new.example/" + QString(500, 'x') + "end.jpg";
        QString sentence = noticeOf(moved, false, false).sentence;
        QCOMPARE(sentence.size(), QString("This camera has moved to .").size() + 80);
        QVERIFY(sentence.contains("http://new.example/xxx"));
        QVERIFY(sentence.endsWith("xend.jpg."));
        // No text fills the place of another.
        moved.address = "%1 %2 %3 %4";
        QCOMPARE(noticeOf(moved, false, false).sentence, "This camera has moved to %1 %2 %3 %4.");
    }

    void listsAndFiles_data()
    {
        const Rows<Notice::Message, QString, QString> row("message", "sentence", "buttons");
        row("removed", noticeOfRemoval("Clock"), "Removed \"Clock\".", "Undo");
        row("loaded again", noticeOfReload(12), "The list was loaded again: 12 cameras.", "Undo");
        row("loaded again, one", noticeOfReload(1), "The list was loaded again: 1 camera.", "Undo");
        row("added", noticeOfAddition(12, 3), "12 cameras added, 3 were in the list already.",
            "Show");
        row("one added", noticeOfAddition(1, 0), "1 camera added.", "Show");
        row("one there", noticeOfAddition(2, 1), "2 cameras added, 1 was in the list already.",
            "Show");
        row("none added", noticeOfAddition(0, 2), "0 cameras added, 2 were in the list already.",
            "");
        row("saved", noticeOfSave("/home/me/Clock 2026-11-21.jpg"),
            "Saved \"Clock 2026-11-21.jpg\".", "Open Folder");
        row("kept beside", noticeOfKeptList("/home/me/list.dat.bak"),
            "Another window changed the list, too: its list is kept as \"list.dat.bak\".",
            "Open Folder");
        row("not saved", noticeOfSave("/root/a.jpg", "Permission denied."),
            "\"a.jpg\" was not saved: Permission denied.", "");
        row("an offer failed", noticeOfFailedOffers({"Clock"}, "Connection refused."),
            "\"Clock\" could not be added to the internet database: Connection refused.",
            "Try Again");
        row("offers failed", noticeOfFailedOffers({"Clock", "Tower"}, "404 Not Found"),
            "2 cameras could not be added to the internet database: 404 Not Found.", "Try Again");
        row("an offer of an odd name failed", noticeOfFailedOffers({"%2\n<b>"}, "%1\x1b"),
            "\"%2 <b>\" could not be added to the internet database: %1 .", "Try Again");
    }

    void listsAndFiles()
    {
        QFETCH(Notice::Message, message);
        QTEST(message.sentence, "sentence");
        QTEST(captions(message), "buttons");
    }
};

QTEST_GUILESS_MAIN(NoticeTableTest)
#include "tst_NoticeTable.moc"
