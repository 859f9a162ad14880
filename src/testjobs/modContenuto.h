#pragma once

#include "PxIntestazioneHpx.h"
#include "PxSrvOggetto.h"
#include "modLavoro.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>

#include <optional>

class PxConsoleResDll;
class PxSrvServer;
class PxSrvServizio;
namespace pugi { class xml_node; }

// The printer test page: the job a printer's model code calls for, in the three-file form the
// printing service takes from its input folder (body .bpx, page script .spx, header .hpx).
// Model codes 0, 6, 7 and 12 get a formatted text page with the server's markup tags and a
// page script; 1, 2, 8 and 10 a label in Datamax DPL, Zebra ZPL II, Zebra EPL2 or Toshiba
// TEC; any other code a header and an empty body. Bodies are Windows-1252 with CR LF line
// ends, as the service's clients write them; the script and the header are UTF-8 XML.
namespace modContenuto {

struct Lavoro
{
    QByteArray Corpo;
    QByteArray Script; // empty: no script file
    PxIntestazioneHpx Intestazione;
    QString Base;      // "Pagina di prova di <printer>"
};

// Lines joined with CR LF, each one ended.
class Righe
{
public:
    Righe& operator<<(const QString& riga)
    {
        mTesto += riga;
        mTesto += QStringLiteral("\r\n");
        return *this;
    }
    void Vuote(int n)
    {
        for (int i = 0; i < n; ++i)
            *this << QString();
    }
    const QString& Testo() const { return mTesto; }

private:
    QString mTesto;
};

// The pieces every test page shares: a blank line, the date right-aligned, eight blank lines;
// the type-size, style, barcode and alphabet samples; four blank lines and the closing lines.
QString AllineaADestra(const QString& testo);
void Testata(Righe& r, const QString& data);
void Campioni(Righe& r);
void Chiusura(Righe& r, const PxConsoleResDll& testi);

// The header's top level, its PROPRIETA section and both character catalogues.
struct Proprieta
{
    qint32 Tipo = 2; // 1 fax, 2 print, 3 e-mail
    QString Id;
    QString Descrizione;
    QString Sigla;   // "000" when empty
    QString Ditta;   // "000" when empty
    QString Suddivisione;
    qint32 Lingua = 0;
    QString FormatoPagina = QStringLiteral("PGPRV-");
    qint32 LunghezzaPagina = 70;
};
void ScriviProprieta(PxIntestazioneHpx& h, const Proprieta& p, const PxConsoleResDll& testi, const QDateTime& quando);

// "lunedì 23 novembre 2026 9.05.07"-style text of `quando` ("dddd d mmmm yyyy Hh.Nn.Ss",
// Italian names, two-digit time fields).
QString TestoData(const QDateTime& quando);
// The first letter of each word in upper case.
QString MaiuscoleIniziali(const QString& testo);

// The job for the printer described by `stampante` (a "Stampante" record of the printing
// service). nullopt, with the reason, when an element the page needs is missing.
std::optional<Lavoro> PaginaDiProva(const pugi::xml_node& stampante, const PxConsoleResDll& testi, const QDateTime& quando,
                                    QString* errore = nullptr);

// The printer named `nomeWindows` in the printing service's state XML; a null node if none.
pugi::xml_node TrovaStampante(const pugi::xml_node& statoStampe, const QString& nomeWindows);

// The printer whose "Chiave" is `chiave`; a null node if none.
pugi::xml_node StampanteDellaChiave(const pugi::xml_node& statoStampe, const QString& chiave);

// The job's files in the order they are published: script (if any), body, header.
std::vector<modLavoro::File> File(const Lavoro& lavoro);

// Writes the job into `cartellaIngresso` of a server folder on this machine, for a server
// that may not be running. A failure is logged as "Errore in ScriviPaginaDiProva" and
// nothing of the job is left under a final name.
modLavoro::Esito ScriviPaginaDiProva(const Lavoro& lavoro, const QString& cartellaIngresso);

// Hands the job to `servizio` through the server (ConsegnaLavoro), whether or not this side
// shares the server's files. `fatto` gets the answer, later: done, with the job's base name
// in the server's input folder as Testo (the name LavoroPreso / LavoroRespinto will carry),
// or the reason. A failure is logged as "Errore in ConsegnaLavoro".
void Consegna(PxSrvServizio* servizio, const Lavoro& lavoro, QObject* richiedente, PxSrvOggetto::Esito fatto);

// Sends the test page of printer `stampante` (its key or its Windows name) of `server`'s
// printing service, composed from the service's state as the console holds it: `fatto` as
// for Consegna; a printer unknown or whose page cannot be made is refused, its name and the
// reason in Testo.
void InviaPaginaDiProva(PxSrvServer* server, const QString& stampante, const PxConsoleResDll& testi, QObject* richiedente,
                        PxSrvOggetto::Esito fatto);

} // namespace modContenuto
