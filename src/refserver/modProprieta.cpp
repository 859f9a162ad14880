#include "modProprieta.h"

#include <QDir>
#include <QStringList>

#include <array>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

using namespace Qt::StringLiterals;

namespace modProprieta {

namespace {

// ---------------------------------------------------------------- the kinds and their sheets

// The parts a sheet is made of; each kind lists its own in sheet order.
enum class Blocco {
    Identita, Oggetto, Stampa, Client, Pubblicazione, NumeroFax, Frontespizio, Trasmissione, Intestatario,
    Mittente, Destinatari, Messaggio, Smtp, Notifica, Cedolino, Specifiche, Coda, Formato, Diretta, Versione
};

struct Layout
{
    GenereCartella Genere;
    const char* Nome;
    std::span<const char* const> Code;    // queue captions, by queue number
    std::span<const char* const> Fasi;    // stage dates under Coda: element k is stamped once queue k is reached
    std::span<const Blocco> Blocchi;
    std::span<const char* const> Formato; // coded print settings, in sheet order
    const char* FileUscita;               // the output file's element among Specifiche; nullptr when not shown
    qint32 CodaTrasmissione;              // the queue where a document waits for its next attempt; -1 if none
};

constexpr const char* CodeStampa[] = {"Da stampare", "In stampa", "Stampati", "Respinti", "Scartati"};
constexpr const char* CodeAnteprima[] = {"Da generare", "In generazione", "Generarti", "Respinti", "Scartati"};
constexpr const char* CodeEmail[] = {"Da convertire in pdf", "In conversione in pdf", "Da trasmettere",
                                     "In trasmissione", "Da stampare", "In stampa", "Trasmessi", "Respinti",
                                     "Scartati"};
constexpr const char* CodePubblicazione[] = {"Da convertire in pdf", "In conversione in pdf", "Da pubblicare",
                                             "In pubblicazione", "Pubblicati", "Respinti", "Scartati"};
constexpr const char* CodeFax[] = {"Da convertire in tiff", "In conversione in tiff", "Da inviare", "In uscita",
                                   "Da stampare", "In stampa", "Da notificare", "In notifica", "Trasmessi",
                                   "Respinti", "Scartati", "Da confermare", "Da pubblicare"};

constexpr const char* FasiStampa[] = {"DataDaStampare", "DataInStampa"};
constexpr const char* FasiAnteprima[] = {"DataDaGenerare", "DataInGenerazione"};
constexpr const char* FasiEmail[] = {"DataDaConvertirePdf", "DataInConversionePdf", "DataDaTrasmettere",
                                     "DataInTrasmissione", "DataDaStampare", "DataInStampa"};
constexpr const char* FasiFax[] = {"DataDaConvertireTiff", "DataInConversioneTiff", "DataDaTrasmettere",
                                   "DataInTrasmissione", "DataDaStampare", "DataInStampa", "DataDaNotificare",
                                   "DataInNotifica"};
constexpr const char* FasiPubblicazione[] = {"DataDaConvertirePdf", "DataInConversionePdf", "DataDaPubblicare",
                                             "DataInPubblicazione"};

constexpr const char* FormatoStampa[] = {"Dimensione", "Orientamento", "Alimentazione", "Fascicolazione",
                                         "FronteRetro", "ModalitaColore", "Pinzatura"};
constexpr const char* FormatoBase[] = {"Dimensione", "Orientamento"};
constexpr const char* FormatoPbl[] = {"Dimensione", "Orientamento", "FronteRetro"};
constexpr const char* FormatoAnteprima[] = {"Dimensione", "Orientamento", "Alimentazione", "Fascicolazione",
                                            "FronteRetro"};

using B = Blocco;
constexpr Blocco BlocchiStampa[] = {B::Identita, B::Stampa, B::Specifiche, B::Coda, B::Formato, B::Diretta, B::Versione};
constexpr Blocco BlocchiEmail[] = {B::Identita, B::Oggetto, B::Mittente, B::Destinatari, B::Messaggio,
                                   B::Trasmissione, B::Intestatario, B::Smtp, B::Notifica, B::Specifiche,
                                   B::Coda, B::Formato, B::Versione};
constexpr Blocco BlocchiFax[] = {B::Identita, B::Oggetto, B::NumeroFax, B::Frontespizio, B::Trasmissione,
                                 B::Intestatario, B::Notifica, B::Cedolino, B::Specifiche, B::Coda, B::Formato,
                                 B::Versione};
constexpr Blocco BlocchiPFax[] = {B::Identita, B::Oggetto, B::NumeroFax, B::Frontespizio, B::Trasmissione,
                                  B::Intestatario, B::Specifiche, B::Coda, B::Formato, B::Versione};
constexpr Blocco BlocchiEFax[] = {B::Identita, B::Oggetto, B::NumeroFax, B::Intestatario, B::Mittente, B::Smtp,
                                  B::Specifiche, B::Coda, B::Formato, B::Versione};
constexpr Blocco BlocchiPbl[] = {B::Identita, B::Pubblicazione, B::Specifiche, B::Coda, B::Formato, B::Versione};
constexpr Blocco BlocchiAnteprima[] = {B::Identita, B::Client, B::Intestatario, B::Specifiche, B::Coda,
                                       B::Versione, B::Stampa, B::Formato}; // the last two: "Proprietà della stampa"

constexpr Layout Layouts[] = {
    {GenereCartella::Stampa, "Stampa", CodeStampa, FasiStampa, BlocchiStampa, FormatoStampa, "FileDiretto", -1},
    {GenereCartella::Email, "Email", CodeEmail, FasiEmail, BlocchiEmail, FormatoBase, "FilePdf", 2},
    {GenereCartella::Fax, "Fax", CodeFax, FasiFax, BlocchiFax, FormatoBase, "FileTif", 2},
    {GenereCartella::PFax, "PFax", CodeStampa, FasiStampa, BlocchiPFax, FormatoBase, nullptr, 0},
    {GenereCartella::EFax, "EFax", CodePubblicazione, FasiPubblicazione, BlocchiEFax, FormatoBase, "FileTif", -1},
    {GenereCartella::Pbl, "Pbl", CodePubblicazione, FasiPubblicazione, BlocchiPbl, FormatoPbl, "FilePdf", -1},
    {GenereCartella::Anteprima, "Anteprima", CodeAnteprima, FasiAnteprima, BlocchiAnteprima, FormatoAnteprima,
     nullptr, -1},
};

const Layout& LayoutDi(GenereCartella g)
{
    for (const Layout& l : Layouts)
        if (l.Genere == g)
            return l;
    return Layouts[0];
}

// ---------------------------------------------------------------- values

struct Codifica
{
    const char* Codice;
    const char* Descrizione;
};

struct Tipologia
{
    Codifica Tipo;
    const char* Tarquel;
};

constexpr Codifica Lingue[] = {{"IT", "Italiano"}, {"EN", "Inglese"}, {"DE", "Tedesco"}, {"FR", "Francese"}};
constexpr Codifica Intestazioni[] = {{"0", "Nessuna"}, {"1", "Carta intestata"}, {"2", "Logo e piè di pagina"}};
constexpr Tipologia Tipologie[] = {{{"1", "Fattura"}, "FT"},
                                   {{"2", "Documento di trasporto"}, "DT"},
                                   {{"3", "Ordine cliente"}, "OC"},
                                   {{"4", "Estratto conto"}, "EC"},
                                   {{"5", "Sollecito di pagamento"}, "SP"}};
constexpr Codifica Intestatari[] = {{"C01024", "Rossi Arredamenti S.p.A."},
                                    {"C01377", "Bianchi & Figli S.r.l."},
                                    {"C02210", "Verdi Trasporti S.n.c."},
                                    {"C03051", "Ferretti Alimentari S.p.A."},
                                    {"C04112", "Studio Conti Associati"}};
constexpr Codifica ModalitaErrori[] = {{"0", "Respingi il documento"}, {"1", "Trasmetti senza allegati"}};
constexpr Codifica TipiEmail[] = {{"0", "Html"}, {"1", "Testo semplice"}};
constexpr Codifica NonBloccato = {"0", "No"};
constexpr Codifica Autenticazioni[] = {{"0", "Nessuna"}, {"1", "Normale"}, {"2", "NTLM"}};
constexpr Codifica PorteSmtp[] = {{"25", "No"}, {"465", "Si"}, {"587", "Si"}}; // port, SSL
constexpr Codifica FinestreInvio[] = {{"00:00", "23:59"}, {"08:00", "20:00"}, {"20:00", "07:00"}};

constexpr Codifica Dimensioni[] = {{"A4", "A4 210 x 297 mm"}, {"A3", "A3 297 x 420 mm"},
                                   {"A5", "A5 148 x 210 mm"}, {"LT", "Letter 8,5 x 11 in"}};
constexpr int DimensioniDriver[] = {9, 8, 11, 1}; // the printer driver's paper codes of Dimensioni
constexpr Codifica Orientamenti[] = {{"1", "Verticale"}, {"2", "Orizzontale"}};
constexpr Codifica Alimentazioni[] = {{"7", "Selezione automatica"}, {"1", "Cassetto superiore"},
                                      {"2", "Cassetto inferiore"}, {"4", "Alimentazione manuale"}};
constexpr Codifica Fascicolazioni[] = {{"0", "Non fascicolare"}, {"1", "Fascicola"}};
constexpr Codifica FronteRetro[] = {{"1", "Solo fronte"}, {"2", "Fronte-retro lato lungo"},
                                    {"3", "Fronte-retro lato corto"}};
constexpr Codifica ModalitaColore[] = {{"1", "Bianco e nero"}, {"2", "Colori"}};
constexpr Codifica Pinzature[] = {{"0", "Nessuna"}, {"1", "In alto a sinistra"}, {"2", "Doppia a sinistra"}};

struct Impostazione
{
    std::string_view Nome;
    std::span<const Codifica> Valori;
};

constexpr Impostazione Impostazioni[] = {
    {"Dimensione", Dimensioni},         {"Orientamento", Orientamenti},     {"Alimentazione", Alimentazioni},
    {"Fascicolazione", Fascicolazioni}, {"FronteRetro", FronteRetro},       {"ModalitaColore", ModalitaColore},
    {"Pinzatura", Pinzature},
};

// Printer catalogues: the ten control sequences, switching on and off, in the order of NomiSequenze.
struct Sequenza
{
    std::string_view On;
    std::string_view Off;
};

constexpr const char* NomiSequenze[] = {"Grassetto", "Compresso", "DoppiaAltezza", "Ripassa", "Dodicesimi",
                                        "LetterQuality", "Sottolineato", "CustomA", "CustomB", "CustomC"};
constexpr Sequenza CatalogoEscP[] = {{"\033E", "\033F"},   {"\017", "\022"},   {"\033w1", "\033w0"},
                                     {"\033G", "\033H"},   {"\033M", "\033P"}, {"\033x1", "\033x0"},
                                     {"\033-1", "\033-0"}, {"\0334", "\0335"}, {"\033W1", "\033W0"},
                                     {"\033p1", "\033p0"}};
constexpr Sequenza CatalogoPcl[] = {{"\033(s3B", "\033(s0B"},  {"\033(s16.67H", "\033(s10H"},
                                    {"\033(s24V", "\033(s12V"}, {"\033(s1B", "\033(s0B"},
                                    {"\033(s12H", "\033(s10H"}, {"\033(s2Q", "\033(s1Q"},
                                    {"\033&d0D", "\033&d@"},    {"\033(s1S", "\033(s0S"},
                                    {"\033(s3T", "\033(s4099T"}, {"", ""}};
static_assert(std::size(CatalogoEscP) == std::size(NomiSequenze) && std::size(CatalogoPcl) == std::size(NomiSequenze));

// A well-mixed hash of `chiave` and `testo`, the same on every platform and run.
quint32 Impronta(std::string_view chiave, QStringView testo)
{
    quint32 h = 2166136261u;
    const auto mescola = [&h](quint32 v) { h = (h ^ v) * 16777619u; };
    for (const char ch : chiave)
        mescola(static_cast<unsigned char>(ch));
    mescola(0);
    for (const QChar ch : testo)
        mescola(ch.unicode());
    h ^= h >> 16;
    h *= 0x85ebca6bu;
    h ^= h >> 13;
    h *= 0xc2b2ae35u;
    return h ^ (h >> 16);
}

const Codifica& LinguaDi(const DatiDocumento& d)
{
    return Lingue[Impronta("Lingua", d.Id) % std::size(Lingue)];
}

struct Contesto
{
    pugi::xml_node P; // Proprieta
    const DatiDocumento& D;
    const Layout& L;
    QString Cartella; // the document's folder, native separators

