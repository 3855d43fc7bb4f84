#include "xmpedit.h"

#include "xmp.h"

#include <climits>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xmlsave.h>
#include <memory>
#include <vector>

namespace engine {

namespace {

struct Free
{
    void operator()(xmlDoc *document) const { xmlFreeDoc(document); }
    void operator()(xmlBuffer *buffer) const { xmlBufferFree(buffer); }
};

using Packet = std::unique_ptr<xmlDoc, Free>;

constexpr const char *rdf = "http://www.w3.org/1999/02/22-rdf-syntax-ns#";
constexpr const char *dublinCore = "http://purl.org/dc/elements/1.1/";
constexpr const char *pdf = "http://ns.adobe.com/pdf/1.3/";
constexpr const char *xmp = "http://ns.adobe.com/xap/1.0/";

enum class Shape { Text, Sequence, Alternative };

struct Property
{
    const char *key;
    const char *nameSpace;
    const char *prefix;
    const char *name;
    Shape shape;
};

constexpr Property properties[] = {
    {"/Title", dublinCore, "dc", "title", Shape::Alternative},
    {"/Author", dublinCore, "dc", "creator", Shape::Sequence},
    {"/Subject", dublinCore, "dc", "description", Shape::Alternative},
    {"/Keywords", pdf, "pdf", "Keywords", Shape::Text},
    {"/Creator", xmp, "xmp", "CreatorTool", Shape::Text},
    {"/Producer", pdf, "pdf", "Producer", Shape::Text},
};

constexpr const char *pdfaId = "http://www.aiim.org/pdfa/ns/id/";
constexpr const char *claims[] = {"part", "conformance", "amd", "corr", "rev"};

const xmlChar *text(const char *letters)
{
    return reinterpret_cast<const xmlChar *>(letters);
}

bool isNamed(const xmlNs *nameSpace, const xmlChar *name, const char *wantedSpace,
             const char *wantedName)
{
    return nameSpace && xmlStrEqual(nameSpace->href, text(wantedSpace)) != 0 &&
           xmlStrEqual(name, text(wantedName)) != 0;
}

bool isElement(const xmlNode *node, const char *nameSpace, const char *name)
{
    return node->type == XML_ELEMENT_NODE && isNamed(node->ns, node->name, nameSpace, name);
}

// In a document, x:xmpmeta is around it or not.
xmlNode *rdfIn(xmlNode *root)
{
    if (!root || isElement(root, rdf, "RDF"))
        return root;
    for (xmlNode *child = root->children; child; child = child->next) {
        if (isElement(child, rdf, "RDF"))
            return child;
    }
    return nullptr;
}

std::vector<xmlNode *> descriptionsIn(xmlNode *packet)
{
    std::vector<xmlNode *> descriptions;
    for (xmlNode *child = packet ? packet->children : nullptr; child; child = child->next) {
        if (isElement(child, rdf, "Description"))
            descriptions.push_back(child);
    }
    return descriptions;
}

// A property is an element or, if it is a simple one, an attribute.
void removeFrom(xmlNode *description, const Property &property)
{
    for (xmlNode *child = description->children; child;) {
        xmlNode *next = child->next;
        if (isElement(child, property.nameSpace, property.name)) {
            xmlUnlinkNode(child);
            xmlFreeNode(child);
        }
        child = next;
    }
    for (xmlAttr *attribute = description->properties; attribute;) {
        xmlAttr *next = attribute->next;
        if (isNamed(attribute->ns, attribute->name, property.nameSpace, property.name))
            xmlRemoveProp(attribute);
        attribute = next;
    }
}

xmlNs *spaceFor(xmlNode *description, const char *nameSpace, const char *prefix)
{
    xmlNs *known = xmlSearchNsByHref(description->doc, description, text(nameSpace));
    return known ? known : xmlNewNs(description, text(nameSpace), text(prefix));
}

void addTo(xmlNode *description, const Property &property, const std::string &value)
{
    const std::string writable = writableInXml(value);
    xmlNs *own = spaceFor(description, property.nameSpace, property.prefix);
    if (property.shape == Shape::Text) {
        xmlNewTextChild(description, own, text(property.name), text(writable.c_str()));
        return;
    }
    xmlNs *lists = spaceFor(description, rdf, "rdf");
    xmlNode *element = xmlNewChild(description, own, text(property.name), nullptr);
    const char *list = property.shape == Shape::Sequence ? "Seq" : "Alt";
    xmlNode *items = xmlNewChild(element, lists, text(list), nullptr);
    xmlNode *item = xmlNewTextChild(items, lists, text("li"), text(writable.c_str()));
    if (property.shape == Shape::Alternative)
        xmlNodeSetLang(item, text("x-default"));
}

Packet parsed(const std::string &packet)
{
    if (packet.size() > INT_MAX)
        return nullptr;
    return Packet(xmlReadMemory(packet.data(), int(packet.size()), "", nullptr,
                                XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING));
}

// Without the declaration: a packet begins with its own header.
std::string bytesOf(const Packet &packet)
{
    const std::unique_ptr<xmlBuffer, Free> buffer(xmlBufferCreate());
    xmlSaveCtxt *saving =
        xmlSaveToBuffer(buffer.get(), "UTF-8", XML_SAVE_NO_DECL | XML_SAVE_AS_XML);
    xmlSaveDoc(saving, packet.get());
    xmlSaveClose(saving);
    return {reinterpret_cast<const char *>(xmlBufferContent(buffer.get())),
            std::size_t(xmlBufferLength(buffer.get()))};
}

} // namespace

std::optional<std::string> changedXmp(const std::string &packet, const DescriptionChanges &changes)
{
    const Packet document = parsed(packet);
    const auto descriptions =
        descriptionsIn(document ? rdfIn(xmlDocGetRootElement(document.get())) : nullptr);
    if (descriptions.empty())
        return {};
    for (const Property &property : properties) {
        const auto change = changes.find(property.key);
        if (change == changes.end())
            continue;
        for (xmlNode *description : descriptions)
            removeFrom(description, property);
        if (!change->second.empty())
            addTo(descriptions.front(), property, change->second);
    }
    return bytesOf(document);
}

std::optional<std::string> withoutPdfaClaim(const std::string &packet)
{
    const Packet document = parsed(packet);
    const auto descriptions =
        descriptionsIn(document ? rdfIn(xmlDocGetRootElement(document.get())) : nullptr);
    if (descriptions.empty())
        return {};
    for (xmlNode *description : descriptions) {
        for (const char *claim : claims)
            removeFrom(description, {nullptr, pdfaId, "pdfaid", claim, Shape::Text});
    }
    return bytesOf(document);
}

} // namespace engine
