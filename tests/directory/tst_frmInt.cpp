// The window "Internet List": its parts, its queries and what it does with the answers.

#include "camlist/CamList.h"
#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ShownDirectory.h"
#include "support/TimeSeam.h"
#include "widgets/Twips.h"

#include <QHeaderView>
#include <QInputDialog>
#include <QMenuBar>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList Categories = {"Animals", "Buildings", "Cities", "General", "Interest",
                                "People",  "Science",   "Sights", "Traffic"};

const QByteArray Three = directoryBody(
    {"Sights|Tower|tower.example/a.jpg", "animals|Zoo|zoo.example", "Cities|Rome|rome.example/r"});

QByteArray requestLine(const ShownDirectory& d, qsizetype n = -1)
{
    const auto& requests = d.server.requests();
    const QByteArray request = requests.value(n < 0 ? requests.size() - 1 : n);
    return request.left(request.indexOf("\r\n"));
}

/// Types into the prompt for search terms, which is waited for, and ends it.
void answerPrompt(const QString& text, bool ok = true)
{
    auto* prompt = openDialog<QInputDialog>();
    QVERIFY(prompt);
    prompt->setTextValue(text);
    ok ? prompt->accept() : prompt->reject();
}

/// Searches for them, and finds three cameras.
void search(ShownDirectory& d, const QString& terms)
{
    d.server.play(httpAnswer(Three));
    d.entry("mnuOptSearch").trigger();
    answerPrompt(terms);
    QTRY_COMPARE(d.title(), "Finished [Found 3 Cams]");
}

/// A window with a query under way, whose answer does not end by itself.
struct Querying : ShownDirectory
{
    Querying()
    {
        server.play(httpAnswer(Three), Script::End::KeepOpen);
        entry("mnuOptNew").trigger();
        QTRY_COMPARE(title(), "Receiving Data");
    }
};

} // namespace

class frmIntTest : public QObject
{
    Q_OBJECT
private slots:
    void hasItsParts()
    {
        const ShownDirectory d;
        QCOMPARE(d.title(), "Internet List");
        // It blocks no other window.
        QVERIFY(!d.window->isModal());
        QCOMPARE(d.window->windowType(), Qt::Window);
        QVERIFY(!d.window->parentWidget());
        for (const auto& [name, caption] :
             {std::pair{"cmdPre", "Preview"}, std::pair{"cmdAdd", "Add Selected"},
              std::pair{"cmdAll", "Select All"}, std::pair{"cmdNone", "De-Select All"}}) {
            QCOMPARE(d.button(name).text(), caption);
            QVERIFY(d.button(name).isVisible());
            QVERIFY(d.button(name).isEnabled());
        }
        auto* options = d.window->findChild<QMenu*>("mnuOpt");
        QVERIFY(options);
        QCOMPARE(options->title(), "&Options");
        QVERIFY(d.window->findChild<QMenuBar*>()->actions().contains(options->menuAction()));
        const auto shown = [](const QMenu& menu) {
            QStringList entries;
            for (const auto* one : menu.actions())
                entries << (one->isSeparator() ? "-" : one->text());
            return entries;
        };
        QCOMPARE(shown(*options),
                 (QStringList{"Search", "Newest", "-", "Categories", "-", "Close"}));
        auto* categories = d.window->findChild<QMenu*>("mnuOptDown");
        QVERIFY(categories);
        QVERIFY(options->actions().contains(categories->menuAction()));
        QCOMPARE(shown(*categories), Categories);
        for (int i = 0; i < 9; ++i)
            QCOMPARE(d.entry(QString("mnuOptDownIt(%1)").arg(i)).text(), Categories[i]);
        QCOMPARE(d.entry("mnuOptSearch").text(), "Search");
        QCOMPARE(d.entry("mnuOptNew").text(), "Newest");
        QCOMPARE(d.entry("mnuOptClose").text(), "Close");

        const auto& model = *d.list().model();
        QCOMPARE(model.columnCount(), 2);
        QCOMPARE(model.rowCount(), 0);
        QCOMPARE(model.headerData(0, Qt::Horizontal).toString(), "Catagory");
        QCOMPARE(model.headerData(1, Qt::Horizontal).toString(), "Name");
        QVERIFY(d.list().header()->isVisible());
        QVERIFY(d.window->findChild<HTTP*>("HTTP1"));
    }

