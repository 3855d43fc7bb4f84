#include "document.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <unistd.h>

namespace engine {

void Document::Close::operator()(FILE *stream) const
{
    std::fclose(stream);
}

Document::Document(int file, const std::string &password, Trust trust)
    : m_stream(fdopen(dup(file), "rb"))
    , m_pdf(std::make_unique<QPDF>())
    , m_trust(trust)
{
    if (!m_stream)
        throw std::runtime_error("no open file");
    m_pdf->setSuppressWarnings(true);
    m_pdf->setAttemptRecovery(trust == Trust::Foreign);
    m_pdf->processFile("document", m_stream.get(), false, password.c_str());
}

int Document::pages()
{
    try {
        return int(m_pdf->getAllPages().size());
    } catch (const std::exception &) {
        if (m_trust == Trust::Own)
            throw;
        m_sound = false;
        return m_pdf->getRoot().getKey("/Pages").getKey("/Count").getIntValueAsInt();
    }
}

bool Document::isSound()
{
    m_sound = m_sound && !m_pdf->anyWarnings();
    return m_sound;
}

bool Document::hasObjectStreams()
{
    const auto entries = m_pdf->getXRefTable();
    return std::any_of(entries.begin(), entries.end(),
                       [](const auto &entry) { return entry.second.getType() == 2; });
}

} // namespace engine
