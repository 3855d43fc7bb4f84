#include "copywriter.h"

#include "document.h"
#include "outputfile.h"
#include "system/writing.h"

#include <algorithm>
#include <array>
#include <optional>
#include <qpdf/Pl_Count.hh>
#include <qpdf/Pl_Discard.hh>
#include <qpdf/QPDFWriter.hh>
#include <qpdf/QUtil.hh>
#include <stdexcept>
#include <unistd.h>

namespace engine {

namespace {

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

qpdf_object_stream_e objectStreamMode(const WriteOptions &options)
{
    if (options.newObjectStreams)
        return qpdf_o_generate;
    return options.objectStreams ? qpdf_o_preserve : qpdf_o_disable;
}

void apply(const WriteOptions &options, QPDFWriter &writer)
{
    writer.setObjectStreamMode(objectStreamMode(options));
    writer.setStreamDataMode(qpdf_s_preserve);
    // PDF/A wants a line break there, and two bytes a stream are not worth an option.
    writer.setNewlineBeforeEndstream(true);
    writer.setPreserveEncryption(false);
    if (options.encryption)
        encrypt(writer, *options.encryption);
    else if (options.restrictionsOf && options.restrictionsOf->isEncrypted())
        writer.copyEncryptionParameters(*options.restrictionsOf);
    if (!options.leastVersion.empty())
        writer.setMinimumPDFVersion(options.leastVersion);
}

// Readers look for this word near the end, and take what stands before it for nothing.
std::uintmax_t filledUp(int file, std::uintmax_t size, std::uintmax_t leastSize)
{
    constexpr std::uintmax_t endSize = 1024;
    if (size >= leastSize)
        return size;
    std::string end(std::size_t(std::min(size, endSize)), '\0');
    const std::uintmax_t begin = size - end.size();
    if (pread(file, end.data(), end.size(), off_t(begin)) != ssize_t(end.size()))
        failWriting("the copy can't be read");
    end.insert(end.rfind("startxref"), std::string(std::size_t(leastSize - size) - 1, ' ') + '\n');
    if (lseek(file, off_t(begin), SEEK_SET) < 0)
        failWriting("the copy can't be written");
    writeAll(file, end);
    return leastSize;
}

// Nothing for a page tree that nobody can walk to its end.
std::optional<std::size_t> pagesOf(QPDF &document)
{
    try {
        return document.getAllPages().size();
    } catch (const std::exception &) {
        return {};
    }
}

// The cross-reference table is the last thing in a file: who finds all pages by it has it whole.
void expectWhole(int file, const WriteOptions &options, std::optional<std::size_t> pages)
{
    const std::string password =
        options.encryption ? asReadersTakeIt(options.encryption->passwords.user) : "";
    Document written(file, Trust::Own, password);
    if (pagesOf(written.pdf()) != pages)
        throw std::runtime_error("the copy has lost pages on its way to the disk");
}

} // namespace

std::uintmax_t writeCopy(QPDF &document, int file, const WriteOptions &options)
{
    OutputFile output(file);
    QPDFWriter writer(document);
    writer.setOutputPipeline(&output);
    apply(options, writer);
    writer.write();
    const std::uintmax_t size = filledUp(file, output.close(), options.leastSize);
    expectWhole(file, options, pagesOf(document));
    return size;
}

std::uintmax_t copySize(QPDF &document, const WriteOptions &options)
{
    Pl_Discard nowhere;
    Pl_Count counter("the copy", &nowhere);
    QPDFWriter writer(document);
    writer.setOutputPipeline(&counter);
    apply(options, writer);
    writer.write();
    return std::max(std::uintmax_t(counter.getCount()), options.leastSize);
}

std::uintmax_t writeBytes(int source, int file)
{
    OutputFile output(file);
    std::array<unsigned char, 65536> block = {};
    off_t position = 0;
    while (const ssize_t count = pread(source, block.data(), block.size(), position)) {
        if (count < 0)
            failWriting("the document can't be read");
        output.write(block.data(), std::size_t(count));
        position += count;
    }
    return output.close();
}

} // namespace engine
