#include "widgets/OpenAddress.h"

#include <QDesktopServices>

/// Stands in for the user's browser.
class Browser : public QObject
{
    Q_OBJECT
public:
    Browser()
    {
        for (const char* scheme : {"http", "https", "file", "mailto", "ftp", "javascript"})
            QDesktopServices::setUrlHandler(QString::fromLatin1(scheme), this, "open");
    }
    QList<QUrl> opened;

public slots:
    void open(const QUrl& url) { opened << url; }
};

class OpenAddressTest : public QObject
{
    Q_OBJECT
private slots:
    void webAddressesAreOpened_data()
    {
        QTest::addColumn<QString>("address");
        QTest::addColumn<QByteArray>("opened");
        QTest::newRow("http") << "http://camera.example/help/"
                              << QByteArray("http://camera.example/help/");
        QTest::newRow("https") << "https://camera.example" << QByteArray("https://camera.example");
        QTest::newRow("upper case")
            << "HTTP://Camera.example" << QByteArray("http://camera.example");
        QTest::newRow("port") << "http://127.0.0.1:8080" << QByteArray("http://127.0.0.1:8080");
        QTest::newRow("query") << "http://c.example/a?b=c&d=e#f"
                               << QByteArray("http://c.example/a?b=c&d=e#f");
        QTest::newRow("blank and quote")
            << "http://c.example/a b\"c" << QByteArray("http://c.example/a%20b%22c");
        QTest::newRow("not ASCII")
            << QStringLiteral("http://c.example/\u00e4") << QByteArray("http://c.example/%C3%A4");
    }

    void webAddressesAreOpened()
    {
        QFETCH(QString, address);
        QFETCH(QByteArray, opened);
        Browser browser;
        QVERIFY(openAddress(address));
        QCOMPARE(browser.opened.size(), 1);
        QCOMPARE(browser.opened.first().toEncoded(), opened);
    }

    void everythingElseIsRefused_data()
    {
        QTest::addColumn<QString>("address");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << "";
        QTest::newRow("no scheme") << "camera.example/help";
        QTest::newRow("no host") << "http://";
        QTest::newRow("no slashes") << "http:camera.example";
        QTest::newRow("file") << "file:///etc/passwd";
        QTest::newRow("mail") << "mailto:a@camera.example";
        QTest::newRow("ftp") << "ftp://camera.example/";
        QTest::newRow("script") << "javascript:alert(1)";
        QTest::newRow("path") << "/usr/bin/true";
        QTest::newRow("option") << "--help";
        QTest::newRow("bad port") << "http://camera.example:99999/";
        QTest::newRow("bad host") << "http://[::1/";
        QTest::newRow("scheme that begins like one") << "httpx://camera.example/";
    }

    void everythingElseIsRefused()
    {
        QFETCH(QString, address);
        Browser browser;
        QVERIFY(!openAddress(address));
        QVERIFY(browser.opened.isEmpty());
    }
};

QTEST_GUILESS_MAIN(OpenAddressTest)
#include "tst_OpenAddress.moc"
