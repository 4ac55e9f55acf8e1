#pragma once

#include "shell/parts/MainLayout.h"

#include <QList>
#include <QPointer>
#include <QWidget>

class ColumnEdge;
class GotoBar;
class LeftPanel;
class MainMenu;
class WebCam;

/// What the main window shows below its menu bar: the left column, the viewer (`Cam`), an edge
/// between them that a person drags, and the goto bar. It makes them, places them by the window's
/// own rules, not by a QLayout, and shows and hides them. When the part that has the keyboard is
/// hidden, the goto bar gets it, or without that the viewer. The menu's checks say what is on show;
/// they are set before.
class MainArea : public QWidget
{
    Q_OBJECT

public:
    /// `folder` is the application folder. `menu` lives as long.
    MainArea(const QString& folder, const MainMenu& menu, QWidget* window);

    LeftPanel* left() const { return m_left; }
    WebCam* cam() const { return m_cam; }
    GotoBar* cmbUrl() const { return m_cmbUrl; }

    void showList(bool shown);
    void showGotoBar(bool shown);

    /// Shows the viewer's toolbar where it is hidden, and hides it where it is shown; the check
    /// follows the toolbar.
    void switchToolBar();

    /// How wide the user wants the left column, in logical pixels. It is wider where its captions
    /// need that, and narrower where the viewer does.
    int listWidth() const { return m_listWidth; }
    void setListWidth(int width);

    /// Leaves the picture alone in all of the room, and gives the others their places back.
    void showPictureAlone(bool alone);
    bool showsPictureAlone() const { return m_pictureAlone; }

protected:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void layOut();
    void dragListTo(int width);
    int shownListWidth(int wanted) const;
    void keepKeyboardInView(const QWidget* before);

    const MainMenu& m_menu;
    LeftPanel* m_left;
    WebCam* m_cam;
    GotoBar* m_cmbUrl;
    ColumnEdge* m_edge;
    int m_listWidth;
    MainLayout m_layout;
    /// What is hidden beside a picture alone; empty else.
    QList<QPointer<QWidget>> m_hidden;
    bool m_pictureAlone = false;
};
