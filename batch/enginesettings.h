#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace batch {

/// What every engine of a run is told.
struct EngineSettings
{
    QString switches; ///< as core::engineSwitches() gives them
    QString markFile; ///< empty: there is none
};

/// Reads the settings file (none: the window's own, which need not exist) and looks for the mark
/// file beside it; `assignments` ("KEY=VALUE") hold against the file. Throws Refusal for a key or
/// value that isn't in the table, and for a file that belongs to another user, who would choose
/// passwords or PostScript.
EngineSettings engineSettings(const std::optional<QString> &settingsFile,
                              const QStringList &assignments);

} // namespace batch
