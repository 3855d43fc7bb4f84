#include "child.h"

#include "childprocess.h"
#include "signals.h"
#include "system/failure.h"

#include <poll.h>
#include <stdexcept>

namespace engine {

namespace {

constexpr int patience = 250; // ms until the children are looked at, even if nothing has happened

} // namespace

Children::Children(const Limits &limits)
    : m_limits(limits)
{
}

Children::~Children() = default;

std::size_t Children::start(ChildTask task)
{
    m_running.emplace(m_started, std::make_unique<ChildProcess>(std::move(task), m_limits));
    return m_started++;
}

ChildResult Children::wait(std::size_t number)
{
    collect();
    while (!m_results.contains(number)) {
        if (!m_running.contains(number))
            throw std::logic_error("waited for a child twice");
        serve();
        collect();
    }
    ChildResult result = std::move(m_results.at(number));
    m_results.erase(number);
    return result;
}

void Children::serve()
{
    std::vector<pollfd> ready = {{signals::wakeDescriptor(), POLLIN, 0}};
    for (const auto &[number, child] : m_running) {
        for (const Relay *relay : child->relays())
            ready.push_back({relay->readEnd(), POLLIN, 0});
    }
    poll(ready.data(), ready.size(), patience);
    signals::clearWake();
    for (const auto &[number, child] : m_running)
        child->look();
}

void Children::collect()
{
    for (auto running = m_running.begin(); running != m_running.end();) {
        const auto &[number, child] = *running;
        if (!child->hasEnded()) {
            ++running;
            continue;
        }
        m_results.emplace(number, child->result());
        running = m_running.erase(running);
    }
}

ChildResult run(ChildTask task, const Limits &limits)
{
    Children children(limits);
    return children.wait(children.start(std::move(task)));
}

void expectSuccess(const ChildResult &result)
{
    if (result.interrupted)
        throw Failure("ended by a signal", 128 + signals::endRequest());
    if (!result.violation.empty())
        throw Failure(result.name + " " + result.violation);
    if (result.signal != 0)
        throw Failure(result.name + " was ended by signal " + std::to_string(result.signal),
                      result.status);
    if (result.couldNotWrite)
        throw Failure(result.name + " could not write all that it made");
    if (result.status != 0)
        throw Failure(result.name + " ended with status " + std::to_string(result.status),
                      result.status);
}

} // namespace engine
