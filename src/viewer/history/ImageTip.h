#pragma once

#include <QString>

class History;

/// What is known of entry `n` of `history`, as plain text of some lines: the camera's address, when
/// it was fetched, the server's Last-Modified, its size, and "15 of 27". What is not known of a
/// file or of a movie's frame has no line. Empty for a number outside 1..Count.
QString imageTip(const History& history, int n);

/// Any plain text as the text of a tool tip, which is shown as it is, and never as markup.
QString asToolTip(const QString& plain);
