// What becomes of strip and movie when a camera is chosen, where the keyboard is beside the strip,
// and an image that was deleted and comes again.

#include "display/ThumbCell.h"
#include "display/ThumbView.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <QApplication>

namespace {

/// A camera with some images, in the window that has the keyboard.
class Chosen : public ShownCamera
{
public:
    explicit Chosen(int images)
    {
        server.listen();
        for (int i = 0; i < images; ++i)
            fetchNext();
        cam.activateWindow();
        if (!waitForActive(&cam))
            qFatal("the viewer does not become active");
    }
    void fetchNext()
    {
        playNext();
        fetch(server.url());
    }
    /// The answer to the next request is another picture.
    void playNext()
    {
        server.play(pictureAnswer(
            encodedPicture({8, 8}, QColor::fromHsv(m_pictures++ * 37 % 360, 255, 255))));
    }
    ThumbView& strip() { return part<ThumbView>("tvMain"); }
    bool stripHasKeyboard()
    {
        const QWidget* focus = QApplication::focusWidget();
        return focus && strip().isAncestorOf(focus);
    }

    ScriptedServer server;

private:
    int m_pictures = 0;
};

} // namespace

class WebCamChoiceTest : public QObject
{
    Q_OBJECT
private slots:
    void aChoiceLeavesTheStrip()
    {
        Chosen c(2);
        c.press(ToolBar::ToggleView);
        QVERIFY(c.strip().isVisible());
        // A refresh of the camera on show does not.
        c.fetchNext();
        QVERIFY(c.strip().isVisible());
        c.playNext();
        QSignalSpy changes(&c.cam, &WebCam::ImageChange);
        c.cam.showCamera("http://" + c.server.url("/other.jpg"));
        QCOMPARE(changes.count(), 0); // no movie was stopped
        QVERIFY(!c.strip().isVisible());
        QVERIFY(c.part<QWidget>("imgMain").isVisible());
        QCOMPARE(c.enabledButtons(), AllButtons);
        QCOMPARE(c.cam.Url(), c.server.url("/other.jpg"));
        QTRY_COMPARE(c.caption(), "Image 4");
        QVERIFY(c.server.requests().last().startsWith("GET /other.jpg"));
    }

    void aChoiceStopsTheMovieFirst()
    {
        Chosen c(3);
        c.chooseFromMenu(ToolBar::PlayMovie, 1);
        c.timer("tmrPlay").elapse();
        QVERIFY(c.cam.isBusy());
        QVERIFY(!c.enabledButtons().contains(ToolBar::Open));
        c.playNext();
        QSignalSpy changes(&c.cam, &WebCam::ImageChange);
        QSignalSpy idle(&c.cam, &WebCam::Idle);
        c.cam.showCamera(c.server.url("/other.jpg"));
        // As by its button: the address of the frame on show comes first.
        QCOMPARE(changes.count(), 1);
        QCOMPARE(changes[0][1].toString(), "http://127.0.0.1/a.jpg");
        QCOMPARE(c.cam.Url(), c.server.url("/other.jpg"));
        QCOMPARE(c.enabledButtons(), AllButtons);
        QTRY_COMPARE(idle.count(), 1);
        QTRY_COMPARE(c.caption(), "Image 4");
        // The next play is not ended by that, and a choice without a play stops nothing.
        c.cam.showCamera(c.server.url("/other.jpg"));
        c.chooseFromMenu(ToolBar::PlayMovie, 1);
        QVERIFY(c.cam.isBusy());
        c.press(ToolBar::StopMovie);
        QTRY_VERIFY(!c.cam.isBusy());
    }

    void theKeyboardIsTheStrips_data()
    {
        const Rows<int> row("button");
        row("Refresh", ToolBar::Refresh);
        row("Stop", ToolBar::Stop);
        row("Timer", ToolBar::Timer);
    }

    void theKeyboardIsTheStrips()
    {
        QFETCH(int, button);
        Chosen c(3);
        c.press(ToolBar::ToggleView);
        QTRY_VERIFY(c.stripHasKeyboard());
        c.playNext();
        c.press(button);
        QVERIFY(c.stripHasKeyboard());
        // The keys go to the thumbnails.
        auto* current = QApplication::focusWidget();
        QTest::keyClick(current, Qt::Key_Home);
        QCOMPARE(QApplication::focusWidget()->objectName(), "img(0)");
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(c.caption(), "Image 1");
        // With the picture they are the viewer's again.
        QVERIFY(!c.strip().isVisible());
        QCOMPARE(QApplication::focusWidget(), &c.cam);
        c.press(button);
        QCOMPARE(QApplication::focusWidget(), &c.cam);
    }

    void theTabKeyStillLeavesTheStrip()
    {
        Chosen c(2);
        c.press(ToolBar::ToggleView);
        QTRY_VERIFY(c.stripHasKeyboard());
        QSet<QString> reached;
        for (int i = 0; i < 12; ++i) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            reached << QApplication::focusWidget()->objectName();
        }
        QVERIFY(reached.contains("button(6)"));
        QVERIFY(reached.contains("button(15)"));
        QVERIFY(reached.contains("img(1)"));
        QVERIFY(!reached.contains("Cam"));
    }

    void anImageThatWasDeletedIsNewWhenItComesAgain_data()
    {
        const Rows<int, QByteArray> row("item", "behind");
        row("by the button", 0, {});
        row("by the menu", 1, {});
        row("with something behind it", 0, QByteArray(1'000, 0));
    }

    void anImageThatWasDeletedIsNewWhenItComesAgain()
    {
        QFETCH(int, item);
        QFETCH(QByteArray, behind);
        Chosen c(1);
        const QByteArray body = encodedPicture({30, 20}, Qt::red);
        c.server.play(pictureAnswer(body + behind));
        c.fetch(c.server.url());
        QCOMPARE(c.caption(), "Image 2");
        c.fetch();
        QCOMPARE(c.caption(), "Image 2"); // not new
        // Another image's deletion changes nothing of that.
        c.press(ToolBar::Back);
        c.press(ToolBar::Delete);
        QCOMPARE(c.picture(), body);
        c.fetch();
        QVERIFY(c.status().contains("Not a New Image"));
        QCOMPARE(c.caption(), "Image 1");
        if (item == 0)
            c.press(ToolBar::Delete);
        else
            c.chooseFromMenu(ToolBar::Delete, item);
        QCOMPARE(c.caption(), "Image N/A");
        c.fetch();
        QCOMPARE(c.caption(), "Image 1");
        QCOMPARE(c.picture(), body);
    }
};

QTEST_MAIN(WebCamChoiceTest)
#include "tst_WebCamChoice.moc"
