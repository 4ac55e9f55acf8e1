// What comes in the course of work: message boxes, and the texts that follow each other on status
// lines, captions and tips. Each is provoked as a person provokes it.

#include "directory/frmInt.h"
#include "support/Desktop.h"
#include "support/Dialogs.h"
#include "support/FileScene.h"
#include "support/Rows.h"
#include "support/ShownDirectory.h"
#include "support/ShownMain.h"
#include "texts/ProgramTexts.h"
#include "viewer/fetch/Fetch.h"
#include "viewer/surface/ToolBarButton.h"

#include <QCheckBox>
#include <QInputDialog>
#include <QRadioButton>
#include <QSettings>

#include <functional>
#include <memory>

namespace {

constexpr auto OneCamera = "Cities\xFFHarbour\xFF"
                           "cam.example/a.jpg\r\n";

// ---- Message boxes.

/// Presses "Add It" on a page with these entries.
void addCamera(ShownMain& m, const QString& category, const QString& name, const QString& url)
{
    m.part<QRadioButton>("opt(0)").click();
    m.part<QComboBox>("cmbCat").setEditText(category);
    m.part<QLineEdit>("txtName").setText(name);
    m.part<QLineEdit>("txtUrl").setText(url);
    m.part<QPushButton>("cmdAdd").click();
}

/// Chooses "Import List", and that file.
void import(ShownMain& m, const QByteArray& content)
{
    m.write("list.zip", content);
    m.entry("mnuOptImport").trigger();
    acceptFile(m.path("list.zip"));
}

void enterRate(ShownMain& m, const QString& rate)
{
    m.entry("mnuTmrSel(99)").trigger();
    auto* dialog = openDialog<QInputDialog>();
    dialog->setTextValue(rate);
    dialog->accept();
}

/// What is done in a main window whose list is OneCamera.
const QHash<QString, std::function<void(ShownMain&)>>& occasions()
{
    static const QHash<QString, std::function<void(ShownMain&)>> table = {
        {"exit without saving", [](ShownMain& m) { m.entry("mnuOptExitWO").trigger(); }},
        {"new camera without a category", [](ShownMain& m) { addCamera(m, "", "", ""); }},
        {"new camera without a name", [](ShownMain& m) { addCamera(m, "Cities", "", ""); }},
        {"new camera without an address", [](ShownMain& m) { addCamera(m, "Cities", "Pier", ""); }},
        {"new camera that is listed",
         [](ShownMain& m) { addCamera(m, "Cities", "Pier", "cam.example/a.jpg"); }},
        {"new camera of another kind",
         [](ShownMain& m) { addCamera(m, "Cities", "Pier", "ftp://cam.example/a.jpg"); }},
        {"private camera to offer",
         [](ShownMain& m) {
             m.part<QRadioButton>("opt(0)").click();
             m.part<QCheckBox>("chkAdd").setChecked(true);
             m.part<QLineEdit>("txtUrl").setText("192.168.1.5/a.jpg");
             m.part<QPushButton>("cmdAdd").click();
         }},
        {"list that holds a camera of ours",
         [](ShownMain& m) { import(m, QByteArray("CAMZ") + OneCamera); }},
        {"list that is none", [](ShownMain& m) { import(m, "no list"); }},
        {"category to remove",
         [](ShownMain& m) {
             auto& tree = m.part<QTreeView>("tvwCat");
             tree.setCurrentIndex(tree.model()->index(0, 0));
             m.entry("mnuRem").trigger();
         }},
        {"custom rate in letters", [](ShownMain& m) { enterRate(m, "often"); }},
        {"custom rate too large", [](ShownMain& m) { enterRate(m, "32768"); }},
        {"movie that is none",
         [](ShownMain& m) {
             m.write("no.pvm", "no movie");
             m.part<WebCam>("Cam").LoadMovie(m.path("no.pvm"));
         }},
        {"nothing checked to add",
         [](ShownMain& m) {
             m.entry("mnuOptInt").trigger();
             for (QWidget* window : QApplication::topLevelWidgets()) {
                 if (auto* list = qobject_cast<frmInt*>(window))
                     list->findChild<QPushButton*>("cmdAdd")->click();
             }
         }},
    };
    return table;
}

// ---- Texts that follow each other.

/// A picture whose body has 10 kB.
QByteArray tenKilobytes(const QColor& colour)
{
    QByteArray body = encodedPicture({40, 30}, colour);
    body.resize(10 * 1024, '\0');
    return body;
}

/// A viewer that fetches from a server, each text that comes on its status line, and, in brackets,
/// what it tells its owner.
class Fetching : public Files
{
public:
    Fetching()
    {
        connect(&part<Fetch>(""), &Fetch::StatusText, this, [this] {
            status << Files::status().replace("127.0.0.1:" + QString::number(port()), "HOST");
        });
        const auto note = [this] { status << '(' + told().last() + ')'; };
        connect(&cam, &WebCam::ImageChange, this, note);
        connect(&cam, &WebCam::Error, this, note);
        connect(&cam, &WebCam::Done, this, note);
    }
    /// What comes of an answer, from here on.
    Fetching& get(const QByteArray& answer)
    {
        server.play(answer);
        return refresh();
    }
    Fetching& refresh()
    {
        status.clear();
        fetch("127.0.0.1:" + QString::number(port()) + "/a.jpg");
        return *this;
    }
    quint16 port() const { return nobody ? nobody : server.port(); }

