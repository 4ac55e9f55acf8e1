#pragma once

#include <QByteArray>

class AnswerHead;

/// How a picture lies in the body of an answer: as it is, in chunks (RFC 9112, section 7.1), or as
/// the first part of a stream of pictures (multipart/x-mixed-replace, in the form of RFC 2046,
/// section 5.1). A request of HTTP/1.0 asks for neither of the two; cameras send them all the same.
class BodyFraming
{
public:
    /// As `head` says.
    void begin(const AnswerHead& head);

    /// The picture is the body.
    bool isPlain() const { return m_kind == Kind::Plain; }
    /// The body is chunked, whatever its chunks hold.
    bool isChunked() const { return m_kind == Kind::Chunked; }

    /// Whether the picture has come whole: the last chunk, or the first part. Each look goes on
    /// where the one before has ended: `body` may only grow. False for a plain body.
    bool isWhole(const QByteArray& body);

    /// The picture's bytes, as far as they have come.
    QByteArray picture(const QByteArray& body) const;

private:
    enum class Kind { Plain, Chunked, Multipart };

    bool nextChunk(const QByteArray& body);
    bool findPart(const QByteArray& body);
    QByteArray joinedChunks(const QByteArray& body) const;

    Kind m_kind = Kind::Plain;
    /// Of chunks: where the next begins.
    qsizetype m_at = 0;
    bool m_lastChunkCame = false;
    /// Of the first part: the line before it, where it begins, and where it ends; -1 where that is
    /// not known.
    QByteArray m_delimiter;
    qsizetype m_partStart = -1;
    qsizetype m_partEnd = -1;
    /// So far its end has been looked for.
    qsizetype m_searched = 0;
};
