// Writes a PDF file with smaller fonts, to be looked at:
//
//   corvane_shrinkfontsof <PDF file> <copy> [plain] [without-standard]
//
// Prints a line for each font program: its object's number, its key, the bytes it takes up in the
// file before and after, and what has become of it.

#include "engine/fonts/embeddedprograms.h"
#include "engine/fonts/shrinkfonts.h"
#include "engine/pdf/streams.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <qpdf/QPDFWriter.hh>
#include <string>
#include <vector>

namespace {

std::map<int, std::size_t> sizesOf(QPDF &document)
{
    std::map<int, std::size_t> sizes;
    for (const auto &program : engine::embeddedPrograms(document))
        sizes[program.stream.getObjectID()] = engine::rawBytesOf(program.stream).size();
    return sizes;
}

std::string keyOf(QPDF &document, int object)
{
    for (const auto &program : engine::embeddedPrograms(document)) {
        if (program.stream.getObjectID() == object)
            return program.key;
    }
    return "left out";
}

bool has(const std::vector<engine::TouchedPart> &parts, int object)
{
    return std::any_of(parts.begin(), parts.end(),
                       [&](const auto &part) { return part.object == object; });
}

void write(QPDF &document, const char *name)
{
    QPDFWriter writer(document, name);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setPreserveEncryption(false);
    writer.setDeterministicID(true);
    writer.write();
}

void shrink(const std::vector<std::string> &arguments)
{
    const auto wants = [&](const char *word) {
        return std::find(arguments.begin() + 2, arguments.end(), word) != arguments.end();
    };
    QPDF document;
    document.setSuppressWarnings(true);
    document.processFile(arguments[0].c_str());
    auto before = sizesOf(document);
    engine::FontOptions options;
    options.subset = true;
    options.compress = !wants("plain");
    options.leaveOutStandard14 = wants("without-standard");
    const auto result = engine::shrinkFonts(document, options, {});
    auto after = sizesOf(document);
    for (const auto &[object, size] : before) {
        const bool isTouched = has(result.touched, object) || has(result.leftOut, object);
        std::printf("%d %s %zu %zu %s\n", object, keyOf(document, object).c_str(), size,
                    after[object], isTouched ? "touched" : "-");
    }
    write(document, arguments[1].c_str());
}

} // namespace

int main(int argc, char *argv[])
{
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    if (arguments.size() < 2)
        return 2;
    try {
        shrink(arguments);
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
