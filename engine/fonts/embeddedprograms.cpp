#include "embeddedprograms.h"

#include "pdf/walk.h"

#include <map>
#include <set>

namespace engine {

namespace {

constexpr const char *programKeys[] = {"/FontFile", "/FontFile2", "/FontFile3"};

class Collector
{
public:
    void take(QPDFObjectHandle dictionary)
    {
        for (const char *key : programKeys)
            takeDescriptor(dictionary, key);
        QPDFObjectHandle descendants = dictionary.getKey("/DescendantFonts");
        if (dictionary.getKey("/Subtype").isNameAndEquals("/Type0") && descendants.isArray())
            takeComposite(dictionary, descendants);
        else if (dictionary.hasKey("/FontDescriptor") && !isCidFont(dictionary))
            takeUser(
                {dictionary, QPDFObjectHandle::newNull(), dictionary.getKey("/FontDescriptor")});
    }

    std::vector<EmbeddedProgram> programs()
    {
        std::vector<EmbeddedProgram> programs;
        for (auto &[number, entry] : m_programs) {
            entry.program.isAccountedFor =
                entry.program.isAccountedFor && entry.descriptors == entry.used;
            programs.push_back(entry.program);
        }
        return programs;
    }

private:
    struct Entry
    {
        EmbeddedProgram program;
        std::set<QPDFObjGen> descriptors;
        std::set<QPDFObjGen> used;
    };

    static bool isCidFont(QPDFObjectHandle font)
    {
        QPDFObjectHandle subtype = font.getKey("/Subtype");
        return subtype.isNameAndEquals("/CIDFontType0") || subtype.isNameAndEquals("/CIDFontType2");
    }

    Entry &entryOf(QPDFObjectHandle stream, const char *key)
    {
        Entry &entry = m_programs[stream.getObjGen()];
        entry.program.isAccountedFor =
            entry.program.isAccountedFor && (entry.program.key.empty() || entry.program.key == key);
        entry.program.stream = stream;
        entry.program.key = key;
        return entry;
    }

    // One without a number can't be told from another.
    void takeDescriptor(QPDFObjectHandle dictionary, const char *key)
    {
        QPDFObjectHandle stream = dictionary.getKey(key);
        if (!stream.isStream())
            return;
        Entry &entry = entryOf(stream, key);
        entry.descriptors.insert(dictionary.getObjGen());
        entry.program.isAccountedFor = entry.program.isAccountedFor && dictionary.isIndirect();
    }

    void takeComposite(QPDFObjectHandle font, QPDFObjectHandle descendants)
    {
        for (QPDFObjectHandle descendant : descendants.getArrayAsVector()) {
            if (!descendant.isDictionary())
                continue;
            takeUser({font, descendant, descendant.getKey("/FontDescriptor")},
                     descendants.getArrayNItems() == 1);
        }
    }

    void takeUser(const ProgramUser &user, bool isValid = true)
    {
        QPDFObjectHandle descriptor = user.descriptor;
        if (!descriptor.isDictionary())
            return;
        for (const char *key : programKeys) {
            if (!descriptor.getKey(key).isStream())
                continue;
            Entry &entry = entryOf(descriptor.getKey(key), key);
            entry.program.users.push_back(user);
            entry.used.insert(descriptor.getObjGen());
            entry.program.isAccountedFor = entry.program.isAccountedFor && isValid;
        }
    }

    std::map<QPDFObjGen, Entry> m_programs;
};

} // namespace

std::vector<EmbeddedProgram> embeddedPrograms(QPDF &document)
{
    Collector collector;
    for (const QPDFObjectHandle &dictionary : reachableDictionaries(document))
        collector.take(dictionary);
    return collector.programs();
}

} // namespace engine
