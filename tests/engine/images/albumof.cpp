// Makes the images of a document smaller, and nothing else, and tells of every one what became of
// it. For measuring and for looking at:
//   corvane_albumof <document> <copy> <switch>...
// The switches are those of the window's line.
#include "engine/images/takeimages.h"
#include "engine/pdf/copywriter.h"
#include "engine/pdf/document.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace engine;
using Words = std::vector<std::string>;

const char *nameOf(LeftAlone reason)
{
    static constexpr const char *names[] = {
        "-",          "damaged", "colour key", "matte",     "soft mask inside",
        "alternates", "space",   "decode",     "JPEG 2000", "transform",
        "chain",      "filter",  "not found",  "unclear",   "unshown",
        "small",      "large",   "two kinds",
    };
    return names[int(reason)];
}

const char *nameOf(Treatment treatment)
{
    static constexpr const char *names[] = {"none", "album", "pixels", "here"};
    return names[int(treatment)];
}

const char *nameOf(ImageKind kind)
{
    static constexpr const char *names[] = {"colour", "gray", "bilevel", "soft"};
    return names[int(kind)];
}

class File
{
public:
    explicit File(const std::string &name, int flags = O_RDONLY)
        : m_file(open(name.c_str(), flags | O_CLOEXEC, 0600))
    {
        if (m_file < 0) {
            std::perror(name.c_str());
            std::exit(1);
        }
    }
    ~File() { close(m_file); }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    [[nodiscard]] int number() const { return m_file; }

private:
    int m_file;
};

int run(Words words)
{
    std::vector<char *> arguments;
    for (std::string &word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        execvp(arguments[0], arguments.data());
        _exit(127);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

bool runGhostscript(const Words &switches, const std::string &album, const std::string &output)
{
    Words words = {"gs"};
    for (const std::string &word : albumWords(switches))
        words.push_back(word);
    words.insert(words.end(), {"-sOutputFile=" + output, "-f", album});
    return run(words) == 0;
}

void tell(const std::vector<SurveyedImage> &images, const ImageOptions &options, QPDF &copy)
{
    for (const SurveyedImage &image : images) {
        QPDFObjectHandle now = copy.getObject(image.object, 0).getDict();
        std::printf("%6d %-8s %5ux%-5u %2d bits %d %7.1f dpi %4zu parts %-16s %-7s %9zu -> %9lld"
                    " %lldx%lld\n",
                    image.object, nameOf(image.facts.kind), image.facts.width, image.facts.height,
                    image.facts.bits, image.facts.components, image.dpi, image.parts.size(),
                    nameOf(image.facts.reason), nameOf(treatmentOf(image, options)),
                    image.facts.bytes, now.getKey("/Length").getIntValue(),
                    now.getKey("/Width").getIntValue(), now.getKey("/Height").getIntValue());
    }
}

int shrink(const std::string &input, const std::string &output, const Words &switches)
{
    const ImageOptions options = imageOptionsOf(switches);
    const std::string album = output + ".album";
    const std::string written = output + ".written";
    Document document(File(input).number(), Trust::Foreign);
    const auto images = surveyImages(document.pdf());
    const AlbumIndex index = writeAlbum(document.pdf(), images, options,
                                        File(album, O_RDWR | O_CREAT | O_TRUNC).number());
    std::unique_ptr<Document> smaller;
    if (!index.empty() && runGhostscript(switches, album, written))
        smaller = std::make_unique<Document>(File(written).number(), Trust::Own);
    const TakenImages taken =
        takeImages(document.pdf(), smaller ? &smaller->pdf() : nullptr, index, options, {});
    writeCopy(document.pdf(), File(output, O_RDWR | O_CREAT | O_TRUNC).number(), {true, {}});
    tell(images, options, document.pdf());
    std::printf("%zu pages of album, %zu parts touched\n", index.size(), taken.touched.size());
    return !index.empty() && !smaller;
}

} // namespace

int main(int count, char **words)
{
    if (count < 3) {
        std::fprintf(stderr, "usage: corvane_albumof <document> <copy> <switch>...\n");
        return 2;
    }
    try {
        return shrink(words[1], words[2], Words(words + 3, words + count));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
