// The parts of the main window on the screen: where they stand at every size, and what the View
// menu does to them.

#include "shell/parts/MainLayout.h"
#include "support/Rows.h"
#include "support/ShownMain.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <QRadioButton>

#include <algorithm>
#include <cmath>

namespace {

constexpr int ListWidth = 220;
constexpr int MinimumWithList = 572;
constexpr int MinimumWithoutList = 352;
const QStringList Parts = {"cList", "opt(0)", "opt(1)", "Cam", "cmbUrl"};

/// The main window on screen with its parts by name.
class Parted : public OpenMain
{
public:
    using OpenMain::OpenMain;

    QWidget& of(const QString& name) { return part<QWidget>(name); }
    QWidget& area() { return *made().centralWidget(); }

    /// What is wrong with the places of the parts on show; empty where nothing is.
    QString fault()
    {
        const QSize room = area().size();
        const int bar = of("cmbUrl").height();
        const bool list = !of("cList").isHidden();
        // Where a part has no room at all its old size stays, which may end beyond the edge.
        const bool fits = room.width() >= (list ? ListWidth + 5 : 0) && room.height() >= bar + 5;
        QList<QWidget*> shown;
        for (const QString& name : Parts) {
            if (!of(name).isHidden())
                shown.append(&of(name));
        }
        for (auto* one : shown) {
            if (fits && !area().rect().contains(one->geometry()))
                return one->objectName() + " is off the window";
            for (auto* other : shown) {
                if (one != other && one->geometry().intersects(other->geometry()))
                    return one->objectName() + " covers " + other->objectName();
            }
        }
        if (fits && of("Cam").geometry().right() < room.width() - 2)
            return "the viewer ends before the edge";
        if (fits && (shown.last()->geometry().bottom() < room.height() - 2))
            return shown.last()->objectName() + " ends before the edge";
        return {};
    }

    /// Gives the window's frame a size from outside, as dragging its edge does, and waits for it.
    /// The window manager holds it to the window's own least size.
    bool drag(const QSize& size)
    {
        // The window manager first learns what the window asked for.
        QCoreApplication::processEvents();
        QProcess tool;
        tool.start("xdotool", {"windowsize", QString::number(made().windowHandle()->winId()),
                               QString::number(size.width()), QString::number(size.height())});
        const QSize wanted = size.expandedTo(made().minimumSize());
        return tool.waitForFinished(HangMs) && waitFor([&] { return made().size() == wanted; });
    }
};

/// Watches the parts while something happens to their window.
class Watch : public QObject
{
public:
    explicit Watch(Parted& m)
        : m_window(m)
    {
        m.area().installEventFilter(this);
        for (const QString& name : Parts)
            m.of(name).installEventFilter(this);
    }
    QStringList faults;
    int paintings = 0;
    QHash<QObject*, int> placed;
    int mostPlaced = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (watched == &m_window.area()) {
            if (event->type() == QEvent::Resize)
                placed.clear();
            return false;
        }
        switch (event->type()) {
        case QEvent::Paint:
            ++paintings;
            if (const QString fault = m_window.fault(); !fault.isEmpty())
                faults.append(fault);
            break;
        case QEvent::Resize:
            mostPlaced = std::max(mostPlaced, ++placed[watched]);
            break;
        case QEvent::Show:
        case QEvent::Hide:
            faults.append("shown or hidden");
            break;
        default:
            break;
        }
        return false;
    }

private:
    Parted& m_window;
};

} // namespace

class frmMainLayoutTest : public QObject
{
    Q_OBJECT
private slots:
    void itBeginsWithListViewerAndBar()
    {
        Parted m;
        for (const QString& name : Parts)
            QVERIFY2(m.of(name).isVisible(), qPrintable(name));
        QCOMPARE(m.fault(), "");
        QCOMPARE(m.of("cList").pos(), QPoint(0, 0));
        QCOMPARE(m.of("cList").width(), ListWidth);
        QCOMPARE(m.of("Cam").pos(), QPoint(ListWidth + 4, 0));
        QCOMPARE(m.of("opt(0)").y(), m.of("cList").height());
        QCOMPARE(m.of("opt(1)").y(), m.of("cList").height());
        QVERIFY(m.of("opt(0)").x() < m.of("opt(1)").x());
        QCOMPARE(m.part<QRadioButton>("opt(0)").text(), "Add");
        QCOMPARE(m.part<QRadioButton>("opt(1)").text(), "List");
        QVERIFY(m.part<QRadioButton>("opt(1)").isChecked());
    }

