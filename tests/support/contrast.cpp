#include "contrast.h"

#include <algorithm>
#include <cmath>

double luminance(QRgb pixel)
{
    const auto linear = [](int value) {
        const double part = value / 255.0;
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(pixel)) + 0.7152 * linear(qGreen(pixel)) +
           0.0722 * linear(qBlue(pixel));
}

double contrast(double one, double other)
{
    return (std::max(one, other) + 0.05) / (std::min(one, other) + 0.05);
}

double paintedContrast(const QImage &picture, const QRect &rect)
{
    double darkest = 1;
    double lightest = 0;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            const double value = luminance(picture.pixel(x, y));
            darkest = std::min(darkest, value);
            lightest = std::max(lightest, value);
        }
    }
    return contrast(darkest, lightest);
}
