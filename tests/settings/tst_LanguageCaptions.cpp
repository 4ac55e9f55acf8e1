#include "display/PictureCanvas.h"
#include "settings/LanguageCaptions.h"
#include "support/ScratchFile.h"

#include <QCheckBox>
#include <QMainWindow>
#include <QMenuBar>
#include <QRadioButton>

using namespace Qt::Literals::StringLiterals;

/// The main window's menus and add panel, with their design captions.
class Form : public QMainWindow
{
public:
    Form()
    {
        QMenu* options = menu("mnuOpt", "Options");
        for (const char* name : {"mnuOptInt", "mnuOptImport", "mnuOptReload", "mnuOptExport",
                                 "mnuOptExit", "mnuOptExitWO", "mnuViewTray"})
            entry(options, name, "design");
        entry(options, "mnuOptOnTop", "Always on Top");
        QMenu* view = menu("mnuView", "View");
        for (const char* name :
             {"mnuViewList", "mnuViewTb", "mnuViewNew", "mnuViewGoto", "mnuViewOSize"})
            entry(view, name, "design");
        QMenu* favourites = menu("mnuFav", "Favorites");
        entry(favourites, "mnuFavMan", "design");
        entry(favourites, "mnuFavGo(0)", "design");
        QMenu* help = menu("mnuHelp", "Help");
        entry(help, "mnuHelpAb", "design");
        entry(help, "mnuHelpH", "design");

        // A window of its own that happens to have a control of the same name.
        auto* dialog = new QDialog(this);
        m_ofOtherWindow = named<QLabel>("lbl(0)", dialog);

        auto* panel = new QWidget(this);
        named<QRadioButton>("opt(0)", panel);
        named<QRadioButton>("opt(1)", panel);
        named<QPushButton>("cmdAdd", panel);
        named<QCheckBox>("chkAdd", panel);
        for (const char* name : {"lbl(0)", "lbl(1)", "lbl(2)", "lbl(3)"})
            named<QLabel>(name, panel);
        auto* canvas = new PictureCanvas(this);
        canvas->setObjectName("picMain");
        canvas->setCaption("design");
        setWindowTitle("Pevora");
    }

    QString caption(const QString& name) const
    {
        if (const auto* menu = findChild<QMenu*>(name))
            return menu->title();
        if (const auto* action = findChild<QAction*>(name))
            return action->text();
        if (const auto* button = findChild<QAbstractButton*>(name))
            return button->text();
        for (const auto* label : findChildren<QLabel*>(name)) {
            if (label != m_ofOtherWindow)
                return label->text();
        }
        if (const auto* canvas = findChild<PictureCanvas*>(name))
            return canvas->Caption();
        return "missing";
    }

    QLabel* m_ofOtherWindow = nullptr;

private:
    QMenu* menu(const QString& name, const QString& caption)
    {
        QMenu* menu = menuBar()->addMenu(caption);
        menu->setObjectName(name);
        return menu;
    }
    static void entry(QMenu* menu, const QString& name, const QString& caption)
    {
        menu->addAction(caption)->setObjectName(name);
    }
    template<typename T>
    static T* named(const QString& name, QWidget* parent)
    {
        auto* control = new T(parent);
        control->setObjectName(name);
        control->setText("design");
        return control;
    }
};

/// Labels that form, or whatever else, by a language file with this content.
static void applyTo(QObject& form, const QByteArray& content)
{
    const ScratchFile file("lan.ini");
    file.setContent(content);
    ApplyLanguageCaptions(form, file.path());
}

class Labelled : public Form
{
public:
    explicit Labelled(const QByteArray& content) { applyTo(*this, content); }
};

/// The controls whose captions are not those that the table gives them.
static QStringList changedIn(const Form& form)
{
    QStringList changed;
    for (const CaptionRow& row : captionTable()) {
        if (form.caption(row.control.toString()) != row.defaultCaption.toString())
            changed << row.control.toString();
    }
    return changed;
}

class LanguageCaptionsTest : public QObject
{
    Q_OBJECT
private slots:
    void everyControlOfTheTableTakesItsKey()
    {
        QCOMPARE(captionTable().size(), std::size_t(26));
        QByteArray bytes = "[Main]\n";
        QSet<QString> controls;
        for (const CaptionRow& row : captionTable()) {
            bytes += row.key.toUtf8() + "= <" + row.key.toUtf8() + "> \n";
            controls.insert(row.control.toString());
        }
        QCOMPARE(controls.size(), 26);
        const Labelled form(bytes);
        for (const CaptionRow& row : captionTable())
            QCOMPARE(form.caption(row.control.toString()), '<' + row.key.toString() + '>');
        // LIST stands in the menu and beside the list.
        QCOMPARE(form.caption("mnuViewList"), "<LIST>");
        QCOMPARE(form.caption("opt(1)"), "<LIST>");
    }

