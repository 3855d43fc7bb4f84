#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

/// The engine beside the tests, whose behaviour is chosen here. It looks its behaviour up by the
/// base name of its input; "" stands for all inputs that have none of their own.
class FakeEngine
{
public:
    struct Behaviour
    {
        qint64 bytes = 6000; ///< size of the output; -1: none is written
        int exitCode = 0;
        int signal = 0;            ///< ends itself by this signal
        bool gate = false;         ///< waits for open() once its output is written
        QByteArray says = {};      ///< lines for standard output
        QByteArray complains = {}; ///< lines for standard error
    };

    FakeEngine();
    ~FakeEngine();
    Q_DISABLE_COPY_MOVE(FakeEngine)

    void behave(const Behaviour &behaviour, const QString &inputBaseName = {});

    /// From now on engines find the name of an output of that base name taken.
    void take(const QString &outputBaseName);

    /// Lets one engine through that waits, or will wait, at the gate.
    void open() const;

    /// The argument lists of all starts so far, in their order, without the program.
    QList<QStringList> starts() const;
    int startCount() const { return static_cast<int>(starts().size()); }
    /// How many came to their end, that is, were not killed by somebody else.
    int endCount() const;
    /// The base names of the inputs of all starts so far.
    QStringList inputs() const;
    /// The process numbers of all starts so far, and the processors that each may use ("0-3"),
    /// where the system tells them.
    QStringList processNumbers() const;
    QStringList processors() const;

private:
    void put(const QString &name, const QByteArray &content) const;
    QStringList linesOf(const QString &name) const;

    QTemporaryDir m_folder;
    int m_gate = -1;
};
