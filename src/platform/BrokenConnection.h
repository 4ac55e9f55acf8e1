#pragma once

#include <QtGlobal>

/// Whether the peer has broken the TCP connection of `socket`, a socket's descriptor, off by a
/// reset, and all that came before it has been read. Qt tells a reset as an ordinary close. Never
/// waits and reads nothing. The system tells of a reset once: a second look says no, and a read
/// then finds the connection closed. False for a descriptor that is none.
bool isResetByPeer(qintptr socket);
