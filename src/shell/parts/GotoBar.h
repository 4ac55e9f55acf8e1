#pragma once

#include <QComboBox>
#include <QHash>

#include <optional>

class CamList;
class MessageQueue;

/// The goto bar (`cmbUrl`): the user types a camera's name or address and presses Enter. It
/// completes names as they are typed, keeps what was confirmed in its drop-down, and mirrors the
/// address of the camera that the viewer shows. It asks for cameras by a signal and fetches
/// nothing itself.
///
/// The bar stands for a camera: its text is the camera's address, with its scheme and port and
/// without its extra header, and behind the text is the whole key. Enter on that text, unedited or
/// typed again, chooses the camera by its key. Escape brings the text back.
class GotoBar : public QComboBox
{
    Q_OBJECT

public:
    /// Names are looked up in `list`, which lives as long.
    GotoBar(const CamList& list, QWidget* parent);

    /// Stands for the camera of `key`, which the viewer shows; an empty one is a picture without a
    /// camera. While a person is typing here that waits until Enter, Escape or the loss of the
    /// keyboard; only the last camera waits.
    void mirror(const QString& key);

    /// As if `text` had been typed here and confirmed by Enter.
    void enterText(const QString& text);

    /// Stands for the camera of `key` at once, whatever was being typed.
    void showNow(const QString& key);

    void hidePopup() override;
    void showPopup() override;

signals:
    /// The user chose a camera: its key, or an address as cleanedCameraKey() leaves it.
    void CameraChosen(const QString& key);

protected:
    void changeEvent(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    /// A camera, and the text that the bar shows for it.
    struct Choice
    {
        QString text;
        /// Empty where the text is a name, which is looked up anew each time, and where there is no
        /// camera.
        QString key;
    };

    void colourHint();
    void enter();
    void choose(const Choice& choice, const QString& key);
    void complete();
    void entryChosen(int index);
    void standFor(const Choice& choice);
    void endTyping(bool showWaiting);
    void restore();
    void selectAllAfterClick(QEvent* event);

    const CamList& m_list;
    MessageQueue* m_messages;
    Choice m_standsFor;
    std::optional<QString> m_waiting;
    /// Keys whose press came to this bar and whose release has not yet: whether they have changed
    /// the text.
    QHash<quint32, bool> m_keysDown;
    bool m_edited = false;
    bool m_typing = false;
    /// A click has brought the keyboard, and it is the click that is going on.
    bool m_clickedInto = false;
    bool m_selectAll = false;
    bool m_popupOpen = false;
    bool m_choosing = false;
};
