#include "windowtest.h"

#include "support/bound.h"

#include <QLineEdit>

void WindowTest::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_sandbox = std::make_unique<Sandbox>();
    m_window = std::make_unique<Process>();
    m_user = std::make_unique<WindowUser>(*m_window);
    m_user->folderEdit()->setText(m_sandbox->outputFolder());
    m_window->show();
}

void WindowTest::cleanup()
{
    m_user.reset();
    m_window.reset();
    m_sandbox.reset();
    m_engine.reset();
}

QStringList WindowTest::list(const QStringList &names) const
{
    QStringList paths;
    for (const QString &name : names)
        paths.append(m_sandbox->addInput(name));
    m_user->drop(paths);
    return paths;
}

void WindowTest::startFirst() const
{
    m_user->run();
    awaitStarts(1);
}

void WindowTest::awaitStarts(int count) const
{
    QTRY_COMPARE_WITH_TIMEOUT(m_engine->startCount(), count, bound);
}

void WindowTest::letThrough(int count) const
{
    m_engine->open();
    awaitStarts(count);
}

void WindowTest::letLastThrough() const
{
    m_engine->open();
    m_user->awaitEnd();
}
