#include "HttpRequest.h"

#include <QLocale>

#include <algorithm>

namespace {

/// A token of RFC 9110, section 5.6.2: a method or the name of a field.
bool isToken(const QByteArray& text)
{
    static const QByteArray marks("!#$%&'*+-.^_`|~");
    return !text.isEmpty() && std::all_of(text.cbegin(), text.cend(), [](char letter) {
        return (letter >= '0' && letter <= '9') || (letter >= 'a' && letter <= 'z') ||
               (letter >= 'A' && letter <= 'Z') || marks.contains(letter);
    });
}

bool isPrintable(const QByteArray& text)
{
    return std::all_of(text.cbegin(), text.cend(),
                       [](char letter) { return uchar(letter) >= 0x20 && uchar(letter) != 0x7f; });
}

/// The path of a request target; empty where it is neither a path nor an http URL.
QByteArray pathOf(QByteArray target)
{
    if (target.left(7).toLower() == "http://") {
        const qsizetype slash = target.indexOf('/', 7);
        target = slash < 0 ? QByteArray("/") : target.mid(slash);
    }
    if (!target.startsWith('/'))
        return {};
    const qsizetype query = target.indexOf('?');
    return query < 0 ? target : target.left(query);
}

bool readRequestLine(HttpRequest& request, bool& isVersion11, bool& isOtherVersion)
{
    const QList<QByteArray> words = request.line.split(' ');
    if (words.size() != 3 || !isToken(words.at(0)) || !isPrintable(words.at(1)))
        return false;
    const QByteArray& version = words.at(2);
    const auto isDigit = [](char letter) { return letter >= '0' && letter <= '9'; };
    if (version.size() != 8 || !version.startsWith("HTTP/") || version.at(6) != '.' ||
        !isDigit(version.at(5)) || !isDigit(version.at(7)))
        return false;
    isOtherVersion = version.at(5) != '1';
    isVersion11 = version.at(7) != '0';
    request.method = words.at(0);
    request.path = pathOf(words.at(1));
    // Other methods have targets of other forms, as in "OPTIONS *".
    return !request.path.isEmpty() || (request.method != "GET" && request.method != "HEAD");
}

/// Reads the header fields of `lines` into `request`.
bool readFields(const QList<QByteArray>& lines, bool isVersion11, HttpRequest& request)
{
    bool asksClose = false;
    bool asksKeepAlive = false;
    int hosts = 0;
    for (const QByteArray& line : lines) {
        const qsizetype colon = line.indexOf(':');
        // A name that begins with a blank would be a folded line, which nobody may send any more.
        if (colon < 1 || !isToken(line.left(colon)))
            return false;
        const QByteArray name = line.left(colon).toLower();
        const QByteArray value = line.mid(colon + 1).trimmed();
        if (value.contains('\0') || value.contains('\r'))
            return false;
        if (name == "host") {
            ++hosts;
        } else if (name == "connection") {
            for (const QByteArray& option : value.toLower().split(',')) {
                asksClose |= option.trimmed() == "close";
                asksKeepAlive |= option.trimmed() == "keep-alive";
            }
        } else if (name == "content-length") {
            bool isNumber = false;
            const qulonglong length = value.toULongLong(&isNumber);
            if (!isNumber)
                return false;
            request.hasBody |= length > 0;
        } else if (name == "transfer-encoding") {
            request.hasBody = true;
        } else if (name == "if-modified-since") {
            request.ifModifiedSince = fromHttpDate(value);
        }
    }
    if (hosts > 1 || (isVersion11 && hosts == 0))
        return false;
    request.keepAlive = !asksClose && (isVersion11 || asksKeepAlive);
    return true;
}

} // namespace

HttpRequest::Outcome HttpRequest::take(QByteArray& buffer, HttpRequest& request)
{
    request = {};
    qsizetype start = 0;
    while (start < buffer.size() && (buffer.at(start) == '\r' || buffer.at(start) == '\n'))
        ++start;
    buffer.remove(0, start);

    QList<QByteArray> lines;
    qsizetype next = 0;
    for (bool ended = false; !ended;) {
        const qsizetype feed = buffer.indexOf('\n', next);
        if (feed < 0 || feed >= maxHeadBytes)
            return buffer.size() > maxHeadBytes ? Outcome::tooLarge : Outcome::incomplete;
        QByteArray line = buffer.mid(next, feed - next);
        if (line.endsWith('\r'))
            line.chop(1);
        next = feed + 1;
        ended = line.isEmpty();
        if (!ended)
            lines << line;
    }
    buffer.remove(0, next);

    request.line = lines.takeFirst();
    bool isVersion11 = false;
    bool isOtherVersion = false;
    if (!readRequestLine(request, isVersion11, isOtherVersion))
        return Outcome::broken;
    if (isOtherVersion)
        return Outcome::version;
    return readFields(lines, isVersion11, request) ? Outcome::complete : Outcome::broken;
}

QByteArray httpDate(const QDateTime& moment)
{
    return QLocale::c()
        .toString(moment.toUTC(), QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"))
        .toLatin1();
}

QDateTime fromHttpDate(const QByteArray& text)
{
    const auto read = [](const QString& date, const QString& format) {
        const QDateTime local = QLocale::c().toDateTime(date, format);
        return QDateTime(local.date(), local.time(), Qt::UTC);
    };
    const QString date = QString::fromLatin1(text).simplified();
    QDateTime moment = read(date, QStringLiteral("ddd, dd MMM yyyy HH:mm:ss 'GMT'"));
    if (!moment.isValid())
        moment = read(date, QStringLiteral("ddd MMM d HH:mm:ss yyyy"));
    if (!moment.isValid()) {
        // The oldest form: its weekday cannot be checked before the century is known, and a year
        // that would lie over 50 years ahead is one of the past.
        moment =
            read(date.section(QStringLiteral(", "), 1), QStringLiteral("dd-MMM-yy HH:mm:ss 'GMT'"));
        if (moment.isValid() && moment.addYears(50) < QDateTime::currentDateTimeUtc())
            moment = moment.addYears(100);
    }
    return moment;
}
