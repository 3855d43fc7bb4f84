#pragma once

#include "programtree.h"
#include "support/sandbox.h"
#include "user.h"

/// What a test on a desktop starts with: a user, a copy of the program, and folders of its own. The
/// sandbox comes last, because from then on it holds all temporary files.
struct Scene
{
    explicit Scene(const Desktop &desktop);

    /// Copies one of the sample PDFs into the input folder.
    QString addSample(const QString &sample, const QString &name) const;
    /// Starts the program of the tree, drops these files on it so that they are listed in this
    /// order, and chooses the output folder.
    void startWith(const QStringList &files);

    User user;
    ProgramTree tree;
    Sandbox sandbox;
};

/// Waits until a process has gone.
void awaitEndOf(qint64 process);
