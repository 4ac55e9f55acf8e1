#include "viewer/movie/frmMovie.h"

#include "widgets/Topmost.h"

#include <QEvent>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int BarWidth = 280;
constexpr int Margin = 16;

} // namespace

frmMovie::frmMovie(QWidget* parent)
    : QWidget(parent, Qt::Dialog)
{
    setObjectName(u"frmMovie"_s);
    setWindowTitle(u"Saving Movie"_s);
    setAttribute(Qt::WA_QuitOnClose, false);

    m_pBar.setObjectName(u"pBar"_s);
    m_pBar.setAccessibleName(tr("Movie progress"));
    m_pBar.setMinimumWidth(BarWidth);
    m_pBar.setValue(0);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Margin, Margin, Margin, Margin);
    layout->addWidget(&m_pBar);
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void frmMovie::setMaximum(int maximum)
{
    // A range of nothing would make the bar run to and fro.
    if (maximum < 1)
        return;
    m_pBar.setMaximum(maximum);
    m_pBar.repaint();
}

void frmMovie::setValue(int value)
{
    m_pBar.setValue(value);
    m_pBar.repaint();
}

bool frmMovie::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate) {
        setTopmost(*this, true);
        // It may have been on top before, but below another such window.
        raise();
    }
    return QWidget::event(event);
}

void frmMovie::closeEvent(QCloseEvent* event)
{
    QWidget::closeEvent(event);
    emit CloseRequested();
}
