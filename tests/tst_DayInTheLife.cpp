// A day in the life of the program, from an empty folder to the next morning: what a person does
// with it in one go, and that all of it is there afterwards. The morning and the night are the
// whole program as a process of its own; the hours between them, where a person has to be watched
// closely, are its main window here, in the files that the morning left.

#include "camlist/frmEdit.h"
#include "directory/frmInt.h"
#include "instance/FileInbox.h"
#include "network/TcpClient.h"
#include "support/FileScene.h"
#include "support/MainInUse.h"
#include "support/RunningProgram.h"
#include "support/ScratchFile.h"
#include "support/ScriptedServer.h"
#include "support/ShownManager.h"
#include "support/TimeSeam.h"
#include "viewer/surface/ToolBar.h"

#include <QAbstractButton>
#include <QImageReader>
#include <QRadioButton>

namespace {

constexpr int FullHistory = 45;
constexpr QRect MorningPlace(130, 90, 777, 444);
constexpr QRect EveningPlace(210, 140, 840, 520);

QByteArray lineOf(const QList<CameraRecord>& cameras)
{
    QStringList fields;
    for (const CameraRecord& one : cameras)
        fields << one.category << one.name << one.key;
    return fields.join(QChar(0xFF)).toLatin1();
}

/// Which of the numbered() pictures is so wide.
int numberOf(int width)
{
    return width - 8;
}

QList<int> numbers(int first, int last)
{
    QList<int> all;
    for (int n = first; n <= last; ++n)
        all << n;
    return all;
}

} // namespace

class DayInTheLifeTest : public QObject
{
    Q_OBJECT
private:
    const CameraRecord zebra() const { return {"Day", "Zebra", server.url("/z.jpg")}; }
    const CameraRecord tower() const { return {"Sights", "Tower", server.url("/t.jpg")}; }
    const CameraRecord yak{"Day", "Yak", "yak.example/y.jpg"};
    const CameraRecord wildYak{"Day", "Wild Yak", "yak.example/y.jpg"};
    const CameraRecord xerus{"Day", "Xerus", "xerus.example/x.jpg\1Cookie: a=b"};
    const CameraRecord owl{"Night", "Owl", "http://owl.example/o.jpg"};

    int shownNumber() { return numberOf(m.shownWidth()); }
    QString file(const QString& name) { return keptFiles.filePath(name); }

    // The hours of the day.

    /// From nothing, with a list on the command line: another one is handed over, a camera is
    /// looked at, the window moved, every view option switched.
    void morning()
    {
        p.write("cameras.zip", "CAMZ" + lineOf({zebra(), yak}) + "\r\n");
        p.write("more.zip", "CAMZ" + lineOf({xerus}) + "\r\n");
        QCOMPARE(namesIn(p.program()), (QStringList{"cameras.zip", "more.zip", "pevora"}));
        QVERIFY(p.start({p.program("cameras.zip")}));
        QTRY_VERIFY(p.property("WM_STATE").contains("Normal"));
        QCOMPARE(RunningProgram::ended(p.startAnother({p.program("more.zip")})), "0");

        const auto number = [](int one) { return QString::number(one); };
        p.tell("xdotool", {"windowsize", "--sync", p.window, number(MorningPlace.width()),
                           number(MorningPlace.height())});
        p.tell("xdotool", {"windowmove", "--sync", p.window, number(MorningPlace.x()),
                           number(MorningPlace.y())});
        QTRY_COMPARE(p.place().size(), MorningPlace.size());
        place = p.place();

        server.play(pictureAnswer(numbered(1)));
        QVERIFY(p.press({"ctrl+a"})); // of the goto bar
        p.tell("xdotool", {"type", "zebra"});
        QVERIFY(p.press({"Return"}));
        QTRY_COMPARE(server.requests().size(), 1);
        QVERIFY(server.requests()[0].startsWith("GET /z.jpg HTTP/1."));

        for (const ViewOption& one : ViewOptions)
            QVERIFY(p.press(QString(one.keys).split(' ')));
        QTRY_VERIFY(p.property("_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE"));
        QVERIFY(p.press({"ctrl+q"}));
        QCOMPARE(p.ended(), "0");
        QCOMPARE(p.process.readAllStandardError(), "");

        Preferences expected = allSwitched();
        expected["FAVORITES/COUNT"] = "0";
        expected["WINDOW/PLACE"] = placeText();
        expected["WINDOW/CAMERA"] = zebra().key;
        QCOMPARE(readPreferences(p.preferences()), expected);

        // Below the cameras that every new list has.
        ShownMain fresh;
        fresh.shown().close();
        defaults = contentOf(fresh.path("list.dat")).chopped(2) + '\xFF';
        QVERIFY(defaults.count('\xFF') >= 3);
        QCOMPARE(p.read("list.dat"), defaults + lineOf({zebra(), yak, xerus}) + "\r\n");
    }

