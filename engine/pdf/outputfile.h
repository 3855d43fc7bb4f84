#pragma once

#include <cstdint>
#include <qpdf/Pipeline.hh>
#include <string>

namespace engine {

/// An open file that is written anew, in place of what it holds. No byte gets lost unnoticed: each
/// write is looked at where it happens, and in the end the file is as long as was counted. Throws a
/// std::system_error from wherever a byte could not be written, and again from close(), because
/// libqpdf takes some exceptions for a fault of the document.
class OutputFile : public Pipeline
{
public:
    /// The descriptor stays the caller's.
    explicit OutputFile(int file);

    void write(unsigned char const *data, size_t size) override;

    /// Of no effect: libqpdf calls it when it thinks that it is done.
    void finish() override {}

    /// Writes what is left, and returns the number of bytes. Nothing may be written after it.
    std::uintmax_t close();

private:
    void flush();

    int m_file;
    std::string m_buffer;
    std::uintmax_t m_count = 0;
    int m_error = 0; ///< of the first write that failed
};

} // namespace engine
