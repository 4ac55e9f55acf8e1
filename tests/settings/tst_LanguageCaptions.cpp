#include "display/PictureCanvas.h"
#include "settings/LanguageCaptions.h"
#include "support/ScratchFile.h"

#include <QCheckBox>
#include <QMainWindow>
#include <QMenuBar>
#include <QRadioButton>

#include <memory>

using namespace Qt::Literals::StringLiterals;

/// The main window's menus and add panel, with their design captions.
class Form : public QMainWindow
{
public:
    Form()
    {
        QMenu* options = menu("mnuOpt", "Options");
        for (const char* name : {"mnuOptInt", "mnuOptImport", "mnuOptReload", "mnuOptExit",
                                 "mnuOptExitWO", "mnuViewTray"})
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

class LanguageCaptionsTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_folder = std::make_unique<QTemporaryDir>(); }

    void everyControlOfTheTableTakesItsKey()
    {
        QCOMPARE(captionTable().size(), std::size_t(25));
        QByteArray bytes = "[Main]\n";
        QSet<QString> controls;
        for (const CaptionRow& row : captionTable()) {
            bytes += row.key.toUtf8() + "= <" + row.key.toUtf8() + "> \n";
            controls.insert(row.control.toString());
        }
        QCOMPARE(controls.size(), 25);
        Form form;
        ApplyLanguageCaptions(form, file(bytes));
        for (const CaptionRow& row : captionTable())
            QCOMPARE(form.caption(row.control.toString()), '<' + row.key.toString() + '>');
        // LIST stands in the menu and beside the list.
        QCOMPARE(form.caption("mnuViewList"), QString("<LIST>"));
        QCOMPARE(form.caption("opt(1)"), QString("<LIST>"));
    }

    void oneKeyLeavesTheOthersAtTheirDefaults()
    {
        Form form;
        ApplyLanguageCaptions(form, file("[MAIN]\r\nVIEW=Ansicht\r\n"));
        QCOMPARE(form.caption("mnuView"), QString("Ansicht"));
        QCOMPARE(form.caption("mnuOpt"), QString("Options"));
        QCOMPARE(form.caption("mnuOptOnTop"), QString("Always On Top"));
        QCOMPARE(form.caption("lbl(0)"), QString("Category"));
        QCOMPARE(form.caption("lbl(2)"), QString("Name"));
        QCOMPARE(form.caption("mnuViewTb"), QString("ToolBar"));
        QCOMPARE(form.caption("picMain"),
                 QString("Choose a camera on the left, or type an address below."));
        for (const CaptionRow& row : captionTable()) {
            if (row.key != u"VIEW")
                QCOMPARE(form.caption(row.control.toString()), row.defaultCaption.toString());
        }
    }

    void anEmptyValueIsTheDefault()
    {
        Form form;
        ApplyLanguageCaptions(form, file("[MAIN]\r\nEXTRA=\r\nADDINT=\"\"\r\nEXIT=\" \"\r\n"));
        QCOMPARE(form.caption("lbl(3)"), QString("Extra Header (ie: Cookie)"));
        QCOMPARE(form.caption("chkAdd"), QString("Add to internet database."));
        QCOMPARE(form.caption("mnuOptExit"), QString(" "));
    }

    void anUnreadableFileIsTheDefaultEverywhere()
    {
        Form form;
        ApplyLanguageCaptions(form, m_folder->path());
        for (const CaptionRow& row : captionTable())
            QCOMPARE(form.caption(row.control.toString()), row.defaultCaption.toString());
    }

    void ampersandsAreShown()
    {
        Form form;
        QLineEdit box;
        form.findChild<QLabel*>("lbl(3)")->setBuddy(&box);
        ApplyLanguageCaptions(
            form, file("[MAIN]\nVIEW=AT&T\nEXIT=&Quit\nBADDIT=A&&B\nNAME=AT&T\nEXTRA=AT&T\n"));
        QCOMPARE(form.caption("mnuView"), QString("AT&&T"));
        QCOMPARE(form.caption("mnuOptExit"), QString("&&Quit"));
        QCOMPARE(form.caption("cmdAdd"), QString("A&&&&B"));
        // In a label only one with a buddy has a mnemonic.
        QCOMPARE(form.caption("lbl(2)"), QString("AT&T"));
        QCOMPARE(form.caption("lbl(3)"), QString("AT&&T"));
        QVERIFY(form.findChild<QPushButton*>("cmdAdd")->shortcut().isEmpty());
        QVERIFY(QKeySequence::mnemonic(form.caption("mnuView")).isEmpty());
    }

    void markupIsShown()
    {
        Form form;
        ApplyLanguageCaptions(form, file("[MAIN]\nNAME=<b>Name</b>\n"));
        QCOMPARE(form.caption("lbl(2)"), QString("<b>Name</b>"));
        QCOMPARE(form.findChild<QLabel*>("lbl(2)")->textFormat(), Qt::PlainText);
    }

    void aControlThatIsNotThereIsSkipped()
    {
        Form form;
        delete form.findChild<QWidget*>("cmdAdd");
        delete form.findChild<QMenu*>("mnuFav");
        ApplyLanguageCaptions(form, file("[MAIN]\nADDINT=last\nBADDIT=x\nFAV=x\nMANFAV=x\n"));
        QCOMPARE(form.caption("chkAdd"), QString("last"));
        QObject nothing;
        ApplyLanguageCaptions(nothing, file("[MAIN]\nVIEW=x\n"));
    }

    void aCaptionOfAnOldFileAndOfAUtf8File()
    {
        Form form;
        ApplyLanguageCaptions(form,
                              file("[MAIN]\r\nHELP=\xDC\x62\x65r\r\nABOUT=\xC3\x9C\x62\x65r\r\n"));
        QCOMPARE(form.caption("mnuHelp"), u"Über"_s);
        QCOMPARE(form.caption("mnuHelpAb"), u"Über"_s);
    }

    void otherControlsKeepTheirCaptions()
    {
        Form form;
        ApplyLanguageCaptions(form, file("[MAIN]\nCATEGORY=x\nTRAY=x\nOSIZE=x\nURL=x\n"));
        for (const char* name : {"mnuViewTray", "mnuViewOSize", "lbl(1)", "mnuFavGo(0)"})
            QCOMPARE(form.caption(name), QString("design"));
        QCOMPARE(form.windowTitle(), QString("Pevora"));
        QCOMPARE(form.m_ofOtherWindow->text(), QString("design"));
        QCOMPARE(form.caption("lbl(0)"), QString("x"));
    }

private:
    QString file(const QByteArray& bytes)
    {
        writeFile(m_folder->filePath("lan.ini"), bytes);
        return m_folder->filePath("lan.ini");
    }
    std::unique_ptr<QTemporaryDir> m_folder;
};

QTEST_MAIN(LanguageCaptionsTest)
#include "tst_LanguageCaptions.moc"
