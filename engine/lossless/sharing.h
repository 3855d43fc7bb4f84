#pragma once

#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <vector>

namespace engine {

/// One place that refers to an object with a number.
struct Use
{
    QPDFObjectHandle holder; ///< the dictionary or array
    std::string key;         ///< in a dictionary
    int index;               ///< in an array
    QPDFObjGen owner;        ///< the object with a number that the holder lies in; 0: the trailer

    /// Lets the place refer to another object.
    void set(QPDFObjectHandle object) const;
};

/// An object that is nothing but what it holds, and all the places that refer to it.
struct Part
{
    QPDFObjectHandle object;
    std::vector<Use> uses;
};

/// What may be there once for all who use it: objects that are met only where a reader takes them
/// for what they hold (resources and what they are made of, contents, font programs, profiles) and
/// that have no identity of their own, as pages, annotations, fields, layers and their like have,
/// and appearances, which a viewer may draw anew.
std::map<QPDFObjGen, Part> sharedParts(QPDF &document);

} // namespace engine
