#pragma once

#include "imageoptions.h"
#include "survey.h"

namespace engine {

/// How an image is made smaller.
enum class Treatment {
    None,        ///< it stays
    Ghostscript, ///< the album's image goes in its place
    Pixels,      ///< the album gives its pixels, what is made of them is made here
    Here         ///< all is made here
};

/// What a line's options mean for an image. One whose making smaller brings nothing stays.
Treatment treatmentOf(const SurveyedImage &image, const ImageOptions &options);

} // namespace engine
