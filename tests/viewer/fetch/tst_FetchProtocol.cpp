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
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("hostPart");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("header");
        QTest::newRow("no path") << "cam.example"
                                 << "cam.example"
                                 << "cam.example"
                                 << "80"
                                 << "/"
                                 << "";
        QTest::newRow("path") << "cam/a/b.jpg?x=1"
                              << "cam"
                              << "cam"
                              << "80"
                              << "/a/b.jpg?x=1"
                              << "";
        QTest::newRow("port") << "cam:8080/a.jpg"
                              << "cam:8080"
                              << "cam"
                              << "8080"
                              << "/a.jpg"
                              << "";
        QTest::newRow("colon in path") << "cam/a:b"
                                       << "cam"
                                       << "cam"
                                       << "80"
                                       << "/a:b"
                                       << "";
        QTest::newRow("two colons") << "cam:1:2/"
                                    << "cam:1:2"
                                    << "cam"
                                    << "1:2"
                                    << "/"
                                    << "";
        QTest::newRow("extra header") << QString("cam/a.jpg\x01") + "Cookie: a=1/2:3"
                                      << "cam"
                                      << "cam"
                                      << "80"
                                      << "/a.jpg"
                                      << "Cookie: a=1/2:3";
        QTest::newRow("ipv6") << "[::1]/a"
                              << "[::1]"
                              << "[::1]"
                              << "80"
                              << "/a"
                              << "";
        QTest::newRow("ipv6 and port") << "[::1]:81/a"
                                       << "[::1]:81"
                                       << "[::1]"
                                       << "81"
                                       << "/a"
                                       << "";
        QTest::newRow("nothing") << ""
                                 << ""
                                 << ""
                                 << "80"
                                 << "/"
                                 << "";
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
        QTest::addColumn<QString>("key");
        QTest::addColumn<QString>("hostPart");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("address");
        QTest::newRow("no path") << "https://cam"
                                 << "https://cam"
                                 << "cam"
                                 << "443"
                                 << "https://cam/";
        QTest::newRow("port") << "https://cam:8443/a.jpg?x=1"
                              << "https://cam:8443"
                              << "cam"
                              << "8443"
                              << "https://cam:8443/a.jpg?x=1";
        QTest::newRow("capitals") << "HTTPS://Cam/A.jpg"
                                  << "https://Cam"
                                  << "Cam"
                                  << "443"
                                  << "https://Cam/A.jpg";
        QTest::newRow("IPv6") << "https://[::1]:8443/a.jpg"
                              << "https://[::1]:8443"
                              << "[::1]"
                              << "8443"
                              << "https://[::1]:8443/a.jpg";
        QTest::newRow("IPv6 without port") << "https://[::1]"
                                           << "https://[::1]"
                                           << "[::1]"
                                           << "443"
                                           << "https://[::1]/";
        QTest::newRow("user") << "https://me@cam/a"
                              << "https://me@cam"
                              << "me@cam"
                              << "443"
                              << "https://me@cam/a";
        QTest::newRow("no host") << "https://"
                                 << "https://"
                                 << ""
                                 << "443"
                                 << "https:///";
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
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("number");
        QTest::newRow("80") << "80" << 80;
        QTest::newRow("blanks") << " 81 " << 81;
        QTest::newRow("largest") << "65535" << 65535;
        QTest::newRow("too large") << "65536" << 0;
        QTest::newRow("zero") << "0" << 0;
        QTest::newRow("negative") << "-1" << 0;
        QTest::newRow("word") << "http" << 0;
        QTest::newRow("empty") << "" << 0;
        QTest::newRow("huge") << "99999999999999999999" << 0;
    }

    void portsAreOneTo65535()
    {
        QFETCH(QString, text);
        QTEST(portNumber(text), "number");
    }

    void extensionIsTheLastThreeCharactersOfThePath_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("extension");
        QTest::newRow("jpg") << "/a.jpg"
                             << "jpg";
        QTest::newRow("capitals stay") << "/A.JPG"
                                       << "JPG";
        QTest::newRow("mixed") << "/a.Gif"
                               << "Gif";
        QTest::newRow("bmp") << "/a.bmp"
                             << "bmp";
        QTest::newRow("cgi") << "/cam.cgi"
                             << "jpg";
        QTest::newRow("jpeg") << "/a.jpeg"
                              << "jpg";
        QTest::newRow("query") << "/a?type=gif"
                               << "gif";
        QTest::newRow("root") << "/"
                              << "jpg";
    }

    void extensionIsTheLastThreeCharactersOfThePath()
    {
        QFETCH(QString, path);
        QTEST(imageExtensionOf(path), "extension");
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
        QTest::addColumn<QByteArray>("chunk");
        QTest::addColumn<Verdict>("verdict");
        QTest::newRow("304") << QByteArray("HTTP/1.0 304 Not Modified\r\n\r\n")
                             << Verdict::NotModified;
        QTest::newRow("404") << QByteArray("HTTP/1.1 404 Not Found\r\n\r\n") << Verdict::NotFound;
        QTest::newRow("301") << QByteArray("HTTP/1.0 301 Moved\r\nLocation: http://a/\r\n\r\n")
                             << Verdict::NotFound;
        QTest::newRow("500") << QByteArray("HTTP/1.0 500 Error\r\n\r\n") << Verdict::NotFound;
        QTest::newRow("206") << QByteArray("HTTP/1.0 206 Partial\r\n\r\n") << Verdict::NotFound;
        QTest::newRow("302 without location")
            << QByteArray("HTTP/1.0 302 Found\r\n\r\n") << Verdict::NotFound;
        QTest::newRow("cut status line") << QByteArray("HTTP/1.0 2") << Verdict::NotFound;
        QTest::newRow("two blanks") << QByteArray("HTTP/1.0  200 OK\r\n\r\n") << Verdict::NotFound;
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
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("url");
        QTest::newRow("absolute") << QByteArray("Location: http://new.example/b.jpg\r\n")
                                  << "new.example/b.jpg";
        QTest::newRow("capitals") << QByteArray("LOCATION: HTTP://new/B.jpg\r\n") << "new/B.jpg";
        QTest::newRow("no blank") << QByteArray("Location:http://new.example/b\r\n")
                                  << "ew.example/b";
        QTest::newRow("relative") << QByteArray("Location: /images/current.jpg\r\n")
                                  << "/current.jpg";
        QTest::newRow("too short") << QByteArray("Location: /a\r\n") << "nothing";
        QTest::newRow("scheme alone") << QByteArray("Location: http://\r\n") << "";
        QTest::newRow("no line end") << QByteArray("Location: http://new/") << "nothing";
        QTest::newRow("secure") << QByteArray("Location: https://new:8443/b.jpg\r\n")
                                << "https://new:8443/b.jpg";
        QTest::newRow("secure in capitals")
            << QByteArray("LOCATION: HTTPS://new/B.jpg\r\n") << "HTTPS://new/B.jpg";
        QTest::newRow("secure, no blank") << QByteArray("Location:https://new/b\r\n") << "new/b";
        QTest::newRow("secure, two blanks")
            << QByteArray("Location:  https://new/b\r\n") << "//new/b";
        QTest::newRow("secure after a tab")
            << QByteArray("Location:\thttps://new/b\r\n") << "/new/b";
        QTest::newRow("secure, no line end") << QByteArray("Location: https://new/") << "nothing";
        QTest::newRow("secure, cut") << QByteArray("Location: https:/\r\n") << "";
        QTest::newRow("secure scheme alone") << QByteArray("Location: https://\r\n") << "https://";
        QTest::newRow("secure header mark") << QByteArray("Location: https://new/\x01"
                                                          "Evil: 1\r\n")
                                            << "https://new/Evil: 1";
        QTest::newRow("header mark") << QByteArray("Location: http://new/\x01"
                                                   "Evil: 1\r\n")
                                     << "new/Evil: 1";
        QTest::newRow("separator")
            << QByteArray("Location: http://new/\xFF\r\n") << QString("new/y") + QChar(0x308);
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
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("text");
        QTest::newRow("usual") << QByteArray("Last-Modified: Thu, 01 Jan 1998 00:00:00 GMT\r\n")
                               << "Thu, 01 Jan 1998 00:00:00 GMT";
        QTest::newRow("none") << QByteArray() << "";
        QTest::newRow("no blank") << QByteArray("last-modified:now\r\n") << "ow";
        QTest::newRow("empty") << QByteArray("last-modified:\r\n") << "";
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
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QString>("progress");
        const QString unknown = "  Getting Image [ 1kb ]";
        QTest::newRow("usual") << QByteArray("Content-Length: 2048\r\n")
                               << "  Getting Image [50% of 2kb]";
        QTest::newRow("capitals") << QByteArray("CONTENT-LENGTH: 2048\r\n")
                                  << "  Getting Image [50% of 2kb]";
        QTest::newRow("no blank loses a digit")
            << QByteArray("Content-Length:92048\r\n") << "  Getting Image [50% of 2kb]";
        QTest::newRow("many blanks")
            << QByteArray("Content-Length:   2048  \r\n") << "  Getting Image [50% of 2kb]";
        QTest::newRow("none") << QByteArray() << unknown;
        QTest::newRow("zero") << QByteArray("Content-Length: 0\r\n") << unknown;
        QTest::newRow("word") << QByteArray("Content-Length: abc\r\n") << unknown;
        QTest::newRow("2^31") << QByteArray("Content-Length: 2147483648\r\n") << unknown;
        QTest::newRow("2^63") << QByteArray("Content-Length: 9223372036854775808\r\n") << unknown;
        QTest::newRow("empty") << QByteArray("Content-Length: \r\n") << unknown;
        QTest::newRow("empty, no blank") << QByteArray("Content-Length:\r\n") << unknown;
        QTest::newRow("negative") << QByteArray("Content-Length: -1\r\n")
                                  << "  Getting Image [-102400% of 0kb]";
        QTest::newRow("large") << QByteArray("Content-Length: 2147483647\r\n")
                               << "  Getting Image [0% of 2097152kb]";
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
        QTest::addColumn<int>("received");
        QTest::addColumn<int>("length");
        QTest::addColumn<QString>("progress");
        QTest::addColumn<QString>("complete");
        QTest::newRow("0.5 kb down") << 100 << 512 << "  Getting Image [20% of 0kb]"
                                     << "  Getting Image [100% of 0kb]";
        QTest::newRow("1.5 kb up") << 100 << 1536 << "  Getting Image [7% of 2kb]"
                                   << "  Getting Image [100% of 2kb]";
        QTest::newRow("2.5 kb down") << 1280 << 2560 << "  Getting Image [50% of 2kb]"
                                     << "  Getting Image [100% of 2kb]";
        QTest::newRow("12.5 % down") << 256 << 2048 << "  Getting Image [12% of 2kb]"
                                     << "  Getting Image [100% of 2kb]";
        QTest::newRow("37.5 % up") << 768 << 2048 << "  Getting Image [38% of 2kb]"
                                   << "  Getting Image [100% of 2kb]";
        QTest::newRow("unknown, 2.5 kb down") << 2560 << 0 << "  Getting Image [ 2kb ]"
                                              << "  Getting Image [100% of 2kb]";
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
