#include "modProva.h"

#include "PxConsoleResDll.h"
#include "PxLettoreIni.h"
#include "modCp1252.h"

#include <QDir>

namespace modProva {

namespace {

using modContenuto::Righe;

// The text the descriptions name as the test's origin.
constexpr qint32 TestoOrigine = 8000;

// Sample lines after the fields, then the closing lines; a format test carries its key only.
QByteArray Corpo(const Formato* formato, const QDateTime& quando, const PxConsoleResDll& testi,
                 const std::function<void(Righe&)>& campi, int vuote)
{
    Righe r;
    if (formato) {
        r << formato->Key;
    } else {
        modContenuto::Testata(r, modContenuto::TestoData(quando));
        campi(r);
        r.Vuote(vuote);
        modContenuto::Campioni(r);
        modContenuto::Chiusura(r, testi);
    }
    return modCp1252::Codifica(r.Testo());
}

void SezioniFax(PxIntestazioneHpx& h, const DatiFax& f, const DatiPosta* efax)
{
    const QString s = QStringLiteral("FAX");
    h.ScriviTesto(s, QStringLiteral("PrefissoInternazionale"), f.PrefissoInternazionale);
    h.ScriviTesto(s, QStringLiteral("PrefissoLocale"), f.PrefissoLocale);
    h.ScriviTesto(s, QStringLiteral("NumeroFax"), f.NumeroFax);
    h.ScriviTesto(s, QStringLiteral("Oggetto"), f.Oggetto);
    h.ScriviTesto(s, QStringLiteral("NomeDestinatario"), f.Destinatario);
    h.ScriviTesto(s, QStringLiteral("SocietaDestinataria"), f.SocietaDestinataria);
    h.ScriviTesto(s, QStringLiteral("NomeMittente"), f.Mittente);
    const QString c = QStringLiteral("FRONTESPIZIO");
    h.ScriviTesto(c, QStringLiteral("Inviare"), f.Frontespizio ? QStringLiteral("True") : QStringLiteral("False"));
    // Ten note lines at most: the cover page has room for no more.
    const QStringList note = f.Note.isEmpty() ? QStringList() : f.Note.split(QStringLiteral("\r\n"));
    for (qsizetype i = 0; i < note.size() && i < 10; ++i)
        h.ScriviTesto(c, QStringLiteral("Nota%1").arg(i), note[i]);
    if (!efax) {
        h.ScriviTesto(QStringLiteral("CEDOLINO"), QStringLiteral("Stampare"), f.StampaCedolino ? QStringLiteral("True") : QStringLiteral("False"));
        h.ScriviTesto(QStringLiteral("NOTIFICA"), QStringLiteral("Notificare"), QStringLiteral("False"));
        return;
    }
    h.ScriviTesto(QStringLiteral("NOTIFICA"), QStringLiteral("Account_NomeVisualizzato"), efax->Da);
    h.ScriviTesto(QStringLiteral("NOTIFICA"), QStringLiteral("Account_IndirizzoEmail"), efax->Da);
    const QString m = QStringLiteral("SMTP");
    h.ScriviTesto(m, QStringLiteral("MailDomain"), efax->Dominio);
    h.ScriviTesto(m, QStringLiteral("MailServer"), efax->Server);
    h.ScriviTesto(m, QStringLiteral("MailPort"), efax->Porta);
    h.ScriviTesto(m, QStringLiteral("SSL"), efax->Ssl ? QStringLiteral("True") : QStringLiteral("False"));
    h.ScriviTesto(m, QStringLiteral("NomeAccount"), efax->Account);
    h.ScriviTesto(m, QStringLiteral("PasswordAccount"), efax->Password);
    h.ScriviIntero(m, QStringLiteral("Autenticazione"), efax->Autenticazione);
}

} // namespace

Collegamenti LeggiCollegamenti(const PxLettoreIni& ini)
{
    const QString sezione = QStringLiteral("Console");
    Collegamenti c;
    c.Titolo = ini.Stringa(sezione, QStringLiteral("TitoloLink"), c.Titolo, 1024).trimmed();
    c.Aggiornamenti = ini.Stringa(sezione, QStringLiteral("IndirizzoAggiornamenti"), {}, 1024).trimmed();
    c.Sito = ini.Stringa(sezione, QStringLiteral("IndirizzoSito"), {}, 1024).trimmed();
    return c;
}

QString Destinazione(const DatiFax& fax)
{
    return QStringList{fax.PrefissoInternazionale.trimmed(), fax.PrefissoLocale.trimmed(), fax.NumeroFax.trimmed()}
        .join(u' ')
        .simplified();
}

modContenuto::Lavoro Fax(const DatiFax& fax, const Formato* formato, const PxConsoleResDll& testi, const QDateTime& quando,
                         const DatiPosta* efax)
{
    modContenuto::Lavoro l;
    l.Corpo = Corpo(formato, quando, testi, [&](Righe& r) {
        r << QStringLiteral("   Prefisso internazionale -> ") + fax.PrefissoInternazionale
          << QStringLiteral("   Prefisso locale         -> ") + fax.PrefissoLocale
          << QStringLiteral("   Numero Fax              -> ") + fax.NumeroFax
          << QStringLiteral("   Frontespizio            -> ") + testi.LoadDllString(fax.Frontespizio ? 100 : 101);
    }, 5);
    modContenuto::Proprieta p;
    p.Tipo = 1;
    p.Sigla = fax.SiglaCliente;
    p.Ditta = fax.CodiceDitta;
    p.Suddivisione = fax.Suddivisione;
    p.Lingua = fax.Lingua;
    if (formato) {
        p.Id = QStringLiteral("Fax formato ") + formato->Key;
        p.Descrizione = QStringLiteral("Fax formato ") + formato->Descrizione;
        p.FormatoPagina = formato->Id;
        p.LunghezzaPagina = formato->RigheModulo;
    } else {
        p.Id = QStringLiteral("Fax di prova");
        p.Descrizione = QStringLiteral("Fax di prova di ") + testi.LoadDllString(TestoOrigine);
    }
    modContenuto::ScriviProprieta(l.Intestazione, p, testi, quando);
    SezioniFax(l.Intestazione, fax, efax);
    l.Base = QStringLiteral("Pagina di prova di ") + modLavoro::Sanifica(Destinazione(fax));
    return l;
}

modContenuto::Lavoro Email(const DatiPosta& posta, const Formato* formato, const PxConsoleResDll& testi,
                           const QDateTime& quando, const Collegamenti& collegamenti)
{
    modContenuto::Lavoro l;
    l.Corpo = Corpo(formato, quando, testi, [&](Righe& r) {
        r << QStringLiteral("   SMTP                     -> ") + posta.Server
          << QStringLiteral("   Porta                    -> ") + posta.Porta
          << QStringLiteral("   Oggetto                  -> ") + posta.Oggetto;
    }, 6);
    modContenuto::Proprieta p;
    p.Tipo = 3;
    if (formato) {
        p.Id = QStringLiteral("Email formato ") + formato->Key;
        p.Descrizione = QStringLiteral("Email formato ") + formato->Descrizione;
        p.FormatoPagina = formato->Id;
        p.LunghezzaPagina = formato->RigheModulo;
        p.Lingua = formato->Lingua;
    } else {
        p.Id = QStringLiteral("Email di prova");
        p.Descrizione = QStringLiteral("Email di prova di ") + testi.LoadDllString(TestoOrigine);
    }
    PxIntestazioneHpx& h = l.Intestazione;
    modContenuto::ScriviProprieta(h, p, testi, quando);
    const QString e = QStringLiteral("EMAIL");
    h.ScriviTesto(e, QStringLiteral("Oggetto"), posta.Oggetto);
    h.ScriviTesto(e, QStringLiteral("Account_NomeVisualizzato"), posta.Da);
    h.ScriviTesto(e, QStringLiteral("Account_IndirizzoEmail"), posta.Da);
    h.ScriviTesto(e, QStringLiteral("A_NomiVisualizzati"), posta.A);
    h.ScriviTesto(e, QStringLiteral("A_IndirizziEmail"), posta.A);
    h.ScriviTesto(e, QStringLiteral("Notificare"), posta.Notifica ? QStringLiteral("True") : QStringLiteral("False"));
    if (!posta.Firma.isEmpty())
        h.ScriviTesto(e, QStringLiteral("Firma"), posta.Firma);
    h.ScriviTesto(QStringLiteral("CEDOLINO"), QStringLiteral("Stampare"), QStringLiteral("True"));
    h.ScriviTesto(QStringLiteral("CEDOLINO"), QStringLiteral("Stampante"), QString());
    const QString a = QStringLiteral("ALLEGATO");
    h.ScriviIntero(a, QStringLiteral("Dimensione"), 1);
    h.ScriviIntero(a, QStringLiteral("Orientamento"), 1);
    h.ScriviIntero(a, QStringLiteral("FronteRetro"), 1);
    if (!formato && !posta.PercorsoFileZip.isEmpty()) {
        h.ScriviIntero(QStringLiteral("ALLEGATI"), QStringLiteral("NumeroAllegati"), 1);
        h.ScriviTesto(QStringLiteral("ALLEGATI"), QStringLiteral("Allegato0"), posta.PercorsoFileZip);
    }
    if (!formato) {
        const QString k = QStringLiteral("LINKS");
        h.ScriviTesto(k, QStringLiteral("Titolo"), collegamenti.Titolo);
        h.ScriviIntero(k, QStringLiteral("NumeroLink"), 2);
        h.ScriviTesto(k, QStringLiteral("Href0"), collegamenti.Aggiornamenti);
        h.ScriviTesto(k, QStringLiteral("Descrizione0"), QStringLiteral("update"));
        h.ScriviTesto(k, QStringLiteral("Href1"), collegamenti.Sito);
        h.ScriviTesto(k, QStringLiteral("Descrizione1"), QString());
    }
    const QString m = QStringLiteral("SMTP");
    h.ScriviTesto(m, QStringLiteral("MailDomain"), posta.Dominio);
    h.ScriviTesto(m, QStringLiteral("MailServer"), posta.Server);
    h.ScriviTesto(m, QStringLiteral("MailPort"), posta.Porta);
    h.ScriviTesto(m, QStringLiteral("SSL"), posta.Ssl ? QStringLiteral("True") : QStringLiteral("False"));
    h.ScriviTesto(m, QStringLiteral("NomeAccount"), QString());
    h.ScriviTesto(m, QStringLiteral("PasswordAccount"), QString());
    h.ScriviIntero(m, QStringLiteral("Autenticazione"), posta.Autenticazione);
    // The format test keeps the account under the misspelt keys its service reads.
    h.ScriviTesto(m, formato ? QStringLiteral("NomeAccout") : QStringLiteral("NomeAccount"), posta.Account);
    h.ScriviTesto(m, formato ? QStringLiteral("PasswordAccout") : QStringLiteral("PasswordAccount"), posta.Password);
    l.Base = QStringLiteral("Pagina di prova di ") + modLavoro::Sanifica(posta.A.trimmed());
    return l;
}

} // namespace modProva
