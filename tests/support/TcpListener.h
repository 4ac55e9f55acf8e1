#pragma once

#include "network/TcpClient.h"

#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>

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
