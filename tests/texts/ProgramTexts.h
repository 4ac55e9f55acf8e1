#pragma once

#include <QList>
#include <QMessageBox>
#include <QString>
#include <QStringList>

// The program's texts, in English: what its windows say, what it tells in message boxes, and what
// comes on its status lines, captions and tips in the course of work. tst_TextsShown and
// tst_TextsTold compare them with the running program. Odd spellings ("Catagory", "Toogle
// View", "De-Select All", blanks at the ends) are meant. Notices have a table of their own
// (shell/notices/NoticeTable.cpp, tests/shell/notices).

/// A text that is there as soon as its window is.
struct ShownText
{
    /// The window, or the part of one in which the control is looked for.
    const char* place;
    /// The control's object name, or its class where it has none; empty for the place itself.
    const char* control;
    /// "text", "title", "tip", "menu", "entries", "columns", "tabs", "label" (before a box),
    /// "cameras", "filters", "prompt". What has several parts has "|" between them.
    const char* property;
    const char* text;
};

/// A message box that comes when something happens.
struct ToldMessage
{
    const char* occasion;
    QMessageBox::Icon icon;
    const char* title;
    const char* text;
    QMessageBox::StandardButtons buttons;
};

/// What one control says, one text after the other, while something happens.
struct ToldTexts
{
    const char* occasion;
    /// "HOST" stands for the server's address.
    QStringList texts;
};

