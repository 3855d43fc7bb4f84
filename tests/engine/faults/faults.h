#pragma once

#include "bench.h"

/// Waits until no engine is at work, and fails the test if anything lies in the folders for copies
/// and for temporary files.
void verifyNothingLeft(const Bench &bench);

/// Fails the test unless the run ended with one line of corvgs's own, with these words in it.
void verifyFailure(const Run &run, const QByteArray &reason, int status = 1);

/// Fails the test unless the copy has the original's pages, embeds as many fonts, and nothing is
/// wrong with it, as independent readers see it.
void verifyWhole(const QString &copy, const QString &original);

/// Runs the line of the bench where one of its folders is a disk of its own, as tmpfs makes it with
/// these options. What the run left on that disk is listed behind its output, one name a line.
Run runOnTinyDisk(const Bench &bench, const QString &options, const QString &tiny,
                  const QString &program = Bench::corvgs());
