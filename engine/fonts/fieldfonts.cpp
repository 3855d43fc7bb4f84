#include "fieldfonts.h"

#include "fontuses.h"
#include "pdf/walk.h"

namespace engine {

namespace {

constexpr int deepest = 20; // forms within an appearance

class FieldFonts
{
public:
    void addResources(QPDFObjectHandle resources, int depth = 0)
    {
        if (!resources.isDictionary() || depth > deepest)
            return;
        QPDFObjectHandle fonts = resources.getKey("/Font");
        if (fonts.isDictionary()) {
            for (const auto &[name, font] : fonts.getDictAsMap())
                m_fonts.insert(identityOf(font));
        }
        QPDFObjectHandle forms = resources.getKey("/XObject");
        if (forms.isDictionary()) {
            for (const auto &[name, form] : forms.getDictAsMap())
                addForm(form, depth + 1);
        }
    }

    // An appearance, or those of several states.
    void addAppearance(QPDFObjectHandle appearance)
    {
        addForm(appearance, 0);
        if (!appearance.isDictionary())
            return;
        for (const auto &[state, form] : appearance.getDictAsMap())
            addForm(form, 0);
    }

    std::set<std::string> take() { return std::move(m_fonts); }

private:
    void addForm(QPDFObjectHandle form, int depth)
    {
        if (form.isStream() && m_seen.insert(form.getObjGen()).second)
            addResources(form.getDict().getKey("/Resources"), depth);
    }

    std::set<std::string> m_fonts;
    std::set<QPDFObjGen> m_seen;
};

bool isFilledIn(QPDFObjectHandle annotation)
{
    QPDFObjectHandle subtype = annotation.getKey("/Subtype");
    return subtype.isNameAndEquals("/Widget") || subtype.isNameAndEquals("/FreeText");
}

// What stands before the size and the operator in "/Helv 12 Tf".
std::set<std::string> namesIn(const std::string &defaultAppearance)
{
    std::set<std::string> names;
    for (std::size_t begin = defaultAppearance.find('/'); begin != std::string::npos;
         begin = defaultAppearance.find('/', begin + 1)) {
        const auto end = defaultAppearance.find_first_of(" \t\r\n\f[]()<>/%", begin + 1);
        names.insert(defaultAppearance.substr(begin, end - begin));
    }
    return names;
}

// A name that the form's default resources don't know may be looked for in any others.
void addNamed(const std::vector<QPDFObjectHandle> &dictionaries, const std::set<std::string> &names,
              std::set<std::string> &fonts)
{
    for (QPDFObjectHandle dictionary : dictionaries) {
        QPDFObjectHandle known = dictionary.getKey("/Font");
        for (const std::string &name : names) {
            if (known.isDictionary() && known.hasKey(name))
                fonts.insert(identityOf(known.getKey(name)));
        }
    }
}

} // namespace

std::set<std::string> fontsOfFields(QPDF &document)
{
    const auto dictionaries = reachableDictionaries(document);
    FieldFonts fonts;
    std::set<std::string> names;
    for (QPDFObjectHandle dictionary : dictionaries) {
        fonts.addResources(dictionary.getKey("/DR"));
        QPDFObjectHandle appearances = dictionary.getKey("/AP");
        if (isFilledIn(dictionary) && appearances.isDictionary()) {
            for (const auto &[kind, appearance] : appearances.getDictAsMap())
                fonts.addAppearance(appearance);
        }
        if (dictionary.getKey("/DA").isString())
            names.merge(namesIn(dictionary.getKey("/DA").getStringValue()));
    }
    std::set<std::string> found = fonts.take();
    addNamed(dictionaries, names, found);
    return found;
}

} // namespace engine
