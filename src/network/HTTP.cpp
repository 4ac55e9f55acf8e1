#include "network/HTTP.h"

#include "cameras/CameraKey.h"
#include "shared/DiskText.h"
#include "shared/InputText.h"

#include <QTcpSocket>

#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A server splits the bytes of a query before it reads them as text, so that the text of one field
/// must not decide on the bytes of another.
QByteArray fieldByField(const QString& path)
{
    const auto endsField = [](QChar one) {
        return one == u'?' || one == u'&' || one == u'=' || one == HeaderMark;
    };
    QByteArray bytes;
    qsizetype start = 0;
    for (qsizetype i = 0; i < path.size(); ++i) {
        if (!endsField(path[i]))
            continue;
        bytes += toDisk(path.mid(start, i - start)) + path[i].toLatin1();
        start = i + 1;
    }
    return bytes + toDisk(path.mid(start));
}

} // namespace

HTTP::HTTP(QObject* parent, int port)
    : QObject(parent)
    , m_sckMain(TcpClient::FirstChunk::Whole, this)
    , m_Timer1(u"Timer1"_s, EndOfDataMs, this)
{
    m_sckMain.setObjectName(u"sckMain"_s);
    m_sckMain.setRemotePort(port);
    connect(&m_sckMain, &TcpClient::Connected, this, &HTTP::sendRequest);
    connect(&m_sckMain, &TcpClient::DataArrival, this, &HTTP::receive);
    connect(&m_sckMain, &TcpClient::Closed, this, &HTTP::peerHasClosed);
    connect(&m_sckMain, &TcpClient::Error, this,
            [this](int, const QString& description) { fail(description); });
    connect(&m_Timer1, &Timer::Tick, this, &HTTP::finish);
}

void HTTP::Retrieve(const QString& url)
{
    if (url.isEmpty())
        return;
    m_buffer.clear();
    m_Timer1.setEnabled(false);
    QString rest = url;
    // Kept: a scheme in capitals is taken for the host.
    if (rest.startsWith("http://"_L1))
        rest.remove(0, "http://"_L1.size());
    const auto slash = rest.indexOf(u'/');
    const QString host = rest.left(slash);
    emit Status(u"Connecting"_s);
    m_sckMain.Close();
    m_sckMain.setRemoteHost(firstLineOf(host));
    m_tag = slash < 0 ? u"/"_s : firstLineOf(rest.mid(slash));
    if (!m_sckMain.Connect())
        fail(QTcpSocket::tr("Host not found"));
}

void HTTP::sendRequest()
{
    emit Status(u"Connected"_s);
    const QStringList headers = {
        u"Referer: HTTP ActiveX Control"_s,
        u"Connection: Keep-Alive"_s,
        u"User-Agent: Default"_s,
        "Host: "_L1 + m_sckMain.RemoteHost(),
        u"Accept: */*"_s,
        u"Accept-Language: en"_s,
    };
    QByteArray request = "GET " + fieldByField(m_tag) + " HTTP/1.0\r\n";
    for (const QString& header : headers)
        request += toDisk(header) + "\r\n";
    m_sckMain.SendData(request + "\r\n");
    emit Connected();
}

void HTTP::Stop()
{
    m_Timer1.setEnabled(false);
    m_sckMain.Close();
    m_buffer.clear();
}

void HTTP::receive()
{
    emit Status(u"Receiving Data"_s);
    const QByteArray chunk = m_sckMain.GetData();
    if (chunk.isEmpty())
        return; // who heard of the chunk has begun another fetch
    m_buffer += chunk;
    m_Timer1.restart();
    emit DataArrival();
    // Kept: an end tag that two chunks share is not seen.
    const bool isOver = chunk.toLower().contains("</html>");
    if (m_buffer.size() > MaxAnswerBytes)
        m_buffer.truncate(MaxAnswerBytes);
    if (isOver || m_buffer.size() == MaxAnswerBytes)
        finish();
}

/// What a reset has cut off may be anything.
void HTTP::peerHasClosed()
{
    if (m_sckMain.WasReset())
        fail(tr("The connection was reset"));
    else
        finish();
}

/// Whatever ends the answer closes the socket, so that nothing ends it a second time.
void HTTP::finish()
{
    m_Timer1.setEnabled(false);
    m_sckMain.Close();
    emit Finished(std::exchange(m_buffer, {}));
}

void HTTP::fail(const QString& description)
{
    m_Timer1.setEnabled(false);
    m_sckMain.Close();
    m_buffer.clear();
    emit Status("Error: "_L1 + description);
    emit Failed(description);
}

QString HTTP::StripHTML(const QString& text)
{
    QString result;
    result.reserve(text.size());
    qsizetype from = 0;
    for (;;) {
        const auto open = text.indexOf(u'<', from);
        const auto close = open < 0 ? -1 : text.indexOf(u'>', open);
        if (close < 0)
            return result.append(QStringView(text).sliced(from));
        result += QStringView(text).sliced(from, open - from);
        from = close + 1;
    }
}