    /// In the morning's files; a person has named a directory there. What was left is there, and
    /// the options are switched back to work with them.
    void comesBack()
    {
        m.write("list.dat", p.read("list.dat"));
        m.write("pref.ini", p.preferences() + "[DIRECTORY]\r\nHOST=127.0.0.1\r\n");
        m.shown();
        // That none of them is missing in the table.
        qsizetype checks = 0;
        for (const char* menu : {"mnuView", "mnuOpt"}) {
            for (const auto* one : m.part<QMenu>(menu).actions())
                checks += one->isCheckable() ? 1 : 0;
        }
        QCOMPARE(checks, qsizetype(ViewOptions.size()));
        QCOMPARE(m.options(), allSwitched());
        QTRY_COMPARE(m.made().geometry(), place);
        QCOMPARE(lineOf(m.cameras()), defaults + lineOf({zebra(), yak, xerus}));
        QCOMPARE(m.tree().selected().data().toString(), "Zebra");
        QCOMPARE(m.favouritesMenu(), QStringList());

        m.switchAllOptions();
        Preferences atFirst;
        for (const ViewOption& one : ViewOptions)
            atFirst[one.iniKey] = one.atFirst ? "True" : "False";
        QCOMPARE(m.options(), atFirst);
        m.entry("mnuTmrSel(60)").trigger();
        m.entry("mnuTmrKeep").trigger();
        m.press(ToolBar::Timer); // From here on nothing is fetched but by hand.
    }

    /// The camera of the list is watched until the oldest of its images goes.
    void watches()
    {
        m.cam().setClock([this] { return now; });
        QVERIFY(
            m.fetches(server, numbered(1), [&] { QTest::keyClick(&m.tree(), Qt::Key_Return); }));
        QCOMPARE(m.part<QComboBox>("cmbUrl").currentText(), "http://" + zebra().key);
        const auto refresh = [&] { m.press(ToolBar::Refresh); };
        for (int n = 2; n <= FullHistory; ++n) {
            QVERIFY(m.fetches(server, numbered(n), refresh));
            QCOMPARE(m.caption(), QString("Image %1").arg(n));
        }
        QVERIFY(!m.fetches(server, numbered(FullHistory), refresh)); // not a new one
        QCOMPARE(m.caption(), "Image 45");
        QVERIFY(m.fetches(server, numbered(FullHistory + 1), refresh));
        QCOMPARE(m.caption(), "Image 45");
        QCOMPARE(shownNumber(), FullHistory + 1);
    }

    void plays()
    {
        m.press(ToolBar::PlayMovie);
        QList<int> seen;
        for (int i = 0; i < FullHistory; ++i) {
            seen << shownNumber();
            now = now.addSecs(1);
            timerOf(m.cam(), "tmrPlay").elapse();
        }
        QCOMPARE(seen, numbers(2, FullHistory + 1));
        QCOMPARE(shownNumber(), 2); // over and over
        m.press(ToolBar::StopMovie);
        QTRY_VERIFY(!m.cam().isBusy());
        m.press(ToolBar::Back);
        QCOMPARE(shownNumber(), FullHistory + 1);
    }

