#include "copywriter.h"

#include "../filesize.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>
#include <system_error>
#include <unistd.h>

namespace engine {

namespace {

[[noreturn]] void fail()
{
    throw std::system_error(errno, std::generic_category(), "the copy can't be written");
}

struct Close
{
    void operator()(FILE *stream) const { std::fclose(stream); }
};

using Stream = std::unique_ptr<FILE, Close>;

Stream emptied(int file)
{
    if (ftruncate(file, 0) != 0 || lseek(file, 0, SEEK_SET) != 0)
        fail();
    Stream stream(fdopen(dup(file), "wb"));
    if (!stream)
        fail();
    return stream;
}

std::uintmax_t flushed(const Stream &stream)
{
    if (std::fflush(stream.get()) != 0)
        fail();
    return sizeOf(fileno(stream.get()));
}

// Readers turn what is typed into this encoding. Letters that it has not leave the bytes as they
// are, which some readers try as well.
std::string asReadersTakeIt(const std::string &password)
{
    std::string encoded;
    return QUtil::utf8_to_pdf_doc(password, encoded) ? encoded : password;
}

qpdf_r3_print_e printingOf(QPDF &document)
{
    if (document.allowPrintHighRes())
        return qpdf_r3p_full;
    return document.allowPrintLowRes() ? qpdf_r3p_low : qpdf_r3p_none;
}

// Revision 3, which is what the compatibility level of the window's line allows.
void encrypt(QPDFWriter &writer, QPDF &locked, const Passwords &passwords)
{
    writer.setR3EncryptionParametersInsecure(
        asReadersTakeIt(passwords.user).c_str(), asReadersTakeIt(passwords.owner).c_str(),
        locked.allowAccessibility(), locked.allowExtractAll(), locked.allowModifyAssembly(),
        locked.allowModifyAnnotation(), locked.allowModifyForm(), locked.allowModifyOther(),
        printingOf(locked));
}

void apply(const Form &form, QPDFWriter &writer)
{
    writer.setObjectStreamMode(form.objectStreams ? qpdf_o_preserve : qpdf_o_disable);
    writer.setStreamDataMode(qpdf_s_preserve);
    // PDF/A wants a line break there, and two bytes a stream are not worth an option.
    writer.setNewlineBeforeEndstream(true);
    if (form.locked)
        encrypt(writer, *form.locked, form.passwords);
    else
        writer.setPreserveEncryption(false);
}

} // namespace

std::uintmax_t writeCopy(QPDF &document, int file, const Form &form)
{
    const Stream stream = emptied(file);
    QPDFWriter writer(document, "the copy", stream.get(), false);
    apply(form, writer);
    writer.write();
    return flushed(stream);
}

std::uintmax_t writeBytes(int source, int file)
{
    const Stream stream = emptied(file);
    std::array<char, 65536> block = {};
    off_t position = 0;
    for (;;) {
        const ssize_t count = pread(source, block.data(), block.size(), position);
        if (count < 0)
            fail();
        if (count == 0)
            return flushed(stream);
        if (std::fwrite(block.data(), 1, std::size_t(count), stream.get()) != std::size_t(count))
            fail();
        position += count;
    }
}

} // namespace engine
