#include "shell/parts/GotoBar.h"

#include "cameras/CameraKey.h"
#include "camlist/CamList.h"
#include "shared/InputText.h"
#include "widgets/HintColour.h"
#include "widgets/InputBoxes.h"
#include "widgets/MessageQueue.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QWheelEvent>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Tells one key from the others, also where another key, held down at its press and let go before
/// its release, has given it another meaning.
quint32 identityOf(const QKeyEvent& event)
{
    const auto place = event.nativeScanCode();
    return place != 0 ? place : static_cast<quint32>(event.key());
}

/// What is shown of a camera: never its extra header, which may be a secret. Schemes are in lower
/// case.
QString shownAddressOf(const QString& key)
{
    const QString address = withoutHttpScheme(splitCameraKey(key).address);
    const QString host = hostPartOf(address);
    return webAddressOf(host + address.mid(host.size()));
}

} // namespace

GotoBar::GotoBar(const CamList& list, QWidget* parent)
    : QComboBox(parent)
    , m_list(list)
    , m_messages(new MessageQueue(this))
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
    setToolTip(tr("Ctrl+V elsewhere in the window shows the address on the clipboard"));
    lineEdit()->setPlaceholderText(tr("Type a camera's name or address and press Enter"));
    colourHint();
    takeTextsOfAnyLength(lineEdit());
    // A pasted camera key keeps its mark.
    cleanWhileTyping(lineEdit(), true);
    connect(lineEdit(), &QLineEdit::textEdited, this, [this] { m_edited = m_typing = true; });
    lineEdit()->installEventFilter(this);
    connect(this, &QComboBox::activated, this, [this](int index) {
        // Also sent for Enter, the loss of the keyboard, the wheel and arrow keys: only a choice in
        // the open list counts.
        if (m_choosing)
            entryChosen(index);
    });
}

void GotoBar::colourHint()
{
    QPalette colours = lineEdit()->palette();
    colours.setColor(QPalette::PlaceholderText,
                     hintColour(palette(), QPalette::Base, QPalette::Text));
    lineEdit()->setPalette(colours);
}

void GotoBar::changeEvent(QEvent* event)
{
    QComboBox::changeEvent(event);
    if (event->type() == QEvent::PaletteChange && lineEdit())
        colourHint();
}

void GotoBar::mirror(const QString& key)
{
    if (m_typing && hasFocus())
        m_waiting = key;
    else
        showNow(key);
}

void GotoBar::showNow(const QString& key)
{
    endTyping(false);
    standFor({shownAddressOf(key), key});
}

/// A text that is there already keeps its caret and what is selected of it: the camera on show is
/// mirrored with each of its images.
void GotoBar::standFor(const Choice& choice)
{
    m_standsFor = choice;
    if (currentText() == choice.text)
        return;
    setEditText(choice.text);
    lineEdit()->setCursorPosition(0);
}

void GotoBar::endTyping(bool showWaiting)
{
    m_typing = false;
    const auto waiting = std::exchange(m_waiting, std::nullopt);
    if (showWaiting && waiting)
        showNow(*waiting);
}

void GotoBar::restore()
{
    endTyping(true);
    standFor(Choice(m_standsFor));
    lineEdit()->deselect();
}

void GotoBar::keyPressEvent(QKeyEvent* event)
{
    const auto key = identityOf(*event);
    if (!event->isAutoRepeat())
        m_keysDown.insert(key, false);
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        event->accept(); // acts on its release
        return;
    case Qt::Key_Escape:
        restore();
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
    m_edited = false;
    QComboBox::keyPressEvent(event);
    if (m_edited && m_keysDown.contains(key))
        m_keysDown[key] = true;
}

void GotoBar::keyReleaseEvent(QKeyEvent* event)
{
    QComboBox::keyReleaseEvent(event);
    if (event->isAutoRepeat())
        return;
    const auto down = m_keysDown.constFind(identityOf(*event));
    // A release whose press went elsewhere (a dialog closed by Enter) is not the user's here.
    if (down == m_keysDown.cend())
        return;
    const bool edited = *down;
    m_keysDown.erase(down);
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
        if (edited)
            complete();
        break;
    }
}

void GotoBar::enterText(const QString& text)
{
    setEditText(cleanInput(text, true));
    m_edited = true;
    enter();
}

void GotoBar::enter()
{
    const QString typed = currentText();
    const QString trimmed = typed.trimmed();
    if (typed == m_standsFor.text && !m_standsFor.key.isEmpty()) {
        choose(Choice(m_standsFor), m_standsFor.key);
        return;
    }
    // A name may begin or end with a blank itself.
    for (const QString& name : {typed, trimmed}) {
        const QString key = hasWebScheme(trimmed) ? QString() : m_list.ReturnUrlViaName(name);
        if (!key.isEmpty()) {
            choose({name, {}}, key);
            return;
        }
    }
    const auto key = takeCameraKey(typed, *m_messages);
    if (!key)
        return;
    const QString address = splitCameraKey(*key).address;
    if (address.isEmpty())
        endTyping(true);
    else
        choose({address, *key}, *key);
}

void GotoBar::choose(const Choice& choice, const QString& key)
{
    // A camera that waited is older than what the user now asks for.
    endTyping(false);
    m_standsFor = choice;
    {
        // The first entry would otherwise become the current one and replace the text.
        const QSignalBlocker quiet(this);
        addItem(choice.text, choice.key);
        setCurrentIndex(-1);
        setEditText(choice.text);
    }
    lineEdit()->selectAll();
    emit CameraChosen(key);
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

void GotoBar::entryChosen(int index)
{
    const Choice entry = {itemText(index), itemData(index).toString()};
    endTyping(false);
    if (entry.text.isEmpty())
        return;
    m_standsFor = entry;
    const QString named = m_list.ReturnUrlViaName(entry.text);
    if (!named.isEmpty())
        emit CameraChosen(named);
    else
        emit CameraChosen(entry.key.isEmpty() ? entry.text : entry.key);
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
    m_keysDown.clear();
    m_clickedInto = event->reason() == Qt::MouseFocusReason;
    QComboBox::focusInEvent(event);
}

void GotoBar::focusOutEvent(QFocusEvent* event)
{
    m_keysDown.clear();
    m_clickedInto = m_selectAll = false;
    QComboBox::focusOutEvent(event);
    if (event->reason() != Qt::PopupFocusReason)
        endTyping(true);
}

void GotoBar::wheelEvent(QWheelEvent* event)
{
    event->ignore();
}

bool GotoBar::eventFilter(QObject* watched, QEvent* event)
{
    const bool handled = QComboBox::eventFilter(watched, event);
    if (watched == lineEdit())
        selectAllAfterClick(event);
    return handled;
}

/// A click that brings the keyboard selects all, unless it selects something itself. After the
/// box has handled it, which makes what is selected by then the desktop's primary selection.
void GotoBar::selectAllAfterClick(QEvent* event)
{
    if (event->type() != QEvent::MouseButtonPress && event->type() != QEvent::MouseButtonRelease)
        return;
    const bool left = static_cast<const QMouseEvent*>(event)->button() == Qt::LeftButton;
    if (event->type() == QEvent::MouseButtonPress) {
        m_selectAll = std::exchange(m_clickedInto, false) && left;
    } else if (std::exchange(m_selectAll, false)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (hasFocus() && !lineEdit()->hasSelectedText())
                    lineEdit()->selectAll();
            },
            Qt::QueuedConnection);
    }
}
