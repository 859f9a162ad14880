#include "modProprieta.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QRegularExpression>
#include <QStringList>

#include <sstream>

using namespace Qt::StringLiterals;
using modProprieta::Leggi;
using modProprieta::Scrivi;

namespace {

constexpr GenereCartella Generi[] = {GenereCartella::Stampa, GenereCartella::Email, GenereCartella::Fax,
                                     GenereCartella::PFax,   GenereCartella::EFax,  GenereCartella::Pbl,
                                     GenereCartella::Anteprima};

const QString Cartella = u"/srv/plx/Documenti/D00042"_s;

// Every field set, none at its default.
DatiDocumento Completo(GenereCartella genere)
{
    DatiDocumento d;
    d.Id = u"D00042"_s;
    d.Genere = genere;
    d.Coda = 1;
    d.Stato = u"In lavorazione"_s;
    d.Tentativi = 2;
    d.Rifiuti = 1;
    d.Funzione = u"FATTVEN"_s;
    d.Descrizione = u"Fattura 118/2024 – àèé"_s;
    d.Sigla = u"ROSSI"_s;
    d.Utente = u"mbianchi"_s;
    d.UtenteDescrizione = u"Marco Bianchi"_s;
    d.Ip = u"192.168.10.7"_s;
    d.Priorita = 2;
    d.Inserito = QDateTime(QDate(2024, 3, 5), QTime(9, 15, 30));
    d.Elaborato = QDateTime(QDate(2024, 3, 5), QTime(9, 17, 4));
    d.Pagine = 3;
    d.CodiceErrore = 421;
    d.Errore = u"Server smtp occupato"_s;
    d.Stampante = u"Laser amministrazione"_s;
    d.NumeroTarquel = 12;
    d.Copie = 2;
    d.Oggetto = u"Vostra fattura"_s;
    d.Da = u"amministrazione@rossi.it"_s;
    d.A = u"mario.rossi@cliente.it; anna_verdi@cliente.it"_s;
    d.Cc = u"ufficio@cliente.it"_s;
    d.Ccn = u"archivio@rossi.it"_s;
    d.PrefissoInternazionale = u"0039"_s;
    d.PrefissoLocale = u"02"_s;
    d.NumeroFax = u"4567890"_s;
    d.KeyUtente = u"K-7"_s;
    d.Collegati = {{u"D00043"_s, u"Frontespizio"_s}, {u"D00044"_s, u"Condizioni di vendita"_s}};
    d.FileCorpo = u"D00042.bpx"_s;
    d.FileScript = u"D00042.spx"_s;
    d.FileIntestazione = u"D00042.hpx"_s;
    d.FileOutput = u"D00042.pdf"_s;
    d.FileLog = u"D00042.log"_s;
    return d;
}

std::string Descrivi(const DatiDocumento& d)
{
    QStringList campi = {d.Id, QString::number(static_cast<int>(d.Genere)), QString::number(d.Coda), d.Stato,
                         QString::number(d.Tentativi), QString::number(d.Rifiuti), d.Funzione, d.Descrizione,
                         d.Sigla, d.Utente, d.UtenteDescrizione, d.Ip, QString::number(d.Priorita),
                         d.Inserito.toString(Qt::ISODate), d.Elaborato.toString(Qt::ISODate),
                         QString::number(d.Pagine), QString::number(d.CodiceErrore), d.Errore, d.Stampante,
                         QString::number(d.NumeroTarquel), QString::number(d.Copie), d.Oggetto, d.Da, d.A, d.Cc,
                         d.Ccn, d.PrefissoInternazionale, d.PrefissoLocale, d.NumeroFax, d.KeyUtente,
                         d.FileCorpo, d.FileScript, d.FileIntestazione, d.FileOutput, d.FileLog};
    for (const Collegato& c : d.Collegati)
        campi << c.Id + u'=' + c.Descrizione;
    return campi.join(u'|').toStdString();
}

std::string Descrizione(const DatiDocumento& d)
{
    pugi::xml_document doc;
    Scrivi(doc.append_child("Documento"), d, Cartella);
    std::ostringstream out;
    doc.save(out);
    return out.str();
}

QString Valore(const pugi::xml_node& proprieta, const char* percorso)
{
    return QString::fromUtf8(proprieta.first_element_by_path(percorso).child_value());
}

} // namespace

