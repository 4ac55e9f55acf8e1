#pragma once

#include <QList>
#include <QWidget>

#include <initializer_list>

class QMenu;
class ToolBarButton;

/// The viewer's toolbar (`tbMain`): fifteen places, addressed by their number from 1, built from
/// one table. It draws and reports; what a button does is its owner's business.
class ToolBar : public QWidget
{
    Q_OBJECT

public:
    /// The numbers that the rest of the viewer speaks of.
    enum Button {
        Open = 1,
        Save = 2,
        Back = 4,
        Forward = 5,
        Stop = 6,
        Refresh = 7,
        Timer = 9,
        Delete = 10,
        PlayMovie = 12,
        StopMovie = 13,
        ToggleView = 15,
    };

    static constexpr int HeightPx = 32;

    explicit ToolBar(QWidget* parent);

    /// The button at place `index`; null for separators and numbers outside of 1..15.
    ToolBarButton* button(int index) const;

    /// All buttons but those of `except`, which stay as they are.
    void setButtonsEnabled(bool on, std::initializer_list<int> except = {});
    void setPressed(int index, bool pressed);
    /// Also what a screen reader says beside the button's name.
    void setToolTipText(int index, const QString& text);
    /// Another icon of the resources, by its name without ".svg".
    void setIconName(int index, const QString& name);

signals:
    /// A click on a button, for a button with a menu on its face.
    void ButtonClick(int index);
    /// A click on item `item` (from 1) of the menu of button `index`.
    void ButtonMenuClick(int index, int item);
    /// The arrow of a button that has no menu in the table.
    void ButtonDropDown(int index);

private:
    void addKey(ToolBarButton* button, const QString& key);

    QList<ToolBarButton*> m_buttons;
};
