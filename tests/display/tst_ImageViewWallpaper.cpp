// "Set as Desktop Background": the file that is written. How the desktop is told is the
// platform's test.

#include "display/ImageView.h"
#include "support/Pictures.h"

#include <memory>

class ImageViewWallpaperTest : public QObject
{
    Q_OBJECT
private slots:
    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        // A home of the test's own, with no desktop that could be told.
        qputenv("HOME", m_home->path().toLocal8Bit());
        qputenv("XDG_CONFIG_HOME", m_home->filePath("config").toLocal8Bit());
        qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent");
        qunsetenv("XDG_CURRENT_DESKTOP");
    }

    void theUnscaledPictureIsWrittenUnderOneName()
    {
        ImageView view;
        view.resize(400, 400);
        setAsBackground(view);
        QVERIFY(!QFileInfo::exists(pictures() + "/Pevora.bmp")); // no picture yet

        view.setPicture(Still::fromImage(plainImage({64, 48}, Qt::red)));
        QTest::mouseClick(view.findChild<QWidget*>("picMain"), Qt::LeftButton, {}, QPoint(9, 9));
        setAsBackground(view);
        QImage written;
        QVERIFY(written.load(pictures() + "/Pevora.bmp", "bmp"));
        QCOMPARE(written.size(), QSize(64, 48));
        QCOMPARE(written.pixelColor(60, 40), QColor(Qt::red));

        view.setPicture(Still::fromImage(plainImage({32, 24}, Qt::blue)));
        setAsBackground(view);
        QVERIFY(written.load(pictures() + "/Pevora.bmp", "bmp"));
        QCOMPARE(written.size(), QSize(32, 24));
        QCOMPARE(QDir(pictures()).entryList(QDir::Files), QStringList{"Pevora.bmp"});
    }

    void transparentPartsAreWhite()
    {
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(qRgba(255, 0, 0, 0));
        ImageView view;
        view.setPicture(Still::fromImage(image));
        setAsBackground(view);
        QImage written;
        QVERIFY(written.load(pictures() + "/Pevora.bmp", "bmp"));
        QCOMPARE(written.pixelColor(8, 8), QColor(Qt::white));
    }

    void anImageThatCannotBeWrittenIsIgnored()
    {
        // A folder stands where the file should.
        QVERIFY(QDir().mkpath(pictures() + "/Pevora.bmp/inside"));
        ImageView view;
        view.setPicture(Still::fromImage(plainImage({64, 48}, Qt::red)));
        setAsBackground(view);
        QVERIFY(QFileInfo(pictures() + "/Pevora.bmp").isDir());
    }

private:
    static void setAsBackground(ImageView& view)
    {
        view.findChild<QAction*>("mnuRcDesk")->trigger();
    }
    QString pictures() const { return m_home->filePath("Pictures"); }

    std::unique_ptr<QTemporaryDir> m_home;
};

QTEST_MAIN(ImageViewWallpaperTest)
#include "tst_ImageViewWallpaper.moc"