inline const QList<ShownText>& shownTexts()
{
    static const QList<ShownText> table = {
        {"main window", "", "title", "Pevora"},
        {"main window", "opt(0)", "text", "Add"},
        {"main window", "opt(1)", "text", "List"},

        {"menu bar", "mnuOpt", "text", "Options"},
        {"menu bar", "mnuOptInt", "text", "Internet List"},
        {"menu bar", "mnuOptImport", "text", "Import List"},
        {"menu bar", "mnuOptReload", "text", "Reload List"},
        {"menu bar", "mnuOptExport", "text", "Export List"},
        {"menu bar", "mnuOptExit", "text", "Exit"},
        {"menu bar", "mnuOptExitWO", "text", "Exit Without Saving"},
        {"menu bar", "mnuOptOnTop", "text", "Always on Top"},
        {"menu bar", "mnuViewTray", "text", "System Tray Icon"},
        {"menu bar", "mnuFav", "text", "Favorites"},
        {"menu bar", "mnuFavMan", "text", "Manage Favorites"},
        {"menu bar", "mnuView", "text", "View"},
        {"menu bar", "mnuViewList", "text", "List"},
        {"menu bar", "mnuViewTb", "text", "Toolbar"},
        {"menu bar", "mnuViewGoto", "text", "Goto Bar"},
        {"menu bar", "mnuViewNew", "text", "New Images Only"},
        {"menu bar", "mnuViewOSize", "text", "Original Size"},
        {"menu bar", "mnuViewProp", "text", "Keep Proportions"},
        {"menu bar", "mnuViewFull", "text", "Full Screen"},
        {"menu bar", "mnuHelp", "text", "Help"},
        {"menu bar", "mnuHelpAb", "text", "About"},
        {"menu bar", "mnuHelpH", "text", "Online Help"},

        {"page that adds", "lbl(0)", "text", "Category:"},
        {"page that adds", "lbl(1)", "text", "Url: (*.bmp,*.gif,*.jpg)"},
        {"page that adds", "lbl(2)", "text", "Name:"},
        {"page that adds", "lbl(3)", "text", "Extra Header: (ie. Cookie)"},
        {"page that adds", "cmbCat", "entries",
         "Animals|Buildings|Cities|General|Interest|People|Science|Sights|Traffic"},
        {"page that adds", "cmbCat", "text", "General"},
        {"page that adds", "txtName", "text", "New"},
        {"page that adds", "txtUrl", "text", "http://"},
        {"page that adds", "txtHead", "text", ""},
        {"page that adds", "chkAdd", "text", "Add to internet database."},
        {"page that adds", "cmdAdd", "text", "Add It"},

        // With a language file, what it lacks is not always what stands there without one.
        {"main window, empty lan.ini", "", "title", "Pevora"},
        {"main window, empty lan.ini", "opt(0)", "text", "Add"},
        {"main window, empty lan.ini", "opt(1)", "text", "List"},
        {"menu bar, empty lan.ini", "mnuOpt", "text", "Options"},
        {"menu bar, empty lan.ini", "mnuOptInt", "text", "Internet List"},
        {"menu bar, empty lan.ini", "mnuOptImport", "text", "Import List"},
        {"menu bar, empty lan.ini", "mnuOptReload", "text", "Reload List"},
        {"menu bar, empty lan.ini", "mnuOptExport", "text", "Export List"},
        {"menu bar, empty lan.ini", "mnuOptExit", "text", "Exit"},
        {"menu bar, empty lan.ini", "mnuOptExitWO", "text", "Exit Without Saving"},
        {"menu bar, empty lan.ini", "mnuOptOnTop", "text", "Always On Top"},
        {"menu bar, empty lan.ini", "mnuViewTray", "text", "System Tray Icon"},
        {"menu bar, empty lan.ini", "mnuFav", "text", "Favorites"},
        {"menu bar, empty lan.ini", "mnuFavMan", "text", "Manage Favorites"},
        {"menu bar, empty lan.ini", "mnuView", "text", "View"},
        {"menu bar, empty lan.ini", "mnuViewList", "text", "List"},
        {"menu bar, empty lan.ini", "mnuViewTb", "text", "ToolBar"},
        {"menu bar, empty lan.ini", "mnuViewGoto", "text", "Goto Bar"},
        {"menu bar, empty lan.ini", "mnuViewNew", "text", "New Images Only"},
        {"menu bar, empty lan.ini", "mnuViewOSize", "text", "Original Size"},
        {"menu bar, empty lan.ini", "mnuHelp", "text", "Help"},
        {"menu bar, empty lan.ini", "mnuHelpAb", "text", "About"},
        {"menu bar, empty lan.ini", "mnuHelpH", "text", "Online Help"},
        {"page that adds, empty lan.ini", "lbl(0)", "text", "Category"},
        {"page that adds, empty lan.ini", "lbl(1)", "text", "Url: (*.bmp,*.gif,*.jpg)"},
        {"page that adds, empty lan.ini", "lbl(2)", "text", "Name"},
        {"page that adds, empty lan.ini", "lbl(3)", "text", "Extra Header (ie: Cookie)"},
        {"page that adds, empty lan.ini", "chkAdd", "text", "Add to internet database."},
        {"page that adds, empty lan.ini", "cmdAdd", "text", "Add It"},

        {"new list", "tvwCat", "cameras",
         "Cities/NewYork, NY|Cities/Miami, FL|Cities/Boston, MA|Cities/Las Vegas, NV|"
         "Cities/L.A., CA|Cities/Seattle, WA|Cities/Trafalgar Sq., London|"
         "Cities/Dublin, Ireland|Cities/Quito, Ecuador|Cities/Maui, HI|Cities/Howell, MI|"
         "Sights/Big Ben"},
        {"list", "mnu", "menu", "Add to Favorites|-|Select|Copy Url|-|Edit|Remove"},
        {"list", "mnuFav", "text", "Add to Favorites"},
        {"list", "mnuSel", "text", "Select"},
        {"list", "mnuCopy", "text", "Copy Url"},
        {"list", "mnuEdit", "text", "Edit"},
        {"list", "mnuRem", "text", "Remove"},

        {"viewer", "button(1)", "tip", "Open"},
        {"viewer", "button(1)", "menu", "Image|Movie"},
        {"viewer", "button(2)", "tip", "Save (Ctrl+S)"},
        {"viewer", "button(2)", "menu", "Image|Movie"},
        {"viewer", "button(4)", "tip", "Back (Alt+Left)"},
        {"viewer", "button(5)", "tip", "Forward (Alt+Right)"},
        {"viewer", "button(6)", "tip", "Stop (Esc)"},
        {"viewer", "button(7)", "tip", "Refresh (F5)"},
        {"viewer", "button(9)", "tip", "Timer"},
        {"viewer", "button(10)", "tip", "Delete"},
        {"viewer", "button(10)", "menu", "Current|All"},
        {"viewer", "button(12)", "tip", "Play Movie"},
        {"viewer", "button(12)", "menu", "Fast|Normal|Slow"},
        {"viewer", "button(13)", "tip", "Stop Movie"},
        {"viewer", "button(15)", "tip", "Toogle View"},
        {"viewer", "mnuTmrSel(1)", "text", "1 sec"},
        {"viewer", "mnuTmrSel(5)", "text", "5 secs"},
        {"viewer", "mnuTmrSel(10)", "text", "10 secs"},
        {"viewer", "mnuTmrSel(15)", "text", "15 secs"},
        {"viewer", "mnuTmrSel(30)", "text", "30 secs"},
        {"viewer", "mnuTmrSel(45)", "text", "45 secs"},
        {"viewer", "mnuTmrSel(60)", "text", "60 secs"},
        {"viewer", "mnuTmrSel(99)", "text", "Custom"},
        {"viewer", "mnuTmrKeep", "text", "Keep Refreshing"},
        {"viewer", "mnuTmrKeep", "tip", "Go on refreshing after errors and refused answers"},
        {"viewer", "picMain", "caption", "Choose a camera on the left, or type an address below."},
        {"viewer", "mnuRcRe", "text", "Restore Image"},
        {"viewer", "mnuRcDesk", "text", "Set as Desktop Background"},
        {"viewer", "mnuRcCopy", "text", "Copy Image"},
        {"viewer", "lblPic", "text", "Image N/A"},
        {"viewer", "lbl(0)", "text", "Image 1"},
        {"viewer", "close", "tip", "Close"},

        {"goto bar", "", "tip",
         "Ctrl+V elsewhere in the window shows the address on the clipboard"},
        {"goto bar", "", "placeholder", "Type a camera's name or address and press Enter"},

        {"strip of two images", "lbl(0)", "text", "Image 1"},
        {"strip of two images", "lbl(1)", "text", "Image 2"},

        {"custom rate", "", "title", "Custom Refresh"},
        {"custom rate", "", "prompt", "Enter a Refresh rate in seconds."},
        {"custom rate", "", "text", "60"},

        {"image to open", "", "filters", "Image Files (*.bmp,*.jpg,*.gif)"},
        {"image to save", "", "filters", "Bitmap (*.bmp)|GIF (*.gif)|JPEG (*.jpg)"},
        {"movie to open", "", "filters", "Pevora Movie (*.pvm)"},
        {"movie to save", "", "filters", "Pevora Movie (*.pvm)"},

        {"properties of Harbour", "", "title", "Harbour Properties"},
        {"properties of Harbour", "cmbCat", "label", "Catagory: "},
        {"properties of Harbour", "txtName", "label", "Name: "},
        {"properties of Harbour", "txtUrl", "label", "Url: "},
        {"properties of Harbour", "txtExtra", "label", "Extra: "},
        {"properties of Harbour", "cmdGo", "text", "Update"},
        {"properties of Harbour", "cmdCan", "text", "Cancel"},

        {"favourites", "", "title", "Manage Favorites"},
        {"favourites", "lvwList", "columns", "Name"},
        {"favourites", "cmdOk", "text", "Ok"},
        {"favourites", "cmdCan", "text", "Cancel"},
        {"favourites", "cmdRem", "text", "Remove"},
        {"favourites", "cmdAll", "text", "Select All"},
        {"favourites", "cmdNone", "text", "De-Select All"},
        {"favourites", "cmdSort", "text", "Sort"},

        {"internet list", "lvwList", "columns", "Catagory|Name"},
        {"internet list", "", "title", "Internet List"},
        {"internet list", "cmdStop", "text", "Stop"},
        {"internet list", "cmdPre", "text", "Preview"},
        {"internet list", "cmdAdd", "text", "Add Selected"},
        {"internet list", "cmdAll", "text", "Select All"},
        {"internet list", "cmdNone", "text", "De-Select All"},
        {"internet list", "mnuOpt", "text", "Options"},
        {"internet list", "mnuOpt", "menu", "Search|Newest|-|Categories|-|Close"},
        {"internet list", "mnuOptSearch", "text", "Search"},
        {"internet list", "mnuOptNew", "text", "Newest"},
        {"internet list", "mnuOptDown", "text", "Categories"},
        {"internet list", "mnuOptDown", "menu",
         "Animals|Buildings|Cities|General|Interest|People|Science|Sights|Traffic"},
        {"internet list", "mnuOptDownIt(0)", "text", "Animals"},
        {"internet list", "mnuOptDownIt(8)", "text", "Traffic"},
        {"internet list", "mnuOptClose", "text", "Close"},
        {"search terms", "", "title", "Search"},
        {"search terms", "", "prompt", "Enter search terms below."},
        {"search terms", "", "text", ""},

        {"about", "", "title", "About"},
        {"about", "tabMain", "tabs", "About|What's New"},
        {"about", "lbl(0)", "text", "Pevora v1.1"},
        {"about", "lbl(1)", "text",
         "Free software under the MIT licence: use it, share it, change it, without any "
         "warranty."},
        {"about", "lbl(2)", "text", "By the Pevora authors"},
        {"about", "QPushButton", "text", "Close"},
    };
    return table;
}

