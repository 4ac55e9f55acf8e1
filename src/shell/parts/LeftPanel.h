#pragma once

#include <QObject>

#include <array>

class AddPanel;
class CamList;
class MessageQueue;
class QRadioButton;
class QWidget;
struct MainLayout;
struct EnteredCamera;

/// The left column of the main window: the camera list (`cList`) or in its place the page that adds
/// a camera (`picAdd`), and below them two option buttons, `opt(0)` for that page and `opt(1)` for
/// the list. They are children of the area that the column stands in; this class makes, shows and
/// places them, and hands what was entered to the list.
class LeftPanel : public QObject
{
    Q_OBJECT

public:
    /// `folder` is the application folder. Owned by `area`.
    LeftPanel(const QString& folder, QWidget* area);

    CamList& cList() { return *m_cList; }

    /// Shows the column, always with the list's page chosen, or hides all of it.
    void setShown(bool shown);

    /// How many logical pixels wide the column has to be for its captions, on either page.
    int neededWidth() const;

    /// Gives its parts their heights and tops, in a column `width` pixels wide; the buttons are
    /// `optionHeight` pixels high and share the column's width, each with room for its caption as
    /// far as that goes.
    void place(const MainLayout& layout, int width, int optionHeight);

signals:
    /// A camera shall be offered to the directory, too. Of a private one the user was asked.
    void Submitted(const EnteredCamera& camera);

    /// The user wants to read what an extra header is.
    void HeaderHelpWanted();

private:
    void optionClicked(int index);
    void cameraEntered(const EnteredCamera& camera, bool submit);

    CamList* m_cList;
    std::array<QRadioButton*, 2> m_opt;
    AddPanel* m_picAdd;
    MessageQueue* m_messages;
};
