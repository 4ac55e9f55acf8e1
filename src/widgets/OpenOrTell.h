#pragma once

#include <QString>

class MessageQueue;

/// Opens an address as openAddress() does. Where no browser takes it, `messages` tells the user
/// the address, so that it can be opened elsewhere; of a very long one its beginning.
void openOrTell(const QString& address, MessageQueue& messages);

/// Opens a help page: the address `site` where it is not empty, else the program's own page at
/// `path`, as openHelpPage() does. Where no browser takes it, `messages` tells address or path.
void openHelpOrTell(const QString& site, const QString& path, MessageQueue& messages);
