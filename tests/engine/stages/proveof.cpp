// Holds a copy against its original as corvgs does, with every image and font regarded as touched:
//
//   proveof ORIGINAL COPY [DPI [PROCESSES [rewritten|otherfonts]]]
//
// DPI is the lowest resolution that the line asks for (150); the last is for a copy that was
// written anew as a whole, with fonts that the original brings along or not. Prints what is found
// and the seconds that it took. Status 0: sound, 1: different, 2: not readable, 3: not tried.

#include "engine/content/contentwalk.h"
#include "engine/pdf/document.h"
#include "engine/pdf/pageboxes.h"
#include "engine/process/signals.h"
#include "engine/stages/proof.h"
#include "engine/system/programs.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>

namespace {

using namespace engine;

class Everything : public ContentVisitor
{
public:
    void image(const Shown &shown, QPDFObjectHandle image, const Matrix &matrix) override
    {
        const Box box = shown.placed ? boundsOf({0, 0, 1, 1}, matrix) : everywhere;
        add(PartKind::Image, shown, image, box);
    }

    void text(const Shown &shown, QPDFObjectHandle font, const std::string &) override
    {
        add(PartKind::Font, shown, font, everywhere);
    }

    std::vector<TouchedPart> parts;

private:
    static constexpr Box everywhere = {-1e9, -1e9, 1e9, 1e9};

    void add(PartKind kind, const Shown &shown, QPDFObjectHandle part, const Box &box)
    {
        if (shown.page >= 0 && part.isIndirect())
            parts.push_back(
                {kind, part.getObjectID(), shown.page, box.left, box.bottom, box.right, box.top});
    }
};

Descriptor scratchFile()
{
    std::FILE *file = std::tmpfile();
    return Descriptor(dup(fileno(file)));
}

std::set<int> allOf(const std::vector<PageView> &views)
{
    std::set<int> pages;
    for (const PageView &view : views)
        pages.insert(view.page);
    return pages;
}

double secondsSince(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

int print(const ProofResult &result, std::size_t pages, double seconds)
{
    std::printf("%.3f s, %zu pages: ", seconds, pages);
    if (!result.readable) {
        std::printf("not readable\n");
        return 2;
    }
    if (result.isSound()) {
        std::printf("sound\n");
        return 0;
    }
    std::printf("different:%s",
                result.findings.unexplained ? " something that nobody touched" : "");
    for (const int object : result.findings.failed)
        std::printf(" %d", object);
    std::printf("\n");
    return 1;
}

Likeness likenessOf(const std::string &word)
{
    return word == "rewritten"    ? Likeness::Rewritten
           : word == "otherfonts" ? Likeness::RewrittenOtherFonts
                                  : Likeness::Same;
}

int prove(int original, int copy, ProofSettings settings, Likeness likeness)
{
    Document document(original, Trust::Foreign);
    document.pages();
    const std::vector<PageView> views = pageViewsOf(document.pdf());
    Everything everything;
    walkContent(document.pdf(), everything);
    // A page without either is drawn as well.
    for (const PageView &view : views)
        everything.parts.push_back({PartKind::Font, 1, view.page, 0, 0, 0, 0});

    const auto begin = std::chrono::steady_clock::now();
    Children children{Limits()};
    Proof proof(children, std::move(settings), original, scratchFile);
    proof.begin(views, allOf(views));
    const ProofResult result = proof.compare(copy, everything.parts, likeness);
    return print(result, views.size(), secondsSince(begin));
}

} // namespace

int main(int argc, char *argv[])
{
    if (argc < 3) {
        std::fprintf(stderr,
                     "usage: proveof ORIGINAL COPY [DPI [PROCESSES [rewritten|otherfonts]]]\n");
        return 3;
    }
    signals::catchAll();
    ProofSettings settings;
    settings.readers = {findProgram("", "pdftotext"), findProgram("", "pdftoppm")};
    settings.resolution = comparisonResolution(argc > 3 ? std::atof(argv[3]) : 150);
    settings.processes = argc > 4 ? std::max(1, std::atoi(argv[4])) : 2;
    const Descriptor original(open(argv[1], O_RDONLY | O_CLOEXEC));
    const Descriptor copy(open(argv[2], O_RDONLY | O_CLOEXEC));
    try {
        return prove(original.get(), copy.get(), std::move(settings),
                     likenessOf(argc > 5 ? argv[5] : ""));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
