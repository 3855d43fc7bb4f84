#pragma once

/// What the third column of the file table says.
constexpr auto succeed = "Succeed";
constexpr auto failed = "Failed";
/// For a cell that says nothing.
constexpr auto none = "-";
