#pragma once

#include <QString>
#include <QStringList>

/// What the program that is killed leaves, and bench-kills reads back.
namespace victim {

inline constexpr int Cameras = 2000;
inline constexpr int Favourites = 20;
inline constexpr int Pictures = 6;
inline constexpr int WidthPx = 640;
inline constexpr int HeightPx = 480;

inline QString category()
{
    return QStringLiteral("Cameras");
}
/// Cameras have running numbers.
inline QString nameOf(int number)
{
    return QStringLiteral("Camera ") + QString::number(number);
}
inline QString keyOf(int number)
{
    return QStringLiteral("camera.example/") + QString::number(number) + QStringLiteral(".jpg");
}
/// All favourites of a run are of one camera.
inline QString favouriteKey(const QString& run)
{
    return QStringLiteral("favourite.example/") + run;
}
inline QString sourceName(int number)
{
    return QStringLiteral("source%1.jpg").arg(number);
}
inline QStringList savedImages()
{
    return {QStringLiteral("a.bmp"), QStringLiteral("a.gif"), QStringLiteral("a.jpg")};
}
inline QString savedMovie()
{
    return QStringLiteral("a.pvm");
}

} // namespace victim
