#include "support/Closing.h"

#include "support/Waiting.h"

#include <QCoreApplication>
#include <QTimer>
#include <QWidget>

int codeAfterClosing(QWidget& window)
{
    window.show();
    if (!waitForExposed(&window))
        return -1;
    // What ends the program comes with the next turn of the event loop, the second timer later.
    QTimer::singleShot(0, &window, [&] {
        window.close();
        QTimer::singleShot(1, &window, [&] {
            QTimer::singleShot(1, &window, [] { QCoreApplication::exit(StillRuns); });
        });
    });
    return QCoreApplication::exec();
}