    // A value in [0, n) that depends only on the document's id and `chiave`.
    int Scelta(std::string_view chiave, int n) const
    {
        return static_cast<int>(Impronta(chiave, D.Id) % static_cast<quint32>(n));
    }
    bool E(GenereCartella g) const { return L.Genere == g; }
};

template <typename T, std::size_t N>
const T& Scegli(const Contesto& c, std::string_view chiave, const T (&valori)[N])
{
    return valori[c.Scelta(chiave, static_cast<int>(N))];
}

const char* SiNo(bool si) { return si ? "Si" : "No"; }

// ---------------------------------------------------------------- XML helpers

// The element at `percorso` ("A/B/C") under `padre`, created where missing.
pugi::xml_node Nodo(pugi::xml_node padre, std::string_view percorso)
{
    while (!percorso.empty()) {
        const std::size_t barra = percorso.find('/');
        const std::string nome(percorso.substr(0, barra));
        const pugi::xml_node figlio = padre.child(nome.c_str());
        padre = figlio ? figlio : padre.append_child(nome.c_str());
        percorso = barra == std::string_view::npos ? std::string_view() : percorso.substr(barra + 1);
    }
    return padre;
}

void Metti(pugi::xml_node padre, std::string_view percorso, const QString& valore)
{
    Nodo(padre, percorso).text().set(valore.toUtf8().constData());
}

void Metti(pugi::xml_node padre, std::string_view percorso, const char* valore)
{
    Nodo(padre, percorso).text().set(valore);
}

void MettiNumero(pugi::xml_node padre, std::string_view percorso, qint64 valore)
{
    Nodo(padre, percorso).text().set(static_cast<long long>(valore));
}

pugi::xml_node Codificato(pugi::xml_node padre, std::string_view nome, const QString& codice,
                          const QString& descrizione)
{
    const pugi::xml_node n = Nodo(padre, nome);
    Metti(n, "Codice", codice);
    Metti(n, "Descrizione", descrizione);
    return n;
}

pugi::xml_node Codificato(pugi::xml_node padre, std::string_view nome, const Codifica& valore)
{
    return Codificato(padre, nome, QString::fromUtf8(valore.Codice), QString::fromUtf8(valore.Descrizione));
}

void ScriviFile(pugi::xml_node padre, std::string_view nome, const QString& cartella, const QString& file)
{
    const pugi::xml_node n = Nodo(padre, nome);
    Metti(n, "Percorso", file.isEmpty() ? QString() : cartella);
    Metti(n, "Nome", file);
}

void Aggiungi(pugi::xml_node lista, const QString& valore)
{
    lista.append_child("Item").text().set(valore.toUtf8().constData());
}

QString Testo(const pugi::xml_node& padre, const char* percorso)
{
    return QString::fromUtf8(padre.first_element_by_path(percorso).child_value());
}

// The first of `percorsi` present under `padre`.
pugi::xml_node Primo(const pugi::xml_node& padre, std::span<const char* const> percorsi)
{
    for (const char* percorso : percorsi)
        if (percorso)
            if (const pugi::xml_node n = padre.first_element_by_path(percorso))
                return n;
    return {};
}

QString Unisci(const QString& cartella, const QString& nome)
{
    if (cartella.isEmpty())
        return nome;
    return cartella.endsWith(u'/') ? cartella + nome : cartella + u'/' + nome;
}

QString Codici(std::string_view sequenza)
{
    QString testo;
    for (const char ch : sequenza)
        testo += u"%1;"_s.arg(static_cast<int>(static_cast<unsigned char>(ch)), 3, 10, QChar(u'0'));
    return testo;
}

void ScriviCatalogo(pugi::xml_node padre, const char* nome, std::span<const Sequenza> catalogo)
{
    const pugi::xml_node n = padre.append_child(nome);
    for (std::size_t i = 0; i < catalogo.size(); ++i)
        Metti(n, std::string("StrAsc") + NomiSequenze[i] + "On", Codici(catalogo[i].On));
    for (std::size_t i = 0; i < catalogo.size(); ++i)
        Metti(n, std::string("StrAsc") + NomiSequenze[i] + "Off", Codici(catalogo[i].Off));
}

void ScriviCollegati(pugi::xml_node padre, const DatiDocumento& d)
{
    pugi::xml_node n = padre.append_child("Collegati");
    for (const Collegato& collegato : d.Collegati) {
        const pugi::xml_node c = n.append_child("Collegato");
        Metti(c, "Id", collegato.Id);
        Metti(c, "Descrizione", collegato.Descrizione);
    }
}

// ---------------------------------------------------------------- derived values

QStringList Indirizzi(const QString& elenco)
{
    QStringList indirizzi = elenco.split(u';', Qt::SkipEmptyParts);
    for (QString& indirizzo : indirizzi)
        indirizzo = indirizzo.trimmed();
    indirizzi.removeAll(QString());
    return indirizzi;
}

// "mario.rossi@x.it; anna_bianchi@y.it" → "Mario Rossi; Anna Bianchi"
QString NomiVisualizzati(const QString& elenco)
{
    QStringList nomi;
    for (const QString& indirizzo : Indirizzi(elenco)) {
        QString locale = indirizzo.section(u'@', 0, 0);
        locale.replace(u'.', u' ').replace(u'_', u' ').replace(u'-', u' ');
        QStringList parole = locale.split(u' ', Qt::SkipEmptyParts);
        for (QString& parola : parole)
            parola[0] = parola[0].toUpper();
        nomi << parole.join(u' ');
    }
    return nomi.join(u"; "_s);
}

QString Dominio(const DatiDocumento& d)
{
    const QStringList da = Indirizzi(d.Da);
    const qsizetype chiocciola = da.isEmpty() ? -1 : da.first().indexOf(u'@');
    return chiocciola < 0 ? u"azienda.it"_s : da.first().mid(chiocciola + 1);
}

QString IndirizzoMittente(const DatiDocumento& d)
{
    const QStringList da = Indirizzi(d.Da);
    if (!da.isEmpty())
        return da.first();
    return d.Utente.isEmpty() ? QString() : d.Utente + u'@' + Dominio(d);
}

QString DataOriginale(const Contesto& c)
{
    const QDate data = c.D.Inserito.date().addDays(-c.Scelta("DataOriginale", 10));
    return data.isValid() ? data.toString(u"dd/MM/yyyy"_s) : QString();
}

QString ProssimoTentativo(const Contesto& c)
{
    if (c.D.Coda != c.L.CodaTrasmissione || c.D.Tentativi <= 0)
        return {};
    return modDate::Testo(c.D.Elaborato.addSecs(300LL * c.D.Tentativi));
}

// ---------------------------------------------------------------- the sheet's parts

void ScriviIdentita(const Contesto& c)
{
    Metti(c.P, "Id", c.D.Id);
    Metti(c.P, "Funzione", c.D.Funzione);
    Metti(c.P, "Descrizione", c.D.Descrizione);
}

void ScriviStampa(const Contesto& c)
{
    MettiNumero(c.P, "Numero", c.D.NumeroTarquel);
    Metti(c.P, "Stampante", c.D.Stampante);
    MettiNumero(c.P, "Copie", c.D.Copie);
}

void ScriviPubblicazione(const Contesto& c)
{
    ScriviCollegati(c.P, c.D);
    const QString sigla = c.D.Sigla.isEmpty() ? u"Generale"_s : c.D.Sigla;
    ScriviFile(Nodo(c.P, "Pubblicazione"), "FilePubblicazione",
               QDir::toNativeSeparators(u"Pubblicazioni/"_s + sigla), c.D.Id + u".pdf"_s);
}

void ScriviNumeroFax(const Contesto& c)
{
    const pugi::xml_node n = Nodo(c.P, "NumeroFax");
    Metti(n, "NumeroEsteso", c.D.PrefissoInternazionale + c.D.PrefissoLocale + c.D.NumeroFax);
    Metti(n, "PrefissoInternazionale", c.D.PrefissoInternazionale);
    Metti(n, "PrefissoLocale", c.D.PrefissoLocale);
    Metti(n, "Numero", c.D.NumeroFax);
}

void ScriviParametriFax(const Contesto& c, pugi::xml_node trasmissione, bool ecm)
{
    static constexpr const char* Lunghezze[] = {"A4", "Illimitata"};
    static constexpr const char* Velocita[] = {"9600", "14400", "33600"};
    static constexpr const char* Compressioni[] = {"MH", "MR", "MMR"};
    static constexpr const char* Risoluzioni[] = {"Standard 204 x 98", "Fine 204 x 196"};
    const pugi::xml_node n = trasmissione.append_child("Parametri");
    Metti(n, "Ecm", SiNo(ecm));
    Metti(n, "Bft", SiNo(false));
    Metti(n, "Pagina/Larghezza", "A4 1728 punti");
    Metti(n, "Pagina/Lunghezza", Scegli(c, "Lunghezza", Lunghezze));
    Metti(n, "Velocita", Scegli(c, "Velocita", Velocita));
    Metti(n, "Compressione", Scegli(c, "Compressione", Compressioni));
    Metti(n, "Risoluzione", Scegli(c, "Risoluzione", Risoluzioni));
    Metti(n, "Colore/Gestione", SiNo(false));
    Metti(n, "Colore/Profondita", "1 bit");
}

void ScriviTrasmissione(const Contesto& c)
{
    const DatiDocumento& d = c.D;
    const pugi::xml_node n = Nodo(c.P, "Trasmissione");
    if (c.E(GenereCartella::Email)) {
        Metti(n, "ProssimoTentativo", ProssimoTentativo(c));
        MettiNumero(n, "TentativiEffettuati", d.Tentativi);
        MettiNumero(n, "Priorita", d.Priorita);
        return;
    }
    const Codifica& finestra = Scegli(c, "FinestraInvio", FinestreInvio);
    Metti(n, "OraInizio", finestra.Codice);
    Metti(n, "OraFine", finestra.Descrizione);
    Metti(n, "ProssimoTentativo", ProssimoTentativo(c));
    MettiNumero(n, "TentativiEffettuati", d.Tentativi);
    if (!c.E(GenereCartella::Fax))
        return;
    const bool ecm = c.Scelta("Ecm", 2) != 0;
    Metti(n, "Dispositivo", u"Linea %1"_s.arg(1 + c.Scelta("Dispositivo", 4)));
    Metti(n, "Errore", d.CodiceErrore != 0 ? d.Errore : QString());
    MettiNumero(n, "TrmStatus", d.CodiceErrore);
    Metti(n, "EcmAttivo", SiNo(ecm && d.Tentativi > 0));
    MettiNumero(n, "Priorita", d.Priorita);
    ScriviParametriFax(c, n, ecm);
}

void ScriviMittente(const Contesto& c)
{
    const pugi::xml_node n = Nodo(c.P, "Da");
    Metti(n, "NomiVisualizzati", NomiVisualizzati(c.D.Da));
    Metti(n, "IndirizziEmail", c.D.Da);
    Metti(n, "IndirizzoRisposta", c.D.Da);
}

void ScriviDestinatari(const Contesto& c)
{
    const std::pair<const char*, const QString*> destinatari[] = {{"A", &c.D.A}, {"Cc", &c.D.Cc}, {"Ccn", &c.D.Ccn}};
    for (const auto& [nome, elenco] : destinatari) {
        const pugi::xml_node n = Nodo(c.P, nome);
        Metti(n, "NomiVisualizzati", NomiVisualizzati(*elenco));
        Metti(n, "IndirizziEmail", *elenco);
    }
}

void ScriviMessaggio(const Contesto& c)
{
    const DatiDocumento& d = c.D;
    const QString note[] = {d.Descrizione.isEmpty() ? QString() : u"In allegato: %1"_s.arg(d.Descrizione),
                            u"Documento %1 del %2"_s.arg(d.Id, DataOriginale(c)), d.UtenteDescrizione};
    const pugi::xml_node messaggio = Nodo(c.P, "Messaggio");
    int numero = 0;
    for (const QString& nota : note)
        if (!nota.isEmpty())
            Metti(messaggio, "Nota_" + std::to_string(++numero), nota);
    const pugi::xml_node allegati = Nodo(c.P, "Allegati/List");
    if (!d.FileOutput.isEmpty())
        Aggiungi(allegati, QDir::toNativeSeparators(Unisci(c.Cartella, d.FileOutput)));
    Metti(c.P, "Links/Titolo", "Documenti online");
    Aggiungi(Nodo(c.P, "Links/List"), u"https://documenti.%1/%2"_s.arg(Dominio(d), d.Id));
}

void ScriviSmtp(const Contesto& c, pugi::xml_node padre)
{
    const QString dominio = Dominio(c.D);
    const Codifica& porta = Scegli(c, "PortaSmtp", PorteSmtp);
    const pugi::xml_node n = Nodo(padre, "Smtp");
    Metti(n, "Server", u"smtp."_s + dominio);
    Metti(n, "Porta", porta.Codice);
    Metti(n, "Ssl", porta.Descrizione);
    Metti(n, "Dominio", dominio);
    const Codifica& autenticazione = Scegli(c, "Autenticazione", Autenticazioni);
    const pugi::xml_node a = Codificato(n, "Autenticazione", autenticazione);
    const bool conAccount = std::string_view(autenticazione.Codice) != "0";
    Metti(a, "Account", conAccount ? IndirizzoMittente(c.D) : QString());
    Metti(a, "Password", conAccount ? u"********"_s : QString());
}

void ScriviNotifica(const Contesto& c)
{
    const pugi::xml_node n = Nodo(c.P, "Notifica");
    Metti(n, "Notificare", SiNo(c.Scelta("Notificare", 2) != 0));
    Metti(n, "Email", IndirizzoMittente(c.D));
    if (c.E(GenereCartella::Fax))
        ScriviSmtp(c, n);
    else
        Metti(n, "ConfermaLettura", SiNo(c.Scelta("ConfermaLettura", 2) != 0));
}

void ScriviSpecifiche(const Contesto& c)
{
    const DatiDocumento& d = c.D;
    const pugi::xml_node p = c.P;
    const Tipologia& tipologia = Scegli(c, "Tipologia", Tipologie);
    const QString ditta = u"%1"_s.arg(1 + c.Scelta("Ditta", 3), 3, 10, QChar(u'0'));
    Metti(p, "Sigla", d.Sigla);
    Metti(p, "DittaTarquel", ditta);
    Metti(p, "DittaOrigine", ditta);
    Metti(p, "Ditta", u"%1"_s.arg(1 + c.Scelta("DittaDestinazione", 3), 3, 10, QChar(u'0')));
    Metti(p, "Suddivisione", u"%1"_s.arg(c.Scelta("Suddivisione", 4), 2, 10, QChar(u'0')));
    Codificato(p, "Lingua", LinguaDi(d));
    Metti(p, "TipologiaTarquel", tipologia.Tarquel);
    Metti(p, "FormatoPagina", u"F%1"_s.arg(1 + c.Scelta("FormatoPagina", 12), 3, 10, QChar(u'0')));
    Metti(p, "Utente", d.Utente);
    Metti(p, "UtenteDescrizione", d.UtenteDescrizione);
    if (c.E(GenereCartella::Stampa))
        Metti(p, "UtenteCartella", QDir::toNativeSeparators(u"Utenti/"_s + d.Utente));
    Metti(p, "Ip", d.Ip);
    Metti(p, "DataOriginale", DataOriginale(c));
    Metti(p, "Data", modDate::Testo(d.Inserito.addSecs(-30 - c.Scelta("DataTarquel", 600))));
    MettiNumero(p, "RighePagina", c.Scelta("RighePagina", 2) ? 72 : 66);
    if (c.E(GenereCartella::Email))
        Metti(p, "SoloAllegati", SiNo(c.Scelta("SoloAllegati", 2) != 0));
    Codificato(p, "Intestazione", Scegli(c, "Intestazione", Intestazioni));
    Metti(p, "OttimizzaAreaPagina", SiNo(c.Scelta("OttimizzaAreaPagina", 2) != 0));
    Metti(p, "LetturaFacilitata", SiNo(c.Scelta("LetturaFacilitata", 4) == 0));
    Codificato(p, "Tipo", tipologia.Tipo);
    if (c.E(GenereCartella::Email)) {
        Codificato(p, "ModalitaErrori", Scegli(c, "ModalitaErrori", ModalitaErrori));
        Codificato(p, "TipoEmail", Scegli(c, "TipoEmail", TipiEmail));
    }
    Codificato(p, "Errore", QString::number(d.CodiceErrore), d.Errore);
    Codificato(p, "Bloccato", NonBloccato);
    ScriviFile(p, "FileIntestazione", c.Cartella, d.FileIntestazione);
    ScriviFile(p, "FileCorpo", c.Cartella, d.FileCorpo);
    ScriviFile(p, "FileScript", c.Cartella, d.FileScript);
    if (c.L.FileUscita)
        ScriviFile(p, c.L.FileUscita, c.Cartella, d.FileOutput);
    ScriviCatalogo(p, "CatalogoSorgente", CatalogoEscP);
}

void ScriviCoda(const Contesto& c)
{
    const DatiDocumento& d = c.D;
    const pugi::xml_node n = Nodo(c.P, "Coda");
    MettiNumero(n, "Codice", d.Coda);
    Metti(n, "Descrizione", DescrizioneCoda(c.L.Genere, d.Coda));
    Metti(n, "DataInserimento", modDate::Testo(d.Inserito));
    for (std::ptrdiff_t k = 0; k < std::ssize(c.L.Fasi); ++k) {
        QDateTime quando;
        if (d.Coda >= k && d.Inserito.isValid()) {
            quando = d.Inserito.addSecs(5 * (k + 1));
            if (d.Elaborato.isValid() && quando > d.Elaborato)
                quando = d.Elaborato;
        }
        Metti(n, c.L.Fasi[static_cast<std::size_t>(k)], modDate::Testo(quando));
    }
    Metti(n, "DataElaborazione", modDate::Testo(d.Elaborato));
}

void ScriviFormato(const Contesto& c)
{
    for (const std::string_view nome : c.L.Formato) {
        for (const Impostazione& impostazione : Impostazioni) {
            if (impostazione.Nome != nome)
                continue;
            const int i = c.Scelta(nome, static_cast<int>(impostazione.Valori.size()));
            const pugi::xml_node n = Codificato(c.P, nome, impostazione.Valori[static_cast<std::size_t>(i)]);
            if (c.E(GenereCartella::Stampa) && nome == "Dimensione")
                MettiNumero(n, "PaperSize", DimensioniDriver[i]);
        }
    }
}

void ScriviDiretta(const Contesto& c)
{
    const pugi::xml_node n = Nodo(c.P, "Diretta");
    Metti(n, "FinePagina", SiNo(c.Scelta("FinePagina", 2) != 0));
    Metti(n, "FoglioBianco", SiNo(c.Scelta("FoglioBianco", 2) != 0));
    MettiNumero(n, "RigheBianche", c.Scelta("RigheBianche", 4));
    ScriviCatalogo(n, "CatalogoDestinazione", c.Scelta("CatalogoDestinazione", 2) ? CatalogoPcl : CatalogoEscP);
}

void ScriviBlocco(const Contesto& c, Blocco b)
{
    switch (b) {
    case Blocco::Identita: ScriviIdentita(c); break;
    case Blocco::Oggetto: Metti(c.P, "Oggetto", c.D.Oggetto); break;
    case Blocco::Stampa: ScriviStampa(c); break;
    case Blocco::Client: Metti(c.P, "Client/Ip", c.D.Ip); break;
    case Blocco::Pubblicazione: ScriviPubblicazione(c); break;
    case Blocco::NumeroFax: ScriviNumeroFax(c); break;
    case Blocco::Frontespizio: Metti(c.P, "Frontespizio/Inviare", SiNo(!c.D.Collegati.isEmpty())); break;
    case Blocco::Trasmissione: ScriviTrasmissione(c); break;
    case Blocco::Intestatario: Codificato(c.P, "Intestatario", Scegli(c, "Intestatario", Intestatari)); break;
    case Blocco::Mittente: ScriviMittente(c); break;
    case Blocco::Destinatari: ScriviDestinatari(c); break;
    case Blocco::Messaggio: ScriviMessaggio(c); break;
    case Blocco::Smtp: ScriviSmtp(c, c.P); break;
    case Blocco::Notifica: ScriviNotifica(c); break;
    case Blocco::Cedolino:
        Metti(c.P, "Cedolino/Stampare", SiNo(!c.D.Stampante.isEmpty()));
        Metti(c.P, "Cedolino/Stampante", c.D.Stampante);
        break;
    case Blocco::Specifiche: ScriviSpecifiche(c); break;
    case Blocco::Coda: ScriviCoda(c); break;
    case Blocco::Formato: ScriviFormato(c); break;
    case Blocco::Diretta: ScriviDiretta(c); break;
    case Blocco::Versione: Metti(c.P, "Versione", "01.00.00"); break;
    }
}

// ---------------------------------------------------------------- the record's fields

// Where each field lives: the first path is the server's own element, written after the sheet's
// elements when the kind's sheet holds none of the paths and the field is not at its default.
struct CampoTesto
{
    QString DatiDocumento::*Campo;
    std::array<const char*, 4> Percorsi;
};

struct CampoNumero
{
    qint32 DatiDocumento::*Campo;
    std::array<const char*, 2> Percorsi;
};

constexpr CampoTesto CampiTesto[] = {
    {&DatiDocumento::Funzione, {"Funzione"}},
    {&DatiDocumento::Descrizione, {"Descrizione"}},
    {&DatiDocumento::Stato, {"Stato"}},
    {&DatiDocumento::Sigla, {"Sigla"}},
    {&DatiDocumento::Utente, {"Utente"}},
    {&DatiDocumento::UtenteDescrizione, {"UtenteDescrizione"}},
    {&DatiDocumento::Ip, {"Ip"}},
    {&DatiDocumento::Errore, {"Errore/Descrizione"}},
    {&DatiDocumento::Stampante, {"Stampante", "Cedolino/Stampante"}},
    {&DatiDocumento::Oggetto, {"Oggetto"}},
    {&DatiDocumento::Da, {"Da/IndirizziEmail"}},
    {&DatiDocumento::A, {"A/IndirizziEmail"}},
    {&DatiDocumento::Cc, {"Cc/IndirizziEmail"}},
    {&DatiDocumento::Ccn, {"Ccn/IndirizziEmail"}},
    {&DatiDocumento::PrefissoInternazionale, {"NumeroFax/PrefissoInternazionale"}},
    {&DatiDocumento::PrefissoLocale, {"NumeroFax/PrefissoLocale"}},
    {&DatiDocumento::NumeroFax, {"NumeroFax/Numero"}},
    {&DatiDocumento::KeyUtente, {"KeyUtente"}},
    {&DatiDocumento::FileIntestazione, {"FileIntestazione/Nome"}},
    {&DatiDocumento::FileCorpo, {"FileCorpo/Nome"}},
    {&DatiDocumento::FileScript, {"FileScript/Nome"}},
    {&DatiDocumento::FileOutput, {"FileOutput", "FileDiretto/Nome", "FilePdf/Nome", "FileTif/Nome"}},
};

constexpr CampoNumero CampiNumero[] = {
    {&DatiDocumento::Coda, {"Coda/Codice"}},
    {&DatiDocumento::Tentativi, {"Tentativi", "Trasmissione/TentativiEffettuati"}},
    {&DatiDocumento::Rifiuti, {"Rifiuti"}},
    {&DatiDocumento::Priorita, {"Priorita", "Trasmissione/Priorita"}},
    {&DatiDocumento::Pagine, {"Pagine"}},
    {&DatiDocumento::CodiceErrore, {"Errore/Codice"}},
    {&DatiDocumento::NumeroTarquel, {"Numero"}},
    {&DatiDocumento::Copie, {"Copie"}},
};

void ScriviCampiServer(const Contesto& c)
{
    const DatiDocumento vuoto;
    for (const CampoTesto& campo : CampiTesto)
        if (c.D.*campo.Campo != vuoto.*campo.Campo && !Primo(c.P, campo.Percorsi))
            Metti(c.P, campo.Percorsi[0], c.D.*campo.Campo);
    for (const CampoNumero& campo : CampiNumero)
        if (c.D.*campo.Campo != vuoto.*campo.Campo && !Primo(c.P, campo.Percorsi))
            MettiNumero(c.P, campo.Percorsi[0], c.D.*campo.Campo);
    if (!c.D.Collegati.isEmpty() && !c.P.child("Collegati"))
        ScriviCollegati(c.P, c.D);
}

} // namespace

QString CodiceLingua(const DatiDocumento& d)
{
    return QString::fromLatin1(LinguaDi(d).Codice);
}

const char* NomeGenere(GenereCartella g) { return LayoutDi(g).Nome; }

std::optional<GenereCartella> GenereDaNome(QStringView nome)
{
    for (const Layout& l : Layouts)
        if (nome == QLatin1StringView(l.Nome))
            return l.Genere;
    return std::nullopt;
}

QString DescrizioneCoda(GenereCartella g, qint32 coda)
{
    const std::span<const char* const> code = LayoutDi(g).Code;
    if (coda >= 0 && coda < std::ssize(code))
        return QString::fromUtf8(code[static_cast<std::size_t>(coda)]);
    return u"Coda %1"_s.arg(coda);
}

qint32 NumeroCode(GenereCartella g) { return static_cast<qint32>(LayoutDi(g).Code.size()); }

void Scrivi(pugi::xml_node documento, const DatiDocumento& d, const QString& cartellaDocumento)
{
    const Layout& layout = LayoutDi(d.Genere);
    documento.set_name("Documento");
    documento.append_attribute("Id").set_value(d.Id.toUtf8().constData());
    documento.append_attribute("Tipo").set_value(layout.Nome);
    const Contesto c{documento.append_child("Proprieta"), d, layout, QDir::toNativeSeparators(cartellaDocumento)};
    Metti(c.P, "FileLog",
          d.FileLog.isEmpty() ? QString() : QDir::toNativeSeparators(Unisci(cartellaDocumento, d.FileLog)));
    for (const Blocco b : layout.Blocchi)
        ScriviBlocco(c, b);
    ScriviCampiServer(c);
}

bool Leggi(const pugi::xml_node& documento, DatiDocumento& d)
{
    if (std::string_view(documento.name()) != "Documento")
        return false;
    const QString id = QString::fromUtf8(documento.attribute("Id").value());
    const std::optional<GenereCartella> genere = GenereDaNome(QString::fromUtf8(documento.attribute("Tipo").value()));
    if (id.isEmpty() || !genere)
        return false;
    d = DatiDocumento();
    d.Id = id;
    d.Genere = *genere;
    const pugi::xml_node p = documento.child("Proprieta");
    for (const CampoTesto& campo : CampiTesto)
        if (const pugi::xml_node n = Primo(p, campo.Percorsi))
            d.*campo.Campo = QString::fromUtf8(n.child_value());
    for (const CampoNumero& campo : CampiNumero)
        if (const pugi::xml_node n = Primo(p, campo.Percorsi))
            d.*campo.Campo = n.text().as_int(d.*campo.Campo);
    d.Inserito = modDate::Leggi(Testo(p, "Coda/DataInserimento"));
    d.Elaborato = modDate::Leggi(Testo(p, "Coda/DataElaborazione"));
    d.FileLog = QDir::fromNativeSeparators(Testo(p, "FileLog")).section(u'/', -1);
    for (const pugi::xml_node n : p.child("Collegati").children("Collegato"))
        d.Collegati.append({Testo(n, "Id"), Testo(n, "Descrizione")});
    return true;
}

} // namespace modProprieta
