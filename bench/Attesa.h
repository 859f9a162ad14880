#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>

// Turns the event loop until `fatto` holds or `millisecondi` pass; whether it holds.
template <typename F>
bool Attendi(F fatto, int millisecondi = 60000)
{
    const QDeadlineTimer limite(millisecondi);
    while (!fatto() && !limite.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return fatto();
}

// Connects `server` (after `avvia`, which starts its host) and waits for it to load; false,
// the benchmark skipped with the reason, when it does not.
template <typename Stato, typename Server, typename Avvio>
bool Caricato(Stato& state, Server& server, Avvio avvia)
{
    server.Connetti();
    avvia();
    if (Attendi([&] { return server.Caricato(); }))
        return true;
    state.SkipWithError("the server did not load");
    return false;
}
