#include "support/Browser.h"
#include "support/Dialogs.h"
#include "support/ScratchFile.h"
#include "widgets/MessageQueue.h"
#include "widgets/OpenOrTell.h"

class OpenOrTellTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_owner = std::make_unique<QWidget>();
        m_messages = new MessageQueue(m_owner.get());
    }

    void whatABrowserOpensIsNotTold()
    {
        const Browser browser({"http", "file"});
        const ScratchFile page("page.html");
        page.setContent("<p>");
        openOrTell("http://cam.example/a", *m_messages);
        openHelpOrTell("http://help.example/", page.path(), *m_messages);
        openHelpOrTell({}, page.path(), *m_messages);
        const QList<QUrl> expected = {QUrl("http://cam.example/a"), QUrl("http://help.example/"),
                                      QUrl::fromLocalFile(page.path())};
        QCOMPARE(browser.opened, expected);
        QVERIFY(!m_owner->findChild<QMessageBox*>());
    }

    void anAddressThatNobodyOpensIsTold()
    {
        const NoBrowser none;
        openOrTell("http://cam.example/a b", *m_messages);
        QCOMPARE(told(), "No browser opened this page: http://cam.example/a b");
    }

    void aHelpSiteThatNobodyOpensIsTold()
    {
        const NoBrowser none;
        openHelpOrTell("http://help.example/", "/no/such/page.html", *m_messages);
        QCOMPARE(told(), "No browser opened this page: http://help.example/");
    }

    void aHelpPageThatNobodyOpensIsTold()
    {
        const NoBrowser none("file");
        const ScratchFile page("page.html");
        page.setContent("<p>");
        openHelpOrTell({}, page.path(), *m_messages);
        QCOMPARE(told(), "No browser opened this page: " + page.path());
    }

    void aHelpPageThatIsNotThereIsTold()
    {
        const Browser browser({"file"});
        const ScratchFile page("page.html");
        openHelpOrTell({}, page.path(), *m_messages);
        QCOMPARE(told(), "No browser opened this page: " + page.path());
        QCOMPARE(browser.opened.size(), 0);
    }

    void whatNobodyMayOpenIsToldAsText()
    {
        const Browser browser({"http", "file"});
        openOrTell("file:///<b>x</b>", *m_messages);
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QCOMPARE(told(), "No browser opened this page: file:///<b>x</b>");
        QCOMPARE(browser.opened.size(), 0);
    }

    void aVeryLongAddressIsToldByItsBeginning()
    {
        const NoBrowser none;
        const QString begin = "http://cam.example/" + QString(481, 'x');
        openOrTell(begin + 'y', *m_messages);
        QCOMPARE(told(), "No browser opened this page: " + begin + QChar(0x2026));
    }

private:
    /// Answers the message that is on screen; gives its text, or what is wrong with it.
    static QString told()
    {
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        if (message.title != "Pevora" || message.icon != QMessageBox::Information)
            return "no information: " + message.title;
        return message.text;
    }

    std::unique_ptr<QWidget> m_owner;
    MessageQueue* m_messages = nullptr;
};

QTEST_MAIN(OpenOrTellTest)
#include "tst_OpenOrTell.moc"
