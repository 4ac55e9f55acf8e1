// The language files that come with the program, and captions in other scripts in the window.

#include "settings/Ini.h"
#include "settings/LanguageCaptions.h"
#include "support/Paths.h"
#include "support/Rows.h"
#include "support/ShownMain.h"

#include <QAbstractButton>
#include <QMenuBar>
#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString LanguagesFolder = sourcePath("languages");

/// The keys of the table in its order, each once.
QStringList tableKeys()
{
    QStringList keys;
    for (const CaptionRow& row : captionTable()) {
        if (!keys.contains(row.key.toString()))
            keys << row.key.toString();
    }
    return keys;
}

QByteArray content(const QString& language)
{
    QFile file(LanguagesFolder + '/' + language + "/lan.ini");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// The lines of a file with a key, in their order, as text.
QStringList keyLines(const QString& language)
{
    QStringList lines = QString::fromUtf8(content(language)).split('\n', Qt::SkipEmptyParts);
    lines.removeIf([](const QString& line) { return line.startsWith(';') || line == "[MAIN]"; });
    return lines;
}

/// Whether `text` is UTF-8 that was taken for single bytes ("Ã¼" for "ü").
bool isEncodedTwice(const QString& text)
{
    const QByteArray bytes = text.toLatin1();
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString decoded = decoder(bytes);
    return QString::fromLatin1(bytes) == text && !decoder.hasError() && decoded != text;
}

/// What a person sees of a menu's or button's text: without the mark of the access key.
QString shownText(QString text)
{
    return text.replace("&&", "\x01").remove('&').replace("\x01", "&");
}

} // namespace

class LanguagesTest : public QObject
{
    Q_OBJECT
private slots:
    void theLanguagesOfTheProgramAreThere()
    {
        for (const char* language : {"de", "es", "fr"})
            QVERIFY2(!content(language).isEmpty(), language);
        // Only folders, one for each language.
        QCOMPARE(QDir(LanguagesFolder).entryList(QDir::Files), QStringList());
    }

    void aFileHasEveryKeyOnceInTheOrderOfTheTable_data() { languages(); }

    void aFileHasEveryKeyOnceInTheOrderOfTheTable()
    {
        QFETCH(QString, language);
        QCOMPARE(QDir(LanguagesFolder + '/' + language)
                     .entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList("lan.ini"));
        QVERIFY(content(language).contains("[MAIN]\n"));
        QStringList keys;
        for (const QString& line : keyLines(language)) {
            QVERIFY2(line.contains('='), qPrintable(line));
            keys << line.section('=', 0, 0);
        }
        QCOMPARE(keys, tableKeys());
        QCOMPARE(KeysInINI("MAIN", LanguagesFolder + '/' + language + "/lan.ini").size(),
                 keys.size());
    }

    void everyValueIsACaption_data() { languages(); }

    void everyValueIsACaption()
    {
        QFETCH(QString, language);
        const QString path = LanguagesFolder + '/' + language + "/lan.ini";
        QStringDecoder decoder(QStringDecoder::Utf8);
        const QString text = decoder(content(language));
        QVERIFY(!decoder.hasError());
        QVERIFY(!text.contains(QChar::ReplacementCharacter));
        QStringList menuBar;
        for (const QString& line : keyLines(language)) {
            QVERIFY2(!isEncodedTwice(line), qPrintable(line));
            const QString key = line.section('=', 0, 0);
            const QString value = line.section('=', 1);
            QVERIFY2(!value.isEmpty() && value == value.trimmed(), qPrintable(line));
            QVERIFY2(value.size() <= 749, qPrintable(key));
            // What the program reads is what stands there: nothing cut, no quotes lost.
            QCOMPARE(GetFromINI("MAIN", key, path), value);
            if (QStringList{"OPTION", "FAV", "VIEW", "HELP"}.contains(key))
                menuBar << value;
        }
        // Otherwise two menus could not be told apart.
        QCOMPARE(QSet<QString>(menuBar.begin(), menuBar.end()).size(), 4);
    }

    void theAddPanelHasRoomForItsCaptions_data() { languages(); }

    void theAddPanelHasRoomForItsCaptions()
    {
        QFETCH(QString, language);
        // The panel is as wide as the list: 3300 twips. The option buttons share that.
        constexpr int PanelWidth = 220;
        constexpr int Mark = 24;
        const QMap<QString, int> room{{"BADD", PanelWidth / 2 - Mark},
                                      {"LIST", PanelWidth / 2 - Mark},
                                      {"BADDIT", PanelWidth - Mark},
                                      {"CATEGORY", PanelWidth},
                                      {"NAME", PanelWidth},
                                      {"EXTRA", PanelWidth},
                                      {"ADDINT", PanelWidth - Mark}};
        const QFontMetrics metrics(QApplication::font());
        const QString path = LanguagesFolder + '/' + language + "/lan.ini";
        for (const auto& [key, width] : room.asKeyValueRange()) {
            const QString caption = GetFromINI("MAIN", key, path);
            const int needed = metrics.horizontalAdvance(caption);
            QVERIFY2(needed <= width, qPrintable(QString("%1: %2").arg(caption).arg(needed)));
        }
    }

