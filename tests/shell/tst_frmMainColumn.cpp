// The left column of the main window: its edge that a person drags, and the room that its captions
// have in each language and font.

#include "shell/parts/MainLayout.h"
#include "support/Desktop.h"
#include "support/Paths.h"
#include "support/Rows.h"
#include "support/ShownMain.h"

#include <QAbstractButton>
#include <QLabel>
#include <QRadioButton>
#include <QScrollArea>
#include <QTreeView>

#include <algorithm>

namespace {

constexpr int FirstWidth = 220;
/// So much is right of the list in the narrowest window.
constexpr int ViewerRoom = 352;

/// The main window on screen, and the column in it.
class Column : public OpenMain
{
public:
    using OpenMain::OpenMain;

    int width() { return part<QWidget>("cList").width(); }
    QWidget& edge() { return part<QWidget>("edgList"); }
    QWidget& viewer() { return part<QWidget>("Cam"); }

    /// Holds the edge with the pointer and lets it go `by` pixels further right.
    void drag(int by, int button = 1)
    {
        const QPoint from = edge().mapToGlobal(edge().rect().center());
        movePointer(from);
        if (!waitFor([this] { return edge().underMouse(); }))
            qFatal("the pointer is not over the edge");
        pointer(from, "mousedown", button);
        // Some way first, as a hand does.
        movePointer(from + QPoint(by / 20, 3));
        pointer({std::max(from.x() + by, 0), from.y()}, "mouseup", button);
    }
};

/// The parts of the column whose captions are cut; empty where each has its room.
QStringList cut(Column& c)
{
    QStringList names;
    const auto& page = c.part<QScrollArea>("picAdd");
    QList<QWidget*> parts;
    for (auto* one : page.findChildren<QLabel*>())
        parts.append(one);
    for (auto* one : page.findChildren<QAbstractButton*>())
        parts.append(one);
    for (auto* one : parts) {
        const QRect place(one->mapTo(page.viewport(), QPoint()), one->size());
        if (one->width() < one->sizeHint().width() || place.left() < 0 ||
            place.right() >= page.viewport()->width())
            names.append(one->objectName());
    }
    for (const char* name : {"opt(0)", "opt(1)"}) {
        const auto& option = c.part<QRadioButton>(name);
        if (option.width() < option.sizeHint().width() ||
            option.geometry().right() >= c.viewer().x())
            names.append(name);
    }
    return names;
}

} // namespace

class frmMainColumnTest : public QObject
{
    Q_OBJECT
private slots:
    void init() { m_font = QApplication::font(); }
    void cleanup() { QApplication::setFont(m_font); }

    void theEdgeFillsTheGapAndSaysSo()
    {
        Column c;
        QCOMPARE(c.edge().geometry(), QRect(FirstWidth, 0, 4, c.made().centralWidget()->height()));
        QCOMPARE(c.edge().cursor().shape(), Qt::SplitHCursor);
        QVERIFY(c.edge().isVisible());
        QCOMPARE(c.edge().focusPolicy(), Qt::NoFocus);
        c.entry("mnuViewList").trigger();
        QVERIFY(!c.edge().isVisible());
        c.entry("mnuViewList").trigger();
        QVERIFY(c.edge().isVisible());
    }

    void draggingMovesTheEdge()
    {
        Column c;
        c.drag(90);
        QTRY_COMPARE(c.width(), FirstWidth + 90);
        QCOMPARE(c.edge().x(), FirstWidth + 90);
        QCOMPARE(c.viewer().x(), FirstWidth + 94);
        QCOMPARE(c.viewer().width(), c.made().width() - FirstWidth - 95);
        QCOMPARE(c.part<QWidget>("cmbUrl").x(), c.viewer().x());
        QCOMPARE(c.part<QWidget>("picAdd").width(), FirstWidth + 90);
        QVERIFY(c.part<QWidget>("opt(1)").geometry().right() < FirstWidth + 90);
        c.drag(-60);
        QTRY_COMPARE(c.width(), FirstWidth + 30);
    }

    void onlyThePrimaryButtonDrags()
    {
        Column c;
        for (const int button : {2, 3})
            c.drag(50, button);
        c.drag(20); // and what came before it is over, too
        QTRY_COMPARE(c.width(), FirstWidth + 20);
    }

    void aDoubleClickBringsTheFirstWidthBack()
    {
        Column c;
        c.drag(90);
        QTRY_COMPARE(c.width(), FirstWidth + 90);
        QTest::mouseDClick(&c.edge(), Qt::LeftButton);
        QCOMPARE(c.width(), FirstWidth);
    }

