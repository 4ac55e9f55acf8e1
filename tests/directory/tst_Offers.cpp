// Cameras on their way to the directory: their turns, their tries, and what becomes of them.

#include "cameras/EnteredCamera.h"
#include "directory/Offers.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"

#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray Taken = httpAnswer("<html>Thank you</html>");
const QByteArray Busy = httpAnswer({}, {}, "503 Service Unavailable");
const QByteArray NotFound = httpAnswer({}, {}, "404 Not Found");

/// A directory that plays scripts, and the offers to it.
struct Scene
{
    Scene()
    {
        server.listen();
        offers = std::make_unique<Offers>(server.port());
        // Time passes by elapse() alone.
        for (const char* name : {"tmrTry", "tmrPause", "Timer1"})
            timerOf(*offers, name).setInterval(600'000);
        QObject::connect(offers.get(), &Offers::Failed, offers.get(),
                         [this](const QStringList& names, const QString& reason) {
                             failed << names.join('|') + ": " + reason;
                         });
    }

    void add(const QString& name) const { offers->add("http://127.0.0.1", {name, "h/a", "", "c"}); }
    Timer& pause() const { return timerOf(*offers, "tmrPause"); }
    /// The try that runs fails, and the pause behind it is over.
    void passPause() const
    {
        QTRY_VERIFY(pause().Enabled());
        pause().elapse();
    }
    /// The names that came, in their order.
    QString asked() const
    {
        QStringList names;
        for (const QByteArray& request : server.requests())
            names << request.mid(request.indexOf("?n=") + 3, 1);
        return names.join(' ');
    }
    bool isIdle() const { return !pause().Enabled() && !timerOf(*offers, "tmrTry").Enabled(); }

    ScriptedServer server;
    std::unique_ptr<Offers> offers;
    QStringList failed;
};

} // namespace

