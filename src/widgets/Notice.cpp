#include "widgets/Notice.h"

#include "widgets/SymbolIcon.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int IconPx = 20;
constexpr int MarginPx = 6;
/// So much of its accent is mixed into the bar's ground, in percent.
constexpr int Tint = 18;

QColor mixed(const QColor& ground, const QColor& accent)
{
    const auto part = [](int one, int other) { return (one * (100 - Tint) + other * Tint) / 100; };
    return {part(ground.red(), accent.red()), part(ground.green(), accent.green()),
            part(ground.blue(), accent.blue())};
}

/// What a screen reader takes it for.
class AccessibleNotice : public QAccessibleWidget
{
public:
    explicit AccessibleNotice(Notice* notice)
        : QAccessibleWidget(notice, QAccessible::AlertMessage)
    {
    }
    QString text(QAccessible::Text kind) const override
    {
        if (kind == QAccessible::Name)
            return static_cast<Notice*>(widget())->sentence();
        return QAccessibleWidget::text(kind);
    }
};

QAccessibleInterface* accessibleNotice(const QString& /*className*/, QObject* object)
{
    auto* notice = qobject_cast<Notice*>(object);
    return notice ? new AccessibleNotice(notice) : nullptr;
}

} // namespace

Notice::Notice(QWidget* parent)
    : QFrame(parent)
    , m_picture(new QLabel(this))
    , m_sentence(new QLabel(this))
    , m_buttons(new QWidget(this))
    , m_close(new QToolButton(this))
    , m_layout(new QGridLayout(this))
{
    static const bool known = [] {
        QAccessible::installFactory(accessibleNotice);
        return true;
    }();
    Q_UNUSED(known)
    setObjectName(u"notice"_s);
    m_sentence->setObjectName(u"sentence"_s);
    m_sentence->setTextFormat(Qt::PlainText);
    m_sentence->setWordWrap(true);
    m_sentence->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_sentence->setFocusPolicy(Qt::NoFocus);
    m_sentence->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    (new QHBoxLayout(m_buttons))->setContentsMargins(0, 0, 0, 0);
    m_close->setObjectName(u"close"_s);
    m_close->setAutoRaise(true);
    m_close->setIcon(symbolIcon(u"close"_s));
    m_close->setFocusPolicy(Qt::TabFocus);
    m_close->setToolTip(tr("Close"));
    m_close->setAccessibleName(tr("Close notice"));
    connect(m_close, &QToolButton::clicked, this, &Notice::close);

    m_layout->setContentsMargins(MarginPx, MarginPx, MarginPx, MarginPx);
    m_layout->addWidget(m_picture, 0, 0, Qt::AlignTop);
    m_layout->addWidget(m_sentence, 0, 1);
    m_layout->addWidget(m_close, 0, 3, Qt::AlignTop);
    m_layout->setColumnStretch(1, 1);
    setCursor(Qt::ArrowCursor);
    hide();
}

QString Notice::sentence() const
{
    return isHidden() ? QString() : m_sentence->text();
}

void Notice::tell(const Message& message)
{
    if (sentence() == message.sentence)
        return;
    m_icon = message.icon;
    showIcon();
    m_sentence->setText(message.sentence);
    showButtons(message.buttons);
    place();
    show();
    raise();
    // In the colour of its kind, also where its place is the old one's.
    update();
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

void Notice::showIcon()
{
    const QIcon icon = symbolIcon(m_icon == Icon::Warning ? u"warning"_s : u"information"_s);
    m_picture->setPixmap(icon.pixmap(QSize(IconPx, IconPx), devicePixelRatioF()));
}

void Notice::showButtons(const QList<Button>& buttons)
{
    // One of them may be what was just chosen, and have the keyboard.
    for (auto* old : m_buttons->findChildren<QPushButton*>(Qt::FindDirectChildrenOnly)) {
        old->hide();
        old->setParent(this);
        old->deleteLater();
    }
    // Where the button that closes has its place among the window's controls; it comes last.
    QWidget* before = m_close;
    for (const auto& [id, caption] : buttons) {
        auto* one = new QPushButton(caption, m_buttons);
        one->setObjectName(u"action(%1)"_s.arg(id));
        one->setAutoDefault(false);
        one->setFocusPolicy(Qt::TabFocus);
        m_buttons->layout()->addWidget(one);
        one->show(); // else only with the next event
        setTabOrder(before, one);
        before = one;
        connect(one, &QPushButton::clicked, this, [this, id = id] { choose(id); });
    }
    m_buttons->setVisible(!buttons.isEmpty());
    setTabOrder(before, m_close);
}

void Notice::choose(int id)
{
    hide();
    emit Chosen(id);
}

void Notice::close()
{
    const QString closed = sentence();
    hide();
    emit Closed(closed);
}

void Notice::setRoom(const QRect& room)
{
    if (m_room == room)
        return;
    m_room = room;
    place();
}

/// The buttons stand beside the sentence where that then has one line, else below it.
void Notice::place()
{
    const int buttons = m_buttons->isHidden() ? 0 : m_buttons->sizeHint().width() + MarginPx;
    const int wanted = m_sentence->fontMetrics().horizontalAdvance(m_sentence->text()) + buttons +
                       IconPx + m_close->sizeHint().width() + 6 * MarginPx;
    m_layout->removeWidget(m_buttons);
    if (wanted <= m_room.width())
        m_layout->addWidget(m_buttons, 0, 2);
    else
        m_layout->addWidget(m_buttons, 1, 1, 1, 3, Qt::AlignRight);
    m_layout->activate();
    setGeometry(m_room.x(), m_room.y(), m_room.width(), m_layout->heightForWidth(m_room.width()));
}

QColor Notice::accent() const
{
    constexpr QRgb amber = 0xFFE0A000;
    return m_icon == Icon::Warning ? QColor(amber) : palette().color(QPalette::Highlight);
}

void Notice::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setPen(accent());
    painter.setBrush(mixed(palette().color(QPalette::Window), accent()));
    painter.drawRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5));
}

/// The keyboard came here by Tab; Escape closes what it stands in.
void Notice::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QFrame::keyPressEvent(event);
}

void Notice::changeEvent(QEvent* event)
{
    QFrame::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange)
        place();
    else if (event->type() == QEvent::PaletteChange)
        showIcon();
}

/// A click here is none on the picture below.
void Notice::mousePressEvent(QMouseEvent* event)
{
    event->accept();
}
