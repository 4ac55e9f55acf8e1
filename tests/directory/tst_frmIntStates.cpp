// What the window "Internet List" says of its queries, and what ends one that brings no answer.

#include "support/Rows.h"
#include "support/ShownDirectory.h"
#include "support/TimeSeam.h"
#include "support/Waiting.h"

#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTreeView>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray Two = directoryBody({"Sights|Tower|tower.example", "Cities|Rome|rome.example"});
const QStringList TwoRows = {"Sights|Tower", "Cities|Rome"};

/// A window with two cameras, whose server has got another query and says nothing yet.
struct Waiting : ShownDirectory
{
    Waiting()
        : ShownDirectory(Two)
    {
        server.play(Script{{}, Script::End::KeepOpen});
        entry("mnuOptNew").trigger();
        QTRY_COMPARE(server.requests().size(), 2);
    }
    Timer& silence() const { return timerOf(*window, "tmrSilent"); }
};

/// The body in chunks of `size` bytes, without the last.
QByteArray inChunks(const QByteArray& body, qsizetype size, const QByteArray& lineEnd)
{
    QByteArray chunks;
    for (qsizetype at = 0; at < body.size(); at += size) {
        const QByteArray piece = body.mid(at, size);
        chunks += QByteArray::number(piece.size(), 16) + lineEnd + piece + lineEnd;
    }
    return chunks;
}

} // namespace

class frmIntStatesTest : public QObject
{
    Q_OBJECT
private slots:
    void theWindowSaysWhatItsTitleSays()
    {
        ShownDirectory d;
        QCOMPARE(d.status(), "");
        QCOMPARE(d.hint(), "");
        QStringList states;
        // The line is told last, so it says what the title said before, and in the end the same.
        connect(d.window, &QWidget::windowTitleChanged, d.window, [&] { states << d.status(); });
        d.find(Two);
        QCOMPARE(states, (QStringList{"", "Connecting", "Connected", "Receiving Data"}));
        QCOMPARE(d.status(), "Finished [Found 2 Cams]");
        QCOMPARE(d.title(), "Finished [Found 2 Cams]");
        d.find("No Luck090877");
        QCOMPARE(d.status(), "Finished [No Cams Found]");
        QCOMPARE(d.title(), "Finished [No Cams Found]");
        QVERIFY(d.window->rect().contains(d.window->findChild<QLabel*>("lblStatus")->geometry()));
        QVERIFY(d.window->findChild<QLabel*>("lblStatus")->y() > d.list().geometry().bottom());
    }

    void anAnswerThatIsNoneKeepsTheRows_data()
    {
        const Rows<QByteArray, QString> row("answer", "state");
        const QByteArray length = "Content-Length: " + QByteArray::number(Two.size() + 1) + "\r\n";
        const QString incomplete = "Error: The answer is incomplete.";
        const QByteArray chunked = "Transfer-Encoding: chunked\r\n";
        row("not found", httpAnswer("<html>404</html>", {}, "404 Not Found"),
            "Error: 404 Not Found");
        row("a list with another status", httpAnswer(Two, {}, "503 Service Unavailable"),
            "Error: 503 Service Unavailable");
        row("moved", httpAnswer({}, "Location: /\r\n", "301 Moved"), "Error: 301 Moved");
        row("a status line alone", "HTTP/1.0 500 Oh no\r\n", "Error: 500 Oh no");
        row("a status as long as a page", httpAnswer({}, {}, "500 " + QByteArray(5000, 'x')),
            "Error: 500 " + QString(76, 'x'));
        row("a status of markup and control characters",
            httpAnswer({}, {}, "500 <b>x</b>\x1b[1m\xE2\x80\xA8y\x7f&amp;\tz"),
            "Error: 500 <b>x</b>[1m y&amp;z");
        row("cut in its first word", "HTT", incomplete);
        row("fewer bytes", httpAnswer(Two, length), incomplete);
        row("none at all", httpAnswer({}, length), incomplete);
        row("cut in its header", "HTTP/1.0 200 OK\r\n" + length + "X: y", incomplete);
        row("no last chunk", httpAnswer(inChunks(Two, 10, "\r\n"), chunked), incomplete);
        row("cut in a chunk", httpAnswer("FF\r\n" + Two, chunked), incomplete);
    }

