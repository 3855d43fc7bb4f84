#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <qpdf/QPDF.hh>
#include <vector>

namespace engine {

/// The places that the links and outline entries of an original lead to, and the same in its copy.
class Destinations
{
public:
    /// Both documents have to live as long as this does.
    Destinations(QPDF &copy, QPDF &original);

    /// What a destination stands for if it is a name; a named one may be in a dictionary. Null if
    /// there is none of that name.
    QPDFObjectHandle arrayOf(QPDFObjectHandle destination);

    /// The page of the original, from 0, that an array leads to; nothing if it is none.
    std::optional<std::size_t> pageOf(QPDFObjectHandle array);

    /// The destination in the copy; null if it leads to no page.
    QPDFObjectHandle inCopy(QPDFObjectHandle destination);

private:
    QPDFObjectHandle named(QPDFObjectHandle name);

    QPDF &m_copy;
    QPDF &m_original;
    std::vector<QPDFObjectHandle> m_copyPages;
    std::map<QPDFObjGen, std::size_t> m_numbers;
};

} // namespace engine
