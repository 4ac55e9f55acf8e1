#pragma once

#include "network/AnswerHead.h"
#include "network/BodyFraming.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Where a camera address leads, as one fetch needs it.
struct FetchTarget
{
    /// Host with its port suffix, as the address gives it, after the "https://" of a secure one;
    /// what the status line shows.
    QString hostPart;
    /// Host alone; an IPv6 address keeps its brackets.
    QString host;
    /// Asked over TLS.
    bool secure = false;
    /// Text after the host's colon; where there is none "80", or "443" for a secure address.
    QString port;
    /// From the first "/" on, query included; "/" where the address has no path.
    QString requestPath;
    /// One request header line without line end, or empty.
    QString extraHeader;

    /// The first field of the image's history key: host without port, and path; the whole address
    /// with scheme and port where it is secure. The scheme is in lower case, whatever the user
    /// wrote, so that both ways of writing it are one camera.
    QString address() const { return (secure ? hostPart : host) + requestPath; }

    /// requestPath as it goes out: its blanks, control characters and letters beyond ASCII
    /// percent-encoded as UTF-8, and without a fragment ("#" and what follows). The rest is as
    /// given, what is percent-encoded already included.
    QString sentPath() const;
};

/// Takes a camera key (without "http://") apart. Never fails: what is odd is fetched as it is.
FetchTarget fetchTargetOf(const QString& cameraKey);

/// `port` as a number from 1 to 65535, or 0 where it is none.
int portNumber(const QString& port);

/// The last three characters of `requestPath` where they are "bmp", "gif" or "jpg" in whatever
/// case (kept as the path has them), else "jpg".
QString imageExtensionOf(const QString& requestPath);

/// The HTTP/1.0 request (RFC 1945) for one image, ready to be sent.
/// `requestStart` is "GET " and the path; `host` goes out without a port; `ifModifiedSince` and
/// `extraHeader` have no line where they are empty. A line break inside any of them ends it
/// there, so that none can bring a second header line.
QByteArray buildRequest(const QString& requestStart, const QString& host,
                        const QString& ifModifiedSince, const QString& extraHeader);

/// The answer to one image request, fed chunk by chunk; knows neither socket nor window.
///
/// It reads headers as cameras' servers have long been read here: everything is looked for in the
/// first chunk, by name, wherever it stands, and at fixed distances behind the name.
class FetchAnswer
{
public:
    /// Stands for the body's length where the answer gives none.
    static constexpr qint32 UnknownLength = 10'000'000;
    /// A longer body is given up (it ends as a body that is no picture does).
    static constexpr qsizetype MaxBodyBytes = 64 * 1024 * 1024;

    enum class Verdict {
        /// More is to come; progressText() has changed.
        Receiving,
        /// The last announced byte has come.
        Complete,
        /// Answered 302: redirectUrl() says where to.
        Redirect,
        /// Answered 304.
        NotModified,
        /// Answered anything else that is no picture.
        NotFound,
        /// The body has passed MaxBodyBytes.
        TooLong,
    };

    /// Ready for a new answer.
    void reset();
    /// Drops the body alone, as the start of a new temporary file does.
    void emptyBody() { m_fetchedBody.clear(); }

    /// Reads the next chunk.
    Verdict take(const QByteArray& chunk);

    /// "  Getting Image [40% of 12kb]", or without a known length "  Getting Image [ 5kb ]".
    QString progressText() const;
    /// The text of the finished fetch: "  Getting Image [100% of 12kb]".
    QString completeText() const;

    const QByteArray& FetchedBody() const { return m_fetchedBody; }
    /// Gives the body away, in no more memory than it needs.
    QByteArray takeBody();
    /// The part of the last chunk that belongs to the body.
    const QByteArray& lastBodyPart() const { return m_lastBodyPart; }
    bool HeaderDone() const { return m_headerDone; }
    /// The head of the answer, for what a person is told about it; none before the first chunk.
    const AnswerHead& head() const { return m_head; }
    /// Whether fewer bytes of body have come than the answer announces, or not all chunks, or a
    /// part of the first picture of a stream alone.
    bool isIncomplete() const;
    /// The picture's bytes in `body`, this answer's body: behind a head that counts as body, out of
    /// its chunks, or the first of a stream.
    QByteArray pictureIn(const QByteArray& body) const;
    /// What tells this answer's picture from the next one's: its bytes; of a body that begins with
    /// the head, all of it.
    QByteArray comparedBytes(const QByteArray& body) const;
    /// Where a redirect leads to, be it an empty address; nothing where its location is too short
    /// or has no end.
    const std::optional<QString>& redirectUrl() const { return m_redirectUrl; }

    /// The Last-Modified text that belongs to the address: the history's before the answer, the
    /// answer's own (or none) after its first chunk.
    QString LastModified() const { return m_lastModified; }
    void setLastModified(const QString& text) { m_lastModified = text; }

private:
    Verdict takeFirst(const QByteArray& chunk);
    void readRedirect(const QByteArray& chunk, qsizetype location);
    void readLength(const QByteArray& chunk, const QByteArray& lower);
    Verdict addBody(const QByteArray& part);

    /// Where the body begins in what counts as body.
    qsizetype headSize() const { return m_headInBody ? m_head.size() : 0; }

    AnswerHead m_head;
    BodyFraming m_framing;
    /// The framed picture has come whole.
    bool m_isWhole = false;
    bool m_headerDone = false;
    /// The head counts as body, too.
    bool m_headInBody = false;
    /// The body's length in bytes, and how many of them have come.
    qint32 m_expected = 0;
    qint32 m_received = 0;
    QByteArray m_fetchedBody;
    QByteArray m_lastBodyPart;
    QString m_lastModified;
    std::optional<QString> m_redirectUrl;
};
