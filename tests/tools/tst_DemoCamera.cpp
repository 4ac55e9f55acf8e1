#include "support/Paths.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <QNetworkInterface>

#include <cmath>
#include <memory>
#include <vector>

namespace {

/// A demo camera on a free port, ended when it goes out of scope.
class Camera
{
public:
    explicit Camera(const QStringList& arguments = {})
    {
        m_process.start(demoCameraProgram(), QStringList{"--port", "0"} + arguments);
        while (!m_process.canReadLine() && m_process.waitForReadyRead(HangMs)) {
        }
        firstLine = QString::fromLatin1(m_process.readLine());
        static const QRegularExpression form("^Demo camera: http://127.0.0.1:(\\d+)/clock.jpg\n$");
        port = form.match(firstLine).captured(1).toUShort();
    }
    ~Camera()
    {
        m_process.kill();
        m_process.waitForFinished(HangMs);
    }

    QProcess& process() { return m_process; }

    QString firstLine;
    quint16 port = 0;

private:
    QProcess m_process;
};

struct Answer
{
    int status = 0;
    QMap<QByteArray, QByteArray> fields; ///< names in lower case
    QByteArray body;
};

/// A connection to a camera.
class Client
{
public:
    explicit Client(const Camera& camera)
    {
        socket.connectToHost(QHostAddress(QHostAddress::LocalHost), camera.port);
        socket.waitForConnected(HangMs);
    }

    /// Sends `request` and gives the answer to it; its status is 0 where none comes.
    Answer ask(const QByteArray& request, bool withBody = true)
    {
        socket.write(request);
        return next(withBody);
    }

    /// The next answer; `withBody` is false where the request was for the head alone.
    Answer next(bool withBody = true)
    {
        Answer answer;
        qsizetype end = -1;
        while ((end = m_received.indexOf("\r\n\r\n")) < 0) {
            if (!more())
                return answer;
        }
        QList<QByteArray> lines = m_received.left(end).split('\n');
        m_received.remove(0, end + 4);
        const QByteArray first = lines.takeFirst();
        for (const QByteArray& line : lines) {
            const qsizetype colon = line.indexOf(": ");
            answer.fields[line.left(colon).toLower()] = line.mid(colon + 2).trimmed();
        }
        const qsizetype length = answer.fields.value("content-length").toLongLong();
        while (withBody && m_received.size() < length) {
            if (!more())
                return answer;
        }
        if (withBody) {
            answer.body = m_received.left(length);
            m_received.remove(0, length);
        }
        answer.status = first.startsWith("HTTP/1.1 ") ? first.mid(9, 3).toInt() : 0;
        return answer;
    }

    /// The server closes the connection and has sent nothing beside the answers taken.
    bool isClosed()
    {
        while (socket.state() != QAbstractSocket::UnconnectedState && more()) {
        }
        return socket.state() == QAbstractSocket::UnconnectedState && m_received.isEmpty();
    }

    QTcpSocket socket;

private:
    bool more()
    {
        if (!socket.bytesAvailable() && !socket.waitForReadyRead(HangMs))
            return false;
        m_received += socket.readAll();
        return true;
    }

    QByteArray m_received;
};

const QByteArray pictureRequest = "GET /clock.jpg HTTP/1.1\r\nHost: localhost\r\n\r\n";

bool isJpeg(const Answer& answer)
{
    return answer.status == 200 && answer.fields.value("content-type") == "image/jpeg" &&
           answer.body.startsWith("\xff\xd8\xff") && answer.body.endsWith("\xff\xd9");
}

/// How many pixels of the middle ninth differ clearly.
int differenceInTheMiddle(const QImage& one, const QImage& other)
{
    int count = 0;
    for (int y = one.height() / 3; y < one.height() * 2 / 3; ++y) {
        for (int x = one.width() / 3; x < one.width() * 2 / 3; ++x)
            count += std::abs(qGray(one.pixel(x, y)) - qGray(other.pixel(x, y))) > 24;
    }
    return count;
}

} // namespace

