#pragma once

#include "network/TcpClient.h"
#include "shared/Timer.h"

#include <QByteArray>
#include <QObject>
#include <QString>

/// Fetches one text document by HTTP/1.0 GET and hands the whole answer over at once. It belongs to
/// whoever asks, who hears of everything by its signals; one fetch at a time.
///
/// It never looks into the answer: status line, headers and body are handed over as they came. It
/// follows no redirect, speaks no TLS, and never gives up on a server that says nothing: that is
/// for whoever asks, by Stop().
class HTTP : public QObject
{
    Q_OBJECT

public:
    static constexpr int DefaultPort = 80;
    /// So long after the last data the answer counts as complete.
    static constexpr int EndOfDataMs = 3000;
    /// An answer ends here; what a server sends beyond is dropped.
    static constexpr qsizetype MaxAnswerBytes = 64 * 1024 * 1024;

    /// `port`, 1 to 65535, is where every host is asked; others than the default are for tests.
    explicit HTTP(QObject* parent = nullptr, int port = DefaultPort);

    /// Starts to fetch `url`, host and path with or without "http://" (in lower case) before them,
    /// and drops the fetch that runs, if one does. The url names no port: a colon is part of the
    /// host's name. A line break ends the host, or the path, that it stands in. Nothing is
    /// escaped; what is not ASCII goes out as shared/DiskText.h has it, each field of a query (what
    /// stands between "?", "&", "=" and the header mark) on its own. An empty url does nothing.
    ///
    /// Then comes either Finished, or Failed, which may come before this returns; or neither, from
    /// a server that stays silent.
    void Retrieve(const QString& url);

    /// Drops the fetch that runs, if one does, without a signal.
    void Stop();

    /// `text` without its markup: from each "<" to the first ">" behind it. A "<" without one
    /// stays, with all that follows. Entities and line breaks are left as they are.
    static QString StripHTML(const QString& text);

signals:
    /// The answer is over: the server closed, nothing came for EndOfDataMs, a chunk held "</html>",
    /// or MaxAnswerBytes have come. All the bytes of it; they are split into fields as bytes, so
    /// they are not text yet. Once for each fetch at most, and never after an error, such as a
    /// connection that the server has reset.
    void Finished(const QByteArray& data);
    /// What the fetch does, for a status line: "Connecting", "Connected", "Receiving Data" with
    /// each chunk, "Error: " and the socket's description.
    void Status(const QString& text);
    /// There will be no answer, and why, as Status has just said; one line.
    void Failed(const QString& description);
    /// There is a connection, and the request is on its way.
    void Connected();
    /// A chunk of the answer has come.
    void DataArrival();

private:
    void sendRequest();
    void receive();
    void peerHasClosed();
    void finish();
    void fail(const QString& description);

    TcpClient m_sckMain;
    Timer m_Timer1;
    /// The path of the request, until there is a connection to send it on.
    QString m_tag;
    QByteArray m_buffer;
};
