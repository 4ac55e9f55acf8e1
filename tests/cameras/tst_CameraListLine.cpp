#include "cameras/CameraListLine.h"
#include "platform/CodePage.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"
#include "support/Cost.h"
#include "support/Rows.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

static QByteArray joined(const QByteArrayList& fields)
{
    return fields.join('\xFF');
}

constexpr quint32 Seed = 20260803;

/// A character of any kind, the troublesome ones often; neither the separator's nor half of a
/// surrogate pair.
static QString anyCharacter(QRandomGenerator& random)
{
    static const QString often =
        u"aZ \u0001\r\n\u00C3\u00BC\u00A9\u20AC\u0081\u0080\uFEFF\uFFFE\uFFFD&<\u05D0\u0308"_s;
    char32_t character = 0;
    switch (random.bounded(4)) {
    case 0:
    case 1:
        return often[random.bounded(int(often.size()))];
    case 2:
        character = char32_t(random.bounded(0x100));
        break;
    default:
        character = char32_t(random.bounded(0x110000));
    }
    const bool wanted = !QChar::isSurrogate(character) && character != 0xFF;
    return wanted ? QString::fromUcs4(&character, 1) : "s";
}

static QString anyText(QRandomGenerator& random)
{
    QString text;
    for (int length = random.bounded(8); length > 0; --length)
        text += anyCharacter(random);
    return text;
}

static QString shown(const QByteArray& line)
{
    return "not so: " + QString::fromLatin1(line.toPercentEncoding());
}

/// Whether the bytes of a text are those that are written for it.
static bool isAsWritten(const QByteArray& bytes)
{
    // In the page every byte has a character of its own.
    if (!bytes.isValidUtf8())
        return true;
    const QString text = fromDisk(bytes);
    if (text.contains(QChar(0xFF)))
        return false;
    // UTF-8 is written for what the page lacks, and for what would look like UTF-8 in the page.
    const auto inPage = toCodePage(text);
    return !inPage || *inPage == bytes || inPage->isValidUtf8();
}

/// Some bytes without a separator.
static QByteArray anyField(QRandomGenerator& random)
{
    QByteArray field;
    for (int length = random.bounded(6); length > 0; --length) {
        switch (random.bounded(4)) {
        case 0:
            field += anyCharacter(random).toUtf8();
            break;
        case 1:
            field += QByteArrayList{"\x01",         "\r\n", "\xC3\xBF", "\xC3\x83\xC2\xBC",
                                    "\xEF\xBB\xBF", "\xC3"}[random.bounded(6)];
            break;
        default:
            field += static_cast<char>(random.bounded(random.bounded(2) ? 0x80 : 0xFF));
        }
    }
    return field;
}

static QList<CameraRecord> manyCameras(int count)
{
    QList<CameraRecord> cameras;
    for (int i = 0; i < count; ++i) {
        // One name in ten is not plain.
        cameras.append({QString("Category %1").arg(i % 500),
                        (i % 10   ? "Camera %1"
                         : i % 20 ? "Zürich %1"
                                  : "東京 %1") +
                            QString::number(i),
                        QString("www%1.example.com:8080/axis-cgi/jpg/image.cgi").arg(i)});
    }
    return cameras;
}

class CameraListLineTest : public QObject
{
    Q_OBJECT
private slots:
    void theLineIsAsItAlwaysWas()
    {
        const QByteArray line = "Cities\xFFHarbour\xFFURL1\xFFSights\xFFTower\xFFURL2\1Cookie: a=1";
        const QList<CameraRecord> cameras{{"Cities", "Harbour", "URL1"},
                                          {"Sights", "Tower", u"URL2\u0001Cookie: a=1"_s}};
        QCOMPARE(writeCameraListLine(cameras), line);
        QVERIFY(readCameraListLine(line) == cameras);
        QCOMPARE(writeCameraListLine({}), QByteArray());
        QVERIFY(readCameraListLine({}).isEmpty());
    }

