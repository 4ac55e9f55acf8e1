// The viewer in a window of its own, against a scripted server: what is on screen, and what a
// person does there.

#include "display/ImageView.h"
#include "support/Browser.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/TimeSeam.h"
#include "viewer/WebCam.h"
#include "viewer/surface/IntervalMenu.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "widgets/ElidedLabel.h"

#include <QDesktopServices>
#include <QPlainTextEdit>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

class ShownViewer : public QObject
{
    Q_OBJECT
public:
    ShownViewer()
    {
        server.listen();
        cam.resize(700, 500);
        cam.show();
        cam.activateWindow();
        if (!waitForActive(&cam))
            qFatal("the window does not become active");
        QDesktopServices::setUrlHandler("http", this, "opened");
    }
    ~ShownViewer() override { QDesktopServices::unsetUrlHandler("http"); }

    template<typename T>
    T& part(const char* name)
    {
        auto* found = cam.findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("the viewer has no %s", name);
        return *found;
    }
    ToolBarButton& button(int index) { return *part<ToolBar>("tbMain").button(index); }
    void press(int index) { QTest::mouseClick(&button(index), Qt::LeftButton, {}, QPoint(12, 14)); }
    QString status() { return part<ElidedLabel>("lbl").Tag(); }
    Timer& timer(const char* name) { return timerOf(cam, name); }
    void fetch(const QString& url)
    {
        QSignalSpy done(&cam, &WebCam::Done);
        cam.setUrl(url);
        cam.Refresh();
        QTRY_COMPARE(done.count(), 1);
    }
    void moveOverImage(int y, Qt::MouseButtons buttons = Qt::NoButton)
    {
        auto& canvas = part<QWidget>("picMain");
        QMouseEvent move(QEvent::MouseMove, QPointF(100, y), canvas.mapToGlobal(QPointF(100, y)),
                         Qt::NoButton, buttons, Qt::NoModifier);
        QApplication::sendEvent(&canvas, &move);
    }

    QTemporaryDir folder;
    ScriptedServer server;
    WebCam cam{folder.path()};
    QList<QUrl> openedPages;

public slots:
    void opened(const QUrl& page) { openedPages << page; }
};

/// Counts the paint events of one widget.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QObject& watched) { watched.installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

class WebCamTest : public QObject
{
    Q_OBJECT
private slots:
    void propertiesHaveTheirDefaults()
    {
        ShownViewer v;
        QCOMPARE(v.cam.property("Url").toString(), "");
        QCOMPARE(v.cam.property("ShowStatus").toBool(), true);
        QCOMPARE(v.cam.property("ShowToolBar").toBool(), true);
        QCOMPARE(v.cam.property("NewOnly").toBool(), true);
        QCOMPARE(v.cam.property("OriginalSize").toBool(), false);
        QCOMPARE(v.cam.property("KeepRefreshing").toBool(), false);
        for (const char* name : {"ShowStatus", "ShowToolBar", "NewOnly"}) {
            QVERIFY(v.cam.setProperty(name, false));
            QCOMPARE(v.cam.property(name).toBool(), false);
        }
        for (const char* name : {"OriginalSize", "KeepRefreshing"}) {
            QVERIFY(v.cam.setProperty(name, true));
            QCOMPARE(v.cam.property(name).toBool(), true);
        }
    }

    void whatCamerasSendIsShown_data()
    {
        const QByteArray jpeg = encodedPicture({30, 20}, Qt::red);
        const QByteArray size = QByteArray::number(jpeg.size());
        const Rows<QByteArray> row("answer");
        row("without a type", httpAnswer(jpeg, "Content-Length: " + size + "\r\n"));
        row("with line feeds alone", "HTTP/1.0 200 OK\nContent-Type: image/jpeg\n\n" + jpeg);
        row("in chunks",
            "HTTP/1.1 200 OK\r\nContent-Type: image/jpeg\r\nTransfer-Encoding: chunked\r\n\r\n" +
                QByteArray::number(jpeg.size() - 9, 16) + "\r\n" + jpeg.chopped(9) + "\r\n9\r\n" +
                jpeg.last(9) + "\r\n0\r\n\r\n");
        row("as a stream",
            "HTTP/1.1 200 OK\r\nContent-Type: multipart/x-mixed-replace; boundary=x\r\n\r\n"
            "--x\r\nContent-Type: image/jpeg\r\nContent-Length: " +
                size + "\r\n\r\n" + jpeg + "\r\n--x\r\nContent-Type: image/jpeg\r\n\r\n");
    }

