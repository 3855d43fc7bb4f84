#include "graysampling.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace engine {

namespace {

// The samples of an edge that one of the smaller edge stands for, the first and last in part.
struct Span
{
    std::uint32_t first = 0;
    std::vector<float> shares;
};

std::vector<Span> spansOf(std::uint32_t large, std::uint32_t small)
{
    std::vector<Span> spans(small);
    const double step = double(large) / small;
    for (std::uint32_t index = 0; index < small; ++index) {
        const double begin = index * step;
        const double end = std::min(begin + step, double(large));
        spans[index].first = std::min(std::uint32_t(begin), large - 1);
        for (std::uint32_t at = spans[index].first; at < large && at < end; ++at)
            spans[index].shares.push_back(
                float(std::min(at + 1., end) - std::max(double(at), begin)));
    }
    return spans;
}

// Every row shorter; values are sums by shares.
void addRow(const unsigned char *row, const std::vector<Span> &spans, float share,
            std::vector<float> &sums)
{
    for (std::size_t column = 0; column < spans.size(); ++column) {
        float sum = 0;
        const unsigned char *sample = row + spans[column].first;
        for (const float part : spans[column].shares)
            sum += part * float(*sample++);
        sums[column] += sum * share;
    }
}

const unsigned char *rowOf(const GraySamples &picture, std::size_t row)
{
    return reinterpret_cast<const unsigned char *>(picture.samples.data()) + row * picture.width;
}

} // namespace

GraySamples averaged(const GraySamples &picture, std::uint32_t width, std::uint32_t height)
{
    const auto across = spansOf(picture.width, width);
    const auto down = spansOf(picture.height, height);
    const float area =
        float(picture.width) / float(width) * (float(picture.height) / float(height));
    GraySamples result{width, height, {}};
    result.samples.reserve(std::size_t(width) * height);
    std::vector<float> sums(width);
    for (const Span &rows : down) {
        std::fill(sums.begin(), sums.end(), 0.0F);
        for (std::size_t index = 0; index < rows.shares.size(); ++index)
            addRow(rowOf(picture, rows.first + index), across, rows.shares[index], sums);
        for (const float sum : sums)
            result.samples += char(std::clamp(std::lround(sum / area), 0L, 255L));
    }
    return result;
}

GraySamples subsampled(const GraySamples &picture, std::uint32_t width, std::uint32_t height)
{
    GraySamples result{width, height, {}};
    result.samples.reserve(std::size_t(width) * height);
    for (std::uint32_t row = 0; row < height; ++row) {
        const auto *samples = rowOf(picture, (2 * std::uint64_t(row) + 1) * picture.height /
                                                 (2 * std::uint64_t(height)));
        for (std::uint32_t column = 0; column < width; ++column)
            result.samples += char(samples[(2 * std::uint64_t(column) + 1) * picture.width /
                                           (2 * std::uint64_t(width))]);
    }
    return result;
}

} // namespace engine
