#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

#include <optional>

/// The head of an HTTP answer (RFC 9112, sections 4 and 5), read as leniently as browsers read it:
/// lines end with CR LF or with LF alone. Never fails; what is odd is not there.
///
/// What becomes of a picture's answer is FetchAnswer's to decide, which looks for headers in its
/// own way. This is what a person is told about it, and how the directory's answer is read.
class AnswerHead
{
public:
    /// No head at all.
    AnswerHead() = default;
    /// Reads the head at the start of `answer`. One that does not begin with "HTTP/" has none.
    explicit AnswerHead(const QByteArray& answer);

    bool isNull() const { return m_size == 0; }

    /// Bytes of the head, its empty line included; of an answer that ends before that, all. 0
    /// without a head.
    qsizetype size() const { return m_size; }

    /// The status code; 0 where there is none.
    int code() const { return m_code; }
    /// Code and reason as the server wrote them, on one line: "503 Service Unavailable".
    QString status() const { return m_status; }

    /// The value of the first header of that name, in whatever letter case, without the blanks
    /// around it; empty where there is none.
    QByteArray value(const QByteArray& name) const;

    /// The body's length in bytes as Content-Length gives it; nothing where that is no number.
    std::optional<qint64> contentLength() const;

    /// Where Location leads, seen from `address` (with its scheme; RFC 3986, section 5): an
    /// absolute http or https address. Empty where there is none, or it leads elsewhere.
    QString locationFrom(const QString& address) const;

private:
    struct Header
    {
        QByteArray name;
        QByteArray value;
    };

    void readStatus(const QByteArray& line);

    QList<Header> m_headers;
    QString m_status;
    qsizetype m_size = 0;
    int m_code = 0;
};
