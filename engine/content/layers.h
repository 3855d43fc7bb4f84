#pragma once

#include <qpdf/QPDF.hh>
#include <set>

namespace engine {

/// What of a document's optional content is shown when it is opened.
class Layers
{
public:
    explicit Layers(QPDF &document);

    /// For the value of an /OC entry, or of the property of an /OC mark; true for what is none.
    [[nodiscard]] bool shows(QPDFObjectHandle content) const;

private:
    [[nodiscard]] bool showsMembership(QPDFObjectHandle membership) const;
    [[nodiscard]] bool fulfils(QPDFObjectHandle expression, int depth) const;
    [[nodiscard]] bool isOn(const QPDFObjectHandle &group) const;

    bool m_onUnlessListed = true;
    std::set<QPDFObjGen> m_listed;
};

} // namespace engine
