#include "PxConsoleResDll.h"
#include "PxLettoreIni.h"
#include "modCp1252.h"
#include "modProva.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QDateTime Quando(QDate(2026, 11, 23), QTime(9, 5, 7));

const PxConsoleResDll& Testi()
{
    static const PxConsoleResDll testi;
    return testi;
}

QStringList Chiavi(const PxIntestazioneHpx& h, const QString& sezione)
{
    QStringList k;
    for (const PxIntestazioneHpx::Valore& v : h.Valori())
        if (v.Sezione == sezione)
            k << v.Nome;
    return k;
}

TEST(ProvaFax, ElevenNoteLinesSendTenAndEmptyCodesGoAs000)
{
    modProva::DatiFax f;
    f.PrefissoInternazionale = u"39"_s;
    f.PrefissoLocale = u"02"_s;
    f.NumeroFax = u"1234567"_s;
    f.Frontespizio = true;
    f.SiglaCliente = u"  "_s;
    for (int i = 0; i < 11; ++i)
        f.Note += (i ? u"\r\n"_s : QString()) + u"riga %1"_s.arg(i);
    const modContenuto::Lavoro l = modProva::Fax(f, nullptr, Testi(), Quando);
    const PxIntestazioneHpx& h = l.Intestazione;
    EXPECT_EQ(h.Intero({}, u"Tipo"_s), 1);
    EXPECT_EQ(h.Testo(u"PROPRIETA"_s, u"Sigla"_s), u"000"_s);
    EXPECT_EQ(h.Testo(u"PROPRIETA"_s, u"Ditta"_s), u"000"_s);
    EXPECT_EQ(h.Testo(u"FRONTESPIZIO"_s, u"Nota9"_s), u"riga 9"_s);
    EXPECT_FALSE(h.Leggi(u"FRONTESPIZIO"_s, u"Nota10"_s).isValid());
    EXPECT_EQ(h.Testo(u"FAX"_s, u"NumeroFax"_s), u"1234567"_s);
    EXPECT_EQ(Chiavi(h, u"CEDOLINO"_s), QStringList{u"Stampare"_s});
    EXPECT_EQ(l.Base, u"Pagina di prova di 39 02 1234567"_s);
    const QString corpo = modCp1252::Decodifica(l.Corpo);
    EXPECT_TRUE(corpo.contains(u"   Frontespizio            -> Sì\r\n"_s));
    EXPECT_TRUE(corpo.contains(u"[%$GR1]Rigo di stampa in grassetto[%$GR0]"_s));
    EXPECT_FALSE(corpo.contains(u"Margine"_s)) << "no printer lines on a fax";
}

TEST(ProvaFax, AFormatTestCarriesTheKeyOnlyAndTheEFaxItsAccount)
{
    const modProva::Formato formato{u"FRONTE01"_s, u"Fattura fronte"_s, u"PG0001"_s, 66, 2};
    modProva::DatiFax f;
    f.NumeroFax = u"555"_s;
    modProva::DatiPosta conto;
    conto.Da = u"fax@ditta.it"_s;
    conto.Ssl = true;
    conto.Autenticazione = 2;
    const modContenuto::Lavoro l = modProva::Fax(f, &formato, Testi(), Quando, &conto);
    EXPECT_EQ(l.Corpo, "FRONTE01\r\n");
    const PxIntestazioneHpx& h = l.Intestazione;
    EXPECT_EQ(h.Testo(u"PROPRIETA"_s, u"Id"_s), u"Fax formato FRONTE01"_s);
    EXPECT_EQ(h.Testo(u"PROPRIETA"_s, u"Descrizione"_s), u"Fax formato Fattura fronte"_s);
    EXPECT_EQ(h.Testo(u"PROPRIETA"_s, u"FormatoPagina"_s), u"PG0001"_s);
    EXPECT_EQ(h.Intero(u"PROPRIETA"_s, u"LunghezzaPagina"_s), 66);
    EXPECT_TRUE(Chiavi(h, u"CEDOLINO"_s).isEmpty()) << "the e-fax has no report";
    EXPECT_EQ(h.Testo(u"NOTIFICA"_s, u"Account_IndirizzoEmail"_s), u"fax@ditta.it"_s);
    EXPECT_EQ(h.Testo(u"SMTP"_s, u"SSL"_s), u"True"_s);
    EXPECT_EQ(h.Intero(u"SMTP"_s, u"Autenticazione"_s), 2);
}

