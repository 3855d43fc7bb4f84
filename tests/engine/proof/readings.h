#pragma once

#include "engine/proof/picture.h"

#include <QByteArray>
#include <QTemporaryFile>

#include <algorithm>
#include <functional>

/// What a reader has read of a document, made up: drawn pages, and files with their bytes.

/// The level of one channel of a pixel: x, y, channel. What lies outside of 0 to 255 is cut off.
using Level = std::function<int(int, int, int)>;

/// A drawn page of this width and height, in pixels.
inline engine::Picture drawing(const Level &level, int width, int height)
{
    engine::Picture picture{.width = width, .height = height, .samples = {}};
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            for (int channel = 0; channel < engine::Picture::channels; ++channel)
                picture.samples.push_back(std::uint8_t(std::clamp(level(x, y, channel), 0, 255)));
        }
    }
    return picture;
}

/// The same as pdftoppm writes it.
inline QByteArray asPpm(const engine::Picture &picture)
{
    return "P6\n" + QByteArray::number(picture.width) + ' ' + QByteArray::number(picture.height) +
           "\n255\n" +
           QByteArray(reinterpret_cast<const char *>(picture.samples.data()),
                      int(picture.samples.size()));
}

/// A temporary file with that content, where a descriptor is asked for.
class File
{
public:
    explicit File(const QByteArray &content = {})
    {
        m_file.open();
        m_file.write(content);
        m_file.flush();
    }
    operator int() const { return m_file.handle(); }

private:
    QTemporaryFile m_file;
};
