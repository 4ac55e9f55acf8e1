// What is dropped on the main window, or pasted into it, and the keys that work all over it.

#include "camlist/CamList.h"
#include "display/ImageView.h"
#include "shell/parts/GotoBar.h"
#include "support/Dialogs.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"
#include "viewer/surface/ToolBarButton.h"
#include "widgets/ElidedLabel.h"

#include <QAction>
#include <QClipboard>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QMimeData>
#include <QTreeView>

#include <memory>

class OutsideInputTest : public QObject
{
    Q_OBJECT
private:
    /// Drags `data` over the window and drops it; whether it was taken.
    bool drop(const QMimeData& data)
    {
        const QPoint at(300, 200);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&main->made(), &enter);
        if (!enter.isAccepted())
            return false;
        QDropEvent event(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&main->made(), &event);
        return event.isAccepted();
    }
    bool dropFiles(const QStringList& names)
    {
        QMimeData data;
        QList<QUrl> urls;
        for (const QString& name : names)
            urls << QUrl::fromLocalFile(main->path(name));
        data.setUrls(urls);
        return drop(data);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(QApplication::focusWidget(), key, modifiers);
    }
    QString caption() { return main->part<QLabel>("lblPic").text(); }
    QString bar() { return main->part<GotoBar>("cmbUrl").currentText(); }

    std::unique_ptr<ShownMain> main;
    std::unique_ptr<ScriptedServer> server;
    WebCam* cam = nullptr;