/// Runs the demo camera as a program of its own and talks to it as a client would.
class DemoCameraTest : public QObject
{
    Q_OBJECT
private slots:
    void twoRequestsGetDifferentPictures()
    {
        Camera camera;
        QVERIFY2(camera.port, qPrintable(camera.firstLine));
        Client client(camera);
        QList<QImage> pictures;
        for (int request = 0; request < 2; ++request) {
            const Answer answer = client.ask(pictureRequest);
            QCOMPARE(answer.status, 200);
            QVERIFY(isJpeg(answer));
            QCOMPARE(answer.fields.value("content-length").toInt(), answer.body.size());
            pictures << QImage::fromData(answer.body, "jpeg");
            QCOMPARE(pictures.last().size(), QSize(1280, 720));
        }
        QVERIFY(differenceInTheMiddle(pictures.at(0), pictures.at(1)) > 20);
    }

    void rootIsThePictureToo()
    {
        Camera camera;
        const auto statusOf = [&](const QByteArray& target) {
            Client client(camera);
            const Answer answer =
                client.ask("GET " + target + " HTTP/1.1\r\nHost: localhost\r\n\r\n");
            return isJpeg(answer) ? answer.status : 0;
        };
        QCOMPARE(statusOf("/"), 200);
        QCOMPARE(statusOf("/clock.jpg?width=3"), 200);
        QCOMPARE(statusOf("http://localhost/clock.jpg"), 200);
        QCOMPARE(statusOf("HTTP://localhost"), 200);
    }

    void drawsTheSizeAskedFor()
    {
        Camera camera({"--size", "320x240", "--quality", "30"});
        Client client(camera);
        const Answer rough = client.ask(pictureRequest);
        QCOMPARE(QImage::fromData(rough.body, "jpeg").size(), QSize(320, 240));

        Camera fineCamera({"--size", "320x240", "--quality", "95"});
        Client fineClient(fineCamera);
        QVERIFY(fineClient.ask(pictureRequest).body.size() > rough.body.size() * 3 / 2);
    }

    void saysWhenThePictureWasChanged()
    {
        const qint64 before = QDateTime::currentSecsSinceEpoch();
        Camera camera;
        Client client(camera);
        const QByteArray value = client.ask(pictureRequest).fields.value("last-modified");
        static const QRegularExpression form("^(Mon|Tue|Wed|Thu|Fri|Sat|Sun), \\d\\d "
                                             "(Jan|Feb|Mar|Apr|May|Jun|Jul|Aug|Sep|Oct|Nov|Dec) "
                                             "\\d{4} \\d\\d:\\d\\d:\\d\\d GMT$");
        QVERIFY2(form.match(QString::fromLatin1(value)).hasMatch(), value.constData());
        QDateTime moment =
            QLocale::c().toDateTime(QString::fromLatin1(value), "ddd, dd MMM yyyy HH:mm:ss 'GMT'");
        moment.setTimeSpec(Qt::UTC);
        QVERIFY(moment.toSecsSinceEpoch() >= before);
        QVERIFY(moment.toSecsSinceEpoch() <= QDateTime::currentSecsSinceEpoch());
    }

    void answers304WhileThePictureStays()
    {
        Camera camera({"--unchanged", "3600"});
        Client client(camera);
        const Answer first = client.ask(pictureRequest);
        QCOMPARE(client.ask(pictureRequest).body, first.body);

        const QByteArray known = first.fields.value("last-modified");
        const Answer second =
            client.ask("GET /clock.jpg HTTP/1.1\r\nhOST: localhost\r\nif-Modified-since: " + known +
                       "\r\n\r\n");
        QCOMPARE(second.status, 304);
        QCOMPARE(second.fields.value("last-modified"), known);
        QVERIFY(!second.fields.contains("content-length"));
        // A body of the 304 would stand before the next answer.
        const Answer third = client.ask(pictureRequest);
        QVERIFY(isJpeg(third));
        QCOMPARE(third.body, first.body);
    }

