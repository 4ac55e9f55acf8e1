#pragma once

#include <QString>

#include <functional>

class QDialog;
class QMessageBox;

/// Waits until a dialog of type T is open, and gives it; null where none
/// opens.
template<typename T>
T* openDialog();

/// Types `file` into the file dialog that is open, after waiting for it, and accepts it. Ends the
/// program where none opens.
void acceptFile(const QString& file);

/// The open message box's parts, after waiting for it.
struct ShownMessage
{
    bool shown = false;
    QString title;
    QString text;
    int icon = 0;
};

/// Waits for a message box, notes what it shows and answers it with `button` (a
/// QMessageBox::StandardButton).
ShownMessage answerMessage(int button);
