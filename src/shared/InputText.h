#pragma once

#include <QString>

/// Text that somebody typed or pasted into a box, made fit for the records it goes into.

/// `text` with every "ÿ" (U+00FF), which separates the fields of a record, turned into y with a
/// combining diaeresis (U+0308): the same look, never the separator.
QString withoutSeparator(const QString& text);

/// `typed` without separators (see above) and without control characters (U+0000 to U+001F and
/// U+007F to U+009F). `keepHeaderMark` keeps character 1, which stands between address and
/// header in a camera key. Cleaning twice changes nothing more.
QString cleanInput(const QString& typed, bool keepHeaderMark);

/// `text` up to its first line break (CR or LF), which would end a line of a request.
QString firstLineOf(const QString& text);
