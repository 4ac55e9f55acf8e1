#include "platform/TerminationSignal.h"
#include "shared/AppFolder.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QLoggingCategory>

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Pevora"));
    QApplication::setDesktopFileName(QStringLiteral("pevora"));
    QApplication::setQuitOnLastWindowClosed(false);
    // A camera that sends no picture is told on the status line, not on the terminal.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.gui.imageio*=false"));

    const QString commandLine = QApplication::arguments().mid(1).join(u' ');
    frmMain window({applicationFolder(), QApplication::applicationDirPath()}, commandLine);
    const TerminationSignal termination;
    QObject::connect(&termination, &TerminationSignal::Received, &window, &frmMain::shutDown);
    window.show();
    return QApplication::exec();
}
