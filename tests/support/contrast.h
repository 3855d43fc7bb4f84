#pragma once

#include <QImage>

/// As WCAG 2 defines them: the relative luminance of a pixel, 0 to 1, and the contrast between two,
/// 1 to 21. A text is readable from 4.5 on.
double luminance(QRgb pixel);
double contrast(double one, double other);

/// What is painted in a rectangle, by its darkest and lightest pixel: the text and what is under
/// it.
double paintedContrast(const QImage &picture, const QRect &rect);
