#include "viewer/fetch/FetchProtocol.h"

#include "cameras/CameraKey.h"
#include "network/HeaderEnd.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"

#include <QStringList>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Distances are counted from the first letter of a header's name: the name with its colon, one
/// blank, and for a location also the seven characters of "http://".
constexpr qsizetype LocationSkip = 17;
/// A secure location keeps its scheme.
constexpr qsizetype SecureLocationSkip = 10;
constexpr qsizetype LastModifiedSkip = 15;
/// One past the blank that is expected behind the colon. Kept: a length that follows its colon at
/// once loses its first digit.
constexpr qsizetype ContentLengthSkip = 16;
/// Positions of the length's value were always held in 16 bits, counted from 1.
constexpr qsizetype MaxLengthPosition = 32767;
/// An announced length is only a server's word: memory is set aside for so much of it.
constexpr qsizetype MaxReservedBytes = 4 * 1024 * 1024;

/// A header's value as text: ended by a line break, which a lone CR or LF is to others, and without
/// what would end a field of a history key or begin an extra header line in a camera key.
QString headerText(const QByteArray& value)
{
    return cleanInput(firstLineOf(fromDisk(value)), false);
}

/// Whether the header "location:" at `location` leads to a secure address, after exactly one blank.
bool isSecureLocation(const QByteArray& chunk, qsizetype location)
{
    const auto value = location + SecureLocationSkip;
    return value < chunk.size() && chunk[value - 1] == ' ' &&
           isSecureAddress(QString::fromLatin1(chunk.mid(value, SecureScheme.size())));
}

/// Rounded with ties to even. Figures that outgrow 16 bits are shown in full.
QString rounded(double value)
{
    return QString::number(static_cast<qint64>(std::nearbyint(value)));
}

} // namespace

QString FetchTarget::sentPath() const
{
    const QString path = requestPath.left(requestPath.indexOf(u'#'));
    QString sent;
    sent.reserve(path.size());
    // By whole characters: half of a surrogate pair comes as the replacement character.
    for (const uint character : path.toUcs4()) {
        const char32_t one = character;
        const QString text = QString::fromUcs4(&one, 1);
        sent += one > U' ' && one < U'\x7F'
                    ? text
                    : QString::fromLatin1(text.toUtf8().toPercentEncoding());
    }
    return sent;
}

FetchTarget fetchTargetOf(const QString& cameraKey)
{
    const auto [address, extraHeader] = splitCameraKey(cameraKey);
    FetchTarget target;
    target.extraHeader = extraHeader;
    target.hostPart = hostPartOf(address);
    target.requestPath = address.mid(target.hostPart.size());
    if (target.requestPath.isEmpty())
        target.requestPath = u"/"_s;

    target.secure = isSecureAddress(address);
    const QString host = target.secure ? target.hostPart.mid(SecureScheme.size()) : target.hostPart;
    // The colons inside an IPv6 address's brackets separate no port.
    const auto bracket = host.startsWith(u'[') ? host.indexOf(u']') : -1;
    const auto colon = host.indexOf(u':', std::max<qsizetype>(bracket, 0));
    if (colon < 0) {
        target.host = host;
        target.port = target.secure ? u"443"_s : u"80"_s;
    } else {
        target.host = host.left(colon);
        target.port = host.mid(colon + 1);
    }
    return target;
}

int portNumber(const QString& port)
{
    bool isNumber = false;
    const int number = port.trimmed().toInt(&isNumber);
    return isNumber && number >= 1 && number <= 65535 ? number : 0;
}

QString imageExtensionOf(const QString& requestPath)
{
    const QString last = requestPath.right(3);
    for (const auto known : {"bmp"_L1, "gif"_L1, "jpg"_L1}) {
        if (last.compare(known, Qt::CaseInsensitive) == 0)
            return last;
    }
    return u"jpg"_s;
}

QByteArray buildRequest(const QString& requestStart, const QString& host,
                        const QString& ifModifiedSince, const QString& extraHeader)
{
    QStringList lines;
    lines << firstLineOf(requestStart) + " HTTP/1.0"_L1;
    if (const auto since = firstLineOf(ifModifiedSince); !since.isEmpty())
        lines << "if-Modified-Since: "_L1 + since; // kept: with a lower-case "if"
    lines << u"Connection: Keep-Alive"_s;
    lines << u"User-Agent: Default"_s;
    lines << "Host: "_L1 + firstLineOf(host);
    lines << u"Accept: */*"_s;
    lines << u"Accept-Language: en"_s;
    if (const auto extra = firstLineOf(extraHeader); !extra.isEmpty())
        lines << extra;

    QByteArray request;
    for (const auto& line : lines)
        request += toDisk(line) + "\r\n";
    return request + "\r\n";
}

void FetchAnswer::reset()
{
    m_head = {};
    m_framing = {};
    m_isWhole = false;
    m_headerDone = false;
    m_headInBody = false;
    m_expected = m_received = 0;
    m_lastBodyPart.clear();
    m_redirectUrl.reset();
}

FetchAnswer::Verdict FetchAnswer::take(const QByteArray& chunk)
{
    m_lastBodyPart.clear();
    if (!m_headerDone)
        return takeFirst(chunk);

    const auto verdict = addBody(chunk);
    if (verdict == Verdict::Receiving &&
        (m_framing.isPlain() ? m_expected == m_received : m_isWhole))
        return Verdict::Complete;
    return verdict;
}

