// The fetch against a scripted server on the loopback address, without a window.

#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/TimeSeam.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/history/History.h"

#include <functional>
#include <utility>

using namespace Qt::Literals::StringLiterals;

/// A fetch with an owner that records everything, in order.
class Fetching : public QObject
{
public:
    Fetching()
        : fetch(
              folder.path(), history,
              [this](const QByteArray& body) {
                  told << "accept";
                  bodies << body;
                  fileAtAccept = tempFile();
                  if (onAccept)
                      onAccept();
                  return body == "no picture" ? Still() : picture;
              },
              nullptr)
    {
        server.listen();
        connect(&fetch, &Fetch::Accepted, this, [this](const Still& accepted) {
            told << (accepted.isSameAs(picture) ? "accepted" : "accepted another one");
        });
        connect(&fetch, &Fetch::NotModified, this,
                [this](const QString& address) { told << "not modified: " + address; });
        connect(&fetch, &Fetch::Started, this, [this] { told << "started"; });
        connect(&fetch, &Fetch::StatusText, this, [this](const QString& text) { status << text; });
        connect(&fetch, &Fetch::HideStatus, this, [this] { told << "hide"; });
        connect(&fetch, &Fetch::UrlChanged, this, [this] { told << "url"; });
        connect(&fetch, &Fetch::Error, this,
                [this](const QString& text) { told << "error: " + text; });
        connect(&fetch, &Fetch::Done, this, [this] { told << "done"; });
        connect(&fetch, &Fetch::Ended, this, [this](bool gotBody) {
            told << (gotBody ? "ended with a body" : "ended without");
        });
    }

    QStringList tempFiles() const { return QDir(folder.path()).entryList(QDir::Files); }
    QByteArray tempFile() const
    {
        QFile file(folder.filePath(tempFiles().value(0)));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    Timer& timer(const char* name) { return timerOf(fetch, name); }
    bool ended() const { return !told.isEmpty() && told.last().startsWith("ended"); }
    /// Refreshes and waits for the end; the record holds this fetch alone.
    void run(const QString& url = {})
    {
        told.clear();
        status.clear();
        fetch.Refresh(url);
        QTRY_VERIFY(ended());
    }

    QTemporaryDir folder;
    ScriptedServer server;
    History history;
    /// Stands for what any body holds.
    const Still picture = Still::fromImage(plainImage({8, 8}, Qt::red));
    QStringList told;
    QStringList status;
    QList<QByteArray> bodies;
    QByteArray fileAtAccept;
    std::function<void()> onAccept;
    Fetch fetch;
};

class FetchTest : public QObject
{
    Q_OBJECT
private slots:
    void aNewImageIsAcceptedAndDone()
    {
        Fetching f;
        const QByteArray body(3000, 'b');
        f.server.play(pictureAnswer(body, "Last-Modified: Thu\r\n"), Script::End::KeepOpen);
        f.run(f.server.url());
        QCOMPARE(f.told,
                 (QStringList{"started", "accept", "accepted", "done", "ended with a body"}));
        QCOMPARE(f.bodies, QList<QByteArray>{body});
        QCOMPARE(f.status.mid(0, 2),
                 (QStringList{"  Connecting to 127.0.0.1:" + QString::number(f.server.port()),
                              "  Connected!"}));
        QVERIFY(f.status.contains("  Getting Image [100% of 3kb]"));
        QCOMPARE(f.fetch.address(), "127.0.0.1/a.jpg");
        QCOMPARE(f.fetch.LastModified(), "Thu");
        QCOMPARE(f.fileAtAccept, body);
        QVERIFY(!f.fetch.Busy());
        QVERIFY(!f.timer("tmrOut").Enabled());
        QTRY_COMPARE(f.server.openConnections(), 0);
    }

