#pragma once

#include "support/TcpListener.h"

#include <QTest>

/// A TcpClient for secure connections, and what it told.
struct SecureClient
{
    explicit SecureClient(TcpClient::FirstChunk firstChunk = TcpClient::FirstChunk::Whole)
        : client(firstChunk)
    {
        client.setSecure(true);
    }

    void start(quint16 port, const QString& host = "127.0.0.1")
    {
        client.setRemoteHost(host);
        QVERIFY(client.setRemotePort(port));
        QVERIFY(client.Connect());
    }
    /// What it told last.
    QString last() const { return listener.told.value(listener.told.size() - 1); }

    TcpClient client;
    TcpListener listener{client};
};
