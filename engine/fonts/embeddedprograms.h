#pragma once

#include <qpdf/QPDF.hh>
#include <string>
#include <vector>

namespace engine {

/// One way from a font dictionary to its program.
struct ProgramUser
{
    QPDFObjectHandle font;       ///< as contents name it
    QPDFObjectHandle descendant; ///< of a composite font; else null
    QPDFObjectHandle descriptor;

    bool isComposite() { return !descendant.isNull(); }
};

/// A font program that is embedded, and the fonts that it serves.
struct EmbeddedProgram
{
    QPDFObjectHandle stream;
    std::string key; ///< in the descriptor: "/FontFile", "/FontFile2" or "/FontFile3"
    std::vector<ProgramUser> users;
    bool isAccountedFor = true; ///< nothing else in the document leads to it
};

/// All of a document, in the order of their numbers.
std::vector<EmbeddedProgram> embeddedPrograms(QPDF &document);

} // namespace engine
