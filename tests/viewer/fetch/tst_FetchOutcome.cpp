// What came of a fetch, as a person is told about it.

#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/TimeSeam.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/history/History.h"

#include <memory>

using Kind = FetchOutcome::Kind;
using Sent = FetchOutcome::Sent;

Q_DECLARE_METATYPE(FetchOutcome::Kind)
Q_DECLARE_METATYPE(FetchOutcome::Sent)

class FetchOutcomeTest : public QObject
{
    Q_OBJECT
private:
    /// Every body that begins with "picture" is one.
    Still accept(const QByteArray& body)
    {
        return body.startsWith("picture") ? Still::fromImage(plainImage({8, 8}, Qt::red)) : Still();
    }

    FetchOutcome outcomeOf(const QString& camera)
    {
        QSignalSpy told(fetch.get(), &Fetch::Outcome);
        fetch->Refresh(camera);
        if (!told.isEmpty() || waitForSignal(told))
            return told.last().first().value<FetchOutcome>();
        qFatal("no outcome");
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<ScriptedServer> server;
    std::unique_ptr<History> history;
    std::unique_ptr<Fetch> fetch;

private slots:
    void init()
    {
        folder = std::make_unique<QTemporaryDir>();
        server = std::make_unique<ScriptedServer>();
        server->listen();
        history = std::make_unique<History>();
        fetch = std::make_unique<Fetch>(
            folder->path(), *history, [this](const QByteArray& body) { return accept(body); },
            nullptr);
    }
    void cleanup() { fetch.reset(); }

    void answers_data()
    {
        const Rows<QByteArray, Kind, QString, QString> row("answer", "kind", "address", "text");
        row("a picture", pictureAnswer("picture"), Kind::NewPicture, "", "");
        row("not modified", httpAnswer({}, {}, "304 Not Modified"), Kind::NotModified, "",
            "304 Not Modified");
        const QByteArray there = "Location: https://new.example/b.jpg\r\n";
        const QString address = "https://new.example/b.jpg";
        row("301", httpAnswer({}, there, "301 Moved"), Kind::Moved, address, "301 Moved");
        row("308", httpAnswer({}, there, "308 Permanent"), Kind::Moved, address, "308 Permanent");
        row("303", httpAnswer({}, there, "303 See Other"), Kind::PointsElsewhere, address,
            "303 See Other");
        row("307", httpAnswer({}, there, "307 Temporary"), Kind::PointsElsewhere, address,
            "307 Temporary");
        row("301 without a location", httpAnswer({}, {}, "301 Moved"), Kind::Refused, "",
            "301 Moved");
        row("301 to what is no web address", httpAnswer({}, "Location: rtsp://x/\r\n", "301 Moved"),
            Kind::Refused, "", "301 Moved");
        row("302 without a location", httpAnswer({}, {}, "302 Found"), Kind::Refused, "",
            "302 Found");
        row("401", httpAnswer({}, {}, "401 Unauthorized"), Kind::SignInWanted, "",
            "401 Unauthorized");
        row("403", httpAnswer({}, {}, "403 Forbidden"), Kind::SignInWanted, "", "403 Forbidden");
        row("404", httpAnswer({}, {}, "404 Not Found"), Kind::Refused, "", "404 Not Found");
        row("503", httpAnswer({}, {}, "503 Service Unavailable"), Kind::Refused, "",
            "503 Service Unavailable");
        row("no picture", pictureAnswer("<html>"), Kind::NotAPicture, "", "");
        row("a picture cut short", pictureAnswer("picture").chopped(1), Kind::Incomplete, "", "");
        row("no picture, cut short", pictureAnswer("nothing").chopped(1), Kind::Incomplete, "", "");
        row("shorter than announced, without Content-Type",
            "HTTP/1.0 200 OK\r\nContent-Length: 90\r\n\r\npicture", Kind::Incomplete, "", "");
        row("whole, without Content-Type", "HTTP/1.0 200 OK\r\nContent-Length: 7\r\n\r\nnothing",
            Kind::NotAPicture, "", "");
        row("a length without a blank",
            "HTTP/1.0 200 OK\r\nContent-Type: image/jpeg\r\nContent-Length:7\r\n\r\npicture",
            Kind::NewPicture, "", "");
    }

    void answers()
    {
        QFETCH(QByteArray, answer);
        server->play(answer);
        const QString camera = server->url() + QChar(1) + "Cookie: a=1";
        const FetchOutcome outcome = outcomeOf(camera);
        QTEST(outcome.kind, "kind");
        QTEST(outcome.address, "address");
        QTEST(outcome.text, "text");
        QCOMPARE(outcome.camera, camera);
        QCOMPARE(outcome.host, "127.0.0.1");
    }

    void whatIsNoPicture_data()
    {
        const Rows<QByteArray, QByteArray, Sent> row("body", "type", "sent");
        row("a page", "<!DOCTYPE html><title>", "", Sent::WebPage);
        row("a page by its tag", "\r\n<HTML lang=en>", "image/jpeg", Sent::WebPage);
        row("a page by its type", "<p>Login", "text/html; charset=utf-8", Sent::WebPage);
        row("text", "No camera here.", "text/plain", Sent::Text);
        row("text without a type", "busy\n", "", Sent::Text);
        row("MP4",
            QByteArray("\0\0\0\x18"
                       "ftypmp42\0",
                       13),
            "", Sent::Video);
        row("AVI", QByteArray("RIFF\1\0\0\0AVI LIST", 16), "", Sent::Video);
        row("WebM", QByteArray("\x1A\x45\xDF\xA3\1\0", 6), "", Sent::Video);
        row("a stream of pictures", "--frame\r\nContent-Length: 4\r\n\r\nbusy",
            "multipart/x-mixed-replace", Sent::Video);
        row("a playlist", "#EXTM3U\n", "application/vnd.apple.mpegurl", Sent::Video);
        row("a video by its type", QByteArray("\0\1\2", 3), "video/mp2t", Sent::Video);
        row("nothing", "", "image/jpeg", Sent::Nothing);
        row("bytes", QByteArray("\0\1\2\3", 4), "image/avif", Sent::SomethingElse);
    }

    void whatIsNoPicture()
    {
        QFETCH(QByteArray, body);
        QFETCH(QByteArray, type);
        QTEST(whatWasSent(body, type), "sent");
        server->play(httpAnswer(body, "Content-Type: " + type + "\r\n"));
        const FetchOutcome outcome = outcomeOf(server->url());
        QCOMPARE(outcome.kind, Kind::NotAPicture);
        QTEST(outcome.sent, "sent");
    }

    void theSamePictureIsFine()
    {
        server->play(pictureAnswer("picture"));
        QVERIFY(outcomeOf(server->url()).isFine());
        const FetchOutcome second = outcomeOf({});
        QCOMPARE(second.kind, Kind::SamePicture);
        QVERIFY(second.isFine());
    }

    /// What the location reads as is fetched, as ever; where it really points to is told.
    void aLocationThatIsMisreadIsTold_data()
    {
        const Rows<QByteArray, QString> row("location", "path");
        row("relative", "Location: /images/now.jpg", "/images/now.jpg");
        row("no blank", "Location:http://127.0.0.1:PORT/b.jpg", "/b.jpg");
        row("without a scheme", "Location: //127.0.0.1:PORT/b.jpg", "/b.jpg");
    }

    void aLocationThatIsMisreadIsTold()
    {
        QFETCH(QByteArray, location);
        QFETCH(QString, path);
        const QByteArray port = QByteArray::number(server->port());
        server->play(httpAnswer({}, location.replace("PORT", port) + "\r\n", "302 Found"));
        server->play(httpAnswer({}, {}, "404 Not Found"));
        const FetchOutcome outcome = outcomeOf(server->url());
        QCOMPARE(outcome.kind, Kind::PointsElsewhere);
        QCOMPARE(outcome.address, "http://" + server->url(path));
        QCOMPARE(outcome.camera, server->url());
        QCOMPARE(outcome.host, "127.0.0.1");
        // The next fetch speaks for itself.
        server->play(httpAnswer({}, {}, "404 Not Found"));
        QCOMPARE(outcomeOf(server->url()).kind, Kind::Refused);
    }

    void aRedirectThatIsFollowedIsNotTold()
    {
        const QByteArray there = server->url("/b.jpg").toLatin1();
        server->play(httpAnswer({}, "Location: http://" + there + "\r\n", "302 Found"));
        server->play(httpAnswer({}, {}, "404 Not Found"));
        const FetchOutcome outcome = outcomeOf(server->url());
        QCOMPARE(outcome.kind, Kind::Refused);
        QCOMPARE(outcome.camera, server->url());
    }

    void redirectsInACircleEnd()
    {
        const QByteArray there = server->url("/a.jpg").toLatin1();
        server->play(httpAnswer({}, "Location: http://" + there + "\r\n", "302 Found"));
        QSignalSpy errors(fetch.get(), &Fetch::Error);
        QSignalSpy status(fetch.get(), &Fetch::StatusText);
        // Each refresh counts anew.
        for (int asked = 20; asked <= 40; asked += 20) {
            const FetchOutcome outcome = outcomeOf(server->url());
            QCOMPARE(outcome.kind, Kind::Circle);
            QCOMPARE(outcome.camera, server->url());
            QCOMPARE(server->requests().size(), asked);
            QCOMPARE(errors.last().first().toString(), "File not found");
            QCOMPARE(status.last().first().toString(), "  Error: File not found.");
            QVERIFY(!fetch->Busy());
        }
        fetch->follow("http://" + server->url("/there.jpg"));
        QTRY_COMPARE(server->requests().size(), 60);
        QTRY_VERIFY(!fetch->Busy());
        QCOMPARE(server->requests().size(), 60);
    }

    void aLongWayIsNoCircle()
    {
        for (int i = 1; i < 20; ++i) {
            const QByteArray next = server->url('/' + QString::number(i)).toLatin1();
            server->play(httpAnswer({}, "Location: http://" + next + "\r\n", "302 Found"));
        }
        server->play(pictureAnswer("picture"));
        QCOMPARE(outcomeOf(server->url()).kind, Kind::NewPicture);
        QVERIFY(server->requests().last().startsWith("GET /19 "));
    }

    void followFetchesTheTargetThisOnce()
    {
        server->play(httpAnswer({}, {}, "404 Not Found"));
        server->play(pictureAnswer("picture"));
        server->play(pictureAnswer("picture two"));
        outcomeOf(server->url());
        QSignalSpy told(fetch.get(), &Fetch::Outcome);
        fetch->follow("http://" + server->url("/there.jpg"));
        QVERIFY(waitForSignal(told));
        QVERIFY(server->requests()[1].startsWith("GET /there.jpg "));
        QCOMPARE(fetch->Url(), server->url());
        outcomeOf({});
        QVERIFY(server->requests()[2].startsWith("GET /a.jpg "));
    }

    void aConnectionThatIsRefused()
    {
        const QString camera = server->url();
        server.reset();
        const FetchOutcome outcome = outcomeOf(camera);
        QCOMPARE(outcome.kind, Kind::Failed);
        QCOMPARE(outcome.text, "Connection refused");
    }

    void aServerThatClosesAtOnceSentNothing()
    {
        server->play(QByteArray());
        for (int i = 0; i < 2; ++i) {
            const FetchOutcome outcome = outcomeOf(server->url());
            QCOMPARE(outcome.kind, Kind::NotAPicture);
            QCOMPARE(outcome.sent, Sent::Nothing);
        }
    }

    void aPictureThatBreaksOffIsIncomplete()
    {
        server->play(pictureAnswer(QByteArray("picture").repeated(1000)).chopped(1),
                     Script::End::KeepOpen);
        QSignalSpy told(fetch.get(), &Fetch::Outcome);
        fetch->Refresh(server->url());
        QTRY_VERIFY(timerOf(*fetch, "tmrOut").Enabled());
        timerOf(*fetch, "tmrOut").elapse();
        QCOMPARE(told.last().first().value<FetchOutcome>().kind, Kind::Incomplete);
    }

    void aServerThatSaysNothingIsGivenUp()
    {
        server->play(Script{{}, Script::End::KeepOpen});
        QSignalSpy told(fetch.get(), &Fetch::Outcome);
        QSignalSpy errors(fetch.get(), &Fetch::Error);
        QSignalSpy ended(fetch.get(), &Fetch::Ended);
        Timer& patience = timerOf(*fetch, "tmrNoAnswer");
        QCOMPARE(patience.Interval(), 60'000);
        QVERIFY(!patience.Enabled());
        fetch->Refresh(server->url());
        QTRY_COMPARE(server->requests().size(), 1);
        QVERIFY(patience.Enabled());
        patience.elapse();
        QCOMPARE(told.last().first().value<FetchOutcome>().kind, Kind::NoAnswer);
        QCOMPARE(errors.last().first().toString(), "The server does not answer.");
        QCOMPARE(ended.last().first().toBool(), false);
        QVERIFY(!patience.Enabled());
    }

    void aHeadWithoutEndIsGivenUp()
    {
        server->play(Script{{"HTTP/1.0 200 OK\r\nContent-Ty"}, Script::End::KeepOpen});
        QSignalSpy told(fetch.get(), &Fetch::Outcome);
        fetch->Refresh(server->url());
        Timer& header = timerOf(*fetch, "tmrHeader");
        QTRY_VERIFY(header.Enabled());
        header.elapse();
        QTRY_VERIFY(timerOf(*fetch, "tmrOut").Enabled());
        timerOf(*fetch, "tmrOut").elapse();
        QCOMPARE(told.last().first().value<FetchOutcome>().kind, Kind::NotAPicture);
        QTRY_COMPARE(server->openConnections(), 0);
    }

    void theFirstByteEndsThePatience()
    {
        server->play(pictureAnswer(QByteArray("picture").repeated(1000)).chopped(1),
                     Script::End::KeepOpen);
        fetch->Refresh(server->url());
        QTRY_VERIFY(timerOf(*fetch, "tmrOut").Enabled());
        QVERIFY(!timerOf(*fetch, "tmrNoAnswer").Enabled());
        fetch->Stop();
    }

    void aStopHasNoOutcome()
    {
        server->play(Script{{}, Script::End::KeepOpen});
        QSignalSpy told(fetch.get(), &Fetch::Outcome);
        QSignalSpy stopped(fetch.get(), &Fetch::Stopped);
        fetch->Refresh(server->url());
        QTRY_COMPARE(server->requests().size(), 1);
        fetch->Stop();
        QCOMPARE(stopped.count(), 1);
        QCOMPARE(told.count(), 0);
        QVERIFY(!timerOf(*fetch, "tmrNoAnswer").Enabled());
    }

    void anAddressThatCannotBeFetched()
    {
        const FetchOutcome outcome = outcomeOf("cam.example:port/a.jpg");
        QCOMPARE(outcome.kind, Kind::BadAddress);
        QCOMPARE(outcome.text, "The port must be a number from 1 to 65535.");
    }
};

QTEST_GUILESS_MAIN(FetchOutcomeTest)
#include "tst_FetchOutcome.moc"
