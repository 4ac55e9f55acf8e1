// Pictures in chunks and in streams of pictures.

#include "network/AnswerHead.h"
#include "network/BodyFraming.h"
#include "support/Rows.h"

namespace {

const QByteArray Chunked = "Transfer-Encoding: Chunked";
const QByteArray Stream = "Content-Type: multipart/x-mixed-replace; boundary=frame";

/// The framing after `body` has come in pieces of `step` bytes, and after how many of them it was
/// whole; -1 for never.
struct Read
{
    Read(const QByteArray& header, const QByteArray& body, qsizetype step = 1)
    {
        framing.begin(AnswerHead("HTTP/1.1 200 OK\r\n" + header + "\r\n\r\n"));
        for (qsizetype came = 0; came < body.size() && wholeAt < 0;) {
            came = qMin(came + step, body.size());
            if (framing.isWhole(body.left(came)))
                wholeAt = came;
        }
        picture = framing.picture(wholeAt < 0 ? body : body.left(wholeAt));
    }

    BodyFraming framing;
    qsizetype wholeAt = -1;
    QByteArray picture;
};

} // namespace

class BodyFramingTest : public QObject
{
    Q_OBJECT
private slots:
    void pictures_data()
    {
        const Rows<QByteArray, QByteArray, QByteArray, bool> row("header", "body", "picture",
                                                                 "isWhole");
        row("plain", "Content-Type: image/jpeg", "4\r\nbody\r\n0\r\n\r\n", "4\r\nbody\r\n0\r\n\r\n",
            false);
        row("one chunk", Chunked, "4\r\nbody\r\n0\r\n\r\n", "body", true);
        row("several", Chunked, "4\r\nbody\r\nA;x=1\r\n0123456789\r\n0\r\n\r\n", "body0123456789",
            true);
        row("line feeds alone", Chunked, "4\nbody\n0\n\n", "body", true);
        row("with a trailer", Chunked, "4\r\nbody\r\n0\r\nDate: x\r\n\r\n", "body", true);
        row("without the last", Chunked, "4\r\nbody\r\n", "body", false);
        row("cut in a chunk", Chunked, "4\r\nbody\r\n8\r\ncut", "bodycut", false);
        row("a size that is none", Chunked, "4\r\nbody\r\nxyz\r\n", "body", false);
        row("a negative size", Chunked, "-4\r\nbody\r\n", "", false);
        row("a huge size", Chunked, "7FFFFFFFFFFFFFFF\r\nbody", "body", false);
        row("empty", Chunked, "0\r\n\r\n", "", true);
        row("a stream with lengths", Stream,
            "--frame\r\nContent-Type: image/jpeg\r\nContent-Length: 4\r\n\r\nbody\r\n--frame\r\n",
            "body", true);
        row("without lengths", Stream,
            "--frame\r\nContent-Type: image/jpeg\r\n\r\nbody\r\nmore\r\n--frame\r\nContent",
            "body\r\nmore", true);
        row("a delimiter of its own", Stream, "\r\n----other\n\nbody\n----other--\n", "body", true);
        row("the first part is cut", Stream, "--frame\r\nContent-Length: 9\r\n\r\nbody", "body",
            false);
        row("the first head is cut", Stream, "--frame\r\nContent-Le", "--frame\r\nContent-Le",
            false);
        row("no delimiter", Stream, "body", "body", false);
    }

    void pictures()
    {
        QFETCH(QByteArray, header);
        QFETCH(QByteArray, body);
        for (const qsizetype step : {qsizetype(1), qsizetype(7), body.size()}) {
            const Read read(header, body, step);
            QTEST(read.picture, "picture");
            QTEST(read.wholeAt >= 0, "isWhole");
        }
    }

    void aStreamIsWholeWithItsFirstPicture()
    {
        const QByteArray part = "--frame\r\nContent-Length: 4\r\n\r\nbody";
        QCOMPARE(Read(Stream, part + "\r\n--frame\r\nContent-Length: 4\r\n\r\nnext").wholeAt,
                 part.size());
    }
};

QTEST_GUILESS_MAIN(BodyFramingTest)
#include "tst_BodyFraming.moc"
