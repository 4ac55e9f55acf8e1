// The about window.

#include "shell/frmWhat.h"
#include "support/Browser.h"
#include "support/Dialogs.h"
#include "widgets/LinkLabel.h"

#include <QPlainTextEdit>
#include <QTabBar>
#include <QTabWidget>

class frmWhatTest : public QObject
{
    Q_OBJECT
private slots:
    void itSaysWhatTheProgramIs()
    {
        frmWhat what(m_home, nullptr);
        QCOMPARE(what.windowTitle(), "About");
        QCOMPARE(what.findChild<QLabel*>("lbl(0)")->text(), "Pevora v1.1");
        QCOMPARE(what.findChild<QLabel*>("lbl(3)")->text(), m_home);
        auto* tabs = what.findChild<QTabWidget*>("tabMain");
        QCOMPARE(tabs->count(), 2);
        QCOMPARE(tabs->tabText(0), "About");
        QCOMPARE(tabs->tabText(1), "What's New");
        // The logo is painted: its middle is not the window's colour.
        auto* logo = what.findChild<QWidget*>("imgMain");
        what.show();
        QVERIFY(waitForExposed(&what));
        const QImage picture = logo->grab().toImage();
        QVERIFY(picture.pixelColor(picture.rect().center()) != picture.pixelColor(0, 0));
    }

    void oneOfTwoFramesIsVisible()
    {
        auto* what = new frmWhat(m_home, nullptr);
        what->open();
        QVERIFY(waitForExposed(what));
        auto* bar = what->findChild<QTabWidget*>("tabMain")->tabBar();
        const auto* about = what->findChild<QWidget*>("frBack(0)");
        const auto* news = what->findChild<QWidget*>("frBack(1)");
        QVERIFY(about->isVisible() && !news->isVisible());
        for (const int tab : {1, 0, 0, 1, 1, 0}) {
            QTest::mouseClick(bar, Qt::LeftButton, {}, bar->tabRect(tab).center());
            QCOMPARE(about->isVisible(), tab == 0);
            QCOMPARE(news->isVisible(), tab == 1);
        }
        what->close();
    }

    void theNotesHoldEveryTopic()
    {
        const frmWhat what(m_home, nullptr);
        const QString notes = what.findChild<QPlainTextEdit*>("txtMain")->toPlainText();
        QVERIFY(notes.startsWith("Pevora v1.1 ("));
        for (const char* topic :
             {"Favorites", "Goto bar", "Language packs", "About and Help", "from a web browser",
              "Desktop image", "Tray option", "Original size", "Preferences", "New Images Only",
              "address on show", "Pevora v1.0"})
            QVERIFY2(notes.contains(topic), topic);
        QCOMPARE(notes.count("- History:"), 2);
        QCOMPARE(notes.count("\n- "), 13);
    }

    void aClickOnTheHomePageOpensIt()
    {
        const Browser browser;
        auto* what = new frmWhat(m_home, nullptr);
        what->open();
        QVERIFY(waitForExposed(what));
        auto* home = what->findChild<LinkLabel*>("lbl(3)");
        QTest::mouseClick(home, Qt::RightButton);
        QTest::mousePress(home, Qt::LeftButton);
        QTest::mouseRelease(home, Qt::LeftButton, {}, QPoint(-20, -20));
        QCOMPARE(browser.opened.size(), 0);
        QTest::mouseClick(home, Qt::LeftButton);
        QCOMPARE(browser.opened, QList<QUrl>{QUrl(m_home)});
        what->close();
    }

    void aHomePageThatNobodyOpensIsTold()
    {
        const NoBrowser none;
        frmWhat what(m_home, nullptr);
        what.open();
        QTest::keyClick(what.findChild<LinkLabel*>("lbl(3)"), Qt::Key_Return);
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->parentWidget(), &what);
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.title, "Pevora");
        QCOMPARE(message.icon, QMessageBox::Information);
        QCOMPARE(message.text, "No browser opened this page: " + m_home);
    }

    void theHomePageIsReachedByKeys()
    {
        const Browser browser;
        frmWhat what(m_home, nullptr);
        auto* home = what.findChild<LinkLabel*>("lbl(3)");
        QVERIFY(home->focusPolicy() & Qt::TabFocus);
        int asked = 0;
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
            QTest::keyClick(home, key);
            QCOMPARE(browser.opened.size(), ++asked);
        }
        QTest::keyClick(home, Qt::Key_A);
        QCOMPARE(browser.opened.size(), asked);
    }

    void theNotesCannotBeChanged()
    {
        const frmWhat what(m_home, nullptr);
        auto* notes = what.findChild<QPlainTextEdit*>("txtMain");
        const QString before = notes->toPlainText();
        QTest::keyClicks(notes, "x");
        QCOMPARE(notes->toPlainText(), before);
    }

    void escapeClosesIt()
    {
        const QPointer<frmWhat> what = new frmWhat(m_home, nullptr);
        what->open();
        QTest::keyClick(what.data(), Qt::Key_Escape);
        QTRY_VERIFY(!what);
    }

private:
    const QString m_home = "http://localhost/pevora/";
};

QTEST_MAIN(frmWhatTest)
#include "tst_frmWhat.moc"
