#include "support/Dialogs.h"

#include "support/Waiting.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QTest>

template<typename T>
T* openDialog()
{
    T* found = nullptr;
    (void)waitFor([&] {
        for (auto* window : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<T*>(window); dialog && dialog->isVisible())
                found = dialog;
        }
        return found != nullptr;
    });
    return found;
}

template QMessageBox* openDialog<QMessageBox>();
template QFileDialog* openDialog<QFileDialog>();
template QInputDialog* openDialog<QInputDialog>();

void acceptFile(const QString& file)
{
    auto* dialog = openDialog<QFileDialog>();
    if (!dialog)
        qFatal("no file dialog opens");
    dialog->findChild<QLineEdit*>("fileNameEdit")->setText(file);
    static_cast<QDialog*>(dialog)->accept();
}

ShownMessage answerMessage(int button)
{
    auto* box = openDialog<QMessageBox>();
    if (!box)
        return {};
    const ShownMessage message{true, box->windowTitle(), box->text(), box->icon()};
    auto* answer = box->button(static_cast<QMessageBox::StandardButton>(button));
    if (!answer)
        return {};
    // By a call: the window manager may still be moving the box away from under the pointer.
    answer->click();
    return message;
}
