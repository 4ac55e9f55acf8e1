#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

/// The code page of texts that are not UTF-8: the system's ANSI page on Windows (windows-1252
/// where that page is UTF-8), windows-1252 elsewhere. In windows-1252 every one of the 256 bytes
/// has a character: the five that its definition leaves open (0x81 0x8D 0x8F 0x90 0x9D) are the
/// control characters of the same number, as the WHATWG Encoding Standard has it.

/// The text that `bytes` stand for in the code page.
QString fromCodePage(QByteArrayView bytes);

/// The bytes of `text` in the code page. Nothing where the page lacks one of its characters:
/// no character is ever replaced by one that looks like it.
std::optional<QByteArray> toCodePage(QStringView text);
