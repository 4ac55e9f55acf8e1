#pragma once

#include <QString>

/// Deletes the temporary files of fetches and movies ("pvm.bmp", "tt.jpg", "tt.gif", "tt.bmp")
/// from `folder`, whatever case their names are in. A missing file is no error; nothing is
/// reported.
void removeTempFiles(const QString& folder);
