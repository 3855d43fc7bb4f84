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

    /// Puts a shell script in the engine's place; in it, $engine is the real one.
    void wrapEngine(const QByteArray &script) const;

private:
    QTemporaryDir m_folder;
    QString m_root;
};
