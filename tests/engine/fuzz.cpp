// Feeds corvgs with damaged documents:
//
//   corvane_engine_fuzz <count> [folder of PDF files]
//
// After each, corvgs must have ended by itself, there is a copy or one line that says why not, and
// nothing else has changed. Prints the number of each, and the seed with which a run is repeated
// (in FUZZ_SEED).

#include "bench.h"
#include "samples.h"

#include "support/fuzzseed.h"

#include <QDir>
#include <QRandomGenerator>

#include <cstdio>
#include <map>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype largestSeed = 300'000; // bytes; the time goes into Ghostscript otherwise

QList<QByteArray> seedsIn(const QString &folder)
{
    QList<QByteArray> seeds = {samplePdf(), samplePdf(5, 100)};
    if (folder.isEmpty())
        return seeds;
    for (const QFileInfo &file : QDir(folder).entryInfoList(QDir::Files)) {
        if (file.size() <= largestSeed)
            seeds << contentOf(file.filePath());
    }
    return seeds;
}

class Mutation
{
public:
    explicit Mutation(quint32 seed)
        : m_random(seed)
    {
    }

    QByteArray operator()(const QList<QByteArray> &seeds)
    {
        QByteArray document = pick(seeds);
        for (int count = below(8) + 1; count > 0; --count)
            mutate(document, seeds);
        return document;
    }

private:
    int below(qsizetype bound) { return bound > 0 ? int(m_random.bounded(int(bound))) : 0; }
    QByteArray pick(const QList<QByteArray> &from) { return from.at(below(from.size())); }

    void mutate(QByteArray &document, const QList<QByteArray> &seeds)
    {
        static const QList<QByteArray> words = {"0 0 R",
                                                "1 0 R",
                                                "2 0 R",
                                                "-1",
                                                "99999999999",
                                                "/Kids",
                                                "/Count",
                                                "/Length",
                                                "/Pages",
                                                "/Type /Page",
                                                "<<",
                                                ">>",
                                                "[",
                                                "]",
                                                "endobj",
                                                "endstream",
                                                "xref",
                                                "/Filter /FlateDecode",
                                                "/Filter /JBIG2Decode",
                                                "(",
                                                "%PDF-9.9",
                                                "null"};
        const int place = below(document.size());
        const int length = below(64);
        switch (below(7)) {
        case 0:
            document.truncate(place);
            break;
        case 1:
            document.remove(place, length);
            break;
        case 2:
            document.insert(place, pick(words));
            break;
        case 3:
            document.replace(place, length, pick(words));
            break;
        case 4:
            document.insert(place, document.mid(below(document.size()), 2048));
            break;
        case 5:
            document.insert(place, pick(seeds).mid(place, 4096));
            break;
        default:
            if (!document.isEmpty())
                document[place] = char(below(256));
        }
    }

    QRandomGenerator m_random;
};

// Empty if all is well.
QByteArray complaint(const Bench &bench, const QByteArray &document, const Run &run)
{
    const QStringList copies = namesIn(bench.out());
    if (run.status < 0)
        return "corvgs crashed or hangs";
    if (run.errors.contains("Sanitizer") || run.errors.contains("runtime error"))
        return "sanitizer";
    if (contentOf(bench.in(u"a.pdf"_s)) != document || namesIn(bench.in()).size() != 1)
        return "the original has changed";
    if (contentOf(bench.home(u"mine"_s)) != "mine" || namesIn(bench.home()).size() != 1)
        return "the home folder has changed";
    if (!namesIn(bench.temporary()).isEmpty())
        return "a temporary folder is left";
    if (bench.engineCount() != 0)
        return "an engine is left";
    if (run.status == 0 &&
        (copies != QStringList{u"a.pdf"_s} || tools::pages(bench.out(u"a.pdf"_s)) < 1))
        return "no sound copy";
    if (run.status != 0 && (!copies.isEmpty() || run.errors.count("corvgs: ") != 1))
        return "a copy, or no reason, after a failure";
    return {};
}

Run compress(const Bench &bench, const QByteArray &document)
{
    write(bench.in(u"a.pdf"_s), document);
    return bench.run(lineOf(bench));
}

} // namespace

int main(int argc, char *argv[])
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 100;
    const QList<QByteArray> seeds = seedsIn(argc > 2 ? QString::fromLocal8Bit(argv[2]) : QString());
    const quint32 seed = firstSeed();
    std::printf("FUZZ_SEED=%u, %d documents\n", seed, int(seeds.size()));
    std::fflush(stdout);
    std::map<int, int> statuses;
    Mutation mutation(seed);
    Bench bench;
    write(bench.home(u"mine"_s), "mine");
    // A corvgs that refuses every document would pass all that follows.
    if (const Run run = compress(bench, seeds.first()); run.status != 0) {
        std::printf("the undamaged document: %s\n", run.errors.constData());
        return 1;
    }
    QFile::remove(bench.out(u"a.pdf"_s));
    for (int round = 0; round < count; ++round) {
        const QByteArray document = mutation(seeds);
        const Run run = compress(bench, document);
        ++statuses[run.status];
        if (const QByteArray what = complaint(bench, document, run); !what.isEmpty()) {
            write(u"fuzz-failure.pdf"_s, document);
            std::printf("round %d: %s; see fuzz-failure.pdf\n%s\n", round, what.constData(),
                        run.errors.constData());
            return 1;
        }
        QFile::remove(bench.out(u"a.pdf"_s));
        if ((round + 1) % 100 == 0) {
            std::printf("%d\n", round + 1);
            std::fflush(stdout);
        }
    }
    for (const auto &[status, times] : statuses)
        std::printf("status %d: %d\n", status, times);
    return 0;
}
