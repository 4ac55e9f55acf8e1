#include "shell/GotoBar.h"

#include "cameras/CameraKey.h"
#include "camlist/CamList.h"
#include "widgets/InputBoxes.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QWheelEvent>

#include <utility>

using namespace Qt::Literals::StringLiterals;

GotoBar::GotoBar(const CamList& list, QWidget* parent)
    : QComboBox(parent)
    , m_list(list)
{
    setObjectName(u"cmbUrl"_s);
    setAccessibleName(tr("Address"));
    setEditable(true);
    // A screen reader speaks of the field inside, which has the caret.
    lineEdit()->setAccessibleName(accessibleName());
    // Entries are this class's business: duplicates included, in the order confirmed.
    setInsertPolicy(NoInsert);
    setCompleter(nullptr);
    setDuplicatesEnabled(true);
    setMaxVisibleItems(20);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    lineEdit()->setPlaceholderText(tr("Type a camera's name or address and press Enter"));
    takeTextsOfAnyLength(lineEdit());
    // A pasted camera key keeps its mark.
    cleanWhileTyping(lineEdit(), true);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_typing = true; });
    connect(this, &QComboBox::activated, this, [this] {
        // Also sent for Enter, the loss of the keyboard, the wheel and arrow keys: only a choice in
        // the open list counts.
        if (m_choosing)
            entryChosen();
    });
}

void GotoBar::mirror(const QString& url)
{
    if (m_typing && hasFocus())
        m_waiting = url;
    else
        showNow(url);
}

void GotoBar::showNow(const QString& text)
{
    m_typing = false;
    m_waiting.reset();
    setEditText(text);
    lineEdit()->setCursorPosition(0);
}

void GotoBar::endTyping(bool showWaiting)
{
    m_typing = false;
    const auto waiting = std::exchange(m_waiting, std::nullopt);
    if (showWaiting && waiting)
        showNow(*waiting);
}

void GotoBar::keyPressEvent(QKeyEvent* event)
{
    if (!event->isAutoRepeat())
        ++m_keysDown;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        event->accept(); // acts on its release
        return;
    case Qt::Key_Escape:
        lineEdit()->deselect();
        endTyping(true);
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        // They would change the text without a choice; with Alt they open the list.
        if (!(event->modifiers() & Qt::AltModifier))
            return;
        break;
    default:
        break;
    }
    QComboBox::keyPressEvent(event);
}

void GotoBar::keyReleaseEvent(QKeyEvent* event)
{
    QComboBox::keyReleaseEvent(event);
    // A release whose press went elsewhere (a dialog closed by Enter) is not the user's here.
    if (event->isAutoRepeat() || m_keysDown == 0)
        return;
    --m_keysDown;
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        enter();
        break;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        // No completion, so that a person can remove one without it coming back at once.
        break;
    default:
        complete();
        break;
    }
}

void GotoBar::enter()
{
    const QString text = currentText();
    QString url = text;
    if (!hasWebScheme(text)) {
        url = m_list.ReturnUrlViaName(text);
        if (url.isEmpty())
            url = text;
    }
    // An address that waited is older than what the user now asks for.
    endTyping(url.isEmpty());
    if (url.isEmpty())
        return;
    {
        // The first entry would otherwise become the current one and replace the text.
        const QSignalBlocker quiet(this);
        addItem(text);
        setCurrentIndex(-1);
        setEditText(text);
    }
    lineEdit()->selectAll();
    emit CameraChosen(url);
}

void GotoBar::complete()
{
    const QString typed = currentText();
    const QString rest = m_list.Search(typed).mid(typed.size());
    if (rest.isEmpty())
        return;
    lineEdit()->setText(typed + rest);
    lineEdit()->setSelection(static_cast<int>(typed.size()), static_cast<int>(rest.size()));
}

void GotoBar::entryChosen()
{
    const QString text = currentText();
    endTyping(false);
    if (text.isEmpty())
        return;
    const QString url = m_list.ReturnUrlViaName(text);
    emit CameraChosen(url.isEmpty() ? text : url);
}

void GotoBar::showPopup()
{
    m_popupOpen = true;
    QComboBox::showPopup();
}

void GotoBar::hidePopup()
{
    // A choice closes the list first and is announced then, within the same event.
    if (std::exchange(m_popupOpen, false)) {
        m_choosing = true;
        QMetaObject::invokeMethod(
            this, [this] { m_choosing = false; }, Qt::QueuedConnection);
    }
    QComboBox::hidePopup();
}

void GotoBar::focusInEvent(QFocusEvent* event)
{
    m_keysDown = 0;
    QComboBox::focusInEvent(event);
}

void GotoBar::focusOutEvent(QFocusEvent* event)
{
    m_keysDown = 0;
    QComboBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        endTyping(true);
}

void GotoBar::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}
