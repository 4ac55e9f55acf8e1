#pragma once

#include <QString>

/// A file or folder of the project, named from its root: "languages/de".
QString sourcePath(const QString& relative);

/// The program as this build made it, and the demo camera.
QString pevoraProgram();
QString demoCameraProgram();

/// The library with which no look-up of a name ever ends (support/silent-resolver).
QString silentResolver();