    void whatCamerasSendIsShown()
    {
        QFETCH(QByteArray, answer);
        ShownViewer v;
        v.server.play(answer);
        v.fetch(v.server.url());
        QCOMPARE(v.part<ImageView>("imgMain").Picture().size(), QSize(30, 20));
    }

    void eachFormatIsShownAndKept_data()
    {
        const Rows<QByteArray, QByteArray> row("format", "type");
        row("bitmap", "bmp", "image/bmp");
        row("png", "png", "image/png");
        row("webp", "webp", "image/webp");
        row("png that says to be a jpeg", "png", "image/jpeg");
    }

    void eachFormatIsShownAndKept()
    {
        QFETCH(QByteArray, format);
        QFETCH(QByteArray, type);
        ShownViewer v;
        const QByteArray red = encodedPicture({64, 48}, Qt::red, format.constData());
        const QByteArray blue = encodedPicture({64, 48}, Qt::blue, format.constData());
        v.server.play(httpAnswer(red, "Content-Type: " + type + "\r\n"));
        v.server.play(httpAnswer(blue, "Content-Type: " + type + "\r\n"));
        v.fetch(v.server.url());
        QCOMPARE(v.part<ImageView>("imgMain").Picture().bytes(), red);
        QColor middle = v.cam.grab().toImage().pixelColor(350, 250);
        QVERIFY(middle.red() > 240 && middle.blue() < 15);
        QVERIFY(QFileInfo::exists(v.folder.filePath("tt.jpg")));

        v.fetch(v.server.url());
        QCOMPARE(v.part<QLabel>("lblPic").text(), "Image 2");
        middle = v.cam.grab().toImage().pixelColor(350, 250);
        QVERIFY(middle.blue() > 240 && middle.red() < 15);
        v.press(ToolBar::Back);
        QCOMPARE(v.part<ImageView>("imgMain").Picture().bytes(), red);
    }

