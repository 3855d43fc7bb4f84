#include "unusednames.h"

#include "content/contentwalk.h"
#include "pdf/walk.h"
#include "references.h"

#include <algorithm>
#include <qpdf/QPDFObjectHandle.hh>
#include <set>

namespace engine {

namespace {

using Object = QPDFObjectHandle;
using Objects = std::vector<Object>;

constexpr const char *categories[] = {"/ColorSpace", "/ExtGState", "/Font",
                                      "/Pattern",    "/Shading",   "/XObject"};

// Readers take them for the device's colours, which no name is needed for.
constexpr const char *defaults[] = {"/DefaultCMYK", "/DefaultGray", "/DefaultRGB"};

// The names that contents use, by the dictionaries that they were found in.
class UsedNames : public ContentVisitor
{
public:
    void resource(Object resources, const std::string &category, const std::string &name) override
    {
        namesOf(resources.getKey(category)).insert(name);
    }
    void unclear(const Shown &, Object) override { m_complete = false; }

    [[nodiscard]] bool areComplete() const { return m_complete; }

    std::set<std::string> &namesOf(Object dictionary)
    {
        if (!m_latestNames || !dictionary.isSameObjectAs(m_latest)) {
            m_latest = dictionary;
            // Those without a number are told apart by what they hold: what one of two equal ones
            // needs stays in both.
            m_latestNames = &m_names[dictionary.unparse()];
        }
        return *m_latestNames;
    }

private:
    std::map<std::string, std::set<std::string>> m_names;
    Object m_latest;
    std::set<std::string> *m_latestNames = nullptr;
    bool m_complete = true;
};

// The resources that the nodes of the page tree have of their own.
Objects resourcesOfPages(QPDF &document)
{
    Objects resources;
    std::set<QPDFObjGen> seen;
    for (Object node : document.getAllPages()) {
        while (node.isDictionary() && seen.insert(node.getObjGen()).second) {
            resources.push_back(node.getKey("/Resources"));
            node = node.getKey("/Parent");
        }
    }
    return resources;
}

int placesOf(QPDFObjGen number, const References &references)
{
    const auto found = references.find(number);
    return found == references.end() ? 0 : found->second;
}

// Of dictionaries, one for each place that refers to it, those to which no other place does, once.
Objects ownedBy(const Objects &places, const References &references)
{
    References known;
    Objects owned;
    for (Object dictionary : places) {
        if (!dictionary.isDictionary())
            continue;
        const QPDFObjGen number = dictionary.getObjGen();
        if (!dictionary.isIndirect() || ++known[number] == placesOf(number, references))
            owned.push_back(dictionary);
    }
    return owned;
}

Objects categoriesOf(const Objects &resources)
{
    Objects dictionaries;
    for (Object one : resources) {
        for (const char *category : categories)
            dictionaries.push_back(one.getKey(category));
    }
    return dictionaries;
}

// Editors draw appearances with the fonts that these texts name.
std::string appearanceTextsIn(QPDF &document)
{
    std::string texts;
    for (Object dictionary : reachableDictionaries(document)) {
        Object text = dictionary.getKey("/DA");
        if (text.isString())
            texts += text.getStringValue() + ' ';
    }
    return texts;
}

void clean(Object dictionary, const std::set<std::string> &used, const std::string &texts)
{
    for (const std::string &name : dictionary.getKeys()) {
        const bool isDefault =
            std::find(std::begin(defaults), std::end(defaults), name) != std::end(defaults);
        if (used.count(name) == 0 && !isDefault && texts.find(name) == std::string::npos)
            dictionary.removeKey(name);
    }
}

} // namespace

void dropUnusedNames(QPDF &document, const LosslessOptions &)
{
    UsedNames used;
    walkContent(document, used);
    if (!used.areComplete())
        return;
    const References references = referencesIn(document);
    const std::string texts = appearanceTextsIn(document);
    const Objects resources = ownedBy(resourcesOfPages(document), references);
    for (const Object &dictionary : ownedBy(categoriesOf(resources), references))
        clean(dictionary, used.namesOf(dictionary), texts);
}

} // namespace engine
