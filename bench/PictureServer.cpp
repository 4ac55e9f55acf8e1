#include "PictureServer.h"

#include "Pictures.h"

#include <QTcpSocket>

PictureServer::PictureServer()
{
    connect(&m_server, &QTcpServer::newConnection, this, &PictureServer::accept);
    if (!m_server.listen(QHostAddress::LocalHost))
        qFatal("bench: no port is free");
}

void PictureServer::serve(const Pictures* pictures)
{
    m_pictures = pictures;
    m_answers = 0;
}

QString PictureServer::address() const
{
    return QStringLiteral("127.0.0.1:%1/camera.jpg").arg(m_server.serverPort());
}

void PictureServer::accept()
{
    auto* socket = m_server.nextPendingConnection();
    connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
    connect(socket, &QTcpSocket::readyRead, this, [this, socket] {
        if (!m_pictures || !socket->peek(8192).contains("\r\n\r\n"))
            return;
        socket->readAll();
        emit Asked();
        const QByteArray& body = m_pictures->bytes(m_answers++);
        socket->write("HTTP/1.0 200 OK\r\nContent-Type: image/jpeg\r\nContent-Length: " +
                      QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
    });
}
