#include "display/ThumbView.h"

#include "display/GridKeys.h"
#include "display/ThumbCell.h"
#include "display/ThumbPanel.h"
#include "shared/Timer.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// So many thumbnails before and behind those in view are decoded before they are looked at.
constexpr int FilledAround = 100;

/// Of the wheel's usual three a notch, and of the bar's arrows.
constexpr int ScrollStepPx = ThumbPanel::RowStepPx / 4;

/// Hides a widget for a while: each child that comes or goes while it is visible looks at all the
/// others, which takes seconds with thousands of them.
class HiddenWhile
{
public:
    explicit HiddenWhile(QWidget* widget)
        : m_widget(widget)
        , m_wasShown(!widget->isHidden())
    {
        m_widget->hide();
    }
    ~HiddenWhile() { m_widget->setVisible(m_wasShown); }
    Q_DISABLE_COPY_MOVE(HiddenWhile)

private:
    QWidget* m_widget;
    bool m_wasShown;
};

} // namespace

ThumbView::ThumbView(QWidget* parent)
    : QWidget(parent)
    , m_picBack(new ThumbPanel(this))
    , m_vs(new QScrollBar(Qt::Vertical, this))
    , m_tmrFill(new Timer(u"tmrFill"_s, 0, this))
{
    setAccessibleName(tr("Thumbnails"));
    // Thumbnails are placed by hand, from the left.
    setLayoutDirection(Qt::LeftToRight);
    setFocusPolicy(Qt::StrongFocus);
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    m_picBack->setObjectName(u"picBack"_s);
    m_vs->setObjectName(u"vs"_s);
    m_vs->setAccessibleName(tr("Scroll thumbnails"));
    m_vs->setSingleStep(ScrollStepPx);
    m_vs->setMaximum(0);
    m_vs->resize(m_vs->sizeHint());
    m_picBack->setCaptionFont(font());
    setFocusProxy(m_picBack->img(0));

    connect(m_vs, &QScrollBar::valueChanged, m_picBack,
            [this](int value) { m_picBack->move(0, -value); });
    connect(m_picBack, &ThumbPanel::Pressed, this,
            [this](int i) { setCurrent(i, Qt::MouseFocusReason); });
    connect(m_picBack, &ThumbPanel::Clicked, this, [this](int i) { emit Click(i + 1); });
    connect(m_picBack, &ThumbPanel::TipWanted, this,
            [this](int i, QPoint globalAt) { emit TipWanted(i + 1, globalAt); });
    connect(m_picBack, &ThumbPanel::TabbedInto, this, &ThumbView::scrollTo);
    connect(m_picBack, &ThumbPanel::RenderingWanted, this, &ThumbView::startFilling);
    connect(m_tmrFill, &Timer::Tick, this, &ThumbView::fillNext);
}

ThumbView::~ThumbView() = default;

Still ThumbView::Picture(int Index) const
{
    return Index >= 1 && Index <= m_picBack->count() ? m_picBack->img(Index - 1)->picture()
                                                     : Still();
}

void ThumbView::Clear()
{
    setCurrent(0);
    hideFirst();
    const HiddenWhile hidden(m_picBack);
    // Kept: the panel stays as high as the thumbnails of before made it, until the next placement.
    layOut();
    m_vs->setMaximum(0);
    while (m_picBack->count() > 1)
        destroyLast();
    m_picBack->startAnew();
    m_thumbCount = 0;
}

void ThumbView::AddImage(const Still& picture)
{
    if (m_thumbCount >= MaxThumbs)
        return;
    const int i = m_thumbCount++;
    if (i == 0) {
        m_picBack->img(0)->setPicture(picture);
        showFirst();
    } else {
        measureRow();
        m_picBack->append();
        m_picBack->img(i)->setPicture(picture);
        m_picBack->placeLast();
        fitPanel();
    }
    startFilling();
}

void ThumbView::RemImage(int Index)
{
    if (Index < 1 || m_thumbCount == 0)
        return;
    --m_thumbCount;
    for (int i = Index; i < m_picBack->count(); ++i)
        m_picBack->img(i - 1)->takePictureOf(*m_picBack->img(i));
    // The current thumbnail stays the one of the same picture.
    if (Index <= m_current)
        setCurrent(m_current - 1);
    if (m_picBack->count() > 1) {
        destroyLast();
    } else {
        hideFirst();
        m_picBack->img(0)->setPicture({});
    }
    measureRow();
    m_picBack->stepBack();
}

void ThumbView::ShowImages(const ImageList& images, bool Reset)
{
    const bool hadFocus = m_picBack->img(m_current)->hasFocus();
    const bool wasMarked = m_picBack->img(m_current)->hasFocusFrame();
    {
        const HiddenWhile hidden(m_picBack);
        if (Reset)
            Clear();
        takePictures(images);
    }
    if (hadFocus && m_thumbCount > 0)
        m_picBack->img(m_current)->setFocus(wasMarked ? Qt::OtherFocusReason
                                                      : Qt::MouseFocusReason);
    startFilling();
}

void ThumbView::makeCurrent(int Index)
{
    if (Index < 1 || Index > m_thumbCount)
        return;
    setCurrent(Index - 1);
    scrollTo(Index - 1);
}

/// Exactly the pictures of `images`, in the places that are there, with more or fewer of them.
void ThumbView::takePictures(const ImageList& images)
{
    m_thumbCount = std::min(images.Count(), MaxThumbs);
    while (m_picBack->count() > std::max(m_thumbCount, 1))
        destroyLast();
    measureRow();
    m_picBack->stepBack();
    for (int i = 0; i < m_thumbCount; ++i) {
        const bool isNew = i == m_picBack->count();
        if (isNew)
            m_picBack->append();
        m_picBack->img(i)->setPicture(images.Picture(i + 1));
        if (isNew)
            m_picBack->placeLast();
    }
    if (m_thumbCount > 0)
        showFirst();
    else
        hideFirst();
    fitPanel();
}

