#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

// The seven document folders of the reference server.
enum class GenereCartella { Stampa, Email, Fax, PFax, EFax, Pbl, Anteprima };

struct Collegato
{
    QString Id;
    QString Descrizione;
};

// One document as the reference server keeps it in memory. Its description file
// (<id>.xml, root "Documento", element "Proprieta") is written from it and read back into it.
struct DatiDocumento
{
    // identity and stage
    QString Id;                   // unique within the server
    GenereCartella Genere = GenereCartella::Stampa;
    qint32 Coda = 0;              // the queue the document is in
    QString Stato;                // what happened last, in words ("In attesa", "Trasmesso", the error)
    qint32 Tentativi = 0;         // transmission or print attempts made
    qint32 Rifiuti = 0;           // times rejected; a second rejection discards
    // what every kind shows
    QString Funzione;             // the client program's function that produced it
    QString Descrizione;
    QString Sigla;                // the customer's code
    QString Utente;               // account of the user who sent it
    QString UtenteDescrizione;    // the user's full name
    QString Ip;                   // address of the sending machine
    qint32 Priorita = 0;          // 0 normal, 1 high, 2 urgent
    QDateTime Inserito;           // arrival
    QDateTime Elaborato;          // last processed; null while waiting
    qint32 Pagine = 1;
    qint32 CodiceErrore = 0;
    QString Errore;               // the reason of a rejection
    // printing and printer fax
    QString Stampante;            // Windows printer name
    qint32 NumeroTarquel = 0;     // the printer's number in the management system
    qint32 Copie = 1;
    // e-mail
    QString Oggetto;
    QString Da;                   // sender address
    QString A;                    // recipients, separated by ';'
    QString Cc;
    QString Ccn;
    // fax, printer fax, fax via e-mail
    QString PrefissoInternazionale;
    QString PrefissoLocale;
    QString NumeroFax;
    // previews: the client that asked
    QString KeyUtente;
    // linked documents (fax cover pages, publication attachments)
    QList<Collegato> Collegati;
    // files, by name inside the document's folder; "" when absent
    QString FileCorpo;            // .bpx
    QString FileScript;           // .spx
    QString FileIntestazione;     // .hpx
    QString FileOutput;           // .pdf or .tif once produced
    QString FileLog;              // <id>.log
};

// Dates as the server writes them in descriptions and listings: "dd/MM/yyyy HH:mm:ss".
namespace modDate {
inline QString Testo(const QDateTime& data)
{
    return data.isValid() ? data.toString(QStringLiteral("dd/MM/yyyy HH:mm:ss")) : QString();
}
inline QDateTime Leggi(const QString& testo)
{
    return QDateTime::fromString(testo.trimmed(), QStringLiteral("dd/MM/yyyy HH:mm:ss"));
}
} // namespace modDate
