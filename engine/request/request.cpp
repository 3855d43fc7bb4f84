#include "request.h"

#include "permissions.h"
#include "switches.h"

#include <algorithm>
#include <cstdlib>
#include <optional>

namespace engine {

namespace {

using Words = std::vector<std::string>;

// The window's words: switches -sOutputFile=output -f input [mark]
struct Line
{
    Words switches;
    std::string output;
    std::string input;
    std::string mark;
};

Refusal refusalOf(Words::difference_type position)
{
    return {"argument " + std::to_string(position + 1) + " is not one that the window sends"};
}

std::variant<Refusal, Words> readSwitches(Words::const_iterator begin, Words::const_iterator end)
{
    std::vector<std::string_view> seen;
    for (auto word = begin; word != end; ++word) {
        const std::string_view name = windowSwitch(*word);
        if (name.empty() || std::find(seen.begin(), seen.end(), name) != seen.end())
            return refusalOf(word - begin);
        seen.push_back(name);
    }
    return Words(begin, end);
}

bool isMark(const std::string &name)
{
    return name.starts_with('/') && name.ends_with("/pdfinfo.txt");
}

std::variant<Refusal, Line> readLine(const Words &words)
{
    const auto output = std::find_if(words.begin(), words.end(), [](const std::string &word) {
        return word.starts_with(outputSwitch);
    });
    const auto switches = readSwitches(words.begin(), output);
    if (const auto *refusal = std::get_if<Refusal>(&switches))
        return *refusal;
    const auto rest = words.end() - output;
    if (rest < 3 || output[1] != "-f")
        return Refusal{"no output, or no -f and one input behind it"};
    if (rest > 4 || (rest == 4 && !isMark(output[3])))
        return refusalOf(output + 3 - words.begin());

    Line line{std::get<Words>(switches), output->substr(outputSwitch.size()), output[2], {}};
    if (rest == 4)
        line.mark = output[3];
    if (line.output.empty() || line.input.empty())
        return Refusal{"an empty name"};
    return line;
}

std::optional<std::string> valueOf(const Words &words, std::string_view name)
{
    for (const std::string &word : words) {
        if (word.starts_with(name))
            return word.substr(name.size());
    }
    return {};
}

// Without an owner password of its own, a copy takes the user's.
Passwords passwordsOf(const Line &line)
{
    const auto user = valueOf(line.switches, userPasswordSwitch);
    const auto owner = valueOf(line.switches, ownerPasswordSwitch);
    return {.user = user.value_or(""), .owner = owner.value_or(user.value_or(""))};
}

int permissionsOf(const Line &line)
{
    const auto permissions = valueOf(line.switches, permissionsSwitch);
    return permissions ? std::atoi(permissions->c_str()) : allPermissions;
}

bool has(const Words &words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

CopyOptions optionsOf(const Line &line)
{
    CopyOptions options;
    options.pdfa = has(line.switches, pdfaSwitch);
    options.smallestBilevel =
        has(line.switches, jbig2Switch) || has(line.switches, anyMonoFilterSwitch);
    options.compressedFonts = !has(line.switches, plainFontsSwitch);
    options.subsetFonts = has(line.switches, subsetFontsSwitch);
    options.leaveOutStandard14 = has(line.switches, noStandardFontsSwitch);
    return options;
}

} // namespace

Plan planFor(const Words &arguments)
{
    if (!isForPdfwrite(arguments))
        return PassThrough{};
    const auto read = readLine(arguments);
    if (const auto *refusal = std::get_if<Refusal>(&read))
        return *refusal;
    const Line &line = std::get<Line>(read);
    const Request request = {
        .input = line.input,
        .output = line.output,
        .mark = line.mark,
        .switches = line.switches,
        .passwords = passwordsOf(line),
        .permissions = permissionsOf(line),
        .options = optionsOf(line),
    };
    if (request.options.pdfa && request.passwords.areSet())
        return Refusal{"PDF/A allows no passwords"};
    return request;
}

} // namespace engine
