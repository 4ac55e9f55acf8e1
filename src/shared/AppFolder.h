#pragma once

#include <QString>

/// The folder where the program keeps its files (list.dat, pref.ini and the like), without a
/// separator at its end.
///
/// A portable copy keeps them beside its executable. An installed program, one with a folder
/// `share/pevora` beside the folder of its executable (`bin`), keeps them in the user's own data
/// folder, `pevora` in QStandardPaths::GenericDataLocation; so does a program whose folder cannot
/// be written, belongs to neither the user nor root, or can be written by anyone else (the
/// temporary folder, for one): there others could lay links in the way of its files. The data
/// folder is made where it is missing. Needs a QCoreApplication.
QString applicationFolder();

/// The same for an executable in `programFolder` and a user whose data folder for Pevora is
/// `dataFolder`. Leaves no file behind in either.
QString applicationFolder(const QString& programFolder, const QString& dataFolder);

/// The user's own data folder for Pevora, whether or not the program keeps its files there. It may
/// be missing.
QString userDataFolder();

/// The path of a file in a folder, with a separator between them unless `folder` ends in one.
QString pathInFolder(const QString& folder, const QString& fileName);

/// The folder of the language file lan.ini: the application folder where it is there, else the
/// program's, else empty. One that is there but cannot be read counts.
QString languageFolder(const QString& applicationFolder, const QString& programFolder);