    void theColumnsHaveTheirWidths()
    {
        ShownDirectory d;
        QCOMPARE(d.list().columnWidth(0), 133); // 2000 twips
        QCOMPARE(d.list().columnWidth(1), d.list().width() - 133 - 33);
        d.find(Three);
        QCOMPARE(d.list().columnWidth(1), d.list().width() - 133 - 33);
        // Later the user has them; but names take part in what the window gains.
        d.list().setColumnWidth(0, 150);
        d.list().setColumnWidth(1, 200);
        d.window->hide();
        d.window->show();
        QCOMPARE(d.list().columnWidth(1), 200);
        const int before = d.list().width();
        d.window->resize(d.window->size() + QSize(200, 100));
        QTRY_VERIFY(d.list().width() == before + 200);
        QCOMPARE(d.list().columnWidth(0), 150);
        QCOMPARE(d.list().columnWidth(1), 400);
    }

    void aCategoryAsksForItsCaption()
    {
        ShownDirectory d;
        for (int i = 0; i < 9; ++i) {
            d.find(Three, QString("mnuOptDownIt(%1)").arg(i));
            QCOMPARE(requestLine(d),
                     "GET /pevora/index.cgi?cat=" + Categories[i].toLatin1() + " HTTP/1.0");
        }
        QCOMPARE(d.server.requests()[2], "GET /pevora/index.cgi?cat=Cities HTTP/1.0\r\n"
                                         "Referer: HTTP ActiveX Control\r\n"
                                         "Connection: Keep-Alive\r\n"
                                         "User-Agent: Default\r\n"
                                         "Host: 127.0.0.1\r\n"
                                         "Accept: */*\r\n"
                                         "Accept-Language: en\r\n"
                                         "\r\n");
    }

    void aSearchSendsItsTermsAsTheyAre_data()
    {
        const Rows<QString, QByteArray> row("terms", "sent");
        row("one word", "zoo", "zoo");
        row("two words", "two words", "two words");
        row("blanks around", "  zoo ", "  zoo ");
        row("blanks alone", " ", " ");
        row("special characters", "a&b=c%20+?#/", "a&b=c%20+?#/");
        row("the code page", u"Zürich"_s, "Z\xFCrich");
        row("other text", u"東京"_s, "\xE6\x9D\xB1\xE4\xBA\xAC");
    }

    void aSearchSendsItsTermsAsTheyAre()
    {
        QFETCH(QString, terms);
        QFETCH(QByteArray, sent);
        ShownDirectory d;
        search(d, terms);
        QCOMPARE(requestLine(d), "GET /pevora/index.cgi?q=" + sent + " HTTP/1.0");
    }

    void thePromptAsksForTerms()
    {
        const ShownDirectory d;
        d.entry("mnuOptSearch").trigger();
        auto* prompt = openDialog<QInputDialog>();
        QVERIFY(prompt);
        QCOMPARE(prompt->windowTitle(), "Search");
        QCOMPARE(prompt->labelText(), "Enter search terms below.");
        QCOMPARE(prompt->textValue(), "");
        QCOMPARE(prompt->parentWidget(), d.window.data());
        QCOMPARE(d.server.connections(), 0);
        prompt->reject();
    }

    void withoutTermsNothingIsSent()
    {
        ShownDirectory d(Three);
        const QStringList before = d.rows();
        for (const auto& [text, ok] :
             {std::pair{"", true}, std::pair{"", false}, std::pair{"zoo", false}}) {
            d.entry("mnuOptSearch").trigger();
            answerPrompt(text, ok);
            QCoreApplication::processEvents();
            QVERIFY(d.entry("mnuOptNew").isEnabled());
        }
        QCOMPARE(d.rows(), before);
        QCOMPARE(d.title(), "Finished [Found 3 Cams]");
        QCOMPARE(d.server.connections(), 1);
    }

    void termsHoldNoLineBreak()
    {
        ShownDirectory d;
        search(d, u"a\r\nCookie: bÿ\tc"_s);
        QCOMPARE(requestLine(d), u"GET /pevora/index.cgi?q=aCookie: by\u0308c HTTP/1.0"_s.toUtf8());
        // Nothing is left of this one.
        d.entry("mnuOptSearch").trigger();
        answerPrompt("\r\n");
        QCoreApplication::processEvents();
        QCOMPARE(d.server.connections(), 1);
    }

    void anAnswerOfOneCameraIsOneCams()
    {
        ShownDirectory d(directoryBody({"Cities|Rome|rome.example/r.jpg\1Cookie: a"}) + "\r\n");
        QCOMPARE(d.title(), "Finished [Found 1 Cams]");
        QCOMPARE(d.rows(), QStringList{"Cities|Rome"});
        QCOMPARE(d.key(0), "rome.example/r.jpg\1Cookie: a");
    }

