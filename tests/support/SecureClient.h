#pragma once

#include "support/TcpListener.h"

/// A TcpClient for secure connections, and what it told.
struct SecureClient : HeardClient
{
    explicit SecureClient(TcpClient::FirstChunk firstChunk = TcpClient::FirstChunk::Whole)
        : HeardClient(firstChunk)
    {
        client.setSecure(true);
    }
};
