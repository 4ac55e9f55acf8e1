// The icon in the tray and the window behind it.
#include "tray/frmTray.h"

#include "support/Closing.h"
#include "support/Desktop.h"
#include "support/Rows.h"
#include "widgets/SymbolIcon.h"

#include <QSystemTrayIcon>

#include <algorithm>

/// The window that Qt puts into the tray.
static QWidget* iconWindow()
{
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::find_if(windows.begin(), windows.end(), [](const QWidget* one) {
        return one->inherits("QSystemTrayIconSys");
    });
    return found == windows.end() ? nullptr : *found;
}

/// A tray on the desktop with the form's icon, and the clicks that were told of.
struct TrayedForm
{
    TrayedForm()
    {
        sysTray.AddTrayIcon(form, "Pevora");
        const QRect icon = DesktopTray::icon();
        QVERIFY(!icon.isEmpty());
        middle = icon.center();
    }

    const DesktopTray tray;
    frmTray form{symbolIcon("pevora")};
    modSysTray& sysTray = form.sysTray();
    QSignalSpy asked{&sysTray, &modSysTray::Clicked};
    QPoint middle; ///< Of the icon.
};

class frmTrayTest : public QObject
{
    Q_OBJECT
private slots:
    /// A click soon after another one is a click of its own.
    void init() { QApplication::setDoubleClickInterval(0); }

    void addingHidesTheFormAndShowsItsIcon()
    {
        const DesktopTray tray;
        frmTray form(symbolIcon("pevora"));
        form.show();
        QVERIFY(!form.sysTray().isReachable());
        form.sysTray().AddTrayIcon(form, "Pevora");
        QVERIFY(!form.isVisible());
        QVERIFY(!DesktopTray::icon().isEmpty());
        QVERIFY(form.sysTray().isReachable());
        QVERIFY(iconWindow());
        QCOMPARE(iconWindow()->toolTip(), "Pevora");
        // What is painted there is the form's icon, and no empty square.
        const QImage seen = iconWindow()->grab().toImage();
        QSet<QRgb> colours;
        for (int y = 0; y < seen.height(); ++y) {
            for (int x = 0; x < seen.width(); ++x)
                colours.insert(seen.pixel(x, y));
        }
        QVERIFY(colours.size() > 4);
    }

    void theIconIsAddedAndRemovedOnce()
    {
        const DesktopTray tray;
        frmTray form(symbolIcon("pevora"));
        for (int round = 0; round < 3; ++round) {
            form.sysTray().AddTrayIcon(form, "Pevora");
            QVERIFY(!DesktopTray::icon().isEmpty());
            QSignalSpy replaced(iconWindow(), &QObject::destroyed);
            form.sysTray().AddTrayIcon(form, "Pevora");
            QCOMPARE(replaced.count(), 0);
            QCOMPARE(DesktopTray::icons(), 1);
            form.sysTray().RemoveTrayIcon();
            QCOMPARE(DesktopTray::icons(), 0);
            QVERIFY(!form.sysTray().isReachable());
            form.sysTray().RemoveTrayIcon();
        }
    }

    void aClickCountsWhenTheButtonIsReleased()
    {
        const TrayedForm t;
        for (int round = 1; round <= 2; ++round) {
            pointer(t.middle, "mousedown", 1);
            QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::LeftButton);
            QCoreApplication::processEvents();
            QCOMPARE(t.asked.count(), round - 1);
            pointer(t.middle, "mouseup", 1);
            QTRY_COMPARE(t.asked.count(), round);
        }
    }

    void aReleaseBesideTheIconIsNoClick()
    {
        const TrayedForm t;
        pointer(t.middle, "mousedown", 1);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::LeftButton);
        pointer(QPoint(300, 200), "mouseup", 1);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::NoButton);
        QCoreApplication::processEvents();
        QCOMPARE(t.asked.count(), 0);
    }

    void otherClicksDoNothing_data()
    {
        const Rows<int> row("button");
        row("middle", 2);
        row("secondary", 3);
        row("wheel up", 4);
        row("wheel down", 5);
    }

    void otherClicksDoNothing()
    {
        QFETCH(int, button);
        const TrayedForm t;
        pointer(t.middle, "click", button);
        // The click behind it is the only one that is told.
        pointer(t.middle, "click", 1);
        QTRY_COMPARE(t.asked.count(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(t.asked.count(), 1);
    }

    void aDoubleClickIsOneClick()
    {
        QApplication::setDoubleClickInterval(10'000);
        const TrayedForm t;
        QProcess twice;
        twice.start("xdotool",
                    {"mousemove", QString::number(t.middle.x()), QString::number(t.middle.y()),
                     "click", "--repeat", "2", "--delay", "20", "1"});
        QVERIFY(twice.waitForFinished(HangMs));
        QTRY_VERIFY(t.asked.count() >= 1);
        pointer(t.middle, "click", 3);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::NoButton);
        QCOMPARE(t.asked.count(), 1);
    }

    void anIconRemovedWhileItIsPressedIsNotClicked()
    {
        const TrayedForm t;
        pointer(t.middle, "mousedown", 1);
        QTRY_COMPARE(QGuiApplication::mouseButtons(), Qt::LeftButton);
        t.sysTray.RemoveTrayIcon();
        pointer(t.middle, "mouseup", 1);
        // Whatever is released next, anywhere in the program, is no click on the icon.
        QWidget other;
        other.setGeometry(100, 100, 200, 200);
        other.show();
        QVERIFY(waitForExposed(&other));
        QTest::mouseClick(&other, Qt::LeftButton);
        QCOMPARE(t.asked.count(), 0);
    }

    void closingTheFormRemovesTheIcon()
    {
        TrayedForm t;
        QVERIFY(t.form.close());
        QCOMPARE(DesktopTray::icons(), 0);
    }

    void closingTheFormDoesNotEndTheProgram()
    {
        frmTray form(symbolIcon("pevora"));
        QCOMPARE(codeAfterClosing(form), StillRuns);
    }

    void withoutATrayNothingBreaks()
    {
        QVERIFY(!QSystemTrayIcon::isSystemTrayAvailable());
        frmTray form(symbolIcon("pevora"));
        form.sysTray().AddTrayIcon(form, "Pevora");
        QCoreApplication::processEvents();
        QVERIFY(!form.sysTray().isReachable());
        // No window stands for the icon on the desktop.
        for (const auto* window : QApplication::topLevelWidgets())
            QVERIFY2(!window->isVisible(), window->metaObject()->className());
        form.sysTray().RemoveTrayIcon();
        form.close();
    }

    void aTrayThatComesLaterGetsTheIcon()
    {
        frmTray form(symbolIcon("pevora"));
        form.sysTray().AddTrayIcon(form, "Pevora");
        QVERIFY(!form.sysTray().isReachable());
        QSignalSpy asked(&form.sysTray(), &modSysTray::Clicked);
        for (int round = 1; round <= 2; ++round) {
            const DesktopTray tray;
            const QRect icon = DesktopTray::icon();
            QVERIFY(!icon.isEmpty());
            QVERIFY(form.sysTray().isReachable());
            pointer(icon.center(), "click", 1);
            QTRY_COMPARE(asked.count(), round);
        }
        QVERIFY(!form.sysTray().isReachable());
    }
};

QTEST_MAIN(frmTrayTest)
#include "tst_frmTray.moc"
