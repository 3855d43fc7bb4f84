#include "pages.h"

#include <cstdio>
#include <memory>
#include <qpdf/QPDF.hh>
#include <unistd.h>

namespace engine {

namespace {

struct Close
{
    void operator()(FILE *stream) const { std::fclose(stream); }
};

int claimedPages(QPDF &document)
{
    return document.getRoot().getKey("/Pages").getKey("/Count").getIntValueAsInt();
}

// A page tree that can't be walked to its end has lost pages; what it claims is all there is.
int readPages(QPDF &document, Trust trust)
{
    try {
        return int(document.getAllPages().size());
    } catch (const std::exception &) {
        if (trust == Trust::Own)
            throw;
        return claimedPages(document);
    }
}

} // namespace

std::optional<int> countPages(int file, const std::string &password, Trust trust)
{
    const std::unique_ptr<FILE, Close> stream(fdopen(dup(file), "rb"));
    if (!stream)
        return {};
    try {
        QPDF document;
        document.setSuppressWarnings(true);
        document.setAttemptRecovery(trust == Trust::Foreign);
        document.processFile("document", stream.get(), false, password.c_str());
        return readPages(document, trust);
    } catch (const std::exception &) {
        return {};
    }
}

} // namespace engine
