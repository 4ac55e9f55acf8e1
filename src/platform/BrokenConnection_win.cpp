#include "platform/BrokenConnection.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <winsock2.h>

bool isResetByPeer(qintptr socket)
{
    // Qt's sockets do not block.
    char byte = 0;
    return recv(static_cast<SOCKET>(socket), &byte, 1, MSG_PEEK) == SOCKET_ERROR &&
           WSAGetLastError() == WSAECONNRESET;
}
