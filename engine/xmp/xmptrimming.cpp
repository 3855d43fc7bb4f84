#include "xmptrimming.h"

#include <algorithm>
#include <expat.h>
#include <memory>
#include <vector>

namespace engine {

namespace {

constexpr char separator = ' ';

struct Property
{
    const char *name; ///< as expat puts it: namespace, separator, local name
    bool isHistory;
};

constexpr Property properties[] = {
    {"http://ns.adobe.com/xap/1.0/ Thumbnails", false},
    {"http://ns.adobe.com/xap/1.0/t/pg/ SwatchGroups", false}, // an editor's palette
    {"http://ns.adobe.com/xap/1.0/mm/ History", true},
    {"http://ns.adobe.com/xap/1.0/mm/ Ingredients", true},
    {"http://ns.adobe.com/xap/1.0/mm/ Pantry", true},
    {"http://ns.adobe.com/photoshop/1.0/ DocumentAncestors", true},
    {"http://ns.adobe.com/photoshop/1.0/ History", true},
};

constexpr const char *description = "http://www.w3.org/1999/02/22-rdf-syntax-ns# Description";

struct Range
{
    std::size_t begin;
    std::size_t end;
};

// Finds what to cut, in bytes of the packet, in their order.
class Cuts
{
public:
    Cuts(const std::string &packet, History history)
        : m_packet(packet)
        , m_history(history)
        , m_parser(XML_ParserCreateNS("UTF-8", separator))
    {
        if (!m_parser)
            throw std::bad_alloc();
        XML_SetUserData(m_parser.get(), this);
        XML_SetElementHandler(m_parser.get(), begun, ended);
        XML_SetProcessingInstructionHandler(m_parser.get(), instructed);
        XML_SetStartDoctypeDeclHandler(m_parser.get(), declared);
    }

    // Whether the packet was understood to its end.
    bool find()
    {
        return XML_Parse(m_parser.get(), m_packet.data(), int(m_packet.size()), XML_TRUE) ==
               XML_STATUS_OK;
    }

    [[nodiscard]] const std::vector<Range> &ranges() const { return m_ranges; }

private:
    struct Free
    {
        void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
    };
    using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, Free>;

    static Cuts &of(void *self) { return *static_cast<Cuts *>(self); }

    static void begun(void *self, const XML_Char *name, const XML_Char **) { of(self).begin(name); }
    static void ended(void *self, const XML_Char *) { of(self).end(); }
    static void instructed(void *self, const XML_Char *target, const XML_Char *)
    {
        of(self).endPadding(target);
    }
    // What a document type may bring (entities, defaults) is nothing that a packet has.
    static void declared(void *self, const XML_Char *, const XML_Char *, const XML_Char *, int)
    {
        XML_StopParser(of(self).m_parser.get(), XML_FALSE);
    }

    [[nodiscard]] std::size_t position() const
    {
        return std::size_t(XML_GetCurrentByteIndex(m_parser.get()));
    }
    [[nodiscard]] std::size_t positionAfter() const
    {
        return position() + std::size_t(XML_GetCurrentByteCount(m_parser.get()));
    }

    // A property of the packet lies in a description that lies in the root, or in a wrapper of it;
    // what is deeper has the same names for something else.
    void begin(const std::string &name)
    {
        if (m_cutDepth == 0 && m_names.size() <= 3 && !m_names.empty() &&
            m_names.back() == description && isUnwanted(name)) {
            m_cutDepth = m_names.size() + 1;
            m_cutBegin = position();
        }
        m_names.push_back(name);
    }

    void end()
    {
        if (m_names.size() == m_cutDepth) {
            m_ranges.push_back({m_cutBegin, positionAfter()});
            m_cutDepth = 0;
        }
        m_names.pop_back();
        if (m_names.empty())
            m_rootEnd = positionAfter();
    }

    // Padding is what lies between the root and the instruction that closes the packet.
    void endPadding(const std::string &target)
    {
        if (m_rootEnd == 0 || target != "xpacket")
            return;
        const std::size_t first = m_rootEnd;
        const bool blank = std::all_of(
            m_packet.begin() + std::ptrdiff_t(first), m_packet.begin() + std::ptrdiff_t(position()),
            [](char letter) { return std::string(" \t\r\n").find(letter) != std::string::npos; });
        if (blank && position() > first + 1)
            m_ranges.push_back({first + 1, position()});
    }

    [[nodiscard]] bool isUnwanted(const std::string &name) const
    {
        return std::any_of(std::begin(properties), std::end(properties),
                           [&](const Property &property) {
                               return name == property.name &&
                                      (!property.isHistory || m_history == History::Dropped);
                           });
    }

    const std::string &m_packet;
    History m_history;
    Parser m_parser;
    std::vector<std::string> m_names; // of the elements that are open
    std::vector<Range> m_ranges;
    std::size_t m_cutDepth = 0; // of the element that is being cut; 0: none
    std::size_t m_cutBegin = 0;
    std::size_t m_rootEnd = 0; // 0: not reached
};

std::string withoutRanges(const std::string &text, const std::vector<Range> &ranges)
{
    std::string rest;
    std::size_t begin = 0;
    for (const Range &range : ranges) {
        rest.append(text, begin, range.begin - begin);
        begin = range.end;
    }
    return rest.append(text, begin);
}

} // namespace

std::optional<std::string> trimmedPacket(const std::string &packet, History history)
{
    constexpr std::size_t most = std::size_t(64) << 20;
    if (packet.size() > most)
        return {};
    Cuts cuts(packet, history);
    if (!cuts.find() || cuts.ranges().empty())
        return {};
    return withoutRanges(packet, cuts.ranges());
}

} // namespace engine
