#include "judgement.h"

namespace engine {

namespace {

std::string fewerPages(int copy, int document)
{
    return "the copy has " + std::to_string(copy) + " of " + std::to_string(document) + " pages";
}

} // namespace

std::string objectionTo(const Evidence &evidence)
{
    if (evidence.pagesWritten.value_or(0) <= 0)
        return "Ghostscript could not open the document or wrote no page of it";
    if (!evidence.pagesInCopy)
        return "the copy is damaged";
    // Ghostscript reads some documents that libqpdf can't; its own count has to do for them.
    const int document = evidence.pagesInDocument.value_or(*evidence.pagesWritten);
    if (*evidence.pagesInCopy < document)
        return fewerPages(*evidence.pagesInCopy, document);
    if (evidence.warned)
        return "Ghostscript could not make out all of the document";
    return {};
}

} // namespace engine