    void saves()
    {
        m.save(2, file("day.pvm"));
        QList<int> frames;
        const QString movie = QString::fromLatin1(contentOf(file("day.pvm")));
        for (const QString& frame : movie.split("&IMAGE&"))
            frames << numberOf(QImage::fromData(frame.toLatin1(), "jpg").width());
        QCOMPARE(frames, numbers(2, FullHistory + 1));

        const QImage onShow = QImage::fromData(numbered(FullHistory + 1));
        for (const QByteArray format : {"bmp", "gif", "jpg"}) {
            const QString path = file("picture." + format);
            m.save(1, path);
            QCOMPARE(QImageReader::imageFormat(path),
                     format == "jpg" ? QByteArray("jpeg") : format);
            const QImage read(path);
            QCOMPARE(read.size(), onShow.size());
            // The GIF's palette has six steps of each colour.
            const QColor is = read.pixelColor(4, 4);
            const QColor was = onShow.pixelColor(4, 4);
            const int most = format == "gif" ? 26 : format == "jpg" ? 8 : 0;
            QVERIFY2(std::abs(is.red() - was.red()) <= most &&
                         std::abs(is.green() - was.green()) <= most &&
                         std::abs(is.blue() - was.blue()) <= most,
                     qPrintable(is.name() + " was " + was.name()));
        }
    }

    void tends()
    {
        // A camera gets another name,
        m.list().select(yak.key);
        m.list().findChild<QAction*>("mnuEdit")->trigger();
        auto* editor = m.made().findChild<frmEdit*>();
        QVERIFY(editor && waitForActive(editor));
        auto* name = editor->findChild<QLineEdit*>("txtName");
        name->selectAll();
        QTest::keyClicks(name, wildYak.name);
        QTest::mouseClick(editor->findChild<QPushButton*>("cmdGo"), Qt::LeftButton);
        QTRY_VERIFY(!m.made().findChild<frmEdit*>());
        QCOMPARE(lineOf(m.cameras()), defaults + lineOf({zebra(), xerus, wildYak}));
        // and another one is added.
        m.part<QRadioButton>("opt(0)").click();
        m.part<QComboBox>("cmbCat").setEditText(owl.category);
        m.part<QLineEdit>("txtName").setText(owl.name);
        m.part<QLineEdit>("txtUrl").setText(owl.key);
        m.part<QPushButton>("cmdAdd").click();
        QCOMPARE(m.cameras().last(), owl);
        m.part<QRadioButton>("opt(1)").click();
    }

    /// The directory is asked, and one of the two that it has is taken.
    void asksTheDirectory()
    {
        ScriptedServer directory;
        directory.listen();
        directory.play(httpAnswer(lineOf({{"Sights", "Bridge", "bridge.example/b.jpg"}, tower()})));
        m.choose("mnuOpt", "mnuOptInt");
        QPointer<frmInt> window;
        QTRY_VERIFY([&] {
            for (QWidget* one : QApplication::topLevelWidgets()) {
                if (auto* found = qobject_cast<frmInt*>(one))
                    window = found;
            }
            return !window.isNull();
        }());
        // A directory is on port 80, which nobody but root can give.
        window->findChild<TcpClient*>("sckMain")->setRemotePort(directory.port());
        window->findChild<QAction*>("mnuOptNew")->trigger();
        QTRY_COMPARE(window->windowTitle(), "Finished [Found 2 Cams]");
        QCOMPARE(directory.requests().size(), 1);
        QVERIFY(directory.requests()[0].startsWith("GET /pevora/index.cgi?new=1 HTTP/1."));
        QVERIFY(directory.requests()[0].contains("\r\nHost: 127.0.0.1\r\n"));
        auto& found = *window->findChild<QTreeView*>("lvwList")->model();
        QVERIFY(found.setData(found.index(1, 0), Qt::Checked, Qt::CheckStateRole));
        window->findChild<QPushButton*>("cmdAdd")->click();
        QTRY_VERIFY(!window);
        QCOMPARE(lineOf(m.cameras()), defaults + lineOf({zebra(), xerus, wildYak, owl, tower()}));
    }

