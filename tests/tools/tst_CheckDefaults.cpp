#include "support/Paths.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/WebServer.h"

/// Runs tools/check-defaults against a web server on this machine.
class CheckDefaultsTest : public QObject
{
    Q_OBJECT
private slots:
    void tellsWhatEachCameraAnswers_data()
    {
        const Rows<QByteArray, QString, QString, QString> row("body", "path", "word", "came");
        const QByteArray jpeg = encodedPicture({40, 30}, Qt::red);
        row("JPEG", jpeg, "/one", "ok", "JPEG");
        row("GIF", smallGif(), "/one", "ok", "GIF");
        row("bitmap", encodedPicture({4, 4}, Qt::red, "bmp"), "/one", "ok", "BMP");
        row("a page", "<html>", "/one.jpg", "FAIL", "no picture");
        row("nothing", {}, "/one.jpg", "FAIL", "no picture");
        row("no such file", jpeg, "/other.jpg", "FAIL", "status 404");
        row("a query, brackets", jpeg, "/one?[1-3]&a={b,c}", "ok", "JPEG");
        row("302", jpeg, "/moved.jpg", "ok", "JPEG");
        row("endless", jpeg.leftJustified(16 * 1024 * 1024 + 1, '\0'), "/one", "FAIL", "too long");
    }

    void tellsWhatEachCameraAnswers()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, path);
        QFETCH(QString, word);
        QFETCH(QString, came);
        WebServer server;
        for (const char* name : {"one", "one.jpg", "large.jpg"})
            server.put(name, body);
        const QString address = "http://" + server.url(path);
        const Answer answer = run({table({address})});
        QCOMPARE(answer.errors, QByteArray());
        QCOMPARE(answer.lines.size(), 2);
        const qsizetype bytes = came.startsWith("status") ? -1 : body.size();
        const QString line = answer.lines[0].simplified();
        QVERIFY2(line.startsWith(word + ' ' + came + ' '), qPrintable(line));
        QVERIFY2(line.endsWith(" Dublin, Ireland " + address), qPrintable(line));
        if (bytes >= 0)
            QVERIFY2(line.contains(QString(" %1 ").arg(bytes)), qPrintable(line));
        QCOMPARE(answer.exitCode, word == "ok" ? 0 : 1);
    }

    void aServerThatSaysNothingTimesOut()
    {
        QTcpServer silent;
        QVERIFY(silent.listen(QHostAddress::LocalHost));
        const QString host = QString("http://127.0.0.1:%1/a.jpg").arg(silent.serverPort());
        QTcpServer other;
        QVERIFY(other.listen(QHostAddress::LocalHost));
        const QString otherHost = QString("http://127.0.0.1:%1/a.jpg").arg(other.serverPort());
        // One that began before, but waits half a minute, as it does unasked.
        QProcess unasked;
        start(unasked, {table({otherHost})});
        QVERIFY(unasked.waitForStarted(HangMs) && other.waitForNewConnection(HangMs));
        Answer answer = run({"--timeout", "1", table({host})});
        QVERIFY(!unasked.waitForFinished(0));
        unasked.kill();
        unasked.waitForFinished(HangMs);
        QVERIFY2(answer.lines.value(0).startsWith("FAIL  timed out "), qPrintable(answer.lines[0]));
        QCOMPARE(answer.exitCode, 1);
        silent.close();
        answer = run({table({host})});
        QVERIFY2(answer.lines.value(0).startsWith("FAIL  no connection "),
                 qPrintable(answer.lines[0]));
    }

    void oneFailureIsEnoughToFail()
    {
        WebServer server;
        server.put("a.jpg", encodedPicture({40, 30}, Qt::red));
        const QString good = "http://" + server.url("/a.jpg");
        Answer answer = run({table({good, good})});
        QCOMPARE(answer.exitCode, 0);
        QCOMPARE(answer.lines.last(), "2 of 2 answer with a picture.");
        // Neither a file on this machine nor an option of the program that asks.
        answer = run({table({good, "file:///etc/hostname", "--version", good})});
        QCOMPARE(answer.exitCode, 1);
        QCOMPARE(answer.lines.size(), 5);
        QVERIFY(answer.lines[1].startsWith("FAIL  no http address "));
        QVERIFY(answer.lines[2].startsWith("FAIL  no http address "));
        QCOMPARE(answer.lines.last(), "2 of 4 answer with a picture.");
    }

    void changesNothing()
    {
        WebServer server;
        server.put("a.jpg", encodedPicture({40, 30}, Qt::red));
        const QString path =
            table({"http://" + server.url("/a.jpg"), "http://" + server.url("/b.jpg")});
        const QByteArray before = contentOf(path);
        QVERIFY(before != "none");
        QCOMPARE(run({path}).exitCode, 1);
        QCOMPARE(contentOf(path), before);
    }

    void saysHowItIsUsed()
    {
        const Answer answer = run({"--help"});
        QCOMPARE(answer.exitCode, 0);
        QVERIFY(answer.lines.join(' ').contains("--timeout SECONDS"));
        QVERIFY(answer.lines.last().endsWith("could be asked."));
    }

    void refuses_data()
    {
        const Rows<QStringList> row("arguments");
        row("an option nobody knows", {"--mark"});
        row("a file that is not there", {"/no/such/file"});
        row("a folder", {"/"});
        row("two files", {table({}), table({})});
        row("no cameras", {table({})});
        row("no seconds", {"--timeout"});
        row("seconds that are no number", {"--timeout", "1s", table({})});
    }

    void refuses()
    {
        QFETCH(QStringList, arguments);
        const Answer answer = run(arguments);
        QCOMPARE(answer.exitCode, 2);
        QVERIFY(answer.errors.startsWith("check-defaults: "));
    }

private:
    struct Answer
    {
        int exitCode = -1;
        QStringList lines; ///< of the standard output, without the first, the columns' names
        QByteArray errors;
    };

    static void start(QProcess& process, const QStringList& arguments)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("no_proxy", "*");
        process.setProcessEnvironment(environment);
        process.start(sourcePath("tools/check-defaults"), arguments);
    }

    static Answer run(const QStringList& arguments)
    {
        QProcess process;
        start(process, arguments);
        if (!process.waitForFinished(HangMs) || process.exitStatus() != QProcess::NormalExit)
            qFatal("check-defaults does not end");
        Answer answer;
        answer.exitCode = process.exitCode();
        answer.lines = QString::fromUtf8(process.readAllStandardOutput())
                           .split('\n', Qt::SkipEmptyParts)
                           .mid(1);
        answer.errors = process.readAllStandardError();
        return answer;
    }

    /// Writes a table with these addresses and gives its path.
    QString table(const QStringList& addresses)
    {
        QByteArray text = "category\tname\taddress\tpage\tdate\tchecked\tnote\n";
        for (const QString& address : addresses) {
            text += "Cities\tDublin, Ireland\t" + address.toUtf8() +
                    "\thttp://page.example/\t2020-01-01\tno\tA note\n";
        }
        writeFile(m_scratch.filePath("cameras.tsv"), text);
        return m_scratch.filePath("cameras.tsv");
    }

    QTemporaryDir m_scratch;
};

QTEST_GUILESS_MAIN(CheckDefaultsTest)
#include "tst_CheckDefaults.moc"
