// The Help menu.

#include "support/Browser.h"
#include "support/ShownMain.h"

class frmMainHelpTest : public QObject
{
    Q_OBJECT
private slots:
    void onlineHelpOpensInTheBrowser()
    {
        const Browser browser;
        OpenMain m;
        m.choose("mnuHelp", "mnuHelpH");
        // As the build was told, which is this where it was told nothing.
        QCOMPARE(browser.opened, QList<QUrl>{QUrl("http://localhost/pevora/help.html")});
    }
};

QTEST_MAIN(frmMainHelpTest)
#include "tst_frmMainHelp.moc"
