#pragma once

#include <QByteArray>
#include <QStringList>

/// What the program `words` (its name, then its arguments) prints, without outer white space; it
/// reads `input`. Begins with "failed: " where it does not end with 0 within HangMs.
QByteArray printedBy(QStringList words, const QByteArray& input = {});