inline const QList<ToldMessage>& toldMessages()
{
    using enum QMessageBox::Icon;
    constexpr auto ok = QMessageBox::StandardButtons(QMessageBox::Ok);
    constexpr auto yesNo = QMessageBox::Yes | QMessageBox::No;
    static const QList<ToldMessage> table = {
        {"exit without saving", Question, "Exit Without Saving",
         "This option allows you to exit and NOT save the Cam List.\r\n\r\nAre you sure you want "
         "to exit?",
         yesNo},
        {"new camera without a category", Information, "Catagory",
         "Please choose or create a catagory.", ok},
        {"new camera without a name", Information, "Name", "Please choose a Name.", ok},
        {"new camera without an address", Information, "URL", "Please choose a URL.", ok},
        {"new camera that is listed", Information, "Pevora", "Cam is already in your list.", ok},
        {"new camera of another kind", Information, "Pevora",
         "Only http:// and https:// addresses can be shown.", ok},
        {"private camera to offer", Question, "Pevora",
         "This address is private. Offer it to the internet database all the same?", yesNo},
        {"list that holds a camera of ours", Information, "Pevora", "Cam is already in your list.",
         ok},
        {"list that is none", Critical, "Pevora", "Not a valid Zipped Cam List.", ok},
        {"category to remove", Question, "Remove", "Remove Category and all its contents?", yesNo},
        {"custom rate in letters", Information, "Error", "Must be a number!", ok},
        {"custom rate too large", Critical, "Error",
         "Number is too large, please choose a small number.", ok},
        {"movie that is none", Critical, "Error", "Out of memory", ok},
        {"nothing checked to add", Information, "Pevora", "No Cams Selected.", ok},
    };
    return table;
}

