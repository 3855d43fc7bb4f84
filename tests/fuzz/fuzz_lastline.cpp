#include "input.h"

#include "batch/work/lastline.h"

// What an engine says comes in pieces of any length; the first byte says where it is divided.
int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    const QByteArray stream = QByteArray::fromStdString(textOf(data + 1, size - 1));
    batch::LastLine whole;
    whole.take(stream);
    batch::LastLine inPieces;
    const qsizetype length = data[0] + 1;
    for (qsizetype begin = 0; begin < stream.size(); begin += length)
        inPieces.take(stream.mid(begin, length));
    promise(whole.text() == inPieces.text() && whole.ownText() == inPieces.ownText());
    promise(whole.text().size() <= 4096);
    return 0;
}
