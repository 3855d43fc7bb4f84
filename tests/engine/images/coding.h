#pragma once

#include <QByteArray>

/// Samples, and what codes them.
namespace coding {

/// Soft shapes with some sharp edges and some grain, another for every component; rows of bytes
/// from the top.
QByteArray samples(int width, int height, int components);

/// The upper bits of every sample, packed in rows; of 16 bits the sample twice.
QByteArray packed(const QByteArray &samples, int perRow, int bits);

QByteArray flate(const QByteArray &bytes);

/// What the file says of its colours, and how they are coded.
enum class Colours {
    Plain,    ///< no marker: readers take three components for YCbCr, four for what they are
    Adobe,    ///< Adobe's marker says that nothing was converted
    AdobeYcc, ///< that it was: YCbCr or YCCK
    Unmarked  ///< three that were not converted, without a marker
};
QByteArray jpeg(const QByteArray &samples, int width, int height, int components,
                Colours colours = Colours::Plain);

} // namespace coding