    void theRequestNamesHostWithoutPort()
    {
        Fetching f;
        f.server.play(pictureAnswer("abc"));
        f.run(f.server.url("/dir/a.jpg?x=1") + QChar(1) + "Cookie: a=1");
        QCOMPARE(f.server.requests(), QList<QByteArray>{"GET /dir/a.jpg?x=1 HTTP/1.0\r\n"
                                                        "Connection: Keep-Alive\r\n"
                                                        "User-Agent: Default\r\n"
                                                        "Host: 127.0.0.1\r\n"
                                                        "Accept: */*\r\n"
                                                        "Accept-Language: en\r\n"
                                                        "Cookie: a=1\r\n"
                                                        "\r\n"});
        // The extra header is no part of what is shown.
        QVERIFY(!f.status.join(' ').contains("Cookie"));
    }

    void anEmptyArgumentFetchesTheStoredUrlAgain()
    {
        Fetching f;
        f.server.play(pictureAnswer("one"));
        f.server.play(pictureAnswer("two"));
        f.fetch.setUrl(f.server.url());
        QCOMPARE(f.server.connections(), 0);
        f.run();
        f.run();
        QCOMPARE(f.bodies, (QList<QByteArray>{"one", "two"}));
        QCOMPARE(f.fetch.Url(), f.server.url());
    }

    void theTemporaryFileIsNamedAfterThePath_data()
    {
        const Rows<QString, QString> row("path", "name");
        row("upper case", "/A.JPG", "tt.JPG");
        row("cgi", "/cam.cgi", "tt.jpg");
        row("gif", "/a.gif", "tt.gif");
    }

    void theTemporaryFileIsNamedAfterThePath()
    {
        QFETCH(QString, path);
        QFETCH(QString, name);
        Fetching f;
        f.server.play(pictureAnswer("a long old body"));
        f.server.play(pictureAnswer("new"));
        f.run(f.server.url(path));
        QCOMPARE(f.tempFiles(), QStringList{name});
        f.run();
        QCOMPARE(f.tempFiles(), QStringList{name});
        QCOMPARE(f.tempFile(), "new");
    }

    void anAnswerWithoutContentTypeIsStoredWithItsHeader()
    {
        Fetching f;
        const QByteArray answer = httpAnswer("body", "Content-Length: 4\r\n");
        f.server.play(answer);
        f.run(f.server.url());
        QCOMPARE(f.tempFile(), answer);
        // The picture lies behind it.
        QCOMPARE(f.bodies, QList<QByteArray>{"body"});
    }

    void asksForNewImagesOnly()
    {
        Fetching f;
        f.history.Append(f.picture, "127.0.0.1/a.jpg", "Wed, 31 Dec 1997 00:00:00 GMT");
        f.history.Append(f.picture, "127.0.0.1/a.jpg", "Thu, 01 Jan 1998 00:00:00 GMT");
        f.history.Append(f.picture, "127.0.0.1/b.jpg", "Fri, 02 Jan 1998 00:00:00 GMT");
        f.server.play(pictureAnswer("one"));
        f.run(f.server.url());
        QVERIFY(f.server.requests().last().startsWith(
            "GET /a.jpg HTTP/1.0\r\nif-Modified-Since: Thu, 01 Jan 1998 00:00:00 GMT\r\n"));
    }

    void withNewOnlyOffEveryBodyIsNew()
    {
        Fetching f;
        f.history.Append(f.picture, "127.0.0.1/a.jpg", "Thu");
        f.fetch.setNewOnly(false);
        f.server.play(pictureAnswer("same"));
        f.run(f.server.url());
        f.run();
        QCOMPARE(f.bodies, (QList<QByteArray>{"same", "same"}));
        QVERIFY(!f.server.requests().join().toLower().contains("if-modified-since"));
    }

