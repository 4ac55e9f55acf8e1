// Linked into a program whose start is measured: when its first window has been painted and the
// X server has it all, it writes so to standard output, and the program is over.

#include <QCoreApplication>
#include <QEvent>
#include <QGuiApplication>
#include <QMainWindow>
#include <QPixmap>
#include <QScreen>

#include <cstdio>
#include <cstdlib>

namespace {

class FirstPaint : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && qobject_cast<QMainWindow*>(watched) && !m_seen) {
            m_seen = true;
            // After this event all widgets are painted and what they painted is on its way. Asked
            // before the window sees the event, so also told before all that it puts off itself.
            QMetaObject::invokeMethod(this, &FirstPaint::tell, Qt::QueuedConnection);
        }
        return QObject::eventFilter(watched, event);
    }

private:
    static void tell()
    {
        // Answered by the X server after everything that came before it.
        QGuiApplication::primaryScreen()->grabWindow(0, 0, 0, 1, 1);
        std::puts("painted");
        std::fflush(stdout);
        std::_Exit(0);
    }

    bool m_seen = false;
};

void watchFirstPaint()
{
    QCoreApplication::instance()->installEventFilter(new FirstPaint(QCoreApplication::instance()));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(watchFirstPaint)
