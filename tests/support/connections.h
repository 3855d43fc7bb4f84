#pragma once

#include <QObject>

/// How many connections a signal, as SIGNAL() writes it, has. QObject keeps that to its heirs.
inline int connectionCount(const QObject *sender, const char *signal)
{
    struct Opened : QObject
    {
        using QObject::receivers;
    };
    return (sender->*&Opened::receivers)(signal);
}
