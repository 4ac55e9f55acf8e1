// The viewer in its window against servers that answer wrongly: whatever comes ends in one of the
// known texts, and the next fetch works.

#include "support/Cost.h"
#include "support/OddPictures.h"
#include "support/OddPng.h"
#include "support/OddWebp.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"

#include <QTcpServer>
#include <QTcpSocket>

#include <sys/socket.h>

using End = Script::End;

namespace {

const QString NotPicture = "  Error: Not a picture.";
const QString NotFound = "  Error: File not found.";
const QStringList NotPictureTold{"error Not a picture"};
const QStringList NotFoundTold{"error File not found"};
const QStringList NewImageTold{"change http://127.0.0.1/a.jpg", "done"};
const QByteArray JpegType = "Content-Type: image/jpeg\r\n";

/// Some 4 kB: more than a first chunk carries.
const QByteArray& picture()
{
    static const QByteArray bytes = largePicture(4'000);
    return bytes;
}

QString completeText(qsizetype bytes)
{
    return QString("  Getting Image [100% of %1kb]").arg(qRound64(double(bytes) / 1024));
}

QByteArray answerWithLength(const QByteArray& length)
{
    return httpAnswer(picture(), JpegType + "Content-Length: " + length + "\r\n");
}

/// The header lines of a request.
QList<QByteArray> linesOf(const QByteArray& request)
{
    QByteArray lines = request;
    return lines.replace("\r\n", "\n").trimmed().split('\n');
}

/// Sends `answer` and resets the connection: unlike a close, that is an error to the system.
class ResettingServer
{
public:
    explicit ResettingServer(const QByteArray& answer, bool waitsForRequest = true)
    {
        if (!m_server.listen(QHostAddress::LocalHost))
            qFatal("cannot listen");
        QObject::connect(&m_server, &QTcpServer::newConnection, &m_server, [=, this] {
            auto* socket = m_server.nextPendingConnection();
            ++connections;
            const auto play = [=] {
                socket->write(answer);
                while (socket->bytesToWrite() > 0 && socket->waitForBytesWritten(HangMs)) {
                }
                const linger atOnce{.l_onoff = 1, .l_linger = 0};
                if (setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &atOnce,
                               sizeof(atOnce)) != 0)
                    qFatal("cannot reset");
                socket->abort();
            };
            if (waitsForRequest)
                QObject::connect(socket, &QTcpSocket::readyRead, socket, play);
            else
                play();
        });
    }
    QString url() const { return QString("127.0.0.1:%1/a.jpg").arg(m_server.serverPort()); }

    int connections = 0;

private:
    QTcpServer m_server;
};

} // namespace

