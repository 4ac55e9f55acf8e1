// One text document by HTTP/1.0, against a server that plays scripts.

#include "network/HTTP.h"
#include "support/Cost.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/TimeSeam.h"

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int LongMs = 600'000;

/// A client whose every host is the scripted server, and all that it tells.
struct Client
{
    Client()
    {
        server.listen();
        http = std::make_unique<HTTP>(nullptr, server.port());
        timer().setInterval(LongMs); // else it would end in time what nothing else has ended
        QObject::connect(http.get(), &HTTP::Status, [this](const QString& text) { told << text; });
        QObject::connect(http.get(), &HTTP::Failed, [this] { told << "failed"; });
        QObject::connect(http.get(), &HTTP::Finished, [this](const QByteArray& data) {
            told << "finished";
            answer = data;
        });
    }

    /// Asks for a page and waits for the first chunk of the answer, which does not end by itself.
    void begin(const QByteArray& page)
    {
        server.play(page, Script::End::KeepOpen);
        http->Retrieve("127.0.0.1");
        QTRY_COMPARE(chunks(), 1);
    }

    Timer& timer() const { return timerOf(*http, "Timer1"); }
    int finished() const { return static_cast<int>(told.count("finished")); }
    int chunks() const { return static_cast<int>(told.count("Receiving Data")); }

    ScriptedServer server;
    std::unique_ptr<HTTP> http;
    QStringList told;
    QByteArray answer;
};

const QByteArray Start = "HTTP/1.0 200 OK\r\n\r\n";

QByteArray requestFor(const QByteArray& path, const QByteArray& host = "127.0.0.1")
{
    return "GET " + path +
           " HTTP/1.0\r\n"
           "Referer: HTTP ActiveX Control\r\n"
           "Connection: Keep-Alive\r\n"
           "User-Agent: Default\r\n"
           "Host: " +
           host +
           "\r\n"
           "Accept: */*\r\n"
           "Accept-Language: en\r\n"
           "\r\n";
}

} // namespace

class HTTPTest : public QObject
{
    Q_OBJECT
private slots:
    void isMadeForPort80()
    {
        const HTTP http;
        const auto* socket = http.findChild<TcpClient*>("sckMain");
        QVERIFY(socket);
        QCOMPARE(socket->RemotePort(), 80);
        const auto* timer = http.findChild<Timer*>("Timer1");
        QVERIFY(timer);
        QCOMPARE(timer->Interval(), 3000);
        QVERIFY(!timer->Enabled());
    }

    void theRequestIsSentByteForByte_data()
    {
        const Rows<QString, QByteArray> row("url", "path");
        row("a page", "http://127.0.0.1/pevora/index.cgi?cat=Cities",
            "/pevora/index.cgi?cat=Cities");
        row("no scheme", "127.0.0.1/a/b", "/a/b");
        row("nothing after the host", "http://127.0.0.1", "/");
        row("nothing after the host, no scheme", "127.0.0.1", "/");
        row("a slash after the host", "http://127.0.0.1/", "/");
        row("a second scheme", "http://127.0.0.1/?u=http://b/c", "/?u=http://b/c");
        row("nothing is escaped", "http://127.0.0.1/?q=two words+%26&=#?\x01\t",
            "/?q=two words+%26&=#?\x01\t");
        row("text of the code page", u"http://127.0.0.1/?q=Zürich"_s, "/?q=Z\xFCrich");
        row("other text", u"http://127.0.0.1/?q=東京 ü"_s, "/?q=\xE6\x9D\xB1\xE4\xBA\xAC \xC3\xBC");
        row("text that would read as UTF-8", u"http://127.0.0.1/?q=Ã¼"_s, "/?q=\xC3\x83\xC2\xBC");
        // A name of the code page beside others: neither decides on the other's bytes.
        row("each field is a text of its own", u"http://127.0.0.1/ü?n=ü&a=東京\u0001Ã¼&c=Ã¼+%26"_s,
            "/\xFC?n=\xFC&a=\xE6\x9D\xB1\xE4\xBA\xAC\x01\xC3\x83\xC2\xBC&c=\xC3\x83\xC2\xBC+"
            "%26");
        row("fields without text", u"http://127.0.0.1/?=&&ü=?"_s, "/?=&&\xFC=?");
        row("a line break in the path", "http://127.0.0.1/a\r\nX: y", "/a");
        row("half a line break in the path", "http://127.0.0.1/a\nX: y", "/a");
        row("a return in the path", "http://127.0.0.1/a\rX: y", "/a");
        row("a line break in the host", "http://127.0.0.1\r\nX: y/a", "/a");
        row("a line break and no path", "127.0.0.1\nX: y", "/");
    }

