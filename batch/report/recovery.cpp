#include "recovery.h"

#include <QFile>
#include <QFileInfo>

namespace batch {

namespace {

bool isPlainFile(const QFileInfo &file)
{
    return file.isFile() && !file.isSymLink();
}

} // namespace

bool isWholeCopy(const QString &output)
{
    const QFileInfo file(output);
    return isPlainFile(file) && file.size() > 0;
}

void removePlaceholder(const QString &output)
{
    const QFileInfo file(output);
    if (isPlainFile(file) && file.size() == 0)
        QFile::remove(output);
}

std::optional<Result> recover(const QString &output, const QString &input)
{
    if (isWholeCopy(output)) {
        return Result{.input = input,
                      .output = output,
                      .before = QFileInfo(input).size(),
                      .after = QFileInfo(output).size(),
                      .succeeded = true};
    }
    removePlaceholder(output);
    return std::nullopt;
}

} // namespace batch