    void theSameBytesAreNotNew()
    {
        Fetching f;
        f.server.play(pictureAnswer("same", "Last-Modified: Mon\r\n"));
        f.server.play(pictureAnswer("same", "Last-Modified: Tue\r\n"));
        f.run(f.server.url());
        f.run();
        QCOMPARE(f.told, (QStringList{"started", "done", "ended with a body"}));
        QCOMPARE(f.status.last(), "  Not a New Image: Process Stopped.");
        QCOMPARE(f.bodies.size(), 1);
        QVERIFY(!f.fetch.Busy());
        QVERIFY(f.timer("tmrFalse").Enabled());
    }

    void theSameBytesOfAnotherCameraAreNew()
    {
        Fetching f;
        f.server.play(pictureAnswer("same"));
        f.run(f.server.url("/a.jpg"));
        f.run(f.server.url("/b.jpg"));
        QCOMPARE(f.bodies.size(), 2);
    }

    void camerasThatDifferInTheirPortAreTwo()
    {
        Fetching f;
        ScriptedServer other;
        other.listen();
        for (ScriptedServer* one : {&f.server, &other}) {
            one->play(pictureAnswer("same", "Last-Modified: Mon\r\n"));
            one->play(httpAnswer({}, {}, "304 Not Modified"));
        }
        f.onAccept = [&f] {
            f.history.Append(f.picture, f.fetch.address(), f.fetch.LastModified(),
                             f.fetch.camera());
        };
        f.run(f.server.url());
        f.run(other.url());
        QCOMPARE(f.bodies.size(), 2);
        QVERIFY(!other.requests()[0].contains("if-Modified-Since"));
        f.run(other.url());
        QVERIFY(other.requests()[1].contains("if-Modified-Since: Mon\r\n"));
    }

    void aBodyThatIsCutLeavesNoDate()
    {
        Fetching f;
        QStringList dates;
        f.onAccept = [&] { dates << f.fetch.LastModified(); };
        f.server.play(pictureAnswer("whole", "Last-Modified: Mon\r\n").chopped(1));
        f.server.play(pictureAnswer("whole", "Last-Modified: Tue\r\n"));
        f.run(f.server.url());
        f.run();
        QCOMPARE(dates, (QStringList{"", "Tue"}));
    }

    void refusedAnswers_data()
    {
        const Rows<QByteArray, QString, QString> row("status", "error", "text");
        row("304", "304 Not Modified", "Not a new image", "  Not a new image: Process stopped.");
        row("404", "404 Not Found", "File not found", "  Error: File not found.");
        row("302 without location", "302 Found", "File not found", "  Error: File not found.");
    }

    void refusedAnswers()
    {
        QFETCH(QByteArray, status);
        QFETCH(QString, error);
        QFETCH(QString, text);
        Fetching f;
        f.server.play(httpAnswer("<html>", "Content-Type: text/html\r\n", status),
                      Script::End::KeepOpen);
        f.run(f.server.url());
        QStringList expected{"started", "error: " + error, "ended without"};
        if (status.startsWith("304"))
            expected.insert(1, "not modified: 127.0.0.1/a.jpg");
        QCOMPARE(f.told, expected);
        QCOMPARE(f.status.last(), text);
        QVERIFY(!f.fetch.Busy());
        QVERIFY(f.timer("tmrFalse").Enabled());
        QVERIFY(!f.timer("tmrOut").Enabled());
        QTRY_COMPARE(f.server.openConnections(), 0);
    }

    void aCameraIsFetchedAgainAsLongAsUrlStandsForIt()
    {
        Fetching f;
        for (const char* body : {"one", "two", "three"})
            f.server.play(pictureAnswer(body));
        const QString camera = f.server.url() + QChar(1) + "Cookie: a=1";
        f.fetch.setUrl("127.0.0.1/a.jpg", camera);
        f.run();
        QCOMPARE(f.bodies, QList<QByteArray>{"one"});
        QCOMPARE(f.fetch.Url(), "127.0.0.1/a.jpg");
        QCOMPARE(f.fetch.camera(), camera);
        QVERIFY(f.server.requests()[0].contains("\r\nCookie: a=1\r\n"));
        f.run();
        QCOMPARE(f.bodies.last(), "two");

        // Another address, be it the same text, stands for itself.
        f.fetch.setUrl(f.server.url());
        f.run();
        QCOMPARE(f.bodies.last(), "three");
        QCOMPARE(f.fetch.camera(), f.server.url());
        QVERIFY(!f.server.requests()[2].contains("Cookie"));

        f.fetch.setUrl("127.0.0.1/a.jpg", camera);
        f.run(f.server.url("/b.jpg"));
        QCOMPARE(f.fetch.camera(), f.server.url("/b.jpg"));
    }

