#pragma once

#include "fonts/shrinkfonts.h"
#include "images/imageoptions.h"
#include "lossless/pieces.h"
#include "xmp/xmpedit.h"

#include <cstdint>
#include <limits>
#include <set>

namespace engine {

/// Stands for no object among the parts that were touched, but for all that a damaged document
/// shows.
inline constexpr int everything = std::numeric_limits<int>::max();

/// What has to be known of a document before its copy can be made.
struct SurveyReport
{
    int pages = 0;
    int albumPages = 0;
    bool damaged = false;
    bool isSigned = false;
};

/// What a survey is about. Files are open descriptors; those that it writes are open for reading,
/// too.
struct SurveyOrder
{
    int document = -1;
    int album = -1; ///< for the images; stays empty without any
    int index = -1; ///< of the album
    int views = -1; ///< for the views of all pages
    int parts = -1; ///< for the images that may be made smaller
    ImageOptions images = {};
};

/// The document that stays, with smaller parts. Files are open descriptors.
struct DraftOrder
{
    int document = -1;
    int album = -1;   ///< as Ghostscript wrote it; -1: there is none
    int index = -1;   ///< of the album, as writeAlbum() made it
    int draft = -1;   ///< open for reading and writing
    int touched = -1; ///< for the lines of the parts that were made smaller
    ImageOptions images = {};
    FontOptions fonts = {};
    LosslessOptions lossless = {};
    DescriptionChanges description = {};
    std::set<int> excluded = {}; ///< numbers of parts that stay as they are
    bool withParts = true;       ///< false: all images and fonts stay
    bool withPieces = true;      ///< false: the lossless pieces don't run, either
    std::uintmax_t leastSize = 0;
};

struct DraftReport
{
    std::uintmax_t size = 0;
    int images = 0; ///< that were made smaller
    int fonts = 0;
    bool damaged = false;      ///< the document is
    bool described = false;    ///< the description has changed
    bool isRestricted = false; ///< the document is encrypted, which the draft is not
};

/// Writes the album of the document's images, and what the proof has to know. For hostile documents
/// only to be called where a crash or an endless loop does no harm, as all of these. Throws a
/// std::exception if the document can't be read.
SurveyReport surveyDocument(const SurveyOrder &order);

/// Writes the draft, not encrypted, and what was touched. Throws a std::exception if there can be
/// none.
DraftReport makeDraft(const DraftOrder &order);

} // namespace engine
