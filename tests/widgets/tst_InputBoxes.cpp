// Boxes that keep what is typed fit for a record.

#include "support/Rows.h"
#include "widgets/InputBoxes.h"

#include <QClipboard>

static void paste(QLineEdit& box, const QString& text)
{
    QGuiApplication::clipboard()->setText(text);
    QTest::keySequence(&box, QKeySequence::Paste);
}

class InputBoxesTest : public QObject
{
    Q_OBJECT
private slots:
    void whatIsPastedIsCleanedAndTheCaretStays()
    {
        QLineEdit box("abef");
        cleanWhileTyping(&box);
        box.setCursorPosition(2);
        paste(box, QStringLiteral("c\r\n\u00FF\x01"));
        QCOMPARE(box.text(), QStringLiteral("abcy\u0308ef"));
        QCOMPARE(box.cursorPosition(), 5);
    }

    void aHeaderMarkIsKeptWhereAskedFor()
    {
        QLineEdit box;
        cleanWhileTyping(&box, true);
        paste(box, "a\x01\x02z");
        QCOMPARE(box.text(), "a\x01z");
    }

    void aTextSetByTheProgramStays()
    {
        QLineEdit box;
        cleanWhileTyping(&box);
        box.setText("a\nb");
        QCOMPARE(box.text(), "a\nb");
    }

    void aPastedKeyIsSplit_data()
    {
        const Rows<QString, QString, QString> row("pasted", "address", "extra");
        row("an address alone", "host/a.jpg", "host/a.jpg", "old");
        row("a key", "host/a.jpg\x01X: 1", "host/a.jpg", "X: 1");
        row("a key without a header", "host/a.jpg\x01", "host/a.jpg", "");
        row("two marks", "a\1b\1c", "a", "bc");
        row("line breaks", "a\r\n\x01X: 1\r\nY: 2", "a", "X: 1Y: 2");
    }

    void aPastedKeyIsSplit()
    {
        QFETCH(QString, pasted);
        QLineEdit url;
        QLineEdit header("old");
        cleanKeyWhileTyping(&url, &header);
        paste(url, pasted);
        QTEST(url.text(), "address");
        QTEST(header.text(), "extra");
        header.clear();
        paste(header, "Y: \x01\xC3\xBF");
        QVERIFY(!header.text().contains(QChar(1)));
    }

    void aLongTextIsNotCut()
    {
        QLineEdit box;
        takeTextsOfAnyLength(&box);
        box.setText(QString(100'000, 'x'));
        QCOMPARE(box.text().size(), 100'000);
    }
};

QTEST_MAIN(InputBoxesTest)
#include "tst_InputBoxes.moc"
