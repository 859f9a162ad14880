#pragma once

#include "modContenuto.h"

#include <QString>

class PxLettoreIni;

// The test fax, test fax-by-e-mail and test e-mail jobs: what the three test forms send. A
// standard test carries the sample lines of the test page; a format test (a page format of
// the formats service) carries only the format's key, and the service lays the page out.
namespace modProva {

// A page format under test.
struct Formato
{
    QString Key;
    QString Descrizione;
    QString Id;            // the page format's id ("FormatoPagina")
    qint32 RigheModulo = 70;
    qint32 Lingua = 0;     // the Codice of its language
};

struct DatiFax
{
    QString PrefissoInternazionale, PrefissoLocale, NumeroFax;
    bool Frontespizio = false;
    QString SiglaCliente, CodiceDitta, Suddivisione;
    qint32 Lingua = 0; // index in the language list
    QString SocietaDestinataria, Mittente, Destinatario, Oggetto;
    QString Note;      // lines separated by CR LF; ten at most are sent
    bool StampaCedolino = false;
};

struct DatiPosta
{
    QString Server, Porta, Dominio;
    bool Ssl = false;
    QString Da, A, Oggetto;
    qint32 Autenticazione = 0; // 0 none, 1 PLAIN, 2 LOGIN, 3 CRAM-MD5, 8 OAuth2 (Microsoft)
    QString Account, Password;
    bool Notifica = false;
    QString Firma;             // the signature under test; "" none
    QString PercorsoFileZip;   // a file to attach; "" none
};

// The vendor's links a standard test e-mail carries: values of the installation, section
// "Console" of PlxConfigurazione.ini in the server folder: "TitoloLink" (default "Pelorix"),
// "IndirizzoAggiornamenti" (the update site) and "IndirizzoSito" (the home page), the two
// addresses empty when the installation names none.
struct Collegamenti
{
    QString Titolo = QStringLiteral("Pelorix");
    QString Aggiornamenti;
    QString Sito;
};
Collegamenti LeggiCollegamenti(const PxLettoreIni& ini);

// `formato` null: the standard test. `efax`: through the fax-by-e-mail service, with `posta`'s account.
modContenuto::Lavoro Fax(const DatiFax& fax, const Formato* formato, const PxConsoleResDll& testi, const QDateTime& quando,
                         const DatiPosta* efax = nullptr);
modContenuto::Lavoro Email(const DatiPosta& posta, const Formato* formato, const PxConsoleResDll& testi,
                           const QDateTime& quando, const Collegamenti& collegamenti = {});

// The destination text of a fax ("39 02 1234567").
QString Destinazione(const DatiFax& fax);

} // namespace modProva
