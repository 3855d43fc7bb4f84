#pragma once

#include <map>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

namespace engine {

/// The names that a content may use: those of its own resources, then those of the content that
/// shows it, as readers look them up.
class ContentScope
{
public:
    struct Found
    {
        QPDFObjectHandle resources; ///< where it was found; null: nowhere
        QPDFObjectHandle value;
    };

    /// The outer scope outlives this one; null: none.
    ContentScope(const QPDFObjectHandle &resources, QPDFObjGen owner, ContentScope *outer);

    /// isFirst tells whether this name is looked up here for the first time.
    Found &find(const std::string &category, const std::string &name, bool &isFirst);

    /// The object with the innermost resources.
    [[nodiscard]] QPDFObjGen owner() const { return m_owner; }

private:
    Found lookUp(const std::string &category, const std::string &name);

    QPDFObjectHandle m_resources;
    QPDFObjGen m_owner;
    ContentScope *m_outer;
    std::map<std::string, std::map<std::string, Found>> m_found;
};

} // namespace engine