    void answersAnew_data()
    {
        const Rows<QString, QByteArray> row("unchanged", "since");
        row("an older date", "3600", "Sun, 06 Nov 1994 08:49:37 GMT");
        row("the oldest form", "3600", "Sunday, 06-Nov-94 08:49:37 GMT");
        row("no date", "3600", "yesterday");
        row("a picture of its own for every request", "0", "Wed, 01 Jan 2098 00:00:00 GMT");
    }

    void answersAnew()
    {
        QFETCH(QString, unchanged);
        QFETCH(QByteArray, since);
        Camera camera({"--unchanged", unchanged});
        Client client(camera);
        const Answer answer = client.ask("GET / HTTP/1.0\r\nIf-Modified-Since: " + since +
                                         "\r\nConnection: Keep-Alive\r\n\r\n");
        QCOMPARE(answer.status, 200);
        QVERIFY(isJpeg(answer));
    }

    void closesWhereItShould_data()
    {
        const Rows<QByteArray, QByteArray, bool> row("version", "fields", "closes");
        const QByteArray host = "Host: localhost\r\n";
        row("1.0", "1.0", {}, true);
        row("1.0 keep-alive", "1.0", "Connection: Keep-Alive\r\n", false);
        row("1.0 other case and more", "1.0", "connection:te,  keep-alive \r\n", false);
        row("1.1", "1.1", host, false);
        row("1.1 close", "1.1", host + "Connection: CLOSE\r\n", true);
        row("1.1 with a body nobody reads", "1.1", host + "Content-Length: 3\r\n", true);
    }

    void closesWhereItShould()
    {
        QFETCH(QByteArray, version);
        QFETCH(QByteArray, fields);
        QFETCH(bool, closes);
        Camera camera;
        Client client(camera);
        const QByteArray request = "GET / HTTP/" + version + "\r\n" + fields + "\r\n";
        const Answer answer = client.ask(request);
        QCOMPARE(answer.status, 200);
        QCOMPARE(answer.fields.value("connection"), QByteArray(closes ? "close" : "keep-alive"));
        if (closes)
            QVERIFY(client.isClosed());
        else
            QCOMPARE(client.ask(request).status, 200);
    }

    void answersRequestsSentAheadInTurn()
    {
        Camera camera({"--size", "320x240"});
        Client client(camera);
        QByteArray requests;
        for (int request = 0; request < 40; ++request)
            requests +=
                request % 2 ? pictureRequest : "GET /no HTTP/1.1\r\nHost: localhost\r\n\r\n";
        client.socket.write(requests);
        for (int request = 0; request < 40; ++request)
            QCOMPARE(client.next().status, request % 2 ? 200 : 404);
    }

    void takesARequestInPieces()
    {
        Camera camera({"--size", "320x240"});
        Client client(camera);
        // Lines that end in LF alone, and empty lines before the request, are taken too.
        for (const char letter : QByteArray("\r\n\nGET / HTTP/1.1\nHost: localhost\n\n")) {
            client.socket.write(QByteArray(1, letter));
            client.socket.waitForBytesWritten(HangMs);
        }
        QVERIFY(isJpeg(client.next()));
    }

    void headSendsNoBody()
    {
        Camera camera({"--unchanged", "3600"});
        Client client(camera);
        const Answer head =
            client.ask("HEAD /clock.jpg HTTP/1.1\r\nHost: localhost\r\n\r\n", false);
        QCOMPARE(head.status, 200);
        const Answer whole = client.ask(pictureRequest);
        QVERIFY(isJpeg(whole));
        for (const char* name : {"content-length", "content-type", "last-modified"})
            QCOMPARE(head.fields.value(name), whole.fields.value(name));
    }