    void aRedirectsTargetDoesNotReplaceTheCamera()
    {
        Fetching f;
        const QByteArray location = "Location: http://" + f.server.url("/new").toLatin1() + "\r\n";
        f.server.play(httpAnswer({}, location, "302 Found"));
        f.server.play(pictureAnswer("body"));
        f.server.play(pictureAnswer("another body"));
        const QString camera = f.server.url() + QChar(1) + "Cookie: a=1";
        f.fetch.setUrl("127.0.0.1/a.jpg", camera);
        f.run();
        QCOMPARE(f.fetch.Url(), f.server.url("/new"));
        QCOMPARE(f.fetch.camera(), camera);
        // The next refresh asks the camera itself again.
        f.run();
        QVERIFY(f.server.requests()[2].startsWith("GET /a.jpg HTTP/1.0\r\n"));
        QVERIFY(f.server.requests()[2].contains("\r\nCookie: a=1\r\n"));
    }

    void aForgottenImageIsNewAgain()
    {
        Fetching f;
        f.server.play(pictureAnswer("same", "Last-Modified: Mon\r\n"));
        f.run(f.server.url());
        QCOMPARE(f.fetch.LastModified(), "Mon");
        f.fetch.forget();
        QCOMPARE(f.fetch.LastModified(), "");
        f.run();
        QCOMPARE(f.bodies.size(), 2);
    }

    void aRedirectIsFollowed()
    {
        Fetching f;
        const QByteArray location =
            "Location: http://" + f.server.url("/new.gif").toLatin1() + "\r\n";
        f.server.play(httpAnswer({}, location, "302 Found"), Script::End::KeepOpen);
        f.server.play(pictureAnswer("body"));
        f.run(f.server.url() + QChar(1) + "Cookie: a=1");
        QCOMPARE(f.told, (QStringList{"started", "url", "started", "accept", "accepted", "done",
                                      "ended with a body"}));
        QCOMPARE(f.fetch.Url(), f.server.url("/new.gif"));
        QVERIFY(f.server.requests()[0].contains("Cookie"));
        QVERIFY(f.server.requests()[1].startsWith("GET /new.gif HTTP/1.0\r\n"));
        QVERIFY(!f.server.requests()[1].contains("Cookie"));
        QCOMPARE(f.tempFiles(), (QStringList{"tt.gif", "tt.jpg"}));
    }

    void anOddLocationIsFetchedAsItReads_data()
    {
        QTest::addColumn<QByteArray>("before");
        // Whatever stands in the place of "http://" is cut.
        QTest::newRow("relative") << QByteArray("Location: /seven/");
        QTest::newRow("no blank") << QByteArray("Location:http://x");
        QTest::newRow("another scheme") << QByteArray("Location: gopher:");
    }

    void anOddLocationIsFetchedAsItReads()
    {
        QFETCH(QByteArray, before);
        Fetching f;
        f.server.play(
            httpAnswer({}, before + f.server.url("/new.gif").toLatin1() + "\r\n", "302 Found"));
        f.server.play(pictureAnswer("body"));
        f.run(f.server.url());
        QCOMPARE(f.server.requests().size(), 2);
        QVERIFY(f.server.requests()[1].startsWith("GET /new.gif HTTP/1.0\r\n"));
        QCOMPARE(f.fetch.Url(), f.server.url("/new.gif"));
        QCOMPARE(f.bodies, QList<QByteArray>{"body"});
    }

