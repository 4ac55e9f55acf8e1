#include "viewer/surface/StatusLine.h"

#include "widgets/ElidedLabel.h"

using namespace Qt::Literals::StringLiterals;

StatusLine::StatusLine(ElidedLabel& lbl, QObject* parent)
    : QObject(parent)
    , m_lbl(lbl)
    , m_tmrFault(u"tmrFault"_s, FaultMs, this)
{
    connect(&m_tmrFault, &Timer::Tick, this, &StatusLine::endFault);
}

void StatusLine::setText(const QString& text)
{
    m_text = text;
    if (!m_tmrFault.Enabled())
        m_lbl.ShowStatusText(m_text);
}

void StatusLine::setVisible(bool visible)
{
    m_visible = visible;
    if (!m_tmrFault.Enabled())
        m_lbl.setVisible(m_visible);
}

void StatusLine::tell(const QString& text)
{
    endFault();
    setVisible(true);
    setText(text);
}

void StatusLine::tellFault(const QString& fault)
{
    m_tmrFault.restart();
    m_lbl.show();
    m_lbl.ShowStatusText(fault);
}

void StatusLine::endFault()
{
    if (!m_tmrFault.Enabled())
        return;
    m_tmrFault.setEnabled(false);
    m_lbl.ShowStatusText(m_text);
    m_lbl.setVisible(m_visible);
}