TEST(ProvaEmail, TheStandardTestAndTheFormatTestWriteTheirOwnKeys)
{
    modProva::DatiPosta p;
    p.Server = u"smtp.ditta.it"_s;
    p.Porta = u"587"_s;
    p.A = u"operatore@ditta.it"_s;
    p.Account = u"console"_s;
    p.Password = u"segreta"_s;
    const modContenuto::Lavoro standard = modProva::Email(p, nullptr, Testi(), Quando);
    const PxIntestazioneHpx& h = standard.Intestazione;
    EXPECT_EQ(h.Intero({}, u"Tipo"_s), 3);
    EXPECT_TRUE(Chiavi(h, u"ALLEGATI"_s).isEmpty()) << "no attachment path, no section";
    EXPECT_EQ(h.Intero(u"LINKS"_s, u"NumeroLink"_s), 2);
    // Written empty first, then with the account: the reader keeps the last.
    EXPECT_EQ(Chiavi(h, u"SMTP"_s).count(u"NomeAccount"_s), 2);
    EXPECT_EQ(h.Testo(u"SMTP"_s, u"NomeAccount"_s), u"console"_s);
    EXPECT_TRUE(modCp1252::Decodifica(standard.Corpo).contains(u"   SMTP                     -> smtp.ditta.it\r\n"_s));

    p.PercorsoFileZip = u"/srv/pelorix/allegato.pxz"_s;
    EXPECT_EQ(modProva::Email(p, nullptr, Testi(), Quando).Intestazione.Testo(u"ALLEGATI"_s, u"Allegato0"_s), p.PercorsoFileZip);

    const modProva::Formato formato{u"FIRMA02"_s, u"Lettera"_s, u"PG0002"_s, 72, 3};
    const PxIntestazioneHpx& f = modProva::Email(p, &formato, Testi(), Quando).Intestazione;
    EXPECT_EQ(f.Testo(u"SMTP"_s, u"NomeAccout"_s), u"console"_s);
    EXPECT_EQ(f.Testo(u"SMTP"_s, u"PasswordAccout"_s), u"segreta"_s);
    EXPECT_EQ(f.Testo(u"SMTP"_s, u"NomeAccount"_s), QString());
    EXPECT_EQ(f.Testo(u"SMTP"_s, u"PasswordAccount"_s), QString());
    EXPECT_EQ(f.Intero(u"PROPRIETA"_s, u"Lingua"_s), 3);
    EXPECT_TRUE(Chiavi(f, u"LINKS"_s).isEmpty());
    EXPECT_TRUE(Chiavi(f, u"ALLEGATI"_s).isEmpty());
}

TEST(ProvaEmail, TheLinksAreTheInstallationsAndNothingIsMadeUpWhenItNamesNone)
{
    const PxLettoreIni ini = PxLettoreIni::DaDati("[console]\r\nTitoloLink=\"Ditta Rossi\"\r\n"
                                                  "IndirizzoAggiornamenti=https://aggiornamenti.rossi.it/plx\r\n"
                                                  "IndirizzoSito= https://www.rossi.it \r\n");
    const modProva::Collegamenti c = modProva::LeggiCollegamenti(ini);
    EXPECT_EQ(c.Titolo, u"Ditta Rossi"_s);
    EXPECT_EQ(c.Aggiornamenti, u"https://aggiornamenti.rossi.it/plx"_s);
    EXPECT_EQ(c.Sito, u"https://www.rossi.it"_s);
    modProva::DatiPosta p;
    p.A = u"operatore@ditta.it"_s;
    const PxIntestazioneHpx h = modProva::Email(p, nullptr, Testi(), Quando, c).Intestazione;
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Titolo"_s), u"Ditta Rossi"_s);
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Href0"_s), u"https://aggiornamenti.rossi.it/plx"_s);
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Descrizione0"_s), u"update"_s);
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Href1"_s), u"https://www.rossi.it"_s);

    // An installation that names no links: the title only, no invented addresses.
    const modProva::Collegamenti vuoti = modProva::LeggiCollegamenti(PxLettoreIni::DaDati("[Console]\r\nLogNumeroFile=3\r\n"));
    EXPECT_EQ(vuoti.Titolo, u"Pelorix"_s);
    EXPECT_TRUE(vuoti.Aggiornamenti.isEmpty());
    EXPECT_TRUE(vuoti.Sito.isEmpty());
}

} // namespace
