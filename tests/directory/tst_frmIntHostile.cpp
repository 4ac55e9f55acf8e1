// The window "Internet List" against answers that nobody would send in good faith, and under the
// load of many cameras.

#include "support/Cost.h"
#include "support/Rows.h"
#include "support/ShownDirectory.h"

#include <QScrollBar>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray One = directoryBody({"Cities|Rome|rome.example"});

QByteArray manyCameras(int count)
{
    QStringList cameras;
    for (int i = 0; i < count; ++i)
        cameras << QString("Category %1|Camera %2|cam.example/%2.jpg").arg(i % 37).arg(i);
    return directoryBody(cameras);
}

} // namespace

class frmIntHostileTest : public QObject
{
    Q_OBJECT
private slots:
    void oddAnswers_data()
    {
        const Rows<QByteArray, int> row("answer", "found");
        row("html", httpAnswer("<html><body>It works!</body></html>\r\n"), 0);
        row("an empty body", httpAnswer({}), 0);
        row("two bytes", "ab", 0);
        row("cut in the second camera's key's place", httpAnswer(One + "\377b\377c"), 1);
        row("cut in the first one", httpAnswer("Cities\xFFRome"), 0);
        row("separators", httpAnswer(QByteArray(3000, '\xFF')), 1);
        row("random bytes", httpAnswer(QByteArray("\x00\x01\x7F\x80\xFE\xC3\x28\n\r<%s%n", 15)), 0);
        row("a camera of nothing but zeros", httpAnswer(QByteArray("\0\xFF\0\xFF\0", 5)), 1);
    }

    void oddAnswers()
    {
        QFETCH(QByteArray, answer);
        ShownDirectory d("a\377b\377c\377d\377e\377f");
        d.server.play(answer);
        d.query("mnuOptDownIt(0)");
        QTEST(int(d.rows().size()), "found");
        QCOMPARE(d.title(), QString("Finished [Found %1 Cams]").arg(d.rows().size()));
        QVERIFY(d.entry("mnuOptNew").isEnabled());
        d.press("cmdPre");
        d.press("cmdAll");
        QCOMPARE(d.previews.size(), d.rows().isEmpty() ? 0 : 1);
    }

    void anAnswerInManyPieces()
    {
        ShownDirectory d;
        const QByteArray answer = httpAnswer(directoryBody({"A|b|c", "D|e|f"}));
        Script script;
        for (const char byte : answer)
            script.pieces << QByteArray(1, byte);
        d.server.play(script);
        d.query("mnuOptNew");
        QCOMPARE(d.title(), "Finished [Found 2 Cams]");
        QCOMPARE(d.rows(), (QStringList{"A|b", "D|e"}));
    }

    void anAnswerThatBreaksOff()
    {
        ShownDirectory d;
        d.server.play(httpAnswer(One + "\377half"), Script::End::Abort);
        d.query("mnuOptNew");
        QVERIFY(d.entry("mnuOptNew").isEnabled());
        QVERIFY(d.button("cmdAdd").isEnabled());
    }

