#pragma once

#include "DatiDocumento.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <span>

// The bodies of the demo's documents: what each kind of document says, in the document's
// language. A print job is the form itself (an invoice, a delivery note, a pay slip, a label),
// a fax carries its cover lines before a letter or an order, an e-mail reads as a message, a
// publication as a page of the customers' area. Written in Windows-1252 with the ESC/P
// sequences of the demo's printers, as the clients send them.
namespace modDemoCorpi {

enum class Modello {
    Fattura, Ddt, Cedolino, Etichetta, EstrattoConto, Lettera, Ordine, Sollecito, ConfermaOrdine, Preventivo,
    Listino, Circolare
};

// What a folder of `genere` holds.
std::span<const Modello> Modelli(GenereCartella genere);
// The document's name as its description gives it, in Italian ("Fattura").
QString Nome(Modello m);

struct Contenuto
{
    Modello Tipo = Modello::Lettera;
    QString Lingua;          // "IT", "EN", "DE", "FR"; any other reads as Italian
    QString Destinatario;    // the customer, or the employee of a pay slip
    qint32 Numero = 0;       // the document's own number
    quint64 Seme = 0;        // goods, amounts: the same seed, the same body
};

// The body (.bpx) of `d` with content `c`.
QByteArray Corpo(const DatiDocumento& d, const Contenuto& c);

} // namespace modDemoCorpi