void ThumbView::showFirst()
{
    m_picBack->showFirst();
    if (m_current == 0)
        m_picBack->img(0)->setFocusPolicy(Qt::StrongFocus);
}

/// The strip is then no stop of the Tab key; the policy goes first, so that the focus goes on.
void ThumbView::hideFirst()
{
    m_picBack->img(0)->setFocusPolicy(Qt::NoFocus);
    m_picBack->hideFirst();
}

void ThumbView::destroyLast()
{
    if (m_current == m_picBack->count() - 1)
        setCurrent(m_current - 1);
    m_picBack->removeLast();
}

/// Before every placement: a strip that is not on screen is not told of its size.
void ThumbView::measureRow()
{
    m_picBack->setRowWidth(width() - m_vs->width());
}

void ThumbView::layOut()
{
    measureRow();
    m_picBack->layOut();
    fitPanel();
}

/// Kept: where the panel fits, the bar keeps its maximum, so that after a resize it may scroll
/// further than there are thumbnails.
void ThumbView::fitPanel()
{
    m_picBack->resize(width(), m_picBack->neededHeight());
    if (m_picBack->height() > height())
        m_vs->setMaximum(m_picBack->height() - height());
}

void ThumbView::resizeEvent(QResizeEvent*)
{
    layOut();
    m_vs->setGeometry(width() - m_vs->width(), 0, m_vs->width(), height());
    m_vs->setPageStep(std::max(height(), ThumbPanel::RowStepPx));
}

void ThumbView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        m_picBack->setCaptionFont(font());
    } else if (event->type() == QEvent::StyleChange) {
        m_vs->resize(m_vs->sizeHint().width(), height());
        m_vs->move(width() - m_vs->width(), 0);
        layOut();
    }
}

void ThumbView::wheelEvent(QWheelEvent* event)
{
    // A mouse wheel may tell pixels too, but those of the device and not of the screen. Gestures
    // are told in phases.
    const bool inPixels = event->phase() != Qt::NoScrollPhase || event->angleDelta().isNull();
    if (inPixels && !event->pixelDelta().isNull())
        m_vs->setValue(m_vs->value() - event->pixelDelta().y());
    else
        QCoreApplication::sendEvent(m_vs, event);
}

/// Brings thumbnail and caption into view.
void ThumbView::scrollTo(int i)
{
    const int imgTop = m_picBack->img(i)->y();
    const int top = imgTop == ThumbPanel::FirstTopPx ? 0 : imgTop;
    const int bottom = imgTop + ThumbPanel::RowStepPx;
    if (bottom - height() > m_vs->value())
        m_vs->setValue(bottom - height());
    if (top < m_vs->value())
        m_vs->setValue(top);
}

void ThumbView::setCurrent(int i, Qt::FocusReason reason)
{
    if (i == m_current)
        return;
    ThumbCell* before = m_picBack->img(m_current);
    ThumbCell* now = m_picBack->img(i);
    m_current = i;
    now->setFocusPolicy(Qt::StrongFocus);
    // One made later than the controls behind the strip would be the last stop of all.
    setTabOrder(before, now);
    setFocusProxy(now);
    if (before->hasFocus())
        now->setFocus(reason);
    before->setFocusPolicy(Qt::NoFocus);
}

/// The same for a thumbnail that takes the place of another: it is marked as that was.
void ThumbView::setCurrent(int i)
{
    setCurrent(i, m_picBack->img(m_current)->hasFocusFrame() ? Qt::OtherFocusReason
                                                             : Qt::MouseFocusReason);
}

void ThumbView::keyPressEvent(QKeyEvent* event)
{
    const bool plain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (m_thumbCount == 0 || !plain) {
        event->ignore();
        return;
    }
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (!event->isAutoRepeat())
            m_picBack->img(m_current)->click();
        return;
    }
    const Grid grid{m_thumbCount, m_picBack->columns(),
                    std::max(height() / ThumbPanel::RowStepPx, 1)};
    const int target = gridKeyTarget(event->key(), m_current, grid);
    if (target < 0) {
        event->ignore();
        return;
    }
    setCurrent(target, Qt::OtherFocusReason);
    scrollTo(target);
}

void ThumbView::showEvent(QShowEvent*)
{
    startFilling();
}

void ThumbView::hideEvent(QHideEvent*)
{
    m_tmrFill->setEnabled(false);
}

void ThumbView::startFilling()
{
    if (isVisible())
        m_tmrFill->setEnabled(true);
}

void ThumbView::fillNext()
{
    if (ThumbCell* next = nextToFill())
        next->render();
    else
        m_tmrFill->setEnabled(false);
}

ThumbCell* ThumbView::nextToFill() const
{
    const int top = m_vs->value();
    const ThumbPanel::Range view = m_picBack->between(top, top + height(), m_thumbCount);
    const ThumbPanel::Range inOrder[] = {
        view,
        {view.end, std::min(view.end + FilledAround, m_thumbCount)},
        {std::max(view.first - FilledAround, 0), view.first}};
    for (const ThumbPanel::Range& range : inOrder) {
        for (int i = range.first; i < range.end; ++i) {
            if (m_picBack->img(i)->needsRendering())
                return m_picBack->img(i);
        }
    }
    return nullptr;
}
