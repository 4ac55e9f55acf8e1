// Every window without a mouse, without sight, and on a dark desktop.

#include "camlist/frmEdit.h"
#include "camlist/frmMan.h"
#include "shell/frmWhat.h"
#include "shell/notices/frmSignIn.h"
#include "support/Rows.h"
#include "support/ShownDirectory.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "widgets/Notice.h"

#include <QAccessible>
#include <QRadioButton>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>

namespace {

/// The windows that a test opens.
struct Desktop
{
    /// The main window, and what it opens when an entry is chosen.
    template<typename Window>
    QWidget* of(const QString& entry)
    {
        main.entry(entry).trigger();
        return main.made().findChild<Window*>();
    }

    ShownMain main;
    std::unique_ptr<ShownDirectory> directory;
};

void check(const QTreeView& list, int row)
{
    if (!list.model()->setData(list.model()->index(row, 0), Qt::Checked, Qt::CheckStateRole))
        qFatal("row %d has no check box", row);
}

struct Row
{
    const char* name;
    std::function<QWidget*(Desktop&)> open;
    /// What the Tab key reaches until it is where it began: "object name: spoken name".
    QStringList order;
};

const QStringList Viewer = {
    "Cam: Camera viewer",     "button(1): Open",        "button(2): Save",
    "button(4): Back",        "button(5): Forward",     "button(6): Stop",
    "button(7): Refresh",     "button(9): Timer",       "button(10): Delete",
    "button(12): Play Movie", "button(13): Stop Movie", "button(15): Toogle View",
    "cmbUrl: Address"};

const QList<Row>& windows()
{
    static const QList<Row> table = {
        {"main window",
         [](Desktop& d) {
             d.main.part<QTreeView>("tvwCat").setFocus();
             return &d.main.made();
         },
         QStringList{"tvwCat: Cameras", "opt(1): List"} + Viewer},
        {"page that adds a camera",
         [](Desktop& d) {
             d.main.part<QRadioButton>("opt(0)").click();
             d.main.part<QRadioButton>("opt(0)").setFocus();
             return &d.main.made();
         },
         QStringList{"opt(0): Add", "cmbCat: Category", "txtName: Name", "txtUrl: Address",
                     "txtHead: Extra header", "lbl(3): Extra Header: (ie. Cookie)",
                     "chkAdd: Add to internet database.", "cmdAdd: Add It"} +
             Viewer},
        {"Properties",
         [](Desktop& d) {
             auto& tree = d.main.part<QTreeView>("tvwCat");
             tree.setCurrentIndex(tree.model()->index(0, 0, tree.model()->index(0, 0)));
             return d.of<frmEdit>("mnuEdit");
         },
         {"txtName: Name", "txtUrl: Address", "txtExtra: Extra header", "cmdGo: Update",
          "cmdCan: Cancel", "cmbCat: Category"}},
        {"Manage Favorites",
         [](Desktop& d) {
             QWidget* window = d.of<frmMan>("mnuFavMan");
             check(*window->findChild<QTreeView*>("lvwList"), 0); // there is something to remove
             return window;
         },
         {"lvwList: Favorites", "cmdRem: Remove", "cmdAll: Select All", "cmdNone: De-Select All",
          "cmdSort: Sort", "cmdOk: Ok", "cmdCan: Cancel"}},
        {"Internet List",
         [](Desktop& d) {
             d.directory = std::make_unique<ShownDirectory>();
             d.directory->find(directoryBody({"Sights|Tower|tower", "animals|Zoo|zoo"}));
             return d.directory->window.data();
         },
         {"lvwList: Cameras", "cmdAll: Select All", "cmdNone: De-Select All", "cmdPre: Preview",
          "cmdAdd: Add Selected"}},
        {"Internet List, a query under way",
         [](Desktop& d) {
             d.directory = std::make_unique<ShownDirectory>();
             d.directory->find(directoryBody({"Sights|Tower|tower", "animals|Zoo|zoo"}));
             d.directory->server.play(Script{{}, Script::End::KeepOpen});
             d.directory->entry("mnuOptNew").trigger();
             return d.directory->window.data();
         },
         {"lvwList: Cameras", "cmdStop: Stop", "cmdPre: Preview"}},
        {"main window with a notice",
         [](Desktop& d) {
             d.main.part<WebCam>("Cam").notice().tell(
                 {Notice::Icon::Warning, "It has stopped.", {{1, "Resume"}}});
             d.main.part<QTreeView>("tvwCat").setFocus();
             return &d.main.made();
         },
         QStringList{"tvwCat: Cameras", "opt(1): List"} + Viewer.first(Viewer.size() - 1) +
             QStringList{"action(1): Resume", "close: Close notice"} + Viewer.last(1)},
        {"Sign In",
         [](Desktop& d) {
             auto* window = new frmSignIn("cam.example", false, &d.main.made());
             window->open();
             window->findChild<QLineEdit*>("txtName")->setText("me");
             return window;
         },
         {"txtName: Name", "txtPassword: Password", "cmdSignIn: Sign In", "cmdCan: Cancel"}},
        {"About",
         [](Desktop& d) { return d.of<frmWhat>("mnuHelpAb"); },
         {"qt_tabwidget_tabbar: About", "lbl(3): http://localhost/pevora/", ": Close"}},
    };
    return table;
}

/// What a screen reader says of it.
QString spoken(QWidget& widget)
{
    // Qt speaks of such a box what is chosen in it.
    if (qobject_cast<QComboBox*>(&widget))
        return widget.accessibleName();
    auto* interface = QAccessible::queryAccessibleInterface(&widget);
    return interface ? interface->text(QAccessible::Name) : QString();
}

/// The difference between the lightest and the darkest place of a picture, 0 to 255.
int contrast(const QImage& picture)
{
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const int lightness = picture.pixelColor(x, y).lightness();
            darkest = std::min(darkest, lightness);
            lightest = std::max(lightest, lightness);
        }
    }
    return lightest - darkest;
}

