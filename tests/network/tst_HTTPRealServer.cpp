// The directory as a community runs it: a CGI script below a web server from Debian.

#include "network/HTTP.h"
#include "support/Dialogs.h"
#include "support/ShownDirectory.h"
#include "support/TimeSeam.h"
#include "support/WebServer.h"

#include <QInputDialog>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Answers a category, the newest and a search each with its own cameras, and a submission with
/// the query that came.
const QByteArray Directory = R"(
field() { printf '%s\377' "$1"; }
printf 'Content-Type: text/plain\r\n\r\n'
case "$QUERY_STRING" in
cat=Cities) field Cities; field Rome; field rome.example/a.jpg; field Cities
            printf 'Z\374rich\377zurich.example/\001Cookie: a\r\n' ;;
new=1) field b; field B; field 1; field a; field A; printf '2' ;;
'q=two words') field found; field "$HTTP_REFERER"; printf 'two.example' ;;
n=*) printf '<html>%s</html>' "$QUERY_STRING" ;;
*) printf 'No Luck090877' ;;
esac
)";

} // namespace

class HTTPRealServerTest : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase()
    {
        m_server = std::make_unique<WebServer>(QString(), QString(), WebServer::Paths::AsTyped);
        m_server->put("pevora/index.cgi", Directory);
    }

    void anAnswerWithAnEndTagIsOverAtOnce()
    {
        HTTP http(nullptr, m_server->port());
        QSignalSpy finished(&http, &HTTP::Finished);
        http.Retrieve(u"http://127.0.0.1/pevora/index.cgi?n=Caf\u00e9+%26&a=cam.example/a b&c=x"_s);
        QTRY_COMPARE(finished.size(), 1);
        const QByteArray answer = finished[0][0].toByteArray();
        QVERIFY2(answer.startsWith("HTTP/1.0 200 OK\r\n"), answer.constData());
        QVERIFY2(answer.endsWith("\r\n\r\n<html>n=Caf\xE9+%26&a=cam.example/a b&c=x</html>"),
                 answer.constData());
    }

    void anOpenConnectionEndsByTheTimer()
    {
        HTTP http(nullptr, m_server->port());
        QSignalSpy finished(&http, &HTTP::Finished);
        http.Retrieve("127.0.0.1/pevora/index.cgi?q=nothing");
        QTRY_VERIFY(timerOf(http, "Timer1").Enabled());
        QCOMPARE(finished.size(), 0);
        timerOf(http, "Timer1").setInterval(100);
        QTRY_COMPARE(finished.size(), 1);
        const QByteArray answer = finished[0][0].toByteArray();
        QVERIFY2(answer.toLower().contains("connection: keep-alive"), answer.constData());
        QVERIFY2(answer.endsWith("\r\n\r\nNo Luck090877"), answer.constData());
    }

    void aMissingPageIsHandedOverToo()
    {
        HTTP http(nullptr, m_server->port());
        QSignalSpy finished(&http, &HTTP::Finished);
        http.Retrieve("127.0.0.1/nowhere");
        QTRY_COMPARE(finished.size(), 1);
        QVERIFY(finished[0][0].toByteArray().startsWith("HTTP/1.0 404 Not Found\r\n"));
    }

    void theInternetListAsksTheDirectory()
    {
        const ShownDirectory d(m_server->port());
        timerOf(*d.window, "Timer1").setInterval(100);
        d.query("mnuOptDownIt(2)");
        QCOMPARE(d.title(), "Finished [Found 2 Cams]");
        QCOMPARE(d.rows(), (QStringList{"Cities|Rome", u"Cities|Zürich"_s}));
        QCOMPARE(d.key(1), "zurich.example/\x01"
                           "Cookie: a");
        d.query("mnuOptNew");
        QCOMPARE(d.rows(), (QStringList{"b|B", "a|A"}));
        d.query("mnuOptDownIt(3)");
        QCOMPARE(d.title(), "Finished [No Cams Found]");
        d.entry("mnuOptSearch").trigger();
        auto* prompt = openDialog<QInputDialog>();
        QVERIFY(prompt);
        prompt->setTextValue("two words");
        prompt->accept();
        QTRY_COMPARE(d.title(), "Finished [Found 1 Cams]");
        QCOMPARE(d.rows(), QStringList{"found|HTTP ActiveX Control"});
    }

    void aServerThatIsGoneIsAnError()
    {
        const ShownDirectory d(m_server->port());
        m_server->stop();
        d.query("mnuOptNew");
        QCOMPARE(d.title(), "Error: Connection refused");
    }

private:
    std::unique_ptr<WebServer> m_server;
};

QTEST_MAIN(HTTPRealServerTest)
#include "tst_HTTPRealServer.moc"
