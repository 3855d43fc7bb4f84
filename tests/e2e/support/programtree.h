#pragma once

#include <QString>
#include <QTemporaryDir>

/// A copy of the built program with all that lies around it, in a folder of its own whose path has
/// blanks and non-ASCII letters.
class ProgramTree
{
public:
    ProgramTree();

    QString program() const { return m_root + "/bin/corvane"; }
    QString engine() const { return m_root + "/bin/corvgs"; }

    /// From now on every engine stops before it does anything, until it gets SIGCONT; and no more.
    void holdEngines(bool hold) const;

private:
    QTemporaryDir m_folder;
    QString m_root;
};
