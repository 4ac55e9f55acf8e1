#include "display/ThumbPanel.h"

#include "display/ThumbCell.h"

#include <QEvent>
#include <QFontInfo>
#include <QHelpEvent>
#include <QLabel>

#include <algorithm>
#include <memory>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Up to the next column, and to the next row.
constexpr QSize CaptionSizePx(ThumbPanel::ColumnStepPx - ThumbPanel::CaptionOffsetPx.x(),
                              ThumbPanel::RowStepPx - ThumbPanel::CaptionOffsetPx.y());

/// Whether that event does nothing to a thumbnail or a caption but to have it painted.
bool isPaintedFor(QEvent::Type type)
{
    switch (type) {
    case QEvent::UpdateLater:
    case QEvent::EnabledChange:
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        return true;
    default:
        return false;
    }
}

} // namespace

ThumbPanel::ThumbPanel(QWidget* parent)
    : QWidget(parent)
{
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    append();
    m_elements[0].img->move(0, FirstTopPx);
    m_elements[0].lbl->move(m_elements[0].img->pos() + CaptionOffsetPx);
}

void ThumbPanel::append()
{
    const int i = count();
    const QString caption = u"Image %1"_s.arg(i + 1);
    auto* img = new ThumbCell(this);
    img->setObjectName(u"img(%1)"_s.arg(i));
    img->setAccessibleName(caption);
    connect(img, &ThumbCell::pressed, this, [this, i] { emit Pressed(i); });
    connect(img, &ThumbCell::clicked, this, [this, i] { emit Clicked(i); });
    connect(img, &ThumbCell::TabbedInto, this, [this, i] { emit TabbedInto(i); });
    connect(img, &ThumbCell::RenderingWanted, this, &ThumbPanel::RenderingWanted);

    auto* lbl = new QLabel(this);
    lbl->setObjectName(u"lbl(%1)"_s.arg(i));
    lbl->setTextFormat(Qt::PlainText);
    lbl->setForegroundRole(QPalette::Text);
    lbl->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    lbl->setText(caption);
    lbl->resize(CaptionSizePx);
    lbl->hide();

    img->installEventFilter(this);
    lbl->installEventFilter(this);
    m_elements.push_back({img, lbl});
}

void ThumbPanel::removeLast()
{
    const std::unique_ptr<QWidget> img(m_elements.back().img);
    const std::unique_ptr<QWidget> lbl(m_elements.back().lbl);
    m_elements.pop_back();
}

void ThumbPanel::showFirst()
{
    m_elements[0].img->setCursor(Qt::PointingHandCursor);
    m_elements[0].img->show();
    m_elements[0].lbl->show();
}

void ThumbPanel::hideFirst()
{
    m_elements[0].img->hide();
    m_elements[0].lbl->hide();
}

bool ThumbPanel::opensRowAfter(const ThumbCell* previous) const
{
    return previous->x() + previous->width() + ThumbCell::SizePx.width() > m_rowWidth;
}

void ThumbPanel::place(int i)
{
    if (opensRowAfter(img(i - 1))) {
        m_nextLeft = 0;
        m_nextTop += RowStepPx;
    }
    const Element& placed = m_elements[static_cast<std::size_t>(i)];
    const QPoint at(m_nextLeft, m_nextTop);
    placed.img->move(at);
    placed.img->setCursor(Qt::PointingHandCursor);
    placed.img->show();
    placed.lbl->move(at + CaptionOffsetPx);
    placed.lbl->show();
    m_nextLeft += ColumnStepPx;
}

void ThumbPanel::startAnew()
{
    m_nextTop = FirstTopPx;
    m_nextLeft = ColumnStepPx;
}

void ThumbPanel::layOut()
{
    startAnew();
    for (int i = 1; i < count(); ++i)
        place(i);
}

/// Where the next one will open a row, that is left to its placement.
void ThumbPanel::stepBack()
{
    const ThumbCell* last = m_elements.back().img;
    m_nextTop = last->y();
    m_nextLeft = opensRowAfter(last) ? 0 : last->x() + ColumnStepPx;
}

int ThumbPanel::columns() const
{
    const auto row =
        std::partition_point(m_elements.begin(), m_elements.end(),
                             [](const Element& e) { return e.img->y() <= FirstTopPx; });
    return static_cast<int>(row - m_elements.begin());
}

ThumbPanel::Range ThumbPanel::between(int top, int bottom, int limit) const
{
    const auto begin = m_elements.begin();
    const auto end = begin + limit;
    const auto first = std::partition_point(
        begin, end, [=](const Element& e) { return e.img->geometry().bottom() < top; });
    const auto past =
        std::partition_point(first, end, [=](const Element& e) { return e.img->y() < bottom; });
    return {static_cast<int>(first - begin), static_cast<int>(past - begin)};
}

void ThumbPanel::setCaptionFont(const QFont& font)
{
    QFont captions = font;
    const int high = QFontMetrics(captions).height();
    const int room = CaptionSizePx.height();
    if (high > room)
        captions.setPixelSize(std::max(1, QFontInfo(captions).pixelSize() * room / high));
    setFont(captions);
}

/// What is shown asks to be painted, wherever it is, and is then sought among all the others,
/// which takes seconds with thousands of them: when the window is disabled because it closes, half
/// a minute. What is out of view need not ask: it is painted, as it is by then, when it comes into
/// view.
bool ThumbPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        for (int i = 0; i < count(); ++i) {
            const Element& e = m_elements[static_cast<std::size_t>(i)];
            if (watched == e.img || watched == e.lbl)
                emit TipWanted(i, static_cast<QHelpEvent*>(event)->globalPos());
        }
        return true;
    }
    if (!isPaintedFor(event->type()))
        return QWidget::eventFilter(watched, event);
    const QRect place = static_cast<QWidget*>(watched)->geometry().translated(pos());
    return !place.intersects(parentWidget()->rect());
}
