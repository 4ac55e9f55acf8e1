#pragma once

#include "network/TcpClient.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QTest>

#include <functional>

/// What a TcpClient told, in order; each chunk as it was taken. Asks for a page once connected.
class TcpListener : public QObject
{
public:
    explicit TcpListener(TcpClient& client)
    {
        connect(&client, &TcpClient::Connected, this, [this, &client] {
            told << "Connected";
            client.SendData("GET / HTTP/1.0\r\n\r\n");
            if (onConnected)
                onConnected();
        });
        connect(&client, &TcpClient::DataArrival, this, [this, &client] {
            told << "Data";
            chunks << client.GetData();
            if (onData)
                onData();
        });
        connect(&client, &TcpClient::Closed, this, [this] { told << "Closed"; });
        connect(&client, &TcpClient::Error, this, [this](int, const QString& text) {
            told << "Error";
            description = text;
        });
    }

    QStringList told;
    QList<QByteArray> chunks;
    QString description;
    /// Called after the request has been sent, and after each chunk.
    std::function<void()> onConnected;
    std::function<void()> onData;
};

/// A TcpClient, and what it told.
struct HeardClient
{
    explicit HeardClient(TcpClient::FirstChunk firstChunk = TcpClient::FirstChunk::Whole)
        : client(firstChunk)
    {
    }

    void start(quint16 port, const QString& host = QStringLiteral("127.0.0.1"))
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
