#pragma once

#include "imagefacts.h"
#include "pdf/touched.h"

#include <qpdf/QPDF.hh>
#include <vector>

namespace engine {

struct SurveyedImage
{
    int object = 0; ///< its number
    ImageFacts facts;

    /// The lowest at which it is shown anywhere, of both directions; 0: nowhere.
    double dpi = 0;

    /// Where it is shown, hidden places aside.
    std::vector<TouchedPart> parts;

    /// The edges of the page that shows it as large as it is shown at most, in points.
    [[nodiscard]] double pageWidth() const { return facts.width * 72 / dpi; }
    [[nodiscard]] double pageHeight() const { return facts.height * 72 / dpi; }
};

/// All images of a document that are objects, masks among them, by their numbers: what they are,
/// how large they are shown, and why they are left alone. Changes nothing. Throws a std::exception
/// if the pages can't be found.
std::vector<SurveyedImage> surveyImages(QPDF &document);

} // namespace engine
