#include "network/BodyFraming.h"

#include "network/AnswerHead.h"
#include "network/HeaderEnd.h"

#include <algorithm>
#include <optional>

namespace {

struct Chunk
{
    /// Where its bytes begin, and how many there are; 0 for the last one.
    qsizetype start;
    qsizetype size;
};

/// The line that opens a chunk is a few characters long, with an extension that nobody uses.
constexpr qsizetype LongestChunkLine = 1'024;

/// The chunk whose size stands at `at`; nothing where that line is not there yet or says no size.
std::optional<Chunk> chunkAt(QByteArrayView body, qsizetype at)
{
    const auto lineEnd = body.indexOf('\n', at);
    if (lineEnd < 0 || lineEnd - at > LongestChunkLine)
        return {};
    const QByteArrayView line = body.sliced(at, lineEnd - at);
    const auto extension = line.indexOf(';');
    bool isNumber = false;
    const auto size =
        line.first(extension < 0 ? line.size() : extension).trimmed().toLongLong(&isNumber, 16);
    if (!isNumber || size < 0)
        return {};
    return Chunk{lineEnd + 1, static_cast<qsizetype>(size)};
}

/// Behind the line end that follows a chunk.
qsizetype behind(const QByteArray& body, const Chunk& chunk)
{
    auto at = chunk.start + chunk.size;
    if (at < body.size() && body[at] == '\r')
        ++at;
    if (at < body.size() && body[at] == '\n')
        ++at;
    return at;
}

} // namespace

void BodyFraming::begin(const AnswerHead& head)
{
    *this = {};
    if (head.value("Transfer-Encoding").toLower().contains("chunked"))
        m_kind = Kind::Chunked;
    else if (head.value("Content-Type").toLower().startsWith("multipart/"))
        m_kind = Kind::Multipart;
}

bool BodyFraming::isWhole(const QByteArray& body)
{
    switch (m_kind) {
    case Kind::Chunked:
        while (nextChunk(body)) {
        }
        return m_lastChunkCame;
    case Kind::Multipart:
        return findPart(body);
    case Kind::Plain:
        break;
    }
    return false;
}

bool BodyFraming::nextChunk(const QByteArray& body)
{
    const auto chunk = m_lastChunkCame ? std::nullopt : chunkAt(body, m_at);
    // One whose line end has not come may lack bytes, too.
    if (!chunk || (chunk->size > 0 && (chunk->size >= body.size() - chunk->start ||
                                       body.indexOf('\n', chunk->start + chunk->size) < 0)))
        return false;
    m_lastChunkCame = chunk->size == 0;
    m_at = behind(body, *chunk);
    return true;
}

/// The delimiter is read off the body: what the head says of it is often wrong.
bool BodyFraming::findPart(const QByteArray& body)
{
    if (m_partStart < 0) {
        const auto dashes = body.indexOf("--");
        const auto lineEnd = dashes < 0 ? -1 : body.indexOf('\n', dashes);
        const auto start = lineEnd < 0 ? -1 : headerEnd(body, lineEnd + 1);
        if (start < 0)
            return false;
        m_delimiter = body.mid(dashes, lineEnd - dashes).trimmed();
        m_partStart = m_searched = start;
        const AnswerHead part("HTTP/1.0 200\n" + body.mid(lineEnd + 1, start - lineEnd - 1));
        if (const auto length = part.contentLength())
            m_partEnd = start + static_cast<qsizetype>(*length);
    }
    if (m_partEnd < 0) {
        const auto next = body.indexOf("\n" + m_delimiter, m_searched);
        if (next < 0) {
            m_searched = std::max(m_partStart, body.size() - m_delimiter.size());
            return false;
        }
        m_partEnd = next > m_partStart && body[next - 1] == '\r' ? next - 1 : next;
    }
    return body.size() >= m_partEnd;
}

QByteArray BodyFraming::joinedChunks(const QByteArray& body) const
{
    QByteArray joined;
    joined.reserve(body.size());
    qsizetype at = 0;
    for (auto chunk = chunkAt(body, at); chunk && chunk->size > 0; chunk = chunkAt(body, at)) {
        const auto size = std::min(chunk->size, body.size() - chunk->start);
        joined.append(body.constData() + chunk->start, size);
        if (chunk->size >= body.size() - chunk->start)
            break;
        at = behind(body, *chunk);
    }
    return joined;
}

QByteArray BodyFraming::picture(const QByteArray& body) const
{
    switch (m_kind) {
    case Kind::Chunked:
        return joinedChunks(body);
    case Kind::Multipart:
        if (m_partStart >= 0)
            return body.mid(m_partStart, m_partEnd < 0 ? -1 : m_partEnd - m_partStart);
        break;
    case Kind::Plain:
        break;
    }
    return body;
}