private slots:
    void init()
    {
        server = std::make_unique<ScriptedServer>();
        server->listen();
        server->play(pictureAnswer(encodedPicture({30, 20}, Qt::red)));
        main = std::make_unique<ShownMain>();
        main->write("list.dat", "Demo\xFF"
                                "Clock\xFF" +
                                    server->url().toLatin1() +
                                    "\xFF"
                                    "Demo\xFF"
                                    "Other\xFF"
                                    "other.example/a.jpg\r\n");
        cam = &main->part<WebCam>("Cam");
        main->shown();
        cam->setFocus();
        QVERIFY(cam->hasFocus());
    }
    void cleanup()
    {
        main.reset();
        server.reset();
    }

    void anAddressIsShown_data()
    {
        const Rows<bool, bool> row("asLink", "pasted");
        row("a dropped text", false, false);
        row("a dropped link", true, false);
        row("a pasted text", false, true);
        row("a pasted link", true, true);
    }

    void anAddressIsShown()
    {
        QFETCH(bool, asLink);
        QFETCH(bool, pasted);
        const QString address = "http://" + server->url();
        auto data = std::make_unique<QMimeData>();
        if (asLink)
            data->setUrls({QUrl(address)});
        else
            data->setText("  " + address + " \nand more");
        if (pasted) {
            QGuiApplication::clipboard()->setMimeData(data.release());
            press(Qt::Key_V, Qt::ControlModifier);
        } else {
            QVERIFY(drop(*data));
        }
        QTRY_COMPARE(caption(), "Image 1");
        QCOMPARE(bar(), address);
        QVERIFY(server->requests()[0].startsWith("GET /a.jpg "));
    }

    void inATextBoxPasteIsTheBoxes()
    {
        auto& box = main->part<GotoBar>("cmbUrl");
        box.setFocus();
        box.lineEdit()->clear();
        QGuiApplication::clipboard()->setText("http://" + server->url());
        press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(box.currentText(), "http://" + server->url());
        QCOMPARE(server->connections(), 0);
    }

    void aPictureIsOpened()
    {
        main->write("a.BMP", encodedPicture({12, 10}, Qt::blue, "bmp"));
        QVERIFY(dropFiles({"a.BMP"}));
        QCOMPARE(main->part<ImageView>("imgMain").Picture().size(), QSize(12, 10));
        QCOMPARE(caption(), "Image 1");
    }

    void aMovieIsLoaded()
    {
        main->write("m.pvm",
                    encodedPicture({8, 8}, Qt::red) + "&IMAGE&" + encodedPicture({9, 8}, Qt::red));
        QVERIFY(dropFiles({"m.pvm"}));
        QTRY_COMPARE(caption(), "Image 1");
        main->part<ToolBar>("tbMain").button(ToolBar::Back)->click();
        QCOMPARE(caption(), "Image 2");
    }

    void aListIsImported()
    {
        main->write("more.zip", "CAMZNew\xFF"
                                "One\xFF"
                                "one.example/\r\n");
        QVERIFY(dropFiles({"more.zip"}));
        QTRY_VERIFY(main->part<CamList>("cList").has("one.example/"));
    }

    void severalFilesAreTakenInTheirOrder()
    {
        main->write("a.jpg", encodedPicture({12, 10}, Qt::blue));
        main->write("b.jpg", encodedPicture({14, 10}, Qt::blue));
        QVERIFY(dropFiles({"a.jpg", "b.jpg"}));
        QCOMPARE(caption(), "Image 2");
        QCOMPARE(main->part<ImageView>("imgMain").Picture().size(), QSize(14, 10));
    }

    void whatIsNothingOfThisIsNotTaken()
    {
        QMimeData data;
        data.setData("application/x-something", "x");
        QVERIFY(!drop(data));
        QGuiApplication::clipboard()->clear();
        press(Qt::Key_V, Qt::ControlModifier);
        QCOMPARE(server->connections(), 0);
    }

    void keysPressTheToolbarsButtons()
    {
        cam->showCamera(server->url());
        QTRY_COMPARE(caption(), "Image 1");
        server->play(pictureAnswer(encodedPicture({31, 20}, Qt::red)));
        press(Qt::Key_F5);
        QTRY_COMPARE(caption(), "Image 2");
        press(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(caption(), "Image 1");
        press(Qt::Key_Right, Qt::AltModifier);
        QCOMPARE(caption(), "Image 2");
        press(Qt::Key_S, Qt::ControlModifier);
        auto* dialog = openDialog<QFileDialog>();
        QVERIFY(dialog);
        dialog->reject();
    }

    void theyWorkWithoutTheToolbarAndRestWhereItsButtonsDo()
    {
        cam->setShowToolBar(false);
        cam->showCamera(server->url());
        QTRY_COMPARE(caption(), "Image 1");
        press(Qt::Key_F5);
        QTRY_COMPARE(server->connections(), 2);
        main->part<ToolBar>("tbMain").button(ToolBar::Back)->setEnabled(false);
        cam->openPicture(main->path("none.jpg"));
        press(Qt::Key_Left, Qt::AltModifier);
        QCOMPARE(caption(), "Image 1");
    }

    void escapeStopsTheFetchButNotFromATextBox()
    {
        server->play(Script{{}, Script::End::KeepOpen});
        cam->showCamera(server->url());
        QTRY_COMPARE(caption(), "Image 1");
        QSignalSpy done(cam, &WebCam::Done);
        cam->Refresh();
        QTRY_COMPARE(server->connections(), 2);
        main->part<GotoBar>("cmbUrl").setFocus();
        press(Qt::Key_Escape);
        QCOMPARE(done.count(), 0);
        main->part<QTreeView>("tvwCat").setFocus();
        press(Qt::Key_Escape);
        QCOMPARE(done.count(), 1);
        QCOMPARE(main->part<ElidedLabel>("lbl").Tag(), "  Stopped");
    }

    void theListFollowsTheCameraOnShow()
    {
        auto& tree = main->part<QTreeView>("tvwCat");
        auto& box = main->part<GotoBar>("cmbUrl");
        box.enterText("other.example/a.jpg");
        QCOMPARE(tree.currentIndex().data().toString(), "Other");
        box.enterText("http://" + server->url());
        QCOMPARE(tree.currentIndex().data().toString(), "Clock");
        QTRY_COMPARE(caption(), "Image 1");
        // What the user selects meanwhile is left alone by the next image.
        tree.setCurrentIndex(tree.model()->index(1, 0, tree.model()->index(0, 0)));
        server->play(pictureAnswer(encodedPicture({31, 20}, Qt::red)));
        cam->Refresh();
        QTRY_COMPARE(caption(), "Image 2");
        QCOMPARE(tree.currentIndex().data().toString(), "Other");
    }

    void aChosenCameraWhoseNewestImageIsKnownIsShown_data()
    {
        const Rows<QByteArray> row("answer");
        row("by a 304", httpAnswer({}, {}, "304 Not Modified"));
        row("by the same bytes", pictureAnswer(encodedPicture({31, 20}, Qt::red)));
    }

    void aChosenCameraWhoseNewestImageIsKnownIsShown()
    {
        QFETCH(QByteArray, answer);
        server->play(pictureAnswer(encodedPicture({31, 20}, Qt::red), "Last-Modified: Mon\r\n"));
        server->play(answer);
        cam->showCamera(server->url());
        QTRY_COMPARE(caption(), "Image 1");
        cam->Refresh();
        QTRY_COMPARE(caption(), "Image 2");
        // One of the camera's pictures is on show: a refresh leaves it there, a choice does not.
        main->part<ToolBar>("tbMain").button(ToolBar::Back)->click();
        QSignalSpy outcomes(cam, &WebCam::Outcome);
        cam->Refresh();
        QVERIFY(waitForSignal(outcomes));
        QCOMPARE(caption(), "Image 1");
        cam->showCamera(server->url());
        QVERIFY(waitForSignal(outcomes));
        QCOMPARE(caption(), "Image 2");
    }
};

QTEST_MAIN(OutsideInputTest)
#include "tst_OutsideInput.moc"