    void anAnswerThatIsNoneKeepsTheRows()
    {
        QFETCH(QByteArray, answer);
        ShownDirectory d(Two);
        d.check(1);
        d.server.play(answer);
        d.query("mnuOptNew");
        QTEST(d.title(), "state");
        QTEST(d.status(), "state");
        QCOMPARE(d.rows(), (QStringList{"Sights|Tower", "[x] Cities|Rome"}));
        QVERIFY(d.entry("mnuOptNew").isEnabled());
        QVERIFY(!d.button("cmdStop").isEnabled());
        // The next one is like any other.
        d.find(directoryBody({"A|B|c"}));
        QCOMPARE(d.rows(), QStringList("A|B"));
        QCOMPARE(d.status(), "Finished [Found 1 Cams]");
    }

    /// Whatever it may have cut off: an answer without a length does not say.
    void anAnswerThatIsResetKeepsTheRows_data()
    {
        const Rows<QByteArray, bool> row("answer", "hint");
        const QByteArray more = directoryBody({"A|B|c", "D|E|f"});
        row("before the first byte", {}, true);
        row("in its status line", "HTTP/1.0", false);
        row("in its header", "HTTP/1.0 200 OK\r\nX: y\r\n", false);
        row("in a body of some length", httpAnswer(more, "Content-Length: 99\r\n"), false);
        row("in a body of any length", httpAnswer(more), false);
        row("in its chunks",
            httpAnswer(inChunks(more, 10, "\r\n"), "Transfer-Encoding: chunked\r\n"), false);
    }

    void anAnswerThatIsResetKeepsTheRows()
    {
        QFETCH(QByteArray, answer);
        ShownDirectory d(Two);
        const auto pieces = answer.isEmpty() ? QList<QByteArray>() : QList{answer};
        d.server.play(Script{pieces, Script::End::Reset});
        d.query("mnuOptNew");
        QCOMPARE(d.title(), "Error: The connection was reset");
        QCOMPARE(d.status(), d.title());
        QTEST(!d.hint().isEmpty(), "hint");
        QCOMPARE(d.rows(), TwoRows);
        QVERIFY(d.entry("mnuOptNew").isEnabled());
        QVERIFY(!d.button("cmdStop").isEnabled());
    }

    void anAnswerThatStopsBeforeItsEndKeepsTheRows()
    {
        ShownDirectory d(Two);
        d.server.play(httpAnswer(Two.chopped(3),
                                 "Content-Length: " + QByteArray::number(Two.size()) + "\r\n"),
                      Script::End::KeepOpen);
        d.entry("mnuOptNew").trigger();
        QTRY_COMPARE(d.status(), "Receiving Data");
        timerOf(*d.window, "Timer1").elapse();
        QCOMPARE(d.status(), "Error: The answer is incomplete.");
        QCOMPARE(d.rows(), TwoRows);
    }

