#include "arguments.h"

#include "outputintent.h"
#include "process/channels.h"
#include "request/switches.h"

#include <algorithm>

namespace engine {

namespace {

using Words = std::vector<std::string>;

void append(Words &words, const Words &more)
{
    words.insert(words.end(), more.begin(), more.end());
}

bool isEncryption(const std::string &word)
{
    return word.starts_with(userPasswordSwitch) || word.starts_with(ownerPasswordSwitch) ||
           word.starts_with(permissionsSwitch);
}

// Ghostscript writes a blank page, and is content, when it could not make out a document at all.
// Only the device knows how many pages it was really given.
Words pageReport()
{
    const std::string report = nameOf(reportChannel);
    return {"-c", "(" + report +
                      ") (w) file dup currentpagedevice /PageCount get 20 string cvs writestring"
                      " closefile"};
}

// After each page one byte, which tells one that is slow from one that is lost. Reason 2 is that of
// a device that ends: no page.
Words progressReport()
{
    const std::string mark = "\\006";
    return {"-c", "<< /EndPage [ (" + nameOf(reportChannel) +
                      ") (w) file { 3 -1 roll pop exch 2 ne { dup (" + mark +
                      ") writestring flushfile true } { pop false } ifelse } /exec load ] cvx >>"
                      " setpagedevice"};
}

} // namespace

// The copy is encrypted when it is complete, so no password goes to Ghostscript. It doesn't know
// how to write JBIG2 (seen in 10.00); what it writes without loss is encoded anew later.
Words writableSwitches(Words words)
{
    std::erase_if(words, isEncryption);
    std::replace(words.begin(), words.end(), std::string(jbig2Switch),
                 std::string("-dMonoImageFilter=/FlateEncode"));
    return words;
}

Words rewritingArguments(const Request &request)
{
    Words words = writableSwitches(request.switches);
    words.emplace_back("-dAutoRotatePages=/None");
    if (request.options.pdfa)
        append(words, {"-sColorConversionStrategy=RGB", "-dPDFACompatibilityPolicy=1"});
    append(words, {"--permit-file-write=" + nameOf(reportChannel),
                   std::string(outputSwitch) + nameOf(draftChannel)});
    append(words, progressReport());
    if (request.options.pdfa)
        append(words, {"-c", std::string(outputIntentProgram)});
    append(words, {"-f", nameOf(documentChannel)});
    if (!request.mark.empty())
        words.push_back(nameOf(markChannel));
    append(words, pageReport());
    return words;
}

Words albumArguments(Words words, bool hasAlbum, bool hasMark)
{
    append(words, {"--permit-file-write=" + nameOf(reportChannel),
                   std::string(outputSwitch) + nameOf(draftChannel)});
    append(words, progressReport());
    if (hasAlbum)
        append(words, {"-f", nameOf(documentChannel)});
    if (hasMark)
        append(words, {"-f", nameOf(markChannel)});
    append(words, pageReport());
    return words;
}

} // namespace engine
