#pragma once

#include <QByteArray>
#include <QString>

#include <span>
#include <vector>

// The contract between the console and a dispatch server, whatever carries it: the names
// under which the server publishes its objects, the signals and slots each kind of object
// has, and the outcome codes of an answer. docs/boundary.md says the same in prose.
//
// Every request is a slot whose first argument is a request number; the object answers it
// later with Risposta(richiesta, esito, testo, dati). Only ids, plain values, XML text and
// bytes cross: never a pointer, never an object to be owned by the other side.
namespace modContratto {

// The outcome of a request, carried by Risposta.
enum Esito : qint32 {
    Ok = 0,
    Rifiutato = 1,      // bad input: unknown id, invalid queue, malformed selection
    Fallito = 2,        // the server could not do it (disk, limits); nothing half-done
    Sconosciuto = 3,    // no such object or method on the server
    NonDisponibile = 4, // the connection is not there (yet, or any more)
};

// The root's run state (property Stato, notice CambioStatoServer): running, and stopping for
// good, which ends the consoles attached as the host's Arresta would.
inline constexpr qint32 ServerInFunzione = 4;
inline constexpr qint32 ServerInArresto = 5;

// The root object ("PxSrvServer"), the background console worker and the load sampler.
inline constexpr const char* NomeServer = "PxSrvServer";
inline constexpr const char* NomeBkgConsole = "PxSrvBkgConsole";
inline constexpr const char* NomeUsoSistema = "PxSrvUsoSistema";
// A service or worker ("Servizio/PxSrvFax"), a document folder ("Cartella/PxSrvDocFax"), a
// catalogue ("Catalogo/PxSrvFormati"). Folders and catalogues share their key with the
// state object of the same name, hence the prefixes.
QString NomeServizio(const QString& chiave);
QString NomeCartella(const QString& chiave);
QString NomeCatalogo(const QString& chiave);

// The kinds of published object, and what each must carry.
enum class Genere { Server, Servizio, Cartella, Catalogo, BkgConsole, UsoSistema };

struct Firme
{
    std::span<const char* const> Segnali; // normalised signatures
    std::span<const char* const> Slot;
};
Firme FirmeDi(Genere genere);

// The answer signal every object has, and the largest output file sent as bytes.
inline constexpr const char* SegnaleRisposta = "Risposta(quint64,qint32,QString,QByteArray)";
inline constexpr qint64 MassimoFileInviato = 64 * 1024 * 1024;
// The most a job handed over by ConsegnaLavoro may weigh (its files together), and the most
// one LeggiFile answers with: larger reads are asked in pieces.
inline constexpr qint64 MassimoLavoro = 16 * 1024 * 1024;
inline constexpr qint32 MassimoLettura = 4 * 1024 * 1024;

// Documents that changed queue, as DocumentiSpostati carries them: the moves a server made
// together travel as one notice, so a burst of moves costs each console one message, not one
// per document. Spacchetta gives back nothing from bytes that do not read whole.
struct Spostamento
{
    qint32 Coda = 0;
    QString Id;
    QString Nodo; // the document's listing node
};
QByteArray ImpacchettaSpostamenti(std::span<const Spostamento> spostamenti);
std::vector<Spostamento> SpacchettaSpostamenti(const QByteArray& lotto);

} // namespace modContratto

// One answer: the outcome, a text (the reason when refused, or the result) and bytes.
struct PxRisposta
{
    qint32 Esito = modContratto::Ok;
    QString Testo;
    QByteArray Dati;

    bool Riuscita() const { return Esito == modContratto::Ok; }
};
