#include "fuzz/Fuzzing.h"

#include "network/BodyFraming.h"
#include "viewer/fetch/FetchOutcome.h"
#include "viewer/fetch/FetchProtocol.h"

namespace {

using Verdict = FetchAnswer::Verdict;

/// An answer, in chunks of whatever size.
void takeAnswer(FuzzedDataProvider& input, const QByteArray& answer)
{
    FetchAnswer fetch;
    fetch.reset();
    qsizetype at = 0;
    Verdict verdict = Verdict::Receiving;
    while (verdict == Verdict::Receiving && at < answer.size()) {
        const auto count = input.ConsumeIntegralInRange<qsizetype>(1, answer.size() - at);
        verdict = fetch.take(answer.sliced(at, count));
        at += count;
        if (verdict == Verdict::Receiving)
            REQUIRE(fetch.progressText().startsWith(u"  Getting Image ["));
    }
    REQUIRE(fetch.completeText().startsWith(u"  Getting Image ["));
    REQUIRE(fetch.FetchedBody().size() <= answer.size());
    REQUIRE(!fetch.LastModified().contains(u'\n'));
    fetch.isIncomplete();
    fetch.head().locationFrom(QStringLiteral("http://cam.example/now.jpg"));
    const QByteArray type = fetch.head().value("Content-Type");
    const QByteArray body = fetch.takeBody();
    const QByteArray picture = fetch.pictureIn(body);
    REQUIRE(picture.size() <= body.size());
    REQUIRE(fetch.comparedBytes(body).size() <= body.size());
    whatWasSent(picture, type);
}

/// A framed body gives the same picture however it comes.
void frame(FuzzedDataProvider& input, const QByteArray& answer)
{
    const AnswerHead head(answer);
    const QByteArray body = answer.sliced(std::min(head.size(), answer.size()));
    BodyFraming atOnce;
    atOnce.begin(head);
    const bool whole = atOnce.isWhole(body);
    BodyFraming inPieces;
    inPieces.begin(head);
    bool wholeBefore = false;
    for (qsizetype at = 0; at < body.size();) {
        at += input.ConsumeIntegralInRange<qsizetype>(1, body.size() - at);
        const bool now = inPieces.isWhole(body.first(at));
        REQUIRE(now || !wholeBefore);
        wholeBefore = now;
    }
    REQUIRE(inPieces.isWhole(body) == whole);
    REQUIRE(inPieces.picture(body) == atOnce.picture(body));
}

} // namespace

/// Whatever a camera's server sends is read to its end, and keeps its bounds.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    FuzzedDataProvider input(data, size);
    // The sizes of the chunks stand at the input's end.
    const QByteArray answer = QByteArray::fromStdString(input.ConsumeRandomLengthString(size));
    takeAnswer(input, answer);
    frame(input, answer);

    const FetchTarget target = fetchTargetOf(QString::fromLatin1(answer.left(200)));
    for (const QChar character : target.sentPath())
        REQUIRE(character > u' ' && character < u'\x7F');
    const QByteArray request =
        buildRequest(QLatin1StringView("GET ") + target.sentPath(), target.host,
                     QString::fromLatin1(answer.left(100)), target.extraHeader);
    REQUIRE(request.endsWith("\r\n\r\n"));
    REQUIRE(request.indexOf("\r\n\r\n") == request.size() - 4);
    return 0;
}
