#pragma once

#include "files.h"

#include <QString>
#include <QTemporaryDir>

/// A test's own folders: the temporary-files location (where settings and mark file go), input and
/// output. All of it is gone with the object.
class Sandbox
{
public:
    Sandbox();
    ~Sandbox();
    Q_DISABLE_COPY_MOVE(Sandbox)

    QString settingsFile() const;
    QString markFile() const;
    QString inputFolder() const;
    QString outputFolder() const;
    QString outputPath(const QString &name) const;
    QStringList outputs() const;
    /// What lies in the temporary-files location, hidden files too.
    QStringList temporaryFiles() const;

    /// Writes a file of `size` bytes into the input folder; gives its path.
    QString addInput(const QString &name, qint64 size = 10) const;

    /// Stores one value in the settings file, and reads one.
    void store(const QString &key, const QString &value) const;
    QString stored(const QString &key) const;

private:
    QTemporaryDir m_folder;
    QByteArray m_formerTemporaryFolder;
};
