#pragma once

#include <QString>

/// How many pages qpdf counts; -1 if that is no PDF.
int pagesOf(const QString &file);

/// What a tool tells about a file; the test ends if it fails.
QString told(const QString &tool, const QStringList &arguments);
