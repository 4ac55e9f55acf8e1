#include "settings/IniFile.h"
#include "support/Rows.h"

#include "support/Cost.h"

using namespace Qt::Literals::StringLiterals;

static IniFile parsed(const QByteArray& bytes)
{
    IniFile ini;
    if (!ini.parse(bytes))
        qFatal("not parsed");
    return ini;
}

class IniFileTest : public QObject
{
    Q_OBJECT
private slots:
    void readsValues_data()
    {
        // of key in MAIN
        const Rows<QByteArray, QString> row("bytes", "value");
        row("plain", "[MAIN]\r\nkey=value\r\n", "value");
        row("line feeds", "[MAIN]\nother=1\nkey=value\n", "value");
        row("carriage returns", "[MAIN]\rother=1\rkey=value\r", "value");
        row("no end of the last line", "[MAIN]\r\nkey=value", "value");
        row("other spelling", "[mAiN]\r\nKEY=Value\r\n", "Value");
        row("blanks around everything", " \t[ MAIN ]\t\r\n \tkey \t= \t a  b \t\r\n", "a  b");
        row("double quotes", "[MAIN]\r\nkey=\" a \"\r\n", " a ");
        row("single quotes", "[MAIN]\r\nkey= ' a ' \r\n", " a ");
        row("one pair of quotes only", "[MAIN]\r\nkey=\"'a'\"\r\n", "'a'");
        row("unequal quotes", "[MAIN]\r\nkey=\"a'\r\n", "\"a'");
        row("a lone quote", "[MAIN]\r\nkey=\"\r\n", "\"");
        row("empty quotes", "[MAIN]\r\nkey=\"\"\r\n", "");
        row("equals sign in the value", "[MAIN]\r\nkey=a=b\r\n", "a=b");
        row("semicolon in the value", "[MAIN]\r\nkey=a;b\r\n", "a;b");
        row("empty value", "[MAIN]\r\nkey=\r\n", "");
        row("comment", "[MAIN]\r\n;key=no\r\n ; key=no\r\nkey=yes\r\n", "yes");
        row("text behind the section", "[MAIN] ; [x]\r\nkey=value\r\n", "value");
        row("no such key", "[MAIN]\r\nkeys=value\r\nke=y\r\n", "");
        row("other section", "[MAINS]\r\nkey=no\r\n[MAI]\r\nkey=no\r\n", "");
        row("above all sections", "key=no\r\n[MAIN]\r\n", "");
        row("no equals sign", "[MAIN]\r\nkey\r\nkey=value\r\n", "value");
        row("no key", "[MAIN]\r\n=no\r\nkey=value\r\n", "value");
        row("section without its end", "[MAIN]\r\n[OTHER\r\nkey=value\r\n", "value");
        row("byte order mark", "\xEF\xBB\xBF[MAIN]\r\nkey=\xC3\xBC\r\n", u"ü"_s);
        row("code page", "[MAIN]\r\nkey=Gr\xFC\xDF\x65\r\n", u"Grüße"_s);
        row("both in one file", "[MAIN]\r\nother=\xFC\r\nkey=\xC3\xBC\r\n", u"ü"_s);
        row("a long value is whole", "[MAIN]\r\nkey=" + QByteArray(5000, 'x'), QString(5000, u'x'));
        row("nothing", "", "");
        row("garbage", QByteArray("[\0]=[[;\xFF\n\r\r=\n]=", 15), "");
    }

