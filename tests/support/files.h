#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Empty, too, if the file can't be read.
QByteArray contentOf(const QString &path);

/// Replaces what was there. The test ends here if it can't be written.
void write(const QString &path, const QByteArray &content);

/// The same with so many bytes of 0.
void writeZeros(const QString &path, qint64 size);

/// As write(), and the file can be started.
void writeProgram(const QString &path, const QByteArray &script);

/// Names in a folder, hidden ones too, sorted.
QStringList namesIn(const QString &folder);
