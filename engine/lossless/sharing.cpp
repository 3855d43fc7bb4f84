#include "sharing.h"

#include <algorithm>
#include <set>

namespace engine {

namespace {

using Object = QPDFObjectHandle;

// How an object is met.
enum class Way {
    Other,      // somewhere: it may be anything
    Part,       // as a part of what is drawn; so are the items of an array
    Names,      // as a dictionary whose values are such parts, under anybody's names
    Appearance, // as an annotation's appearance, or the dictionary of its states
    AppearanceResources,
};

constexpr const char *parts[] = {
    "/Alternate",
    "/BG",
    "/BG2",
    "/BlackGeneration",
    "/CIDSystemInfo",
    "/CIDSet",
    "/CS",
    "/CIDToGIDMap",
    "/DecodeParms",
    "/DescendantFonts",
    "/DestOutputProfile",
    "/Encoding",
    "/FontDescriptor",
    "/FontFile",
    "/FontFile2",
    "/FontFile3",
    "/Function",
    "/Functions",
    "/G",
    "/Group",
    "/HT",
    "/JBIG2Globals",
    "/Mask",
    "/Resources",
    "/SMask",
    "/TR",
    "/TR2",
    "/ToUnicode",
    "/UCR",
    "/UCR2",
    "/UseCMap",
    "/W",
    "/W2",
    "/Widths",
};

constexpr const char *named[] = {
    "/CharProcs", "/ColorSpace", "/Colorants", "/ExtGState",
    "/Font",      "/Pattern",    "/Shading",   "/XObject",
};

constexpr const char *identities[] = {
    "/Action",         "/Annot",    "/Bead",     "/Catalog",   "/DPart", "/EmbeddedFile",
    "/Encrypt",        "/Filespec", "/MCR",      "/Metadata",  "/OBJR",  "/OCG",
    "/OCMD",           "/Outlines", "/Page",     "/Pages",     "/Sig",   "/StructElem",
    "/StructTreeRoot", "/Thread",   "/Template", "/Rendition", "/Sound",
};

constexpr const char *ties[] = {"/Kids", "/OC", "/Parent", "/StructParent", "/StructParents"};

template <std::size_t size>
bool isIn(const char *const (&table)[size], const std::string &name)
{
    return std::find(std::begin(table), std::end(table), name) != std::end(table);
}

Object dictionaryOf(Object object)
{
    return object.isStream() ? object.getDict() : object;
}

bool hasIdentity(Object object)
{
    Object dictionary = dictionaryOf(object);
    if (!dictionary.isDictionary())
        return false;
    Object type = dictionary.getKey("/Type");
    return (type.isName() && isIn(identities, type.getName())) ||
           std::any_of(std::begin(ties), std::end(ties),
                       [&](const char *key) { return dictionary.hasKey(key); });
}

class Search
{
public:
    explicit Search(QPDF &document)
    {
        enter(document.getTrailer(), Way::Other, {});
        while (!m_waiting.empty()) {
            const Visit visit = m_waiting.back();
            m_waiting.pop_back();
            enter(visit.object, visit.way, Object(visit.object).getObjGen());
        }
    }

    std::map<QPDFObjGen, Part> take()
    {
        for (auto entry = m_parts.begin(); entry != m_parts.end();) {
            const bool kept =
                m_others.count(entry->first) == 0 && !hasIdentity(entry->second.object);
            entry = kept ? std::next(entry) : m_parts.erase(entry);
        }
        return std::move(m_parts);
    }

private:
    struct Visit
    {
        Object object;
        Way way;
    };

    void enter(Object object, Way way, QPDFObjGen owner)
    {
        if (object.isArray()) {
            enterArray(object, way == Way::Part ? Way::Part : Way::Other, owner);
            return;
        }
        Object dictionary = dictionaryOf(object);
        if (!dictionary.isDictionary())
            return;
        for (auto [key, value] : dictionary.getDictAsMap())
            meet(value, wayTo(key, value, object, way), {dictionary, key, 0, owner});
    }

    void enterArray(Object array, Way way, QPDFObjGen owner)
    {
        const int count = array.getArrayNItems();
        for (int index = 0; index < count; ++index)
            meet(array.getArrayItem(index), way, {array, {}, index, owner});
    }

    static Way wayTo(const std::string &key, Object value, Object holder, Way way)
    {
        if (way == Way::Names)
            return Way::Part;
        if (way == Way::Appearance && !holder.isStream())
            return Way::Appearance;
        if (way == Way::Appearance && key == "/Resources")
            return Way::AppearanceResources;
        if (key == "/AP")
            return Way::Appearance;
        if (key == "/Contents" && holder.isDictionaryOfType("/Page"))
            return Way::Part;
        // Viewers fill in what an appearance draws as well.
        return way == Way::AppearanceResources && key == "/XObject" ? Way::Other
                                                                    : wayInPart(key, value);
    }

    static Way wayInPart(const std::string &key, Object value)
    {
        if (isIn(named, key))
            return value.isDictionary() ? Way::Names : Way::Part;
        return isIn(parts, key) ? Way::Part : Way::Other;
    }

    // An object is looked into once for each way on which it is met.
    void meet(Object object, Way way, const Use &use)
    {
        if (!object.isIndirect()) {
            enter(object, way, use.owner);
            return;
        }
        const QPDFObjGen number = object.getObjGen();
        if (way == Way::Part || way == Way::Names)
            m_parts.insert({number, {object, {}}}).first->second.uses.push_back(use);
        else
            m_others.insert(number);
        if (m_seen.insert({number, way}).second)
            m_waiting.push_back({object, way});
    }

    std::vector<Visit> m_waiting;
    std::set<std::pair<QPDFObjGen, Way>> m_seen;
    std::map<QPDFObjGen, Part> m_parts;
    std::set<QPDFObjGen> m_others; // met in another way as well
};

} // namespace

void Use::set(QPDFObjectHandle object) const
{
    Object place = holder;
    if (place.isArray())
        place.setArrayItem(index, object);
    else
        place.replaceKey(key, object);
}

std::map<QPDFObjGen, Part> sharedParts(QPDF &document)
{
    return Search(document).take();
}

} // namespace engine
