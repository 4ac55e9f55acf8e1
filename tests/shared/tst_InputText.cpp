#include "shared/InputText.h"

using namespace Qt::Literals::StringLiterals;

class InputTextTest : public QObject
{
    Q_OBJECT
private slots:
    void theSeparatorChangesItsSpellingNotItsLook()
    {
        QCOMPARE(cleanInput(u"L'Haÿ ÿ"_s, false), u"L'Hay\u0308 y\u0308"_s);
        QCOMPARE(withoutSeparator(u"ÿ\n"_s), u"y\u0308\n"_s);
        QVERIFY(!cleanInput(u"ÿ"_s, true).contains(QChar(0xFF)));
        QCOMPARE(cleanInput(u"ÿ"_s, false).normalized(QString::NormalizationForm_C), u"ÿ"_s);
    }

    void controlCharactersAreDropped()
    {
        for (char16_t code = 0; code < 0x100; ++code) {
            const bool control = code < 0x20 || (code >= 0x7F && code <= 0x9F);
            const QString text = QString("a") + QChar(code) + "b";
            QCOMPARE(cleanInput(text, false) == "ab", control);
        }
        QCOMPARE(cleanInput("two\r\nlines\tand a tab", false), QString("twolinesand a tab"));
    }

    void theHeaderMarkStaysWhereItIsWanted()
    {
        const QString key = u"http://cam/a.jpg\u0001Cookie: x\u0002"_s;
        QCOMPARE(cleanInput(key, true), u"http://cam/a.jpg\u0001Cookie: x"_s);
        QCOMPARE(cleanInput(key, false), QString("http://cam/a.jpgCookie: x"));
    }

    void everythingElseStays()
    {
        const QString text = u"  AT&T <b>東京</b> \u00A0\u2028\U0001F4F7 y\u0308 "_s;
        QCOMPARE(cleanInput(text, false), text);
        QCOMPARE(cleanInput({}, false), QString());
        const QString once = cleanInput(u"ÿ\u0003ÿ"_s, false);
        QCOMPARE(cleanInput(once, false), once);
    }

    void theFirstLineEndsAtTheFirstBreak()
    {
        for (const char* text :
             {"one", "one\r\ntwo", "one\ntwo\rthree", "one\rtwo\nthree", "one\n"})
            QCOMPARE(firstLineOf(text), QString("one"));
        QCOMPARE(firstLineOf("\ntwo"), QString());
        QCOMPARE(firstLineOf({}), QString());
    }
};

QTEST_GUILESS_MAIN(InputTextTest)
#include "tst_InputText.moc"
