#include "support/Cost.h"
#include "support/Rows.h"
#include "viewer/fetch/FetchProtocol.h"

using Verdict = FetchAnswer::Verdict;

/// The verdict on `header` lines and `body` as a first chunk, and what follows.
struct Fed
{
    explicit Fed(const QByteArray& chunk)
        : verdict(answer.take(chunk))
    {
    }
    FetchAnswer answer;
    Verdict verdict;
};

static QByteArray ok(const QByteArray& headers, const QByteArray& body)
{
    return "HTTP/1.0 200 OK\r\n" + headers + "\r\n" + body;
}

class FetchProtocolTest : public QObject
{
    Q_OBJECT
private slots:
    void takesAddressesApart_data()
    {
        const Rows<QString, QString, QString, QString, QString, QString> row(
            "key", "hostPart", "host", "port", "path", "header");
        row("no path", "cam.example", "cam.example", "cam.example", "80", "/", "");
        row("path", "cam/a/b.jpg?x=1", "cam", "cam", "80", "/a/b.jpg?x=1", "");
        row("port", "cam:8080/a.jpg", "cam:8080", "cam", "8080", "/a.jpg", "");
        row("colon in path", "cam/a:b", "cam", "cam", "80", "/a:b", "");
        row("two colons", "cam:1:2/", "cam:1:2", "cam", "1:2", "/", "");
        row("extra header", QString("cam/a.jpg\x01") + "Cookie: a=1/2:3", "cam", "cam", "80",
            "/a.jpg", "Cookie: a=1/2:3");
        row("ipv6", "[::1]/a", "[::1]", "[::1]", "80", "/a", "");
        row("ipv6 and port", "[::1]:81/a", "[::1]:81", "[::1]", "81", "/a", "");
        row("nothing", "", "", "", "80", "/", "");
    }

    void takesAddressesApart()
    {
        QFETCH(QString, key);
        const FetchTarget target = fetchTargetOf(key);
        QTEST(target.hostPart, "hostPart");
        QTEST(target.host, "host");
        QTEST(target.port, "port");
        QTEST(target.requestPath, "path");
        QTEST(target.extraHeader, "header");
        QVERIFY(!target.secure);
        QCOMPARE(target.address(), target.host + target.requestPath);
    }

    void secureAddressesKeepSchemeAndPort_data()
    {
        const Rows<QString, QString, QString, QString, QString> row("key", "hostPart", "host",
                                                                    "port", "address");
        row("no path", "https://cam", "https://cam", "cam", "443", "https://cam/");
        row("port", "https://cam:8443/a.jpg?x=1", "https://cam:8443", "cam", "8443",
            "https://cam:8443/a.jpg?x=1");
        row("capitals", "HTTPS://Cam/A.jpg", "https://Cam", "Cam", "443", "https://Cam/A.jpg");
        row("IPv6", "https://[::1]:8443/a.jpg", "https://[::1]:8443", "[::1]", "8443",
            "https://[::1]:8443/a.jpg");
        row("IPv6 without port", "https://[::1]", "https://[::1]", "[::1]", "443",
            "https://[::1]/");
        row("user", "https://me@cam/a", "https://me@cam", "me@cam", "443", "https://me@cam/a");
        row("no host", "https://", "https://", "", "443", "https:///");
    }

    void secureAddressesKeepSchemeAndPort()
    {
        QFETCH(QString, key);
        const FetchTarget target = fetchTargetOf(key + QChar(1) + "Cookie: a");
        QVERIFY(target.secure);
        QTEST(target.hostPart, "hostPart");
        QTEST(target.host, "host");
        QTEST(target.port, "port");
        QTEST(target.address(), "address");
        QCOMPARE(target.extraHeader, "Cookie: a");
    }