FetchAnswer::Verdict FetchAnswer::takeFirst(const QByteArray& chunk)
{
    m_head = AnswerHead(chunk);
    m_framing.begin(m_head);
    const QByteArray lower = chunk.toLower();
    if (chunk.startsWith("HTTP")) {
        const QByteArray code = chunk.mid(9, 3);
        const auto location = lower.indexOf("location:");
        if (code == "302" && location >= 0) {
            readRedirect(chunk, location);
            return Verdict::Redirect;
        }
        if (code == "304")
            return Verdict::NotModified;
        if (code != "200")
            return Verdict::NotFound;
    }

    m_lastModified.clear();
    if (const auto name = lower.indexOf("last-modified:"); name >= 0) {
        const auto length = lower.indexOf("\r\n", name) - name - LastModifiedSkip;
        if (length > 0)
            m_lastModified = headerText(chunk.mid(name + LastModifiedSkip, length));
    }

    m_headerDone = true;
    // The content type is taken as the sign that the headers are in this chunk.
    if (!lower.contains("content-type:")) {
        m_expected = UnknownLength;
        m_headInBody = true;
        return addBody(chunk);
    }
    if (m_framing.isPlain())
        readLength(chunk, lower);
    else
        m_expected = UnknownLength;
    const auto bodyStart = headerEnd(chunk);
    // Kept: no test for completeness here. An image that comes whole with its header is finished
    // by the server's close or by the idle time-out.
    return addBody(bodyStart < 0 ? QByteArray() : chunk.mid(bodyStart));
}

/// The server is expected to send exactly one blank and an absolute address: a secure one is taken
/// whole; from any other the length of "http://" is cut, be it there or not, and the rest is
/// fetched as it then is.
void FetchAnswer::readRedirect(const QByteArray& chunk, qsizetype location)
{
    const auto skip = isSecureLocation(chunk, location) ? SecureLocationSkip : LocationSkip;
    const auto length = chunk.indexOf("\r\n", location) - location - skip;
    // The extra header line is not carried over, and a server cannot bring one in.
    if (length >= 0)
        m_redirectUrl = headerText(chunk.mid(location + skip, length));
}

void FetchAnswer::readLength(const QByteArray& chunk, const QByteArray& lower)
{
    if (const auto name = lower.indexOf("content-length:"); name >= 0) {
        const auto start = name + ContentLengthSkip;
        const auto end = chunk.indexOf("\r\n", start + 1);
        if (end > start && start < MaxLengthPosition) {
            auto value = chunk.mid(start, end - start);
            while (value.startsWith(' '))
                value.remove(0, 1);
            while (value.endsWith(' '))
                value.chop(1);
            bool isNumber = false;
            const int number = value.toInt(&isNumber);
            if (isNumber)
                m_expected = number;
        }
    }
    if (m_expected == 0)
        m_expected = UnknownLength;
}

FetchAnswer::Verdict FetchAnswer::addBody(const QByteArray& part)
{
    if (m_fetchedBody.size() + part.size() > MaxBodyBytes)
        return Verdict::TooLong;
    if (m_fetchedBody.isEmpty() && m_expected > 0 && m_expected != UnknownLength)
        m_fetchedBody.reserve(std::min<qsizetype>(m_expected, MaxReservedBytes));
    m_lastBodyPart = part;
    m_fetchedBody += part;
    m_received += static_cast<qint32>(part.size());
    if (!m_framing.isPlain()) {
        // Without a copy: this is done for every chunk.
        const auto framed = QByteArrayView(m_fetchedBody).sliced(headSize());
        m_isWhole = m_framing.isWhole(QByteArray::fromRawData(framed.data(), framed.size()));
    }
    return Verdict::Receiving;
}

bool FetchAnswer::isIncomplete() const
{
    if (!m_framing.isPlain())
        return !m_isWhole;
    const auto announced = m_head.contentLength();
    return announced && m_received - headSize() < *announced;
}

QByteArray FetchAnswer::pictureIn(const QByteArray& body) const
{
    return m_framing.picture(m_headInBody ? body.mid(headSize()) : body);
}

QByteArray FetchAnswer::comparedBytes(const QByteArray& body) const
{
    return m_framing.isPlain() ? body : pictureIn(body);
}

QByteArray FetchAnswer::takeBody()
{
    QByteArray body = std::exchange(m_fetchedBody, {});
    body.squeeze();
    return body;
}

QString FetchAnswer::progressText() const
{
    if (m_expected == UnknownLength)
        return "  Getting Image [ "_L1 + rounded(m_received / 1024.0) + "kb ]"_L1;
    const double percent = 100.0 * m_received / m_expected;
    return "  Getting Image ["_L1 + rounded(percent) + "% of "_L1 + rounded(m_expected / 1024.0) +
           "kb]"_L1;
}

QString FetchAnswer::completeText() const
{
    const auto bytes = m_expected == UnknownLength ? m_received : m_expected;
    return "  Getting Image [100% of "_L1 + rounded(bytes / 1024.0) + "kb]"_L1;
}
