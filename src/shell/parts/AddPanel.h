#pragma once

#include <QScrollArea>

#include <array>

class LinkLabel;
class MessageQueue;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
struct EnteredCamera;

/// The page of the left column on which a person enters a camera (`picAdd`). It says what was
/// entered, and changes no list itself. In a low window it scrolls.
class AddPanel : public QScrollArea
{
    Q_OBJECT

public:
    explicit AddPanel(QWidget* parent);

    /// Every visit begins with the same values and without a tick; what was typed before is gone.
    /// The category box
    /// offers those that always stood there, then the others of `categories`, which the list has.
    void startAnew(const QStringList& categories);

    /// How many logical pixels wide the page has to be for its captions, also where it scrolls.
    int neededWidth() const;

signals:
    /// "Add It" was pressed and everything was there, by now without blanks around it and with an
    /// address as cleanedCameraKey() leaves it. `submit`: to the directory, too; never a camera
    /// with an extra header, but for one that was typed as a password in the address. The page
    /// stays as it is.
    void CameraEntered(const EnteredCamera& camera, bool submit);

    /// The user wants to read what an extra header is.
    void HeaderHelpWanted();

private:
    void layOut(QWidget* form);
    void enterPressed();
    void addIt();
    /// Whether `text` is there; where it is not, it says so and `box` gets the keyboard.
    bool isThere(const QString& text, QWidget* box, const QString& title, const QString& message);

    MessageQueue* m_messages;
    std::array<QLabel*, 4> m_lbl;
    QComboBox* m_cmbCat;
    QLineEdit* m_txtName;
    QLineEdit* m_txtUrl;
    QLineEdit* m_txtHead;
    QCheckBox* m_chkAdd;
    QPushButton* m_cmdAdd;
};
