#include "platform/CodePage.h"
#include "shared/DiskText.h"

using namespace Qt::Literals::StringLiterals;

class DiskTextTest : public QObject
{
    Q_OBJECT
private slots:
    void readsOldFiles()
    {
        QCOMPARE(fromDisk("Z\xFCrich, Caf\xE9 \x80 5"), u"Zürich, Café € 5"_s);
        QCOMPARE(fromDisk("\x93quoted\x94 \x96 \x85"), u"“quoted” – …"_s);
        QCOMPARE(fromDisk("plain"), QString("plain"));
        QCOMPARE(fromDisk(""), QString());
        QCOMPARE(fromDisk(QByteArrayView("a\0b", 3)), QString::fromUtf16(u"a\0b", 3));
    }

    void readsUtf8()
    {
        QCOMPARE(fromDisk("Z\xC3\xBCrich"), u"Zürich"_s);
        QCOMPARE(fromDisk("\xE6\x9D\xB1\xE4\xBA\xAC"), u"東京"_s);
        QCOMPARE(fromDisk("\xF0\x9F\x93\xB7"), u"\U0001F4F7"_s);
        // Overlong, cut or a surrogate: not valid, so the page.
        QCOMPARE(fromDisk("\xC0\x80"), u"\u00C0\u20AC"_s);
        QCOMPARE(fromDisk("\xE6\x9D"), u"\u00E6\u009D"_s);
        QCOMPARE(fromDisk("\xED\xA0\x80"), u"\u00ED\u00A0\u20AC"_s);
    }

    void everyByteOfThePageHasACharacterOfItsOwn()
    {
        QSet<QChar> seen;
        for (int byte = 0; byte < 256; ++byte) {
            const QByteArray one(1, static_cast<char>(byte));
            const QString text = fromCodePage(one);
            QCOMPARE(text.size(), 1);
            QVERIFY(text != QString(QChar::ReplacementCharacter));
            seen.insert(text[0]);
            const auto back = toCodePage(text);
            QVERIFY(back.has_value());
            QCOMPARE(*back, one);
        }
        QCOMPARE(seen.size(), 256);
        for (const char16_t open : {u'\u0081', u'\u008D', u'\u008F', u'\u0090', u'\u009D'})
            QCOMPARE(fromCodePage(QByteArray(1, static_cast<char>(open))), QString(QChar(open)));
    }

    void writesThePageWhereItHoldsEveryCharacter()
    {
        QCOMPARE(toDisk("plain"), QByteArray("plain"));
        QCOMPARE(toDisk(u"Zürich €"_s), QByteArray("Z\xFCrich \x80"));
        QCOMPARE(toDisk(u"東京"_s), QByteArray("\xE6\x9D\xB1\xE4\xBA\xAC"));
        QCOMPARE(toDisk(u"Zürich 東"_s), QByteArray("Z\xC3\xBCrich \xE6\x9D\xB1"));
        QCOMPARE(toDisk({}), QByteArray());
    }

    void writesUtf8WhereThePageWouldReadBackAsAnotherText()
    {
        // In the page "Ã¼" is the two bytes that are "ü" in UTF-8.
        const QString text = u"Ã¼"_s;
        QCOMPARE(toDisk(text), QByteArray("\xC3\x83\xC2\xBC"));
        QCOMPARE(fromDisk(toDisk(text)), text);
    }

    void thePageNeverReplacesACharacter()
    {
        for (const char16_t character : {u'\u0080', u'\u0100', u'\uFF21', u'\u2212', u'\u0308'})
            QVERIFY(!toCodePage(QString(QChar(character))));
    }

    void anyTextSurvives()
    {
        QRandomGenerator random(20260801);
        const QString often =
            u"aZ \u00FF\u00C3\u00BC\u00A9\u20AC\u0081\u009D\u0080\uFEFF\uFFFD\u0153"_s;
        for (int round = 0; round < 30'000; ++round) {
            QString text;
            const int length = random.bounded(8);
            for (int i = 0; i < length; ++i) {
                char32_t character = 0;
                switch (random.bounded(4)) {
                case 0:
                    text += often[random.bounded(int(often.size()))];
                    continue;
                case 1:
                    character = char32_t(random.bounded(0x100));
                    break;
                case 2:
                    character = char32_t(random.bounded(0xD800));
                    break;
                default:
                    character = char32_t(0xE000 + random.bounded(0x110000 - 0xE000));
                }
                text += QString::fromUcs4(&character, 1);
            }
            if (fromDisk(toDisk(text)) != text)
                QFAIL(qPrintable("lost: " + QDebug::toString(text)));
        }
    }

    void anyBytesAreAText()
    {
        QRandomGenerator random(7);
        for (int round = 0; round < 30'000; ++round) {
            QByteArray bytes(random.bounded(10), Qt::Uninitialized);
            for (char& byte : bytes)
                byte = static_cast<char>(random.bounded(0x100));
            const QString text = fromDisk(bytes);
            if (!bytes.isValidUtf8())
                QCOMPARE(text, fromCodePage(bytes));
            // What was read is written so that it reads the same again, whatever the bytes then
            // are.
            QCOMPARE(fromDisk(toDisk(text)), text);
        }
    }

    void halfASurrogatePairBecomesAQuestionMark()
    {
        const QString half = QString("a") + QChar(0xD83D) + "b";
        QCOMPARE(fromDisk(toDisk(half)), QString("a?b"));
    }

    void aFieldNeverContainsItsSeparator()
    {
        QCOMPARE(toDisk(u"L'Haÿ"_s), QByteArray("L'Ha\xFF"));
        QCOMPARE(toDiskField(u"L'Haÿ"_s), QByteArray("L'Hay\xCC\x88"));
        QCOMPARE(fromDisk(toDiskField(u"ÿÿ"_s)), u"y\u0308y\u0308"_s);
        QCOMPARE(toDiskField(u"Zürich"_s), QByteArray("Z\xFCrich"));
        for (char32_t character = 0; character < 0x30000; ++character) {
            if (!QChar::isSurrogate(character))
                QVERIFY(!toDiskField(QString::fromUcs4(&character, 1)).contains('\xFF'));
        }
    }

    void aByteOrderMarkIsSkippedAtTheStartOnly()
    {
        QCOMPARE(withoutByteOrderMark("\xEF\xBB\xBFtext").toByteArray(), QByteArray("text"));
        QCOMPARE(withoutByteOrderMark("\xEF\xBB\xBF").size(), 0);
        QCOMPARE(withoutByteOrderMark("\xEF\xBBtext").toByteArray(), QByteArray("\xEF\xBBtext"));
        QCOMPARE(withoutByteOrderMark("").size(), 0);
        // A field is not a file: the character is its own.
        QCOMPARE(fromDisk("\xEF\xBB\xBFtext"), u"\uFEFFtext"_s);
    }
};

QTEST_GUILESS_MAIN(DiskTextTest)
#include "tst_DiskText.moc"