/// Whether the rows of this list have check boxes.
bool hasBoxes(const QTreeView& list)
{
    return list.model()->index(1, 0).data(Qt::CheckStateRole).isValid();
}

} // namespace

class AllWindowsTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_palette = QApplication::palette(); }
    void cleanup()
    {
        m_desktop.reset();
        QApplication::setPalette(m_palette);
    }

    void tabReachesEveryControlInOrder_data() { rows(); }

    void tabReachesEveryControlInOrder()
    {
        QWidget* window = opened();
        QVERIFY(window);
        QStringList order;
        std::set<const QWidget*> reached;
        for (auto* now = QApplication::focusWidget(); now && reached.insert(now).second;
             now = QApplication::focusWidget()) {
            QCOMPARE(now->window(), window);
            order << now->objectName() + ": " + spoken(*now);
            QTest::keyClick(now, Qt::Key_Tab);
        }
        QCOMPARE(order, row().order);
        QVERIFY(QApplication::focusWidget());
        QCOMPARE(QApplication::focusWidget()->objectName(), order.first().section(':', 0, 0));
    }

    void whateverTakesTheKeyboardIsSpoken_data() { rows(); }

    void whateverTakesTheKeyboardIsSpoken()
    {
        QWidget* window = opened();
        QVERIFY(window);
        for (auto* one : window->findChildren<QWidget*>()) {
            if (one->focusPolicy() != Qt::NoFocus && !one->focusProxy() && one->window() == window)
                QVERIFY2(!spoken(*one).isEmpty(), qPrintable(one->objectName()));
        }
        for (auto* box : window->findChildren<QComboBox*>())
            QCOMPARE(box->lineEdit()->accessibleName(), box->accessibleName());
        for (auto* list : window->findChildren<QTreeView*>()) {
            if (!hasBoxes(*list))
                continue;
            check(*list, 1);
            auto* cells = QAccessible::queryAccessibleInterface(list)->tableInterface();
            for (int column = 0; column < list->model()->columnCount(); ++column) {
                auto* cell = cells->cellAt(1, column);
                QVERIFY(cell);
                QCOMPARE(cell->text(QAccessible::Name),
                         list->model()->index(1, column).data().toString());
                QCOMPARE(bool(cell->state().checkable), column == 0);
                QCOMPARE(bool(cell->state().checked), column == 0);
            }
        }
    }

    void everythingIsSeenOnADarkDesktop_data() { rows(); }

    void everythingIsSeenOnADarkDesktop()
    {
        QPalette dark(QColor(49, 54, 59));
        dark.setColor(QPalette::Base, QColor(35, 38, 41));
        dark.setColor(QPalette::Text, QColor(239, 240, 241));
        QApplication::setPalette(dark);
        QWidget* window = opened();
        QVERIFY(window);
        for (auto* one : window->findChildren<QWidget*>()) {
            QRect part = one->rect();
            if (const auto* list = qobject_cast<QTreeView*>(one); list && hasBoxes(*list)) {
                // The left end of an unchecked row: nothing but the box.
                const QRect row = list->visualRect(list->model()->index(1, 0));
                part = QRect(row.topLeft(), QSize(16, row.height()));
                one = list->viewport();
            } else if (one->property("text").toString().isEmpty()) {
                continue;
            }
            if (one->isVisible() && one->isEnabled())
                QVERIFY2(contrast(one->grab(part).toImage()) > 70,
                         qPrintable(one->metaObject()->className() + one->objectName()));
        }
    }

private:
    static void rows()
    {
        const Rows<int> row("row");
        for (int i = 0; i < windows().size(); ++i)
            row(windows()[i].name, i);
    }
    static const Row& row()
    {
        QFETCH(int, row);
        return windows()[row];
    }

    /// The window of the row, with the keyboard.
    QWidget* opened()
    {
        m_desktop = std::make_unique<Desktop>();
        m_desktop->main.write("list.dat",
                              "Cities\xFFHarbour\xFFURL1\xFFSights\xFFTower\xFFURL2\r\n");
        m_desktop->main.write("pref.ini", "[FAVORITES]\r\nNAME[0]=Zoo\r\nURL[0]=zoo\r\n"
                                          "NAME[1]=Pier\r\nURL[1]=pier\r\nCOUNT=2\r\n");
        m_desktop->main.shown();
        QWidget* window = row().open(*m_desktop);
        const auto hasKeyboard = [&] {
            auto* focus = QApplication::focusWidget();
            return focus && focus->window() == window;
        };
        return window && waitForActive(window) && waitFor(hasKeyboard) ? window : nullptr;
    }

    QPalette m_palette;
    std::unique_ptr<Desktop> m_desktop;
};

QTEST_MAIN(AllWindowsTest)
#include "tst_AllWindows.moc"
