// The largest pictures at their own size, on a screen of two device pixels to a logical one: what
// is seen of them, and what memory they cost.

#include "display/ImageView.h"
#include "picture/SaveImage.h"
#include "support/ChildCost.h"
#include "support/OddPictures.h"
#include "support/Pictures.h"
#include "support/Rows.h"

/// Has to be there before the application object.
static const bool Scaled = qputenv("QT_SCALE_FACTOR", "2");

namespace {

constexpr auto ShowOption = "--show";
constexpr auto SaveOption = "--save";
constexpr QSize Largest(8'000, 6'250);
constexpr QSize Room(900, 560);

/// A view at its picture's own size, in a window with less room.
class Shown
{
public:
    Shown()
    {
        window.resize(Room);
        view.setOriginalSize(true);
        window.show();
        if (!waitForExposed(&window))
            qFatal("not exposed");
    }
    /// What the window shows, in device pixels; where nothing is drawn it stays blue.
    QImage grabbed()
    {
        QImage image(Room * 2, QImage::Format_RGB32);
        image.setDevicePixelRatio(2);
        image.fill(Qt::blue);
        window.render(&image);
        return image;
    }

    QWidget window;
    ImageView view{&window};
};

int decodeAndShow(const QByteArray& bytes, const QString& target)
{
    Shown shown;
    if (shown.view.loadPicture(bytes).isNull())
        return 1;
    for (const QPoint at : {QPoint(), QPoint(-4'000, -3'000), QPoint(-7'000, -5'600)}) {
        shown.view.move(at);
        if (shown.grabbed().pixelColor(900, 560) == QColor(Qt::blue))
            return 2;
    }
    return target.isEmpty() || savePicture(target, shown.view.Picture()) ? 0 : 3;
}

} // namespace

class ImageViewMemoryTest : public QObject
{
    Q_OBJECT
private slots:
    void costsLittleMoreThanThePixels_data()
    {
        const Rows<QByteArray, QString> row("bytes", "ending");
        const QByteArray jpeg = odd::encoded(odd::scenery(Largest), "jpg");
        // Of 32 bits a pixel, each colour and the transparency in eight of them.
        QByteArray seeThrough = odd::bitmap(
            {.width = 7'071, .height = 7'071, .bits = 32, .compression = 3, .headerSize = 108},
            QByteArray(99, 'a'));
        constexpr qsizetype placeOfMasks = 54;
        seeThrough.replace(placeOfMasks, 16,
                           QByteArray::fromHex("0000ff0000ff0000ff000000000000ff"));
        QVERIFY(Still::fromBytes(seeThrough).imageNoSmallerThan({1, 1}).hasAlphaChannel());
        row("shown", jpeg, {});
        row("saved as a bitmap", jpeg, "bmp");
        row("saved as a JPEG", jpeg, "jpg");
        row("see-through, saved as a bitmap", seeThrough, "bmp");
    }

    void costsLittleMoreThanThePixels()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, ending);
        QTemporaryDir folder;
        QFile file(folder.filePath("picture"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        const QString target = folder.filePath("saved." + ending);
        const ChildCost cost = ending.isEmpty()
                                   ? costOfChild({ShowOption, file.fileName()})
                                   : costOfChild({SaveOption, file.fileName(), target});
        QCOMPARE(cost.exitCode, 0);
        qInfo("%.0f MB", cost.peakMegabytes);
#ifndef __SANITIZE_ADDRESS__ // It needs memory of its own.
        QVERIFY(cost.peakMegabytes < 500);
#endif
    }

    void whatIsSeenIsThere_data()
    {
        const Rows<QPoint> row("at");
        row("the corner", QPoint());
        row("the middle", QPoint(-1'500, -1'200));
        row("an odd place", QPoint(-1'501, -1'333));
        row("the last corner", QPoint(Room.width() - 3'200, Room.height() - 3'000));
        row("beyond it", QPoint(-3'000, -2'900));
    }

    void whatIsSeenIsThere()
    {
        QFETCH(QPoint, at);
        Shown shown;
        const QImage picture = odd::scenery({3'200, 3'000}); // 38 million device pixels
        shown.view.setPicture(Still::fromImage(picture));
        shown.view.move(at);
        QCOMPARE(shown.view.size(), picture.size());
        const QImage seen = shown.grabbed();
        const QRect part = QRect(-at, Room) & picture.rect();
        QVERIFY(!part.isEmpty());
        const QImage expected = picture.copy(part).scaled(part.size() * 2, Qt::IgnoreAspectRatio,
                                                          Qt::SmoothTransformation);
        // At its edges the part that was cut out knows no neighbours.
        constexpr int edge = 2;
        for (int y = edge; y < expected.height() - edge; ++y) {
            for (int x = edge; x < expected.width() - edge; ++x) {
                const QColor is = seen.pixelColor(x, y);
                const QColor wanted = expected.pixelColor(x, y);
                if (qAbs(is.red() - wanted.red()) > 3 || qAbs(is.green() - wanted.green()) > 3 ||
                    qAbs(is.blue() - wanted.blue()) > 3)
                    QFAIL(qPrintable(QString("%1, %2: %3 and not %4")
                                         .arg(x)
                                         .arg(y)
                                         .arg(is.name(), wanted.name())));
            }
        }
    }

    void aZoomOfItIsThere()
    {
        Shown shown;
        const QImage picture = odd::scenery({3'200, 3'000});
        shown.view.setPicture(Still::fromImage(picture));
        QTest::mouseClick(shown.view.findChild<QWidget*>("picMain"), Qt::LeftButton, {},
                          QPoint(400, 300));
        QCOMPARE(shown.view.shownRegion(), QRectF(300 / 3'200.0, 0.2 / 3, 200 / 3'200.0, 0.2 / 3));
        // Its corner, sixteen times as large.
        const QImage seen = shown.grabbed();
        const QColor corner = picture.pixelColor(300, 200);
        const QColor is = seen.pixelColor(17, 16);
        QVERIFY(qAbs(is.red() - corner.red()) < 4 && qAbs(is.green() - corner.green()) < 4);
    }

    void thePlaceOfATransparentPictureIsTheWindows()
    {
        Shown shown;
        QImage picture({3'200, 3'000}, QImage::Format_ARGB32);
        picture.fill(Qt::transparent);
        shown.view.setPicture(Still::fromImage(picture));
        QCOMPARE(shown.grabbed().pixelColor(900, 560),
                 shown.window.palette().color(QPalette::Window));
    }
};

// QTEST_MAIN, and what the children do.
int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = application.arguments();
    if (Scaled && arguments.size() > 2 &&
        (arguments[1] == ShowOption || arguments[1] == SaveOption)) {
        QFile file(arguments[2]);
        return file.open(QIODevice::ReadOnly) ? decodeAndShow(file.readAll(), arguments.value(3))
                                              : 1;
    }
    ImageViewMemoryTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_ImageViewMemory.moc"
