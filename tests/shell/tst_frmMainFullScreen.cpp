// The picture alone on the whole screen, and the way back.

#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/Waiting.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

#include <QComboBox>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QRadioButton>
#include <QScreen>

#include <functional>

namespace {

/// What of the window is seen, with the places of its parts.
QMap<QString, QRect> layoutOf(ShownMain& m)
{
    QMap<QString, QRect> places;
    for (const char* name : {"cList", "picAdd", "opt(0)", "opt(1)", "Cam", "cmbUrl", "tbMain",
                             "imgMain", "tvMain", "lblPic", "lbl", "txtDebug"}) {
        const auto& part = m.part<QWidget>(name);
        if (part.isVisible())
            places[name] = QRect(part.mapTo(&m.made(), QPoint()), part.size());
    }
    if (m.made().menuBar()->isVisible())
        places["menu"] = m.made().menuBar()->geometry();
    return places;
}

void key(ShownMain& m, Qt::Key one)
{
    QWidget* const receiver = QApplication::focusWidget();
    QTest::keyClick(receiver ? receiver : &m.made(), one);
}

/// Whether nothing but the picture is seen, on all of the screen.
bool isAlone(ShownMain& m)
{
    const auto& image = m.part<QWidget>("imgMain");
    for (const char* name : {"cList", "picAdd", "opt(0)", "opt(1)", "cmbUrl", "tbMain", "lblPic",
                             "lbl", "tvMain", "txtDebug"}) {
        if (!m.part<QWidget>(name).visibleRegion().isEmpty())
            return false;
    }
    return m.made().isFullScreen() && !m.made().menuBar()->isVisible() && image.isVisible() &&
           image.size() == m.made().screen()->size() &&
           image.mapToGlobal(QPoint()) == m.made().screen()->geometry().topLeft();
}

} // namespace

class frmMainFullScreenTest : public QObject
{
    Q_OBJECT
private slots:
    void f11AndBack_data()
    {
        const Rows<Qt::Key, QStringList> row("back", "before");
        row("F11", Qt::Key_F11, {});
        row("Escape", Qt::Key_Escape, {});
        row("with parts hidden", Qt::Key_F11, {"mnuViewTb", "mnuViewGoto"});
        row("without the list", Qt::Key_Escape, {"mnuViewList"});
        row("original size", Qt::Key_Escape, {"mnuViewOSize"});
    }

    void f11AndBack()
    {
        QFETCH(Qt::Key, back);
        QFETCH(QStringList, before);
        ShownMain m;
        m.shown();
        for (const QString& entry : before)
            m.entry(entry).trigger();
        m.made().resize(900, 600);
        QTRY_COMPARE(m.made().size(), QSize(900, 600));
        const auto layout = layoutOf(m);
        const QRect place = m.made().geometry();
        auto* const focus = QApplication::focusWidget();
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        QVERIFY(m.part<QWidget>("Cam").hasFocus());
        key(m, back);
        QTRY_COMPARE(m.made().geometry(), place);
        QTRY_VERIFY(!m.made().isFullScreen());
        QTRY_COMPARE(layoutOf(m), layout);
        QCOMPARE(QApplication::focusWidget(), focus);
        for (const char* entry : {"mnuViewList", "mnuViewTb", "mnuViewGoto", "mnuViewOSize"})
            QCOMPARE(m.entry(entry).isChecked(),
                     before.contains(entry) != (entry != QString("mnuViewOSize")));
        // Once more, and Escape is nobody's then.
        key(m, Qt::Key_Escape);
        QCOMPARE(m.made().geometry(), place);
    }