    void aRelativeLocationMayNameNoHost()
    {
        Fetching f;
        f.server.play(httpAnswer({}, "Location: /images/current.jpg\r\n", "302 Found"));
        f.run(f.server.url());
        QCOMPARE(f.told, (QStringList{"started", "url", "started", "ended without"}));
        QCOMPARE(f.fetch.Url(), "/current.jpg");
        QCOMPARE(f.status.last(), "  The address names no host.");
    }

    void aLocationThatIsTooShortLeadsToTheSameCamera()
    {
        Fetching f;
        f.server.play(httpAnswer({}, "Location: /a\r\n", "302 Found"));
        f.server.play(pictureAnswer("body"));
        const QString camera = f.server.url() + QChar(1) + "Cookie: a=1";
        f.run(camera);
        QCOMPARE(f.server.requests().size(), 2);
        QVERIFY(f.server.requests()[1].contains("\r\nCookie: a=1\r\n"));
        QCOMPARE(f.fetch.Url(), camera);
    }

    void stopGetsInBetweenTwoRedirects()
    {
        Fetching f;
        const QByteArray location = "Location: http://" + f.server.url().toLatin1() + "\r\n";
        f.server.play(httpAnswer({}, location, "302 Found"));
        int redirects = 0;
        QObject::connect(&f.fetch, &Fetch::UrlChanged, &f, [&] {
            if (++redirects == 5)
                f.fetch.Stop();
        });
        f.fetch.Refresh(f.server.url());
        QTRY_COMPARE(f.told.value(f.told.size() - 1), u"done"_s);
        QCOMPARE(f.status.last(), "  Stopped");
        // Nothing goes on by itself: a later fetch finds the connection count as it was left.
        const int connections = f.server.connections();
        QTRY_COMPARE(f.server.openConnections(), 0);
        QCOMPARE(redirects, 5);
        QCOMPARE(connections, f.server.connections());
        QVERIFY(!f.fetch.Busy());
    }

    void aStopAskedForByAnEventBeatsTheRedirect()
    {
        Fetching f;
        const QByteArray location = "Location: http://" + f.server.url().toLatin1() + "\r\n";
        f.server.play(httpAnswer({}, location, "302 Found"));
        // A click that waits in the event loop when the redirect comes.
        QObject::connect(&f.fetch, &Fetch::UrlChanged, &f, [&] {
            QMetaObject::invokeMethod(
                &f, [&] { f.fetch.Stop(); }, Qt::QueuedConnection);
        });
        f.fetch.Refresh(f.server.url());
        QTRY_COMPARE(f.status.value(f.status.size() - 1), u"  Stopped"_s);
        QTRY_COMPARE(f.server.openConnections(), 0);
        QCOMPARE(f.told, (QStringList{"started", "url", "done"}));
    }