class OffersTest : public QObject
{
    Q_OBJECT
private slots:
    void itsTimersHaveTheirTimes()
    {
        const Offers offers;
        QCOMPARE(timerOf(const_cast<Offers&>(offers), "tmrTry").Interval(), 60'000);
        QCOMPARE(timerOf(const_cast<Offers&>(offers), "tmrPause").Interval(), 20'000);
    }

    void anOfferIsOneRequest()
    {
        Scene s;
        s.server.play(Taken);
        s.offers->add("http://127.0.0.1", {u"Zürich & more"_s, "h/a", "", u"東京"_s});
        QTRY_COMPARE(s.server.requests().size(), 1);
        QVERIFY(s.server.requests().first().startsWith(
            "GET /pevora/?n=Z\xFCrich+%26+more&a=h/a&c=\xE6\x9D\xB1\xE4\xBA\xAC HTTP/1.0\r\n"));
        QTRY_VERIFY(s.isIdle());
        QCOMPARE(s.failed, QStringList());
        QCOMPARE(s.server.connections(), 1);
    }

    void offersWaitTheirTurn()
    {
        Scene s;
        s.server.play(Script{{}, Script::End::KeepOpen});
        s.server.play(Taken);
        for (const char* name : {"a", "b", "c"})
            s.add(name);
        QTRY_COMPARE(s.asked(), "a");
        QCOMPARE(s.server.connections(), 1);
        s.server.sendMore(Taken);
        QTRY_COMPARE(s.asked(), "a b c");
        QTRY_VERIFY(s.isIdle());
        QCOMPARE(s.failed, QStringList());
        s.add("d");
        QTRY_COMPARE(s.asked(), "a b c d");
    }

    void whatTheDirectoryHasIsNotOfferedAnew_data()
    {
        const Rows<QByteArray> row("answer");
        row("a page", Taken);
        row("no body", httpAnswer({}));
        row("no content", httpAnswer({}, {}, "204 No Content"));
        row("created", httpAnswer({}, {}, "201 Created"));
        row("cut behind its status", httpAnswer("ab", "Content-Length: 9\r\n"));
        row("no head", "ok");
    }

    void whatTheDirectoryHasIsNotOfferedAnew()
    {
        QFETCH(QByteArray, answer);
        Scene s;
        s.server.play(answer);
        s.add("a");
        QTRY_COMPARE(s.asked(), "a");
        QTRY_VERIFY(s.isIdle());
        QCOMPARE(s.failed, QStringList());
        s.offers->addFailed();
        QVERIFY(s.isIdle());
    }

    void whatMayPassIsTriedThreeTimes_data()
    {
        const Rows<Script, QString> row("script", "reason");
        const QByteArray status = "500 <b>\x1b[1m" + QByteArray(500, 'x');
        row("busy", Script{{Busy}}, "503 Service Unavailable");
        row("a long reason", Script{{httpAnswer({}, {}, status)}}, "500 <b>[1m" + QString(70, 'x'));
        row("a close without a word", Script{},
            "The server closed the connection without an answer");
        row("a reset", Script{{}, Script::End::Reset}, "The connection was reset");
        row("a reset amid the answer", Script{{httpAnswer("part")}, Script::End::Reset},
            "The connection was reset");
    }

    void whatMayPassIsTriedThreeTimes()
    {
        QFETCH(Script, script);
        Scene s;
        s.server.play(script);
        s.add("a");
        for (int n = 1; n < 3; ++n) {
            s.passPause();
            QCOMPARE(s.failed, QStringList());
        }
        QTRY_COMPARE(s.failed.size(), 1);
        QFETCH(QString, reason);
        QCOMPARE(s.failed.first(), "a: " + reason);
        QCOMPARE(s.asked(), "a a a");
        QVERIFY(s.isIdle());
    }

    void aRefusalIsFinal_data()
    {
        const Rows<QString> row("status");
        for (const char* status : {"404 Not Found", "403 Forbidden", "301 Moved", "302"})
            row(status, status);
    }

    void aRefusalIsFinal()
    {
        QFETCH(QString, status);
        Scene s;
        s.server.play(httpAnswer({}, {}, status.toLatin1()));
        s.add("a");
        QTRY_COMPARE(s.failed, QStringList{"a: " + status});
        QCOMPARE(s.asked(), "a");
        QVERIFY(s.isIdle());
    }

    void aLaterTryMaySucceed()
    {
        Scene s;
        s.server.play(Busy);
        s.server.play(Busy);
        s.server.play(Taken);
        s.add("a");
        s.add("b");
        s.passPause();
        s.passPause();
        // The one behind it has three tries of its own.
        QTRY_COMPARE(s.asked(), "a a a b");
        QTRY_VERIFY(s.isIdle());
        QCOMPARE(s.failed, QStringList());
    }

    void othersWaitForThePause()
    {
        Scene s;
        s.server.play(Busy);
        s.server.play(Taken);
        s.add("a");
        QTRY_VERIFY(s.pause().Enabled());
        s.add("b");
        s.offers->addFailed();
        QVERIFY(s.pause().Enabled());
        s.pause().elapse();
        QTRY_COMPARE(s.asked(), "a a b");
    }

    void aSilentServerIsGivenUp()
    {
        Scene s;
        s.server.play(Script{{}, Script::End::KeepOpen});
        s.add("a");
        for (int n = 1; n <= 3; ++n) {
            QTRY_COMPARE(s.server.requests().size(), n);
            timerOf(*s.offers, "tmrTry").elapse();
            QTRY_COMPARE(s.server.openConnections(), 0);
            if (n < 3)
                s.passPause();
        }
        QCOMPARE(s.failed, QStringList{"a: The server does not answer"});
        QVERIFY(s.isIdle());
    }

    void nobodyIsThere()
    {
        Offers offers(portOfNobody());
        QSignalSpy failed(&offers, &Offers::Failed);
        offers.add("http://127.0.0.1", {"a", "h/a", "", "c"});
        for (int n = 1; n < 3; ++n) {
            QTRY_VERIFY(timerOf(offers, "tmrPause").Enabled());
            timerOf(offers, "tmrPause").elapse();
        }
        QTRY_COMPARE(failed.size(), 1);
        QCOMPARE(failed[0], (QVariantList{QStringList{"a"}, "Connection refused"}));
    }

    void withoutADirectoryAnOfferFailsAtOnce()
    {
        Scene s;
        s.offers->add({}, {"a", "h/a", "", "c"});
        QCOMPARE(s.failed, QStringList{"a: No camera directory is set"});
        QVERIFY(s.isIdle());
    }

    void oneThatFailsHoldsNobodyUp()
    {
        Scene s;
        s.server.play(NotFound);
        s.server.play(Taken);
        s.add("a");
        s.add("b");
        QTRY_COMPARE(s.asked(), "a b");
        QTRY_VERIFY(s.isIdle());
        QCOMPARE(s.failed, QStringList{"a: 404 Not Found"});
    }

    void thoseThatFailedAreOfferedAnewInTheirOrder()
    {
        Scene s;
        s.server.play(NotFound);
        s.server.play(NotFound);
        s.server.play(Busy);
        s.server.play(Taken);
        s.add("a");
        s.add("b");
        QTRY_COMPARE(s.failed, (QStringList{"a: 404 Not Found", "a|b: 404 Not Found"}));
        s.offers->addFailed();
        s.passPause(); // with three tries again
        QTRY_COMPARE(s.asked(), "a b a a b");
        QTRY_VERIFY(s.isIdle());
        QCOMPARE(s.failed.size(), 2);
        s.offers->addFailed();
        QVERIFY(s.isIdle());
    }

    void theirEndDropsThem()
    {
        Scene s;
        s.server.play(Script{{}, Script::End::KeepOpen});
        s.add("a");
        s.add("b");
        QTRY_COMPARE(s.asked(), "a");
        s.offers.reset();
        QTRY_COMPARE(s.server.openConnections(), 0);
        QCOMPARE(s.asked(), "a");
        QCOMPARE(s.server.connections(), 1);
        QCOMPARE(s.failed, QStringList());
    }
};

QTEST_GUILESS_MAIN(OffersTest)
#include "tst_Offers.moc"