    void oneKeyLeavesTheOthersAtTheirDefaults()
    {
        const Labelled form("[MAIN]\r\nVIEW=Ansicht\r\n");
        QCOMPARE(form.caption("mnuView"), "Ansicht");
        QCOMPARE(form.caption("mnuOpt"), "Options");
        QCOMPARE(form.caption("mnuOptOnTop"), "Always On Top");
        QCOMPARE(form.caption("lbl(0)"), "Category");
        QCOMPARE(form.caption("lbl(2)"), "Name");
        QCOMPARE(form.caption("mnuViewTb"), "ToolBar");
        QCOMPARE(form.caption("picMain"), "Choose a camera on the left, or type an address below.");
        QCOMPARE(changedIn(form), QStringList("mnuView"));
    }

    void anEmptyValueIsTheDefault()
    {
        const Labelled form("[MAIN]\r\nEXTRA=\r\nADDINT=\"\"\r\nEXIT=\" \"\r\n");
        QCOMPARE(form.caption("lbl(3)"), "Extra Header (ie: Cookie)");
        QCOMPARE(form.caption("chkAdd"), "Add to internet database.");
        QCOMPARE(form.caption("mnuOptExit"), " ");
    }

    void anUnreadableFileIsTheDefaultEverywhere()
    {
        Form form;
        ApplyLanguageCaptions(form, QDir::tempPath());
        QCOMPARE(changedIn(form), QStringList());
    }

    void ampersandsAreShown()
    {
        Form form;
        QLineEdit box;
        form.findChild<QLabel*>("lbl(3)")->setBuddy(&box);
        applyTo(form, "[MAIN]\nVIEW=AT&T\nEXIT=&Quit\nBADDIT=A&&B\nNAME=AT&T\nEXTRA=AT&T\n");
        QCOMPARE(form.caption("mnuView"), "AT&&T");
        QCOMPARE(form.caption("mnuOptExit"), "&&Quit");
        QCOMPARE(form.caption("cmdAdd"), "A&&&&B");
        // In a label only one with a buddy has a mnemonic.
        QCOMPARE(form.caption("lbl(2)"), "AT&T");
        QCOMPARE(form.caption("lbl(3)"), "AT&&T");
        QVERIFY(form.findChild<QPushButton*>("cmdAdd")->shortcut().isEmpty());
        QVERIFY(QKeySequence::mnemonic(form.caption("mnuView")).isEmpty());
    }

    void markupIsShown()
    {
        const Labelled form("[MAIN]\nNAME=<b>Name</b>\n");
        QCOMPARE(form.caption("lbl(2)"), "<b>Name</b>");
        QCOMPARE(form.findChild<QLabel*>("lbl(2)")->textFormat(), Qt::PlainText);
    }

    void aControlThatIsNotThereIsSkipped()
    {
        Form form;
        delete form.findChild<QWidget*>("cmdAdd");
        delete form.findChild<QMenu*>("mnuFav");
        applyTo(form, "[MAIN]\nADDINT=last\nBADDIT=x\nFAV=x\nMANFAV=x\n");
        QCOMPARE(form.caption("chkAdd"), "last");
        QObject nothing;
        applyTo(nothing, "[MAIN]\nVIEW=x\n");
    }

    void aCaptionOfAnOldFileAndOfAUtf8File()
    {
        const Labelled form("[MAIN]\r\nHELP=\xDC\x62\x65r\r\nABOUT=\xC3\x9C\x62\x65r\r\n");
        QCOMPARE(form.caption("mnuHelp"), u"Über"_s);
        QCOMPARE(form.caption("mnuHelpAb"), u"Über"_s);
    }

    void otherControlsKeepTheirCaptions()
    {
        const Labelled form("[MAIN]\nCATEGORY=x\nTRAY=x\nOSIZE=x\nURL=x\n");
        for (const char* name : {"mnuViewTray", "mnuViewOSize", "lbl(1)", "mnuFavGo(0)"})
            QCOMPARE(form.caption(name), "design");
        QCOMPARE(form.windowTitle(), "Pevora");
        QCOMPARE(form.m_ofOtherWindow->text(), "design");
        QCOMPARE(form.caption("lbl(0)"), "x");
    }
};

QTEST_MAIN(LanguageCaptionsTest)
#include "tst_LanguageCaptions.moc"
