#include "platform/BrokenConnection.h"

#include <cerrno>
#include <sys/socket.h>

bool isResetByPeer(qintptr socket)
{
    char byte = 0;
    return ::recv(static_cast<int>(socket), &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 &&
           errno == ECONNRESET;
}
