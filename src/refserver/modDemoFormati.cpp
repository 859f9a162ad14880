// The demo's catalogues: page formats (front pages, their back pages, fax cover sheets) and
// e-mail signatures. Every object carries every element its property sheet reads, in sheet
// order, so the sheet is filled by reading them in turn.

#include "modDemoFormati.h"
#include "modXml.h"

#include <string>

#include <pugixml.hpp>

#include <QDir>
#include <QFile>

#include <array>

namespace modDemo {

namespace {

struct Codifica
{
    const char* Codice;
    const char* Descrizione;
};

struct Carattere
{
    const char* Nome;
    const char* Dimensione; // points
    bool Grassetto, Corsivo, Sottolineato, Barrato, IgnoraGrassetto;
};

// One font per pitch, in the order of Passi.
using SerieCaratteri = std::array<Carattere, 5>;
constexpr std::array<const char*, 5> Passi = {"DoppiaLarghezza", "Decimi", "Dodicesimi", "Quindicesimi", "Compresso"};

struct Margini
{
    int Sinistro, Superiore, Destro, Inferiore; // millimetres
};

// A front page or a back page.
struct Pagina
{
    const char* Key;
    bool Fronte;
    const char* Descrizione;
    int Id;
    const char* Sigla;
    const char* Ditta;
    const char* Suddivisione;
    Codifica Lingua, Tipo;
    const char* ValidoDal;
    const char* KeyRetro; // fronts only; "" when the front has no back page
    int Righe, Colonne;
    bool NuovaPagina;     // fronts only
    bool Ottimizzabile;
    Codifica Dimensione, Orientamento, Elaborazione, Stile;
    Margini Area;
    const SerieCaratteri* Caratteri;
    const char* UltimaModifica;
    bool Riestratto;
    int CopieDelegabili;
};

struct Frontespizio
{
    const char* Key;
    int Id;
    const char* Descrizione;
    const char* Sigla;
    const char* Ditta;
    const char* Suddivisione;
    Codifica Lingua, Tipo;
    const char* ValidoDal;
    const char* UltimaModifica;
    bool Riestratto;
};

struct Firma
{
    const char* Key;
    const char* Descrizione;
    const char* Sigla;
    const char* Ditta;
    const char* Suddivisione;
    const char* Utente; // "" for an office's signature
    Codifica Lingua;
    const char* UltimaModifica;
    bool Riestratto;
};

constexpr Codifica Italiano = {"IT", "Italiano"}, Inglese = {"EN", "Inglese"}, Tedesco = {"DE", "Tedesco"};
constexpr Codifica Fattura = {"1", "Fattura"}, Trasporto = {"2", "Documento di trasporto"},
                   Ordine = {"3", "Ordine cliente"}, Cedolino = {"6", "Cedolino paga"},
                   FaxFrontespizio = {"7", "Frontespizio fax"};
constexpr Codifica A4 = {"A4", "A4 210 x 297 mm"};
constexpr Codifica Verticale = {"1", "Verticale"}, Orizzontale = {"2", "Orizzontale"};
constexpr Codifica SuModulo = {"1", "Testo su modulo grafico"}, SoloTesto = {"0", "Solo testo"},
                   Immagine = {"2", "Immagine a pagina intera"};
constexpr Codifica Fisso = {"0", "Spaziatura fissa"}, Proporzionale = {"1", "Proporzionale"};

constexpr SerieCaratteri Courier = {{{"Courier New", "20", true, false, false, false, false},
                                     {"Courier New", "12", false, false, false, false, false},
                                     {"Courier New", "10", false, false, false, false, false},
                                     {"Courier New", "8", false, false, false, false, false},
                                     {"Courier New", "7", false, false, false, false, true}}};
constexpr SerieCaratteri Lucida = {{{"Lucida Console", "18", true, false, false, false, false},
                                    {"Lucida Console", "11", false, false, false, false, false},
                                    {"Lucida Console", "9", false, false, false, false, false},
                                    {"Lucida Console", "7", false, false, false, false, true},
                                    {"Lucida Console", "6", false, false, false, false, true}}};
constexpr SerieCaratteri Arial = {{{"Arial", "16", true, false, false, false, false},
                                   {"Arial", "10", false, false, false, false, false},
                                   {"Arial", "9", false, false, false, false, false},
                                   {"Arial Narrow", "8", false, false, false, false, false},
                                   {"Arial Narrow", "7", false, false, false, false, true}}};

constexpr Pagina Pagine[] = {
    {"F001", true, "Fattura italiano", 101, "100", "001", "00", Italiano, Fattura, "01/01/2024", "F008", 72, 96,
     true, true, A4, Verticale, SuModulo, Fisso, {8, 10, 8, 12}, &Courier, "15/01/2024 09:12:40", false, 2},
    {"F002", true, "Fattura inglese", 102, "100", "001", "00", Inglese, Fattura, "01/01/2024", "F009", 72, 96,
     true, true, A4, Verticale, SuModulo, Fisso, {8, 10, 8, 12}, &Courier, "15/01/2024 09:14:05", false, 2},
    {"F003", true, "Fattura tedesco", 103, "100", "001", "00", Tedesco, Fattura, "01/03/2024", "", 72, 96,
     true, true, A4, Verticale, SuModulo, Fisso, {8, 10, 8, 12}, &Courier, "04/03/2024 16:40:22", false, 1},
    {"F004", true, "Documento di trasporto", 104, "100", "001", "01", Italiano, Trasporto, "01/01/2024", "F010", 66,
     80, false, false, A4, Verticale, SoloTesto, Fisso, {10, 8, 10, 8}, &Lucida, "10/01/2024 11:03:17", false, 3},
    {"F005", true, "Ordine cliente", 105, "100", "002", "00", Italiano, Ordine, "01/06/2023", "", 66, 80, true,
     true, A4, Verticale, SuModulo, Proporzionale, {12, 15, 12, 15}, &Arial, "22/05/2023 14:55:09", true, 1},
    {"F006", true, "Cedolino paga", 106, "100", "003", "02", Italiano, Cedolino, "01/01/2024", "", 48, 136, true,
     false, A4, Orizzontale, SuModulo, Fisso, {5, 5, 5, 5}, &Lucida, "28/12/2023 17:20:31", false, 0},
    {"F007", true, "Fattura Edil Nord", 107, "214", "001", "00", Italiano, Fattura, "01/02/2024", "F008", 70, 96,
     true, true, A4, Verticale, Immagine, Proporzionale, {10, 35, 10, 20}, &Arial, "06/02/2024 10:08:54", true, 2},
    {"F008", false, "Retro condizioni di vendita italiano", 201, "100", "001", "00", Italiano, Fattura, "01/01/2024",
     "", 90, 136, false, false, A4, Verticale, Immagine, Proporzionale, {10, 10, 10, 10}, &Arial,
     "15/01/2024 09:20:11", false, 2},
    {"F009", false, "Retro condizioni di vendita inglese", 202, "100", "001", "00", Inglese, Fattura, "01/01/2024",
     "", 90, 136, false, false, A4, Verticale, Immagine, Proporzionale, {10, 10, 10, 10}, &Arial,
     "15/01/2024 09:21:47", false, 2},
    {"F010", false, "Retro condizioni di trasporto", 203, "100", "001", "01", Italiano, Trasporto, "01/01/2024", "",
     80, 120, false, false, A4, Verticale, SoloTesto, Fisso, {10, 8, 10, 8}, &Lucida, "10/01/2024 11:05:02", false,
     3},
};

constexpr Frontespizio Frontespizi[] = {
    {"F011", 301, "Frontespizio fax italiano", "100", "001", "00", Italiano, FaxFrontespizio, "01/01/2024",
     "09/01/2024 08:47:36", false},
    {"F012", 302, "Frontespizio fax inglese", "100", "001", "00", Inglese, FaxFrontespizio, "01/01/2024",
     "09/01/2024 08:52:10", false},
};

constexpr Firma Firme[] = {
    {"AMMINISTRAZIONE", "Ufficio amministrazione", "100", "001", "00", "", Italiano, "11/01/2024 15:30:00", false},
    {"COMMERCIALE", "Ufficio commerciale", "100", "001", "00", "", Italiano, "11/01/2024 15:34:12", false},
    {"COMMERCIALE_EN", "Ufficio commerciale inglese", "100", "001", "00", "", Inglese, "11/01/2024 15:36:48", false},
    {"MROSSI", "Mario Rossi, responsabile vendite", "100", "001", "00", "mrossi", Italiano, "02/02/2024 09:05:19",
     true},
    {"LBIANCHI", "Laura Bianchi, amministrazione", "100", "001", "00", "lbianchi", Italiano, "02/02/2024 09:07:44",
     true},
    {"GVERDI_DE", "Giuseppe Verdi, area Germania", "100", "002", "01", "gverdi", Tedesco, "19/02/2024 12:41:03",
     false},
};

void Testo(pugi::xml_node padre, const char* nome, const char* valore) { padre.append_child(nome).text().set(valore); }
void Numero(pugi::xml_node padre, const char* nome, int valore) { padre.append_child(nome).text().set(valore); }
void SiNo(pugi::xml_node padre, const char* nome, bool si) { Testo(padre, nome, si ? "Si" : "No"); }
void Codificato(pugi::xml_node padre, const char* nome, const Codifica& c)
{
    pugi::xml_node n = padre.append_child(nome);
    Testo(n, "Codice", c.Codice);
    Testo(n, "Descrizione", c.Descrizione);
}

const char* Radice(const Pagina&) { return "Formato"; }
const char* Radice(const Frontespizio&) { return "Formato"; }
const char* Radice(const Firma&) { return "Firma"; }
const char* Genere(const Pagina& p) { return p.Fronte ? "Fronte" : "Retro"; }
const char* Genere(const Frontespizio&) { return "Frontespizio"; }
const char* Genere(const Firma&) { return "Firma"; }

// Layouts 46 (front) and 47 (back): the back has no KeyRetro and no NuovaPagina.
void Scrivi(pugi::xml_node p, const Pagina& f)
{
    Testo(p, "Key", f.Key);
    Testo(p, "Descrizione", f.Descrizione);
    Numero(p, "Id", f.Id);
    Testo(p, "Sigla", f.Sigla);
    Testo(p, "Ditta", f.Ditta);
    Testo(p, "Suddivisione", f.Suddivisione);
    Codificato(p, "Lingua", f.Lingua);
    Codificato(p, "Tipo", f.Tipo);
    Testo(p, "ValidoDal", f.ValidoDal);
    if (f.Fronte)
        Testo(p, "KeyRetro", f.KeyRetro);
    Numero(p, "RigheModulo", f.Righe);
    Numero(p, "CaratteriModulo", f.Colonne);
    if (f.Fronte)
        SiNo(p, "NuovaPagina", f.NuovaPagina);
    SiNo(p, "AreaPaginaOttimizzabile", f.Ottimizzabile);
    Codificato(p, "Dimensione", f.Dimensione);
    Codificato(p, "Orientamento", f.Orientamento);
    Codificato(p, "Elaborazione", f.Elaborazione);
    Codificato(p, "StileTesto", f.Stile);
    pugi::xml_node area = p.append_child("AreaStampa");
    Numero(area, "Sinistro", f.Area.Sinistro);
    Numero(area, "Superiore", f.Area.Superiore);
    Numero(area, "Destro", f.Area.Destro);
    Numero(area, "Inferiore", f.Area.Inferiore);
    for (size_t i = 0; i < Passi.size(); ++i) {
        const Carattere& c = (*f.Caratteri)[i];
        pugi::xml_node n = p.append_child(Passi[i]);
        Testo(n, "Nome", c.Nome);
        Testo(n, "Dimensione", c.Dimensione);
        SiNo(n, "Grassetto", c.Grassetto);
        SiNo(n, "Corsivo", c.Corsivo);
        SiNo(n, "Sottolineato", c.Sottolineato);
        SiNo(n, "Barrato", c.Barrato);
        SiNo(n, "IgnoraGrassetto", c.IgnoraGrassetto);
    }
    Testo(p, "UltimaModifica", f.UltimaModifica);
    SiNo(p, "Riestratto", f.Riestratto);
    Numero(p, "CopieDelegabili", f.CopieDelegabili);
}

// Layout 48: Id comes before Descrizione.
void Scrivi(pugi::xml_node p, const Frontespizio& f)
{
    Testo(p, "Key", f.Key);
    Numero(p, "Id", f.Id);
    Testo(p, "Descrizione", f.Descrizione);
    Testo(p, "Sigla", f.Sigla);
    Testo(p, "Ditta", f.Ditta);
    Testo(p, "Suddivisione", f.Suddivisione);
    Codificato(p, "Lingua", f.Lingua);
    Codificato(p, "Tipo", f.Tipo);
    Testo(p, "ValidoDal", f.ValidoDal);
    Testo(p, "UltimaModifica", f.UltimaModifica);
    SiNo(p, "Riestratto", f.Riestratto);
}

// Layout 49.
void Scrivi(pugi::xml_node p, const Firma& f)
{
    Testo(p, "Key", f.Key);
    Testo(p, "Descrizione", f.Descrizione);
    Testo(p, "Sigla", f.Sigla);
    Testo(p, "Ditta", f.Ditta);
    Testo(p, "Suddivisione", f.Suddivisione);
    Testo(p, "Utente", f.Utente);
    Codificato(p, "Lingua", f.Lingua);
    Testo(p, "UltimaModifica", f.UltimaModifica);
    SiNo(p, "Riestratto", f.Riestratto);
    // What the signature puts under a message: the person or office, then the company.
    const std::string chi = f.Descrizione;
    const size_t virgola = chi.find(", ");
    std::string html = "<p style=\"font-family:Arial\"><b>" + chi.substr(0, virgola) + "</b>";
    if (virgola != std::string::npos)
        html += "<br><i>" + chi.substr(virgola + 2) + "</i>";
    html += "<br>Pelorix S.p.A. &middot; Via dell'Industria 12, Treviso<br>"
            "<span style=\"color:#1f5fa8\">www.pelorix.it</span></p>";
    Testo(p, "Html", html.c_str());
}

// Writes each object of `voci` as `<cartella>/<Key>.xml`; stops at the first failure.
template <typename Voce, size_t N>
QString ScriviTutti(const QString& cartella, const Voce (&voci)[N])
{
    if (!QDir().mkpath(cartella))
        return QStringLiteral("Impossibile creare la cartella %1").arg(cartella);
    for (const Voce& v : voci) {
        pugi::xml_document doc;
        modXml::Dichiara(doc);
        pugi::xml_node radice = doc.append_child(Radice(v));
        radice.append_attribute("Genere").set_value(Genere(v));
        Scrivi(radice.append_child("Proprieta"), v);
        const QString file = QDir(cartella).filePath(QString::fromUtf8(v.Key) + QStringLiteral(".xml"));
        if (!doc.save_file(QFile::encodeName(file).constData(), "  ", pugi::format_indent, pugi::encoding_utf8))
            return QStringLiteral("Impossibile scrivere %1").arg(file);
    }
    return {};
}

} // namespace

QString CreaFormatiDemo(const QString& cartellaServer)
{
    const QDir server(cartellaServer);
    const QString formati = server.filePath(QStringLiteral("Formati"));
    QString errore = ScriviTutti(formati, Pagine);
    if (errore.isEmpty())
        errore = ScriviTutti(formati, Frontespizi);
    if (errore.isEmpty())
        errore = ScriviTutti(server.filePath(QStringLiteral("Firme")), Firme);
    return errore;
}

} // namespace modDemo
