// The Help menu.

#include "support/ShownMain.h"

#include <QDesktopServices>

class frmMainHelpTest : public QObject
{
    Q_OBJECT
private slots:
    void onlineHelpOpensInTheBrowser()
    {
        QDesktopServices::setUrlHandler("http", this, "opened");
        OpenMain m;
        m.choose("mnuHelp", "mnuHelpH");
        QDesktopServices::unsetUrlHandler("http");
        // As the build was told, which is this where it was told nothing.
        QCOMPARE(m_opened, QList<QUrl>{QUrl("http://localhost/pevora/help.html")});
    }

public slots:
    void opened(const QUrl& url) { m_opened.append(url); }

private:
    QList<QUrl> m_opened;
};

QTEST_MAIN(frmMainHelpTest)
#include "tst_frmMainHelp.moc"
