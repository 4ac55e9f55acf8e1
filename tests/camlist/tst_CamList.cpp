// The camera list and its files: what is loaded, imported, refused and saved.

#include "camlist/DefaultCameras.h"
#include "support/Dialogs.h"
#include "support/Rows.h"
#include "support/ScratchFile.h"
#include "support/ShownList.h"

#include <QCheckBox>
#include <QComboBox>
#include <QMessageBox>

#include <algorithm>

namespace {

const QByteArray Example = "Cities\xFFHarbour\xFFURL1\xFFSights\xFFTower\xFFURL2\1Cookie: a=1";
const QStringList ExampleNodes = {"Cities", "Cities/Harbour", "Sights", "Sights/Tower"};

/// How many messages of that text come one after the other, each answered with OK; -1 where one
/// of another text comes.
int messages(const QString& text)
{
    const auto open = []() -> QMessageBox* {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(window); box && box->isVisible())
                return box;
        }
        return nullptr;
    };
    constexpr int Many = 100;
    (void)openDialog<QMessageBox>(); // waits for the first
    int count = 0;
    while (QMessageBox* box = open()) {
        if (box->text() != text || count == Many)
            return -1;
        ++count;
        box->button(QMessageBox::Ok)->click();
        QCoreApplication::processEvents();
    }
    return count;
}

} // namespace

class CamListTest : public QObject
{
    Q_OBJECT
private slots:
    void withoutAListTheDefaultsAreThere_data()
    {
        const Rows<QByteArray> row("content");
        row("no file", {});
        row("an empty file", "");
        row("a line end alone", "\r\n");
        row("another system's line end", "\n");
    }

    void withoutAListTheDefaultsAreThere()
    {
        QFETCH(QByteArray, content);
        ShownList shown;
        if (!content.isNull())
            shown.write("list.dat", content);
        shown.list().LoadFile();
        QCOMPARE(shown.tree().model()->rowCount(), 2);
        QCOMPARE(shown.all().size(), 14);
        QCOMPARE(shown.all().value(1), "Cities/NewYork, NY");
        QCOMPARE(shown.all().last(), "Sights/Big Ben");
    }