    void theEdgeStopsAtItsBounds()
    {
        Column c;
        c.drag(2'000);
        QTRY_VERIFY(c.width() > FirstWidth);
        QCOMPARE(c.width(), c.made().width() - ViewerRoom);
        // The window has the same least size as ever; the list gives way to the viewer.
        c.made().resize(10, 500);
        QCOMPARE(c.made().width(), 572);
        QCOMPARE(c.width(), FirstWidth);
        c.made().resize(900, 500);
        QCOMPARE(c.width(), 900 - ViewerRoom);
        c.drag(-2'000);
        QTRY_VERIFY(c.width() < FirstWidth);
        QVERIFY(c.width() >= 120);
        c.part<QRadioButton>("opt(0)").click();
        QTRY_COMPARE(cut(c), QStringList());
    }

    void theLeastWindowWithoutTheListGoesByTheListsWidth()
    {
        Column c;
        c.drag(40);
        QTRY_COMPARE(c.width(), FirstWidth + 40);
        QCOMPARE(c.made().minimumWidth(), 572);
        c.entry("mnuViewList").trigger();
        QCOMPARE(c.made().minimumWidth(), 572 - FirstWidth - 40);
    }

    void aWidthIsNeverLessThanItsBoundOrMoreThanTheViewerLeaves_data()
    {
        const Rows<int, int, int, int> row("wanted", "needed", "client", "width");
        row("as at first", 220, 0, 1'120, 220);
        row("wider", 400, 0, 1'120, 400);
        row("narrower", 150, 0, 1'120, 150);
        row("too narrow", 7, 0, 1'120, 120);
        row("negative", -7, 0, 1'120, 120);
        row("less than its captions", 150, 190, 1'120, 190);
        row("long captions", 220, 300, 1'120, 300);
        row("too wide", 5'000, 0, 1'120, 768);
        row("too wide for a small window", 400, 0, 600, 248);
        row("long captions in the narrowest window", 220, 300, 572, 220);
        row("in less than that", 400, 300, 100, 220);
        row("narrow in less than that", 150, 0, 100, 150);
    }

    void aWidthIsNeverLessThanItsBoundOrMoreThanTheViewerLeaves()
    {
        QFETCH(int, wanted);
        QFETCH(int, needed);
        QFETCH(int, client);
        QTEST(listWidth(wanted, needed, client), "width");
    }

    void captionsFitInEveryLanguageAndFont_data()
    {
        const Rows<QString, int> row("language", "points");
        for (const char* language : {"", "de", "es", "fr"}) {
            for (int points = 9; points <= 13; ++points)
                row(language + std::to_string(points), language, points);
        }
    }

    void captionsFitInEveryLanguageAndFont()
    {
        QFETCH(QString, language);
        QFETCH(int, points);
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
        Column c;
        if (!language.isEmpty()) {
            QVERIFY(
                QFile::copy(sourcePath("languages/" + language + "/lan.ini"), c.path("lan.ini")));
            c.madeAgain();
            c.shown();
        }
        for (const int height : {640, 260}) { // in the second the page scrolls
            c.made().resize(1'000, height);
            c.part<QRadioButton>("opt(0)").click();
            QTRY_COMPARE(cut(c), QStringList());
            c.part<QRadioButton>("opt(1)").click();
            QTRY_COMPARE(cut(c), QStringList());
        }
    }

    void theColumnFollowsItsFont()
    {
        Column c;
        const int before = c.width();
        QFont font = QApplication::font();
        // Wider, and as high as before, so that nothing else makes room anew.
        font.setLetterSpacing(QFont::AbsoluteSpacing, 4);
        QApplication::setFont(font);
        QTRY_VERIFY(c.width() > before);
        c.part<QRadioButton>("opt(0)").click();
        QTRY_COMPARE(cut(c), QStringList());
    }

    void theSelectionReachesTheEdge_data()
    {
        const Rows<int, int> row("cameras", "by");
        row("few", 2, 0);
        row("many, in a tree that scrolls", 300, 0);
        row("few, in a wider column", 2, 200);
        row("many, in a wider column", 300, 200);
    }

    void theSelectionReachesTheEdge()
    {
        QFETCH(int, cameras);
        QFETCH(int, by);
        Column m;
        QByteArray list;
        for (int i = 0; i < cameras; ++i) {
            const QByteArray n = QByteArray::number(i);
            list += (i ? "\xFF" : "") + ("Cities\xFF"
                                         "Place " +
                                         n +
                                         "\xFF"
                                         "cam.example/" +
                                         n);
        }
        m.write("list.dat", list + "\r\n");
        m.madeAgain();
        m.shown();
        auto& tree = m.part<QTreeView>("tvwCat");
        if (by > 0)
            m.drag(by);
        QTRY_COMPARE(m.width(), FirstWidth + by);
        const QModelIndex category = tree.model()->index(0, 0);
        tree.expand(category);
        const QModelIndex camera = tree.model()->index(0, 0, category);
        QVERIFY(camera.isValid());
        tree.setCurrentIndex(camera);
        QTRY_COMPARE(tree.visualRect(camera).right(), tree.viewport()->width() - 1);
        const QImage seen = tree.viewport()->grab().toImage();
        const int y = tree.visualRect(camera).center().y();
        const auto group = tree.isActiveWindow() ? QPalette::Active : QPalette::Inactive;
        const QColor base = tree.palette().color(group, QPalette::Base);
        for (int x = seen.width() - 8; x < seen.width(); ++x)
            QVERIFY2(seen.pixelColor(x, y) != base, qPrintable(QString::number(x)));
    }

private:
    QFont m_font;
};

QTEST_MAIN(frmMainColumnTest)
#include "tst_frmMainColumn.moc"
