#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QSize>

/// A picture of one colour.
QImage plainImage(QSize size, const QColor& colour);

/// Encoded pictures of one colour. `format` is one of "jpg" and "bmp" (Qt writes no GIF).
QByteArray encodedPicture(QSize size, const QColor& colour, const char* format = "jpg");
QByteArray encodedImage(const QImage& image, const char* format = "jpg");

/// A GIF of 2 x 2 white pixels.
QByteArray smallGif();

/// A JPEG whose body has at least `bytes` bytes: noise does not compress.
QByteArray largePicture(int bytes);
