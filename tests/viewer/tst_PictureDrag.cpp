// A picture that is dragged out of the viewer, by the pointer of the desktop.

#include "display/ImageView.h"
#include "picture/ImageList.h"
#include "support/Desktop.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/Waiting.h"
#include "viewer/surface/ToolBar.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QMimeData>
#include <QUrl>

namespace {

/// A window beside the viewer's that takes what is dropped on it.
class Target : public QWidget
{
public:
    Target()
    {
        setAcceptDrops(true);
        setGeometry(1000, 500, 300, 200);
        show();
        if (!waitForExposed(this))
            qFatal("the target does not show");
    }

    bool dropped = false;
    QImage image;
    QString path;
    QByteArray content;

protected:
    void dragEnterEvent(QDragEnterEvent* event) override
    {
        event->acceptProposedAction();
        // The button is released over it, and not before.
        QMetaObject::invokeMethod(
            this, [this] { pointer(mapToGlobal(rect().center()), "mouseup", 1); },
            Qt::QueuedConnection);
    }
    void dropEvent(QDropEvent* event) override
    {
        event->acceptProposedAction();
        image = qvariant_cast<QImage>(event->mimeData()->imageData());
        path = event->mimeData()->urls().value(0).toLocalFile();
        content = contentOf(path);
        dropped = true;
    }
};

class Dragging : public ShownCamera
{
public:
    Dragging()
    {
        cam.move(20, 40);
        server.listen();
    }
    void fetchBody(const QByteArray& body)
    {
        server.play(pictureAnswer(body));
        fetch(server.url());
    }
    QPoint onPicture() { return part<QWidget>("picMain").mapToGlobal(QPoint(200, 150)); }
    /// From the picture to the target, as far as that goes.
    void dragTo(const Target& target)
    {
        pointer(onPicture(), "mousedown", 1);
        movePointer(onPicture() + QPoint(60, 60));
        movePointer(target.mapToGlobal(target.rect().center()));
    }

    ScriptedServer server;
};

} // namespace

class PictureDragTest : public QObject
{
    Q_OBJECT
private slots:
    /// One that failed may have left the button pressed.
    void init() { pointer({0, 0}, "mouseup", 1); }
    void cleanupTestCase() { pointer({0, 0}, "mouseup", 1); }

    void thePictureIsDroppedAsAFileAndAsAnImage_data()
    {
        const Rows<QByteArray, QString> row("body", "name");
        const QString time = "127.0.0.1 2026-11-21 18-09-05.";
        row("jpeg", encodedPicture({64, 48}, Qt::red), time + "jpg");
        row("bitmap", encodedPicture({64, 48}, Qt::red, "bmp"), time + "bmp");
        row("gif", smallGif(), time + "gif");
    }

    void thePictureIsDroppedAsAFileAndAsAnImage()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, name);
        Target target;
        Dragging d;
        d.cam.setClock([] { return QDateTime(QDate(2026, 11, 21), QTime(18, 9, 5)); });
        d.fetchBody(body);
        d.dragTo(target);
        QTRY_VERIFY(target.dropped);
        QCOMPARE(target.content, body);
        QCOMPARE(QFileInfo(target.path).fileName(), name);
        QCOMPARE(target.image.size(), Still::fromBytes(body).size());
        // The drag was no click, and the next click is one.
        auto& image = d.part<ImageView>("imgMain");
        QCOMPARE(image.shownRegion(), QRectF(0, 0, 1, 1));
        QTest::mouseClick(&d.part<QWidget>("picMain"), Qt::LeftButton, {}, {150, 150});
        QVERIFY(image.shownRegion() != QRectF(0, 0, 1, 1));
    }

    void theFileGoesWithTheViewer()
    {
        Target target;
        {
            Dragging d;
            d.fetchBody(encodedPicture({64, 48}, Qt::red));
            d.dragTo(target);
            QTRY_VERIFY(target.dropped);
            QVERIFY(QFileInfo::exists(target.path));
        }
        QVERIFY(!QFileInfo::exists(target.path));
        QVERIFY(!QFileInfo::exists(QFileInfo(target.path).path()));
    }

    void whatIsNoCamerasPictureBearsTheProgramsName()
    {
        Target target;
        Dragging d;
        const QByteArray body = encodedPicture({64, 48}, Qt::blue);
        d.fetchBody(body);
        d.chooseFromMenu(ToolBar::Delete, 2);
        d.part<ImageView>("imgMain").setPicture(Still::fromBytes(body));
        d.dragTo(target);
        QTRY_VERIFY(target.dropped);
        QCOMPARE(QFileInfo(target.path).fileName(), "Pevora.jpg");
        QCOMPARE(target.content, body);
    }

    void aZoomedPictureIsMovedAndNotDraggedOut()
    {
        Target target;
        Dragging d;
        d.fetchBody(encodedPicture({64, 48}, Qt::red));
        QTest::mouseClick(&d.part<QWidget>("picMain"), Qt::LeftButton, {}, {300, 200});
        auto& image = d.part<ImageView>("imgMain");
        const QRectF before = image.shownRegion();
        pointer(d.onPicture(), "mousedown", 1);
        movePointer(d.onPicture() + QPoint(60, 60));
        QTRY_VERIFY(image.shownRegion() != before);
        pointer(target.mapToGlobal(target.rect().center()), "mouseup", 1);
        QTRY_COMPARE(d.part<QWidget>("picMain").cursor().shape(), Qt::OpenHandCursor);
        QVERIFY(!target.dropped);
    }
};

QTEST_MAIN(PictureDragTest)
#include "tst_PictureDrag.moc"