    void accentsReadRight_data()
    {
        const Rows<QString, QString, QString> row("language", "key", "caption");
        row("de, capital", "de", "ABOUT", u"Über Pevora"_s);
        row("de", "de", "BADD", u"Hinzufügen"_s);
        row("fr, capital", "fr", "ABOUT", u"À propos de Pevora"_s);
        row("fr", "fr", "MANFAV", u"Gérer les favoris"_s);
        row("fr, apostrophe", "fr", "VTB", u"Barre d\u2019outils"_s);
        row("es, tilde", "es", "BADD", u"Añadir"_s);
        row("es", "es", "VNEW", u"Solo imágenes nuevas"_s);
    }

    void accentsReadRight()
    {
        QFETCH(QString, language);
        QFETCH(QString, key);
        QFETCH(QString, caption);
        QVERIFY(keyLines(language).contains(key + '=' + caption));
        QCOMPARE(GetFromINI("MAIN", key, LanguagesFolder + '/' + language + "/lan.ini"), caption);
    }

    void theWindowSpeaksTheLanguage_data() { languages(); }

    void theWindowSpeaksTheLanguage()
    {
        QFETCH(QString, language);
        ShownMain m;
        m.write("lan.ini", content(language));
        const QString path = m.path("lan.ini");
        int seen = 0;
        QSet<QString> accessKeys;
        for (const CaptionRow& row : captionTable()) {
            const QString caption = GetFromINI("MAIN", row.key.toString(), path);
            if (const auto* menu = m.made().findChild<QMenu*>(row.control.toString())) {
                QCOMPARE(shownText(menu->title()), caption);
                const QString accessKey = QKeySequence::mnemonic(menu->title()).toString();
                QVERIFY2(!accessKey.isEmpty(), qPrintable(caption));
                accessKeys.insert(accessKey);
                ++seen;
            } else if (row.control.startsWith(u"mnu")) {
                QCOMPARE(shownText(m.entry(row.control.toString()).text()), caption);
                ++seen;
            } else if (const auto* label = m.made().findChild<QLabel*>(row.control.toString())) {
                QCOMPARE(label->text(), caption);
                ++seen;
            } else if (row.control == u"picMain") {
                const auto& canvas = m.part<QWidget>("picMain");
                QCOMPARE(canvas.property("Caption").toString(), caption);
                QCOMPARE(canvas.accessibleDescription(), caption);
                ++seen;
            } else {
                QCOMPARE(shownText(m.part<QAbstractButton>(row.control.toString()).text()),
                         caption);
                ++seen;
            }
        }
        QCOMPARE(seen, 26);
        QCOMPARE(accessKeys.size(), 4);
    }

    void captionsInAnyScriptShow_data()
    {
        const Rows<QString, QString> row("view", "about");
        row("Greek", u"Προβολή"_s, u"Πληροφορίες"_s);
        row("Cyrillic", u"Вид"_s, u"О программе"_s);
        row("Hebrew", u"תצוגה"_s, u"אודות"_s);
        row("Japanese", u"表示"_s, u"このソフトについて"_s);
    }

    void captionsInAnyScriptShow()
    {
        QFETCH(QString, view);
        QFETCH(QString, about);
        ShownMain m;
        m.write("lan.ini", ("[MAIN]\r\nVIEW=" + view + "\r\nABOUT=" + about + "\r\n").toUtf8());
        m.shown();
        const auto& menu = m.part<QMenu>("mnuView");
        QCOMPARE(shownText(menu.title()), view);
        QCOMPARE(shownText(m.entry("mnuHelpAb").text()), about);
        // It has room in the bar, and a letter of its own script opens it.
        const QRect place = m.made().menuBar()->actionGeometry(menu.menuAction());
        QVERIFY(place.width() >= QFontMetrics(m.made().menuBar()->font()).horizontalAdvance(view));
        const QString accessKey = QKeySequence::mnemonic(menu.title()).toString();
        QVERIFY2(!accessKey.isEmpty(), qPrintable(menu.title()));
        QVERIFY(view.contains(accessKey.right(1), Qt::CaseInsensitive));
    }

private:
    static void languages()
    {
        const Rows<QString> row("language");
        for (const QString& folder :
             QDir(LanguagesFolder).entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            row(qPrintable(folder), folder);
    }
};

QTEST_MAIN(LanguagesTest)
#include "tst_Languages.moc"