inline const QList<ToldTexts>& toldTexts()
{
    static const QString connecting = "  Connecting to HOST";
    static const QString connected = "  Connected!";
    static const QString change = "(change http://127.0.0.1/a.jpg)";
    static const QList<ToldTexts> table = {
        // The status line below the picture, and between its texts, in brackets, what the viewer
        // tells its owner. Of an answer the first piece is 1460 bytes long.
        {"picture in two pieces",
         {connecting, connected, "  Getting Image [14% of 10kb]", "  Getting Image [50% of 10kb]",
          "  Getting Image [100% of 10kb]", "  Getting Image [100% of 10kb]", change, "(done)"}},
        {"picture of no known length",
         {connecting, connected, "  Getting Image [ 1kb ]", "  Getting Image [ 10kb ]",
          "  Getting Image [100% of 10kb]", change, "(done)"}},
        {"picture that did not change for the server",
         {connecting, connected, "(error Not a new image)", "  Not a new image: Process stopped."}},
        {"picture as it was",
         {connecting, connected, "  Getting Image [14% of 10kb]", "  Getting Image [100% of 10kb]",
          "  Getting Image [100% of 10kb]", "(done)", "  Not a New Image: Process Stopped."}},
        {"picture that is not there",
         {connecting, connected, "(error File not found)", "  Error: File not found."}},
        {"picture that is elsewhere",
         {connecting, connected, connecting, connected, "(error File not found)",
          "  Error: File not found."}},
        {"body that is no picture",
         {connecting, connected, "  Getting Image [14% of 10kb]", "  Getting Image [100% of 10kb]",
          "  Getting Image [100% of 10kb]", "  Error: Not a picture.", "(error Not a picture)"}},
        {"server that is not there",
         {connecting, "  Connection refused", "(error Connection refused)"}},
        {"fetch that is stopped", {connecting, connected, "  Stopped", "(done)"}},
        {"file that is no picture", {"  Error: Not a picture."}},
        {"image that cannot be saved", {"  Error: Not saved."}},

        // The caption below the picture.
        {"images come and go", {"Image 1", "Image 2", "Image 1", "Image N/A"}},

        // The timer's tip, and the caption of its custom entry.
        {"timer is pressed, ticks, and is pressed",
         {"Timer: Refreshing in 30 sec(s)", "Refreshing in 29 sec(s)", "Timer"}},
        {"custom rate, and one of the others", {"90 sec(s)", "Custom"}},

        // The caption of the progress window.
        {"movie of two images is loaded", {"Saving Movie", "Loading Movie...", "Done!"}},
        {"movie of two images is saved",
         {"Saving Movie", "Saving Image 1", "Saving Image 2", "Saving Movie...", "Done!"}},

        // The caption of the internet list.
        {"directory with one camera",
         {"Connecting", "Connected", "Receiving Data", "Finished [Found 1 Cams]"}},
        {"directory without such cameras",
         {"Connecting", "Connected", "Receiving Data", "Finished [No Cams Found]"}},
        {"directory that is not there", {"Connecting", "Error: Connection refused"}},

        // The tip of the tray icon.
        {"icon in the tray", {"Pevora"}},
    };
    return table;
}
