#pragma once

#include <QString>

#include <functional>

class QObject;

// Passwords the forms remember, in the desktop's keyring (qtkeychain), never in a settings
// file. Without a keyring the password is not remembered: the operator types it each time.
namespace modPortachiavi {

// `fatto(password)` with the stored password, or with "" and `riuscito` false when there is
// none or no keyring. Asynchronous; `contesto` ends the wait when destroyed.
void Leggi(const QString& chiave, QObject* contesto, std::function<void(bool riuscito, const QString& password)> fatto);
// Stores the password; `fatto(riuscito)` when done.
void Scrivi(const QString& chiave, const QString& password, QObject* contesto, std::function<void(bool riuscito)> fatto);

// For tests: a keyring of their own (null restores the desktop's).
struct Portachiavi
{
    std::function<void(const QString&, std::function<void(bool, const QString&)>)> Leggi;
    std::function<void(const QString&, const QString&, std::function<void(bool)>)> Scrivi;
};
void ImpostaPortachiavi(const Portachiavi* portachiavi);

} // namespace modPortachiavi
