// The history in the viewer: stepping, deleting, playing and the strip, by the toolbar's buttons
// and menus as a person would.

#include "display/ImageView.h"
#include "display/ThumbView.h"
#include "support/Cost.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"

#include <functional>

namespace {

/// A camera that has sent some images, each of a colour of its own.
class Watched : public ShownCamera
{
public:
    explicit Watched(int images)
    {
        server.listen();
        cam.setNewOnly(false);
        cam.setClock([this] { return now; });
        fetchMore(images);
    }

    void fetchMore(int images)
    {
        for (int i = 0; i < images; ++i) {
            const int number = static_cast<int>(sent.size()) + 1;
            sent << encodedPicture({8, 8}, QColor::fromHsv(number * 37 % 360, 255, 255));
            server.play(pictureAnswer(sent.last()));
            fetch(server.url(QString("/%1.jpg").arg(number)));
        }
    }

    /// Whether nothing is on show, the number of an image included.
    bool showsNothing()
    {
        return caption() == "Image N/A" && part<ImageView>("imgMain").Picture().isNull();
    }
    /// What the caption says of the picture on show, and which of those sent it is, from 1.
    QString onShow() { return caption() + ": " + QString::number(sent.indexOf(picture()) + 1); }
    /// Presses a button; what is told by that.
    QStringList toldBy(int button)
    {
        return since([&] { press(button); });
    }
    ThumbView& strip() { return part<ThumbView>("tvMain"); }
    bool showsStrip() { return strip().isVisible() && !part<QWidget>("imgMain").isVisible(); }
    bool showsPicture() { return !strip().isVisible() && part<QWidget>("imgMain").isVisible(); }
    QList<QByteArray> thumbnails()
    {
        QList<QByteArray> pictures;
        for (int n = 1; n <= strip().ThumbCount(); ++n)
            pictures << strip().Picture(n).bytes();
        return pictures;
    }
    /// Lets the pause of a play pass, by the clock and by its timer.
    void letPause()
    {
        now = now.addMSecs(1010);
        timer("tmrPlay").elapse();
    }
    /// What is told from here on.
    QStringList since(const std::function<void()>& act)
    {
        const auto before = told().size();
        act();
        return told().mid(before);
    }

    ScriptedServer server;
    QList<QByteArray> sent;
    QDateTime now{QDate(2001, 2, 3), QTime(12, 0)};
};

} // namespace

class WebCamHistoryTest : public QObject
{
    Q_OBJECT
private slots:
    void backAndForwardWrapAround()
    {
        Watched w(3);
        QCOMPARE(w.caption(), "Image 3");
        w.press(ToolBar::Forward);
        QCOMPARE(w.onShow(), "Image 1: 1");
        w.press(ToolBar::Forward);
        QCOMPARE(w.caption(), "Image 2");
        w.press(ToolBar::Back);
        w.press(ToolBar::Back);
        QCOMPARE(w.onShow(), "Image 3: 3");
    }

    void steppingBackSetsUrlAndAnnouncesIt()
    {
        Watched w(2);
        QSignalSpy urlChanged(&w.cam, &WebCam::UrlChanged);
        QString captionThen;
        QObject::connect(&w.cam, &WebCam::ImageChange, &w, [&] { captionThen = w.caption(); });
        QCOMPARE(w.toldBy(ToolBar::Back), (QStringList{"change http://127.0.0.1/1.jpg"}));
        QCOMPARE(w.cam.Url(), "127.0.0.1/1.jpg");
        QCOMPARE(urlChanged.count(), 1);
        // The caption follows the announcement.
        QCOMPARE(captionThen, "Image 2");
    }

    void refreshAfterSteppingBackAsksThatCamera()
    {
        Watched w(0);
        ScriptedServer other;
        other.listen();
        other.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        w.fetch(other.url() + QChar(1) + "Cookie: a=1");
        w.fetchMore(1);
        w.press(ToolBar::Back);
        QCOMPARE(w.cam.Url(), "127.0.0.1/a.jpg");
        w.fetch();
        QCOMPARE(other.requests().size(), 2);
        QVERIFY(other.requests()[1].contains("\r\nCookie: a=1\r\n"));
        QCOMPARE(w.cam.Url(), "127.0.0.1/a.jpg");
        QCOMPARE(w.caption(), "Image 3");
    }

