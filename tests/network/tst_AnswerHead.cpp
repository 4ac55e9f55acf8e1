// The head of an answer, as a person is told about it.

#include "network/AnswerHead.h"
#include "support/Rows.h"

class AnswerHeadTest : public QObject
{
    Q_OBJECT
private slots:
    void statusLines_data()
    {
        const Rows<QByteArray, int, QString> row("answer", "code", "status");
        row("usual", "HTTP/1.0 200 OK\r\n\r\n", 200, "200 OK");
        row("without a reason", "HTTP/1.1 404\r\n\r\n", 404, "404");
        row("with LF alone", "HTTP/1.0 503 Service Unavailable\nA: b\n\n", 503,
            "503 Service Unavailable");
        row("cut", "HTTP/1.0 50", 50, "50");
        row("no number", "HTTP/1.0 what\r\n\r\n", 0, "what");
        row("nothing behind the version", "HTTP/1.0\r\n\r\n", 0, "");
        row("control characters", "HTTP/1.0 500 \x1b[2JBad\r\n\r\n", 500, "500 [2JBad");
        row("no HTTP", "SIP/2.0 200 OK\r\n\r\n", 0, "");
        row("empty", "", 0, "");
    }

    void statusLines()
    {
        QFETCH(QByteArray, answer);
        const AnswerHead head(answer);
        QTEST(head.code(), "code");
        QTEST(head.status(), "status");
        QCOMPARE(head.isNull(), !answer.startsWith("HTTP/"));
    }

    void headersAreFoundByName()
    {
        const AnswerHead head("HTTP/1.0 200 OK\r\ncontent-TYPE:  text/html \r\nEmpty:\r\n"
                              "no header\r\nX: one\nX: two\r\n\r\nContent-Length: 9\r\n\r\n");
        QCOMPARE(head.value("Content-Type"), "text/html");
        QCOMPARE(head.value("X"), "one");
        QCOMPARE(head.value("Empty"), "");
        QCOMPARE(head.value("Y"), "");
        // What stands behind the empty line is body.
        QCOMPARE(head.contentLength(), std::nullopt);
    }

    void itsSizeEndsWithTheEmptyLine_data()
    {
        const Rows<QByteArray, qsizetype> row("answer", "size");
        row("CR LF", "HTTP/1.0 200 OK\r\nA: b\r\n\r\nbody", 25);
        row("LF", "HTTP/1.0 200 OK\nA: b\n\nbody", 22);
        row("no empty line", "HTTP/1.0 200 OK\r\nA: b", 21);
        row("none", "body", 0);
    }

    void itsSizeEndsWithTheEmptyLine()
    {
        QFETCH(QByteArray, answer);
        QTEST(AnswerHead(answer).size(), "size");
    }

    void lengths_data()
    {
        const Rows<QByteArray, qint64> row("value", "length");
        row("usual", " 12", 12);
        row("without a blank", "12", 12);
        row("zero", " 0", 0);
        row("larger than 32 bits", " 5000000000", 5'000'000'000);
        row("negative", " -1", -1);
        row("no number", " many", -1);
    }

    void lengths()
    {
        QFETCH(QByteArray, value);
        const AnswerHead head("HTTP/1.0 200 OK\r\nContent-Length:" + value + "\r\n\r\n");
        QTEST(head.contentLength().value_or(-1), "length");
    }

    void locations_data()
    {
        const Rows<QByteArray, QString> row("location", "address");
        row("absolute", "http://other.example/b.jpg", "http://other.example/b.jpg");
        row("secure", "https://cam.example/a.jpg", "https://cam.example/a.jpg");
        row("with a port", "http://other.example:81/", "http://other.example:81/");
        row("a path", "/b.jpg", "http://cam.example:8080/b.jpg");
        row("beside it", "b.jpg?x=1", "http://cam.example:8080/dir/b.jpg?x=1");
        row("another host, the same scheme", "//other.example/b", "http://other.example/b");
        row("a blank in it", "/b c.jpg", "http://cam.example:8080/b%20c.jpg");
        row("a fragment", "/b#there", "http://cam.example:8080/b");
        row("another scheme", "rtsp://cam.example/", "");
        row("no host", "http:///b", "");
        row("none", "", "");
    }

    void locations()
    {
        QFETCH(QByteArray, location);
        const AnswerHead head("HTTP/1.0 301 Moved\r\nLocation: " + location + "\r\n\r\n");
        QTEST(head.locationFrom("http://cam.example:8080/dir/a.jpg"), "address");
    }

    void aFloodOfHeadersIsNotKept()
    {
        QByteArray answer = "HTTP/1.0 200 OK\r\n";
        for (int i = 0; i < 5'000; ++i)
            answer += "H" + QByteArray::number(i) + ": x\r\n";
        const AnswerHead head(answer + "\r\n");
        QCOMPARE(head.value("H999"), "x");
        QCOMPARE(head.value("H1000"), "");
    }
};

QTEST_GUILESS_MAIN(AnswerHeadTest)
#include "tst_AnswerHead.moc"
