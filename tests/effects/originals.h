#pragma once

#include <QString>

/// PDF files made for the tests.
namespace originals {

/// Where the images lie in `writeImages`, and in its copies.
enum ImagePlace { colourImage, grayImage, monoImage };
constexpr int imageDpi = 288; ///< four times 72

enum class Motif { noise, shades };

/// One page with a colour, a gray and a monochrome image, uncompressed.
void writeImages(const QString &path, Motif motif);

/// Two pages of text in two fonts that are wholly embedded. False if Ghostscript, which draws it,
/// fails.
bool writeText(const QString &path);

} // namespace originals
