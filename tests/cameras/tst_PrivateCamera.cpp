#include "cameras/PrivateCamera.h"
#include "support/Rows.h"

class PrivateCameraTest : public QObject
{
    Q_OBJECT
private slots:
    void camerasThatAreNobodyElsesBusiness_data()
    {
        const Rows<QString, bool> row("key", "isPrivate");
        const auto is = [&](const char* key) { row(key, key, true); };
        const auto isNot = [&](const char* key) { row(key, key, false); };
        is("10.0.0.1/a.jpg");
        is("http://10.255.255.255:8080/a.jpg");
        is("https://10.1.2.3");
        is("172.16.0.1/");
        is("172.31.9.9/");
        is("192.168.178.20/cgi?x=1");
        is("127.0.0.1/a.jpg");
        is("127.1/a.jpg"); // the same
        is("localhost/a.jpg");
        is("LocalHost:81/a.jpg");
        is("localhost./a.jpg");
        is("cam.localhost/a.jpg");
        is("cam.local/a.jpg");
        is("HTTP://My.Cam.LOCAL/a.jpg");
        is("[::1]/a.jpg");
        is("[::1]:8080/a.jpg");
        is("[0:0:0:0:0:0:0:1]/a.jpg");
        is("[fe80::1]/a.jpg");
        is("[FEBF::1]/a.jpg");
        is("[fc00::1]/a.jpg");
        is("[fd12:3456::1]/a.jpg");
        is("[::ffff:192.168.1.2]/a.jpg");
        is("me:secret@example.org/a.jpg");
        is("http://me@example.org/a.jpg");
        row("a header with a password", "example.org/a.jpg\1Authorization: Basic bWU6c2VjcmV0",
            true);
        row("in other letters", "example.org/a.jpg\1authorization:Basic x", true);

        isNot("example.org/a.jpg");
        isNot("https://example.org:8443/a.jpg");
        isNot("example.org/10.0.0.1/localhost");
        isNot("example.org/a@b.jpg");
        isNot("example.org/?u=me:secret@cam.local");
        isNot("10.example.org/a.jpg");
        isNot("11.0.0.1/a.jpg");
        isNot("110.0.0.1/a.jpg");
        isNot("172.15.0.1/a.jpg");
        isNot("172.32.0.1/a.jpg");
        isNot("192.169.0.1/a.jpg");
        isNot("192.168.example.org/a.jpg");
        isNot("128.0.0.1/a.jpg");
        isNot("localhost.example.org/a.jpg");
        isNot("notlocal/a.jpg");
        isNot("cam.local.example.org/a.jpg");
        isNot("[2001:db8::1]/a.jpg");
        isNot("[fec0::1]/a.jpg");
        isNot("[fe00::1]/a.jpg");
        isNot("fd12.example.org/a.jpg");
        isNot("");
        isNot("http://");
        row("another header", "example.org/a.jpg\1Cookie: a=b", false);
        row("a word in another header", "example.org/a.jpg\1X: Authorization: b", false);
    }

    void camerasThatAreNobodyElsesBusiness()
    {
        QFETCH(QString, key);
        QTEST(isPrivateCamera(key), "isPrivate");
    }
};

QTEST_GUILESS_MAIN(PrivateCameraTest)
#include "tst_PrivateCamera.moc"