    void readsValues()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, value);
        const IniFile ini = parsed(bytes);
        QCOMPARE(ini.value("MAIN", "key"), value);
        QCOMPARE(ini.value("main", "KEY"), value);
        // Nothing that was not set changes.
        QCOMPARE(ini.bytes(), bytes);
    }

    void firstSectionAndFirstKeyWin()
    {
        const IniFile ini = parsed("[A]\r\nx=1\r\nX=2\r\n[B]\r\nx=3\r\n[a]\r\nx=4\r\ny=5\r\n");
        QCOMPARE(ini.value("A", "x"), QString("1"));
        QCOMPARE(ini.value("A", "y"), QString());
        QCOMPARE(ini.value("B", "x"), QString("3"));
    }

    void writesKeysAndSections_data()
    {
        // with [MAIN] KEY=new
        const Rows<QByteArray, QByteArray> row("before", "after");
        row("nothing yet", "", "[MAIN]\r\nKEY=new\r\n");
        row("byte order mark alone", "\xEF\xBB\xBF", "\xEF\xBB\xBF[MAIN]\r\nKEY=new\r\n");
        row("new section at the end", "[A]\r\nx=1\r\n", "[A]\r\nx=1\r\n[MAIN]\r\nKEY=new\r\n");
        row("after a line without end", "[A]\nx=1", "[A]\nx=1\r\n[MAIN]\r\nKEY=new\r\n");
        row("after blanks without end", "[A]\nx=1\n  ", "[A]\nx=1\n  \r\n[MAIN]\r\nKEY=new\r\n");
        row("new key in an empty section", "[MAIN]\r\n\r\n[B]\r\n",
            "[MAIN]\r\nKEY=new\r\n\r\n[B]\r\n");
        row("new key in a section without end", "[main]", "[main]\r\nKEY=new\r\n");
        row("new key after the last line that is not blank", "[MAIN]\nx=1\n;c\n\n \t\n[B]\ny=2\n",
            "[MAIN]\nx=1\n;c\nKEY=new\r\n\n \t\n[B]\ny=2\n");
        row("blank lines between others stay", "[MAIN]\n\n\n;c\n\nx=1\n\n",
            "[MAIN]\n\n\n;c\n\nx=1\nKEY=new\r\n\n");
        row("new key goes to the first section of the name", "[MAIN]\r\n[B]\r\n[MAIN]\r\nkey=2\r\n",
            "[MAIN]\r\nKEY=new\r\n[B]\r\n[MAIN]\r\nkey=2\r\n");
        row("an old key is written in place", "[MAIN]\na=1\n  key = old ; x\nb=2\n",
            "[MAIN]\na=1\nKEY=new\r\nb=2\n");
        row("the first of several", "[MAIN]\r\nkey=1\r\nKey=2\r\n",
            "[MAIN]\r\nKEY=new\r\nKey=2\r\n");
        row("the last line without end", "[MAIN]\nkey=1", "[MAIN]\nKEY=new\r\n");
        row("same value, other spelling", "[MAIN]\r\nkey=new\r\n", "[MAIN]\r\nKEY=new\r\n");
        row("unknown lines stay byte for byte",
            "\xFF\xFE\n[MAIN]\n;\xFC \xC3\xBC\t\r#\n[x\n=\r\n\r\r",
            "\xFF\xFE\n[MAIN]\n;\xFC \xC3\xBC\t\r#\n[x\n=\r\nKEY=new\r\n\r\r");
        row("a line without equals sign is no key", "[MAIN]\r\nKEY\r\n",
            "[MAIN]\r\nKEY\r\nKEY=new\r\n");
        row("a commented key is no key", "[MAIN]\r\n;KEY=1\r\n", "[MAIN]\r\n;KEY=1\r\nKEY=new\r\n");
        row("keys above all sections are out of reach", "KEY=1\r\n",
            "KEY=1\r\n[MAIN]\r\nKEY=new\r\n");
    }

    void writesKeysAndSections()
    {
        QFETCH(QByteArray, before);
        QFETCH(QByteArray, after);
        IniFile ini = parsed(before);
        QVERIFY(ini.setValue("MAIN", "KEY", "new"));
        QCOMPARE(ini.bytes(), after);
        QCOMPARE(ini.value("MAIN", "KEY"), QString("new"));
        QCOMPARE(parsed(after).value("MAIN", "key"), QString("new"));
    }

    void everyValueReadsBackAsWritten()
    {
        const QStringList values = {"",        " ",         "\t",   " a",   "a ",      "\"a\"",
                                    "'a'",     "\"",        "''",   "\"\"", "\" a",    "a\"",
                                    "'\"'",    "\"a'",      "a=b",  ";a",   "[A]",     "= x",
                                    "\x01",    "AT&T",      "a\tb", u"ü"_s, u"Ã¼"_s,   u"東"_s,
                                    u" ü\""_s, u"\uFEFF"_s, u"ÿ"_s, "\v",   "\xC2\xA0"};
        IniFile ini;
        for (const QString& value : values) {
            ini.setValue("S", "K", value);
            QCOMPARE(ini.value("S", "k"), value);
            QCOMPARE(parsed(ini.bytes()).value("s", "k"), value);
        }
        // Quotes only where they are needed.
        ini.setValue("S", "K", "a b");
        QCOMPARE(ini.bytes(), QByteArray("[S]\r\nK=a b\r\n"));
        ini.setValue("S", "K", " a b ");
        QCOMPARE(ini.bytes(), QByteArray("[S]\r\nK=\" a b \"\r\n"));

        QRandomGenerator random(5);
        const QString letters = u" \t\"'a=;[]ü\u00C3\u00BC東\v"_s;
        for (int round = 0; round < 20'000; ++round) {
            QString value;
            for (int i = random.bounded(6); i > 0; --i)
                value += letters[random.bounded(int(letters.size()))];
            ini.setValue("S", "K", value);
            QCOMPARE(parsed(ini.bytes()).value("S", "K"), value);
        }
    }

    void aLineBreakBecomesOneBlank()
    {
        IniFile ini;
        ini.setValue("S", "K", "a\r\nb\nc\rd");
        QCOMPARE(ini.bytes(), QByteArray("[S]\r\nK=a b c d\r\n"));
        ini.setValue("S", "K", "a\n");
        QCOMPARE(ini.bytes(), QByteArray("[S]\r\nK=\"a \"\r\n"));
        QCOMPARE(ini.value("S", "K"), QString("a "));
    }

    void namesMatchAcrossSpellings()
    {
        for (const QString& name :
             {u"name[3]"_s, u"größe"_s, u"straße"_s, u"ıi"_s, u"ΣΑΣ"_s, u"東"_s, u"ÿ"_s, u"ǆ"_s}) {
            IniFile ini;
            ini.setValue("S", name.toUpper(), "1");
            const IniFile again = parsed(ini.bytes());
            QCOMPARE(again.value("S", name), QString("1"));
            QCOMPARE(again.value("S", name.toLower()), QString("1"));
            QCOMPARE(again.value("S", name.toUpper()), QString("1"));
        }
        IniFile ini = parsed("[Gr\xFC\xDF\x65]\r\nn\xE4me=1\r\n");
        QCOMPARE(ini.value(u"GRÜSSE"_s, u"NÄME"_s), QString("1"));
    }

    void namesThatCouldNotBeReadAreNotWritten()
    {
        const QByteArray before = "[S]\r\na=1\r\n";
        IniFile ini = parsed(before);
        for (const QString key : {"", " ", "a=b", ";a", " ;a", "[a", "a\nb", "a\r"})
            QVERIFY2(!ini.setValue("S", key, "1"), qPrintable(key));
        for (const QString section : {"a]b", "a\nb", "\r"})
            QVERIFY2(!ini.setValue(section, "A", "1"), qPrintable(section));
        QCOMPARE(ini.bytes(), before);
        QVERIFY(ini.setValue("", "A", "1"));
        QCOMPARE(parsed(ini.bytes()).value("", "a"), QString("1"));
    }

    void settingWhatIsThereChangesNothing()
    {
        const QByteArray before = "[S]\nA = 1 \nB='x'\n";
        IniFile ini = parsed(before);
        QVERIFY(!ini.setValue("S", "A", "1"));
        QVERIFY(!ini.setValue("s", "B", "x"));
        QCOMPARE(ini.bytes(), before);
    }

    void removesAKey()
    {
        IniFile ini = parsed(";top\n[S]\na=1\n;c\nb=2\nA=3\n\n[T]\na=4\n");
        QVERIFY(!ini.removeKey("S", "c"));
        QVERIFY(!ini.removeKey("U", "a"));
        QVERIFY(ini.removeKey("s", "A"));
        // The second line of the same key does not come to light.
        QCOMPARE(ini.value("S", "a"), QString());
        QCOMPARE(ini.bytes(), QByteArray(";top\n[S]\n;c\nb=2\n\n[T]\na=4\n"));
        QVERIFY(!ini.removeKey("S", "a"));
        QVERIFY(ini.removeKey("S", "b"));
        QVERIFY(ini.removeKey("T", "a"));
        QCOMPARE(ini.bytes(), QByteArray(";top\n[S]\n;c\n\n[T]\n"));
    }

    void aRemovedKeyCanBeSetAgain()
    {
        IniFile ini = parsed("[S]\r\na=1\r\nb=2");
        QVERIFY(ini.removeKey("S", "b"));
        QVERIFY(ini.removeKey("S", "a"));
        QVERIFY(ini.setValue("S", "B", "3"));
        QVERIFY(ini.setValue("S", "A", "4"));
        QCOMPARE(ini.bytes(), QByteArray("[S]\r\nB=3\r\nA=4\r\n"));
        QCOMPARE(ini.value("S", "b"), QString("3"));
        QCOMPARE(ini.value("S", "a"), QString("4"));
    }

    void agreesWithASimpleModel()
    {
        // Any order of calls leaves what a map would hold, in memory and in the bytes.
        QRandomGenerator random(11);
        for (int round = 0; round < 300; ++round) {
            IniFile ini = parsed("\n;x\n[S0]\nK0=a\n\nk1=b\nk0=c\n\n[s1]\n \n[S0]\nK2=d");
            QMap<QString, QString> model = {{"S0/K0", "a"}, {"S0/K1", "b"}};
            for (int call = 0; call < 30; ++call) {
                const QString section = QString("S%1").arg(random.bounded(3));
                const QString key = QString("K%1").arg(random.bounded(4));
                if (random.bounded(3) == 0) {
                    QCOMPARE(ini.removeKey(section, key), model.remove(section + '/' + key) > 0);
                } else {
                    const QString value = QString::number(random.bounded(100));
                    ini.setValue(section, key, value);
                    model[section + '/' + key] = value;
                }
            }
            const IniFile again = parsed(ini.bytes());
            QCOMPARE(again.bytes(), ini.bytes());
            QVERIFY(ini.bytes().contains("\n;x\n"));
            for (int s = 0; s < 3; ++s) {
                for (int k = 0; k < 4; ++k) {
                    const QString section = QString("s%1").arg(s);
                    const QString key = QString("k%1").arg(k);
                    const QString expected = model.value((section + '/' + key).toUpper());
                    QCOMPARE(ini.value(section, key), expected);
                    QCOMPARE(again.value(section, key), expected);
                }
            }
        }
    }

    void anyBytesSurvive()
    {
        QRandomGenerator random(3);
        const QByteArray letters("[]=;\r\n\n a\"\xEF\xBB\xBF\xFC\0", 15);
        for (int round = 0; round < 20'000; ++round) {
            QByteArray bytes;
            for (int i = random.bounded(30); i > 0; --i)
                bytes += letters[random.bounded(int(letters.size()))];
            IniFile ini = parsed(bytes);
            QCOMPARE(ini.bytes(), bytes);
            ini.setValue("new", "KEY", "1");
            QCOMPARE(parsed(ini.bytes()).value("new", "key"), QString("1"));
            QVERIFY(ini.removeKey("new", "KEY"));
            QVERIFY(ini.bytes().startsWith(bytes));
        }
    }

    void eachOfManyFavouritesCostsTheSame()
    {
        // Nothing looks through the file for a key. They are in its middle, with blank lines behind
        // them.
        const QByteArray middle = "[VIEW]\r\nA=1\r\n[FAVORITES]\r\n\r\n\r\n[LAST]\r\nB=2\r\n";
        const double times = growth(4'000, [&](int count) {
            IniFile ini = parsed(middle);
            for (int i = 0; i < count; ++i) {
                ini.setValue("FAVORITES", QString("NAME[%1]").arg(i), "A camera somewhere");
                ini.setValue("FAVORITES", QString("URL[%1]").arg(i),
                             "http://example.com/camera.jpg");
            }
            const IniFile again = parsed(ini.bytes());
            int found = 0;
            for (int i = 0; i < count; ++i)
                found += !again.value("FAVORITES", QString("url[%1]").arg(i)).isEmpty();
            QCOMPARE(found, count);
        });
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }

    void tooManyLinesAreNoIniFile()
    {
        QByteArray bytes = "[S]\na=1\n";
        for (int i = 0; i < IniFile::MaxLines; ++i)
            bytes += "b=\n";
        IniFile ini;
        QVERIFY(!ini.parse(bytes));
        QCOMPARE(ini.value("S", "a"), QString());
        QCOMPARE(ini.bytes(), QByteArray());
        // Empty lines and comments cost nothing.
        QVERIFY(ini.parse("[S]\na=1\n" + QByteArray(2 * IniFile::MaxLines, '\n')));
        QCOMPARE(ini.value("S", "a"), QString("1"));
    }

    void aCopyOutlivesItsOrigin()
    {
        IniFile copy;
        {
            QByteArray bytes = "[S]\r\na=";
            bytes += QByteArray(10'000, 'x') + "\r\n";
            IniFile ini = parsed(bytes);
            bytes.fill('-');
            copy = ini;
            ini.setValue("S", "A", "other");
            ini.parse("");
        }
        QCOMPARE(copy.value("S", "a"), QString(10'000, u'x'));
    }
};

QTEST_GUILESS_MAIN(IniFileTest)
#include "tst_IniFile.moc"
