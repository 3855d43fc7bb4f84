#pragma once

#include <memory>
#include <qpdf/QPDF.hh>
#include <string>

namespace engine {

enum class Trust {
    Foreign, ///< damage is repaired where that is possible
    Own      ///< damage makes it unreadable
};

/// A PDF file that is open as a descriptor. For hostile files only to be opened where a crash or an
/// endless loop does no harm.
class Document
{
public:
    /// The descriptor stays the caller's; the password is what the format encrypts with. Throws a
    /// std::exception if the file can't be read at all.
    Document(int file, Trust trust, const std::string &password = {});

    QPDF &pdf() { return *m_pdf; }

    /// Puts right what viewers stumble over: the counts in the tree of pages. What was wrong counts
    /// as damage. Throws a std::exception if the tree can't be walked to its end.
    void repair();

    /// The number of pages. One that can't be walked to its end (Foreign) has as many as it claims.
    int pages();

    /// Whether everything that was read so far was in order.
    [[nodiscard]] bool isSound() const;

    bool hasObjectStreams();

private:
    struct Close
    {
        void operator()(FILE *stream) const;
    };

    void readAtOnce(int file, const std::string &password);
    void readInPieces(int file, const std::string &password);

    // One of them is what the document is read from, and outlives it.
    std::string m_bytes;
    std::unique_ptr<FILE, Close> m_stream;
    std::unique_ptr<QPDF> m_pdf;
    Trust m_trust;
    bool m_sound = true;
    bool m_walkable = true; ///< the tree of pages, as far as anyone has tried
};

} // namespace engine
