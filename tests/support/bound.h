#pragma once

/// How long a test waits for anything, in ms. Generous: only a defect lets a test wait this long,
/// be the machine as busy as it likes.
constexpr int bound = 120'000;
