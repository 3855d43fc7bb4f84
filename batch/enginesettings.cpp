#include "enginesettings.h"

#include "core/engineswitches.h"
#include "core/settings.h"
#include "core/settingsvalue.h"
#include "refusal.h"

#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <algorithm>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace batch {

namespace {

// The link, if it is one, as well as what it leads to.
void checkOwner(const QString &file)
{
    struct stat entry = {};
    for (const auto look : {lstat, stat}) {
        if (look(QFile::encodeName(file).constData(), &entry) == 0 && entry.st_uid != geteuid())
            throw Refusal(u"%1 is not yours: it belongs to user %2"_s.arg(file).arg(entry.st_uid));
    }
}

QString checkedSettings(const std::optional<QString> &settingsFile)
{
    QString path = settingsFile.value_or(core::settingsFilePath());
    checkOwner(path);
    if (settingsFile && !QFileInfo(path).isFile())
        throw Refusal(u"no settings file: "_s + path);
    return path;
}

QString checkedMarkFile(const QString &settings)
{
    const QFileInfo beside(QFileInfo(settings).absolutePath() + u'/' +
                           QFileInfo(core::markFilePath()).fileName());
    checkOwner(beside.filePath());
    return beside.exists() ? beside.filePath() : QString();
}

core::Values storedValues(const QString &path)
{
    const QSettings settings(path, QSettings::IniFormat);
    core::Values values = core::engineValues(settings);
    if (settings.status() != QSettings::NoError)
        throw Refusal(u"%1 can't be read as settings"_s.arg(path));
    return values;
}

void assign(const QString &assignment, core::Values &values)
{
    const qsizetype equals = assignment.indexOf(u'=');
    if (equals < 0)
        throw Refusal(u"--set takes KEY=VALUE, not '%1'"_s.arg(assignment));
    const QString key = assignment.left(equals);
    const QString value = assignment.mid(equals + 1);
    if (!core::isEngineKey(key))
        throw Refusal(u"no such option of the copies: "_s + key);
    if (!core::isValueOf(key, value))
        throw Refusal(u"%1 takes %2, not '%3'"_s.arg(key, core::valuesText(key), value));
    values.insert(key, value);
}

} // namespace

EngineSettings engineSettings(const std::optional<QString> &settingsFile,
                              const QStringList &assignments)
{
    const QString path = checkedSettings(settingsFile);
    core::Values values = storedValues(path);
    for (const QString &assignment : assignments)
        assign(assignment, values);
    return {.switches = core::engineSwitches(values), .markFile = checkedMarkFile(path)};
}

} // namespace batch
