#include "keepdate.h"

#include <QFile>

#include <filesystem>

namespace batch {

namespace {

std::filesystem::path pathOf(const QString &name)
{
    return QFile::encodeName(name).toStdString();
}

} // namespace

// Qt's own dates end with the milliseconds.
void keepDate(const QString &copy, const QString &original)
{
    std::error_code error;
    const auto date = std::filesystem::last_write_time(pathOf(original), error);
    if (!error)
        std::filesystem::last_write_time(pathOf(copy), date, error);
}

} // namespace batch
