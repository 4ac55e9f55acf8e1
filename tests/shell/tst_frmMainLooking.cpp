// Looking at pictures in the main window: a choice under the strip, the keys that copy, the menu's
// switch for proportions, the empty view.

#include "display/ImageView.h"
#include "support/Pictures.h"
#include "support/Rows.h"
#include "support/ScriptedServer.h"
#include "support/ShownMain.h"
#include "support/Waiting.h"
#include "viewer/WebCam.h"
#include "viewer/surface/ToolBar.h"

#include <QAction>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QTreeView>

namespace {

/// The main window with one camera in its list and its favourites.
class Looking : public ShownMain
{
public:
    Looking()
    {
        server.listen();
        for (const QColor colour : {Qt::red, Qt::blue})
            server.play(pictureAnswer(encodedPicture({100, 300}, colour)));
        const QByteArray key = server.url("/list.jpg").toUtf8();
        write("list.dat", "Cities\377Harbour\377" + key + "\r\n");
        write("pref.ini", "[FAVORITES]\r\nNAME[0]=Pier\r\nURL[0]=" + key + "\r\nCOUNT=1\r\n");
        shown();
    }

    WebCam& cam() { return part<WebCam>("Cam"); }
    QString caption() { return part<QLabel>("lblPic").text(); }
    void clickInList()
    {
        auto& tree = part<QTreeView>("tvwCat");
        const auto node = tree.model()->index(0, 0, tree.model()->index(0, 0));
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualRect(node).center());
    }
    void enterInBar()
    {
        auto& bar = part<QComboBox>("cmbUrl");
        bar.setFocus();
        bar.setEditText("http://" + server.url("/bar.jpg"));
        QTest::keyClick(&bar, Qt::Key_Return);
    }

    ScriptedServer server;
};

} // namespace

class frmMainLookingTest : public QObject
{
    Q_OBJECT
private slots:
    void everyChoiceLeavesTheStrip_data()
    {
        const Rows<QString> row("by");
        row("list", "list");
        row("favourites", "favourites");
        row("goto bar", "bar");
    }

    void everyChoiceLeavesTheStrip()
    {
        QFETCH(QString, by);
        Looking l;
        l.cam().showCamera(l.server.url());
        QTRY_COMPARE(l.caption(), "Image 1");
        QTest::mouseClick(l.part<ToolBar>("tbMain").findChild<QWidget*>("button(15)"),
                          Qt::LeftButton);
        QVERIFY(l.part<QWidget>("tvMain").isVisible());
        if (by == "list")
            l.clickInList();
        else if (by == "favourites")
            l.choose("mnuFav", "mnuFavGo(0)");
        else
            l.enterInBar();
        QTRY_COMPARE(l.caption(), "Image 2");
        QVERIFY(!l.part<QWidget>("tvMain").isVisible());
        QVERIFY(l.part<QWidget>("imgMain").isVisible());
    }

    void ctrlCIsTheImagesWhereNoTextTakesIt()
    {
        Looking l;
        QClipboard& clipboard = *QApplication::clipboard();
        clipboard.setText("before");
        l.clickInList();
        QTRY_COMPARE(l.caption(), "Image 1");
        l.part<QWidget>("cList").setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard.image().size(), QSize(100, 300));
        auto& bar = l.part<QComboBox>("cmbUrl");
        bar.setFocus();
        bar.lineEdit()->setText("some text");
        bar.lineEdit()->selectAll();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard.text(), "some text");
        // In the strip there is no one image.
        l.cam().setFocus();
        QTest::mouseClick(l.part<ToolBar>("tbMain").findChild<QWidget*>("button(15)"),
                          Qt::LeftButton);
        QVERIFY(l.part<QWidget>("tvMain").isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(clipboard.text(), "some text");
    }

    void theViewMenuKeepsProportions()
    {
        Looking l;
        l.clickInList();
        QTRY_COMPARE(l.caption(), "Image 1");
        auto& image = l.part<ImageView>("imgMain");
        const QColor room = image.palette().color(QPalette::Window);
        QVERIFY(image.grab().toImage().pixelColor(2, 2) != room);
        l.choose("mnuView", "mnuViewProp");
        QTRY_VERIFY(l.entry("mnuViewProp").isChecked());
        QImage shown = image.grab().toImage();
        QCOMPARE(shown.pixelColor(2, 2), room);
        QVERIFY(shown.pixelColor(shown.rect().center()).red() > 240);
        l.choose("mnuView", "mnuViewProp");
        QTRY_VERIFY(!l.entry("mnuViewProp").isChecked());
        QVERIFY(image.grab().toImage().pixelColor(2, 2) != room);
    }

    void theEmptyWindowSaysWhatToDo()
    {
        Looking l;
        auto& canvas = l.part<QWidget>("picMain");
        const QString hint = "Choose a camera on the left, or type an address below.";
        QCOMPARE(canvas.accessibleDescription(), hint);
        const auto isBlank = [&] {
            const QImage shown = canvas.grab().toImage();
            QImage blank(shown.size(), shown.format());
            blank.fill(canvas.palette().color(QPalette::Window));
            return shown == blank;
        };
        QVERIFY(!isBlank());
        l.clickInList();
        QTRY_COMPARE(l.caption(), "Image 1");
        QCOMPARE(canvas.accessibleDescription(), QString());
        l.part<ToolBar>("tbMain")
            .findChild<QWidget*>("button(10)")
            ->findChild<QMenu*>()
            ->actions()[1]
            ->trigger();
        QCOMPARE(l.caption(), "Image N/A");
        QCOMPARE(canvas.accessibleDescription(), hint);
        QVERIFY(!isBlank());
    }
};

QTEST_MAIN(frmMainLookingTest)
#include "tst_frmMainLooking.moc"