    void aListIsSavedAsItWasRead_data()
    {
        const Rows<QByteArray, QStringList> row("line", "nodes");
        row("two cameras, one with a header", Example, ExampleNodes);
        row("commas and blanks", "Cities\xFFL.A., CA\xFFh/a.jpg",
            QStringList({"Cities", "Cities/L.A., CA"}));
        row("ampersands and brackets", "A&B\xFF<i>AT&&T</i>\xFFh/a.jpg",
            QStringList({"A&B", "A&B/<i>AT&&T</i>"}));
        row("categories that take turns", "B\3771\377k1\377A\3772\377k2\377B\3773\377k3",
            QStringList({"B", "B/1", "B/3", "A", "A/2"}));
        row("a line break in a name", "C\377a\r\nb\377k", QStringList({"C", "C/a  b"}));
        row("a line break at the end", "C\377a\377k\r\n", QStringList({"C", "C/a"}));
        row("old letters", "C\xFFZ\xFCrich\xFFk",
            QStringList({"C", QStringLiteral("C/Z\u00FCrich")}));
        row("letters of the world",
            QByteArray("C\xFF" + QByteArray("\u6771\u4EAC \u05EA\u05DC") + "\xFFk"),
            QStringList({"C", QStringLiteral("C/\u6771\u4EAC \u05EA\u05DC")}));
        row("10,000 characters", QByteArray("C\xFF" + QByteArray(10'000, 'n') + "\xFFk"),
            QStringList({"C", "C/" + QString(10'000, 'n')}));
    }

    void aListIsSavedAsItWasRead()
    {
        QFETCH(QByteArray, line);
        ShownList shown(line + "\r\n");
        QTEST(shown.all(), "nodes");
        QVERIFY(shown.list().AddCam("One", "URLmore", "More"));
        QVERIFY(shown.list().SaveFile());
        QCOMPARE(contentOf(shown.path()), line + "\xFFMore\xFFOne\xFFURLmore\r\n");
        QVERIFY(!QFile::exists(shown.path("list.dat.bak")));
    }

    void aListThatCannotBeReadIsNotAnEmptyOne()
    {
        ShownList shown;
        QVERIFY(QDir(shown.path("")).mkdir("list.dat"));
        shown.list().LoadFile();
        QCOMPARE(shown.all(), QStringList());
        shown.list().SaveFile();
        QVERIFY(QFileInfo(shown.path()).isDir());

        shown.list().AddCam("Tower", "URL", "Sights");
        shown.list().SaveFile();
        QCOMPARE(contentOf(shown.path()), "Sights\xFFTower\xFFURL\r\n");
        QVERIFY(QFileInfo(shown.path("list.dat.bak")).isDir());
    }

    void aFileWithoutACameraIsNoEmptyList()
    {
        for (const QByteArray& content : {QByteArray(5000, '\0'), QByteArray("Dear diary,\r\n")}) {
            ShownList shown(content);
            QCOMPARE(shown.all(), QStringList());
            shown.list().SaveFile();
            QCOMPARE(contentOf(shown.path()), content);
            shown.list().AddCam("Tower", "URL", "Sights");
            shown.list().SaveFile();
            QCOMPARE(contentOf(shown.path("list.dat.bak")), content);
        }
    }

    void reloadingForgetsWhatWasNotSaved()
    {
        ShownList shown(Example + "\r\n");
        shown.list().AddCam("New", "URL3", "Sights");
        shown.list().LoadFile();
        QCOMPARE(shown.all(), ExampleNodes);
        QVERIFY(!shown.entry("mnuRem").isEnabled()); // nothing is selected any more
        shown.list().Remove();
        QCOMPARE(shown.all(), ExampleNodes);
    }

    void anEmptyCategoryIsGoneAfterALoad()
    {
        ShownList shown(Example + "\r\n");
        shown.choose("Harbour", "mnuRem");
        QCOMPARE(shown.list().Search("cit"), "Cities");
        QCOMPARE(shown.list().ReturnUrlViaName("cit"), "Cities");
        shown.list().SaveFile();
        shown.list().LoadFile();
        QCOMPARE(shown.list().Search("cit"), "");
        QCOMPARE(shown.all(), QStringList({"Sights", "Sights/Tower"}));
    }

    void withoutACameraTheFileIsRemoved()
    {
        ShownList shown("Cities\xFFHarbour\xFFURL1\r\n");
        shown.choose("Harbour", "mnuRem");
        shown.list().SaveFile();
        QVERIFY(!QFile::exists(shown.path()));
        QVERIFY(!QFile::exists(shown.path("list.dat.bak")));
    }

    void anImportedListIsAdded()
    {
        ShownList shown(Example + "\r\n");
        shown.import("CAMZSights\377Bridge\377URL3\377Parks\377Pond\377URL4\r\n");
        QCOMPARE(shown.all(), ExampleNodes + QStringList({"Sights/Bridge", "Parks", "Parks/Pond"}));
        shown.list().SaveFile();
        QCOMPARE(contentOf(shown.path()),
                 Example + "\377Sights\377Bridge\377URL3\377Parks\377Pond\377URL4\r\n");
    }

    void importingTwiceSaysSoForEachCamera()
    {
        ShownList shown("Old\xFFOld\xFFURL0\r\n");
        shown.import("CAMZ" + Example + "\r\n");
        QCOMPARE(shown.all(), QStringList({"Old", "Old/Old"}) + ExampleNodes);
        shown.list().LoadFile(shown.path("icl.zip"));
        QCOMPARE(messages("Cam is already in your list."), 2);
        QCOMPARE(shown.all(), QStringList({"Old", "Old/Old"}) + ExampleNodes);
    }

    void aRefusedCameraDoesNotEndItsList()
    {
        const QByteArray twice = "Cities\xFFHarbour\xFFURL1\xFF"
                                 "Cities\xFF"
                                 "Again\xFFURL1\xFF"
                                 "Sights\xFFTower\xFFURL2\r\n";
        ShownList shown(twice);
        QCOMPARE(messages("Cam is already in your list."), 1);
        QCOMPARE(shown.all(), ExampleNodes);
        shown.import("CAMZ" + twice.chopped(2) + "\xFFParks\xFFPond\xFFURL4\r\n");
        QCOMPARE(messages("Cam is already in your list."), 3);
        QCOMPARE(shown.all(), ExampleNodes + QStringList({"Parks", "Parks/Pond"}));
    }

    void theCheckBoxEndsTheMessagesOfOneList()
    {
        ShownList shown(Example + "\r\n");
        shown.import("CAMZ" + Example + "\r\n");
        shown.list().LoadFile(shown.path("icl.zip"));

        auto* box = openDialog<QMessageBox>();
        QVERIFY(box);
        QCOMPARE(box->windowTitle(), "Pevora");
        QCOMPARE(box->text(), "Cam is already in your list.");
        QCOMPARE(box->icon(), QMessageBox::Information);
        QVERIFY(!box->checkBox()->isChecked());
        QCOMPARE(box->checkBox()->text(), "Don't show again for this list");
        QTest::mouseClick(box->checkBox(), Qt::LeftButton, {},
                          QPoint(8, box->checkBox()->height() / 2));
        QVERIFY(box->checkBox()->isChecked());
        box->button(QMessageBox::Ok)->click();
        // The second list's messages are left, with a check box of their own.
        QTRY_VERIFY(openDialog<QMessageBox>() != box);
        QVERIFY(!openDialog<QMessageBox>()->checkBox()->isChecked());
        QCOMPARE(messages("Cam is already in your list."), 2);
    }

    void theEndOfTheProgramEndsTheMessages()
    {
        ShownList shown(Example + "\r\n");
        shown.import("CAMZ" + Example + "\r\n");
        auto* first = openDialog<QMessageBox>();
        QVERIFY(first);
        shown.list().endMessages();
        first->button(QMessageBox::Ok)->click();
        shown.list().LoadFile(shown.path("icl.zip"));
        QCoreApplication::processEvents();
        for (const QWidget* window : QApplication::topLevelWidgets())
            QVERIFY(!(qobject_cast<const QMessageBox*>(window) && window->isVisible()));
    }

    void whatIsNoZippedListIsRefused_data()
    {
        const Rows<QByteArray> row("content");
        row("a list without its mark, and cut", Example.left(Example.lastIndexOf(char(0xFF))));
        row("the mark in other letters", "camz" + Example);
        row("the mark cut", "CAM");
        row("an empty file", "");
        row("no file", {});
    }

    void whatIsNoZippedListIsRefused()
    {
        QFETCH(QByteArray, content);
        ShownList shown(Example + "\r\n");
        if (!content.isNull())
            shown.write("other.dat", content);
        shown.list().LoadFile(shown.path("other.dat"));
        const ShownMessage message = answerMessage(QMessageBox::Ok);
        QCOMPARE(message.text, "Not a valid Zipped Cam List.");
        QCOMPARE(message.title, "Pevora");
        QCOMPARE(message.icon, QMessageBox::Critical);
        QCOMPARE(shown.all(), ExampleNodes);
    }

    void listsThatAreNoneAreToldOfOneByOne()
    {
        ShownList shown(Example + "\r\n");
        for (int i = 0; i < 3; ++i)
            shown.list().LoadFile(shown.path("missing"));
        QVERIFY(openDialog<QMessageBox>());
        const auto windows = QApplication::topLevelWidgets();
        QCOMPARE(std::count_if(windows.begin(), windows.end(),
                               [](const QWidget* window) {
                                   return qobject_cast<const QMessageBox*>(window) &&
                                          window->isVisible();
                               }),
                 1);
        QCOMPARE(messages("Not a valid Zipped Cam List."), 3);
        shown.list().LoadFile(shown.path("missing"));
        QCOMPARE(messages("Not a valid Zipped Cam List."), 1);
    }

    void messagesOfBothKindsComeInTheOrderOfTheLists()
    {
        ShownList shown(Example + "\r\n");
        shown.import("CAMZ" + Example + "\r\n");
        shown.list().LoadFile(shown.path("missing"));
        shown.list().AddCam("Again", "URL1", "Cities");
        QStringList texts;
        for (int i = 0; i < 4; ++i) {
            QVERIFY(openDialog<QMessageBox>());
            QCOMPARE(shown.list().window()->findChildren<QMessageBox*>().size(), 1);
            texts << answerMessage(QMessageBox::Ok).text;
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        const QString listed = "Cam is already in your list.";
        QCOMPARE(texts, (QStringList{listed, listed, "Not a valid Zipped Cam List.", listed}));
        QVERIFY(!shown.list().window()->findChild<QMessageBox*>());
    }

    void anImportOfNothingAddsTheDefaults()
    {
        ShownList shown;
        const CameraRecord first = defaultCameras().value(0);
        shown.load("Mine\xFFMy own\xFF" + first.key.toLatin1() + "\r\n");
        shown.import("CAMZ\r\n");
        QCOMPARE(shown.all().size(), 2 + 14 - 1);
        QCOMPARE(messages("Cam is already in your list."), 1); // the one that is there
    }

    void aKeyThatIsThereIsNotAdded()
    {
        ShownList shown(Example + "\r\n");
        shown.list().AddCam("Again", "URL1", "Parks");
        QCOMPARE(messages("Cam is already in your list."), 1);
        // Kept: the category that was made for it stays.
        QCOMPARE(shown.all(), ExampleNodes + QStringList("Parks"));
    }

    void anAddedCameraIsShown()
    {
        ShownList shown(Example + "\r\n");
        shown.tree().collapseAll();
        QSignalSpy clicks(&shown.list(), &CamList::Click);
        shown.list().AddCam("Bridge", "URL3", "Sights");
        QCOMPARE(shown.tree().selected(), shown.node("Bridge"));
        QVERIFY(shown.tree().isExpanded(shown.node("Sights")));
        QCOMPARE(clicks.size(), 0);
    }

    void categoriesAreAddedToABox()
    {
        ShownList shown(Example + "\r\n");
        QComboBox box;
        box.addItem("first");
        shown.list().FillParent(&box);
        QCOMPARE(box.count(), 3);
        QCOMPARE(box.itemText(0), "first");
        QCOMPARE(box.itemText(1), "Cities");
        QCOMPARE(box.itemText(2), "Sights");
    }

    void camerasAreFoundByTheirNames()
    {
        ShownList shown(Example + "\r\n");
        QCOMPARE(shown.list().Search("TOW"), "Tower");
        QCOMPARE(shown.list().ReturnUrlViaName("TOW"), "URL2\1Cookie: a=1");
        QCOMPARE(shown.list().Search(""), "");
        QCOMPARE(shown.list().ReturnUrlViaName(""), "");
        QCOMPARE(shown.list().ReturnUrlViaName("Cities"), ""); // it has a camera

        QVERIFY(QFile::remove(shown.path()));
        shown.list().LoadFile();
        QCOMPARE(shown.list().Search("new"), "NewYork, NY");
        QCOMPARE(shown.list().ReturnUrlViaName("new"), defaultCameras().value(0).key);
    }

    void aShortListIsShownOpen()
    {
        ShownList shown(Example + "\r\n");
        QVERIFY(shown.tree().isExpanded(shown.node("Cities")));
        QVERIFY(shown.tree().isExpanded(shown.node("Sights")));
    }

    void openCategoriesStayOpenWhenReloaded()
    {
        QByteArray line = "Sights\xFFTower\xFFURL";
        for (int i = 0; i < 60; ++i)
            line += "\xFFMany\xFFn" + QByteArray::number(i) + "\xFFk" + QByteArray::number(i);
        ShownList shown(line);
        QVERIFY(!shown.tree().isExpanded(shown.node("Sights")));
        QVERIFY(!shown.tree().isExpanded(shown.node("Many")));
        shown.click("Sights");
        shown.list().LoadFile();
        QVERIFY(shown.tree().isExpanded(shown.node("Sights")));
        QVERIFY(!shown.tree().isExpanded(shown.node("Many")));
    }
};

QTEST_MAIN(CamListTest)
#include "tst_CamList.moc"
