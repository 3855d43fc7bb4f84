#include "proofsettings.h"

#include "images/imageoptions.h"
#include "proof/drawingplan.h"
#include "system/platform.h"

namespace engine {

namespace {

double lowestResolution(const ImageOptions &options)
{
    double lowest = 0;
    for (const ClassOptions *kind : {&options.colour, &options.gray, &options.mono}) {
        if (kind->sampling != Sampling::None && (lowest == 0 || kind->resolution < lowest))
            lowest = kind->resolution;
    }
    return lowest;
}

} // namespace

ProofSettings proofSettings(const Run &run)
{
    return {.readers = run.settings.readers,
            .limits = run.settings.readerLimits,
            .resolution =
                comparisonResolution(lowestResolution(imageOptionsOf(run.request.switches))),
            .processes = platform::usableProcessors()};
}

} // namespace engine