TEST(modProprieta, EveryKindReadsBackWhatItWrote)
{
    for (const GenereCartella genere : Generi) {
        DatiDocumento minimo;
        minimo.Id = u"D1"_s;
        minimo.Genere = genere;
        for (const DatiDocumento& d : {Completo(genere), minimo}) {
            const std::string xml = Descrizione(d);
            EXPECT_EQ(Descrizione(d), xml) << "same record, same description";
            pugi::xml_document doc;
            ASSERT_TRUE(doc.load_string(xml.c_str()));
            EXPECT_STREQ(doc.document_element().attribute("Tipo").value(), modProprieta::NomeGenere(genere));
            DatiDocumento letto = Completo(GenereCartella::Fax); // what Leggi must overwrite
            letto.Rifiuti = 9;
            ASSERT_TRUE(Leggi(doc.document_element(), letto));
            EXPECT_EQ(Descrivi(letto), Descrivi(d)) << modProprieta::NomeGenere(genere);
        }
    }
}

TEST(modProprieta, WhatIsNotADescriptionIsRefused)
{
    DatiDocumento d;
    EXPECT_FALSE(Leggi(pugi::xml_node(), d));
    for (const char* testo : {"", "<<garbage", "<Altro Id=\"1\" Tipo=\"Fax\"/>", "<Documento Tipo=\"Fax\"/>",
                              "<Documento Id=\"\" Tipo=\"Fax\"/>", "<Documento Id=\"1\" Tipo=\"fax\"/>",
                              "<Documento Id=\"1\"><Proprieta><Id>1</Id></Proprieta></Documento>"}) {
        pugi::xml_document doc;
        doc.load_string(testo);
        EXPECT_FALSE(Leggi(doc.document_element(), d)) << testo;
    }
    // A bare or broken description of a known kind reads as defaults where elements are missing.
    for (const char* testo : {"<Documento Id=\"7\" Tipo=\"Pbl\"/>",
                              "<Documento Id=\"7\" Tipo=\"Pbl\"><Proprieta><Coda><Codice>x</Codice>"
                              "<DataInserimento>ieri</DataInserimento></Coda><Collegati><Collegato/>"}) {
        pugi::xml_document doc;
        doc.load_string(testo);
        ASSERT_TRUE(Leggi(doc.document_element(), d)) << testo;
        EXPECT_EQ(d.Id, u"7"_s);
        EXPECT_EQ(d.Genere, GenereCartella::Pbl);
        EXPECT_EQ(d.Coda, 0);
        EXPECT_EQ(d.Copie, 1);
        EXPECT_FALSE(d.Inserito.isValid());
    }
}

TEST(modProprieta, ValuesAreInTheServersFormats)
{
    const DatiDocumento d = Completo(GenereCartella::Stampa);
    pugi::xml_document doc;
    Scrivi(doc.append_child("Documento"), d, Cartella);
    const pugi::xml_node p = doc.document_element().child("Proprieta");
    EXPECT_EQ(Valore(p, "FileLog"), QDir::toNativeSeparators(Cartella + u"/D00042.log"_s));
    EXPECT_EQ(Valore(p, "FileCorpo/Percorso"), QDir::toNativeSeparators(Cartella));
    EXPECT_EQ(Valore(p, "Coda/Descrizione"), u"In stampa"_s);
    EXPECT_EQ(Valore(p, "Coda/DataInserimento"), u"05/03/2024 09:15:30"_s);
    EXPECT_EQ(Valore(p, "CatalogoSorgente/StrAscGrassettoOn"), u"027;069;"_s);
    const QRegularExpression codici(u"^(\\d{3};)*$"_s);
    for (const char* catalogo : {"CatalogoSorgente", "Diretta/CatalogoDestinazione"})
        for (const pugi::xml_node n : p.first_element_by_path(catalogo).children())
            EXPECT_TRUE(codici.match(QString::fromUtf8(n.child_value())).hasMatch()) << n.name();
    EXPECT_EQ(std::distance(p.child("Collegati").begin(), p.child("Collegati").end()), 2) << "not on this sheet, kept";

    const std::pair<GenereCartella, const char*> ultime[] = {
        {GenereCartella::Stampa, "Scartati"}, {GenereCartella::Email, "Scartati"}, {GenereCartella::Fax, "Da pubblicare"},
        {GenereCartella::PFax, "Scartati"}, {GenereCartella::EFax, "Scartati"}, {GenereCartella::Pbl, "Scartati"},
        {GenereCartella::Anteprima, "Scartati"}};
    for (const auto& [genere, ultima] : ultime) {
        const qint32 code = modProprieta::NumeroCode(genere);
        EXPECT_EQ(modProprieta::DescrizioneCoda(genere, code - 1), QString::fromUtf8(ultima));
        EXPECT_EQ(modProprieta::DescrizioneCoda(genere, code), u"Coda %1"_s.arg(code));
        EXPECT_EQ(modProprieta::GenereDaNome(QString::fromUtf8(modProprieta::NomeGenere(genere))), genere);
    }
    EXPECT_EQ(modProprieta::NumeroCode(GenereCartella::Fax), 13);
    EXPECT_EQ(modProprieta::DescrizioneCoda(GenereCartella::Anteprima, 2), u"Generarti"_s);
}