    /// A port where no server is, to be asked in place of the server's.
    quint16 nobody = 0;
    QStringList status;
};

/// How a fetch goes that ends as the occasion says.
void run(Fetching& f, const QString& occasion)
{
    const QByteArray body = tenKilobytes(Qt::red);
    if (occasion == "picture in two pieces") {
        const QByteArray answer = pictureAnswer(body);
        f.server.play(answer.chopped(5 * 1024), Script::End::KeepOpen);
        f.start(f.server.url());
        QTRY_COMPARE(f.status.size(), 4);
        f.server.sendMore(answer.last(5 * 1024));
        f.end();
    } else if (occasion == "picture of no known length") {
        f.get(httpAnswer(body, "Content-Type: image/jpeg\r\n"));
    } else if (occasion == "picture that did not change for the server") {
        f.get(httpAnswer({}, {}, "304 Not Modified"));
    } else if (occasion == "picture as it was") {
        f.get(pictureAnswer(body)).get(pictureAnswer(body));
    } else if (occasion == "picture that is not there") {
        f.get(httpAnswer({}, {}, "404 Not Found"));
    } else if (occasion == "picture that is elsewhere") {
        f.server.play(
            httpAnswer({}, "Location: http://" + f.server.url().toLatin1() + "\r\n", "302 Found"));
        f.get(httpAnswer({}, {}, "404 Not Found"));
    } else if (occasion == "body that is no picture") {
        f.get(pictureAnswer(QByteArray(10 * 1024, 'x')));
    } else if (occasion == "server that is not there") {
        f.nobody = portOfNobody();
        f.refresh();
    } else if (occasion == "fetch that is stopped") {
        f.start(f.server.url());
        QTRY_COMPARE(f.server.requests().size(), 1);
        f.press(ToolBar::Stop);
    } else if (occasion == "file that is no picture") {
        f.openImage("no picture");
        f.status << static_cast<Files&>(f).status();
    } else if (occasion == "image that cannot be saved") {
        f.openImage(numbered(1));
        f.press(ToolBar::Save);
        f.answer(f.path("missing folder/a.jpg"));
        f.status << static_cast<Files&>(f).status();
    }
}

QStringList statusOf(const QString& occasion)
{
    Fetching f;
    run(f, occasion);
    return f.status;
}

QStringList captionsOfImages(const QString&)
{
    Fetching f;
    QStringList seen;
    f.get(pictureAnswer(tenKilobytes(Qt::red)));
    seen << f.caption();
    f.get(pictureAnswer(tenKilobytes(Qt::blue)));
    seen << f.caption();
    f.press(ToolBar::Back);
    seen << f.caption();
    f.chooseFromMenu(ToolBar::Delete, 2);
    return seen << f.caption();
}

QStringList tipsOfTimer(const QString&)
{
    ShownCamera c;
    const auto* button = c.part<ToolBar>("tbMain").button(ToolBar::Timer);
    QStringList seen;
    c.press(ToolBar::Timer);
    seen << button->toolTip();
    c.timer("tmrRe").elapse();
    seen << button->toolTip();
    c.press(ToolBar::Timer);
    return seen << button->toolTip();
}

QStringList captionsOfCustomRate(const QString&)
{
    ShownMain m;
    m.shown();
    enterRate(m, "90");
    const QString custom = m.entry("mnuTmrSel(99)").text();
    m.entry("mnuTmrSel(5)").trigger();
    return {custom, m.entry("mnuTmrSel(99)").text()};
}

/// Notes each caption of the progress window, as long as it lives.
class ProgressCaptions : public QObject
{
public:
    ProgressCaptions() { qApp->installEventFilter(this); }
    QStringList seen;

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::WindowTitleChange && watched->objectName() == "frmMovie")
            seen << static_cast<QWidget*>(watched)->windowTitle();
        return false;
    }
};

