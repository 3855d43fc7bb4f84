#include "sizetext.h"

namespace core {

QString sizeText(qint64 bytes)
{
    const auto size = static_cast<qint32>(bytes);
    if (size <= 0)
        return {};
    // The unit changes at a power of two while the divisors are powers of ten: 1048576 bytes read
    // 1048.576 KB and one more reads 1.049 MB. The mix is promised.
    if (size > 0x100000)
        return QString::asprintf("%14.3f MB", size / 1000000.0);
    return QString::asprintf("%14.3f KB", size / 1000.0);
}

QString briefSizeText(qint64 bytes)
{
    const auto size = static_cast<double>(bytes);
    if (bytes < 1000)
        return QString::asprintf("%.0f B", size);
    if (bytes < 1000000)
        return QString::asprintf("%.1f KB", size / 1000.0);
    if (bytes < 10'000'000'000)
        return QString::asprintf("%.1f MB", size / 1e6);
    return QString::asprintf("%.1f GB", size / 1e9);
}

} // namespace core
