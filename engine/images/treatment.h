#pragma once

#include "imageoptions.h"
#include "survey.h"

namespace engine {

/// How an image is made smaller.
enum class Treatment {
    None,        ///< it stays
    Ghostscript, ///< Ghostscript samples and codes it; the album's image goes in its place
    Pixels,      ///< Ghostscript decodes it; the engine samples and codes the pixels
    Here         ///< the engine decodes, samples and codes it
};

/// What a line's options mean for an image. None where it would not become smaller.
Treatment treatmentOf(const SurveyedImage &image, const ImageOptions &options);

} // namespace engine
