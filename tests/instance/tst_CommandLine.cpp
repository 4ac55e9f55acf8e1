#include "instance/CommandLine.h"

using Kind = CommandLineFile::Kind;

class CommandLineTest : public QObject
{
    Q_OBJECT
private slots:
    void readsTheFile_data()
    {
        QTest::addColumn<QString>("commandLine");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        const int none = static_cast<int>(Kind::None);
        const int movie = static_cast<int>(Kind::Movie);
        const int list = static_cast<int>(Kind::CameraList);
        QTest::newRow("nothing") << "" << none << "";
        QTest::newRow("quoted movie") << "\"/a b/c.pvm\"" << movie << "/a b/c.pvm";
        QTest::newRow("capitals") << "/a/C.PVM" << movie << "/a/C.PVM";
        QTest::newRow("the ending alone") << ".pvm" << movie << ".pvm";
        QTest::newRow("list") << "/a/cams.zip" << list << "/a/cams.zip";
        QTest::newRow("short") << "a" << list << "a";
        QTest::newRow("one quote at the end") << "/a.pvm\"" << list << "/a.pvm\"";
        QTest::newRow("a lone quote") << "\"" << list << "\"";
        QTest::newRow("empty quotes") << "\"\"" << list << "";
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
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("commandLine");
        QTest::newRow("none") << QStringList() << "";
        QTest::newRow("an empty one") << QStringList("") << "";
        QTest::newRow("one") << QStringList("/a b.pvm") << "/a b.pvm";
        QTest::newRow("several") << QStringList{"/a", "b.pvm"} << "/a b.pvm";
        QTest::newRow("an option") << QStringList{"--foo", "b"} << "--foo b";
        QTest::newRow("the desktop's session") << QStringList{"-session", "1_2"} << "";
        QTest::newRow("a file of that name") << QStringList{"-session"} << "-session";
        QTest::newRow("and of three words") << QStringList{"-session", "1", "2"} << "-session 1 2";
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
