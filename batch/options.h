#pragma once

#include "input/shard.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <span>

namespace batch {

/// One option, as --help lists it.
struct OptionRow
{
    const char *name;
    const char *value; ///< what the value stands for; null: the option takes none
    const char *help;
};

/// All options, in the order of --help.
std::span<const OptionRow> optionRows();

enum class Command { compress, summarise, help, version };

/// What a command line asks for. Paths are as typed.
struct Options
{
    Command command = Command::compress;
    QStringList paths;               ///< files and folders; for the summary, reports
    std::optional<QString> listFile; ///< NUL-separated names; "-": standard input
    QString outputFolder;            ///< empty only where none is needed
    std::optional<int> jobs;         ///< without: one for each usable processor
    std::optional<QString> settings; ///< without: the window's own
    QStringList assignments;         ///< "KEY=VALUE", not yet checked
    std::optional<QString> report;
    Shard shard;
    bool resume = false;
    bool dryRun = false;
    bool keepDates = false;
    bool quiet = false;
    bool json = false;
};

/// Reads a command line without the program's name. Throws Refusal.
Options parseOptions(const QStringList &arguments);

/// What --help prints.
QString helpText();

} // namespace batch