class FetchHostileTest : public QObject
{
    Q_OBJECT
private slots:
    void whateverIsAnsweredEndsAsDefined_data()
    {
        const Rows<QByteArray, QStringList, QString> row("answer", "told", "status");
        const auto isNone = [&](const char* name, const QByteArray& answer) {
            row(name, answer, NotPictureTold, NotPicture);
        };
        const auto isRefused = [&](const char* name, const QByteArray& answer) {
            row(name, answer, NotFoundTold, NotFound);
        };
        const auto isShown = [&](const char* name, const QByteArray& answer,
                                 const QString& status) {
            row(name, answer, NewImageTold, status);
        };
        const QByteArray nul(1, '\0');

        isNone("nothing", {});
        isNone("one byte", "H");
        isNone("one NUL", nul);
        isNone("header end alone", "\r\n\r\n");
        isNone("line ends alone", QByteArray("\r\n").repeated(500'000));
        isNone("no header end", "HTTP/1.0 200 OK\r\n" + JpegType + "Content-Length: 9\r\n");
        isNone("no header end and no type", "HTTP/1.0 200 OK\r\nContent-Length: 9\r\n");
        isNone("a length in each line",
               httpAnswer("x", JpegType + QByteArray("Content-Length: 1\r\n").repeated(50'000)));
        isRefused("four bytes", "HTTP");
        isRefused("code of NULs", "HTTP/1.0 " + nul.repeated(3) + "\r\n" + JpegType + "\r\n");
        isRefused("code cut off", "HTTP/1.0 20");
        isRefused("status line of one megabyte", "HTTP" + QByteArray(1'000'000, 'P'));
        isRefused("100 before 200", httpAnswer({}, {}, "100 Continue") + pictureAnswer(picture()));
        isRefused("101", httpAnswer({}, "Upgrade: x\r\n", "101 Switching Protocols"));
        isRefused("204", httpAnswer({}, {}, "204 No Content"));

        const qsizetype size = picture().size();
        isShown("no type", httpAnswer(picture()), completeText(httpAnswer(picture()).size()));
        isShown("line feeds alone", "HTTP/1.0 200 OK\n" + JpegType.trimmed() + "\n\n" + picture(),
                completeText(size));
        isShown("length -1", answerWithLength("-1"), completeText(0));
        isShown("length 0", answerWithLength("0"), completeText(size));
        isShown("length 2^31", answerWithLength("2147483648"), completeText(size));
        isShown("length 2^31 - 1", answerWithLength("2147483647"), completeText(2147483647));
        isShown("length -2^31", answerWithLength("-2147483648"),
                "  Getting Image [100% of -2097152kb]");
        isShown("length 2^63", answerWithLength("9223372036854775808"), completeText(size));
        isShown("length abc", answerWithLength("abc"), completeText(size));
        isShown("length of NULs", answerWithLength(nul.repeated(4)), completeText(size));
        isShown("shorter than announced", pictureAnswer(picture()).chopped(1), completeText(size));
        isShown("longer than announced", pictureAnswer(picture()) + QByteArray(9'000, 'x'),
                completeText(size));
        isShown("two answers in one", pictureAnswer(picture()).repeated(2), completeText(size));
        isShown("garbage before the status line",
                "garbage\r\n" + httpAnswer(picture(), JpegType, "404 Not Found"),
                completeText(size));
        isShown("NUL and 0xFF in headers",
                httpAnswer(picture(), nul + "\xFF: \xFF" + nul + "\r\n" + JpegType +
                                          "Last-Modified: " + nul + "\xFFMon\xFF\r\n\xFF\r\n"),
                completeText(size));
    }

    void whateverIsAnsweredEndsAsDefined()
    {
        QFETCH(QByteArray, answer);
        ShownCamera c;
        QCOMPARE(c.trouble(), "");
        const QByteArray before = c.picture();
        ScriptedServer server;
        server.listen();
        server.play(answer);
        const Outcome outcome = c.fetch(server.url());
        QTEST(outcome.told, "told");
        QTEST(outcome.status, "status");
        QVERIFY(!c.busy());
        QTRY_COMPARE(server.openConnections(), 0);
        if (outcome.told == NewImageTold)
            QVERIFY(c.picture().startsWith(picture().chopped(1)));
        else
            QCOMPARE(c.picture(), before);
        QCOMPARE(c.trouble(), "");
    }

    void aBodyOfAnotherLengthWaitsForSilence_data()
    {
        const Rows<QByteArray> row("answer");
        row("length -1", answerWithLength("-1"));
        row("length 2^63", answerWithLength("9223372036854775808"));
        row("one byte is missing", pictureAnswer(picture()).chopped(1));
        // In one piece, so that the announced end lies inside of a chunk.
        row("one byte too many", pictureAnswer(picture()) + 'x');
    }

    void aBodyOfAnotherLengthWaitsForSilence()
    {
        QFETCH(QByteArray, answer);
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(answer, End::KeepOpen);
        QCOMPARE(c.fetchUntilSilence(server.url(), answer.size()).told, NewImageTold);
        // What follows the picture is not kept.
        QVERIFY(answer.endsWith(c.picture()) || answer.endsWith(c.picture() + 'x'));
        QVERIFY(c.picture().startsWith(picture().chopped(1)));
        QVERIFY(!c.busy());
        QTRY_COMPARE(server.openConnections(), 0);
        QCOMPARE(c.trouble(), "");
    }

    void anAnswerMayComeBeforeTheRequest()
    {
        ShownCamera c;
        c.cam.setNewOnly(false);
        for (const End end : {End::Close, End::KeepOpen}) {
            ScriptedServer server;
            server.listen();
            server.play(Script{{pictureAnswer(picture())}, end, true});
            for (int i = 0; i < 20; ++i)
                QCOMPARE(c.fetch(server.url()).told, NewImageTold);
        }
        c.cam.setNewOnly(true);
        QCOMPARE(c.trouble(), "");
    }

    void aResetEndsAsAClose_data()
    {
        const Rows<QByteArray, QStringList> row("answer", "told");
        row("instead of an answer", {}, NotPictureTold);
        row("in the status line", "HTTP/1.0 2", NotFoundTold);
        row("in the header", ("HTTP/1.0 200 OK\r\n" + JpegType), NotPictureTold);
        row("in the body", pictureAnswer(picture()).chopped(9), NewImageTold);
        row("after the body", httpAnswer(picture(), JpegType), NewImageTold);
    }

    void aResetEndsAsAClose()
    {
        QFETCH(QByteArray, answer);
        ShownCamera c;
        QCOMPARE(c.trouble(), "");
        ResettingServer server(answer);
        QTEST(c.fetch(server.url()).told, "told");
        QVERIFY(!c.busy());
        QCOMPARE(c.trouble(), "");
        // One that comes before the viewer knows of the connection ends it there and then.
        ResettingServer early(answer, false);
        const Outcome outcome = c.fetch(early.url());
        QVERIFY2(outcome.told == NotPictureTold || outcome.told == NotFoundTold ||
                     outcome.told == NewImageTold ||
                     outcome.told == QStringList{"error Connection refused"},
                 qPrintable(outcome.told.join(", ")));
        QVERIFY2(early.connections <= 10, QByteArray::number(early.connections));
        QCOMPARE(c.trouble(), "");
    }

    void aRedirectBringsNoHeaderLine_data()
    {
        const Rows<QByteArray, QByteArray> row("path", "fetched");
        row("header mark", "/b\1Cookie: evil", "/bCookie: evil");
        row("line feed", "/b\nCookie: evil", "/b");
        row("carriage return", "/b\rCookie: evil", "/b");
        row("NUL, tab, escape", QByteArray("/b\0\t\x1B[2J", 8), "/b[2J");
        row("C1 controls", "/b\xC2\x85\xC2\x9B", "/b");
    }

    void aRedirectBringsNoHeaderLine()
    {
        QFETCH(QByteArray, path);
        QFETCH(QByteArray, fetched);
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(httpAnswer({}, "Location: http://" + server.url({}).toLatin1() + path + "\r\n",
                               "302 Found"));
        server.play(pictureAnswer(picture()));
        QCOMPARE(c.fetch(server.url()).told,
                 (QStringList{"change http://127.0.0.1" + QString::fromLatin1(fetched), "done"}));
        const auto first = linesOf(server.requests().value(0));
        const auto second = linesOf(server.requests().value(1));
        QCOMPARE(second.value(0), "GET " + fetched.replace(' ', "%20") + " HTTP/1.0");
        QCOMPARE(second.mid(1), first.mid(1));
        QCOMPARE(c.trouble(), "");
    }

    void aDateBringsNoHeaderLine_data()
    {
        const Rows<QByteArray, QByteArray> row("date", "sent");
        row("line feed", "Mon\nCookie: evil", "Mon");
        row("carriage return", "Mon\rCookie: evil", "Mon");
        row("line feed first", "\nCookie: evil", {});
        row("NUL", QByteArray("Mon\0day", 7), "Monday");
        row("header mark", "Mon\1day", "Monday");
        // The history's separator: it would end the date there.
        row("0xFF", "Mon\377day",
            "Mony\xCC\x88"
            "day");
    }

    void aDateBringsNoHeaderLine()
    {
        QFETCH(QByteArray, date);
        QFETCH(QByteArray, sent);
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(picture(), "Last-Modified: " + date + "\r\n"));
        server.play(httpAnswer({}, {}, "304 Not Modified"));
        QCOMPARE(c.fetch(server.url()).told, NewImageTold);
        QCOMPARE(c.fetch().status, "  Not a new image: Process stopped.");
        QCOMPARE(c.told(), QStringList{"error Not a new image"});
        const auto first = linesOf(server.requests().value(0));
        auto second = linesOf(server.requests().value(1));
        if (!sent.isEmpty()) {
            QCOMPARE(second.value(1), "if-Modified-Since: " + sent);
            second.removeAt(1);
        }
        QCOMPARE(second, first);
        QCOMPARE(c.trouble(), "");
    }

    void aPictureThatCostsTooMuchIsNone_data()
    {
        const Rows<QByteArray> row("body");
        constexpr int side = 30'000;
        constexpr int most = 0x7FFFFFFF;
        const QSize large(side, side);
        const QByteArray megabyte(1'000'000, '\0');
        row("jpeg of 30000 x 30000", odd::jpeg({.size = large}));
        row("jpeg of 65535 x 65535", odd::jpeg({.size = {65535, 65535}}, megabyte));
        row("progressive jpeg of 30000 x 30000",
            odd::jpeg({.size = large, .marker = 0xC2}, megabyte));
        row("jpeg of 20,000 scans",
            odd::jpegInScans({.size = {1'000, 1'000}, .marker = 0xC2}, 20'000));
        row("jpeg of 100,000 comments", odd::jpegStart() +
                                            odd::jpegSegment(0xFE, "k: v").repeated(100'000) +
                                            odd::jpeg({.size = {8, 8}}).mid(2));
        row("gif of 30000 x 30000", odd::gif(large, QRect({}, large), odd::gifRuns(1'000'000)));
        row("bitmap of 30000 x 30000",
            odd::bitmap({.width = side, .height = side, .bits = 8, .compression = 1}, megabyte));
        row("bitmap of 2^31 x 2^31", odd::bitmap({.width = most, .height = most}, {}));
        row("bitmap of -2^31 rows", odd::bitmap({.width = 1, .height = -most - 1}, megabyte));
        row("png of 30000 x 30000", odd::pngOf({.size = large, .bits = 1, .colourType = 0}, 0));
        row("webp of 16384 x 16384",
            odd::webp(odd::webpChunk("VP8L", odd::losslessWebp({.size = {16'384, 16'384}}))));
        row("webp of 65,536 codes",
            odd::webp(odd::webpChunk("VP8L",
                                     odd::losslessWebp({.size = {1'024, 1'024}, .blockBits = 2}))));
        row("another format", odd::encoded(odd::scenery({64, 48}), "ppm"));
    }

    void aPictureThatCostsTooMuchIsNone()
    {
        QFETCH(QByteArray, body);
        ShownCamera c;
        QCOMPARE(c.trouble(), "");
        const QByteArray before = c.picture();
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(body));
        Outcome outcome;
        const double times =
            timesTheCost([&] { outcome = c.fetch(server.url()); }, decodeTwelveMegapixels);
        QCOMPARE(outcome.told, NotPictureTold);
        QCOMPARE(outcome.status, NotPicture);
        QVERIFY2(times < 8, qPrintable(QString::number(times)));
        QCOMPARE(c.picture(), before);
        QVERIFY(!c.busy());
        QCOMPARE(c.trouble(), "");
    }

    /// Whoever is told of a refused answer may show a dialog, in which events go on.
    void aRefusedAnswersBodyIsNoAnswer()
    {
        ShownCamera c;
        ScriptedServer server;
        server.listen();
        server.play(httpAnswer(picture(), JpegType, "404 Not Found"), End::KeepOpen);
        int errors = 0;
        connect(&c.cam, &WebCam::Error, &c, [&] {
            if (++errors == 1)
                QTRY_COMPARE(server.openConnections(), 0);
        });
        QCOMPARE(c.fetch(server.url()).told, NotFoundTold);
        QCOMPARE(c.status(), NotFound);
        QCOMPARE(errors, 1);
        QCOMPARE(c.trouble(), "");
    }
};

QTEST_MAIN(FetchHostileTest)
#include "tst_FetchHostile.moc"