    void portsAreOneTo65535_data()
    {
        const Rows<QString, int> row("text", "number");
        row("80", "80", 80);
        row("blanks", " 81 ", 81);
        row("largest", "65535", 65535);
        row("too large", "65536", 0);
        row("zero", "0", 0);
        row("negative", "-1", 0);
        row("word", "http", 0);
        row("empty", "", 0);
        row("huge", "99999999999999999999", 0);
    }

    void portsAreOneTo65535()
    {
        QFETCH(QString, text);
        QTEST(portNumber(text), "number");
    }

    void extensionIsTheLastThreeCharactersOfThePath_data()
    {
        const Rows<QString, QString> row("path", "extension");
        row("jpg", "/a.jpg", "jpg");
        row("capitals stay", "/A.JPG", "JPG");
        row("mixed", "/a.Gif", "Gif");
        row("bmp", "/a.bmp", "bmp");
        row("cgi", "/cam.cgi", "jpg");
        row("jpeg", "/a.jpeg", "jpg");
        row("query", "/a?type=gif", "gif");
        row("root", "/", "jpg");
    }

    void extensionIsTheLastThreeCharactersOfThePath()
    {
        QFETCH(QString, path);
        QTEST(imageExtensionOf(path), "extension");
    }

    void pathsGoOutInAscii_data()
    {
        const Rows<QString, QString> row("path", "sent");
        row("root", "/", "/");
        row("as it is", "/a/B.jpg?x=1&y='2'~;,[3]", "/a/B.jpg?x=1&y='2'~;,[3]");
        row("blanks", "/a b.jpg?c= d", "/a%20b.jpg?c=%20d");
        row("control characters", QString("/a\x02\t\r\n\x7F") + QChar(0x85),
            "/a%02%09%0D%0A%7F%C2%85");
        row("letters", "/b\u00fccher/\u65e5.jpg", "/b%C3%BCcher/%E6%97%A5.jpg");
        row("beyond 16 bits", "/\U0001F30A", "/%F0%9F%8C%8A");
        row("half a pair", QString("/") + QChar(0xD83C) + "a", "/%EF%BF%BDa");
        row("encoded already", "/a%20b%c3%bc%zz%.jpg", "/a%20b%c3%bc%zz%.jpg");
        row("fragment", "/a.jpg?x=1#top of it#2", "/a.jpg?x=1");
        row("fragment alone", "/#top", "/");
    }

    void pathsGoOutInAscii()
    {
        QFETCH(QString, path);
        const FetchTarget target = fetchTargetOf("cam" + path);
        QTEST(target.sentPath(), "sent");
        // Only what goes out is changed.
        QCOMPARE(target.requestPath, path);
        QCOMPARE(target.address(), "cam" + path);
    }

    void requestHasItsLinesInOrder()
    {
        QCOMPARE(buildRequest("GET /a.jpg", "cam", "Thu, 01 Jan 1998 00:00:00 GMT", "Cookie: a=1"),
                 QByteArray("GET /a.jpg HTTP/1.0\r\n"
                            "if-Modified-Since: Thu, 01 Jan 1998 00:00:00 GMT\r\n"
                            "Connection: Keep-Alive\r\n"
                            "User-Agent: Default\r\n"
                            "Host: cam\r\n"
                            "Accept: */*\r\n"
                            "Accept-Language: en\r\n"
                            "Cookie: a=1\r\n"
                            "\r\n"));
        QCOMPARE(buildRequest("GET /", "cam", "", ""), QByteArray("GET / HTTP/1.0\r\n"
                                                                  "Connection: Keep-Alive\r\n"
                                                                  "User-Agent: Default\r\n"
                                                                  "Host: cam\r\n"
                                                                  "Accept: */*\r\n"
                                                                  "Accept-Language: en\r\n"
                                                                  "\r\n"));
    }

