// A good answer that is cut, or split in two packets, at every one of its bytes.

#include "picture/Still.h"
#include "support/OddPictures.h"
#include "support/Pictures.h"
#include "support/ScriptedServer.h"
#include "support/ShownCamera.h"
#include "support/TimeSeam.h"

#include "network/TcpClient.h"

namespace {

const QStringList NotPicture{"error Not a picture", "  Error: Not a picture."};
const QStringList NotFound{"error File not found", "  Error: File not found."};
const QStringList NewImage{"change http://127.0.0.1/a.jpg", "done",
                           "  Getting Image [100% of 1kb]"};

QStringList all(const Outcome& outcome)
{
    return outcome.told + QStringList{outcome.status};
}

/// Some 640 bytes.
QByteArray smallPicture(const QColor& colour)
{
    return encodedPicture({16, 16}, colour);
}

/// Hardly more than a first chunk carries.
QByteArray answerOfTwoChunks()
{
    const QByteArray small = smallPicture(Qt::red);
    const QByteArray header = pictureAnswer(small).chopped(small.size());
    const auto missing = TcpClient::PacketBytes - header.size() - small.size();
    const QByteArray padded =
        small.left(2) + odd::jpegSegment(0xFE, QByteArray(missing, 'c')) + small.mid(2);
    return pictureAnswer(padded);
}

} // namespace

class FetchEveryByteTest : public QObject
{
    Q_OBJECT
private slots:
    void aCloseAtEveryByteEndsAsDefined()
    {
        const QByteArray body = smallPicture(Qt::red);
        const QByteArray answer = pictureAnswer(body);
        const QByteArray good = smallPicture(Qt::blue);
        const auto headerSize = answer.size() - body.size();
        constexpr int protocolName = 4; // "HTTP"
        constexpr int statusCode = 12;  // and its version, a blank and "200"

        ShownCamera c;
        c.cam.resize(240, 180);
        c.cam.setNewOnly(false);
        ScriptedServer server;
        server.listen();
        for (qsizetype cut = 0; cut <= answer.size(); ++cut) {
            server.play(answer.left(cut));
            server.play(pictureAnswer(good));
        }
        QStringList ways;
        for (qsizetype cut = 0; cut <= answer.size(); ++cut) {
            const QByteArray at = "cut at " + QByteArray::number(cut);
            QStringList expected = NotPicture;
            if (cut >= protocolName && cut < statusCode)
                expected = NotFound;
            // What is enough of a picture is the decoder's to say.
            else if (cut > headerSize && !Still::fromBytes(body.left(cut - headerSize)).isNull())
                expected = NewImage;

            const Outcome outcome = c.fetch(server.url());
            QVERIFY2(all(outcome) == expected, at + ": " + all(outcome).join(", ").toUtf8());
            QVERIFY2(!c.busy(), at);
            QCOMPARE(all(c.fetch(server.url())), NewImage);
            QVERIFY2(c.picture() == good, at);
            if (ways.isEmpty() || ways.last() != outcome.status)
                ways << outcome.status;
        }
        QCOMPARE(ways, (QStringList{NotPicture.last(), NotFound.last(), NotPicture.last(),
                                    NewImage.last()}));
        c.cam.resize(700, 500);
        QCOMPARE(c.trouble(), "");
    }

    void aSplitAtEveryByteGivesTheSameImage()
    {
        const QByteArray answer = answerOfTwoChunks();
        QVERIFY(answer.size() > TcpClient::PacketBytes);
        const QByteArray picture = answer.mid(answer.indexOf("\r\n\r\n") + 4);

        ShownCamera c;
        c.cam.resize(240, 180);
        c.cam.setNewOnly(false);
        ScriptedServer server;
        server.listen();
        for (qsizetype split = 1; split < answer.size(); ++split)
            server.play(Script{{answer.left(split), answer.mid(split)}, Script::End::KeepOpen});
        QSignalSpy silence(&c.timer("tmrOut"), &Timer::Tick);
        for (qsizetype split = 1; split < answer.size(); ++split) {
            const QByteArray at = "split at " + QByteArray::number(split);
            const Outcome outcome = c.fetch(server.url());
            QVERIFY2(all(outcome) == NewImage, at + ": " + all(outcome).join(", ").toUtf8());
            QVERIFY2(c.picture() == picture, at);
        }
        QCOMPARE(silence.count(), 0);
        c.cam.resize(700, 500);
        QCOMPARE(c.trouble(), "");
    }
};

QTEST_MAIN(FetchEveryByteTest)
#include "tst_FetchEveryByte.moc"
