#include "shell/LeftPanel.h"

#include "camlist/CamList.h"
#include "shared/Twips.h"
#include "shell/MainLayout.h"

#include <QRadioButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int OptionsLeftPx = 6;

} // namespace

LeftPanel::LeftPanel(const QString& folder, QWidget* area)
    : QObject(area)
    , m_cList(new CamList(folder, area))
    , m_opt{new QRadioButton(u"Add"_s, area), new QRadioButton(u"List"_s, area)}
{
    m_cList->setObjectName(u"cList"_s);
    for (std::size_t i = 0; i < m_opt.size(); ++i)
        m_opt[i]->setObjectName(u"opt(%1)"_s.arg(i));
    m_opt[0]->setEnabled(false);
    m_opt[1]->setChecked(true);
}

void LeftPanel::setShown(bool shown)
{
    m_cList->setVisible(shown);
    for (auto* one : m_opt)
        one->setVisible(shown);
    if (shown)
        m_opt[1]->setChecked(true);
}

void LeftPanel::place(const MainLayout& layout, int optionHeight)
{
    const int width = pixelsFromTwips(WidthTwips);
    m_cList->setGeometry(0, 0, width, layout.listHeight);

    const int room = width - OptionsLeftPx;
    const int first = std::clamp(room - m_opt[1]->sizeHint().width(), 0,
                                 std::max(room / 2, m_opt[0]->sizeHint().width()));
    m_opt[0]->setGeometry(OptionsLeftPx, layout.optionsTop, first, optionHeight);
    m_opt[1]->setGeometry(OptionsLeftPx + first, layout.optionsTop, room - first, optionHeight);
}
