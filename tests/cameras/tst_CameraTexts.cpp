#include "cameras/CameraTexts.h"

using namespace Qt::Literals::StringLiterals;

class CameraTextsTest : public QObject
{
    Q_OBJECT
private slots:
    void whatBreaksLinesBecomesABlank()
    {
        QCOMPARE(shownLine(u"a\r\nb\tc\u2028d\u2029e\u0085f\0g"_s), u"a  b c d e f g"_s);
        QCOMPARE(shownLine(u" AT&T <b>東京</b> "_s), u" AT&T <b>東京</b> "_s);
        QCOMPARE(shownLine({}), QString());
    }

    void aLongTextIsShownInPart()
    {
        QCOMPARE(shownLine(QString(10'000, 'a')), QString(10'000, 'a'));
        QCOMPARE(shownLine(QString(5'000'000, 'a')), QString(10'000, 'a'));
    }

    void theTipHasNameAndAddress()
    {
        QCOMPARE(cameraToolTip("A\nB", "cam.example/a.jpg"),
                 "<p>A B<br>http://cam.example/a.jpg</p>");
        QCOMPARE(cameraToolTip("<b>%2", "https://cam/&x"),
                 "<p>&lt;b&gt;%2<br>https://cam/&amp;x</p>");
        QCOMPARE(cameraToolTip("A", "HTTP://cam"), "<p>A<br>http://cam</p>");
    }

    void theTipHidesTheExtraHeader()
    {
        QVERIFY(!cameraToolTip("A", u"cam\u0001Cookie: secret"_s).contains("secret"));
    }

    void theTipIsShort()
    {
        QVERIFY(cameraToolTip(QString(100'000, 'a'), QString(100'000, 'b')).size() < 1'100);
    }

    void aLongWordHasPlacesToBreakAt()
    {
        const QString forty(40, 'a');
        QCOMPARE(shownToolTip(forty + forty + "b c"),
                 "<p>" + forty + u"\u200B"_s + forty + u"\u200Bb c</p>"_s);
    }

    void noCharacterIsCutInTwo()
    {
        const QString tip = shownToolTip(QString(499, ' ') + u"\U0001F4F7"_s);
        QCOMPARE(tip, "<p>" + QString(499, ' ') + "</p>");
    }
};

QTEST_GUILESS_MAIN(CameraTextsTest)
#include "tst_CameraTexts.moc"
