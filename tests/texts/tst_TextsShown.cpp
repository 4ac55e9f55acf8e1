// What is there as soon as a window is: each text of the table, as the running program shows it.

#include "camlist/frmEdit.h"
#include "camlist/frmMan.h"
#include "directory/frmInt.h"
#include "display/PictureCanvas.h"
#include "shared/BuildSettings.h"
#include "shell/frmWhat.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ShownMain.h"
#include "texts/ProgramTexts.h"

#include <QAbstractButton>
#include <QFileDialog>
#include <QFormLayout>
#include <QHeaderView>
#include <QInputDialog>
#include <QMenuBar>
#include <QRadioButton>
#include <QSettings>
#include <QTabWidget>

#include <functional>
#include <memory>

namespace {

constexpr auto OneCamera = "Cities\xFFHarbour\xFF"
                           "cam.example/a.jpg\r\n";

/// Opens the place in a program that has not started yet.
using Open = std::function<QWidget*(ShownMain&)>;

/// The place where the folder has an empty language file, too.
Open translated(const Open& open)
{
    return [open](ShownMain& m) {
        m.write("lan.ini", "");
        return open(m);
    };
}

/// The window of that class, which the menu's entry opens.
template<typename Window>
Open windowOf(const QString& entry)
{
    return [entry](ShownMain& m) -> QWidget* {
        m.write("list.dat", OneCamera);
        m.shown();
        auto& tree = m.part<QTreeView>("tvwCat");
        tree.setCurrentIndex(tree.model()->index(0, 0, tree.model()->index(0, 0)));
        m.entry(entry).trigger();
        QWidget* window = nullptr;
        (void)waitFor([&] {
            for (QWidget* one : QApplication::topLevelWidgets()) {
                if (one->isVisible() && qobject_cast<Window*>(one))
                    window = one;
            }
            return window;
        });
        return window;
    };
}

/// The main window with a movie of two images, loaded.
frmMain& withImages(ShownMain& m)
{
    m.write("two.pvm", plainMovie(2));
    m.made(m.path("two.pvm"));
    m.shown();
    if (!waitFor([&] { return m.part<QLabel>("lblPic").text() == "Image 1"; }))
        qFatal("the movie is not loaded");
    return m.made();
}

/// The file dialog that a button of the viewer opens, by an entry of its menu.
Open fileDialogOf(const QString& button, int item)
{
    return [=](ShownMain& m) {
        withImages(m);
        m.part<QAbstractButton>(button).findChild<QMenu*>()->actions()[item - 1]->trigger();
        return openDialog<QFileDialog>();
    };
}

/// The main window's part of that name; its list is the one given, or a new one.
Open partOf(const QString& name, const QByteArray& list = {})
{
    return [=](ShownMain& m) {
        if (!list.isEmpty())
            m.write("list.dat", list);
        m.shown();
        return &m.part<QWidget>(name);
    };
}

QWidget* mainWindow(ShownMain& m)
{
    return &m.shown();
}

QWidget* menuBar(ShownMain& m)
{
    return m.shown().menuBar();
}

QWidget* addPage(ShownMain& m)
{
    m.shown();
    m.part<QRadioButton>("opt(0)").click();
    return &m.part<QWidget>("picAdd");
}

const QHash<QString, Open>& places()
{
    static const QHash<QString, Open> table = {
        {"main window", mainWindow},
        {"main window, empty lan.ini", translated(mainWindow)},
        {"menu bar", menuBar},
        {"menu bar, empty lan.ini", translated(menuBar)},
        {"page that adds", addPage},
        {"page that adds, empty lan.ini", translated(addPage)},
        {"new list", partOf("cList")},
        {"list", partOf("cList", OneCamera)},
        {"viewer", partOf("Cam")},
        {"goto bar", partOf("cmbUrl")},
        {"strip of two images",
         [](ShownMain& m) {
             withImages(m);
             m.part<QAbstractButton>("button(15)").click();
             return &m.part<QWidget>("tvMain");
         }},
        {"custom rate", windowOf<QInputDialog>("mnuTmrSel(99)")},
        {"image to open", fileDialogOf("button(1)", 1)},
        {"movie to open", fileDialogOf("button(1)", 2)},
        {"image to save", fileDialogOf("button(2)", 1)},
        {"movie to save", fileDialogOf("button(2)", 2)},
        {"properties of Harbour", windowOf<frmEdit>("mnuEdit")},
        {"favourites", windowOf<frmMan>("mnuFavMan")},
        {"internet list", windowOf<frmInt>("mnuOptInt")},
        {"search terms",
         [](ShownMain& m) {
             QWidget* list = windowOf<frmInt>("mnuOptInt")(m);
             list->findChild<QAction*>("mnuOptSearch")->trigger();
             return openDialog<QInputDialog>();
         }},
        {"about", windowOf<frmWhat>("mnuHelpAb")},
    };
    return table;
}

/// Without the marks of access keys.
QString captionOf(QString text)
{
    return text.replace("&&", QString(QChar::Null)).remove('&').replace(QChar::Null, '&');
}

QString menuOf(QObject& owner)
{
    auto* menu = qobject_cast<QMenu*>(&owner);
    if (!menu)
        menu = owner.findChild<QMenu*>();
    QStringList captions;
    for (const QAction* entry : menu ? menu->actions() : QList<QAction*>())
        captions << (entry->isSeparator() ? "-" : captionOf(entry->text()));
    return captions.join('|');
}

QString textOf(QObject& control)
{
    if (const auto* menu = qobject_cast<QMenu*>(&control))
        return captionOf(menu->title());
    if (const auto* entry = qobject_cast<QAction*>(&control))
        return captionOf(entry->text());
    if (const auto* button = qobject_cast<QAbstractButton*>(&control))
        return captionOf(button->text());
    if (const auto* box = qobject_cast<QComboBox*>(&control))
        return box->currentText();
    if (const auto* dialog = qobject_cast<QInputDialog*>(&control))
        return dialog->textValue();
    return control.property("text").toString();
}

QString promptOf(QObject& control)
{
    const auto* dialog = qobject_cast<QInputDialog*>(&control);
    return dialog ? dialog->labelText() : QString();
}

QString placeholderOf(QObject& control)
{
    const auto* box = qobject_cast<QComboBox*>(&control);
    return box ? box->lineEdit()->placeholderText() : QString();
}

QString captionOfView(QObject& control)
{
    const auto* view = qobject_cast<PictureCanvas*>(&control);
    return view ? view->Caption() : QString();
}

QString entriesOf(const QComboBox* box)
{
    QStringList entries;
    for (int i = 0; box && i < box->count(); ++i)
        entries << box->itemText(i);
    return entries.join('|');
}

const QAbstractItemModel* modelOf(QObject& list)
{
    const auto* view = qobject_cast<QTreeView*>(&list);
    return view ? view->model() : nullptr;
}

QString columnsOf(QObject& list)
{
    QStringList columns;
    const auto* model = modelOf(list);
    for (int i = 0; model && i < model->columnCount(); ++i)
        columns << model->headerData(i, Qt::Horizontal).toString();
    return columns.join('|');
}

QString tabsOf(QObject& control)
{
    QStringList tabs;
    const auto* strip = qobject_cast<QTabWidget*>(&control);
    for (int i = 0; strip && i < strip->count(); ++i)
        tabs << captionOf(strip->tabText(i));
    return tabs.join('|');
}

QString camerasOf(QObject& tree)
{
    QStringList cameras;
    const auto* model = modelOf(tree);
    for (int row = 0; model && row < model->rowCount(); ++row) {
        const QModelIndex category = model->index(row, 0);
        for (int i = 0; i < model->rowCount(category); ++i)
            cameras << category.data().toString() + '/' +
                           model->index(i, 0, category).data().toString();
    }
    return cameras.join('|');
}

QString labelOf(QObject& box)
{
    auto* widget = qobject_cast<QWidget*>(&box);
    auto* form = qobject_cast<QFormLayout*>(widget->parentWidget()->layout());
    const auto* label = qobject_cast<QLabel*>(form ? form->labelForField(widget) : nullptr);
    return label ? label->text() : QString("no label");
}

QString shownBy(QObject& control, const QString& property)
{
    static const QHash<QString, std::function<QString(QObject&)>> readers = {
        {"text", textOf},
        {"title", [](QObject& o) { return o.property("windowTitle").toString(); }},
        {"tip", [](QObject& o) { return o.property("toolTip").toString(); }},
        {"prompt", promptOf},
        {"placeholder", placeholderOf},
        {"caption", captionOfView},
        {"menu", menuOf},
        {"entries", [](QObject& o) { return entriesOf(qobject_cast<QComboBox*>(&o)); }},
        {"filters", [](QObject& o) { return entriesOf(o.findChild<QComboBox*>("fileTypeCombo")); }},
        {"columns", columnsOf},
        {"tabs", tabsOf},
        {"cameras", camerasOf},
        {"label", labelOf},
    };
    return readers.contains(property) ? readers[property](control) : "no such property";
}

QObject* controlOf(QWidget& place, const char* name)
{
    if (!*name)
        return &place;
    if (auto* control = place.findChild<QObject*>(name))
        return control;
    for (auto* control : place.findChildren<QObject*>(QString(""))) {
        if (control->inherits(name))
            return control;
    }
    return nullptr;
}

/// Whatever the parts of a place say that a person can read.
QStringList allTextsIn(QWidget& place)
{
    QStringList texts;
    QObjectList parts = place.findChildren<QObject*>();
    parts << &place;
    for (QObject* one : std::as_const(parts)) {
        texts << one->property("placeholderText").toString()
              << one->property("windowTitle").toString();
        if (qobject_cast<QWidget*>(one) || qobject_cast<QAction*>(one))
            texts << one->property("toolTip").toString();
        if (qobject_cast<QMenu*>(one) || qobject_cast<QAction*>(one) ||
            qobject_cast<QAbstractButton*>(one) || qobject_cast<QLabel*>(one))
            texts << textOf(*one);
    }
    texts.removeAll("");
    texts.removeAll(homePage()); // which the build decides
    texts.removeDuplicates();
    return texts;
}

/// The table's texts of a place, and the parts of those that have several.
QStringList tableTextsOf(const QString& place)
{
    QStringList texts;
    for (const ShownText& row : shownTexts()) {
        if (row.place == place)
            texts << row.text << QString(row.text).split('|');
    }
    return texts;
}

} // namespace

