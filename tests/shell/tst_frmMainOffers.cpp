// Cameras that are offered to the directory from the main window: what a person hears of one that
// the directory does not take.

#include "network/HTTP.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"
#include "viewer/WebCam.h"
#include "widgets/Notice.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace {

const QByteArray Taken = httpAnswer("ok");
const QByteArray NotFound = httpAnswer({}, {}, "404 Not <b>Found</b>");

/// The window with a directory of the test's.
struct Offering : OpenMain
{
    Offering()
        : OpenMain("[DIRECTORY]\r\nHOST=127.0.0.1\r\n")
    {
        server.listen();
        part<HTTP>("HTTP1").findChild<TcpClient*>("sckMain")->setRemotePort(server.port());
    }

    /// Enters a camera with a tick, as a person does.
    void offer(const QString& name)
    {
        part<QRadioButton>("opt(0)").click();
        part<QLineEdit>("txtName").setText(name);
        part<QLineEdit>("txtUrl").setText(name + ".example/a.jpg");
        part<QCheckBox>("chkAdd").click();
        part<QPushButton>("cmdAdd").click();
    }
    Notice& notice() { return part<WebCam>("Cam").notice(); }
    QString sentence() { return notice().sentence(); }
    QPushButton* button()
    {
        for (auto* one : notice().findChildren<QPushButton*>()) {
            if (one->isVisible())
                return one;
        }
        return nullptr;
    }

    ScriptedServer server;
};

} // namespace

class frmMainOffersTest : public QObject
{
    Q_OBJECT
private slots:
    void oneThatIsTakenIsNotSpokenOf()
    {
        Offering m;
        m.server.play(Taken);
        m.offer("Clock");
        QTRY_COMPARE(m.server.requests().size(), 1);
        QTRY_VERIFY(!timerOf(m.made(), "tmrTry").Enabled());
        QVERIFY(!m.sentence().contains("database"));
    }

    void oneThatFailsIsSaidAndOfferedAnew()
    {
        Offering m;
        m.server.play(NotFound);
        m.server.play(Taken);
        m.offer("Clock");
        QTRY_COMPARE(m.sentence(), "\"Clock\" could not be added to the internet database: 404 Not "
                                   "<b>Found</b>.");
        QCOMPARE(m.notice().findChild<QLabel*>("sentence")->textFormat(), Qt::PlainText);
        QVERIFY(m.button());
        QCOMPARE(m.button()->text(), "Try Again");
        m.button()->click();
        QCOMPARE(m.sentence(), "");
        QTRY_COMPARE(m.server.requests().size(), 2);
        QCOMPARE(m.server.requests()[0], m.server.requests()[1]);
        QTRY_VERIFY(!timerOf(m.made(), "tmrTry").Enabled());
        QCOMPARE(m.sentence(), "");
    }

    void severalThatFailAreOfferedAnewTogether()
    {
        Offering m;
        m.server.play(NotFound);
        m.server.play(NotFound);
        m.server.play(Taken);
        m.offer("Clock");
        m.offer("Tower");
        QTRY_COMPARE(m.sentence(), "2 cameras could not be added to the internet database: 404 Not "
                                   "<b>Found</b>.");
        m.button()->click();
        QTRY_COMPARE(m.server.requests().size(), 4);
        QCOMPARE(m.server.requests().mid(2), m.server.requests().first(2));
    }

    void twoInARowBothArrive()
    {
        Offering m;
        m.server.play(Script{{}, Script::End::KeepOpen});
        m.server.play(Taken);
        m.offer("Clock");
        m.offer("Tower");
        QTRY_COMPARE(m.server.requests().size(), 1);
        m.server.sendMore(Taken);
        m.server.closeNewest();
        QTRY_COMPARE(m.server.requests().size(), 2);
        QVERIFY(m.server.requests()[0].startsWith("GET /pevora/?n=Clock&"));
        QVERIFY(m.server.requests()[1].startsWith("GET /pevora/?n=Tower&"));
    }

    void theEndOfTheProgramDropsThoseThatWait()
    {
        Offering m;
        m.server.play(Script{{}, Script::End::KeepOpen});
        m.offer("Clock");
        m.offer("Tower");
        QTRY_COMPARE(m.server.requests().size(), 1);
        m.made().close();
        QTRY_COMPARE(m.server.openConnections(), 0);
        QCOMPARE(m.server.connections(), 1);
    }
};

QTEST_MAIN(frmMainOffersTest)
#include "tst_frmMainOffers.moc"