    void theListPreferenceSwitchesAllOfTheColumn()
    {
        for (const bool on : {false, true}) {
            Parted m(on ? "[VIEW]\r\nLIST=True\r\n" : "[VIEW]\r\nLIST=False\r\n");
            QCOMPARE(m.entry("mnuViewList").isChecked(), on);
            for (const char* name : {"cList", "opt(0)", "opt(1)"})
                QCOMPARE(m.of(name).isVisible(), on);
            QCOMPARE(m.of("Cam").x(), on ? ListWidth + 4 : 0);
            QCOMPARE(m.fault(), "");
        }
    }

    void noSizeMakesPartsOverlapOrFallOff_data()
    {
        const Rows<QStringList> row("hidden");
        row("all parts", {});
        row("no toolbar", {"mnuViewTb"});
        row("no list", {"mnuViewList"});
        row("no goto bar, no toolbar", {"mnuViewGoto", "mnuViewTb"});
        row("the viewer alone", {"mnuViewList", "mnuViewGoto", "mnuViewTb"});
    }

    void noSizeMakesPartsOverlapOrFallOff()
    {
        QFETCH(QStringList, hidden);
        Parted m;
        for (const QString& entry : hidden)
            m.entry(entry).trigger();
        Watch watch(m);
        for (const int width : {1, 60, 223, 226, 352, 353, 571, 572, 573, 1'001, 3'840}) {
            for (const int height : {1, 30, 50, 51, 52, 56, 61, 130, 301, 2'160}) {
                m.made().resize(width, height);
                const QSize now = m.made().size();
                const QString at = QString("%1 x %2: ").arg(now.width()).arg(now.height());
                QCOMPARE(at + m.fault(), at);
            }
        }
        QTRY_VERIFY(watch.paintings > 0);
        QCOMPARE(watch.faults, QStringList());
        QCOMPARE(watch.mostPlaced, 1);
    }

    void draggingShowsNoUnfinishedState()
    {
        Parted m;
        Watch watch(m);
        int steps = 0;
        for (const QSize& size :
             {QSize(900, 600), QSize(760, 420), QSize(573, 300), QSize(400, 120), QSize(300, 30),
              QSize(601, 333), QSize(1'280, 900), QSize(2'560, 1'440), QSize(3'840, 2'160),
              QSize(900, 640)}) {
            watch.paintings = 0;
            QVERIFY2(m.drag(size),
                     qPrintable(QString("%1 x %2").arg(size.width()).arg(size.height())));
            QTRY_VERIFY(watch.paintings > 0);
            ++steps;
        }
        QCOMPARE(steps, 10);
        QCOMPARE(watch.faults, QStringList());
        QCOMPARE(watch.mostPlaced, 1);
    }

    void theWindowKeepsTheRoomOfItsToolBar_data()
    {
        const Rows<bool, int> row("list", "minimum");
        row("with the list", true, MinimumWithList);
        row("without the list", false, MinimumWithoutList);
    }

    void theWindowKeepsTheRoomOfItsToolBar()
    {
        QFETCH(bool, list);
        QFETCH(int, minimum);
        Parted m;
        if (!list)
            m.entry("mnuViewList").trigger();
        QVERIFY(m.drag({700, 400}));
        QVERIFY(m.drag({100, 400}));
        QCOMPARE(m.made().width(), minimum);
        // From inside as well.
        m.made().resize(10, 300);
        QCOMPARE(m.made().width(), minimum);
        QVERIFY(m.drag({minimum + 1, 400}));
        QVERIFY(m.drag({minimum, 400}));
        auto& bar = m.part<ToolBar>("tbMain");
        for (int index = 1; index <= 15; ++index) {
            if (const auto* button = bar.button(index)) {
                const QRect place(button->mapTo(&m.area(), QPoint()), button->size());
                QVERIFY2(m.area().rect().contains(place), qPrintable(button->objectName()));
                QVERIFY(!button->visibleRegion().isEmpty());
            }
        }
    }

    void switchingPartsMovesTheMinimum()
    {
        Parted m;
        QCOMPARE(m.made().minimumWidth(), MinimumWithList);
        m.entry("mnuViewList").trigger();
        QCOMPARE(m.made().minimumWidth(), MinimumWithoutList);
        m.entry("mnuViewTb").trigger();
        QCOMPARE(m.made().minimumWidth(), 0);
        QVERIFY(m.drag({120, 200}));
        QCOMPARE(m.fault(), "");
        m.entry("mnuViewList").trigger();
        QCOMPARE(m.made().minimumWidth(), 0);
        QCOMPARE(m.made().width(), 120);
        m.entry("mnuViewTb").trigger();
        QCOMPARE(m.made().width(), MinimumWithList);
        QCOMPARE(m.fault(), "");
    }

    void turningOnTheListWidensANarrowWindow()
    {
        Parted m("[VIEW]\r\nLIST=False\r\n");
        QVERIFY(m.drag({400, 300}));
        m.entry("mnuViewList").trigger();
        QCOMPARE(m.made().width(), MinimumWithList);
        QCOMPARE(m.of("Cam").width(), MinimumWithList - ListWidth - 5);
        QCOMPARE(m.fault(), "");
    }

    void theViewEntriesSwitchTheirParts()
    {
        Parted m;
        const QHash<QString, QStringList> parts = {{"mnuViewList", {"cList", "opt(0)", "opt(1)"}},
                                                   {"mnuViewTb", {"tbMain"}},
                                                   {"mnuViewGoto", {"cmbUrl"}}};
        for (const char* entry : {"mnuViewList", "mnuViewTb", "mnuViewGoto"}) {
            for (const bool on : {false, true, false, true}) {
                m.choose("mnuView", entry);
                QTRY_COMPARE(m.entry(entry).isChecked(), on);
                for (const QString& name : parts[entry])
                    QCOMPARE(m.of(name).isVisible(), on);
                QCOMPARE(m.fault(), "");
            }
        }
    }

    void turningOnTheListChoosesItsPage()
    {
        Parted m;
        // The other page is not there yet: only its button is.
        m.of("opt(0)").setEnabled(true);
        QTest::mouseClick(&m.of("opt(0)"), Qt::LeftButton, {},
                          QPoint(8, m.of("opt(0)").height() / 2));
        QVERIFY(m.part<QRadioButton>("opt(0)").isChecked());
        m.entry("mnuViewList").trigger();
        QVERIFY(m.part<QRadioButton>("opt(0)").isChecked());
        m.entry("mnuViewList").trigger();
        QVERIFY(m.part<QRadioButton>("opt(1)").isChecked());
        QVERIFY(m.of("cList").isVisible());
    }

    void hidingTheGotoBarGivesItsRoomToTheViewer()
    {
        Parted m;
        const int before = m.of("Cam").height();
        const int bar = m.of("cmbUrl").height();
        m.choose("mnuView", "mnuViewGoto");
        QTRY_VERIFY(m.of("cmbUrl").isHidden());
        QCOMPARE(m.of("Cam").height(), before + bar + 4);
        // The list's column stays as it was.
        QCOMPARE(m.of("opt(1)").geometry().bottom() + 1, m.area().height());
    }

    void optionButtonsStandLevelWithTheGotoBar()
    {
        Parted m;
        for (const char* name : {"opt(0)", "opt(1)"}) {
            QVERIFY(std::abs(m.of(name).geometry().center().y() -
                             m.of("cmbUrl").geometry().center().y()) <= 1);
            QVERIFY(m.of(name).width() >= m.of(name).sizeHint().width());
            QVERIFY(m.of(name).height() >= m.of(name).sizeHint().height());
            QVERIFY(m.of(name).geometry().right() < ListWidth);
        }
    }

    void longCaptionsOfTheOptionsHaveRoom()
    {
        for (const QByteArray& file : {QByteArray("BADD=A longer caption\r\nLIST=Liste\r\n"),
                                       QByteArray("BADD=Add\r\nLIST=A longer caption\r\n")}) {
            Parted m;
            m.write("lan.ini", "[MAIN]\r\n" + file);
            m.madeAgain();
            m.shown();
            for (const char* name : {"opt(0)", "opt(1)"})
                QVERIFY2(m.of(name).width() >= m.of(name).sizeHint().width(), name);
            QCOMPARE(m.fault(), "");
            QVERIFY(m.of("opt(1)").geometry().right() < ListWidth);
        }
    }

    void choosingThePageAgainDoesNothing()
    {
        Parted m;
        QTest::mouseClick(&m.of("opt(1)"), Qt::LeftButton, {},
                          QPoint(8, m.of("opt(1)").height() / 2));
        QVERIFY(m.part<QRadioButton>("opt(1)").isChecked());
        QVERIFY(m.of("cList").isVisible());
        QCOMPARE(m.fault(), "");
    }
};

QTEST_MAIN(frmMainLayoutTest)
#include "tst_frmMainLayout.moc"
