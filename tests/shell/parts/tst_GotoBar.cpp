// What a person types into the goto bar, and what becomes of it.

#include "support/Rows.h"
#include "support/ShownBar.h"

#include <QClipboard>

class GotoBarTest : public QObject
{
    Q_OBJECT
private slots:
    void theHintIsReadableWhateverThePalette()
    {
        const QPalette usual = QApplication::palette();
        QPalette dark(QColor(40, 40, 40), QColor(30, 30, 30));
        dark.setColor(QPalette::Base, QColor(20, 20, 20));
        dark.setColor(QPalette::Text, Qt::white);
        dark.setColor(QPalette::PlaceholderText, QColor(0, 0, 0, 128));
        ShownBar b;
        for (const QPalette& one : {usual, dark, usual}) {
            QApplication::setPalette(one);
            QTRY_COMPARE(b.bar.lineEdit()->palette().color(QPalette::Base),
                         one.color(QPalette::Base));
            const QPalette seen = b.bar.lineEdit()->palette();
            const QColor hint = seen.color(QPalette::PlaceholderText);
            const int ground = seen.color(QPalette::Base).lightness();
            QVERIFY2(qAbs(hint.lightness() - ground) * double(hint.alphaF()) > 55,
                     qPrintable(hint.name()));
        }
    }

    void enterOnANameChoosesItsCamera()
    {
        ShownBar b;
        b.enter("Tower");
        QCOMPARE(b.lastChosen(), "cam.example/t.jpg");
        QCOMPARE(b.entries(), QStringList{"Tower"}); // as typed, not the address
        QTest::keyClick(&b.bar, Qt::Key_Enter);
        QCOMPARE(b.lastChosen(), "cam.example/t.jpg");
    }

    void enterOnAnAddressPassesItOnAsTyped_data()
    {
        const Rows<QString> row("text");
        row("scheme", "http://cam.example/a.jpg");
        row("scheme in capitals", "HTTP://cam.example/a.jpg");
        row("secure", "https://cam.example:8443/a.jpg");
        row("secure in capitals", "HTTPS://cam.example/a.jpg");
        row("no scheme, no name", "cam.example/a.jpg");
    }

    void enterOnAnAddressPassesItOnAsTyped()
    {
        QFETCH(QString, text);
        ShownBar b;
        // A name that begins like a scheme is never looked up.
        b.list.AddCam("http://cam.example/a.jpg", "wrong", "Sights");
        b.list.AddCam("https://cam.example:8443/a.jpg", "wrong, too", "Sights");
        b.list.AddCam("https://cam.example/a.jpg", "wrong as well", "Sights");
        b.enter(text);
        QCOMPARE(b.lastChosen(), text);
        QCOMPARE(b.entries(), QStringList{text});
    }

    void enterTwiceHoldsItTwice()
    {
        ShownBar b;
        b.enter("cam/a");
        b.enter("cam/b");
        b.enter("cam/a");
        QCOMPARE(b.entries(), (QStringList{"cam/a", "cam/b", "cam/a"}));
        QCOMPARE(b.chosen.count(), 3);
    }

    void enterOnAnEmptyBoxDoesNothing()
    {
        ShownBar b;
        b.enter("");
        QCOMPARE(b.chosen.count(), 0);
        QVERIFY(b.entries().isEmpty());
    }

    void theFirstEntryLeavesTheTextAlone()
    {
        ShownBar b;
        b.enter("Tower");
        QCOMPARE(b.bar.currentText(), "Tower");
        b.enter("cam/a");
        QCOMPARE(b.bar.currentText(), "cam/a");
    }

    void typingCompletesAndSelectsTheRest()
    {
        ShownBar b;
        b.type("Ha");
        QCOMPARE(b.bar.currentText(), "Harbour");
        QCOMPARE(b.bar.lineEdit()->selectedText(), "rbour");
        QCOMPARE(b.bar.lineEdit()->selectionStart(), 2);
        b.type("r"); // replaces the completion
        QCOMPARE(b.bar.currentText(), "Harbour");
        QCOMPARE(b.bar.lineEdit()->selectedText(), "bour");
        QTest::keyClick(&b.bar, Qt::Key_Return);
        QCOMPARE(b.lastChosen(), "cam.example/h.jpg");
    }

    void backspaceAndDeleteOfferNoCompletion()
    {
        for (const auto key : {Qt::Key_Backspace, Qt::Key_Delete}) {
            ShownBar b;
            b.type("Ha");
            QTest::keyClick(&b.bar, key);
            QCOMPARE(b.bar.currentText(), "Ha");
            QVERIFY(b.bar.lineEdit()->selectedText().isEmpty());
        }
    }

