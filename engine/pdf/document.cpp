#include "document.h"

#include "system/filesize.h"
#include "system/wholefile.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>

namespace engine {

namespace {

// libqpdf asks the system several times for each object of a file, which takes as long as all the
// rest. Of a large document, the memory is worth more.
constexpr std::uintmax_t mostInMemory = std::uintmax_t(64) << 20;

struct PageTree
{
    long long pages = 0;
    bool sound = true; ///< the counts were right
};

// Viewers find their way by the counts, libqpdf by the nodes alone. For a tree that libqpdf has
// walked to its end.
PageTree repairedBelow(QPDFObjectHandle node)
{
    if (!node.hasKey("/Kids"))
        return {1};
    PageTree tree;
    for (const auto &kid : node.getKey("/Kids").aitems()) {
        const PageTree below = repairedBelow(kid);
        tree.pages += below.pages;
        tree.sound = tree.sound && below.sound;
    }
    QPDFObjectHandle count = node.getKey("/Count");
    if (count.isInteger() && count.getIntValue() == tree.pages)
        return tree;
    node.replaceKey("/Count", QPDFObjectHandle::newInteger(tree.pages));
    return {tree.pages, false};
}

} // namespace

void Document::Close::operator()(FILE *stream) const
{
    std::fclose(stream);
}

Document::Document(int file, Trust trust, const std::string &password)
    : m_pdf(std::make_unique<QPDF>())
    , m_trust(trust)
{
    m_pdf->setSuppressWarnings(true);
    m_pdf->setAttemptRecovery(trust == Trust::Foreign);
    if (sizeOf(file) <= mostInMemory)
        readAtOnce(file, password);
    else
        readInPieces(file, password);
}

void Document::readAtOnce(int file, const std::string &password)
{
    m_bytes = contentOf(file);
    m_pdf->processMemoryFile("document", m_bytes.data(), m_bytes.size(), password.c_str());
}

void Document::readInPieces(int file, const std::string &password)
{
    m_stream.reset(fdopen(dup(file), "rb"));
    if (!m_stream)
        throw std::runtime_error("no open file");
    m_pdf->processFile("document", m_stream.get(), false, password.c_str());
}

void Document::repair()
{
    pages(); // libqpdf finds out only once that a tree has no end
    if (!m_walkable)
        throw std::runtime_error("the tree of pages is broken");
    m_sound = repairedBelow(m_pdf->getRoot().getKey("/Pages")).sound && m_sound;
}

int Document::pages()
{
    try {
        if (m_walkable)
            return int(m_pdf->getAllPages().size());
    } catch (const std::exception &) {
        if (m_trust == Trust::Own)
            throw;
        m_walkable = m_sound = false;
    }
    return m_pdf->getRoot().getKey("/Pages").getKey("/Count").getIntValueAsInt();
}

bool Document::isSound() const
{
    return m_sound && !m_pdf->anyWarnings();
}

bool Document::hasObjectStreams()
{
    const auto entries = m_pdf->getXRefTable();
    return std::any_of(entries.begin(), entries.end(),
                       [](const auto &entry) { return entry.second.getType() == 2; });
}

} // namespace engine
