#pragma once

#include <QList>
#include <QMessageBox>
#include <QObject>

#include <functional>

/// The message boxes of one control or window: they open one after the other, in the order of
/// asking, each above the window that its owner is in, which it blocks until it is answered.
/// Nobody waits for them in an event loop of their own, and they delete themselves.
class MessageQueue : public QObject
{
    Q_OBJECT

public:
    struct Message
    {
        QMessageBox::Icon icon = QMessageBox::Information;
        QString title;
        /// Plain text, whatever it holds.
        QString text;
        /// The caption of a check box that ends the repetitions of this message; none where empty.
        QString skipRest = {};
        /// The box's objectName.
        QString name = {};
    };

    /// Owned by `owner`.
    explicit MessageQueue(QWidget* owner);

    /// Tells `message`, with the button OK: `times` times, one after the other. Opens at once where
    /// no other is open. Nothing where `times` is 0 or less.
    void tell(const Message& message, qsizetype times = 1);

    /// Asks `question`, with the buttons Yes and No, where No is the default. Calls `yes` when it
    /// was answered by Yes; anything else is a No.
    void ask(const Message& question, std::function<void()> yes);

    /// For the end of the program: no message opens any more, neither of those that wait nor of
    /// those that come. Where one would open the next, closing them all would never end.
    void end();

private:
    struct Entry
    {
        Message message;
        qsizetype times = 1;
        std::function<void()> yes = {};
    };

    void add(Entry entry);
    void showNext();
    void answered(int button, bool skipRest);

    QWidget* m_owner;
    /// The first is the one that is open.
    QList<Entry> m_entries;
    bool m_open = false;
    bool m_ended = false;
};