    void aStreamIsLeftAfterItsFirstPicture()
    {
        ShownViewer v;
        const QByteArray jpeg = encodedPicture({30, 20}, Qt::red) + QByteArray(5'000, 'x');
        v.server.play(Script{{"HTTP/1.1 200 OK\r\nContent-Type: multipart/x-mixed-replace\r\n\r\n"
                              "--x\r\nContent-Type: image/jpeg\r\n\r\n" +
                                  jpeg.left(99),
                              jpeg.mid(99), "\r\n--x\r\nContent-Type: image/jpeg\r\n\r\n"},
                             Script::End::KeepOpen});
        v.fetch(v.server.url());
        QCOMPARE(v.part<ImageView>("imgMain").Picture().size(), QSize(30, 20));
        QTRY_COMPARE(v.server.openConnections(), 0);
    }

    void urlLosesItsSchemeAndFetchesNothing()
    {
        ShownViewer v;
        v.cam.setUrl("HTTP://" + v.server.url() + QChar(1) + "Cookie: a");
        QCOMPARE(v.cam.Url(), v.server.url() + QChar(1) + "Cookie: a");
        QCoreApplication::processEvents();
        QCOMPARE(v.server.connections(), 0);
    }

    void aNewImageIsShownKeptAndAnnounced()
    {
        ShownViewer v;
        const QByteArray picture = encodedPicture({64, 48}, Qt::red);
        v.server.play(pictureAnswer(picture));
        QStringList told;
        QObject::connect(&v.cam, &WebCam::ImageChange, &v,
                         [&](const QString& unused, const QString& url) {
                             // The caption follows the announcement.
                             told << "change" << unused << url << v.part<QLabel>("lblPic").text();
                         });
        QObject::connect(&v.cam, &WebCam::Done, &v, [&] { told << "done"; });
        v.fetch("http://" + v.server.url());
        QCOMPARE(told, (QStringList{"change", "", "http://127.0.0.1/a.jpg", "Image N/A", "done"}));
        QCOMPARE(v.part<QLabel>("lblPic").text(), "Image 1");
        QCOMPARE(v.part<ImageView>("imgMain").Picture().bytes(), picture);
        const QColor middle = v.cam.grab().toImage().pixelColor(350, 250);
        QVERIFY(middle.red() > 240 && middle.green() < 15);
    }

    void theNextImagePaintsNothingAroundIt()
    {
        ShownViewer v;
        v.server.play(pictureAnswer(encodedPicture({64, 48}, Qt::red)));
        v.server.play(pictureAnswer(encodedPicture({64, 48}, Qt::blue)));
        v.fetch(v.server.url());
        QCoreApplication::processEvents();
        PaintCounter image(v.part<QWidget>("picMain"));
        PaintCounter button(v.button(ToolBar::Refresh));
        v.fetch(v.server.url());
        QTRY_VERIFY(image.count > 0);
        QCOMPARE(button.count, 0);

        // What moves the image paints anew around it.
        v.cam.setShowToolBar(false);
        v.cam.setShowToolBar(true);
        QTRY_VERIFY(button.count > 0);
    }

    void theAnnouncedAddressHasNoPort()
    {
        ShownViewer v;
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        QSignalSpy changes(&v.cam, &WebCam::ImageChange);
        v.fetch(v.server.url("/dir/x.cgi?a=b") + QChar(1) + "Cookie: a");
        QCOMPARE(changes.first().value(1).toString(), "http://127.0.0.1/dir/x.cgi?a=b");
    }

    void aBodyThatIsNoPictureKeepsTheOldOne()
    {
        ShownViewer v;
        const QByteArray picture = encodedPicture({64, 48}, Qt::red);
        v.server.play(pictureAnswer(picture));
        v.server.play(pictureAnswer("<html>no picture</html>"));
        v.fetch(v.server.url());
        QSignalSpy errors(&v.cam, &WebCam::Error);
        QSignalSpy done(&v.cam, &WebCam::Done);
        QSignalSpy changes(&v.cam, &WebCam::ImageChange);
        v.cam.Refresh();
        QTRY_COMPARE(errors.count(), 1);
        QCOMPARE(errors.first().value(0).toString(), "Not a picture");
        QCOMPARE(v.status(), "  Error: Not a picture.");
        QCOMPARE(done.count(), 0);
        QCOMPARE(changes.count(), 0);
        QCOMPARE(v.part<ImageView>("imgMain").Picture().bytes(), picture);
        QCOMPARE(v.part<QLabel>("lblPic").text(), "Image 1");
    }

    void the46thImageKeeps45()
    {
        ShownViewer v;
        v.cam.setNewOnly(false);
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        for (int i = 0; i < 46; ++i)
            v.fetch(v.server.url());
        QCOMPARE(v.part<QLabel>("lblPic").text(), "Image 45");
    }

    void asksWithTheDateOfTheNewestImage()
    {
        ShownViewer v;
        const auto play = [&](const QColor& colour, const QByteArray& date) {
            v.server.play(
                pictureAnswer(encodedPicture({8, 8}, colour), "Last-Modified: " + date + "\r\n"));
        };
        play(Qt::red, "Mon");
        play(Qt::green, "Tue");
        play(Qt::blue, "Wed");
        play(Qt::white, "Thu");
        v.fetch(v.server.url("/a.jpg"));
        v.fetch(v.server.url("/b.jpg"));
        v.fetch(v.server.url("/a.jpg"));
        QVERIFY(!v.server.requests()[0].contains("Modified"));
        QVERIFY(!v.server.requests()[1].contains("Modified"));
        QVERIFY(v.server.requests()[2].contains("\r\nif-Modified-Since: Mon\r\n"));
        v.cam.setNewOnly(false);
        v.fetch(v.server.url("/a.jpg"));
        QVERIFY(!v.server.requests()[3].contains("Modified"));
    }

    void theStatusLineShowsOnlyWhenWanted()
    {
        ShownViewer v;
        auto& lbl = v.part<ElidedLabel>("lbl");
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        v.fetch(v.server.url());
        QVERIFY(lbl.isVisible());
        v.timer("tmrFalse").elapse();
        QVERIFY(!lbl.isVisible());
        v.cam.setShowStatus(false);
        v.fetch(v.server.url());
        QVERIFY(!lbl.isVisible());
        v.cam.setShowStatus(true);
        QVERIFY(!lbl.isVisible()); // takes effect at the next fetch
        v.fetch(v.server.url());
        QVERIFY(lbl.isVisible());
    }

    void theRoomOfTheStatusLineStays()
    {
        ShownViewer v;
        v.server.play(pictureAnswer(encodedPicture({80, 80}, Qt::red)));
        v.fetch(v.server.url());
        auto& image = v.part<ImageView>("imgMain");
        const QRect place = image.geometry();
        QTest::mouseClick(&v.part<QWidget>("picMain"), Qt::LeftButton, {}, QPoint(50, 50));
        const QRectF zoomed = image.shownRegion();
        QVERIFY(zoomed != QRectF(0, 0, 1, 1));
        v.timer("tmrFalse").elapse();
        QVERIFY(!v.part<ElidedLabel>("lbl").isVisible());
        QCOMPARE(image.geometry(), place);
        QCOMPARE(image.shownRegion(), zoomed);
    }

    void stopButtonStops()
    {
        ShownViewer v;
        v.server.play(
            Script{{"HTTP/1.0 200 OK\r\nContent-Type: a\r\n\r\nbody"}, Script::End::KeepOpen});
        v.cam.setUrl(v.server.url());
        v.cam.Refresh();
        QTRY_VERIFY(v.timer("tmrOut").Enabled());
        QSignalSpy done(&v.cam, &WebCam::Done);
        v.press(ToolBar::Stop);
        QCOMPARE(v.status(), "  Stopped");
        QCOMPARE(done.count(), 1);
        QVERIFY(!v.timer("tmrOut").Enabled());
        QVERIFY(v.timer("tmrFalse").Enabled());
        QTRY_COMPARE(v.server.openConnections(), 0);
    }

    void refreshButtonFetchesAgain()
    {
        ShownViewer v;
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::blue)));
        v.fetch(v.server.url());
        QSignalSpy done(&v.cam, &WebCam::Done);
        v.press(ToolBar::Refresh);
        QTRY_COMPARE(done.count(), 1);
        QCOMPARE(v.part<QLabel>("lblPic").text(), "Image 2");
    }

    void refreshButtonWithoutUrlDoesNothing()
    {
        ShownViewer v;
        v.press(ToolBar::Refresh);
        QCOMPARE(v.status(), "");
    }

    void timerButtonRefreshesUntilReleased()
    {
        ShownViewer v;
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::blue)));
        v.fetch(v.server.url());
        v.press(ToolBar::Timer);
        QVERIFY(v.button(ToolBar::Timer).isChecked());
        QCOMPARE(v.button(ToolBar::Timer).toolTip(), "Timer: Refreshing in 30 sec(s)");
        QSignalSpy done(&v.cam, &WebCam::Done);
        for (int i = 0; i < 30; ++i)
            v.timer("tmrRe").elapse();
        QVERIFY(!v.timer("tmrRe").Enabled());
        QTRY_COMPARE(done.count(), 1);
        QVERIFY(v.timer("tmrRe").Enabled());
        QCOMPARE(v.part<QLabel>("lblPic").text(), "Image 2");
        v.press(ToolBar::Timer);
        QVERIFY(!v.button(ToolBar::Timer).isChecked());
        QVERIFY(!v.timer("tmrRe").Enabled());
        QCOMPARE(v.button(ToolBar::Timer).toolTip(), "Timer");
    }

    void timerMenuPopsUpUnderItsButton()
    {
        ShownViewer v;
        auto& timer = v.button(ToolBar::Timer);
        QTest::mouseClick(&timer, Qt::LeftButton, {}, QPoint(timer.width() - 4, 14));
        auto& menu = v.part<IntervalMenu>("mnuTmr");
        QTRY_VERIFY(menu.isVisible());
        QCOMPARE(menu.pos(), v.cam.mapToGlobal(QPoint(178, ToolBar::HeightPx)));
        QVERIFY(!timer.isChecked());
        QTest::keyClick(&menu, Qt::Key_Down);
        QTest::keyClick(&menu, Qt::Key_Return);
        QCOMPARE(v.timer("tmrRe").Tag(), "1");
        QVERIFY(!v.timer("tmrRe").Enabled()); // choosing an interval switches nothing on
    }

    void timerStopsAfterAnErrorAndShowsIt()
    {
        ShownViewer v;
        v.server.play(httpAnswer({}, {}, "404 Not Found"));
        v.cam.setUrl(v.server.url());
        v.press(ToolBar::Timer);
        const auto face = [&] { return v.button(ToolBar::Timer).icon().pixmap(20).toImage(); };
        const QImage running = face();
        QSignalSpy errors(&v.cam, &WebCam::Error);
        v.cam.Refresh();
        v.timer("tmrRe").setEnabled(false);
        QTRY_COMPARE(errors.count(), 1);
        QVERIFY(!v.timer("tmrRe").Enabled());
        QVERIFY(v.button(ToolBar::Timer).isChecked());
        QVERIFY(face() != running);
        v.press(ToolBar::Timer);
        QCOMPARE(face(), running);
    }

    void keepRefreshingGoesOn()
    {
        ShownViewer v;
        v.server.play(httpAnswer({}, {}, "404 Not Found"));
        v.cam.setUrl(v.server.url());
        v.part<QAction>("mnuTmrKeep").trigger();
        QVERIFY(v.cam.KeepRefreshing());
        v.press(ToolBar::Timer);
        QSignalSpy errors(&v.cam, &WebCam::Error);
        for (int i = 0; i < 30; ++i)
            v.timer("tmrRe").elapse();
        QVERIFY(!v.timer("tmrRe").Enabled());
        QTRY_COMPARE(errors.count(), 1);
        QVERIFY(v.timer("tmrRe").Enabled());
    }

    void timerGoesOnAfterABodyThatIsNoPicture()
    {
        ShownViewer v;
        v.server.play(pictureAnswer("no picture"));
        v.cam.setUrl(v.server.url());
        v.press(ToolBar::Timer);
        QSignalSpy errors(&v.cam, &WebCam::Error);
        for (int i = 0; i < 30; ++i)
            v.timer("tmrRe").elapse();
        QTRY_COMPARE(errors.count(), 1);
        QVERIFY(v.timer("tmrRe").Enabled());
    }

    void timerWithoutUrlStaysPressed()
    {
        ShownViewer v;
        // It does not stay pressed by itself.
        v.button(ToolBar::Stop).setCheckable(true);
        v.button(ToolBar::Stop).setChecked(true);
        v.press(ToolBar::Timer);
        const auto face = [&] { return v.button(ToolBar::Timer).icon().pixmap(20).toImage(); };
        const QImage running = face();
        for (int i = 0; i < 30; ++i)
            v.timer("tmrRe").elapse();
        QVERIFY(!v.timer("tmrRe").Enabled());
        QVERIFY(face() != running);
        QCOMPARE(v.status(), ""); // nothing is fetched
        QVERIFY(v.button(ToolBar::Timer).isChecked());
        QVERIFY(!v.button(ToolBar::Stop).isChecked());
    }

    void stoppingAFetchShowsOnTheTimer()
    {
        ShownViewer v;
        v.server.play(Script{{}, Script::End::KeepOpen});
        v.cam.setUrl(v.server.url());
        v.press(ToolBar::Timer);
        const auto face = [&] { return v.button(ToolBar::Timer).icon().pixmap(20).toImage(); };
        const QImage running = face();
        for (int i = 0; i < 30; ++i)
            v.timer("tmrRe").elapse();
        QTRY_COMPARE(v.server.requests().size(), 1);
        QCOMPARE(face(), running);
        v.press(ToolBar::Stop);
        QVERIFY(face() != running);
    }

    void shutDownStopsTimersAndSocket()
    {
        ShownViewer v;
        v.server.play(httpAnswer("body", "Content-Type: image/jpeg\r\n"), Script::End::KeepOpen);
        v.cam.setUrl(v.server.url());
        v.press(ToolBar::Timer);
        v.cam.Refresh();
        QTRY_VERIFY(v.timer("tmrOut").Enabled());
        v.cam.shutDown();
        QTRY_COMPARE(v.server.openConnections(), 0);
        for (const char* name : {"tmrOut", "tmrRe", "tmrFalse"})
            QVERIFY(!v.timer(name).Enabled());
    }

    void theBannerShowsTheHost_data()
    {
        const Rows<QString, QString> row("url", "text");
        row("path", "cam.example/a/b.jpg", "http://cam.example");
        row("port", "cam.example:81/a", "http://cam.example:81");
        row("no path", "cam.example", "http://cam.example");
        row("header", QString("cam.example\x01") + "Cookie: /a", "http://cam.example");
        row("secure", "https://cam.example:8443/a", "https://cam.example:8443");
        row("secure in capitals, header", QString("HTTPS://cam.example\x01") + "Cookie: /a",
            "https://cam.example");
        row("nothing", "", "http://localhost/pevora/");
    }

    void theBannerShowsTheHost()
    {
        QFETCH(QString, url);
        ShownViewer v;
        v.cam.setUrl(url);
        v.moveOverImage(16);
        auto& banner = v.part<ElidedLabel>("lblURl");
        QVERIFY(banner.isVisible());
        QTEST(banner.Tag(), "text");
        QVERIFY(banner.alignment() & Qt::AlignHCenter);
        QVERIFY(v.timer("tmrTop").Enabled());
    }

    void theBannerNeedsAFreeMouseInTheTopBand()
    {
        ShownViewer v;
        v.moveOverImage(17);
        QVERIFY(!v.part<ElidedLabel>("lblURl").isVisible());
        v.moveOverImage(5, Qt::LeftButton);
        QVERIFY(!v.part<ElidedLabel>("lblURl").isVisible());
        v.moveOverImage(16);
        QVERIFY(v.part<ElidedLabel>("lblURl").isVisible());
    }

    void theBannerHidesOnceThePointerLeaves()
    {
        ShownViewer v;
        v.cam.setUrl("one.example/");
        auto& banner = v.part<ElidedLabel>("lblURl");
        v.moveOverImage(5);
        QCursor::setPos(banner.mapToGlobal(banner.rect().center()));
        QTRY_VERIFY(banner.rect().contains(banner.mapFromGlobal(QCursor::pos())));
        v.timer("tmrTop").elapse();
        QVERIFY(banner.isVisible());
        QCursor::setPos(v.cam.mapToGlobal(QPoint(300, 300)));
        QTRY_VERIFY(!banner.rect().contains(banner.mapFromGlobal(QCursor::pos())));
        v.timer("tmrTop").elapse();
        QVERIFY(!banner.isVisible());
        QVERIFY(!v.timer("tmrTop").Enabled());
        // It next shows the camera then on show.
        v.cam.setUrl("two.example/");
        v.moveOverImage(5);
        QCOMPARE(banner.Tag(), "http://two.example");
    }

    void clickingTheBannerOpensItsText()
    {
        ShownViewer v;
        v.moveOverImage(5);
        QTest::mouseClick(&v.part<ElidedLabel>("lblURl"), Qt::LeftButton);
        QCOMPARE(v.openedPages, QList<QUrl>{QUrl("http://localhost/pevora/")});
    }

    void aBannerThatNobodyOpensIsTold()
    {
        ShownViewer v;
        const NoBrowser none;
        v.cam.setUrl("cam.example:81/a");
        v.moveOverImage(5);
        QTest::mouseClick(&v.part<ElidedLabel>("lblURl"), Qt::LeftButton);
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.title, "Pevora");
        QCOMPARE(message.icon, QMessageBox::Information);
        QCOMPARE(message.text, "No browser opened this page: http://cam.example:81");
    }

    void shiftAndRightButtonShowTheDebugBox()
    {
        ShownViewer v;
        auto& box = v.part<QPlainTextEdit>("txtDebug");
        auto& caption = v.part<QLabel>("lblPic");
        QTest::mousePress(&caption, Qt::RightButton);
        QTest::mousePress(&caption, Qt::LeftButton, Qt::ShiftModifier);
        QTest::mousePress(&caption, Qt::RightButton, Qt::ShiftModifier | Qt::ControlModifier);
        QVERIFY(!box.isVisible());
        QTest::mousePress(&caption, Qt::RightButton, Qt::ShiftModifier);
        QVERIFY(box.isVisible());
        QVERIFY(QFontInfo(box.font()).fixedPitch());
        QVERIFY(!box.geometry().intersects(v.part<ImageView>("imgMain").geometry()));

        const QByteArray body = QByteArray("\0\x02\xE9", 3) + QByteArray(450, 'x');
        v.server.play(pictureAnswer(body, "X: y\r\n"));
        QSignalSpy errors(&v.cam, &WebCam::Error);
        v.cam.setUrl(v.server.url());
        v.cam.Refresh();
        QTRY_COMPARE(errors.count(), 1);
        const QStringList lines = box.toPlainText().split('\n');
        QCOMPARE(lines[0], "HTTP/1.0 200 OK");
        QVERIFY(lines.contains("X: y"));
        QVERIFY(box.toPlainText().contains(QString("\u00B7\u00B7\u00E9xxx")));
        for (const QString& line : lines)
            QVERIFY(line.size() <= 200);
        v.server.play(Script{{}, Script::End::KeepOpen});
        v.cam.Refresh();
        QCOMPARE(box.toPlainText(), ""); // every fetch empties it
        // Lines are broken also where they come in small pieces.
        QTRY_COMPARE(v.server.requests().size(), 2);
        for (int i = 0; i < 30; ++i) {
            v.server.sendMore(QByteArray(50, 'y'));
            QCoreApplication::processEvents();
        }
        v.server.sendMore("z\r\n\r\n");
        QTRY_VERIFY(box.toPlainText().contains('z'));
        for (const QString& line : box.toPlainText().split('\n'))
            QVERIFY(line.size() <= 200);
        QTest::mousePress(&caption, Qt::RightButton, Qt::ShiftModifier);
        QVERIFY(!box.isVisible());
    }

    void arrowKeysPanTheImage()
    {
        ShownViewer v;
        auto& image = v.part<ImageView>("imgMain");
        const QPoint start = image.pos();
        QVERIFY(v.cam.focusPolicy() & Qt::ClickFocus);
        v.cam.setFocus();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&v.cam, Qt::Key_Left);
        QCOMPARE(image.pos(), start - QPoint(20, 0)); // 300 twips
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&v.cam, Qt::Key_Right);
        QTest::keyClick(&v.cam, Qt::Key_Up);
        QCOMPARE(image.pos(), start - QPoint(0, 7));
        QTest::keyClick(&v.cam, Qt::Key_Down);
        QTest::keyClick(&v.cam, Qt::Key_Down);
        QCOMPARE(image.pos(), start + QPoint(0, 7));
        QTest::keyClick(&v.cam, Qt::Key_A);
        QCOMPARE(image.pos(), start + QPoint(0, 7));
        v.cam.resize(701, 500); // the layout takes it back
        QCOMPARE(image.pos(), start);
    }

    void theKeyboardsPlaceIsShown()
    {
        ShownViewer v;
        v.button(ToolBar::Timer).setFocus();
        const QImage before = v.cam.grab().toImage();
        v.cam.setFocus(Qt::MouseFocusReason);
        QCOMPARE(v.cam.grab(v.part<QWidget>("imgMain").parentWidget()->geometry()).toImage(),
                 before.copy(v.part<QWidget>("imgMain").parentWidget()->geometry()));
        v.cam.setFocus(Qt::TabFocusReason);
        v.button(ToolBar::Timer).setFocus();
        v.cam.setFocus(Qt::TabFocusReason);
        const QRect area = v.part<QWidget>("imgMain").parentWidget()->geometry();
        const QPoint beside(area.left() - 2, area.center().y());
        QCOMPARE(v.cam.grab().toImage().pixelColor(beside),
                 v.cam.palette().color(QPalette::Highlight));
        QVERIFY(before.pixelColor(beside) != v.cam.palette().color(QPalette::Highlight));
    }

    void theMenuKeyOpensTheImagesMenu()
    {
        ShownViewer v;
        auto& menu = v.part<QMenu>("mnuRc");
        QContextMenuEvent event(QContextMenuEvent::Keyboard, QPoint(5, 5),
                                v.cam.mapToGlobal(QPoint(5, 5)));
        QApplication::sendEvent(&v.cam, &event);
        QVERIFY(!menu.isVisible());
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        v.fetch(v.server.url());
        QApplication::sendEvent(&v.cam, &event);
        QTRY_VERIFY(menu.isVisible());
        QTest::keyClick(&menu, Qt::Key_Escape);
    }

    void hidingTheToolBarGrowsTheImage()
    {
        ShownViewer v;
        auto& image = v.part<ImageView>("imgMain");
        const QRect before = image.geometry();
        v.cam.setShowToolBar(false);
        QVERIFY(!v.part<ToolBar>("tbMain").isVisible());
        QCOMPARE(image.height(), before.height() + ToolBar::HeightPx);
        QCOMPARE(image.width(), before.width());
        v.cam.setShowToolBar(true);
        QCOMPARE(image.geometry(), before);
    }

    void originalSizeShowsThePictureAsItIs()
    {
        ShownViewer v;
        auto& image = v.part<ImageView>("imgMain");
        const QRect stretched = image.geometry();
        v.cam.setOriginalSize(true);
        v.server.play(pictureAnswer(encodedPicture({352, 288}, Qt::red)));
        v.fetch(v.server.url());
        QCOMPARE(image.size(), QSize(352, 288));
        const auto inViewer = [&] { return image.mapTo(&v.cam, QPoint()); };
        QCOMPARE(image.y(), stretched.y());
        QVERIFY(std::abs(inViewer().x() - (v.cam.width() - 352) / 2) <= 1);
        // Switched on with a picture there, it is placed at once.
        v.cam.setOriginalSize(false);
        QCOMPARE(image.geometry(), stretched);
        v.cam.setOriginalSize(true);
        QVERIFY(std::abs(inViewer().x() - (v.cam.width() - 352) / 2) <= 1);

        // A larger picture stays in its room: below the toolbar, above the status line.
        v.server.play(pictureAnswer(encodedPicture({1600, 1200}, Qt::red)));
        v.cam.setNewOnly(false);
        v.fetch(v.server.url());
        QCOMPARE(image.size(), QSize(1600, 1200));
        v.timer("tmrFalse").elapse();
        const QImage shown = v.cam.grab().toImage();
        const QColor ground = shown.pixelColor(1, 499);
        for (const QPoint outside : {QPoint(5, 2), QPoint(350, 498), QPoint(698, 490)})
            QVERIFY(shown.pixelColor(outside).red() < 240 || shown.pixelColor(outside) == ground);
        QCOMPARE(shown.pixelColor(350, 250).red(), 254);
        v.moveOverImage(5);
        QVERIFY(v.cam.rect().contains(v.part<ElidedLabel>("lblURl").geometry()));
        v.cam.setOriginalSize(false);
        QCOMPARE(image.geometry(), stretched);
    }

    void cleanUpRemovesTheTemporaryFiles()
    {
        ShownViewer v;
        v.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        v.fetch(v.server.url("/A.JPG"));
        QVERIFY(QFileInfo::exists(v.folder.filePath("tt.JPG")));
        v.cam.CleanUp();
        QVERIFY(!QFileInfo::exists(v.folder.filePath("tt.JPG")));
    }
};

QTEST_MAIN(WebCamTest)
#include "tst_WebCam.moc"