    void everyChunkRestartsTheSilence()
    {
        Fetching f;
        f.server.play(httpAnswer("body", "Content-Type: image/jpeg\r\n"), Script::End::KeepOpen);
        Timer& tmrOut = f.timer("tmrOut");
        // The system rounds a timer's end by a twentieth of its interval.
        tmrOut.setInterval(1'000);
        f.fetch.Refresh(f.server.url());
        QTRY_VERIFY(tmrOut.Enabled());
        QTRY_VERIFY(tmrOut.remainingMs() < 800);
        f.server.sendMore("more");
        QTRY_VERIFY(tmrOut.remainingMs() > 850);
    }

    void aNewRefreshEndsTheSilence()
    {
        Fetching f;
        f.server.play(httpAnswer("body", "Content-Type: image/jpeg\r\n"), Script::End::KeepOpen);
        f.fetch.Refresh(f.server.url());
        QTRY_VERIFY(f.timer("tmrOut").Enabled());
        f.fetch.Refresh();
        QVERIFY(!f.timer("tmrOut").Enabled());
    }

    void aSocketErrorEndsTheSilence()
    {
        Fetching f;
        f.server.play(httpAnswer("body", "Content-Type: image/jpeg\r\n"), Script::End::KeepOpen);
        f.fetch.Refresh(f.server.url());
        QTRY_VERIFY(f.timer("tmrOut").Enabled());
        // What a network that breaks away would report.
        emit f.fetch.findChild<TcpClient*>("sckMain")->Error(7, "Network dropped");
        QVERIFY(!f.timer("tmrOut").Enabled());
        QCOMPARE(f.status.last(), "  Network dropped");
        QTRY_COMPARE(f.server.openConnections(), 0);
    }

    void aHandlerMayStartTheNextFetch_data()
    {
        const Rows<QByteArray, bool> row("answer", "onError");
        row("refused", httpAnswer({}, {}, "404 Not Found"), true);
        row("no picture", pictureAnswer("no picture"), true);
        row("new image", pictureAnswer("picture"), false);
        row("not a new image", pictureAnswer("seen before"), false);
        row("stopped", {}, false);
    }

    void aHandlerMayStartTheNextFetch()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, onError);
        Fetching f;
        f.server.play(pictureAnswer("seen before"));
        f.run(f.server.url());
        f.server.play(
            Script{{answer}, answer.isEmpty() ? Script::End::KeepOpen : Script::End::Close});
        f.server.play(Script{{}, Script::End::KeepOpen});
        bool again = true;
        const auto refresh = [&] {
            if (std::exchange(again, false))
                f.fetch.Refresh();
        };
        if (onError)
            QObject::connect(&f.fetch, &Fetch::Error, &f, refresh);
        else
            QObject::connect(&f.fetch, &Fetch::Done, &f, refresh);
        f.told.clear();
        f.fetch.Refresh();
        if (answer.isEmpty()) {
            QTRY_COMPARE(f.server.requests().size(), 2);
            f.fetch.Stop();
        }
        // The fetch that the handler started lives: it is connected, busy, and waits for its
        // answer.
        QTRY_COMPARE(f.server.requests().size(), 3);
        QVERIFY(f.fetch.Busy());
        QCOMPARE(f.status.last(), "  Connected!");
        QVERIFY(!f.timer("tmrOut").Enabled());
        QCOMPARE(f.told.count("started"), 2);
        QVERIFY(!f.ended());
        QCOMPARE(f.server.openConnections(), 1);
    }

    void aHandlerOfTheAcceptedImageMayStartTheNextFetch()
    {
        Fetching f;
        f.server.play(pictureAnswer("one"));
        f.server.play(pictureAnswer("two"));
        f.onAccept = [&] {
            if (f.bodies.size() == 1)
                f.fetch.Refresh();
        };
        f.run(f.server.url());
        // The strip hears of both images, the end comes once.
        QCOMPARE(f.told, (QStringList{"started", "accept", "started", "accepted", "accept",
                                      "accepted", "done", "ended with a body"}));
    }

    void shutDownEndsARedirectThatWaits()
    {
        Fetching f;
        const QByteArray location = "Location: http://" + f.server.url().toLatin1() + "\r\n";
        f.server.play(httpAnswer({}, location, "302 Found"));
        QObject::connect(&f.fetch, &Fetch::UrlChanged, &f, [&] { f.fetch.shutDown(); });
        f.fetch.Refresh(f.server.url());
        QTRY_COMPARE(f.told.value(f.told.size() - 1), u"url"_s);
        QTRY_COMPARE(f.server.openConnections(), 0);
        QCOMPARE(f.told.count("started"), 1);
        QVERIFY(!f.fetch.Busy());
        for (const char* name : {"tmrOut", "tmrFalse"})
            QVERIFY(!f.timer(name).Enabled());
    }