    void answersInOtherForms_data()
    {
        const Rows<QByteArray> row("answer");
        const QByteArray length = "Content-Length: " + QByteArray::number(Two.size()) + "\r\n";
        row("with its length", httpAnswer(Two, length));
        row("with more than its length", httpAnswer(Two + "\r\n", length));
        row("in chunks",
            httpAnswer(inChunks(Two, 10, "\r\n") + "0\r\n\r\n", "Transfer-Encoding: chunked\r\n"));
        row("in chunks, with a length that does not count",
            httpAnswer(inChunks(Two, 7, "\r\n") + "0\r\n\r\n",
                       "Transfer-Encoding: Chunked\r\nContent-Length: 9999\r\n"));
        row("bare line feeds", "HTTP/1.0 200 OK\nContent-Type: text/plain\n\n" + Two + "\n");
        row("bare line feeds, in chunks",
            "HTTP/1.1 200 OK\nTransfer-Encoding: chunked\n\n" + inChunks(Two, 16, "\n") + "0\n\n");
        row("no reason", httpAnswer(Two, {}, "200"));
        row("a byte order mark", httpAnswer("\xEF\xBB\xBF" + Two));
        row("a byte order mark, in chunks",
            httpAnswer(inChunks("\xEF\xBB\xBF" + Two, 2, "\r\n") + "0\r\n\r\n",
                       "Transfer-Encoding: chunked\r\n"));
    }

    void answersInOtherForms()
    {
        QFETCH(QByteArray, answer);
        ShownDirectory d;
        d.server.play(answer);
        d.query("mnuOptNew");
        QCOMPARE(d.status(), "Finished [Found 2 Cams]");
        QCOMPARE(d.rows(), TwoRows);
        QCOMPARE(d.key(1), "rome.example");
        d.check(0);
        d.press("cmdAdd");
        QCOMPARE(d.imports, QList<QByteArray>{"CAMZSights\xFFTower\xFFtower.example\r\n"});
    }

    void stopEndsAQuery()
    {
        Waiting d;
        auto& stop = d.button("cmdStop");
        QCOMPARE(stop.text(), "Stop");
        QVERIFY(stop.isEnabled());
        QTest::mouseClick(&stop, Qt::LeftButton);
        QCOMPARE(d.title(), "Stopped");
        QCOMPARE(d.status(), "Stopped");
        QCOMPARE(d.hint(), "");
        QCOMPARE(d.rows(), TwoRows);
        QVERIFY(!stop.isEnabled());
        QVERIFY(d.entry("mnuOptNew").isEnabled());
        QVERIFY(d.button("cmdAdd").isEnabled());
        QVERIFY(!d.silence().Enabled());
        QTRY_COMPARE(d.server.openConnections(), 0);
        QCOMPARE(d.status(), "Stopped");
    }

    void stopAmidAnAnswerDropsIt()
    {
        Waiting d;
        d.server.sendMore(httpAnswer(directoryBody({"A|B|c"})));
        QTRY_COMPARE(d.status(), "Receiving Data");
        d.button("cmdStop").setFocus();
        QTest::keyClick(&d.button("cmdStop"), Qt::Key_Space);
        QCOMPARE(d.status(), "Stopped");
        QVERIFY(!timerOf(*d.window, "Timer1").Enabled());
        QCOMPARE(d.rows(), TwoRows);
        // The keyboard does not go on to the next button, and Enter with it.
        QVERIFY(d.list().hasFocus());
        d.find(directoryBody({"D|E|f"}));
        QCOMPARE(d.rows(), QStringList("D|E"));
    }

    void stopIsThereWhileAQueryRunsAlone()
    {
        ShownDirectory d(Two);
        QVERIFY(d.button("cmdStop").isVisible());
        QVERIFY(!d.button("cmdStop").isEnabled());
        const ShownDirectory refused(portOfNobody());
        refused.entry("mnuOptNew").trigger();
        QVERIFY(refused.button("cmdStop").isEnabled());
        QTRY_VERIFY(refused.status().startsWith("Error: "));
        QVERIFY(!refused.button("cmdStop").isEnabled());
    }

