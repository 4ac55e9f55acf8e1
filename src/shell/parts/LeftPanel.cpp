#include "shell/parts/LeftPanel.h"

#include "cameras/CameraKey.h"
#include "cameras/EnteredCamera.h"
#include "cameras/PrivateCamera.h"
#include "camlist/CamList.h"
#include "shell/parts/AddPanel.h"
#include "shell/parts/MainLayout.h"
#include "widgets/MessageQueue.h"

#include <QRadioButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int OptionsLeftPx = 6;
constexpr int AddPage = 0;
constexpr int ListPage = 1;

/// Of two options the Tab key stops at the chosen one; the arrow keys go on from there.
Qt::FocusPolicy focusPolicyOf(bool chosen)
{
    return chosen ? Qt::StrongFocus : Qt::ClickFocus;
}

} // namespace

LeftPanel::LeftPanel(const QString& folder, QWidget* area)
    : QObject(area)
    , m_cList(new CamList(folder, area))
    , m_opt{new QRadioButton(u"Add"_s, area), new QRadioButton(u"List"_s, area)}
    // Behind the options for the Tab key, too.
    , m_picAdd(new AddPanel(area))
    , m_messages(new MessageQueue(area))
{
    m_cList->setObjectName(u"cList"_s);
    m_picAdd->hide();
    m_opt[ListPage]->setChecked(true);
    for (std::size_t i = 0; i < m_opt.size(); ++i) {
        m_opt[i]->setObjectName(u"opt(%1)"_s.arg(i));
        m_opt[i]->setFocusPolicy(focusPolicyOf(m_opt[i]->isChecked()));
        // Not by `clicked`, which the chosen one sends again and keys do not send at all.
        connect(m_opt[i], &QRadioButton::toggled, this, [this, i](bool chosen) {
            m_opt[i]->setFocusPolicy(focusPolicyOf(chosen));
            if (chosen)
                optionClicked(static_cast<int>(i));
        });
    }
    connect(m_picAdd, &AddPanel::CameraEntered, this, &LeftPanel::cameraEntered);
    connect(m_picAdd, &AddPanel::HeaderHelpWanted, this, &LeftPanel::HeaderHelpWanted);
}

void LeftPanel::optionClicked(int index)
{
    if (index == AddPage)
        m_picAdd->startAnew(m_cList->categories());
    m_picAdd->setVisible(index == AddPage);
    m_cList->setVisible(index == ListPage);
}

/// The camera is in the list, whatever becomes of the offer. Where the list has it already, what
/// was typed stays, to be mended.
void LeftPanel::cameraEntered(const EnteredCamera& camera, bool submit)
{
    const QString key = joinCameraKey(camera.url, camera.extraHeader);
    const bool isPrivate = isPrivateCamera(key);
    if (submit && !isPrivate)
        emit Submitted(camera);
    if (!m_cList->AddCam(camera.name, key, camera.category))
        return;
    m_opt[ListPage]->setChecked(true);
    m_cList->setFocus();
    if (submit && isPrivate) {
        m_messages->ask({QMessageBox::Question, u"Pevora"_s,
                         tr("This address is private. Offer it to the internet database all the "
                            "same?")},
                        [this, camera] { emit Submitted(camera); });
    }
}

void LeftPanel::setShown(bool shown)
{
    if (shown)
        m_opt[ListPage]->setChecked(true);
    m_picAdd->hide();
    m_cList->setVisible(shown);
    for (auto* one : m_opt)
        one->setVisible(shown);
}

int LeftPanel::neededWidth() const
{
    const int options = m_opt[0]->sizeHint().width() + m_opt[1]->sizeHint().width();
    return std::max(m_picAdd->neededWidth(), OptionsLeftPx + options);
}

void LeftPanel::place(const MainLayout& layout, int width, int optionHeight)
{
    m_cList->setGeometry(0, 0, width, layout.listHeight);
    m_picAdd->setGeometry(m_cList->geometry());

    const int room = width - OptionsLeftPx;
    const int first = std::clamp(room - m_opt[1]->sizeHint().width(), 0,
                                 std::max(room / 2, m_opt[0]->sizeHint().width()));
    m_opt[0]->setGeometry(OptionsLeftPx, layout.optionsTop, first, optionHeight);
    m_opt[1]->setGeometry(OptionsLeftPx + first, layout.optionsTop, room - first, optionHeight);
}
