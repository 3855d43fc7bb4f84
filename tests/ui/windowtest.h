#pragma once

#include "src/process.h"
#include "support/dragdrop.h"
#include "support/fakeengine.h"
#include "support/sandbox.h"
#include "support/windowuser.h"

#include <QObject>

#include <memory>

/// What tests of the main window begin with, each function anew: the window on the screen, its
/// user, the fake engine, and folders. The output folder is chosen.
class WindowTest : public QObject
{
    Q_OBJECT

protected slots:
    void init();
    void cleanup();

protected:
    /// Lists a new input per name, in this order; gives their paths.
    QStringList list(const QStringList &names) const;
    /// Drops URLs as they come; true if the window takes them.
    bool drop(const QList<QUrl> &urls) const { return dropUrls(*m_window, urls).accepted; }
    static QUrl local(const QString &path) { return QUrl::fromLocalFile(path); }
    /// Presses the run button and waits for the first engine.
    void startFirst() const;
    void awaitStarts(int count) const;
    /// Lets an engine through the gate, and waits until so many have been started.
    void letThrough(int count) const;
    /// Lets an engine through the gate, and waits for the end of the batch.
    void letLastThrough() const;

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<Process> m_window;
    std::unique_ptr<WindowUser> m_user;
};
