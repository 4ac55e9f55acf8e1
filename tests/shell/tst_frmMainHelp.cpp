// The Help menu, and the help about extra headers.

#include "support/Browser.h"
#include "support/Dialogs.h"
#include "support/ScratchFile.h"
#include "support/ShownMain.h"

#include <QRadioButton>

namespace {

/// The main window, with the help pages beside the program.
class MainWithHelp : public ShownMain
{
public:
    MainWithHelp()
    {
        if (!QDir(programPath({})).mkpath("help"))
            qFatal("no folder for the help pages");
        for (const char* page : {"help/index.html", "help/headers.html"})
            writeBesideProgram(page, "<!DOCTYPE html>");
        shown();
    }

    void askForHeaderHelp()
    {
        part<QRadioButton>("opt(0)").click();
        QTest::keyClick(&part<QLabel>("lbl(3)"), Qt::Key_Return);
    }
};

} // namespace

// The build names no site here.
class frmMainHelpTest : public QObject
{
    Q_OBJECT
private slots:
    void onlineHelpOpensTheFirstPage()
    {
        const Browser browser({"http", "file"});
        MainWithHelp m;
        m.choose("mnuHelp", "mnuHelpH");
        QCOMPARE(browser.opened,
                 QList<QUrl>{QUrl::fromLocalFile(m.programPath("help/index.html"))});
        QVERIFY(!m.made().findChild<QMessageBox*>());
    }

    void theHeaderHelpOpensItsPage()
    {
        const Browser browser({"http", "file"});
        MainWithHelp m;
        m.askForHeaderHelp();
        QCOMPARE(browser.opened,
                 QList<QUrl>{QUrl::fromLocalFile(m.programPath("help/headers.html"))});
        QVERIFY(!m.made().findChild<QMessageBox*>());
    }

    void onlineHelpThatNobodyOpensIsTold()
    {
        const NoBrowser none("file");
        MainWithHelp m;
        m.choose("mnuHelp", "mnuHelpH");
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.title, "Pevora");
        QCOMPARE(message.icon, QMessageBox::Information);
        QCOMPARE(message.text, told(m, "help/index.html"));
    }

    void headerHelpThatNobodyOpensIsTold()
    {
        const NoBrowser none("file");
        MainWithHelp m;
        m.askForHeaderHelp();
        QCOMPARE(answerMessage(QMessageBox::Ok).text, told(m, "help/headers.html"));
    }

private:
    static QString told(const ShownMain& m, const QString& page)
    {
        return "No browser opened this page: " + m.programPath(page);
    }
};

QTEST_MAIN(frmMainHelpTest)
#include "tst_frmMainHelp.moc"
