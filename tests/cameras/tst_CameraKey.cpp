#include "cameras/CameraKey.h"
#include "support/Rows.h"

class CameraKeyTest : public QObject
{
    Q_OBJECT
private slots:
    void oneCameraHasOneComparableKey_data()
    {
        const Rows<QString, QString> row("key", "comparable");
        row("plain", "cam/a.jpg", "cam/a.jpg");
        row("with its scheme", "HTTP://cam/a.jpg", "cam/a.jpg");
        row("secure", "https://cam/a.jpg", "https://cam/a.jpg");
        row("secure in capitals", "HTTPS://cam/A.jpg\1Cookie: A", "https://cam/A.jpg\1Cookie: A");
        row("empty", "", "");
    }

    void oneCameraHasOneComparableKey()
    {
        QFETCH(QString, key);
        QTEST(comparableKey(key), "comparable");
    }

    void splitsAtTheFirstMarkOnly()
    {
        const auto plain = splitCameraKey("host/a.jpg");
        QCOMPARE(plain.address, "host/a.jpg");
        QCOMPARE(plain.extraHeader, "");
        const auto marked = splitCameraKey("host/a.jpg\1Cookie: a\1b");
        QCOMPARE(marked.address, "host/a.jpg");
        QCOMPARE(marked.extraHeader, "Cookie: a\1b");
    }

    void joinsWhatItSplits()
    {
        QCOMPARE(joinCameraKey("host/a.jpg", ""), "host/a.jpg");
        const QString marked = "host/a.jpg\1Cookie: a\1b";
        const auto [address, extraHeader] = splitCameraKey(marked);
        QCOMPARE(joinCameraKey(address, extraHeader), marked);
    }

    void stripsTheSchemeInAnyCase()
    {
        QCOMPARE(withoutHttpScheme("http://host/"), "host/");
        QCOMPARE(withoutHttpScheme("HtTp://host/"), "host/");
        QCOMPARE(withoutHttpScheme("host/http://"), "host/http://");
        QCOMPARE(withoutHttpScheme("http://http://host"), "http://host");
        QCOMPARE(withoutHttpScheme("http:/host"), "http:/host");
        QCOMPARE(withoutHttpScheme("https://host/"), "https://host/");
        QCOMPARE(withoutHttpScheme("HTTPS://host/"), "HTTPS://host/");
    }

    void hostEndsAtTheFirstSlash()
    {
        QCOMPARE(hostPartOf(u"host:81/a/b"), "host:81");
        QCOMPARE(hostPartOf(u"host"), "host");
        QCOMPARE(hostPartOf(u"/a"), "");
        QCOMPARE(hostPartOf(u"https://host:8443/a/b"), "https://host:8443");
        QCOMPARE(hostPartOf(u"HTTPS://Host"), "https://Host");
        QCOMPARE(hostPartOf(u"https:///a"), "https://");
        QCOMPARE(hostPartOf(u"host/https://other/"), "host");
    }

    void onlyASecureAddressBeginsWithHttps()
    {
        for (const char* secure : {"https://host", "HTTPS://host", "hTTpS://"})
            QVERIFY2(isSecureAddress(QString(secure)), secure);
        for (const char* plain :
             {"", "host", "https", "https:/host", "http://host", " https://host", "host/https://x"})
            QVERIFY2(!isSecureAddress(QString(plain)), plain);
    }

    void namesHaveNoWebScheme()
    {
        for (const char* address : {"http://host", "HTTP://", "https://host", "Https://host"})
            QVERIFY2(hasWebScheme(QString(address)), address);
        for (const char* name : {"", "host", "http:/host", "http", "ftp://host", "x http://"})
            QVERIFY2(!hasWebScheme(QString(name)), name);
    }

    void theWorldSeesAnAddressWithItsScheme()
    {
        QCOMPARE(webAddressOf("host:81/a"), "http://host:81/a");
        QCOMPARE(webAddressOf(""), "http://");
        QCOMPARE(webAddressOf("https://host:8443/a"), "https://host:8443/a");
        QCOMPARE(webAddressOf("HTTPS://host/a"), "HTTPS://host/a");
    }
};

QTEST_GUILESS_MAIN(CameraKeyTest)
#include "tst_CameraKey.moc"
