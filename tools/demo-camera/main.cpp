// A camera for trying Pevora without one: serves a drawn lake with a running clock on this
// machine alone.

#include "DemoServer.h"
#include "Scene.h"

#include <QCommandLineParser>
#include <QFile>
#include <QGuiApplication>
#include <QTextStream>

#include <csignal>
#include <cstdlib>
#include <optional>

namespace {

/// The size in "1280x720", where it is one that can be drawn.
std::optional<QSize> sizeFrom(const QString& text)
{
    const QStringList parts = text.toLower().split(u'x');
    if (parts.size() != 2)
        return std::nullopt;
    bool isWidth = false;
    bool isHeight = false;
    const QSize size(parts.at(0).toInt(&isWidth), parts.at(1).toInt(&isHeight));
    if (!isWidth || !isHeight || size != size.expandedTo(Scene::smallest) ||
        size != size.boundedTo(Scene::largest))
        return std::nullopt;
    return size;
}

/// The milliseconds in a number of seconds, where it is one from 0 to a week.
std::optional<int> millisecondsFrom(const QString& seconds)
{
    bool isNumber = false;
    const double number = seconds.toDouble(&isNumber);
    if (!isNumber || !(number >= 0 && number <= 7 * 24 * 3600))
        return std::nullopt;
    return int(number * 1000);
}

int fail(const QString& message)
{
    QTextStream(stderr) << "demo-camera: " << message << '\n';
    return 1;
}

} // namespace

int main(int argc, char* argv[])
{
    // Nothing is shown: a display is not needed, and is not looked for.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("demo-camera"));
    QCoreApplication::setApplicationVersion(QStringLiteral(PEVORA_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "A camera for trying Pevora: a lake with a running clock, a new picture every time."));
    parser.addHelpOption();
    parser.addVersionOption();
    const QCommandLineOption port(
        QStringLiteral("port"),
        QStringLiteral("Listen on port <number> (8080); 0 takes a free one."),
        QStringLiteral("number"), QStringLiteral("8080"));
    const QCommandLineOption size(QStringLiteral("size"),
                                  QStringLiteral("Draw pictures of this size (1280x720)."),
                                  QStringLiteral("size"), QStringLiteral("1280x720"));
    const QCommandLineOption quality(QStringLiteral("quality"),
                                     QStringLiteral("Quality of the JPEG, 1 to 100 (85)."),
                                     QStringLiteral("number"), QStringLiteral("85"));
    const QCommandLineOption unchanged(
        QStringLiteral("unchanged"),
        QStringLiteral("Keep a picture for so long (0: a new one for every request)."),
        QStringLiteral("seconds"), QStringLiteral("0"));
    const QCommandLineOption idle(QStringLiteral("idle"),
                                  QStringLiteral("Close a connection that rests for so long (30)."),
                                  QStringLiteral("seconds"), QStringLiteral("30"));
    const QCommandLineOption ipv6(QStringLiteral("ipv6"),
                                  QStringLiteral("Listen on ::1 as well, where it is there."));
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Write a line for every request."));
    const QCommandLineOption log(QStringLiteral("log"),
                                 QStringLiteral("Append those lines to <file>."),
                                 QStringLiteral("file"));
    parser.addOptions({port, size, quality, unchanged, idle, ipv6, verbose, log});
    parser.process(application);
    if (!parser.positionalArguments().isEmpty())
        return fail(QStringLiteral("there are no arguments beside the options"));

    bool isPort = false;
    const quint16 portNumber = parser.value(port).toUShort(&isPort);
    if (!isPort)
        return fail(QStringLiteral("the port is a number from 0 to 65535"));
    const auto pictureSize = sizeFrom(parser.value(size));
    if (!pictureSize)
        return fail(QStringLiteral("the size is from 320x240 to 7680x4320"));
    bool isQuality = false;
    const int jpegQuality = parser.value(quality).toInt(&isQuality);
    if (!isQuality || jpegQuality < 1 || jpegQuality > 100)
        return fail(QStringLiteral("the quality is a number from 1 to 100"));
    const auto unchangedMs = millisecondsFrom(parser.value(unchanged));
    const auto idleMs = millisecondsFrom(parser.value(idle));
    if (!unchangedMs)
        return fail(QStringLiteral("a picture stays for 0 to 604800 seconds"));
    if (!idleMs || *idleMs == 0)
        return fail(QStringLiteral("a connection may rest for 0.001 to 604800 seconds"));

    QFile logFile(parser.value(log));
    QTextStream lines(stdout);
    if (parser.isSet(log)) {
        if (!logFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Text))
            return fail(QStringLiteral("cannot write the log: %1").arg(logFile.errorString()));
        lines.setDevice(&logFile);
    }

    DemoServer server({*pictureSize, jpegQuality, *unchangedMs, *idleMs});
    QString error;
    if (!server.listen(portNumber, error))
        return fail(QStringLiteral("cannot listen on port %1: %2").arg(portNumber).arg(error));
    if (parser.isSet(ipv6) && !server.listenOnIpv6(error))
        fail(QStringLiteral("not on ::1: %1").arg(error));
    if (parser.isSet(verbose)) {
        QObject::connect(&server, &DemoServer::answered, &server,
                         [&](const QString& requestLine, int status, qint64 bodyBytes) {
                             lines << QDateTime::currentDateTime().toString(Qt::ISODate) << " \""
                                   << requestLine << "\" " << status << ' ' << bodyBytes << '\n'
                                   << Qt::flush;
                         });
    }

    // There is nothing to tidy up, so the shortest end that a signal handler may choose is right.
    for (const int signal : {SIGTERM, SIGINT})
        std::signal(signal, [](int) { std::_Exit(0); });

    QTextStream(stdout) << "Demo camera: http://127.0.0.1:" << server.port() << "/clock.jpg\n"
                        << Qt::flush;
    return QGuiApplication::exec();
}
