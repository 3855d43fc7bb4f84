// Applies pieces to a document and writes it, to measure what they bring:
//
//   corvane_piecesof <pieces> <document> <copy>
//
// The pieces are names that losslessPieces() knows, with commas between them; "all", "none", or
// "but:" and names. Prints the size of the copy and, per piece, its name and the milliseconds of
// its work.

#include "engine/lossless/claim.h"
#include "engine/lossless/objectstreams.h"
#include "engine/lossless/pieces.h"
#include "engine/pdf/walk.h"

#include <algorithm>
#include <ctime>
#include <filesystem>
#include <iostream>
#include <qpdf/QPDFWriter.hh>
#include <sstream>

namespace {

class Choice
{
public:
    explicit Choice(const std::string &text)
        : m_inverted(text.rfind("but:", 0) == 0 || text == "all")
    {
        std::istringstream names(text.rfind("but:", 0) == 0 ? text.substr(4) : text);
        for (std::string name; std::getline(names, name, ',');)
            m_names.push_back(name);
    }

    bool has(const std::string &name) const
    {
        return (std::find(m_names.begin(), m_names.end(), name) != m_names.end()) != m_inverted;
    }

private:
    bool m_inverted;
    std::vector<std::string> m_names;
};

void run(QPDF &document, const Choice &choice)
{
    const engine::LosslessOptions options = {engine::claimedStandard(document), true};
    for (const engine::Piece &piece : engine::losslessPieces()) {
        if (!choice.has(piece.name))
            continue;
        const std::clock_t begin = std::clock();
        applyPiece(piece, document, options);
        const double seconds = double(std::clock() - begin) / CLOCKS_PER_SEC;
        std::cout << '\t' << piece.name << '\t' << seconds * 1000;
    }
}

bool hasObjectStreams(QPDF &document)
{
    const auto entries = document.getXRefTable();
    return std::any_of(entries.begin(), entries.end(),
                       [](const auto &entry) { return entry.second.getType() == 2; });
}

void write(QPDF &document, const std::string &copy, qpdf_object_stream_e mode)
{
    QPDFWriter writer(document, copy.c_str());
    writer.setObjectStreamMode(mode);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.write();
}

// As the engine does it: with object streams only where that is smaller.
std::uintmax_t written(QPDF &document, const std::string &copy, bool objectStreams)
{
    write(document, copy, qpdf_o_disable);
    const auto size = std::filesystem::file_size(copy);
    if (!objectStreams)
        return size;
    const std::string other = copy + ".streams";
    write(document, other, qpdf_o_generate);
    if (std::filesystem::file_size(other) < size)
        std::filesystem::rename(other, copy);
    else
        std::filesystem::remove(other);
    return std::filesystem::file_size(copy);
}

int measure(const Choice &choice, const char *original, const char *copy)
{
    QPDF document;
    document.setSuppressWarnings(true);
    document.processFile(original);
    const engine::ObjectStreamFacts facts = {document.getPDFVersion(), hasObjectStreams(document),
                                             engine::claimedStandard(document)};
    run(document, choice);
    const bool wanted = choice.has("object streams") && engine::mayHaveObjectStreams(facts);
    const bool kept = facts.present && engine::mayHaveObjectStreams(facts);
    std::cout << '\t' << written(document, copy, wanted || kept) << '\n';
    return 0;
}

} // namespace

int main(int count, char **arguments)
{
    if (count != 4) {
        std::cerr << "usage: corvane_piecesof <pieces> <document> <copy>\n";
        return 2;
    }
    try {
        return measure(Choice(arguments[1]), arguments[2], arguments[3]);
    } catch (const std::exception &error) {
        std::cerr << arguments[2] << ": " << error.what() << '\n';
        return 1;
    }
}