    void aSilentServerIsGivenUp()
    {
        Waiting d;
        QCOMPARE(d.silence().Interval(), 30'000);
        QVERIFY(d.silence().Enabled());
        d.silence().elapse();
        QCOMPARE(d.title(), "Error: The server does not answer.");
        QCOMPARE(d.status(), "Error: The server does not answer.");
        QVERIFY(d.hint().startsWith("No camera directory answers at 127.0.0.1"));
        QCOMPARE(d.rows(), TwoRows);
        QVERIFY(!d.silence().Enabled());
        QVERIFY(!d.button("cmdStop").isEnabled());
        QVERIFY(d.entry("mnuOptNew").isEnabled());
        QTRY_COMPARE(d.server.openConnections(), 0);
    }

    void theTimeCountsFromTheConnectionToTheFirstByte()
    {
        ShownDirectory d;
        auto& silence = timerOf(*d.window, "tmrSilent");
        QVERIFY(!silence.Enabled());
        d.server.play(Script{{}, Script::End::KeepOpen});
        d.entry("mnuOptNew").trigger();
        QCOMPARE(d.status(), "Connecting");
        QVERIFY(!silence.Enabled());
        QTRY_COMPARE(d.status(), "Connected");
        QVERIFY(silence.Enabled());
        QTRY_COMPARE(d.server.requests().size(), 1);
        d.server.sendMore(httpAnswer(Two));
        QTRY_COMPARE(d.status(), "Receiving Data");
        QVERIFY(!silence.Enabled());
        timerOf(*d.window, "Timer1").elapse();
        QCOMPARE(d.rows(), TwoRows);
    }

    void whereNoDirectoryAnswersThereIsAHint_data()
    {
        const Rows<QByteArray, bool> row("answer", "hint");
        row("no such page", httpAnswer({}, {}, "404 Not Found"), true);
        row("nothing", {}, true);
        row("an incomplete answer", httpAnswer(Two, "Content-Length: 999\r\n"), false);
        row("no cameras", httpAnswer("No Luck090877"), false);
    }

    void whereNoDirectoryAnswersThereIsAHint()
    {
        QFETCH(QByteArray, answer);
        QFETCH(bool, hint);
        ShownDirectory d;
        d.server.play(answer.isEmpty() ? Script{} : Script{{answer}});
        d.query("mnuOptNew");
        QCOMPARE(d.hint(), hint ? "No camera directory answers at 127.0.0.1: another one can be "
                                  "named in pref.ini, as HOST in the section [DIRECTORY]."
                                : "");
        // It goes with the next query.
        d.server.play(Script{{}, Script::End::KeepOpen});
        d.entry("mnuOptNew").trigger();
        QCOMPARE(d.hint(), "");
    }

    void anUnreachableDirectoryIsNamed()
    {
        const ShownDirectory d(portOfNobody());
        QCOMPARE(d.hint(), "");
        d.query("mnuOptNew");
        QCOMPARE(d.status(), "Error: Connection refused");
        QVERIFY(d.hint().startsWith("No camera directory answers at 127.0.0.1: "));
        // All of it is seen.
        const auto* label = d.window->findChild<QLabel*>("lblHint");
        QTRY_VERIFY(label->height() >= label->heightForWidth(label->width()));
        QVERIFY(d.window->rect().contains(label->geometry()));
    }

    void withoutADirectoryTheHintIsThereAtOnce()
    {
        const QTemporaryDir folder;
        frmInt window(folder.path(), {});
        window.setAttribute(Qt::WA_DeleteOnClose, false);
        window.show();
        const auto* label = window.findChild<QLabel*>("lblHint");
        QVERIFY(label->isVisible());
        QCOMPARE(label->text(), "No camera directory is set: name one in pref.ini, as HOST in the "
                                "section [DIRECTORY].");
    }

    void aLongTextDoesNotWidenTheWindow()
    {
        ShownDirectory d;
        const int narrowest = d.window->minimumSizeHint().width();
        d.server.play(httpAnswer({}, {}, "500 " + QByteArray(5000, 'x')));
        d.query("mnuOptNew");
        QCOMPARE(d.window->minimumSizeHint().width(), narrowest);
    }
};

QTEST_MAIN(frmIntStatesTest)
#include "tst_frmIntStates.moc"
