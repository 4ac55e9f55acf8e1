#pragma once

#include <QScrollArea>

#include <array>
#include <functional>

class LinkLabel;
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
    /// `fillParent` adds the categories that the list has to a box.
    AddPanel(std::function<void(QComboBox*)> fillParent, QWidget* parent);

    /// Every visit begins with the same values; what was typed before is gone.
    void startAnew();

signals:
    /// "Add It" was pressed and everything was there. `submit`: to the directory, too.
    void CameraEntered(const EnteredCamera& camera, bool submit);
    /// The page about extra headers is wanted.
    void HeaderHelpRequested();

private:
    void layOut(QWidget* form);
    void addIt();
    void fillCategories();
    /// Whether `text` is there; says so where it is not.
    bool isThere(const QString& text, const QString& title, const QString& message);

    std::function<void(QComboBox*)> m_fillParent;
    std::array<QLabel*, 4> m_lbl;
    QComboBox* m_cmbCat;
    QLineEdit* m_txtName;
    QLineEdit* m_txtUrl;
    QLineEdit* m_txtHead;
    QCheckBox* m_chkAdd;
    QPushButton* m_cmdAdd;
};
