#pragma once

#include <QComboBox>

#include <optional>

class CamList;

/// The goto bar (`cmbUrl`): the user types a camera's name or address and presses Enter. It
/// completes names as they are typed, keeps what was confirmed in its drop-down, and mirrors the
/// address that the viewer shows. It asks for cameras by a signal and fetches nothing itself.
class GotoBar : public QComboBox
{
    Q_OBJECT

public:
    /// Names are looked up in `list`, which lives as long.
    GotoBar(const CamList& list, QWidget* parent);

    /// Shows the viewer's address. While a person is typing here that waits until Enter, Escape
    /// or the loss of the keyboard; only the last address waits.
    void mirror(const QString& url);

    /// Shows `text` at once, whatever was being typed.
    void showNow(const QString& text);

    void hidePopup() override;
    void showPopup() override;

signals:
    /// The user chose a camera: its key, or an address as typed.
    void CameraChosen(const QString& url);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    void enter();
    void complete();
    void entryChosen();
    void endTyping(bool showWaiting);

    const CamList& m_list;
    std::optional<QString> m_waiting;
    /// Keys whose press came to this bar and whose release has not yet.
    int m_keysDown = 0;
    bool m_typing = false;
    bool m_popupOpen = false;
    bool m_choosing = false;
};
