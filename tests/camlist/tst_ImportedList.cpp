#include "camlist/CameraListFile.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"

#include <optional>

class ImportedListTest : public QObject
{
    Q_OBJECT
private slots:
    void anImportedListBeginsWithFourLetters_data()
    {
        const Rows<QByteArray, std::optional<QByteArray>> row("content", "line");
        const auto good = [&](const char* name, const QByteArray& content, const QByteArray& line) {
            row(name, content, std::optional(line));
        };
        const auto bad = [&](const char* name, const QByteArray& content) {
            row(name, content, std::optional<QByteArray>());
        };
        good("CR LF", "CAMZc\xFFn\xFFk\r\n", "c\xFFn\xFFk");
        good("LF", "CAMZc\xFFn\xFFk\n", "c\xFFn\xFFk");
        good("CR", "CAMZc\xFFn\xFFk\r", "c\xFFn\xFFk");
        good("no line end", "CAMZc\xFFn\xFFk", "c\xFFn\xFFk");
        good("two line ends", "CAMZk\n\r\n", "k\n");
        good("mark",
             "\xEF\xBB\xBF"
             "CAMZk\r\n",
             "k");
        good("mark behind the letters", "CAMZ\xEF\xBB\xBFk\r\n", "\xEF\xBB\xBFk");
        good("twice", "CAMZCAMZk", "CAMZk");
        good("empty first field", "CAMZ\xFFn\xFFk\r\n", "\xFFn\xFFk");
        good("nothing more", "CAMZ", "");
        good("nothing more but a line end", "CAMZ\r\n", "");
        bad("empty", "");
        bad("line end", "\r\n");
        bad("three letters", "CAM");
        bad("three letters and a line end", "CAM\r\n");
        bad("small letters", "camzk\r\n");
        bad("one small letter", "CAMzk\r\n");
        bad("blank before", " CAMZk\r\n");
        bad("line end before", "\r\nCAMZk\r\n");
        bad("letters cut", "CAM\nZk");
        // As list.dat and its backup are.
        good("no letters", "c\xFFn\xFFk\r\n", "c\xFFn\xFFk");
        good("no letters, marked",
             "\xEF\xBB\xBF"
             "c\xFFn\xFFk",
             "c\xFFn\xFFk");
        good("no letters, two cameras, a header",
             "Z\xFCrich\xFFn\xFFk\x01X: 1\xFF\xC3\xBC\xFFm\xFFl\r\n",
             "Z\xFCrich\xFFn\xFFk\x01X: 1\xFF\xC3\xBC\xFFm\xFFl");
        good("no letters, empty fields", "\xFF\xFF", "\xFF\xFF");
        bad("no letters, half a triple", "c\xFFn\r\n");
        bad("no letters, a triple and a half", "c\xFFn\xFFk\xFF"
                                               "c\xFFn\r\n");
        bad("no letters, a separator behind", "c\xFFn\xFFk\xFF\r\n");
        bad("small letters before a list", "camzc\xFFn\xFFk\r\n");
        bad("no letters, a tab", "c\xFFn\tm\xFFk\r\n");
        bad("no letters, two lines", "c\xFFn\xFFk\r\nd\xFFn\xFFk\r\n");
        bad("no letters, a zero", QByteArray("c\xFFn\xFFk\0", 6));
        bad("no letters, a delete", "c\xFFn\xFFk\x7F");
        bad("a picture", "\xFF\xD8\xFF\xE0\x10JFIF\xFF");
        bad("a real archive", "PK\x03\x04"
                              "CAMZ");
    }

    void anImportedListBeginsWithFourLetters()
    {
        QFETCH(QByteArray, content);
        m_file.setContent(content);
        QTEST(readImportedList(m_file.path()), "line");
        QCOMPARE(m_file.content(), content);
    }

    void whatCannotBeReadIsNoImportedList()
    {
        QVERIFY(!QFile::exists(m_file.path()) || QFile::remove(m_file.path()));
        QCOMPARE(readImportedList(m_file.path()), std::nullopt);
        QCOMPARE(readImportedList({}), std::nullopt);
        QCOMPARE(readImportedList(m_file.folder()), std::nullopt);
        QByteArray longest(CameraListFile::MaxBytes, 'x');
        longest.replace(0, 4, "CAMZ");
        m_file.setContent(longest);
        const auto line = readImportedList(m_file.path());
        QVERIFY(line.has_value());
        QCOMPARE(line->size(), longest.size() - 4);
        m_file.setContent(longest + "x");
        QCOMPARE(readImportedList(m_file.path()), std::nullopt);
    }

private:
    ScratchFile m_file{"icl.zip"};
};

QTEST_GUILESS_MAIN(ImportedListTest)
#include "tst_ImportedList.moc"