    void aLineBreakNeverBringsASecondHeaderLine()
    {
        const QByteArray request = buildRequest("GET /a\r\nEvil: 1", "cam\nEvil: 2",
                                                "date\rEvil: 3", "Cookie: a\r\nEvil: 4");
        QVERIFY(!request.contains("Evil"));
        QVERIFY(request.startsWith("GET /a HTTP/1.0\r\nif-Modified-Since: date\r\n"));
        QVERIFY(request.contains("\r\nHost: cam\r\n"));
        QVERIFY(request.endsWith("\r\nCookie: a\r\n\r\n"));
    }

    void otherCodesThan200AreRefused_data()
    {
        const Rows<QByteArray, Verdict> row("chunk", "verdict");
        row("304", "HTTP/1.0 304 Not Modified\r\n\r\n", Verdict::NotModified);
        row("404", "HTTP/1.1 404 Not Found\r\n\r\n", Verdict::NotFound);
        row("301", "HTTP/1.0 301 Moved\r\nLocation: http://a/\r\n\r\n", Verdict::NotFound);
        row("500", "HTTP/1.0 500 Error\r\n\r\n", Verdict::NotFound);
        row("206", "HTTP/1.0 206 Partial\r\n\r\n", Verdict::NotFound);
        row("302 without location", "HTTP/1.0 302 Found\r\n\r\n", Verdict::NotFound);
        row("cut status line", "HTTP/1.0 2", Verdict::NotFound);
        row("two blanks", "HTTP/1.0  200 OK\r\n\r\n", Verdict::NotFound);
    }

    void otherCodesThan200AreRefused()
    {
        QFETCH(QByteArray, chunk);
        QTEST(Fed(chunk).verdict, "verdict");
    }

    void anAnswerWithoutStatusLineIsAccepted()
    {
        const Fed fed("http/1.0 404\r\nContent-Type: a\r\n\r\nbody");
        QCOMPARE(fed.verdict, Verdict::Receiving);
        QCOMPARE(fed.answer.FetchedBody(), "body");
    }

    void redirectsAreCutAtAFixedDistance_data()
    {
        const Rows<QByteArray, QString> row("header", "url");
        row("absolute", "Location: http://new.example/b.jpg\r\n", "new.example/b.jpg");
        row("capitals", "LOCATION: HTTP://new/B.jpg\r\n", "new/B.jpg");
        row("no blank", "Location:http://new.example/b\r\n", "ew.example/b");
        row("relative", "Location: /images/current.jpg\r\n", "/current.jpg");
        row("too short", "Location: /a\r\n", "nothing");
        row("scheme alone", "Location: http://\r\n", "");
        row("no line end", "Location: http://new/", "nothing");
        row("secure", "Location: https://new:8443/b.jpg\r\n", "https://new:8443/b.jpg");
        row("secure in capitals", "LOCATION: HTTPS://new/B.jpg\r\n", "HTTPS://new/B.jpg");
        row("secure, no blank", "Location:https://new/b\r\n", "new/b");
        row("secure, two blanks", "Location:  https://new/b\r\n", "//new/b");
        row("secure after a tab", "Location:\thttps://new/b\r\n", "/new/b");
        row("secure, no line end", "Location: https://new/", "nothing");
        row("secure, cut", "Location: https:/\r\n", "");
        row("secure scheme alone", "Location: https://\r\n", "https://");
        row("secure header mark", "Location: https://new/\1Evil: 1\r\n", "https://new/Evil: 1");
        row("header mark", "Location: http://new/\1Evil: 1\r\n", "new/Evil: 1");
        row("separator", "Location: http://new/\xFF\r\n", QString("new/y") + QChar(0x308));
    }

    void redirectsAreCutAtAFixedDistance()
    {
        QFETCH(QByteArray, header);
        const Fed fed("HTTP/1.0 302 Found\r\n" + header);
        QCOMPARE(fed.verdict, Verdict::Redirect);
        QTEST(fed.answer.redirectUrl().value_or("nothing"), "url");
    }

