#include "modLog.h"

#include "PxRigaLog.h"
#include "modLetturaFile.h"


namespace modLog {

namespace {

int Cifre(const char* c) { return (c[0] - '0') * 10 + (c[1] - '0'); }
bool Cifra(char c) { return c >= '0' && c <= '9'; }

// The usual line, " 2 10:20:30 text", read straight from its bytes; false for any other form,
// which the general reader then takes.
bool Veloce(const char* p, qsizetype n, int* livello, qint32* secondi)
{
    if (n < 11 || !Cifra(p[1]) || (p[0] != ' ' && !Cifra(p[0])) || p[2] != ' ' || p[5] != ':' || p[8] != ':'
        || !Cifra(p[3]) || !Cifra(p[4]) || !Cifra(p[6]) || !Cifra(p[7]) || !Cifra(p[9]) || !Cifra(p[10]))
        return false;
    *livello = (p[0] == ' ' ? 0 : (p[0] - '0') * 10) + (p[1] - '0');
    const int h = Cifre(p + 3), m = Cifre(p + 6), s = Cifre(p + 9);
    *secondi = h < 24 && m < 60 && s < 60 ? (h * 60 + m) * 60 + s : -1;
    return true;
}

} // namespace

std::vector<Riga> Righe(const QByteArray& dati, bool parziale, const Livelli& livelli, qint64* consumati)
{
    std::vector<Riga> righe;
    qsizetype inizio = 0;
    bool prima = true;
    for (;;) {
        const qsizetype fine = dati.indexOf("\r\n", inizio);
        if (fine < 0)
            break;
        const bool salta = prima && parziale;
        prima = false;
        if (!salta) {
            const char* p = dati.constData() + inizio;
            const qsizetype n = fine - inizio;
            int livello = -1;
            qint32 secondi = -1;
            if (Veloce(p, n, &livello, &secondi)) {
                // Only the text becomes a QString, and only for a level that is shown.
                if (livello <= 3 && livelli[static_cast<size_t>(livello)])
                    righe.push_back({static_cast<qint8>(livello), secondi,
                                     n > 12 ? QString::fromUtf8(p + 12, n - 12) : QString()});
            } else if (const auto r = modRigaLog::Analizza(QString::fromUtf8(p, n));
                       r && r->Livello >= 0 && r->Livello <= 3 && livelli[static_cast<size_t>(r->Livello)]) {
                righe.push_back({static_cast<qint8>(r->Livello), r->Ora.isValid() ? r->Ora.msecsSinceStartOfDay() / 1000 : -1,
                                 r->Testo});
            }
        }
        inizio = fine + 2;
    }
    if (consumati)
        *consumati = inizio;
    return righe;
}

Lettura DaPezzo(const PxLetturaFile& pezzo, bool coda, const Livelli& livelli)
{
    Lettura l;
    qint64 consumati = 0;
    l.Righe = Righe(pezzo.Dati, coda && pezzo.Inizio > 0, livelli, &consumati);
    l.Fine = pezzo.Inizio + consumati;
    l.Dimensione = pezzo.Dimensione;
    l.Letta = true;
    return l;
}

Lettura Leggi(const QString& file, qint64 da, const Livelli& livelli)
{
    const bool coda = da == 0;
    PxLetturaFile pezzo;
    if (!pezzo.Da(modLetturaFile::LeggiRegolare(file, coda ? -MassimoCoda : da,
                                                coda ? static_cast<qint32>(MassimoCoda) : modContratto::MassimoLettura)))
        return {};
    return DaPezzo(pezzo, coda, livelli);
}

} // namespace modLog
