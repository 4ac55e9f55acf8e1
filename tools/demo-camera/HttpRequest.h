#pragma once

#include <QByteArray>
#include <QDateTime>

/// What a server of one picture needs to know of an HTTP/1.0 or HTTP/1.1 request (RFC 9112).
struct HttpRequest
{
    /// A request line and its header fields together are no longer than this, in bytes.
    static constexpr qsizetype maxHeadBytes = 8192;

    QByteArray line;        ///< the request line as it came, for the log
    QByteArray method;      ///< case matters: "GET"
    QByteArray path;        ///< without query, nor scheme and host; empty where the target is none
    bool keepAlive = false; ///< the client wants the connection kept open
    bool hasBody = false;   ///< a body follows that nobody will read
    QDateTime ifModifiedSince; ///< UTC; invalid where there was none or none that is a date

    enum class Outcome {
        incomplete, ///< more bytes are needed; nothing was taken
        complete,   ///< the head was taken off the buffer
        broken,     ///< no HTTP request: answer 400 and close
        tooLarge,   ///< over maxHeadBytes: answer 431 and close
        version,    ///< HTTP of another major version: answer 505 and close
    };

    /// Takes one request head off the front of `buffer`, with the empty lines before it. Lines
    /// may end in LF alone. Of a broken request only `line` is sure to be set.
    static Outcome take(QByteArray& buffer, HttpRequest& request);
};

/// `moment` as an HTTP date of today's form: "Sun, 06 Nov 1994 08:49:37 GMT".
QByteArray httpDate(const QDateTime& moment);

/// The moment of an HTTP date in any of the three forms of RFC 9110, section 5.6.7, in UTC;
/// invalid where `text` is none.
QDateTime fromHttpDate(const QByteArray& text);