    void lastModifiedIsTheAnswersOwn_data()
    {
        const Rows<QByteArray, QString> row("header", "text");
        row("usual", "Last-Modified: Thu, 01 Jan 1998 00:00:00 GMT\r\n",
            "Thu, 01 Jan 1998 00:00:00 GMT");
        row("none", {}, "");
        row("no blank", "last-modified:now\r\n", "ow");
        row("empty", "last-modified:\r\n", "");
    }

    void lastModifiedIsTheAnswersOwn()
    {
        QFETCH(QByteArray, header);
        FetchAnswer answer;
        answer.setLastModified("from the history");
        answer.take(ok(header + "Content-Type: a\r\n", "b"));
        QTEST(answer.LastModified(), "text");
    }

    void contentLengthIsReadOnePastTheColon_data()
    {
        const Rows<QByteArray, QString> row("header", "progress");
        const QString unknown = "  Getting Image [ 1kb ]";
        row("usual", "Content-Length: 2048\r\n", "  Getting Image [50% of 2kb]");
        row("capitals", "CONTENT-LENGTH: 2048\r\n", "  Getting Image [50% of 2kb]");
        row("no blank loses a digit", "Content-Length:92048\r\n", "  Getting Image [50% of 2kb]");
        row("many blanks", "Content-Length:   2048  \r\n", "  Getting Image [50% of 2kb]");
        row("none", {}, unknown);
        row("zero", "Content-Length: 0\r\n", unknown);
        row("word", "Content-Length: abc\r\n", unknown);
        row("2^31", "Content-Length: 2147483648\r\n", unknown);
        row("2^63", "Content-Length: 9223372036854775808\r\n", unknown);
        row("empty", "Content-Length: \r\n", unknown);
        row("empty, no blank", "Content-Length:\r\n", unknown);
        row("negative", "Content-Length: -1\r\n", "  Getting Image [-102400% of 0kb]");
        row("large", "Content-Length: 2147483647\r\n", "  Getting Image [0% of 2097152kb]");
    }

    void contentLengthIsReadOnePastTheColon()
    {
        QFETCH(QByteArray, header);
        const Fed fed(ok(header + "Content-Type: image/jpeg\r\n", QByteArray(1024, 'b')));
        QCOMPARE(fed.verdict, Verdict::Receiving);
        QTEST(fed.answer.progressText(), "progress");
        QCOMPARE(fed.answer.FetchedBody().size(), 1024);
    }

    void aLengthBeyond16BitsOfHeaderIsNotRead()
    {
        const auto answerWith = [](qsizetype position) {
            QByteArray headers = "Content-Type: a\r\nX: ";
            headers += QByteArray(position - headers.size() - 17 - 2, 'x') + "\r\n";
            return ok(headers + "Content-Length: 2048\r\n", QByteArray(1024, 'b'));
        };
        // The value begins at the 1-based position of the name plus 16; 32767 is the last that
        // counts.
        const Fed last(answerWith(32767 - 16 - 1));
        QCOMPARE(last.answer.progressText(), "  Getting Image [50% of 2kb]");
        const Fed beyond(answerWith(32767 - 16));
        QCOMPARE(beyond.answer.progressText(), "  Getting Image [ 1kb ]");
    }

    void withoutContentTypeTheHeadersAreBody()
    {
        const QByteArray chunk = ok("Content-Length: 4\r\n", "body");
        Fed fed(chunk);
        QCOMPARE(fed.verdict, Verdict::Receiving);
        QCOMPARE(fed.answer.FetchedBody(), chunk);
        QCOMPARE(fed.answer.lastBodyPart(), chunk);
        QCOMPARE(fed.answer.progressText(), "  Getting Image [ 0kb ]");
        // Its length is unknown, whatever the header says.
        QCOMPARE(fed.answer.take("more"), Verdict::Receiving);
    }

    void theFirstChunkNeverCompletes()
    {
        const Fed fed(ok("Content-Type: a\r\nContent-Length: 4\r\n", "body"));
        QCOMPARE(fed.verdict, Verdict::Receiving);
        QCOMPARE(fed.answer.progressText(), "  Getting Image [100% of 0kb]");
    }

