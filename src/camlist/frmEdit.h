#pragma once

#include "cameras/CameraListLine.h"
#include "widgets/MessageQueue.h"

#include <QDialog>

class QComboBox;
class QLineEdit;

/// The properties of one camera, to be edited. It changes nothing itself: it says what was asked
/// for, and whoever hears that accepts or refuses it. It is modal, and deletes itself when it
/// closes.
class frmEdit : public QDialog
{
    Q_OBJECT

public:
    /// `categories` are those that there are; a camera may get another one.
    frmEdit(const QStringList& categories, QWidget* parent);

    /// Shows the window with what `camera` is now.
    void edit(const CameraRecord& camera);

    /// The answer to Updated where it cannot be: tells `reason`, and stays open with what was
    /// typed.
    void refuse(const MessageQueue::Message& reason);

signals:
    /// "Update" was chosen: what the camera shall be. What was not touched is what it was; the rest
    /// has no blanks around it, and a new key is as cleanedCameraKey() leaves it. The window is
    /// open until accept().
    void Updated(const CameraRecord& camera);

private:
    void update();
    QLineEdit* addBox(const QString& name, const QString& label, const QString& spoken);

    CameraRecord m_edited;
    MessageQueue* m_messages;
    QComboBox* m_cmbCat;
    QLineEdit* m_txtName;
    QLineEdit* m_txtUrl;
    QLineEdit* m_txtExtra;
};