    void aFloodIsABoundedList_data()
    {
        const Rows<QByteArray, int, int> row("piece", "pieces", "rows");
        QByteArray triples;
        for (int i = 0; i < 200'000; ++i)
            triples += "\xFF\xFF" + QByteArray::number(i, 36) + '\xFF';
        row("100 MB of one field", QByteArray(1'000'000, 'x'), 100, 0);
        row("100 MB of separators", QByteArray(1'000'000, '\xFF'), 100, 1);
        row("100 MB of one camera", (One + '\xFF').repeated(1'000'000 / (One.size() + 1)), 100, 1);
        row("tiny cameras", triples, 1, 100'000);
        row("100 MB of tiny cameras", triples, 100'000'000 / int(triples.size()), 100'000);
    }

    void aFloodIsABoundedList()
    {
        QFETCH(QByteArray, piece);
        QFETCH(int, pieces);
        QFETCH(int, rows);
        ShownDirectory d;
        const auto query = [&](int tenths) {
            Script script{{httpAnswer({})}, Script::End::Close};
            if (pieces == 1)
                script.pieces << piece.first(piece.size() / 10 * tenths);
            else
                script.pieces += QList<QByteArray>(pieces / 10 * tenths, piece);
            d.server.play(script);
            d.query("mnuOptDownIt(0)");
        };
        const double times = growth(1, query);
        qInfo("ten times as long at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
        QCOMPARE(d.title(), QString("Finished [Found %1 Cams]").arg(rows));
        QCOMPARE(d.list().model()->rowCount(), rows);
    }

    void hugeFieldsAreShownInPart()
    {
        ShownDirectory d;
        const QByteArray huge(5'000'000, 'W');
        d.find("c" + huge + '\xFF' + huge + "\xFFk" + huge + "\377b\377n\377k", "mnuOptDownIt(0)");
        d.list().viewport()->grab();
        QVERIFY(d.list().model()->index(1, 1).data(Qt::ToolTipRole).toString().size() < 2'000);
        QCOMPARE(d.rows()[0], "b|n");
        QVERIFY(d.rows()[1].size() <= 20'001);
        // They are whole for all that.
        QCOMPARE(d.key(1).size(), huge.size() + 1);
        d.check(1);
        d.press("cmdAdd");
        QCOMPARE(d.imports.value(0).size(), 3 * huge.size() + 10);
    }

    void namesAreOneLineOfPlainText()
    {
        ShownDirectory d("<b>c</b>\377AT&T && <i>x</i>\377k/<b>\1Cookie: "
                         "secret\377two\r\nlines\377a\tb\nc\377l");
        QCOMPARE(d.rows(), (QStringList{"<b>c</b>|AT&T && <i>x</i>", "two  lines|a b c"}));
        const auto& model = *d.list().model();
        QCOMPARE(model.index(0, 1).data(Qt::ToolTipRole).toString(),
                 "<p>AT&amp;T &amp;&amp; &lt;i&gt;x&lt;/i&gt;<br>http://k/&lt;b&gt;</p>");
        QCOMPARE(d.list().visualRect(model.index(1, 0)).height(),
                 d.list().visualRect(model.index(0, 0)).height());
    }

    void aCategoryForEachCameraIsSortedAtOnce()
    {
        ShownDirectory d;
        const auto find = [&](int count) {
            QStringList cameras;
            for (int i = 0; i < count; ++i)
                cameras << QString("%1 %2|n|%2")
                               .arg(QString::number((i * 7919LL) % count).rightJustified(5, '0'))
                               .arg(i);
            d.find(directoryBody(cameras), "mnuOptDownIt(0)");
            QCOMPARE(d.list().model()->rowCount(), count);
        };
        const double times = growth(10'000, find);
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
        QVERIFY(d.rows().first().startsWith("00000 "));
        QVERIFY(d.rows().last().startsWith("99999 "));
    }

    void eachOfTenThousandCostsTheSame()
    {
        const auto use = [](int count) {
            ShownDirectory d; // cmdAdd closes the window
            d.server.play(httpAnswer(manyCameras(count)));
            d.query("mnuOptDownIt(0)");
            d.list().viewport()->repaint();
            QCOMPARE(d.title(), QString("Finished [Found %1 Cams]").arg(count));
            d.press("cmdAll");
            QTest::keyClick(&d.list(), Qt::Key_End);
            QCOMPARE(d.list().currentIndex().row(), count - 1);
            QTest::keyClick(&d.list(), Qt::Key_Space);
            d.press("cmdAdd");
            QCOMPARE(d.imports.value(0).count('\xFF'), 3 * (count - 1) - 1);
        };
        const double times = growth(1'000, use);
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }

    void scrollingCostsTheSameHoweverManyThereAre()
    {
        ShownDirectory d;
        auto& bar = *d.list().verticalScrollBar();
        const auto costOfScrolling = [&](int count) {
            d.find(manyCameras(count), "mnuOptDownIt(0)");
            return costOf([&] {
                for (int step = 0; step <= 100; ++step) {
                    bar.setValue(bar.maximum() * step / 100);
                    d.list().viewport()->repaint();
                }
            });
        };
        const double few = costOfScrolling(1'000);
        const double times = costOfScrolling(10'000) / few;
        QVERIFY(bar.maximum() > 9'000);
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < 5);
    }
};

QTEST_MAIN(frmIntHostileTest)
#include "tst_frmIntHostile.moc"