    void stepsInAnEmptyHistoryDoNothing()
    {
        Watched w(0);
        QVERIFY(w.showsNothing());
        for (const int button : {ToolBar::Back, ToolBar::Forward, ToolBar::Delete}) {
            QCOMPARE(w.toldBy(button), QStringList{});
            QVERIFY(w.showsNothing());
        }
        w.chooseFromMenu(ToolBar::Delete, 1);
        QVERIFY(w.showsNothing());
    }

    void theDeleteButtonShowsWhatFollowsOrTheNewLast()
    {
        Watched w(3);
        w.press(ToolBar::Back);
        QCOMPARE(w.toldBy(ToolBar::Delete), (QStringList{"change http://127.0.0.1/3.jpg"}));
        QCOMPARE(w.onShow(), "Image 2: 3");
        w.press(ToolBar::Delete);
        QCOMPARE(w.onShow(), "Image 1: 1");
        // The only one leaves nothing.
        QCOMPARE(w.toldBy(ToolBar::Delete), QStringList{});
        QVERIFY(w.showsNothing());
    }

    void theDeleteMenuLeavesNothingAndTheNumber()
    {
        Watched w(3);
        w.press(ToolBar::Back);
        QCOMPARE(w.since([&] { w.chooseFromMenu(ToolBar::Delete, 1); }), QStringList{});
        QVERIFY(w.showsNothing());
        // The number was kept: the next step counts from 2.
        w.press(ToolBar::Back);
        QCOMPARE(w.caption(), "Image 1");

        // Of the last entry the number stays above the end; both steps lead to the end.
        w.press(ToolBar::Forward);
        w.chooseFromMenu(ToolBar::Delete, 1);
        w.press(ToolBar::Forward);
        QCOMPARE(w.onShow(), "Image 1: 1");
    }

    void deleteAllForgetsEverything()
    {
        Watched w(0);
        w.cam.setNewOnly(true);
        const QByteArray picture = encodedPicture({8, 8}, Qt::red);
        w.server.play(pictureAnswer(picture, "Last-Modified: Mon\r\n"));
        w.fetch(w.server.url());
        w.chooseFromMenu(ToolBar::Delete, 2);
        QVERIFY(w.showsNothing());
        QCOMPARE(w.strip().ThumbCount(), 0);
        // The same body is new again, and nothing is asked about its date.
        w.fetch();
        QVERIFY(!w.server.requests()[1].contains("Modified"));
        QCOMPARE(w.caption(), "Image 1");
        QCOMPARE(w.picture(), picture);
    }

    void commandsAfterDeleteAllAreHarmless()
    {
        Watched w(3);
        w.chooseFromMenu(ToolBar::Delete, 2);
        const auto told = w.since([&] {
            for (const int button : {ToolBar::Back, ToolBar::Forward, ToolBar::Delete,
                                     ToolBar::StopMovie, ToolBar::PlayMovie})
                w.press(button);
            w.chooseFromMenu(ToolBar::Delete, 1);
        });
        QCOMPARE(told, QStringList{});
        QCOMPARE(w.caption(), "Image N/A");
        w.fetchMore(1);
        QCOMPARE(w.caption(), "Image 1");
    }

    void theStripShowsTheHistoryAndOffersOnlyWhatLeavesItAlone()
    {
        Watched w(3);
        QVERIFY(w.showsPicture());
        w.press(ToolBar::ToggleView);
        QVERIFY(w.showsStrip());
        QCOMPARE(w.thumbnails(), w.sent);
        QCOMPARE(w.enabledButtons(), (QList<int>{6, 7, 9, 15}));
        w.press(ToolBar::ToggleView);
        QVERIFY(w.showsPicture());
        QCOMPARE(w.enabledButtons(), AllButtons);
    }

    void theStripFollowsFetches()
    {
        Watched w(2);
        QCOMPARE(w.thumbnails(), w.sent);
        w.press(ToolBar::ToggleView);
        w.fetchMore(1);
        QCOMPARE(w.thumbnails(), w.sent);
        QVERIFY(w.showsStrip());
    }

    void theStripIsRebuiltWhenItIsShown()
    {
        Watched w(3);
        w.press(ToolBar::Forward);
        w.press(ToolBar::Delete);
        // Deleting leaves it alone.
        QCOMPARE(w.thumbnails(), w.sent);
        w.press(ToolBar::ToggleView);
        QCOMPARE(w.thumbnails(), w.sent.mid(1));
    }

