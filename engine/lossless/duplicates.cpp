#include "duplicates.h"

#include "pdf/streams.h"
#include "sharing.h"

#include <functional>
#include <qpdf/QPDFExc.hh>
#include <set>
#include <unordered_map>

namespace engine {

namespace {

using Object = QPDFObjectHandle;
using Numbers = std::set<QPDFObjGen>;

long long lengthOf(Object stream)
{
    Object length = stream.getDict().getKey("/Length");
    return length.isInteger() ? length.getIntValue() : -1;
}

// The bytes as they lie in the file; nothing if they can't be had.
std::optional<std::string> readableBytesOf(Object stream)
{
    try {
        return rawBytesOf(stream);
    } catch (const QPDFExc &) {
        return {};
    }
}

class Merge
{
public:
    explicit Merge(std::map<QPDFObjGen, Part> parts)
        : m_parts(std::move(parts))
    {
        for (const auto &[number, part] : m_parts) {
            if (Object(part.object).isStream())
                ++m_lengths[lengthOf(part.object)];
        }
    }

    // What refers to something that was merged may have become equal to something else by that.
    void run()
    {
        Numbers open;
        for (const auto &[number, part] : m_parts)
            open.insert(number);
        while (!open.empty())
            open = merged(open);
    }

private:
    Numbers merged(const Numbers &open)
    {
        Numbers changed;
        for (const QPDFObjGen number : open) {
            const auto found = m_parts.find(number);
            if (found == m_parts.end())
                continue;
            const auto text = textOf(found->second.object);
            if (!text)
                continue;
            QPDFObjGen &first = m_first.insert({*text, number}).first->second;
            if (m_parts.count(first) == 0)
                first = number;
            if (first != number && areEqual(m_parts.at(first).object, found->second.object))
                replace(number, first, changed);
        }
        return changed;
    }

    // What tells an object from all others, but for the bytes of streams, of which it has a hash.
    // Nothing for a stream that is as long as no other one.
    std::optional<std::string> textOf(Object object)
    {
        if (!object.isStream())
            return object.unparseResolved();
        if (m_lengths[lengthOf(object)] < 2)
            return {};
        Object dictionary = object.getDict().shallowCopy();
        dictionary.removeKey("/Length");
        const auto hash = hashOf(object);
        return hash ? std::optional("stream " + *hash + dictionary.unparse()) : std::nullopt;
    }

    std::optional<std::string> hashOf(Object stream)
    {
        auto found = m_hashes.find(stream.getObjGen());
        if (found == m_hashes.end()) {
            const auto bytes = readableBytesOf(stream);
            auto hash = bytes ? std::optional(std::to_string(std::hash<std::string>()(*bytes)))
                              : std::nullopt;
            found = m_hashes.insert({stream.getObjGen(), std::move(hash)}).first;
        }
        return found->second;
    }

    static bool areEqual(Object one, Object other)
    {
        return !one.isStream() || readableBytesOf(one) == readableBytesOf(other);
    }

    void replace(QPDFObjGen number, QPDFObjGen by, Numbers &changed)
    {
        Part &remaining = m_parts.at(by);
        for (const Use &use : m_parts.at(number).uses) {
            use.set(remaining.object);
            remaining.uses.push_back(use);
            changed.insert(use.owner);
        }
        m_parts.erase(number);
    }

    std::map<QPDFObjGen, Part> m_parts;                  // that are left
    std::unordered_map<std::string, QPDFObjGen> m_first; // by what they hold
    std::map<long long, int> m_lengths;                  // how many streams have one
    std::map<QPDFObjGen, std::optional<std::string>> m_hashes;
};

} // namespace

void mergeEqualParts(QPDF &document, const LosslessOptions &)
{
    Merge(sharedParts(document)).run();
}

} // namespace engine