QStringList captionsOfProgress(const QString& occasion)
{
    Files f;
    ProgressCaptions captions;
    f.loadMovie(2);
    if (occasion == "movie of two images is saved") {
        captions.seen.clear();
        f.saveMovie("saved");
        QTest::qVerify(waitFor([&] { return !f.isWorking(); }), "saved", "", __FILE__, __LINE__);
    }
    return captions.seen;
}

QStringList captionsOfInternetList(const QString& occasion)
{
    ShownDirectory d(occasion == "directory that is not there" ? portOfNobody() : quint16(0));
    QStringList seen;
    QObject::connect(d.window, &QWidget::windowTitleChanged, d.window,
                     [&seen](const QString& title) { seen << title; });
    if (occasion == "directory that is not there")
        d.query("mnuOptNew");
    else
        d.find(occasion == "directory with one camera" ? directoryBody({"Sights|Tower|tower"})
                                                       : QByteArray("No Luck090877"));
    return seen;
}

QStringList tipOfTray(const QString&)
{
    const DesktopTray tray;
    ShownMain m;
    m.shown();
    if (DesktopTray::icon().isEmpty())
        return {"no icon"};
    for (const QWidget* window : QApplication::topLevelWidgets()) {
        if (window->inherits("QSystemTrayIconSys"))
            return {window->toolTip()};
    }
    return {"no icon's window"};
}

QStringList told(const QString& occasion)
{
    static const QHash<QString, QStringList (*)(const QString&)> others = {
        {"images come and go", captionsOfImages},
        {"timer is pressed, ticks, and is pressed", tipsOfTimer},
        {"custom rate, and one of the others", captionsOfCustomRate},
        {"movie of two images is loaded", captionsOfProgress},
        {"movie of two images is saved", captionsOfProgress},
        {"directory with one camera", captionsOfInternetList},
        {"directory without such cameras", captionsOfInternetList},
        {"directory that is not there", captionsOfInternetList},
        {"icon in the tray", tipOfTray},
    };
    return others.value(occasion, statusOf)(occasion);
}

} // namespace

class TextsToldTest : public QObject
{
    Q_OBJECT
private slots:
    /// Qt keeps the look of its file dialog there.
    void initTestCase()
    {
        QVERIFY(m_settings.isValid());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_settings.path());
    }

    void theMessageIsTold_data()
    {
        const Rows<int> row("row");
        for (int i = 0; i < toldMessages().size(); ++i)
            row(toldMessages()[i].occasion, i);
    }

    void theMessageIsTold()
    {
        QFETCH(int, row);
        const auto& [occasion, icon, title, text, buttons] = toldMessages()[row];
        QVERIFY(occasions().contains(occasion));
        ShownMain m;
        m.write("list.dat", OneCamera);
        m.shown();
        occasions()[occasion](m);
        const auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->icon(), icon);
        QCOMPARE(box->windowTitle(), QString(title));
        QCOMPARE(box->text(), QString(text));
        QCOMPARE(box->standardButtons(), buttons);
    }

    void theTextsFollowEachOther_data()
    {
        const Rows<QString, QStringList> row("occasion", "texts");
        for (const auto& [occasion, texts] : toldTexts())
            row(occasion, occasion, texts);
    }

    void theTextsFollowEachOther()
    {
        QFETCH(QString, occasion);
        QFETCH(QStringList, texts);
        QCOMPARE(told(occasion), texts);
    }

private:
    QTemporaryDir m_settings;
};

QTEST_MAIN(TextsToldTest)
#include "tst_TextsTold.moc"