    void aThumbnailShowsItsImage()
    {
        Watched w(3);
        w.press(ToolBar::ToggleView);
        auto& thumbnail = w.part<QWidget>("img(1)");
        QCOMPARE(w.since([&] { QTest::mouseClick(&thumbnail, Qt::LeftButton); }),
                 (QStringList{"change http://127.0.0.1/2.jpg"}));
        QCOMPARE(w.cam.Url(), "127.0.0.1/2.jpg");
        QCOMPARE(w.onShow(), "Image 2: 2");
        QVERIFY(w.showsPicture());
        QCOMPARE(w.enabledButtons(), AllButtons);
        w.press(ToolBar::Forward);
        QCOMPARE(w.caption(), "Image 3");
    }

    void aThumbnailIsChosenByKey()
    {
        Watched w(3);
        // Another place that the keyboard could go to.
        QLineEdit other(&w.cam);
        other.show();
        w.cam.setFocus();
        w.press(ToolBar::ToggleView);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(w.caption(), "Image 2");
        QVERIFY(w.showsPicture());
        // The keyboard goes on in the picture's place.
        QCOMPARE(QApplication::focusWidget(), &w.cam);
    }

    void theKeyboardsPlaceElsewhereStays()
    {
        Watched w(1);
        auto* button = w.part<ToolBar>("tbMain").button(ToolBar::ToggleView);
        button->setFocus(Qt::TabFocusReason);
        QTest::keyClick(button, Qt::Key_Space);
        QVERIFY(w.showsStrip());
        QCOMPARE(QApplication::focusWidget(), button);
        QTest::keyClick(button, Qt::Key_Space);
        QVERIFY(w.showsPicture());
        QCOMPARE(QApplication::focusWidget(), button);
    }

    void aThumbnailWithoutEntryDoesNothing()
    {
        Watched w(2);
        w.press(ToolBar::ToggleView);
        for (const int index : {0, 3, -1}) {
            QCOMPARE(w.since([&] { emit w.strip().Click(index); }), QStringList{});
            QVERIFY(w.showsStrip());
        }
    }

    void the46thImageLeavesHistoryAndStripInStep()
    {
        Watched w(46);
        QCOMPARE(w.onShow(), "Image 45: 46");
        QCOMPARE(w.thumbnails(), w.sent.mid(1));
        w.press(ToolBar::Forward);
        QCOMPARE(w.picture(), w.sent[1]);
    }

    void theStripOnShowStaysInStepBeyond45()
    {
        Watched w(44);
        w.press(ToolBar::ToggleView);
        for (int i = 0; i < 3; ++i) {
            w.fetchMore(1);
            QCOMPARE(w.thumbnails(), w.sent.mid(i));
        }
    }

    void playShowsTheEntriesInTurn()
    {
        Watched w(2);
        const auto told = w.since([&] {
            w.press(ToolBar::PlayMovie);
            QCOMPARE(w.onShow(), "Image 1: 1");
            QCOMPARE(w.enabledButtons(), QList<int>{ToolBar::StopMovie});
            QCOMPARE(w.timer("tmrPlay").Interval(), 1000);
            w.letPause();
            QCOMPARE(w.onShow(), "Image 2: 2");
        });
        QCOMPARE(told, QStringList{});
        QCOMPARE(w.cam.Url(), w.server.url("/2.jpg"));
    }

    void stopMovieRestoresTheAddress()
    {
        Watched w(2);
        w.press(ToolBar::PlayMovie);
        QCOMPARE(w.toldBy(ToolBar::StopMovie), (QStringList{"change http://127.0.0.1/1.jpg"}));
        QCOMPARE(w.cam.Url(), "127.0.0.1/1.jpg");
        QCOMPARE(w.caption(), "Image 1");
        QCOMPARE(w.enabledButtons(), AllButtons);
        w.press(ToolBar::Forward);
        QCOMPARE(w.caption(), "Image 2");

        // All but the button itself are enabled.
        auto& bar = w.part<ToolBar>("tbMain");
        bar.setButtonsEnabled(false);
        emit bar.ButtonClick(ToolBar::StopMovie);
        QCOMPARE(w.enabledButtons(), (QList<int>{1, 2, 4, 5, 6, 7, 9, 10, 12, 15}));
    }

