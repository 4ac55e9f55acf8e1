#pragma once

#include <QFrame>
#include <QList>
#include <QString>

class QGridLayout;
class QHBoxLayout;
class QLabel;
class QToolButton;

/// A message bar across the top of its room: an icon, one sentence, at most two buttons, and a
/// button that closes it. It blocks nothing and never takes the keyboard, which reaches it by Tab;
/// a screen reader speaks the sentence when it appears (QAccessible::Alert). Hidden until it has
/// something to say.
class Notice : public QFrame
{
    Q_OBJECT

public:
    enum class Icon { Information, Warning };

    struct Button
    {
        /// Tells it from the other one.
        int id = 0;
        QString caption;
    };

    struct Message
    {
        Icon icon = Icon::Information;
        /// Plain text, whatever it holds.
        QString sentence;
        /// At most two.
        QList<Button> buttons = {};
    };

    explicit Notice(QWidget* parent);

    /// Shows `message` in the place of what was shown. Nothing changes, and nothing is spoken
    /// again, where that says the same already.
    void tell(const Message& message);
    /// Hides it, without a signal.
    void dismiss() { hide(); }

    /// The sentence on show; empty while it is hidden.
    QString sentence() const;

    /// The area, in pixels of its parent, at whose top it lies. It takes the whole width and the
    /// height that its sentence needs.
    void setRoom(const QRect& room);

signals:
    /// One of the buttons was chosen. The notice has hidden itself before.
    void Chosen(int id);
    /// The user has closed it, with `sentence` on show.
    void Closed(const QString& sentence);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void showIcon();
    void showButtons(const QList<Button>& buttons);
    void choose(int id);
    void close();
    void place();
    QColor accent() const;

    QRect m_room;
    Icon m_icon = Icon::Information;
    QLabel* m_picture;
    QLabel* m_sentence;
    QWidget* m_buttons;
    QToolButton* m_close;
    QGridLayout* m_layout;
};
