#include "shared/CameraKey.h"

class CameraKeyTest : public QObject
{
    Q_OBJECT
private slots:
    void splitsAtTheFirstMarkOnly();
    void stripsTheSchemeInAnyCase();
    void hostEndsAtTheFirstSlash();
};

void CameraKeyTest::splitsAtTheFirstMarkOnly()
{
    const auto plain = splitCameraKey("host/a.jpg");
    QCOMPARE(plain.address, "host/a.jpg");
    QCOMPARE(plain.extraHeader, "");
    const auto marked = splitCameraKey("host/a.jpg\x01"
                                       "Cookie: a\x01"
                                       "b");
    QCOMPARE(marked.address, "host/a.jpg");
    QCOMPARE(marked.extraHeader, "Cookie: a\x01"
                                 "b");
}

void CameraKeyTest::stripsTheSchemeInAnyCase()
{
    QCOMPARE(withoutHttpScheme("http://host/"), "host/");
    QCOMPARE(withoutHttpScheme("HtTp://host/"), "host/");
    QCOMPARE(withoutHttpScheme("host/http://"), "host/http://");
    QCOMPARE(withoutHttpScheme("http://http://host"), "http://host");
    QCOMPARE(withoutHttpScheme("http:/host"), "http:/host");
}

void CameraKeyTest::hostEndsAtTheFirstSlash()
{
    QCOMPARE(hostPartOf(u"host:81/a/b"), "host:81");
    QCOMPARE(hostPartOf(u"host"), "host");
    QCOMPARE(hostPartOf(u"/a"), "");
}

QTEST_GUILESS_MAIN(CameraKeyTest)
#include "tst_CameraKey.moc"
