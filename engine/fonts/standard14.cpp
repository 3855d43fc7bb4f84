#include "standard14.h"

#include "descriptors.h"
#include "simplefont.h"

#include <algorithm>

namespace engine {

namespace {

constexpr const char *standardFonts[] = {
    "/Courier",     "/Courier-Bold",   "/Courier-Oblique",   "/Courier-BoldOblique",
    "/Helvetica",   "/Helvetica-Bold", "/Helvetica-Oblique", "/Helvetica-BoldOblique",
    "/Times-Roman", "/Times-Bold",     "/Times-Italic",      "/Times-BoldItalic",
    "/Symbol",      "/ZapfDingbats"};

std::string nameOf(QPDFObjectHandle font)
{
    QPDFObjectHandle name = font.getKey("/BaseFont");
    return name.isName() ? withoutTag(name.getName()) : std::string();
}

bool isStandard(QPDFObjectHandle font)
{
    return font.getKey("/Subtype").isNameAndEquals("/Type1") &&
           std::find(std::begin(standardFonts), std::end(standardFonts), nameOf(font)) !=
               std::end(standardFonts);
}

// The two without letters have encodings of their own.
bool hasLetters(QPDFObjectHandle font)
{
    return nameOf(font) != "/Symbol" && nameOf(font) != "/ZapfDingbats";
}

// Whether the document says itself what each code means; the program's own encoding goes with it.
bool encodesAll(QPDFObjectHandle font, const std::set<unsigned> &codes)
{
    QPDFObjectHandle encoding = font.getKey("/Encoding");
    const bool hasBase =
        encoding.isName() || (encoding.isDictionary() && encoding.getKey("/BaseEncoding").isName());
    const auto differences = differencesOf(encoding);
    return (hasBase && hasLetters(font)) ||
           std::all_of(codes.begin(), codes.end(),
                       [&](unsigned code) { return differences.count(code) != 0; });
}

} // namespace

bool canBeLeftOut(const EmbeddedProgram &program, const FontUses &uses)
{
    return program.isAccountedFor &&
           std::all_of(program.users.begin(), program.users.end(), [&](ProgramUser user) {
               return !user.isComposite() && isStandard(user.font) &&
                      encodesAll(user.font, uses.of(user.font).bytes);
           });
}

void leaveOut(const EmbeddedProgram &program)
{
    for (ProgramUser user : program.users) {
        user.descriptor.removeKey(program.key);
        user.descriptor.removeKey("/CharSet");
        for (QPDFObjectHandle dictionary : {user.font, user.descriptor}) {
            const char *key = dictionary.hasKey("/BaseFont") ? "/BaseFont" : "/FontName";
            if (dictionary.getKey(key).isName())
                dictionary.replaceKey(
                    key, QPDFObjectHandle::newName(withoutTag(dictionary.getKey(key).getName())));
        }
    }
}

} // namespace engine