    void anAnswerReplacesTheRows()
    {
        ShownDirectory d(Three);
        d.check(0);
        QCOMPARE(d.rows(), (QStringList{"[x] Sights|Tower", "animals|Zoo", "Cities|Rome"}));
        d.find(directoryBody({"A|B|c", "Sights|Tower|tower.example/a.jpg"}));
        QCOMPARE(d.rows(), (QStringList{"A|B", "Sights|Tower"}));
        QCOMPARE(d.title(), "Finished [Found 2 Cams]");
        // The first row is at hand.
        QCOMPARE(d.list().currentIndex().row(), 0);
        QVERIFY(d.list().selectionModel()->isRowSelected(0));
    }

    void noLuckEmptiesTheList()
    {
        ShownDirectory d(Three);
        d.find("No Luck090877");
        QCOMPARE(d.title(), "Finished [No Cams Found]");
        QCOMPARE(d.rows(), QStringList());
        QVERIFY(d.button("cmdAdd").isEnabled());
    }

    void aKeyThatIsThereIsSkipped()
    {
        ShownDirectory d(
            directoryBody({"A|first|k", "B|second|k", "C|other|K", "D|empty|", "E|empty too|"}));
        QCOMPARE(d.rows(), (QStringList{"A|first", "C|other", "D|empty"}));
        QCOMPARE(d.title(), "Finished [Found 3 Cams]");
    }

    void categoriesAndSearchesAreSorted()
    {
        ShownDirectory d;
        const QStringList sorted{"animals|Zoo", "Cities|Rome", "Sights|Tower"};
        d.find(Three, "mnuOptDownIt(4)");
        QCOMPARE(d.rows(), sorted);
        QCOMPARE(d.key(0), "zoo.example");
        d.find(Three, "mnuOptNew");
        QVERIFY(d.rows() != sorted);
        search(d, "x");
        QCOMPARE(d.rows(), sorted);
    }

    void newestAsksForNewAndKeepsTheServersOrder()
    {
        ShownDirectory d;
        d.find(Three, "mnuOptDownIt(0)");
        d.find(Three, "mnuOptNew");
        QCOMPARE(requestLine(d), "GET /pevora/index.cgi?new=1 HTTP/1.0");
        QCOMPARE(d.rows(), (QStringList{"Sights|Tower", "animals|Zoo", "Cities|Rome"}));
    }

    void rowsOfACategoryKeepTheirOrder()
    {
        ShownDirectory d;
        QStringList cameras;
        QStringList rows;
        for (int i = 0; i < 50; ++i) {
            cameras << QString("%1|%2|key %2").arg(i % 2 ? "cities" : "CITIES").arg(i);
            rows << cameras.last().section('|', 0, 1);
        }
        cameras << "Animals|z|z";
        d.find(directoryBody(cameras), "mnuOptDownIt(2)");
        QCOMPARE(d.rows(), QStringList{"Animals|z"} + rows);
    }

    void theRowsThereAreSortedWhenTheQueryIsSent()
    {
        ShownDirectory d(Three);
        d.check(0);
        d.list().setCurrentIndex(d.list().model()->index(1, 1));
        d.server.play(httpAnswer({}), Script::End::KeepOpen);
        d.entry("mnuOptDownIt(2)").trigger();
        QCOMPARE(d.rows(), (QStringList{"animals|Zoo", "Cities|Rome", "[x] Sights|Tower"}));
        QCOMPARE(d.list().currentIndex(), d.list().model()->index(0, 1));
    }

