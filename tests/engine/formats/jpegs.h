#pragma once

#include <QByteArray>
#include <QString>

#include <cstdio> // jpeglib.h takes it for granted
#include <jpeglib.h>

/// JPEGs of every kind, made and read by libjpeg.
namespace jpegs {

/// How a JPEG is made: noise over a slope, so that nothing in it is empty.
struct Recipe
{
    J_COLOR_SPACE colours = JCS_RGB; ///< of the samples that go in
    J_COLOR_SPACE coded = JCS_YCbCr; ///< as they are kept
    int width = 83;
    int height = 61;
    int sampling = 2; ///< of the first component, both ways
    bool jfif = true;
    bool adobe = false;
    bool progressive = false;
    bool arithmetic = false;
    unsigned restartInterval = 0;
    QByteArray comment = {};
};
QByteArray made(const Recipe &recipe);

/// All that a reader learns from a JPEG.
struct Read
{
    QByteArray samples;                ///< as they are kept, not turned into other colours
    J_COLOR_SPACE taken = JCS_UNKNOWN; ///< for what libjpeg takes them, by all that the JPEG says
    int adobeTransform = -1;           ///< -1: there is no Adobe marker
    bool jfif = false;
    bool progressive = false;
    int markers = 0; ///< comments and application markers
    long warnings = 0;

    /// What must never change.
    bool operator==(const Read &other) const
    {
        return samples == other.samples && taken == other.taken &&
               adobeTransform == other.adobeTransform && jfif == other.jfif;
    }
};

/// Fails the test program if it can't be read.
Read read(const QByteArray &jpeg);

} // namespace jpegs
