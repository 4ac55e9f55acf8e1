#include "instance/CommandLine.h"
#include "support/Rows.h"

using Kind = CommandLineFile::Kind;

class CommandLineTest : public QObject
{
    Q_OBJECT
private slots:
    void readsTheFile_data()
    {
        const Rows<QString, int, QString> row("commandLine", "kind", "name");
        const int none = static_cast<int>(Kind::None);
        const int movie = static_cast<int>(Kind::Movie);
        const int list = static_cast<int>(Kind::CameraList);
        row("nothing", "", none, "");
        row("quoted movie", "\"/a b/c.pvm\"", movie, "/a b/c.pvm");
        row("capitals", "/a/C.PVM", movie, "/a/C.PVM");
        row("the ending alone", ".pvm", movie, ".pvm");
        row("list", "/a/cams.zip", list, "/a/cams.zip");
        row("short", "a", list, "a");
        row("one quote at the end", "/a.pvm\"", list, "/a.pvm\"");
        row("a lone quote", "\"", list, "\"");
        row("empty quotes", "\"\"", list, "");
    }

    void readsTheFile()
    {
        QFETCH(QString, commandLine);
        const CommandLineFile file = readCommandLine(commandLine);
        QTEST(static_cast<int>(file.kind), "kind");
        QTEST(file.name, "name");
    }

    void isTheWordsOfOneName_data()
    {
        const Rows<QStringList, QString> row("arguments", "commandLine");
        row("none", {}, "");
        row("an empty one", QStringList(""), "");
        row("one", QStringList("/a b.pvm"), "/a b.pvm");
        row("several", {"/a", "b.pvm"}, "/a b.pvm");
        row("an option", {"--foo", "b"}, "--foo b");
        row("the desktop's session", {"-session", "1_2"}, "");
        row("a file of that name", {"-session"}, "-session");
        row("and of three words", {"-session", "1", "2"}, "-session 1 2");
    }

    void isTheWordsOfOneName()
    {
        QFETCH(QStringList, arguments);
        QTEST(commandLineOf(arguments), "commandLine");
    }

    void onlyTwoWordsAreQuestions()
    {
        QVERIFY(answerOnTerminal({"--help"})->contains("Usage"));
        QVERIFY(answerOnTerminal({"--version"})->startsWith("Pevora "));
        for (const QStringList& other : {QStringList(), QStringList("-h"), QStringList("--Help"),
                                         QStringList("--versions"), QStringList{"a", "--help"}})
            QVERIFY2(!answerOnTerminal(other), qPrintable(other.join(' ')));
    }
};

QTEST_GUILESS_MAIN(CommandLineTest)
#include "tst_CommandLine.moc"
