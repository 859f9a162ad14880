#pragma once

#include "modDisco.h"

#include <cerrno>

// Installed for its lifetime: the file system, failing at its Nth operation (0: never) with
// the error a full disk gives.
class OperazioniGuaste : public modDisco::Operazioni
{
public:
    explicit OperazioniGuaste(int fallisciAl) : mFallisciAl(fallisciAl) { modDisco::ImpostaOperazioni(this); }
    ~OperazioniGuaste() override { modDisco::ImpostaOperazioni(nullptr); }
    // Whether the fault was met (the run got as far as operation N).
    bool Guastata() const { return mChiamate >= mFallisciAl; }
    // How many operations the run made.
    int Chiamate() const { return mChiamate; }

    int Apri(const char* p, int f, mode_t m) override { return Guasto() ? -1 : Operazioni::Apri(p, f, m); }
    ssize_t Scrivi(int fd, const char* d, size_t n) override { return Guasto() ? -1 : Operazioni::Scrivi(fd, d, n); }
    int Sincronizza(int fd) override { return Guasto() ? -1 : Operazioni::Sincronizza(fd); }
    int Chiudi(int fd) override
    {
        const bool guasto = Guasto();
        const int esito = Operazioni::Chiudi(fd); // closed in any case, as the system does
        if (guasto)
            errno = ENOSPC;
        return guasto ? -1 : esito;
    }
    int Rinomina(const char* da, const char* a, bool s) override { return Guasto() ? -1 : Operazioni::Rinomina(da, a, s); }
    int Scambia(const char* a, const char* b) override { return Guasto() ? -1 : Operazioni::Scambia(a, b); }
    int CreaCartella(const char* p, mode_t m) override { return Guasto() ? -1 : Operazioni::CreaCartella(p, m); }

private:
    bool Guasto()
    {
        if (++mChiamate != mFallisciAl)
            return false;
        errno = ENOSPC;
        return true;
    }
    int mFallisciAl;
    int mChiamate = 0;
};

