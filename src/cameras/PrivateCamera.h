#pragma once

#include <QString>

/// Whether the camera of `key` is nobody else's business, as far as its key shows: it has a user or
/// a password (in the address, or as an extra header "Authorization"), or its host is of a private
/// network (RFC 1918, RFC 4193, link-local) or of this machine. A name that merely resolves to
/// such an address counts as public.
bool isPrivateCamera(const QString& key);