    void sortsFavourites()
    {
        for (const CameraRecord& one : {zebra(), owl, tower()}) {
            m.list().select(one.key);
            m.list().findChild<QAction*>("mnuFav")->trigger();
        }
        QCOMPARE(m.favouritesMenu(), (QStringList{"Zebra", "Owl", "Tower"}));
        // On the disk soon, not only in the end.
        timerOf(m.made(), "tmrSaveFavourites").elapse();
        QCOMPARE(readPreferences(m.preferences())["FAVORITES/COUNT"], "3");
        QVERIFY(waitForActive(&m.made()));
        m.choose("mnuFav", "mnuFavMan");
        const ShownManager manager(m.part<frmMan>("frmMan"));
        manager.press("cmdSort");
        QCOMPARE(manager.items(), (QStringList{"Owl", "Tower", "Zebra"}));
        manager.tick(0);
        manager.press("cmdRem");
        manager.press("cmdOk");
        QTRY_VERIFY(!manager.window());
        QCOMPARE(m.favouritesMenu(), (QStringList{"Tower", "Zebra"}));
    }

    /// Another camera is watched last, every option switched, the window moved and closed.
    void evening()
    {
        QVERIFY(waitForActive(&m.made()));
        QVERIFY(m.fetches(server, numbered(1), [&] { m.choose("mnuFav", "mnuFavGo(0)"); }));
        QVERIFY(server.requests().last().startsWith("GET /t.jpg HTTP/1."));
        m.switchAllOptions();
        m.made().setGeometry(EveningPlace);
        QTRY_COMPARE(m.made().geometry(), EveningPlace);
        place = EveningPlace;
        m.made().close();
        QVERIFY(!m.made().isVisible());
        QCOMPARE(readPreferences(m.preferences()), eveningPreferences());
        QCOMPARE(contentOf(m.path("list.dat")), eveningList());
        QCOMPARE(namesIn(m.path(".")), (QStringList{"list.dat", "pref.ini", "pvm.jpg"}));
    }

    /// All is as it was left; and the movie is handed over, the way a second start does it.
    void startsAgain()
    {
        m.madeAgain();
        m.shown();
        QCOMPARE(m.options(), allSwitched());
        QTRY_COMPARE(m.made().geometry(), EveningPlace);
        QCOMPARE(lineOf(m.cameras()) + "\r\n", eveningList());
        QCOMPARE(m.tree().selected().data().toString(), "Tower");
        QCOMPARE(m.favouritesMenu(), (QStringList{"Tower", "Zebra"}));
        QCOMPARE(m.cam().Interval(), 60);
        QVERIFY(m.cam().KeepRefreshing());
        QCOMPARE(m.cam().LastFolder(), keptFiles.path());

        QCOMPARE(m.caption(), "Image N/A");
        QVERIFY(m.made().inbox().receive(file("day.pvm")));
        QTRY_COMPARE(m.caption(), "Image 1");
        QTRY_VERIFY(!m.cam().isBusy());
        // By a call: the toolbar is hidden, and the keyboard comes back from the progress window
        // when the window manager is ready.
        auto* forward = m.part<ToolBar>("tbMain").findChild<QAbstractButton*>(
            QString("button(%1)").arg(int(ToolBar::Forward)));
        QList<int> seen;
        for (int i = 0; i < FullHistory; ++i) {
            seen << shownNumber();
            forward->click();
        }
        QCOMPARE(seen, numbers(2, FullHistory + 1));
        QCOMPARE(shownNumber(), 2); // 45 steps are once around
        m.made().close();
        QCOMPARE(readPreferences(m.preferences()), eveningPreferences());
    }

