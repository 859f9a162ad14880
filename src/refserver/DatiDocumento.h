#pragma once

#include "modTabellaCartelle.h"

#include <QDateTime>
#include <QList>
#include <QString>


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
// Written and read by hand: QDateTime's format parser costs ten times more, and a large
// folder reads two dates per document at start.
namespace modDate {
inline QString Testo(const QDateTime& data)
{
    if (!data.isValid())
        return {};
    const QDate g = data.date();
    const QTime o = data.time();
    char16_t b[19];
    const auto due = [&b](int i, int v) {
        b[i] = static_cast<char16_t>(u'0' + v / 10);
        b[i + 1] = static_cast<char16_t>(u'0' + v % 10);
    };
    due(0, g.day());
    b[2] = u'/';
    due(3, g.month());
    b[5] = u'/';
    due(6, g.year() / 100 % 100);
    due(8, g.year() % 100);
    b[10] = u' ';
    due(11, o.hour());
    b[13] = u':';
    due(14, o.minute());
    b[16] = u':';
    due(17, o.second());
    return QString(reinterpret_cast<const QChar*>(b), 19);
}
inline QDateTime Leggi(QStringView testo)
{
    testo = testo.trimmed();
    if (testo.size() != 19 || testo[2] != u'/' || testo[5] != u'/' || testo[10] != u' ' || testo[13] != u':'
        || testo[16] != u':')
        return {};
    int v[6] = {};
    constexpr int inizio[6] = {0, 3, 6, 11, 14, 17};
    constexpr int cifre[6] = {2, 2, 4, 2, 2, 2};
    for (int k = 0; k < 6; ++k)
        for (int i = 0; i < cifre[k]; ++i) {
            const QChar c = testo[inizio[k] + i];
            if (!c.isDigit())
                return {};
            v[k] = v[k] * 10 + c.digitValue();
        }
    const QDate data(v[2], v[1], v[0]);
    const QTime ora(v[3], v[4], v[5]);
    return data.isValid() && ora.isValid() ? QDateTime(data, ora) : QDateTime();
}
} // namespace modDate
