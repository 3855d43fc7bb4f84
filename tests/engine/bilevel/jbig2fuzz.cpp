// Encodes random bitmaps as JBIG2 and holds them against what jbig2dec makes of that, bit for bit:
//
//   corvane_jbig2_fuzz <count>
//
// Prints the seed with which a run is repeated (in FUZZ_SEED).

#include "bench.h"
#include "bitmaps.h"
#include "engine/bilevel/jbig2.h"
#include "support/fuzzseed.h"

#include <QTemporaryDir>

#include <cstdio>

namespace {

// Mostly small ones, where the borders are.
engine::Bitmap next(QRandomGenerator &random)
{
    const quint32 edge = random.bounded(20U) == 0 ? 2000 : random.bounded(300U) + 1;
    return anyBitmap(edge, edge, random);
}

bool survives(const engine::Bitmap &bitmap, const engine::RegionCoding &coding,
              const QString &folder)
{
    const std::string stream = engine::encodeJbig2(bitmap, coding);
    const Bitmaps decoded = decodedByJbig2dec({{stream, bitmap.width(), bitmap.height()}}, folder);
    if (decoded == Bitmaps{bitmap})
        return true;
    write(QStringLiteral("fuzz-failure.jb2"), QByteArray::fromStdString(stream));
    std::printf("%u x %u, template %d, typical %d, period %u; see fuzz-failure.jb2\n",
                bitmap.width(), bitmap.height(), coding.pattern, int(coding.typical),
                coding.period);
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    const int count = argc > 1 ? std::atoi(argv[1]) : 300;
    const quint32 seed = firstSeed();
    std::printf("FUZZ_SEED=%u\n", seed);
    std::fflush(stdout);
    QRandomGenerator random(seed);
    const QTemporaryDir folder;
    for (int round = 0; round < count; ++round) {
        engine::RegionCoding coding = {random.bounded(2), random.bounded(2) == 0};
        if (coding.pattern == 0 && random.bounded(2) == 0)
            coding.period = random.bounded(5U, 128U);
        if (!survives(next(random), coding, folder.path()))
            return 1;
        if ((round + 1) % 1000 == 0) {
            std::printf("%d\n", round + 1);
            std::fflush(stdout);
        }
    }
    std::printf("%d bitmaps came through unchanged\n", count);
    return 0;
}
