#include "options.h"

#include "refusal.h"

#include <QCommandLineParser>
#include <QProcessEnvironment>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

constexpr int mostJobs = 4096;
constexpr int helpColumn = 26;

constexpr auto helpHead = R"(Usage: corvane-batch --output FOLDER [options] PATH...
       corvane-batch --summary REPORT...
Compresses PDF files as Corvane's window does, on all processors and without a window.
PATH is a file, or a folder: all PDF files below it. Nothing is ever replaced.

Options:
)";
constexpr auto helpTail = R"(
Ends with 0 if all is done, 1 if some failed, 2 if the command line makes no sense, 3 if it can't
work at all, 130 or 143 if it was interrupted. The first signal lets running engines finish, the
second ends them.
)";

// clang-format off
constexpr OptionRow rows[] = {
    {"output",      "FOLDER",    "where the copies go; it has to exist"},
    {"files0-from", "FILE",      "take names from FILE, each ended by NUL; - is standard input"},
    {"jobs",        "N",         "engines side by side; else one for each usable processor"},
    {"settings",    "FILE",      "the options, as the window writes them; else the window's own"},
    {"set",         "KEY=VALUE", "one option's value, such as Image/ColorRes=100; may be repeated"},
    {"report",      "FILE",      "write what happens to each file, as JSON Lines"},
    {"resume",      nullptr,     "go on with the report: what is done is not done again"},
    {"shard",       "I/N",       "only the I-th of N parts of the list; auto: this task's part"},
    {"dry-run",     nullptr,     "only say which copies would be made"},
    {"keep-dates",  nullptr,     "give each copy the dates of its original"},
    {"quiet",       nullptr,     "say nothing but what failed"},
    {"json",        nullptr,     "print what happens as JSON Lines, for other programs"},
    {"summary",     nullptr,     "add up the reports that are named instead of paths"},
    {"help",        nullptr,     "print this and end"},
    {"version",     nullptr,     "print the version and end"},
};
// clang-format on

QList<QCommandLineOption> parserOptions()
{
    QList<QCommandLineOption> options;
    for (const OptionRow &row : rows)
        options.append({QString::fromLatin1(row.name), QString::fromUtf8(row.help),
                        QString::fromLatin1(row.value)});
    return options;
}

std::optional<QString> valueOf(const QCommandLineParser &parser, const QString &name)
{
    return parser.isSet(name) ? std::optional(parser.value(name)) : std::nullopt;
}

std::optional<int> jobsOf(const QCommandLineParser &parser)
{
    if (!parser.isSet(u"jobs"_s))
        return std::nullopt;
    bool isNumber = false;
    const int jobs = parser.value(u"jobs"_s).toInt(&isNumber);
    if (!isNumber || jobs < 1 || jobs > mostJobs)
        throw Refusal(u"--jobs takes a number from 1 to %1, not '%2'"_s.arg(
            QString::number(mostJobs), parser.value(u"jobs"_s)));
    return jobs;
}

Shard chosenShard(const QCommandLineParser &parser)
{
    if (!parser.isSet(u"shard"_s))
        return {};
    return shardOf(parser.value(u"shard"_s), QProcessEnvironment::systemEnvironment());
}

Command commandOf(const QCommandLineParser &parser)
{
    if (parser.isSet(u"help"_s))
        return Command::help;
    if (parser.isSet(u"version"_s))
        return Command::version;
    return parser.isSet(u"summary"_s) ? Command::summarise : Command::compress;
}

void checkCompress(const Options &options)
{
    if (options.outputFolder.isEmpty())
        throw Refusal(u"no output folder: give --output FOLDER"_s);
    if (options.paths.isEmpty() && !options.listFile)
        throw Refusal(u"nothing to compress: give files, folders or --files0-from FILE"_s);
    if (options.resume && !options.report)
        throw Refusal(u"--resume goes on with a report: give --report FILE"_s);
}

void checkSummary(const Options &options, const QCommandLineParser &parser)
{
    if (options.paths.isEmpty())
        throw Refusal(u"no report to add up: give --summary REPORT..."_s);
    for (const QString &name : parser.optionNames()) {
        if (name != "summary"_L1 && name != "json"_L1)
            throw Refusal(u"--summary takes reports, and not --%1"_s.arg(name));
    }
}

QString usageOf(const OptionRow &row)
{
    const QString name = "--"_L1 + QLatin1String(row.name);
    return row.value ? name + u' ' + QLatin1String(row.value) : name;
}

} // namespace

std::span<const OptionRow> optionRows()
{
    return rows;
}

Options parseOptions(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOptions(parserOptions());
    if (!parser.parse(QStringList(u"corvane-batch"_s) + arguments))
        throw Refusal(parser.errorText());
    Options options = {
        .command = commandOf(parser),
        .paths = parser.positionalArguments(),
        .listFile = valueOf(parser, u"files0-from"_s),
        .outputFolder = parser.value(u"output"_s),
        .jobs = jobsOf(parser),
        .settings = valueOf(parser, u"settings"_s),
        .assignments = parser.values(u"set"_s),
        .report = valueOf(parser, u"report"_s),
        .shard = chosenShard(parser),
        .resume = parser.isSet(u"resume"_s),
        .dryRun = parser.isSet(u"dry-run"_s),
        .keepDates = parser.isSet(u"keep-dates"_s),
        .quiet = parser.isSet(u"quiet"_s),
        .json = parser.isSet(u"json"_s),
    };
    if (options.command == Command::compress)
        checkCompress(options);
    if (options.command == Command::summarise)
        checkSummary(options, parser);
    return options;
}

QString helpText()
{
    QString text = QString::fromUtf8(helpHead);
    for (const OptionRow &row : rows)
        text +=
            "  "_L1 + usageOf(row).leftJustified(helpColumn) + QString::fromUtf8(row.help) + u'\n';
    return text + QString::fromUtf8(helpTail);
}

} // namespace batch