    void aKeyThatChangesTheTextCompletes_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<int>("key");
        QTest::newRow("letter") << "Pie" << int(Qt::Key_R);
        QTest::newRow("blank") << "Pier" << int(Qt::Key_Space);
        QTest::newRow("digit") << "Pier " << int(Qt::Key_3);
        QTest::newRow("another digit, of a longer name") << "Pier 3" << int(Qt::Key_9);
    }

    void aKeyThatChangesTheTextCompletes()
    {
        QFETCH(QString, typed);
        QFETCH(int, key);
        ShownBar b;
        b.list.AddCam("Pier 39 west", "cam.example/p.jpg", "Sights");
        b.bar.setEditText(typed);
        QTest::keyPress(&b.bar, Qt::Key(key));
        QVERIFY(b.bar.currentText() != "Pier 39 west"); // with the release, not the press
        QTest::keyRelease(&b.bar, Qt::Key(key));
        QCOMPARE(b.bar.currentText(), "Pier 39 west");
        QVERIFY(b.bar.lineEdit()->hasSelectedText());
        QVERIFY(b.bar.currentText().endsWith(b.bar.lineEdit()->selectedText()));
    }

    void noOtherKeyCompletes_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("to the left") << int(Qt::Key_Left);
        QTest::newRow("to the right") << int(Qt::Key_Right);
        QTest::newRow("to the beginning") << int(Qt::Key_Home);
        QTest::newRow("to the end") << int(Qt::Key_End);
        QTest::newRow("up") << int(Qt::Key_Up);
        QTest::newRow("down") << int(Qt::Key_Down);
        QTest::newRow("shift") << int(Qt::Key_Shift);
        QTest::newRow("control") << int(Qt::Key_Control);
        QTest::newRow("a function key") << int(Qt::Key_F5);
    }

    void noOtherKeyCompletes()
    {
        QFETCH(int, key);
        ShownBar b;
        b.list.AddCam("Pier 39 west", "cam.example/p.jpg", "Sights");
        b.type("Pier");
        QTest::keyClick(&b.bar, Qt::Key_Delete); // what was completed
        QTest::keyClick(&b.bar, Qt::Key(key));
        QCOMPARE(b.bar.currentText(), "Pier");
        QVERIFY(!b.bar.lineEdit()->hasSelectedText());
    }

    void shiftLetGoWithinALetterLeavesTheCompletionToTheLetter()
    {
        ShownBar b;
        QTest::keyPress(&b.bar, Qt::Key_Shift);
        QTest::keyPress(&b.bar, 'T', Qt::ShiftModifier);
        QTest::keyRelease(&b.bar, Qt::Key_Shift);
        QCOMPARE(b.bar.currentText(), "T");
        QTest::keyRelease(&b.bar, 'T');
        QCOMPARE(b.bar.currentText(), "Tower");
    }

    void aKeyIsKnownByItsPlaceAtItsRelease()
    {
        ShownBar b;
        // "T" at its press, "t" with another key code at its release, as a keyboard may have it.
        QKeyEvent press(QEvent::KeyPress, Qt::Key_T, Qt::ShiftModifier, 28, 0, 0, "T");
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_unknown, Qt::NoModifier, 28, 0, 0);
        QApplication::sendEvent(&b.bar, &press);
        QApplication::sendEvent(&b.bar, &release);
        QCOMPARE(b.bar.currentText(), "Tower");
    }

    void theTypedCaseIsKept()
    {
        ShownBar b;
        b.type("tO");
        QCOMPARE(b.bar.currentText(), "tOwer");
    }

    void aKeyThatFindsNothingChangesNothing()
    {
        ShownBar b;
        b.type("xy");
        QCOMPARE(b.bar.currentText(), "xy");
        QTest::keyClick(&b.bar, Qt::Key_Left);
        QCOMPARE(b.bar.currentText(), "xy");
        QCOMPARE(b.bar.lineEdit()->cursorPosition(), 1);
    }

    void aReleaseFromElsewhereDoesNothing()
    {
        ShownBar b;
        b.bar.setEditText("Tower");
        // The press closed a dialog; only the release comes here.
        QTest::keyRelease(&b.bar, Qt::Key_Return);
        QCOMPARE(b.chosen.count(), 0);
        QTest::keyPress(&b.bar, Qt::Key_Return);
        b.other.setFocus();
        b.bar.setFocus();
        QTest::keyRelease(&b.bar, Qt::Key_Return);
        QCOMPARE(b.chosen.count(), 0);
    }

    void choosingFromTheOpenListShowsTheCamera()
    {
        ShownBar b;
        b.enter("Tower");
        b.enter("cam/b");
        b.chosen.clear();
        b.bar.showPopup();
        QTRY_VERIFY(b.bar.view()->isVisible());
        const auto item = b.bar.view()->visualRect(b.bar.model()->index(0, 0)).center();
        QTest::mouseMove(b.bar.view()->viewport(), item);
        QTest::mouseClick(b.bar.view()->viewport(), Qt::LeftButton, {}, item,
                          QApplication::doubleClickInterval() + 1);
        QTRY_COMPARE(b.chosen.count(), 1);
        QCOMPARE(b.lastChosen(), "cam.example/t.jpg");
        QCOMPARE(b.bar.currentText(), "Tower");
        QCOMPARE(b.entries().size(), 2); // nothing is added
    }

    void choosingByKeyFromTheOpenListWorksToo()
    {
        ShownBar b;
        b.enter("Tower");
        b.enter("cam/b");
        b.chosen.clear();
        b.bar.showPopup();
        QTRY_VERIFY(b.bar.view()->isVisible());
        b.bar.view()->setCurrentIndex(b.bar.model()->index(1, 0));
        QTest::keyClick(b.bar.view(), Qt::Key_Return);
        QTRY_COMPARE(b.chosen.count(), 1);
        QCOMPARE(b.lastChosen(), "cam/b");
    }

    void wheelAndArrowsChooseNothing()
    {
        ShownBar b;
        b.enter("cam/a");
        b.enter("cam/b");
        b.chosen.clear();
        QTest::keyClick(&b.bar, Qt::Key_Up);
        QTest::keyClick(&b.bar, Qt::Key_Down);
        QWheelEvent wheel(QPointF(10, 10), b.bar.mapToGlobal(QPointF(10, 10)), {}, {0, 120},
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QApplication::sendEvent(&b.bar, &wheel);
        b.other.setFocus();
        QCOMPARE(b.chosen.count(), 0);
        QCOMPARE(b.bar.currentText(), "cam/b");
    }

    void mirrorShowsAtOnceWhileNobodyTypes()
    {
        ShownBar b;
        b.bar.mirror("http://cam/1");
        QCOMPARE(b.bar.currentText(), "http://cam/1");
        QVERIFY(b.entries().isEmpty());
        b.enter("cam/b"); // typing is over
        b.bar.mirror("http://cam/2");
        QCOMPARE(b.bar.currentText(), "http://cam/2");
    }

    void mirrorWaitsForEscape()
    {
        ShownBar b;
        b.type("xy");
        b.bar.mirror("http://cam/1");
        b.bar.mirror("http://cam/2");
        QCOMPARE(b.bar.currentText(), "xy");
        QTest::keyClick(&b.bar, Qt::Key_Escape);
        QCOMPARE(b.bar.currentText(), "http://cam/2");
        QCOMPARE(b.chosen.count(), 0);
    }

    void mirrorWaitsForTheLossOfFocus()
    {
        ShownBar b;
        b.type("xy");
        b.bar.mirror("http://cam/1");
        b.other.setFocus();
        QCOMPARE(b.bar.currentText(), "http://cam/1");
        // Without anything waiting the text stays.
        b.bar.setFocus();
        b.bar.lineEdit()->selectAll();
        b.type("xy");
        b.other.setFocus();
        QCOMPARE(b.bar.currentText(), "xy");
    }

    void enterDropsWhatWaited()
    {
        ShownBar b;
        b.type("cam/new");
        b.bar.mirror("http://cam/old");
        QTest::keyClick(&b.bar, Qt::Key_Return);
        QCOMPARE(b.lastChosen(), "cam/new");
        QCOMPARE(b.bar.currentText(), "cam/new");
        b.other.setFocus();
        QCOMPARE(b.bar.currentText(), "cam/new");
    }

    void theHeaderMarkSurvivesAPasteAndSeparatorsDoNot()
    {
        ShownBar b;
        QApplication::clipboard()->setText(QString("cam/a") + QChar(1) + "Cookie: a" + QChar(0xFF));
        b.bar.lineEdit()->paste();
        QTest::keyClick(&b.bar, Qt::Key_Return);
        QCOMPARE(b.lastChosen(), QString("cam/a") + QChar(1) + "Cookie: ay" + QChar(0x308));
    }

    void ampersandsAreShown()
    {
        ShownBar b;
        b.enter("AT&T");
        QCOMPARE(b.lastChosen(), "att/a.jpg");
        QCOMPARE(b.bar.currentText(), "AT&T");
        QCOMPARE(b.entries(), QStringList{"AT&T"});
    }
};

QTEST_MAIN(GotoBarTest)
#include "tst_GotoBar.moc"
