#include "plan.h"

#include "argumentfile.h"
#include "channels.h"
#include "outputintent.h"
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

void append(Words &words, const Words &more)
{
    words.insert(words.end(), more.begin(), more.end());
}

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

// Revision 3 and every reader of it take no more than 32 bytes of a password, and Ghostscript
// repeats a switch that is too long for it in a message. A letter stays whole: Ghostscript takes
// what comes behind the half of one for its other half.
std::string shortened(std::string password)
{
    constexpr std::size_t significant = 32;
    constexpr std::size_t letter = 4;
    std::size_t size = significant;
    while (size < password.size() && size < significant + letter - 1 &&
           (password[size] & 0xc0) == 0x80)
        ++size;
    password.resize(std::min(size, password.size()));
    return password;
}

// Ghostscript takes no user password without an owner password.
void planPasswords(const Line &line, Job &job)
{
    const auto user = valueOf(line.switches, userPasswordSwitch);
    const auto owner = valueOf(line.switches, ownerPasswordSwitch);
    if (!user && !owner)
        return;
    job.passwords.user = user.value_or("");
    job.passwords.owner = owner.value_or(job.passwords.user);
    Words words;
    if (user)
        words.push_back(std::string(userPasswordSwitch) + shortened(*user));
    words.push_back(std::string(ownerPasswordSwitch) + shortened(job.passwords.owner));
    job.argumentFile = argumentFileText(words);
    job.password = shortened(user ? *user : *owner);
}

// 128 bits instead of Ghostscript's 40 are revision 3, which reads the permissions differently.
Words encryptionWords(const Line &line)
{
    Words words = {"@" + nameOf(passwordChannel), "-dKeyLength=128", "-dEncryptionR=3"};
    if (const auto permissions = valueOf(line.switches, permissionsSwitch))
        words.push_back(std::string(permissionsSwitch) +
                        std::to_string(revision3Permissions(std::atoi(permissions->c_str()))));
    return words;
}

bool has(const Words &words, std::string_view word)
{
    return std::find(words.begin(), words.end(), word) != words.end();
}

Wishes wishesOf(const Line &line, bool encrypted)
{
    Wishes wishes;
    wishes.pdfa = has(line.switches, pdfaSwitch);
    wishes.smallestBilevel =
        has(line.switches, jbig2Switch) || has(line.switches, anyMonoFilterSwitch);
    wishes.smoothBilevel =
        has(line.switches, averageMonoSwitch) || has(line.switches, bicubicMonoSwitch);
    wishes.compressedFonts = !has(line.switches, plainFontsSwitch);
    wishes.changes = encrypted || !line.mark.empty();
    return wishes;
}

// Ghostscript doesn't know how to write JBIG2. What it writes without loss is encoded anew later.
Words writableSwitches(Words words)
{
    std::replace(words.begin(), words.end(), std::string(jbig2Switch),
                 std::string("-dMonoImageFilter=/CCITTFaxEncode"));
    return words;
}

Words switchWords(const Line &line, bool encrypted)
{
    Words words = writableSwitches(line.switches);
    if (!encrypted)
        return words;
    std::erase_if(words, [](const std::string &word) {
        return word.starts_with(userPasswordSwitch) || word.starts_with(ownerPasswordSwitch) ||
               word.starts_with(permissionsSwitch);
    });
    append(words, encryptionWords(line));
    return words;
}

// Ghostscript writes a blank page, and is content, when it could not make out a document at all.
// Only the device knows how many pages it was really given.
Words pageReport()
{
    const std::string report = nameOf(reportChannel);
    return {"-c", "(" + report +
                      ") (w) file dup currentpagedevice /PageCount get 20 string cvs writestring"
                      " closefile"};
}

Words ghostscriptWords(const Line &line, bool encrypted)
{
    const bool pdfa = has(line.switches, pdfaSwitch);
    Words words = switchWords(line, encrypted);
    words.emplace_back("-dAutoRotatePages=/None");
    if (pdfa)
        append(words, {"-sColorConversionStrategy=RGB", "-dPDFACompatibilityPolicy=1"});
    append(words, {"--permit-file-write=" + nameOf(reportChannel),
                   std::string(outputSwitch) + nameOf(draftChannel)});
    if (pdfa)
        append(words, {"-c", std::string(outputIntentProgram)});
    append(words, {"-f", nameOf(documentChannel)});
    if (!line.mark.empty())
        words.push_back(nameOf(markChannel));
    append(words, pageReport());
    return words;
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
    Job job{line.input, line.output, line.mark, {}, {}, {}, {}, {}};
    planPasswords(line, job);
    const bool encrypted = !job.argumentFile.empty();
    job.wishes = wishesOf(line, encrypted);
    if (job.wishes.pdfa && encrypted)
        return Refusal{"PDF/A allows no passwords"};
    job.arguments = ghostscriptWords(line, encrypted);
    return job;
}

} // namespace engine