    void anyNameSurvives_data()
    {
        const Rows<QString, QByteArray> row("text", "bytes");
        row("comma and blank", "L.A., CA", "L.A., CA");
        row("outer blanks", "  a  ", "  a  ");
        row("ampersands", "AT&T && &amp;", "AT&T && &amp;");
        row("angle brackets", "<b>a</b> <", "<b>a</b> <");
        row("in the page", u"Zürich €"_s, "Z\xFCrich \x80");
        row("right to left", u"\u05D7\u05D9"_s, "\xD7\x97\xD7\x99");
        row("Chinese", u"東京"_s, "\xE6\x9D\xB1\xE4\xBA\xAC");
        row("beyond 16 bits", u"\U0001F4F7"_s, "\xF0\x9F\x93\xB7");
        row("like UTF-8 in the page", u"Ã¼"_s, "\xC3\x83\xC2\xBC");
        row("byte order mark", u"\uFEFFa"_s,
            "\xEF\xBB\xBF"
            "a");
        row("CR", "a\rb\r", "a\rb\r");
        row("LF", "a\nb\n", "a\nb\n");
        row("CR LF", "a\r\nb\r\n", "a\r\nb\r\n");
        row("zero", QString(QChar(0)), QByteArray(1, '\0'));
        row("10,000 letters", QString(10'000, 'n'), QByteArray(10'000, 'n'));
        row("10,000 others", QString(10'000, QChar(0x05D0)),
            QByteArray("\xD7\x90").repeated(10'000));
    }

    void anyNameSurvives()
    {
        QFETCH(QString, text);
        QFETCH(QByteArray, bytes);
        // In every field, the last one of the line among them.
        const QList<CameraRecord> cameras{{"c", text, "k"}, {text, "n", text}};
        const QByteArray line = writeCameraListLine(cameras);
        QCOMPARE(line, joined({"c", bytes, "k", bytes, "n", bytes}));
        QVERIFY(readCameraListLine(line) == cameras);
    }

    void theSeparatorLetterLooksTheSame()
    {
        const QList<CameraRecord> typed{{u"ÿ"_s, u"L'Haÿ"_s, u"ÿ\u0001ÿ"_s}};
        const QList<CameraRecord> kept{{u"y\u0308"_s, u"L'Hay\u0308"_s, u"y\u0308\u0001y\u0308"_s}};
        const QByteArray line = writeCameraListLine(typed);
        QCOMPARE(line, joined({"y\xCC\x88", "L'Hay\xCC\x88", "y\xCC\x88\x01y\xCC\x88"}));
        QVERIFY(readCameraListLine(line) == kept);
        // Others write it as UTF-8 knows it.
        QVERIFY(readCameraListLine(joined({"\xC3\xBF", "L'Ha\xC3\xBF", "\xC3\xBF\x01\xC3\xBF"})) ==
                kept);
    }

    void theHeaderStaysInTheKey()
    {
        // Only the first mark parts; in other fields it is a character like any other.
        for (const char* key : {"\x01", "a\x01", "\1b", "a\1b\1c\x01\x01"}) {
            const QByteArray line = joined({"c\x01", "\x01n", key});
            const QList<CameraRecord> cameras{
                {u"c\u0001"_s, u"\u0001n"_s, QString::fromLatin1(key)}};
            QVERIFY(readCameraListLine(line) == cameras);
            QCOMPARE(writeCameraListLine(cameras), line);
        }
    }

    void addressAndHeaderAreTextsOfTheirOwn()
    {
        const QList<CameraRecord> cameras{{"c", "n", u"caf\u00E9\u0001X: 東"_s},
                                          {"c", "n", u"東\u0001X: \u00E9"_s}};
        const QByteArray line =
            joined({"c", "n", "caf\xE9\x01X: \xE6\x9D\xB1", "c", "n", "\xE6\x9D\xB1\x01X: \xE9"});
        QCOMPARE(writeCameraListLine(cameras), line);
        QVERIFY(readCameraListLine(line) == cameras);
        QCOMPARE(readCameraListLine(joined({"c", "n", "caf\xC3\xA9\x01\xE6\x9D\xB1"})).value(0).key,
                 u"caf\u00E9\u0001東"_s);
    }

    void emptyFieldsAreFields()
    {
        const QList<CameraRecord> empty{{}, {"", "n", ""}, {}};
        const QByteArray line = joined({"", "", "", "", "n", "", "", "", ""});
        QCOMPARE(writeCameraListLine(empty), line);
        QVERIFY(readCameraListLine(line) == empty);
        QCOMPARE(writeCameraListLine({{}}), QByteArray("\xFF\xFF"));
        QCOMPARE(readCameraListLine("\xFF\xFF").size(), 1);
    }

    void anIncompleteTripleIsSkipped()
    {
        const QList<CameraRecord> one{{"c", "n", "k"}};
        QVERIFY(readCameraListLine("c").isEmpty());
        QVERIFY(readCameraListLine("c\xFF").isEmpty());
        QVERIFY(readCameraListLine(joined({"c", "n"})).isEmpty());
        QVERIFY(readCameraListLine("\xFF").isEmpty());
        QVERIFY(readCameraListLine(joined({"c", "n", "k", ""})) == one);
        QVERIFY(readCameraListLine(joined({"c", "n", "k", "c"})) == one);
        QVERIFY(readCameraListLine(joined({"c", "n", "k", "c", ""})) == one);
        QVERIFY(readCameraListLine(joined({"c", "n", "k", "c", "n"})) == one);
    }

    void anyRecordsComeBack()
    {
        qInfo("seed %u", Seed);
        QRandomGenerator random(Seed);
        for (int round = 0; round < 20'000; ++round) {
            QList<CameraRecord> cameras(random.bounded(4));
            for (CameraRecord& camera : cameras)
                camera = {anyText(random), anyText(random), anyText(random)};
            const QByteArray line = writeCameraListLine(cameras);
            if (readCameraListLine(line) != cameras)
                QFAIL(qPrintable(shown(line)));
        }
    }

    void anyBytesComeBackWhereTheTextRuleAllows()
    {
        qInfo("seed %u", Seed);
        QRandomGenerator random(Seed);
        int same = 0;
        int other = 0;
        for (int round = 0; round < 40'000; ++round) {
            QByteArrayList fields;
            QByteArrayList texts;
            for (int i = 0, count = random.bounded(7); i < count; ++i) {
                fields += anyField(random);
                const qsizetype mark = i % 3 == 2 ? fields.last().indexOf('\x01') : -1;
                if (mark < 0)
                    texts += fields.last();
                else
                    texts << fields.last().left(mark) << fields.last().mid(mark + 1);
            }
            const bool allAsWritten = std::all_of(texts.begin(), texts.end(), isAsWritten);
            const QByteArray line = joined(fields);
            const QList<CameraRecord> cameras = readCameraListLine(line);
            QCOMPARE(cameras.size(), fields.size() / 3);
            const QByteArray written = writeCameraListLine(cameras);
            // Whatever it was, it is the same cameras and the same bytes from now on.
            if (readCameraListLine(written) != cameras)
                QFAIL(qPrintable(shown(line)));
            if (fields.size() % 3 != 0)
                continue;
            if ((written == line) != allAsWritten)
                QFAIL(qPrintable(shown(line)));
            ++(allAsWritten ? same : other);
        }
        qInfo("%d lines came back as the same bytes, %d as others", same, other);
        QVERIFY(same > 5'000);
        QVERIFY(other > 1'000);
    }

    void onlyOneLineEndIsTakenOff()
    {
        const auto without = [](const char* text) { return withoutLineEnd(text).toByteArray(); };
        QCOMPARE(without("a\r\n"), QByteArray("a"));
        QCOMPARE(without("a\n"), QByteArray("a"));
        QCOMPARE(without("a\r"), QByteArray("a"));
        QCOMPARE(without("a"), QByteArray("a"));
        QCOMPARE(without("a\r\n\r\n"), QByteArray("a\r\n"));
        QCOMPARE(without("a\n\n"), QByteArray("a\n"));
        QCOMPARE(without("a\r\r"), QByteArray("a\r"));
        QCOMPARE(without("a\n\r"), QByteArray("a\n"));
        QCOMPARE(without("a\r\r\n"), QByteArray("a\r"));
        QCOMPARE(without("\r\na"), QByteArray("\r\na"));
        QCOMPARE(without("a \t"), QByteArray("a \t"));
        QCOMPARE(without("\r\n"), QByteArray());
        QCOMPARE(without("\n"), QByteArray());
        QCOMPARE(without(""), QByteArray());
    }

    void eachCameraOfAHundredThousandCostsTheSame()
    {
        constexpr int few = 10'000;
        QMap<int, QList<CameraRecord>> cameras;
        QMap<int, QByteArray> lines;
        for (const int count : {few, 10 * few}) {
            cameras[count] = manyCameras(count);
            lines[count] = writeCameraListLine(cameras[count]);
            QVERIFY(readCameraListLine(lines[count]) == cameras[count]);
        }
        const double writing = growth(few, [&](int n) { writeCameraListLine(cameras[n]); });
        const double reading = growth(few, [&](int n) { readCameraListLine(lines[n]); });
        qInfo("ten times as many: %.1f times to write, %.1f times to read", writing, reading);
        QVERIFY(writing < MostGrowth);
        QVERIFY(reading < MostGrowth);
    }
};

QTEST_GUILESS_MAIN(CameraListLineTest)
#include "tst_CameraListLine.moc"
