#include "directory/DirectoryAnswer.h"
#include "network/HTTP.h"
#include "support/Cost.h"
#include "support/Rows.h"

namespace {

const QByteArray Header = "HTTP/1.0 200 OK\r\nContent-Type: text/plain\r\n\r\n";

const QByteArray Chunked = "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n";

/// The cameras as "category|name|key"; "none" where the directory found none.
QStringList read(const QByteArray& answer)
{
    const auto cameras = DirectoryAnswer(answer).cameras();
    if (!cameras)
        return {"none"};
    QStringList rows;
    for (const CameraRecord& one : *cameras)
        rows << one.category + '|' + one.name + '|' + one.key;
    return rows;
}

} // namespace

class DirectoryAnswerTest : public QObject
{
    Q_OBJECT
private slots:
    void takesTriplesFromTheBody_data()
    {
        const Rows<QByteArray, QStringList> row("answer", "rows");
        const QByteArray one = "Cities\xFFRome\xFFrome.example/a.jpg";
        const QString rome = "Cities|Rome|rome.example/a.jpg";
        row("one camera", Header + one, {rome});
        row("two cameras", Header + one + "\377B\377C\377d/\x01X: y", {rome, "B|C|d/\x01X: y"});
        row("a line end", Header + one + "\r\n", {rome});
        row("half a line end", Header + one + "\n", {rome});
        row("only one line end goes", Header + "a\377b\377c\r\n\r\n", {"a|b|c\r\n"});
        row("a second empty line belongs to the body", Header + "a\r\n\r\n\377b\377c",
            {"a\r\n\r\n|b|c"});
        row("cut in the name", Header + one + "\377B\377C", {rome});
        row("cut in the category", Header + one + "\377B", {rome});
        row("cut behind a separator", Header + one + "\xFF", {rome});
        row("an empty key", Header + "a\377b\377", {"a|b|"});
        row("no body", Header, {});
        row("a line end alone", Header + "\r\n", {});
        row("nothing at all", "", {});
        row("html", Header + "<html><body>404</body></html>", {});
        row("no header: from the fourth byte on", "123" + one, {rome});
        row("a header with bare line feeds is none", "xyza\377b\n\n\377c", {"a|b\n\n|c"});
        row("shorter than that", "12", {});
        row("exactly that", "123", {});
        row("bare line feeds", "HTTP/1.0 200 OK\nX: y\n\n" + one + "\n", {rome});
        row("in chunks",
            Chunked + "7\r\nCities\xFF\r\n17\r\nRome\xFFrome.example/a.jpg\r\n0\r\n\r\n", {rome});
        row("no luck in chunks", Chunked + "7\r\nNo Luck\r\n6\r\n090877\r\n0\r\n\r\n", {"none"});
        row("the parts of a stream are its body",
            "HTTP/1.0 200 OK\r\nContent-Type: multipart/mixed\r\n\r\n--x\r\n\r\na\377b\377c",
            {"--x\r\n\r\na|b|c"});
        row("a byte order mark", Header + "\xEF\xBB\xBF" + one, {rome});
        row("a byte order mark in chunks",
            Chunked + "1\r\n\xEF\r\n9\r\n\xBB\xBF"
                      "Cities\xFF\r\n"
                      "17\r\nRome\xFFrome.example/a.jpg\r\n0\r\n\r\n",
            {rome});
        row("a byte order mark alone", Header + "\xEF\xBB\xBF", {});
        row("half a byte order mark is text", Header + "\xEF\xBB" + one,
            {QStringLiteral("\u00EF\u00BBCities|Rome|rome.example/a.jpg")});
        row("a second one is text", Header + "\xEF\xBB\xBF\xEF\xBB\xBF" + one,
            {QStringLiteral("\uFEFFCities|Rome|rome.example/a.jpg")});
        row("no luck behind a byte order mark", Header + "\xEF\xBB\xBFNo Luck090877", {"none"});
        row("no luck", Header + "No Luck090877", {"none"});
        row("no luck anywhere", Header + one + "<No Luck090877>\r\n", {"none"});
        row("no luck in the header is nothing", "X: No Luck090877\r\n\r\n" + one, {rome});
        row("no luck in other letters is nothing", Header + "no luck090877", {});
    }

    void takesTriplesFromTheBody()
    {
        QFETCH(QByteArray, answer);
        QTEST(read(answer), "rows");
    }

