#pragma once

#include <QRandomGenerator>

/// The seed that FUZZ_SEED gives, so that a run can be repeated; else a new one.
inline quint32 firstSeed()
{
    bool given = false;
    const quint32 seed = qEnvironmentVariable("FUZZ_SEED").toUInt(&given);
    return given ? seed : QRandomGenerator::global()->generate();
}