    void theLastAnnouncedByteCompletes()
    {
        Fed fed(ok("Content-Type: a\r\nContent-Length: 6\r\n", ""));
        QVERIFY(fed.answer.HeaderDone());
        QCOMPARE(fed.answer.take("abc"), Verdict::Receiving);
        QCOMPARE(fed.answer.take("def"), Verdict::Complete);
        QCOMPARE(fed.answer.lastBodyPart(), "def");
        QCOMPARE(fed.answer.FetchedBody(), "abcdef");
        // A byte too many is past the mark: only the close or silence ends it.
        QCOMPARE(fed.answer.take("g"), Verdict::Receiving);
    }

    void progressRoundsTiesToEven_data()
    {
        const Rows<int, int, QString, QString> row("received", "length", "progress", "complete");
        row("0.5 kb down", 100, 512, "  Getting Image [20% of 0kb]",
            "  Getting Image [100% of 0kb]");
        row("1.5 kb up", 100, 1536, "  Getting Image [7% of 2kb]", "  Getting Image [100% of 2kb]");
        row("2.5 kb down", 1280, 2560, "  Getting Image [50% of 2kb]",
            "  Getting Image [100% of 2kb]");
        row("12.5 % down", 256, 2048, "  Getting Image [12% of 2kb]",
            "  Getting Image [100% of 2kb]");
        row("37.5 % up", 768, 2048, "  Getting Image [38% of 2kb]",
            "  Getting Image [100% of 2kb]");
        row("unknown, 2.5 kb down", 2560, 0, "  Getting Image [ 2kb ]",
            "  Getting Image [100% of 2kb]");
    }

    void progressRoundsTiesToEven()
    {
        QFETCH(int, received);
        QFETCH(int, length);
        const Fed fed(
            ok("Content-Type: a\r\nContent-Length: " + QByteArray::number(length) + "\r\n",
               QByteArray(received, 'b')));
        QTEST(fed.answer.progressText(), "progress");
        QTEST(fed.answer.completeText(), "complete");
    }

    void aBodyOver64MiBIsGivenUp()
    {
        Fed fed(ok("Content-Type: a\r\n", ""));
        const QByteArray mebibyte(1024 * 1024, 'b');
        for (int i = 0; i < 64; ++i)
            QCOMPARE(fed.answer.take(mebibyte), Verdict::Receiving);
        QCOMPARE(fed.answer.take("b"), Verdict::TooLong);
    }

    /// The head counts as body then, too; what stands behind it is not copied for each chunk.
    void chunksWithoutATypeAreReadOnce()
    {
        const auto read = [](int chunks) {
            Fed fed(ok("Transfer-Encoding: chunked\r\n", ""));
            const QByteArray chunk = "1000\r\n" + QByteArray(0x1000, 'b') + "\r\n";
            for (int i = 0; i < chunks; ++i)
                QCOMPARE(fed.answer.take(chunk), Verdict::Receiving);
            QCOMPARE(fed.answer.take("0\r\n\r\n"), Verdict::Complete);
            QCOMPARE(fed.answer.pictureIn(fed.answer.FetchedBody()).size(), chunks * 0x1000);
        };
        QVERIFY(growth(400, read) < MostGrowth);
    }

    void anotherAnswerStartsAfresh()
    {
        Fed fed(ok("Content-Type: a\r\nContent-Length: 2048\r\n", "old"));
        fed.answer.reset();
        fed.answer.emptyBody();
        QVERIFY(!fed.answer.HeaderDone());
        QCOMPARE(fed.answer.take(ok("Content-Type: a\r\n", "new")), Verdict::Receiving);
        QCOMPARE(fed.answer.FetchedBody(), "new");
        QCOMPARE(fed.answer.progressText(), "  Getting Image [ 0kb ]");
    }
};

QTEST_GUILESS_MAIN(FetchProtocolTest)
#include "tst_FetchProtocol.moc"