    void faultsAreFound_data()
    {
        const Rows<QByteArray, std::optional<DirectoryFault>> row("answer", "fault");
        const auto good = [&](const char* name, const QByteArray& answer) {
            row(name, answer, std::optional<DirectoryFault>());
        };
        const auto status = [&](const QByteArray& line, const char* text) {
            row(line.toStdString(), line + "\r\n\r\n",
                DirectoryFault{DirectoryFault::Kind::OtherStatus, text});
        };
        const auto incomplete = [&](const char* name, const QByteArray& answer) {
            row(name, answer, DirectoryFault{DirectoryFault::Kind::Incomplete});
        };
        good("an answer", Header + "a\377b\377c");
        good("no body", Header);
        row("nothing at all", "", DirectoryFault{DirectoryFault::Kind::Nothing});
        incomplete("no end of a head that announces nothing", "HTTP/1.0 200 OK\r\nX: y");
        good("no head", "a\377b\377c");
        good("no head, a header of that name", "Content-Length: 9\r\n\r\na");
        good("no code", "HTTP/1.0 fine\r\n\r\n");
        good("as long as announced", "HTTP/1.0 200 OK\r\nContent-Length: 3\r\n\r\nabc");
        good("longer", "HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nabc");
        good("a length that is none", "HTTP/1.0 200 OK\r\nContent-Length: x\r\n\r\n");
        good("chunks", Chunked + "1\r\na\r\n0\r\n\r\n");
        status("HTTP/1.0 404 Not Found", "404 Not Found");
        status("HTTP/1.1 204", "204");
        status("HTTP/1.1 500 \x1b[1m", "500 [1m");
        incomplete("shorter", "HTTP/1.0 200 OK\r\nContent-Length: 4\r\n\r\nabc");
        incomplete("shorter, bare line feeds", "HTTP/1.0 200 OK\nContent-Length: 4\n\nabc");
        incomplete("no end of the head", "HTTP/1.0 200 OK\r\nContent-Length: 4\r\nabcdefg");
        incomplete("in its first word", "HTT");
        incomplete("behind its first word", "HTTP/");
        incomplete("no end of a chunked answer's head", Chunked.chopped(2));
        incomplete("a chunk without a size", Chunked + "x\r\na\r\n0\r\n\r\n");
        good("other bytes than a head", "HTML");
        incomplete("no last chunk", Chunked + "1\r\na\r\n");
        incomplete("no chunk", Chunked);
    }

    void faultsAreFound()
    {
        QFETCH(QByteArray, answer);
        QFETCH(std::optional<DirectoryFault>, fault);
        QVERIFY(DirectoryAnswer(answer).fault() == fault);
    }

    void textIsReadFieldByField()
    {
        // One field in the code page, one in UTF-8.
        QCOMPARE(read(Header + "Z\xFCrich\xFF\xE6\x9D\xB1\xE4\xBA\xAC\xFFk"),
                 QStringList{QString::fromUtf8("Z\u00fcrich|\u6771\u4eac|k")});
    }

    void aFloodIsBounded_data()
    {
        const Rows<QByteArray, qsizetype> row("body", "rows");
        constexpr qsizetype size = 64 * 1024 * 1024;
        row("separators only", QByteArray(size, '\xFF'), MostFoundCameras);
        row("tiny triples", QByteArray("a\377b\377c\377").repeated(size / 6), MostFoundCameras);
        row("one field", QByteArray(size, 'x'), qsizetype(0));
        row("as many as may be",
            QByteArray("a\377b\377c\377").repeated(MostFoundCameras).chopped(1), MostFoundCameras);
        row("one more", QByteArray("a\377b\377c\377").repeated(MostFoundCameras + 1).chopped(1),
            MostFoundCameras);
    }

    void aFloodOfChunksIsBounded()
    {
        const double times = growth(HTTP::MaxAnswerBytes / 6 / 10, [](int chunks) {
            const DirectoryAnswer answer(Chunked + QByteArray("1\r\na\r\n").repeated(chunks));
            QVERIFY(answer.fault());
            QCOMPARE(answer.cameras()->size(), 0);
        });
        qInfo("ten times as many at %.1f times the cost", times);
        QVERIFY(times < MostGrowth);
    }

    void aFloodIsBounded()
    {
        QFETCH(QByteArray, body);
        const auto cameras = DirectoryAnswer(Header + body).cameras();
        QVERIFY(cameras);
        QTEST(cameras->size(), "rows");
        const double times =
            timesTheCost([&] { DirectoryAnswer(Header + body).cameras(); }, decodeTwelveMegapixels);
        qInfo("%.2f times the cost of a large picture", times);
        QVERIFY(times < 20);
    }
};

QTEST_GUILESS_MAIN(DirectoryAnswerTest)
#include "tst_DirectoryAnswer.moc"
