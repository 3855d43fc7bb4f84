#include "copywriter.h"

#include "system/filesize.h"

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

bool allows(int permissions, int position)
{
    return (permissions & 1 << (position - 1)) != 0;
}

qpdf_r3_print_e printingOf(int permissions)
{
    if (!allows(permissions, 3))
        return qpdf_r3p_none;
    return allows(permissions, 12) ? qpdf_r3p_full : qpdf_r3p_low;
}

// Revision 3, which is what the compatibility level of the window's line allows. The numbers are
// the bits of the encryption dictionary's P as the format counts them.
void encrypt(QPDFWriter &writer, const Encryption &encryption)
{
    const int permissions = encryption.permissions;
    writer.setR3EncryptionParametersInsecure(
        asReadersTakeIt(encryption.passwords.user).c_str(),
        asReadersTakeIt(encryption.passwords.owner).c_str(), allows(permissions, 10),
        allows(permissions, 5), allows(permissions, 11), allows(permissions, 6),
        allows(permissions, 9), allows(permissions, 4), printingOf(permissions));
}

void apply(const WriteOptions &options, QPDFWriter &writer)
{
    writer.setObjectStreamMode(options.objectStreams ? qpdf_o_preserve : qpdf_o_disable);
    writer.setStreamDataMode(qpdf_s_preserve);
    // PDF/A wants a line break there, and two bytes a stream are not worth an option.
    writer.setNewlineBeforeEndstream(true);
    if (options.encryption)
        encrypt(writer, *options.encryption);
    else
        writer.setPreserveEncryption(false);
}

} // namespace

std::uintmax_t writeCopy(QPDF &document, int file, const WriteOptions &options)
{
    const Stream stream = emptied(file);
    QPDFWriter writer(document, "the copy", stream.get(), false);
    apply(options, writer);
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
