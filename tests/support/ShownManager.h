#pragma once

#include "camlist/frmMan.h"

#include <QPointer>
#include <QStringList>

class QPushButton;
class QTreeView;

/// The open window "Manage Favorites" in a person's hands.
class ShownManager
{
public:
    /// Waits until `window` has the keyboard; ends the program where it does not get it.
    explicit ShownManager(frmMan& window);

    /// Null once the window has deleted itself.
    frmMan* window() const { return m_window; }
    QTreeView& list() const;
    QPushButton& button(const QString& name) const;

    /// The items as they stand there; a checked one begins with "[x] ".
    QStringList items() const;
    QString key(int row) const;

    /// Clicks a button.
    void press(const QString& name) const;
    /// Clicks the check box of an item, from 0.
    void tick(int row) const;

private:
    QPointer<frmMan> m_window;
};
