// Makes the fonts of documents smaller whose font programs are damaged:
//
//   corvane_font_fuzz <count>
//
// None may crash the process, throw, or keep it for long; and what is shown stays what it was, as
// poppler and MuPDF draw it. A document that fails, or in which the process ends, stays behind as
// fuzz-failure.pdf; FUZZ_SEED repeats a run.

#include "bench.h"
#include "documents.h"
#include "fontdocuments.h"
#include "parsed.h"
#include "samples.h"

#include "engine/fonts/shrinkfonts.h"
#include "support/fuzzseed.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <cstdio>
#include <qpdf/QPDFWriter.hh>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace fontdocuments;

namespace {

constexpr unsigned longest = 60; // seconds for one document

struct Seed
{
    Font font;
    QByteArray codes;
};

QList<Seed> seeds()
{
    const QByteArray win = "/Encoding /WinAnsiEncoding";
    const QByteArray names = "/Encoding << /Differences [65 /Adieresis /B /secret] >>";
    const QByteArray number = "/Subtype /CIDFontType2 /CIDToGIDMap /Identity";
    const QByteArray type1 = "/Subtype /Type1 ";
    const QByteArray trueType = "/Subtype /TrueType ";
    const auto cff = [](const char *file, const QByteArray &subtype, const QByteArray &entries,
                        const QByteArray &composite = {}) {
        return Font{.program = program(QString::fromLatin1(file)),
                    .key = "/FontFile3",
                    .streamEntries = "/Subtype " + subtype,
                    .entries = entries,
                    .composite = composite};
    };
    const QByteArray identity = "/Encoding /Identity-H";
    return {{{.program = program(u"unicode.ttf"_s), .entries = trueType + win}, "4142C4"},
            {{.program = program(u"all-cmaps.ttf"_s), .entries = trueType}, "4142"},
            {{.program = program(u"symbol.ttf"_s), .entries = trueType}, "4142"},
            {{.program = program(u"names-only.ttf"_s), .entries = trueType + names}, "414243"},
            {{.program = program(u"mac.ttf"_s), .entries = trueType + win}, "41428E"},
            {{.program = program(u"unicode.ttf"_s), .entries = number, .composite = identity},
             "0003001E"},
            {cff("named.cff", "/Type1C", type1 + names), "414243"},
            {cff("named.cff", "/Type1C", type1), "4142"},
            {cff("keyed.cff", "/CIDFontType0C", "/Subtype /CIDFontType0", identity), "00090060"},
            {cff("named.otf", "/OpenType", type1 + win), "4142"},
            {cff("keyed.otf", "/OpenType", "/Subtype /CIDFontType0", identity), "0009"}};
}

class Damage
{
public:
    explicit Damage(quint32 seed)
        : m_random(seed)
    {
    }

    Seed pick(const QList<Seed> &from) { return from.at(below(from.size())); }

    void operator()(QByteArray &program, const QByteArray &other)
    {
        for (int count = below(3) + 1; count > 0; --count)
            one(program, other);
    }

private:
    int below(qsizetype bound) { return bound > 0 ? int(m_random.bounded(int(bound))) : 0; }

    void one(QByteArray &program, const QByteArray &other)
    {
        const int place = below(below(2) == 0 ? qMin<qsizetype>(program.size(), 300) // the tables
                                              : program.size());
        switch (below(10)) {
        case 0:
            program.truncate(place);
            break;
        case 1:
            program.remove(place, below(64));
            break;
        case 2:
            program.insert(place, QByteArray(below(64), char(below(256))));
            break;
        case 3:
            program.replace(place, below(200), other.mid(place, below(200)));
            break;
        default:
            if (place < program.size())
                program[place] = char(below(4) == 0 ? 0xFF * below(2) : below(256));
        }
    }

    QRandomGenerator m_random;
};

struct Shrunk
{
    QByteArray copy;
    bool isTouched = false;
};

Shrunk shrunk(const QByteArray &bytes)
{
    parsed::Document document(bytes);
    const auto result = engine::shrinkFonts(document, {.subset = true}, {});
    QPDFWriter writer(document);
    writer.setOutputMemory();
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    return {QByteArray(reinterpret_cast<const char *>(buffer->getBuffer()),
                       qsizetype(buffer->getSize())),
            !result.touched.empty()};
}

QByteArrayList pictures(const QByteArray &bytes, const QString &file)
{
    write(file, bytes);
    return {tools::run(u"pdftoppm"_s, {u"-q"_s, u"-r"_s, u"150"_s, file}).output,
            tools::run(u"mutool"_s, {u"draw"_s, u"-q"_s, u"-F"_s, u"ppm"_s, u"-r"_s, u"150"_s,
                                     u"-o"_s, u"-"_s, file})
                .output};
}

// Empty if all is well.
std::string complaint(const QByteArray &document, const QString &folder, int &touched)
{
    try {
        const Shrunk made = shrunk(document);
        touched += int(made.isTouched);
        if (!made.isTouched)
            return {};
        const QString file = folder + u"/a.pdf"_s;
        if (pictures(made.copy, file) != pictures(document, file)) {
            write(u"fuzz-copy.pdf"_s, made.copy);
            return "another picture";
        }
    } catch (const std::exception &error) {
        return error.what();
    }
    return {};
}

} // namespace

int main(int argc, char *argv[])
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 100;
    const quint32 seed = firstSeed();
    std::printf("FUZZ_SEED=%u\n", seed);
    const QTemporaryDir folder;
    const QList<Seed> sound = seeds();
    Damage damage(seed);
    int touched = 0;
    for (int round = 0; round < count; ++round) {
        Seed next = damage.pick(sound);
        damage(next.font.program, damage.pick(sound).font.program);
        const QByteArray document = showing(text(next.codes), next.font);
        write(u"fuzz-failure.pdf"_s, document);
        ::alarm(longest);
        if (const std::string what = complaint(document, folder.path(), touched); !what.empty()) {
            std::printf("round %d: %s; see fuzz-failure.pdf\n", round, what.c_str());
            return 1;
        }
        if ((round + 1) % 500 == 0)
            std::printf("%d\n", round + 1);
        std::fflush(stdout);
    }
    QFile::remove(u"fuzz-failure.pdf"_s);
    std::printf("%d documents, %d with smaller fonts\n", count, touched);
    return 0;
}
