#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>

class QWidget;

/// A picture of one colour.
QImage plainImage(QSize size, const QColor& colour);

/// Pixels that are black and white by turns, so that a scaled one is seen.
QImage checkerboard(QSize size);

/// What a widget shows, device pixel for device pixel.
QImage devicePixels(QWidget& widget);

/// Encoded pictures of one colour. `format` is one that Qt writes ("jpg", "bmp", "png", "webp"; no
/// GIF).
QByteArray encodedPicture(QSize size, const QColor& colour, const char* format = "jpg");
QByteArray encodedImage(const QImage& image, const char* format = "jpg");

/// A JPEG of `colour` with a striped edge, longer than a first chunk: its last byte ends the fetch.
QByteArray stripedPicture(const QColor& colour);

/// A GIF of 2 x 2 white pixels.
QByteArray smallGif();

/// A movie of so many pictures of 160 x 120 pixels, each of another colour.
QByteArray plainMovie(int frames);

/// A JPEG whose body has at least `bytes` bytes: noise does not compress.
QByteArray largePicture(int bytes);