    void aMaximisedWindowIsMaximisedAgain()
    {
        ShownMain m;
        m.shown().resize(900, 600);
        QTRY_COMPARE(m.made().size(), QSize(900, 600));
        m.made().showMaximized();
        // The size comes first, the place after it.
        QTRY_COMPARE(m.made().geometry().bottomRight(),
                     m.made().screen()->geometry().bottomRight());
        const auto layout = layoutOf(m);
        const QRect place = m.made().geometry();
        m.choose("mnuView", "mnuViewFull");
        QTRY_VERIFY(isAlone(m));
        key(m, Qt::Key_Escape);
        QTRY_COMPARE(m.made().geometry(), place);
        QTRY_VERIFY(m.made().isMaximized());
        QTRY_COMPARE(layoutOf(m), layout);
        m.made().showNormal();
        QTRY_COMPARE(m.made().size(), QSize(900, 600));
    }

    void thePageThatAddsACameraComesBackAsItWas()
    {
        ShownMain m;
        m.shown();
        m.part<QRadioButton>("opt(0)").click();
        auto& name = m.part<QLineEdit>("txtName");
        name.setFocus();
        name.setText("Harbour");
        const auto layout = layoutOf(m);
        QVERIFY(layout.contains("picAdd"));
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        key(m, Qt::Key_Escape);
        QTRY_COMPARE(layoutOf(m), layout);
        QCOMPARE(name.text(), "Harbour");
        QCOMPARE(QApplication::focusWidget(), &name);
    }

    void theStripComesBackToo()
    {
        ShownMain m;
        m.shown();
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({64, 48}, Qt::red)));
        m.part<WebCam>("Cam").Refresh(server.url());
        QTRY_COMPARE(m.part<QLabel>("lblPic").text(), "Image 1");
        QTest::mouseClick(m.part<ToolBar>("tbMain").findChild<QWidget*>("button(15)"),
                          Qt::LeftButton);
        QVERIFY(m.part<QWidget>("tvMain").isVisible());
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        key(m, Qt::Key_Escape);
        QVERIFY(m.part<QWidget>("tvMain").isVisible());
        QVERIFY(!m.part<QWidget>("imgMain").isVisible());
    }

    void aFetchShowsNothingButItsPicture()
    {
        ShownMain m;
        m.shown();
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        ScriptedServer server;
        server.listen();
        server.play(pictureAnswer(encodedPicture({64, 48}, Qt::red)));
        m.part<WebCam>("Cam").Refresh(server.url());
        QTRY_COMPARE(m.part<QLabel>("lblPic").text(), "Image 1");
        QVERIFY(isAlone(m));
        const QImage shown = m.made().grab().toImage();
        for (const QPoint at : {shown.rect().topLeft(), shown.rect().bottomRight()})
            QVERIFY(shown.pixelColor(at).red() > 240 && shown.pixelColor(at).green() < 16);
        key(m, Qt::Key_F11);
        QTRY_VERIFY(m.part<QWidget>("lblPic").isVisible());
    }

    void escapeInAMenuClosesTheMenuAlone()
    {
        ShownMain m;
        m.shown();
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        QMenu menu(&m.made());
        menu.addAction("one");
        menu.popup(m.made().mapToGlobal(QPoint(50, 50)));
        QVERIFY(waitForExposed(&menu));
        QTest::keyClick(&menu, Qt::Key_Escape);
        QTRY_VERIFY(!menu.isVisible());
        QVERIFY(isAlone(m));
    }

    void escapeComesBeforeOtherShortcuts()
    {
        ShownMain m;
        m.shown();
        QAction other;
        other.setShortcut(Qt::Key_Escape);
        m.made().addAction(&other);
        QSignalSpy triggered(&other, &QAction::triggered);
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        key(m, Qt::Key_Escape);
        QTRY_VERIFY(!m.made().isFullScreen());
        QCOMPARE(triggered.count(), 0);
        key(m, Qt::Key_Escape);
        QCOMPARE(triggered.count(), 1);
    }

    void aWindowManagerMayLeadBackToo()
    {
        ShownMain m;
        m.shown();
        const auto layout = layoutOf(m);
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
        m.made().setWindowState(Qt::WindowNoState);
        QTRY_COMPARE(layoutOf(m), layout);
        key(m, Qt::Key_F11);
        QTRY_VERIFY(isAlone(m));
    }
};

QTEST_MAIN(frmMainFullScreenTest)
#include "tst_frmMainFullScreen.moc"