    /// The whole program in the evening's files: one favourite is looked at, and nothing else
    /// changes.
    void night()
    {
        p.write("list.dat", contentOf(m.path("list.dat")));
        p.write("pref.ini", m.preferences());
        QVERIFY(p.start());
        QTRY_COMPARE(p.place(), EveningPlace);
        QTRY_VERIFY(p.property("_NET_WM_STATE").contains("_NET_WM_STATE_ABOVE"));
        const auto before = server.requests().size();
        QVERIFY(p.press({"alt+f", "Up", "Return"})); // the last of them
        QTRY_COMPARE(server.requests().size(), before + 1);
        QVERIFY(server.requests().last().startsWith("GET /z.jpg HTTP/1."));
        QVERIFY(p.press({"ctrl+q"}));
        QCOMPARE(p.ended(), "0");
        QCOMPARE(p.process.readAllStandardError(), "");
        Preferences expected = eveningPreferences();
        expected["WINDOW/CAMERA"] = zebra().key;
        QCOMPARE(readPreferences(p.preferences()), expected);
        QCOMPARE(p.read("list.dat"), eveningList());
    }

    QString placeText() const
    {
        return QString("%1 %2 %3 %4")
            .arg(place.x())
            .arg(place.y())
            .arg(place.width())
            .arg(place.height());
    }
    QByteArray eveningList() const
    {
        return defaults + lineOf({zebra(), xerus, wildYak, owl, tower()}) + "\r\n";
    }
    Preferences eveningPreferences() const
    {
        Preferences all = allSwitched();
        all.insert({{"VIEW/KEEP", "True"},
                    {"WINDOW/PLACE", placeText()},
                    {"WINDOW/INTERVAL", "60"},
                    {"WINDOW/FOLDER", keptFiles.path()},
                    {"WINDOW/CAMERA", tower().key},
                    {"DIRECTORY/HOST", "127.0.0.1"},
                    {"FAVORITES/NAME[0]", "Tower"},
                    {"FAVORITES/URL[0]", tower().key},
                    {"FAVORITES/NAME[1]", "Zebra"},
                    {"FAVORITES/URL[1]", zebra().key},
                    // Of the longer list before; COUNT bounds what is read.
                    {"FAVORITES/NAME[2]", "Tower"},
                    {"FAVORITES/URL[2]", tower().key},
                    {"FAVORITES/COUNT", "2"}});
        return all;
    }

    /// One camera server for the whole day, whose port is in the list.
    ScriptedServer server;
    RunningProgram p;
    MainInUse m;
    QTemporaryDir keptFiles;
    QDateTime now{QDate(2001, 2, 3), QTime(12, 0)};
    QByteArray defaults;
    QRect place;

private slots:
    void aDay()
    {
        server.listen();
        using Hour = void (DayInTheLifeTest::*)();
        constexpr Hour day[] = {
            &DayInTheLifeTest::morning,
            &DayInTheLifeTest::comesBack,
            &DayInTheLifeTest::watches,
            &DayInTheLifeTest::plays,
            &DayInTheLifeTest::saves,
            &DayInTheLifeTest::tends,
            &DayInTheLifeTest::asksTheDirectory,
            &DayInTheLifeTest::sortsFavourites,
            &DayInTheLifeTest::evening,
            &DayInTheLifeTest::startsAgain,
            &DayInTheLifeTest::night,
        };
        for (const Hour hour : day) {
            (this->*hour)();
            // What comes later builds on it.
            if (QTest::currentTestFailed())
                return;
        }
    }
};

QTEST_MAIN(DayInTheLifeTest)
#include "tst_DayInTheLife.moc"
