#include "support/Browser.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "widgets/OpenAddress.h"

static QStringList everyScheme()
{
    return {"http", "https",      "httpx", "file", "mailto",
            "ftp",  "javascript", "data",  "smb",  "pevora-test"};
}

class OpenAddressTest : public QObject
{
    Q_OBJECT
private slots:
    void webAddressesAreOpened_data()
    {
        const Rows<QString, QByteArray> row("address", "opened");
        row("http", "http://camera.example/help/", "http://camera.example/help/");
        row("https", "https://camera.example", "https://camera.example");
        row("upper case", "HTTP://Camera.example", "http://camera.example");
        row("port", "http://127.0.0.1:8080", "http://127.0.0.1:8080");
        row("query", "http://c.example/a?b=c&d=e#f", "http://c.example/a?b=c&d=e#f");
        row("blank and quote", "http://c.example/a b\"c", "http://c.example/a%20b%22c");
        row("mail", "mailto:me@camera.example", "mailto:me@camera.example");
        row("not ASCII", QStringLiteral("http://c.example/\u00e4"), "http://c.example/%C3%A4");
    }

    void webAddressesAreOpened()
    {
        QFETCH(QString, address);
        const Browser browser(everyScheme());
        QVERIFY(openAddress(address));
        QCOMPARE(browser.opened.size(), 1);
        QTEST(browser.opened.first().toEncoded(), "opened");
    }

    void everythingElseIsRefused_data()
    {
        const Rows<QString> row("address");
        row("null", {});
        row("empty", "");
        row("no scheme", "camera.example/help");
        row("no host", "http://");
        row("no slashes", "http:camera.example");
        row("file", "file:///etc/passwd");
        row("mail with a file", "mailto:a@camera.example?attach=/etc/passwd");
        row("mail to nobody", "mailto:");
        row("data", "data:text/html,<script>alert(1)</script>");
        row("smb", "smb://camera.example/share");
        row("another program's", "pevora-test://camera.example/");
        row("script in capitals", "JavaScript:alert(1)//http://camera.example/");
        row("blank before it", " javascript:alert(1)");
        row("ftp", "ftp://camera.example/");
        row("script", "javascript:alert(1)");
        row("path", "/usr/bin/true");
        row("option", "--help");
        row("bad port", "http://camera.example:99999/");
        row("bad host", "http://[::1/");
        row("scheme that begins like one", "httpx://camera.example/");
    }

    void everythingElseIsRefused()
    {
        QFETCH(QString, address);
        const Browser browser(everyScheme());
        QVERIFY(!openAddress(address));
        QVERIFY(browser.opened.isEmpty());
    }

    void anAddressThatNobodyOpensIsSaid()
    {
        const NoBrowser none;
        QVERIFY(!openAddress("http://camera.example/"));
    }

    void aHelpPageIsOpened()
    {
        const Browser browser({"http", "file"});
        const ScratchFile page("a page #1%20.html");
        page.setContent("<p>");
        QVERIFY(openHelpPage(page.path()));
        QCOMPARE(browser.opened, QList<QUrl>{QUrl::fromLocalFile(page.path())});
    }

    void aHelpPageThatNobodyOpensIsSaid()
    {
        const NoBrowser none("file");
        const ScratchFile page("page.html");
        page.setContent("<p>");
        QVERIFY(!openHelpPage(page.path()));
    }

    void aFolderIsOpened()
    {
        const ScratchFile file("a file.html");
        file.setContent("text");
        const Browser browser(everyScheme());
        QVERIFY(openFolder(file.folder()));
        QCOMPARE(browser.opened, QList<QUrl>{QUrl::fromLocalFile(file.folder())});
        for (const QString& other :
             {QString(), file.path(), "file://" + file.folder(), file.folder() + "/none",
              QString("."), QString("http://camera.example/")})
            QVERIFY2(!openFolder(other), qPrintable(other));
        QCOMPARE(browser.opened.size(), 1);
    }

    void whatIsNoHelpPageIsRefused_data()
    {
        const Rows<QString> row("path");
        row("null", {});
        row("not there", "%1/missing.html");
        row("folder", "%1/folder.html");
        row("another file", "%1/program");
        row("from the working folder", "page.html");
        row("URL of the page", "file://%1/page.html");
        row("address", "http://camera.example/page.html");
        row("script", "javascript:alert(1)//.html");
    }

    void whatIsNoHelpPageIsRefused()
    {
        QFETCH(QString, path);
        const ScratchFile page("page.html");
        page.setContent("<p>");
        const QDir folder(page.folder());
        QVERIFY(folder.mkdir("folder.html"));
        writeFile(folder.filePath("program"), {});
        QVERIFY(QDir::setCurrent(folder.path()));
        const Browser browser({"http", "https", "file", "javascript"});
        QVERIFY(!openHelpPage(path.replace("%1", folder.path())));
        QVERIFY(browser.opened.isEmpty());
        QVERIFY(QDir::setCurrent(QDir::rootPath()));
    }
};

QTEST_GUILESS_MAIN(OpenAddressTest)
#include "tst_OpenAddress.moc"