    void refuses_data()
    {
        const Rows<QByteArray, int, bool> row("request", "status", "closes");
        const QByteArray end = " HTTP/1.1\r\nHost: localhost\r\n\r\n";
        const auto broken = [&](const char* name, const QByteArray& request) {
            row(name, request, 400, true);
        };
        row("another path", "GET /clock.png" + end, 404, false);
        row("above the root", "GET /../clock.jpg" + end, 404, false);
        row("POST", "POST /clock.jpg" + end, 405, false);
        row("a method nobody knows", "FETCH /clock.jpg" + end, 405, false);
        row("a method in lower case", "get /clock.jpg" + end, 405, false);
        row("a target that is no path", "OPTIONS *" + end, 405, false);
        row("HTTP 2", "PRI * HTTP/2.0\r\n\r\nSM\r\n\r\n", 505, true);
        broken("no HTTP", "hello there, how are you?\r\n\r\n");
        broken("a request of 1991", "GET /clock.jpg\r\n\r\n");
        broken("bytes", QByteArray("\x16\x03\x01\x02\x00\x01\x00\r\n\r\n", 11));
        broken("no path", "GET clock.jpg" + end);
        broken("two blanks", "GET  /clock.jpg" + end);
        broken("no version", "GET / HTTP/one\r\n\r\n");
        broken("no host", "GET / HTTP/1.1\r\n\r\n");
        broken("two hosts", "GET / HTTP/1.1\r\nHost: a\r\nHost: b\r\n\r\n");
        broken("no colon", "GET / HTTP/1.0\r\nHost localhost\r\n\r\n");
        broken("a blank before the colon", "GET / HTTP/1.0\r\nHost : localhost\r\n\r\n");
        broken("a folded line", "GET / HTTP/1.0\r\nHost: localhost\r\n folded: yes\r\n\r\n");
        broken("a length that is none", "GET / HTTP/1.0\r\nContent-Length: -1\r\n\r\n");
    }

    void refuses()
    {
        QFETCH(QByteArray, request);
        QFETCH(int, status);
        QFETCH(bool, closes);
        Camera camera({"--size", "320x240"});
        Client client(camera);
        const Answer answer = client.ask(request);
        QCOMPARE(answer.status, status);
        if (status == 405)
            QCOMPARE(answer.fields.value("allow"), QByteArray("GET, HEAD"));
        if (closes)
            QVERIFY(client.isClosed());
        else
            QCOMPARE(client.ask(pictureRequest).status, 200);
        // Whatever it was, the next client is served.
        QCOMPARE(Client(camera).ask(pictureRequest).status, 200);
    }

    void refusesAnEndlessHeader()
    {
        Camera camera({"--size", "320x240"});
        Client fits(camera);
        const QByteArray start = "GET / HTTP/1.0\r\nX: ";
        QCOMPARE(fits.ask(start + QByteArray(8192 - start.size() - 4, 'x') + "\r\n\r\n").status,
                 200);
        Client endless(camera);
        QCOMPARE(endless.ask(start + QByteArray(8192, 'x')).status, 431);
        QVERIFY(endless.isClosed());
    }

    void closesAConnectionThatRests()
    {
        Camera camera({"--idle", "0.4", "--size", "320x240"});
        Client done(camera);
        QCOMPARE(done.ask(pictureRequest).status, 200);
        Client silent(camera);
        Client halfWay(camera);
        halfWay.socket.write("GET / HT");
        QVERIFY(halfWay.isClosed());
        QVERIFY(silent.isClosed());
        QVERIFY(done.isClosed());
    }

    void acceptsNoMoreConnectionsThanItsBound()
    {
        Camera camera({"--size", "320x240"});
        std::vector<std::unique_ptr<Client>> clients;
        for (int client = 0; client < 64; ++client) {
            clients.push_back(std::make_unique<Client>(camera));
            // The answer says that the server has taken the connection, and not the system alone.
            QCOMPARE(clients.back()->ask(pictureRequest).status, 200);
        }
        QVERIFY(Client(camera).isClosed());
        clients.pop_back();
        // Once only: the client that was served would be in the way of the next.
        QVERIFY(waitFor([&] { return Client(camera).ask(pictureRequest).status == 200; }));
    }

