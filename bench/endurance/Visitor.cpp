#include "Visitor.h"

#include "shared/Timer.h"
#include "shell/frmMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "widgets/FileDialog.h"

#include <QAction>
#include <QCoreApplication>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPushButton>
#include <QWheelEvent>

namespace {

/// The descendant of that kind and name.
template<typename T>
T& partOf(const QObject& owner, const char* name)
{
    T* part = owner.findChild<T*>(QString::fromLatin1(name));
    if (!part)
        qFatal("bench: the program has no %s", name);
    return *part;
}

} // namespace

Visitor::Visitor()
    : QObject(QCoreApplication::instance())
{
    QCoreApplication::instance()->installEventFilter(this);
}

bool Visitor::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Paint && !m_window) {
        m_window = qobject_cast<frmMain*>(watched);
        if (m_window)
            QMetaObject::invokeMethod(
                this, [this] { begin(); }, Qt::QueuedConnection);
    }
    return QObject::eventFilter(watched, event);
}

WebCam& Visitor::cam() const
{
    return partOf<WebCam>(window(), "Cam");
}

Timer& Visitor::timer(const char* name) const
{
    return partOf<Timer>(window(), name);
}

void Visitor::press(int button, int item) const
{
    const auto* bar = window().findChild<ToolBar*>();
    auto* face = bar->button(button);
    if (!face->isEnabled())
        qFatal("bench: the button %d is disabled", button);
    if (item == 0)
        face->click();
    else
        face->findChild<QMenu*>()->actions().at(item - 1)->trigger();
}

void Visitor::check(const char* menuEntry) const
{
    partOf<QAction>(window(), menuEntry).trigger();
}

QPoint Visitor::middle() const
{
    return partOf<QWidget>(window(), "picMain").rect().center();
}

void Visitor::wheel(int notches) const
{
    constexpr int oneNotch = 120;
    auto& picture = partOf<QWidget>(window(), "picMain");
    QWheelEvent event(middle(), picture.mapToGlobal(middle()), {}, QPoint(0, notches * oneNotch),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&picture, &event);
}

void Visitor::zoom() const
{
    auto& picture = partOf<QWidget>(window(), "picMain");
    const QPoint global = picture.mapToGlobal(middle());
    QMouseEvent down(QEvent::MouseButtonPress, middle(), global, Qt::LeftButton, Qt::LeftButton,
                     Qt::NoModifier);
    QMouseEvent up(QEvent::MouseButtonRelease, middle(), global, Qt::LeftButton, Qt::NoButton,
                   Qt::NoModifier);
    QCoreApplication::sendEvent(&picture, &down);
    QCoreApplication::sendEvent(&picture, &up);
}

void Visitor::restore() const
{
    partOf<QAction>(window(), "mnuRcRe").trigger();
}

void Visitor::answer(const QString& path) const
{
    for (auto* dialog : window().findChildren<FileDialog*>()) {
        // The last one may not be gone yet.
        if (!dialog->isVisible())
            continue;
        partOf<QLineEdit>(*dialog, "fileNameEdit").setText(path);
        static_cast<QDialog*>(dialog)->accept();
        if (const auto* box = dialog->findChild<QMessageBox*>())
            box->button(QMessageBox::Yes)->click();
        return;
    }
    qFatal("bench: no file dialog is open");
}
