#include "support/WebServer.h"
#include "support/ScratchFile.h"

#include "support/Waiting.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTcpServer>
#include <QTcpSocket>

namespace {

quint16 freePort()
{
    QTcpServer probe;
    if (!probe.listen(QHostAddress::LocalHost))
        qFatal("no free port");
    return probe.serverPort();
}

} // namespace

WebServer::WebServer(const QString& certificateFile, const QString& movedTo, Paths paths)
    : m_certificateFile(certificateFile)
    , m_movedTo(movedTo)
    , m_paths(paths)
{
    if (!QDir(m_scratch.path()).mkdir("root"))
        qFatal("no document root");
    QString program = QStandardPaths::findExecutable("lighttpd");
    if (program.isEmpty())
        program = "/usr/sbin/lighttpd"; // no ordinary user's path has it
    m_process.setProcessChannelMode(QProcess::MergedChannels);
    // Somebody else may take the port before the server does.
    for (int attempt = 0; attempt < 5 && !start(program); ++attempt) {
    }
    if (m_process.state() != QProcess::Running)
        qFatal("no web server: %s", m_process.readAll().constData());
}

WebServer::~WebServer()
{
    stop();
}

void WebServer::stop()
{
    m_process.terminate();
    if (!m_process.waitForFinished(HangMs))
        m_process.kill();
    m_process.waitForFinished(HangMs);
}

QString WebServer::url(const QString& path, const QString& host) const
{
    const QString scheme = m_certificateFile.isEmpty() ? "" : "https://";
    return QString("%1%2:%3%4").arg(scheme, host).arg(m_port).arg(path);
}

void WebServer::put(const QString& name, const QByteArray& bytes, const QDateTime& date)
{
    QFile file(m_scratch.filePath("root/" + name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(bytes) != bytes.size() || !file.flush() ||
        !file.setFileTime(date, QFile::FileModificationTime))
        qFatal("cannot write %s", qPrintable(name));
}

bool WebServer::start(const QString& program)
{
    m_port = freePort();
    writeFile(m_scratch.filePath("web.conf"), configuration());
    m_process.start(program, {"-D", "-f", m_scratch.filePath("web.conf")});
    constexpr int pauseMs = 20;
    for (int waited = 0; waited < HangMs && !m_process.waitForFinished(pauseMs);
         waited += pauseMs) {
        QTcpSocket visitor;
        visitor.connectToHost(QHostAddress::LocalHost, m_port);
        if (visitor.waitForConnected(HangMs))
            return m_process.state() == QProcess::Running;
    }
    return false;
}

QByteArray WebServer::configuration() const
{
    QString module;
    QString tls;
    if (!m_certificateFile.isEmpty()) {
        module = R"(, "mod_openssl")";
        tls = QString("ssl.engine = \"enable\"\nssl.pemfile = \"%1\"\n").arg(m_certificateFile);
    }
    // The patterns of redirects are for valid UTF-8 only.
    QString paths = QString("url.redirect = (\"^/moved\\.jpg$\" => \"%1\")").arg(redirectTarget());
    if (m_paths == Paths::AsTyped) {
        paths = R"(server.http-parseopts = ("header-strict" => "disable",
                           "url-normalize" => "disable", "url-ctrls-reject" => "disable"))";
    }
    return QString(R"(
server.modules = ("mod_access", "mod_redirect", "mod_cgi"%3)
cgi.assign = (".cgi" => "/bin/sh")
server.document-root = "%1/root"
server.bind = "127.0.0.1"
server.port = %2
server.max-keep-alive-idle = 600
server.stat-cache-engine = "disable"
mimetype.assign = (".jpg" => "image/jpeg", ".gif" => "image/gif", ".bmp" => "image/bmp",
                   ".txt" => "text/plain")
url.access-deny = ("secret.jpg")
url.redirect-code = 302
%4
%5
$SERVER["socket"] == "[::1]:%2" {
%4}
)")
        .arg(m_scratch.path())
        .arg(m_port)
        .arg(module, tls, paths)
        .toUtf8();
}

QString WebServer::redirectTarget() const
{
    if (!m_movedTo.isEmpty())
        return m_movedTo;
    const QString own = url("/large.jpg");
    return m_certificateFile.isEmpty() ? "http://" + own : own;
}
