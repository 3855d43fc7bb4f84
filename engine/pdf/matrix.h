#pragma once

#include <algorithm>
#include <cmath>

namespace engine {

/// In PDF's order: x' = a x + c y + e, y' = b x + d y + f.
struct Matrix
{
    double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
};

/// The matrix that does what the first does and then what the second does.
inline Matrix product(const Matrix &first, const Matrix &second)
{
    return {first.a * second.a + first.b * second.c,
            first.a * second.b + first.b * second.d,
            first.c * second.a + first.d * second.c,
            first.c * second.b + first.d * second.d,
            first.e * second.a + first.f * second.c + second.e,
            first.e * second.b + first.f * second.d + second.f};
}

inline bool isFinite(const Matrix &matrix)
{
    return std::isfinite(matrix.a) && std::isfinite(matrix.b) && std::isfinite(matrix.c) &&
           std::isfinite(matrix.d) && std::isfinite(matrix.e) && std::isfinite(matrix.f);
}

/// An upright rectangle; left <= right and bottom <= top.
struct Box
{
    double left = 0, bottom = 0, right = 0, top = 0;
};

/// What bounds the rectangle after the matrix is applied.
inline Box boundsOf(const Box &box, const Matrix &matrix)
{
    const auto [left, right] = std::minmax(
        {matrix.a * box.left + matrix.c * box.bottom, matrix.a * box.left + matrix.c * box.top,
         matrix.a * box.right + matrix.c * box.bottom, matrix.a * box.right + matrix.c * box.top});
    const auto [bottom, top] = std::minmax(
        {matrix.b * box.left + matrix.d * box.bottom, matrix.b * box.left + matrix.d * box.top,
         matrix.b * box.right + matrix.d * box.bottom, matrix.b * box.right + matrix.d * box.top});
    return {left + matrix.e, bottom + matrix.f, right + matrix.e, top + matrix.f};
}

inline bool overlap(const Box &one, const Box &other)
{
    return one.left <= other.right && other.left <= one.right && one.bottom <= other.top &&
           other.bottom <= one.top;
}

} // namespace engine