    void theRequestIsSentByteForByte()
    {
        QFETCH(QString, url);
        QFETCH(QByteArray, path);
        Client c;
        c.server.play(Start);
        c.http->Retrieve(url);
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.server.requests(), QList<QByteArray>{requestFor(path)});
    }

    void asksAnIpv6AddressInBrackets()
    {
        ScriptedServer server;
        server.listen("::1");
        HTTP http(nullptr, server.port());
        http.Retrieve("http://[::1]/a");
        QTRY_COMPARE(server.requests(), QList<QByteArray>{requestFor("/a", "[::1]")});
    }

    void tellsWhatItDoesInOrder()
    {
        Client c;
        c.server.play(Start + "all");
        c.http->Retrieve("127.0.0.1");
        QCOMPARE(c.told, QStringList{"Connecting"});
        QTRY_COMPARE(c.told,
                     (QStringList{"Connecting", "Connected", "Receiving Data", "finished"}));
    }

    void theAnswerIsHandedOverAsItCame()
    {
        QByteArray answer = Start;
        for (int i = 0; i < 100'000; ++i)
            answer += static_cast<char>(i * 7);
        Client c;
        c.server.play(Script{{answer.left(5), answer.mid(5, 90'000), answer.mid(90'005)}});
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer, answer);
        QVERIFY(!c.timer().Enabled());
    }

    void aStatusIsNotLookedAt()
    {
        for (const QByteArray& answer : {QByteArray("HTTP/1.1 404 Not Found\r\n\r\nno"),
                                         "HTTP/1.0 302 Found\r\nLocation: "
                                         "http://127.0.0.1/b\r\nContent-Length: 1\r\n\r\nmoved" +
                                             QByteArray(10, 'x'),
                                         QByteArray("no header at all")}) {
            Client c;
            c.server.play(answer);
            c.http->Retrieve("127.0.0.1");
            QTRY_COMPARE(c.finished(), 1);
            QCOMPARE(c.answer, answer);
            QCOMPARE(c.server.connections(), 1);
        }
    }

    void anEndTagInTheLastOfSeveralChunksEndsTheAnswerAtOnce()
    {
        Client c;
        c.begin(Start + "<html>");
        c.server.sendMore("one");
        QTRY_COMPARE(c.chunks(), 2);
        QCOMPARE(c.finished(), 0);
        c.server.sendMore("two</HtMl> three");
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "<html>onetwo</HtMl> three");
        QCOMPARE(c.chunks(), 3);
        QVERIFY(!c.timer().Enabled());
        QTRY_COMPARE(c.server.openConnections(), 0);
        QCOMPARE(c.finished(), 1);
    }

    void anEndTagInTwoChunksIsNotSeen()
    {
        Client c;
        c.begin(Start + "a</ht");
        c.server.sendMore("ml>");
        QTRY_COMPARE(c.chunks(), 2);
        QCOMPARE(c.finished(), 0);
        QVERIFY(c.timer().Enabled());
        c.timer().elapse();
        QCOMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "a</html>");
    }

    void threeSecondsWithoutDataEndTheAnswer()
    {
        Client c;
        c.begin(Start + "part");
        QVERIFY(c.timer().Enabled());
        c.timer().elapse();
        QCOMPARE(c.told.last(), "finished");
        QCOMPARE(c.answer, Start + "part");
        QVERIFY(!c.timer().Enabled());
        QTRY_COMPARE(c.server.openConnections(), 0);
    }

    void eachChunkStartsTheThreeSecondsAnew()
    {
        Client c;
        c.begin(Start);
        // As the next chunk is told of, both timers start; a timer that then starts anew is second.
        QStringList ticks;
        QTimer other;
        other.setSingleShot(true);
        connect(&other, &QTimer::timeout, &other, [&] { ticks << "other"; });
        connect(&c.timer(), &Timer::Tick, &other, [&] { ticks << "end of data"; });
        connect(c.http.get(), &HTTP::Status, &other, [&] {
            c.timer().setInterval(1);
            other.start(1);
        });
        c.server.sendMore("more");
        QTRY_COMPARE(ticks.size(), 2);
        QCOMPARE(ticks, (QStringList{"other", "end of data"}));
        QCOMPARE(c.chunks(), 2);
    }

    void aServerThatSaysNothingIsNeverTimedOut()
    {
        Client c;
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.server.requests().size(), 1);
        QVERIFY(!c.timer().Enabled());
        QCOMPARE(c.told, (QStringList{"Connecting", "Connected"}));
    }

    void stopDropsTheFetchWithoutAWord()
    {
        Client c;
        c.http->Stop(); // there is none
        c.begin(Start + "part");
        const QStringList before = c.told;
        c.server.sendMore("more");
        c.http->Stop();
        QVERIFY(!c.timer().Enabled());
        QTRY_COMPARE(c.server.openConnections(), 0);
        QCOMPARE(c.told, before);
        c.server.play(Start + "next");
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "next");
    }

    void itTellsOfTheConnectionAndOfEachChunk()
    {
        Client c;
        QSignalSpy connected(c.http.get(), &HTTP::Connected);
        QSignalSpy arrivals(c.http.get(), &HTTP::DataArrival);
        c.begin(Start);
        QCOMPARE(connected.count(), 1);
        QCOMPARE(arrivals.count(), 1);
        c.server.sendMore("more");
        QTRY_COMPARE(arrivals.count(), 2);
        QCOMPARE(connected.count(), 1);
    }

    void aServerThatClosesWithoutAWordGivesAnEmptyAnswer()
    {
        Client c;
        c.server.play(Script{{}, Script::End::Close});
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.told, (QStringList{"Connecting", "Connected", "finished"}));
        QCOMPARE(c.answer, QByteArray());
    }

    void whatComesAfterTheTimerIsNotHeard()
    {
        Client c;
        c.begin(Start);
        // Bytes and the close are on their way while the timer runs out.
        c.server.sendMore("late");
        c.server.closeNewest();
        c.timer().elapse();
        QTRY_COMPARE(c.server.openConnections(), 0);
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.server.requests().size(), 2);
        QCOMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start);
    }

    void aRefusedConnectionIsOnlyAnError()
    {
        HTTP http(nullptr, portOfNobody());
        QSignalSpy status(&http, &HTTP::Status);
        QSignalSpy finished(&http, &HTTP::Finished);
        QSignalSpy failed(&http, &HTTP::Failed);
        http.Retrieve("http://127.0.0.1/");
        QTRY_COMPARE(failed.size(), 1);
        QCOMPARE(status.size(), 2);
        QCOMPARE(status[0][0], "Connecting");
        QCOMPARE(status[1][0], "Error: Connection refused");
        QCOMPARE(failed[0][0], "Connection refused");
        QCOMPARE(finished.size(), 0);
        QVERIFY(!timerOf(http, "Timer1").Enabled());
    }

    void addressesThatNameNoHost_data()
    {
        const Rows<QString> row("url");
        row("a scheme in capitals is the host", "HTTP://127.0.0.1/a");
        row("a capital letter is enough", "Http://127.0.0.1");
        row("there is no port in a url", "http://127.0.0.1:80/a");
        row("another scheme", "https://127.0.0.1/");
        row("a scheme alone", "http://");
        row("no host", "http:///a");
        row("a path alone", "/a");
        row("a blank", " ");
        row("a line break", "\n/a");
    }

    void addressesThatNameNoHost()
    {
        QFETCH(QString, url);
        Client c;
        c.http->Retrieve(url);
        QTRY_COMPARE(c.told.size(), 3);
        QCOMPARE(c.told, (QStringList{"Connecting", "Error: Host not found", "failed"}));
        QCOMPARE(c.server.connections(), 0);
    }

    void anEmptyUrlDoesNothing()
    {
        Client c;
        c.http->Retrieve("");
        QCOMPARE(c.told, QStringList());
        c.begin(Start + "one ");
        c.http->Retrieve({});
        c.server.sendMore("two");
        c.server.closeNewest();
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "one two");
    }

    void anotherRetrieveStartsOver()
    {
        Client c;
        c.server.play(Start + "first", Script::End::KeepOpen);
        c.server.play(Start + "second", Script::End::KeepOpen);
        c.http->Retrieve("127.0.0.1/1");
        QTRY_COMPARE(c.chunks(), 1);
        c.http->Retrieve("127.0.0.1/2");
        QVERIFY(!c.timer().Enabled());
        QTRY_COMPARE(c.chunks(), 2);
        c.timer().elapse();
        QCOMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "second");
        QTRY_COMPARE(c.server.openConnections(), 0);
        QCOMPARE(c.server.connections(), 2);
        QCOMPARE(c.finished(), 1);
    }

    void anErrorAmidstAnAnswerDropsIt()
    {
        Client c;
        c.begin(Start + "part");
        emit c.http->findChild<TcpClient*>("sckMain")->Error(7, "Network unreachable");
        QCOMPARE(c.told.mid(c.told.size() - 2),
                 (QStringList{"Error: Network unreachable", "failed"}));
        QVERIFY(!c.timer().Enabled());
        QTRY_COMPARE(c.server.openConnections(), 0);
        QCOMPARE(c.finished(), 0);
    }

    void anAnswerThatIsResetIsAnError_data()
    {
        const Rows<QList<QByteArray>> row("pieces");
        row("before its first byte", {});
        row("in its header", {"HTTP/1.0 200"});
        row("with all of its pieces", {Start, "part"});
    }

    void anAnswerThatIsResetIsAnError()
    {
        QFETCH(QList<QByteArray>, pieces);
        Client c;
        c.server.play(Script{pieces, Script::End::Reset});
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.told.last(), "failed");
        QCOMPARE(c.told[c.told.size() - 2], "Error: The connection was reset");
        QCOMPARE(c.finished(), 0);
        QVERIFY(!c.timer().Enabled());
        c.server.play(Start + "next");
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "next");
    }

    void theNextFetchMayBeginAsSoonAsOneHasFinished()
    {
        Client c;
        c.server.play(Start + "first");
        c.server.play(Start + "second");
        QObject::connect(c.http.get(), &HTTP::Finished, c.http.get(), [&] {
            if (c.finished() == 1)
                c.http->Retrieve("127.0.0.1/2");
        });
        c.http->Retrieve("127.0.0.1/1");
        QTRY_COMPARE(c.finished(), 2);
        QCOMPARE(c.answer, Start + "second");
    }

    void aFetchBegunWhileDataArrivesIsTheOnlyOne()
    {
        Client c;
        c.server.play(Start + "first</html>", Script::End::KeepOpen);
        c.server.play(Script{{}, Script::End::KeepOpen});
        QObject::connect(c.http.get(), &HTTP::Status, c.http.get(), [&](const QString& text) {
            if (text == "Receiving Data" && c.chunks() == 1)
                c.http->Retrieve("127.0.0.1/2");
        });
        c.http->Retrieve("127.0.0.1/1");
        QTRY_COMPARE(c.server.requests().size(), 2);
        QVERIFY(!c.timer().Enabled());
        QCOMPARE(c.finished(), 0);
        c.server.sendMore(Start + "second");
        c.server.closeNewest();
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer, Start + "second");
    }

    void anEndlessAnswerIsCut()
    {
        Client c;
        const QByteArray piece(1'000'003, 'x'); // no part of the bound
        c.server.play(Script{QList<QByteArray>(100, piece), Script::End::KeepOpen});
        c.http->Retrieve("127.0.0.1");
        QTRY_COMPARE(c.finished(), 1);
        QCOMPARE(c.answer.size(), HTTP::MaxAnswerBytes);
        QVERIFY(!c.timer().Enabled());
        QTRY_COMPARE(c.server.openConnections(), 0);
    }

    void stripHtml_data()
    {
        const Rows<QString, QString> named("text", "plain");
        const auto row = [&](const char* text, const char* plain) { named(text, text, plain); };
        named("nothing", "", "");
        row("a<b>c</b>d", "acd");
        row("a<b", "a<b");
        row("plain", "plain");
        row("<>", "");
        row("<b>", "");
        row("a > b", "a > b");
        row("a > b < c", "a > b < c");
        row("a<b>c<d", "ac<d");
        row("<<b>>", ">");
        row("<a<b>c>", "c>");
        row("<a title='>'>x", "'>x");
        row("1<br>\r\n2&lt;b&gt;&amp;", "1\r\n2&lt;b&gt;&amp;");
        row("<!-- <b> -->x", " -->x");
    }

    void stripHtml()
    {
        QFETCH(QString, text);
        QTEST(HTTP::StripHTML(text), "plain");
    }

    void stripHtmlGoesThroughATextOnce_data()
    {
        const Rows<QString, QString, QString> row("before", "unit", "leaves");
        row("nothing but openings", "", "<", "<");
        row("many tags", "", "a<b>", "a");
        row("openings after a tag", "<b>", "<", "<");
    }

    void stripHtmlGoesThroughATextOnce()
    {
        QFETCH(QString, before);
        QFETCH(QString, unit);
        QFETCH(QString, leaves);
        const double times = growth(40'000, [&](int n) {
            QCOMPARE(HTTP::StripHTML(before + unit.repeated(n)), leaves.repeated(n));
        });
        QVERIFY2(times < MostGrowth, qPrintable(QString::number(times)));
    }
};

QTEST_GUILESS_MAIN(HTTPTest)
#include "tst_HTTP.moc"
