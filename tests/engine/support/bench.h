#pragma once

#include "support/bound.h"
#include "support/files.h"
#include "support/processes.h"
#include "support/tools.h"

#include <QTemporaryDir>

#include <memory>

class QProcess;

using Run = tools::Result;

/// A place of its own for the runs of corvgs in one test: folders for the originals, for the
/// copies, for temporary files, and a home.
class Bench
{
public:
    enum Confinement { Confined, Unconfined };

    /// What a program may have to do without.
    static constexpr auto landlock = "landlock";
    static constexpr auto unnamedFiles = "unnamed-files";
    static constexpr auto soundDisk = "sound-disk";

    Bench();
    /// With an original in it, a.pdf.
    explicit Bench(const QByteArray &original);

    [[nodiscard]] QString in(const QString &name = {}) const;
    [[nodiscard]] QString out(const QString &name = {}) const;
    [[nodiscard]] QString home(const QString &name = {}) const;
    [[nodiscard]] QString temporary() const;

    /// Where the window's document information mark would be.
    [[nodiscard]] QString mark() const;

    /// corvgs as it is built, else (a driver) with the environment deciding.
    static QString corvgs();
    static QString driver(Confinement confinement);
    static QString ghostscript();
    static QString standin();

    /// The window's line for these names, with its default switches.
    static QStringList line(const QString &input, const QString &output,
                            const QStringList &moreSwitches = {}, const QString &mark = {});

    QProcessEnvironment environment;

    /// Waits for the end.
    [[nodiscard]] Run run(const QStringList &arguments, const QString &program = corvgs(),
                          const QString &workingFolder = {}) const;

    /// The same with a stand-in in Ghostscript's place.
    [[nodiscard]] Run runStandin(const QString &wish, Confinement confinement);
    void setStandin(const QString &wish);

    /// Runs the driver, confined, on a system that lacks something. Status 99 if it can't be taken
    /// away.
    [[nodiscard]] Run runWithout(const char *what, const QStringList &arguments) const;

    [[nodiscard]] std::unique_ptr<QProcess> start(const QStringList &arguments,
                                                  const QString &program = corvgs()) const;

    /// The numbers of processes that work in our temporary folder, corvgs itself aside.
    [[nodiscard]] QStringList engines() const;
    [[nodiscard]] int engineCount() const { return static_cast<int>(engines().size()); }

private:
    QTemporaryDir m_folder;
};

/// The window's line for the original a.pdf of the bench and a copy of that name.
QStringList lineOf(const Bench &bench, const QStringList &moreSwitches = {},
                   const QString &mark = {});
