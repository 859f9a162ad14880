#pragma once

#include <QString>

#include <exception>
#include <utility>

class PxLogConsole;

// Every procedure of the console writes "Name> Entra" and "Name> Esce" to the console log,
// and turns an error into a logged "Errore in Name" with its number and text, then returns.
namespace modTraccia {

// The log the guards write to (none: they write nothing). Set by the engine. The
// "Entra"/"Esce" lines follow the log's TracciaProcedure; errors are always written.
void ImpostaLog(PxLogConsole* log);
PxLogConsole* Log();
void Scrivi(int livello, const QString& testo);

// Writes "Errore in <nome>: <numero> - <testo>" for the exception being handled.
void RegistraErrore(const char* nome, std::exception_ptr errore);

// RAII: "Name> Entra" now, "Name> Esce" when the scope ends (also on an exception).
class Traccia
{
public:
    explicit Traccia(const char* nome);
    ~Traccia();
    Traccia(const Traccia&) = delete;
    Traccia& operator=(const Traccia&) = delete;

private:
    const char* mNome;
};

// Runs `corpo` inside a Traccia; an error is logged and swallowed. Returns false after an error.
template <typename F>
bool Proteggi(const char* nome, F&& corpo) noexcept
{
    Traccia traccia(nome);
    try {
        std::forward<F>(corpo)();
        return true;
    } catch (...) {
        RegistraErrore(nome, std::current_exception());
        return false;
    }
}

} // namespace modTraccia