class TextsShownTest : public QObject
{
    Q_OBJECT
private slots:
    /// Qt keeps the look of its file dialog there.
    void initTestCase()
    {
        QVERIFY(m_settings.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    }

    void cleanupTestCase() { m_main.reset(); }

    void thePlaceSaysIt_data()
    {
        const Rows<int> row("row");
        for (int i = 0; i < shownTexts().size(); ++i) {
            const auto& [place, control, property, text] = shownTexts()[i];
            row(std::string(place) + ": " + control + " " + property, i);
        }
    }

    void thePlaceSaysIt()
    {
        QFETCH(int, row);
        const auto& [place, name, property, text] = shownTexts()[row];
        QWidget* window = open(place);
        QVERIFY2(window, "the place does not open");
        QObject* control = controlOf(*window, name);
        QVERIFY2(control, "the place has no such control");
        QCOMPARE(shownBy(*control, property), QString(text));
    }

    void nothingElseIsSaid_data()
    {
        const Rows<QString> row("place");
        for (const char* place : {"goto bar", "menu bar", "page that adds", "list", "viewer",
                                  "properties of Harbour", "favourites", "internet list", "about"})
            row(place, place);
    }

    void nothingElseIsSaid()
    {
        QFETCH(QString, place);
        QWidget* window = open(place);
        QVERIFY(window);
        const QStringList known = tableTextsOf(place);
        QStringList unknown;
        for (const QString& text : allTextsIn(*window)) {
            if (!known.contains(text))
                unknown << text;
        }
        QCOMPARE(unknown.join('|'), "");
    }

private:
    /// Rows of one place, one after the other, share its window.
    QWidget* open(const QString& place)
    {
        if (place != m_place) {
            m_place = place;
            m_main = std::make_unique<ShownMain>();
            m_window = places().contains(place) ? places()[place](*m_main) : nullptr;
        }
        return m_window;
    }

    QTemporaryDir m_settings;
    QString m_place;
    std::unique_ptr<ShownMain> m_main;
    QPointer<QWidget> m_window;
};

QTEST_MAIN(TextsShownTest)
#include "tst_TextsShown.moc"
