#include "modTraccia.h"

#include "PxErrore.h"
#include "PxLogConsole.h"
#include "PxRigaLog.h"

namespace modTraccia {

namespace {
PxLogConsole* gLog = nullptr;
}

void ImpostaLog(PxLogConsole* log) { gLog = log; }
PxLogConsole* Log() { return gLog; }

void Scrivi(int livello, const QString& testo)
{
    if (gLog)
        gLog->Scrivi(livello, testo);
}

void RegistraErrore(const char* nome, std::exception_ptr errore)
{
    qint32 numero = modErrori::ErrGenerico;
    QString testo;
    try {
        std::rethrow_exception(errore);
    } catch (const PxErrore& e) {
        numero = e.Numero();
        testo = e.Descrizione();
    } catch (const std::exception& e) {
        testo = QString::fromUtf8(e.what());
    } catch (...) {
        testo = modErrori::TestoErrore(numero);
    }
    Scrivi(modRigaLog::LivelloErrore,
           QStringLiteral("Errore in %1: %2 - %3").arg(QString::fromUtf8(nome)).arg(numero).arg(testo));
}

Traccia::Traccia(const char* nome) : mNome(gLog && gLog->TracciaProcedure ? nome : nullptr)
{
    if (mNome)
        Scrivi(modRigaLog::LivelloDettaglio, QString::fromUtf8(mNome) + QStringLiteral("> Entra"));
}

Traccia::~Traccia()
{
    if (mNome)
        Scrivi(modRigaLog::LivelloDettaglio, QString::fromUtf8(mNome) + QStringLiteral("> Esce"));
}

} // namespace modTraccia