    void theHeaderDoesNotSort()
    {
        ShownDirectory d(Three);
        const QStringList before = d.rows();
        QHeaderView& header = *d.list().header();
        for (int x : {50, 50, 200}) {
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {}, QPoint(x, 5));
            QCOMPARE(d.rows(), before);
        }
        QVERIFY(!header.isSortIndicatorShown());
    }

    void theTitleTellsTheStatus()
    {
        ShownDirectory d;
        QStringList titles;
        QObject::connect(d.window, &QWidget::windowTitleChanged, d.window,
                         [&](const QString& title) { titles << title; });
        d.find(Three);
        QCOMPARE(titles, (QStringList{"Connecting", "Connected", "Receiving Data",
                                      "Finished [Found 3 Cams]"}));
    }

    void anErrorKeepsTheRows()
    {
        ShownDirectory d(Three);
        const QStringList before = d.rows();
        emit d.window->findChild<TcpClient*>("sckMain")->Error(1, "Host not found");
        QCOMPARE(d.title(), "Error: Host not found");
        QCOMPARE(d.rows(), before);
    }

    void whileAQueryRunsNoOtherBegins()
    {
        ShownDirectory d(Three);
        d.button("cmdAll").setFocus();
        d.server.play(Script{{}, Script::End::KeepOpen});
        d.entry("mnuOptNew").trigger();
        const auto others = [&] {
            QList<bool> enabled;
            for (const char* name :
                 {"mnuOptSearch", "mnuOptNew", "mnuOptDownIt(0)", "mnuOptDownIt(8)"})
                enabled << d.entry(name).isEnabled();
            for (const char* name : {"cmdAll", "cmdNone", "cmdAdd"})
                enabled << d.button(name).isEnabled();
            enabled << d.window->findChild<QMenu*>("mnuOptDown")->menuAction()->isEnabled();
            return enabled;
        };
        const auto looking = [&] {
            return d.list().isEnabled() && d.button("cmdPre").isEnabled() &&
                   d.entry("mnuOptClose").isEnabled();
        };
        QCOMPARE(others(), QList<bool>(8, false));
        QVERIFY(looking());
        QVERIFY(d.list().hasFocus());
        d.press("cmdPre");
        QCOMPARE(d.previews, QStringList{"tower.example/a.jpg"});
        QTRY_COMPARE(d.server.requests().size(), 2);
        d.server.sendMore(httpAnswer(Three));
        QTRY_COMPARE(d.title(), "Receiving Data");
        QCOMPARE(others(), QList<bool>(8, false));
        QVERIFY(looking());
        d.server.closeNewest();
        QTRY_COMPARE(others(), QList<bool>(8, true));
        QVERIFY(looking());
    }

    void anErrorEnablesTheControls()
    {
        const ShownDirectory d(portOfNobody());
        d.query("mnuOptDownIt(2)");
        QCOMPARE(d.title(), "Error: Connection refused");
        for (const char* name : {"mnuOptSearch", "mnuOptNew", "mnuOptDownIt(0)"})
            QVERIFY2(d.entry(name).isEnabled(), name);
        for (const char* name : {"cmdAll", "cmdNone", "cmdAdd", "cmdPre"})
            QVERIFY2(d.button(name).isEnabled(), name);
        QVERIFY(d.window->findChild<QMenu*>("mnuOptDown")->isEnabled());
    }

    void theTimerEnablesTheControls()
    {
        Querying d;
        timerOf(*d.window, "Timer1").elapse();
        QCOMPARE(d.title(), "Finished [Found 3 Cams]");
        QVERIFY(d.entry("mnuOptNew").isEnabled());
    }

    void theWindowClosesAmidAQuery()
    {
        Querying d;
        d.entry("mnuOptClose").trigger();
        QTRY_VERIFY(!d.window);
        QTRY_COMPARE(d.server.openConnections(), 0);
        // The next one starts afresh.
        const ShownDirectory next;
        QVERIFY(next.entry("mnuOptNew").isEnabled());
        QVERIFY(next.button("cmdAdd").isEnabled());
    }

    void previewAsksForTheCamera()
    {
        ShownDirectory d(directoryBody({"a|b|one.example", "c|d|two.example/x\1Cookie: y"}));
        d.press("cmdPre");
        QCOMPARE(d.previews, QStringList{"one.example"});
        d.list().setCurrentIndex(d.list().model()->index(1, 1));
        d.press("cmdPre");
        QCOMPARE(d.previews.last(), "two.example/x\1Cookie: y");
        QVERIFY(d.window->isVisible());
        QCOMPARE(d.title(), "Finished [Found 2 Cams]");
    }

    void withoutRowsThereIsNoPreview()
    {
        ShownDirectory d;
        d.press("cmdPre");
        d.find(Three);
        d.find("No Luck090877");
        d.press("cmdPre");
        QCOMPARE(d.previews, QStringList());
    }

    void selectAllAndDeSelectAll()
    {
        ShownDirectory d;
        d.press("cmdAll");
        d.find(Three);
        QCOMPARE(d.rows(), (QStringList{"Sights|Tower", "animals|Zoo", "Cities|Rome"}));
        d.check(1);
        d.press("cmdAll");
        QCOMPARE(d.rows(), (QStringList{"[x] Sights|Tower", "[x] animals|Zoo", "[x] Cities|Rome"}));
        d.press("cmdNone");
        QCOMPARE(d.rows(), (QStringList{"Sights|Tower", "animals|Zoo", "Cities|Rome"}));
    }

    void addSelectedHandsOverAFile()
    {
        ShownDirectory d(directoryBody({"a|b|c", "d|e|f\x01X: y", "g|h|i"}));
        d.check(0);
        d.check(1);
        d.press("cmdAdd");
        QCOMPARE(d.imports, QList<QByteArray>{"CAMZa\377b\377c\377d\377e\377f\x01X: y\r\n"});
        QVERIFY(!QFile::exists(d.path()));
        QCOMPARE(QDir(d.folder.path()).entryList(QDir::Files | QDir::Hidden), QStringList());
        QTRY_VERIFY(!d.window);
    }

    void addSelectedWritesTheRowsAsTheyAre_data()
    {
        const Rows<QByteArray, QString, QByteArray> row("body", "entry", "file");
        row("in their order", Three, "mnuOptDownIt(0)",
            "animals\377Zoo\377zoo.example\377Cities\377Rome\377rome.example/r\377"
            "Sights\377Tower\377tower.example/a.jpg");
        const QByteArray text = "Z\xFCrich\377\xE6\x9D\xB1\xE4\xBA\xAC\377a b/\xE9?<b>&amp;";
        row("text as it was", text, "mnuOptNew", text);
    }

    void addSelectedWritesTheRowsAsTheyAre()
    {
        QFETCH(QByteArray, body);
        QFETCH(QString, entry);
        QFETCH(QByteArray, file);
        ShownDirectory d;
        d.find(body, entry);
        d.press("cmdAll");
        d.press("cmdAdd");
        QCOMPARE(d.imports, QList<QByteArray>{"CAMZ" + file + "\r\n"});
    }

    void anEarlierFileIsReplaced()
    {
        ShownDirectory d;
        const QByteArray earlier = "CAMZold\xFFold\xFFold\r\n";
        writeFile(d.path(), earlier.repeated(50));
        d.find(directoryBody({"a|b|c"}));
        d.check(0);
        d.press("cmdAdd");
        QCOMPARE(d.imports, QList<QByteArray>{"CAMZa\377b\377c\r\n"});
        QVERIFY(!QFile::exists(d.path()));
    }

    void nothingCheckedIsSaid()
    {
        ShownDirectory d(Three);
        for (int i = 0; i < 2; ++i) {
            d.press("cmdAdd");
            auto* box = openDialog<QMessageBox>();
            QVERIFY(box);
            QCOMPARE(box->text(), "No Cams Selected.");
            QCOMPARE(box->icon(), QMessageBox::Information);
            box->accept();
            QTRY_VERIFY(!d.window->findChild<QMessageBox*>());
        }
        QVERIFY(d.window->isVisible());
        QCOMPARE(d.imports.size(), 0);
        QVERIFY(!QFile::exists(d.path()));
        QCOMPARE(d.rows().size(), 3);
    }

    void aFileThatCannotBeWrittenIsSaid()
    {
        ShownDirectory d;
        QVERIFY(QDir(d.folder.path()).mkdir("icl.zip"));
        d.find(Three);
        d.check(1);
        d.press("cmdAdd");
        QCOMPARE(d.title(), "Error: Not saved.");
        QCOMPARE(d.imports.size(), 0);
        QVERIFY(d.window->isVisible());
        QCOMPARE(d.rows()[1], "[x] animals|Zoo");
        QVERIFY(QFileInfo(d.path()).isDir());
    }

    void theListAddsWhatItLacks()
    {
        ShownDirectory d;
        QWidget owner;
        owner.show();
        CamList cameras(d.folder.path(), &owner);
        cameras.AddCam("Mine", "rome.example/r", "Cities");
        QObject::connect(d.window, &frmInt::Import, &cameras, &CamList::LoadFile);
        d.find(Three);
        d.press("cmdAll");
        d.press("cmdAdd");
        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->text(), "Cam is already in your list.");
        box->accept();
        QCOMPARE(cameras.ReturnUrlViaName("Mine"), "rome.example/r");
        QCOMPARE(cameras.ReturnUrlViaName("Rome"), "");
        QCOMPARE(cameras.ReturnUrlViaName("Zoo"), "zoo.example");
        QCOMPARE(cameras.ReturnUrlViaName("Tower"), "tower.example/a.jpg");
        QTRY_VERIFY(!d.window);
    }

    void itMayEndWhileItsFileIsImported()
    {
        ShownDirectory d(Three);
        d.check(0);
        QObject::connect(d.window, &frmInt::Import, this, [&] { delete d.window; });
        d.button("cmdAdd").click();
        QVERIFY(!d.window);
        QVERIFY(!QFile::exists(d.path()));
    }
};

QTEST_MAIN(frmIntTest)
#include "tst_frmInt.moc"