    void playOfAnEmptyHistoryLeavesTheButtonsEnabled()
    {
        Watched w(0);
        w.press(ToolBar::PlayMovie);
        QCOMPARE(w.enabledButtons(), AllButtons);
        w.cam.Play();
        QCOMPARE(w.enabledButtons(), AllButtons);
    }

    void thePlayMenuHasThreeSpeeds()
    {
        Watched w(1);
        int item = 0;
        for (const int milliseconds : {200, 500, 1000}) {
            w.chooseFromMenu(ToolBar::PlayMovie, ++item);
            // Single precision steps by 8 ms in the evening.
            QVERIFY(qAbs(w.timer("tmrPlay").Interval() - milliseconds) <= 8);
            w.press(ToolBar::StopMovie);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
    }

    void aFetchDuringPlayIsKept()
    {
        Watched w(1);
        w.press(ToolBar::PlayMovie);
        w.fetchMore(1);
        QCOMPARE(w.caption(), "Image 2");
        QStringList captions;
        for (int i = 0; i < 3; ++i) {
            w.letPause();
            captions << w.caption();
        }
        QCOMPARE(captions, (QStringList{"Image 1", "Image 2", "Image 1"}));
    }

    void the304EntryComesOnShow()
    {
        Watched w(0);
        w.cam.setNewOnly(true);
        const QByteArray red = encodedPicture({8, 8}, Qt::red);
        w.server.play(pictureAnswer(red, "Last-Modified: Mon\r\n"));
        w.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::blue)));
        w.server.play(httpAnswer({}, {}, "304 Not Modified"));
        w.fetch(w.server.url("/a.jpg"));
        w.fetch(w.server.url("/b.jpg"));
        const Outcome outcome = w.fetch(w.server.url("/a.jpg"));
        QVERIFY(w.server.requests()[2].contains("if-Modified-Since: Mon"));
        QCOMPARE(outcome.told, (QStringList{"error Not a new image"}));
        QCOMPARE(w.picture(), red);
        QCOMPARE(w.caption(), "Image 1");
        w.press(ToolBar::Forward);
        QCOMPARE(w.caption(), "Image 2");
    }

    void a304LeavesAnOlderImageOfTheCameraOnShow()
    {
        Watched w(0);
        w.cam.setNewOnly(true);
        const QByteArray red = encodedPicture({8, 8}, Qt::red);
        w.server.play(pictureAnswer(red, "Last-Modified: Mon\r\n"));
        w.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::blue), "Last-Modified: Tue\r\n"));
        w.server.play(httpAnswer({}, {}, "304 Not Modified"));
        w.fetch(w.server.url());
        w.fetch();
        w.press(ToolBar::Back);
        w.fetch();
        QVERIFY(w.server.requests()[2].contains("if-Modified-Since: Tue"));
        QCOMPARE(w.picture(), red);
        QCOMPARE(w.caption(), "Image 1");

        // With nothing on show, the newest of the camera comes.
        w.chooseFromMenu(ToolBar::Delete, 1);
        w.fetch(w.server.url());
        QCOMPARE(w.caption(), "Image 1");
        QVERIFY(!w.part<ImageView>("imgMain").Picture().isNull());
    }

    void closingEndsThePlay()
    {
        Watched w(2);
        w.press(ToolBar::PlayMovie);
        auto& pause = w.timer("tmrPlay");
        w.cam.shutDown();
        QVERIFY(!pause.Enabled());
        QCOMPARE(w.caption(), "Image 1");
    }

    void playLeavesTheStrip()
    {
        Watched w(2);
        w.press(ToolBar::ToggleView);
        w.cam.Play();
        QVERIFY(w.showsPicture());
        QCOMPARE(w.enabledButtons(), QList<int>{ToolBar::StopMovie});
    }

    void aMovieThatWaitsLeavesTheStoppedPlaysAddress()
    {
        Watched w(2);
        w.press(ToolBar::PlayMovie);
        w.cam.LoadMovie("/no such movie");
        QCOMPARE(w.toldBy(ToolBar::StopMovie), (QStringList{"change http://127.0.0.1/1.jpg"}));
        QCOMPARE(answerMessage(QMessageBox::Ok).text, "Out of memory");
        QVERIFY(w.part<ImageView>("imgMain").Picture().isNull());
    }

    void arrowKeysLeaveAHiddenPictureAlone()
    {
        Watched w(1);
        w.press(ToolBar::ToggleView);
        auto& image = w.part<QWidget>("imgMain");
        const QPoint before = image.pos();
        QTest::keyClick(&w.cam, Qt::Key_Right);
        QCOMPARE(image.pos(), before);
        w.press(ToolBar::ToggleView);
        QTest::keyClick(&w.cam, Qt::Key_Right);
        QVERIFY(image.pos() != before);
    }

    void theStripBeginsAtTheImageOnShow()
    {
        Watched w(3);
        w.press(ToolBar::Back);
        w.cam.setFocus();
        w.press(ToolBar::ToggleView);
        QCOMPARE(QApplication::focusWidget(), &w.part<QWidget>("img(1)"));
    }

    void deletedImagesDoNotPileUpInTheStrip()
    {
        Watched w(0);
        for (int i = 0; i < 50; ++i) {
            w.fetchMore(1);
            w.chooseFromMenu(ToolBar::Delete, 1);
        }
        QCOMPARE(w.strip().ThumbCount(), 45);
        QCOMPARE(w.strip().Picture(45).bytes(), w.sent.last());
    }

    void aHandlerMayDeleteEverything()
    {
        Watched w(0);
        w.cam.setNewOnly(true);
        const auto forget = QObject::connect(&w.cam, &WebCam::ImageChange, &w,
                                             [&] { w.chooseFromMenu(ToolBar::Delete, 2); });
        w.server.play(pictureAnswer(encodedPicture({8, 8}, Qt::red)));
        w.fetch(w.server.url());
        QCOMPARE(w.strip().ThumbCount(), 0);
        QCOMPARE(w.caption(), "Image N/A");
        QObject::disconnect(forget);

        // Forgotten is forgotten: the same body is new.
        QCOMPARE(w.fetch().told, (QStringList{"change http://127.0.0.1/a.jpg", "done"}));
        QCOMPARE(w.caption(), "Image 1");

        QObject::connect(&w.cam, &WebCam::ImageChange, &w,
                         [&] { w.chooseFromMenu(ToolBar::Delete, 2); });
        w.press(ToolBar::Back);
        QCOMPARE(w.caption(), "Image N/A");
    }

    void theSameUrlSetAgainStandsForTheSameCamera()
    {
        Watched w(2);
        w.press(ToolBar::Back);
        w.cam.setUrl("http://" + w.cam.Url());
        const auto before = w.server.requests().size();
        w.fetch();
        QCOMPARE(w.server.requests().size(), before + 1);
        QVERIFY(w.server.requests().last().startsWith("GET /1.jpg "));
    }

    void playingCostsLittleMoreThanDecodingAndPainting()
    {
        ShownCamera c;
        const ScratchFile movie("m.pvm");
        QByteArrayList frames;
        for (int i = 0; i < 10; ++i)
            frames << encodedPicture({640, 480}, QColor::fromHsv(i * 37, 255, 255));
        movie.setContent(frames.join("&IMAGE&"));
        c.cam.LoadMovie(movie.path());
        QTRY_COMPARE(c.caption(), "Image 1");

        QDateTime now(QDate(2001, 2, 3), QTime(12, 0));
        c.cam.setClock([&] { return now; });
        c.chooseFromMenu(ToolBar::PlayMovie, 2);
        auto& pause = c.timer("tmrPlay");
        constexpr int shownFrames = 40;
        const double times = timesTheCost(
            [&] {
                for (int i = 0; i < shownFrames; ++i) {
                    now = now.addMSecs(510);
                    pause.elapse();
                    QCoreApplication::processEvents();
                    c.cam.repaint();
                    QVERIFY(pause.Interval() > 400);
                }
            },
            [&] {
                for (int i = 0; i < shownFrames; ++i) {
                    QVERIFY(!Still::fromBytes(frames[i % frames.size()]).isNull());
                    c.cam.repaint();
                }
            });
        qInfo("%.2f times the cost of decoding and painting alone", times);
        QVERIFY(times < 5);
    }
};

QTEST_MAIN(WebCamHistoryTest)
#include "tst_WebCamHistory.moc"