    void writesALineForARequestOnlyWhenAsked()
    {
        QTemporaryDir folder;
        const QString name = folder.filePath("requests.log");
        const auto talk = [](Camera& camera) {
            Client client(camera);
            client.ask("GET /n\x1b[31mo HTTP/1.0\r\n\r\n");
            QVERIFY(client.isClosed());
            client.socket.close();
            QCOMPARE(Client(camera).ask("GET /other HTTP/1.0\r\n\r\n").status, 404);
        };
        static const QRegularExpression form("^\\S+ \"GET /n\\?\\[31mo HTTP/1.0\" 400 \\d+\n\\S+ "
                                             "\"GET /other HTTP/1.0\" 404 \\d+\n$");

        Camera verbose({"--verbose"});
        talk(verbose);
        verbose.process().terminate();
        QVERIFY(verbose.process().waitForFinished(HangMs));
        const QString printed = QString::fromLatin1(verbose.process().readAllStandardOutput());
        QVERIFY2(form.match(printed).hasMatch(), qPrintable(printed));

        Camera logging({"--verbose", "--log", name});
        talk(logging);
        QVERIFY(form.match(QString::fromLatin1(contentOf(name))).hasMatch());

        Camera quiet;
        talk(quiet);
        for (Camera* camera : {&logging, &quiet}) {
            camera->process().terminate();
            QVERIFY(camera->process().waitForFinished(HangMs));
            QCOMPARE(camera->process().readAllStandardOutput(), QByteArray());
        }
    }

    void listensOnThisMachineOnly()
    {
        Camera camera({"--ipv6"});
        QVERIFY(camera.port);
        int others = 0;
        for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
            QTcpSocket socket;
            socket.connectToHost(address, camera.port);
            const bool isThere = socket.waitForConnected(HangMs);
            if (address.isLoopback()) {
                QVERIFY2(isThere, qPrintable(address.toString()));
            } else {
                ++others;
                QVERIFY2(!isThere, qPrintable(address.toString()));
            }
        }
        if (!others)
            qInfo("this machine has no address but the loopback's");
    }

    void endsWithoutComplaintWhenTerminated()
    {
        Camera camera;
        Client client(camera);
        QCOMPARE(client.ask(pictureRequest).status, 200);
        camera.process().terminate();
        QVERIFY(camera.process().waitForFinished(HangMs));
        QCOMPARE(camera.process().exitStatus(), QProcess::NormalExit);
        QCOMPARE(camera.process().exitCode(), 0);
        QVERIFY(client.isClosed());
    }

    void refusesBadOptions_data()
    {
        const Rows<QStringList> row("arguments");
        row("port", {"--port", "70000"});
        row("size", {"--size", "1280"});
        row("size too small", {"--size", "319x240"});
        row("size too large", {"--size", "7681x4320"});
        row("quality", {"--quality", "0"});
        row("unchanged", {"--unchanged", "-1"});
        row("unchanged is no number", {"--unchanged", "nan"});
        row("idle", {"--idle", "0"});
        row("log", {"--log", "/no/such/folder/log"});
        row("an argument", {"clock.jpg"});
        row("an option nobody knows", {"--colour"});
    }

    void refusesBadOptions()
    {
        QFETCH(QStringList, arguments);
        QProcess process;
        process.start(demoCameraProgram(), arguments);
        QVERIFY(process.waitForFinished(HangMs));
        QCOMPARE(process.exitStatus(), QProcess::NormalExit);
        QCOMPARE(process.exitCode(), 1);
        QVERIFY(!process.readAllStandardError().isEmpty());
        QCOMPARE(process.readAllStandardOutput(), QByteArray());
    }

    void saysThatAPortIsTaken()
    {
        Camera camera;
        QProcess second;
        second.start(demoCameraProgram(), {"--port", QString::number(camera.port)});
        QVERIFY(second.waitForFinished(HangMs));
        QCOMPARE(second.exitCode(), 1);
        QVERIFY(second.readAllStandardError().contains(QByteArray::number(camera.port)));
    }
};

QTEST_GUILESS_MAIN(DemoCameraTest)
#include "tst_DemoCamera.moc"
