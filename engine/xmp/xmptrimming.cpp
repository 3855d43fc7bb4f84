#include "xmptrimming.h"

#include <algorithm>
#include <libxml/parser.h>
#include <memory>
#include <new>
#include <vector>

namespace engine {

namespace {

struct Property
{
    const char *name; ///< namespace, blank, local name
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

std::string nameOf(const xmlChar *nameSpace, const xmlChar *name)
{
    const std::string local(reinterpret_cast<const char *>(name));
    return nameSpace ? reinterpret_cast<const char *>(nameSpace) + (' ' + local) : local;
}

// Finds what to cut, in bytes of the packet, in their order. It makes no tree of the packet: a
// history can be tens of megabytes of small elements.
class Cuts
{
public:
    Cuts(const std::string &packet, History history)
        : m_packet(packet)
        , m_history(history)
    {
        xmlSAXHandler handler = {};
        handler.initialized = XML_SAX2_MAGIC;
        handler.startElementNs = begun;
        handler.endElementNs = ended;
        handler.internalSubset = declared;
        handler.serror = [](void *, auto *) {}; // the parser prints nothing then
        m_parser.reset(xmlNewParserCtxt());
        if (!m_parser)
            throw std::bad_alloc();
        *m_parser->sax = handler;
        m_parser->_private = this;
    }

    // Whether the packet was understood to its end. A declared encoding is not asked: whatever is
    // no UTF-8 is not well-formed then, and all positions are those of the packet itself.
    bool find()
    {
        xmlCtxtReadMemory(m_parser.get(), m_packet.data(), int(m_packet.size()), nullptr, nullptr,
                          XML_PARSE_NONET | XML_PARSE_HUGE | XML_PARSE_IGNORE_ENC);
        if (m_isDeclared || m_parser->wellFormed == 0 || m_parser->nsWellFormed == 0)
            return false;
        cutPadding();
        return true;
    }

    [[nodiscard]] const std::vector<Range> &ranges() const { return m_ranges; }

private:
    struct Free
    {
        void operator()(xmlParserCtxt *parser) const { xmlFreeParserCtxt(parser); }
    };

    static Cuts &of(void *parser)
    {
        return *static_cast<Cuts *>(static_cast<xmlParserCtxt *>(parser)->_private);
    }
    static void begun(void *parser, const xmlChar *name, const xmlChar *, const xmlChar *space, int,
                      const xmlChar **, int, int, const xmlChar **)
    {
        of(parser).begin(nameOf(space, name));
    }
    static void ended(void *parser, const xmlChar *, const xmlChar *, const xmlChar *)
    {
        of(parser).end();
    }
    // What a document type may bring (entities, defaults) is nothing that a packet has.
    static void declared(void *parser, const xmlChar *, const xmlChar *, const xmlChar *)
    {
        of(parser).m_isDeclared = true;
        xmlStopParser(static_cast<xmlParserCtxt *>(parser));
    }

    // How far the parser has read: within a start tag, behind an end tag.
    [[nodiscard]] std::size_t position() const
    {
        return std::size_t(xmlByteConsumed(m_parser.get()));
    }

    // A property of the packet lies in a description that lies in the root, or in a wrapper of it;
    // what is deeper has the same names for something else.
    void begin(const std::string &name)
    {
        if (m_cutDepth == 0 && m_names.size() <= 3 && !m_names.empty() &&
            m_names.back() == description && isUnwanted(name)) {
            m_cutDepth = m_names.size() + 1;
            m_cutBegin = m_packet.rfind('<', position()); // no tag has another one in it
        }
        m_names.push_back(name);
    }

    void end()
    {
        if (m_names.size() == m_cutDepth) {
            m_ranges.push_back({m_cutBegin, position()});
            m_cutDepth = 0;
        }
        m_names.pop_back();
        if (m_names.empty())
            m_rootEnd = position();
    }

    // Padding is what lies between the root and the instruction that closes the packet.
    void cutPadding()
    {
        const std::size_t instruction = m_packet.find_first_not_of(" \t\r\n", m_rootEnd);
        if (instruction != std::string::npos && instruction > m_rootEnd + 1 &&
            m_packet.compare(instruction, 9, "<?xpacket") == 0)
            m_ranges.push_back({m_rootEnd + 1, instruction});
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
    std::unique_ptr<xmlParserCtxt, Free> m_parser;
    std::vector<std::string> m_names; // of the elements that are open
    std::vector<Range> m_ranges;
    std::size_t m_cutDepth = 0; // of the element that is being cut; 0: none
    std::size_t m_cutBegin = 0;
    std::size_t m_rootEnd = 0; // 0: not reached
    bool m_isDeclared = false; // a document type
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