    void anAnnouncedLengthCostsNoMemory()
    {
        Fetching f;
        f.server.play(httpAnswer("tiny", "Content-Type: a\r\nContent-Length: 4000000\r\n"));
        f.run(f.server.url());
        QCOMPARE(f.bodies.value(0), "tiny");
        QVERIFY(f.bodies.value(0).capacity() < 1000);
    }

    void withoutLengthTheCloseFinishes()
    {
        Fetching f;
        f.server.play(Script{{httpAnswer({}, "Content-Type: image/jpeg\r\n"), QByteArray(2000, 'a'),
                              QByteArray(600, 'b')}});
        f.run(f.server.url());
        QCOMPARE(f.bodies.value(0).size(), 2600);
        QVERIFY(f.status.contains("  Getting Image [ 3kb ]"));
        QCOMPARE(f.status.last(), "  Getting Image [100% of 3kb]");
    }

    void tenSecondsOfSilenceFinish()
    {
        Fetching f;
        f.server.play(httpAnswer("body", "Content-Type: image/jpeg\r\n"), Script::End::KeepOpen);
        Timer& tmrOut = f.timer("tmrOut");
        QCOMPARE(tmrOut.Interval(), 10'000);
        f.fetch.Refresh(f.server.url());
        QVERIFY(!tmrOut.Enabled());
        QTRY_VERIFY(tmrOut.Enabled());
        QVERIFY(f.bodies.isEmpty());
        tmrOut.elapse();
        QCOMPARE(f.bodies, QList<QByteArray>{"body"});
        QCOMPARE(f.told.last(), "ended with a body");
        QVERIFY(!tmrOut.Enabled());
    }

    void anImageThatIsWholeInTheFirstChunkWaitsForClose()
    {
        Fetching f;
        f.server.play(pictureAnswer("small"), Script::End::KeepOpen);
        f.fetch.Refresh(f.server.url());
        QTRY_VERIFY(f.status.contains("  Getting Image [100% of 0kb]"));
        QVERIFY(f.fetch.Busy());
        QVERIFY(f.bodies.isEmpty());
        f.server.closeNewest();
        QTRY_COMPARE(f.bodies, QList<QByteArray>{"small"});
    }

    void aConnectionKeptOpenIsFinishedByTheLastByte()
    {
        Fetching f;
        // The body fills one packet with its header, and one byte more.
        const QByteArray body(1460, 'b');
        f.server.play(pictureAnswer(body), Script::End::KeepOpen);
        f.run(f.server.url());
        QCOMPARE(f.bodies, QList<QByteArray>{body});
    }

    void aBodyThatIsNoPictureChangesNothing()
    {
        Fetching f;
        f.server.play(pictureAnswer("picture"));
        f.server.play(pictureAnswer("no picture"));
        f.server.play(pictureAnswer("picture"));
        f.run(f.server.url());
        f.run();
        QCOMPARE(f.told,
                 (QStringList{"started", "accept", "error: Not a picture", "ended with a body"}));
        QCOMPARE(f.status.last(), "  Error: Not a picture.");
        QVERIFY(!f.fetch.Busy());
        QVERIFY(f.timer("tmrFalse").Enabled());
        // The previous body stays the one that new ones are compared with.
        f.run();
        QCOMPARE(f.status.last(), "  Not a New Image: Process Stopped.");
    }

    void aSocketErrorLeavesBusy()
    {
        quint16 freePort = 0;
        {
            QTcpServer probe;
            QVERIFY(probe.listen(QHostAddress::LocalHost));
            freePort = probe.serverPort();
        }
        Fetching f;
        f.run("127.0.0.1:" + QString::number(freePort));
        QCOMPARE(f.told, (QStringList{"started", "error: Connection refused", "ended without"}));
        QCOMPARE(f.status.last(), "  Connection refused");
        QVERIFY(f.fetch.Busy());
        Timer& tmrFalse = f.timer("tmrFalse");
        QVERIFY(tmrFalse.Enabled());
        // So the error stays on the status line.
        tmrFalse.elapse();
        QVERIFY(!tmrFalse.Enabled());
        QVERIFY(!f.told.contains("hide"));
    }

    void anAddressThatCannotBeFetched_data()
    {
        const Rows<QString, QString> row("url", "text");
        const QString port = "  The port must be a number from 1 to 65535.";
        row("port word", "cam:http/", port);
        row("port 0", "cam:0/", port);
        row("port 65536", "cam:65536/", port);
        row("no port", "cam:/", port);
        row("no host", "/a.jpg", "  The address names no host.");
    }

    void anAddressThatCannotBeFetched()
    {
        QFETCH(QString, url);
        Fetching f;
        f.run(url);
        QCOMPARE(f.told, (QStringList{"started", "ended without"}));
        QTEST(f.status.last(), "text");
        QVERIFY(!f.fetch.Busy());
        QVERIFY(f.timer("tmrFalse").Enabled());
    }

    void aNewRefreshAbandonsTheOldFetch()
    {
        Fetching f;
        f.server.play(pictureAnswer(QByteArray(5000, 'a')).chopped(1), Script::End::KeepOpen);
        f.server.play(pictureAnswer("new"));
        f.fetch.Refresh(f.server.url());
        QTRY_VERIFY(f.timer("tmrOut").Enabled());
        f.run();
        QCOMPARE(f.bodies, QList<QByteArray>{"new"});
        QTRY_COMPARE(f.server.openConnections(), 0);
    }

    void stopEndsTheFetch()
    {
        Fetching f;
        f.server.play(pictureAnswer(QByteArray(5000, 'a')).chopped(1), Script::End::KeepOpen);
        f.fetch.Refresh(f.server.url());
        QTRY_VERIFY(f.timer("tmrOut").Enabled());
        f.fetch.Stop();
        QCOMPARE(f.told.last(), "done");
        QCOMPARE(f.status.last(), "  Stopped");
        QVERIFY(!f.fetch.Busy());
        QVERIFY(!f.timer("tmrOut").Enabled());
        QVERIFY(f.timer("tmrFalse").Enabled());
        QTRY_COMPARE(f.server.openConnections(), 0);
        QVERIFY(f.bodies.isEmpty());
    }

    void theStatusLineHidesAfterASecond()
    {
        Fetching f;
        f.server.play(pictureAnswer("one"));
        f.server.play(Script{{}, Script::End::KeepOpen});
        Timer& tmrFalse = f.timer("tmrFalse");
        QCOMPARE(tmrFalse.Interval(), 1'000);
        f.run(f.server.url());
        tmrFalse.elapse();
        QCOMPARE(f.told.last(), "hide");
        QVERIFY(!tmrFalse.Enabled());

        // A fetch that began within that second keeps the line.
        f.told.clear();
        tmrFalse.setEnabled(true);
        f.fetch.Refresh();
        tmrFalse.elapse();
        QVERIFY(!tmrFalse.Enabled());
        QVERIFY(!f.told.contains("hide"));
    }

    void anEmptyAnswerIsNotNew()
    {
        Fetching f;
        f.server.play(Script{{}, Script::End::Close});
        f.run(f.server.url());
        QCOMPARE(f.status.last(), "  Not a New Image: Process Stopped.");
        QVERIFY(f.bodies.isEmpty());
    }

    void aFolderThatCannotBeWrittenCostsOnlyTheFile()
    {
        Fetching f;
        // A folder of the temporary file's name cannot be deleted like a file.
        QVERIFY(QDir(f.folder.path()).mkpath("tt.jpg/inside"));
        f.server.play(pictureAnswer("body"));
        f.run(f.server.url());
        QCOMPARE(f.bodies, QList<QByteArray>{"body"});
        QVERIFY(QFileInfo(f.folder.filePath("tt.jpg")).isDir());
    }
};

QTEST_GUILESS_MAIN(FetchTest)
#include "tst_Fetch.moc"
