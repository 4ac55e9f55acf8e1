#include "viewer/surface/ToolBar.h"

#include "viewer/surface/ToolBarButton.h"
#include "widgets/SymbolIcon.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QStringList>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Kind { Button, ButtonWithMenu, CheckButton, Separator };

struct ButtonRow
{
    const char* tip;
    Kind kind;
    const char* icon;
    QStringList items;
    /// Presses it, wherever in the window the keyboard is, and stands in its tip; none where empty.
    const char* key = "";
};

constexpr int SeparatorWidthPx = 4;
constexpr int ButtonTopPx = (ToolBar::HeightPx - ToolBarButton::HeightPx) / 2;

/// Row n stands at place n + 1. "Toogle View" is the button's name, letter for letter.
const QList<ButtonRow>& rows()
{
    static const QList<ButtonRow> table = {
        {"Open", Kind::ButtonWithMenu, "open", {u"Image"_s, u"Movie"_s}},
        {"Save", Kind::ButtonWithMenu, "save", {u"Image"_s, u"Movie"_s}, "Ctrl+S"},
        {"", Kind::Separator, "", {}},
        {"Back", Kind::Button, "back", {}, "Alt+Left"},
        {"Forward", Kind::Button, "forward", {}, "Alt+Right"},
        {"Stop", Kind::Button, "stop", {}, "Esc"},
        {"Refresh", Kind::Button, "refresh", {}, "F5"},
        {"", Kind::Separator, "", {}},
        {"Timer", Kind::CheckButton, "timer", {}},
        {"Delete", Kind::ButtonWithMenu, "delete", {u"Current"_s, u"All"_s}},
        {"", Kind::Separator, "", {}},
        {"Play Movie", Kind::ButtonWithMenu, "play", {u"Fast"_s, u"Normal"_s, u"Slow"_s}},
        {"Stop Movie", Kind::Button, "stop-movie", {}},
        {"", Kind::Separator, "", {}},
        {"Toogle View", Kind::Button, "toggle-view", {}},
    };
    return table;
}

} // namespace

ToolBar::ToolBar(QWidget* parent)
    : QWidget(parent)
{
    int left = 0;
    for (int index = 1; index <= rows().size(); ++index) {
        const ButtonRow& row = rows()[index - 1];
        if (row.kind == Kind::Separator) {
            m_buttons.append(nullptr);
            left += SeparatorWidthPx;
            continue;
        }
        auto* one = new ToolBarButton(row.kind != Kind::Button, this);
        m_buttons.append(one);
        one->setObjectName(u"button(%1)"_s.arg(index));
        one->setCheckable(row.kind == Kind::CheckButton);
        one->setAccessibleName(QString::fromLatin1(row.tip));
        setToolTipText(index, QString::fromLatin1(row.tip));
        addKey(one, QString::fromLatin1(row.key));
        setIconName(index, QString::fromLatin1(row.icon));
        one->move(left, ButtonTopPx);
        left += one->width();
        connect(one, &QToolButton::clicked, this, [this, index] { emit ButtonClick(index); });

        if (row.kind != Kind::ButtonWithMenu) {
            connect(one, &ToolBarButton::DropDown, this,
                    [this, index] { emit ButtonDropDown(index); });
            continue;
        }
        auto* menu = new QMenu(one);
        for (int item = 1; item <= row.items.size(); ++item)
            menu->addAction(row.items[item - 1], this,
                            [this, index, item] { emit ButtonMenuClick(index, item); });
        connect(one, &ToolBarButton::DropDown, menu,
                [one, menu] { menu->popup(one->mapToGlobal(QPoint(0, one->height()))); });
    }
}

/// An action of the viewer's own: that of a button would rest while the toolbar is hidden.
void ToolBar::addKey(ToolBarButton* button, const QString& key)
{
    if (key.isEmpty())
        return;
    const QKeySequence sequence(key);
    button->setToolTip(
        u"%1 (%2)"_s.arg(button->toolTip(), sequence.toString(QKeySequence::NativeText)));
    // That one is the window's: a text box, a menu or a notice may want it first.
    if (sequence == QKeySequence(Qt::Key_Escape))
        return;
    QWidget* viewer = parentWidget() ? parentWidget() : this;
    auto* action = new QAction(this);
    action->setShortcut(sequence);
    viewer->addAction(action);
    connect(action, &QAction::triggered, button, &QToolButton::click);
}

ToolBarButton* ToolBar::button(int index) const
{
    return index >= 1 && index <= m_buttons.size() ? m_buttons[index - 1] : nullptr;
}

void ToolBar::setButtonsEnabled(bool on, std::initializer_list<int> except)
{
    for (int index = 1; index <= m_buttons.size(); ++index) {
        if (button(index) && std::find(except.begin(), except.end(), index) == except.end())
            button(index)->setEnabled(on);
    }
}

void ToolBar::setPressed(int index, bool pressed)
{
    if (auto* one = button(index))
        one->setChecked(pressed);
}

void ToolBar::setToolTipText(int index, const QString& text)
{
    if (auto* one = button(index)) {
        one->setToolTip(text);
        one->setAccessibleDescription(text);
    }
}

void ToolBar::setIconName(int index, const QString& name)
{
    if (auto* one = button(index))
        one->setIcon(symbolIcon(name));
}
