// The demo's documents: N documents spread over every folder and queue, each a complete
// document folder (description, body, script, header, output, log). Content depends only
// on the document's number, so the same N always gives the same folder; the work is split
// between threads by number.

#include "modDemo.h"

#include "PxRigaLog.h"
#include "RefCartellaDocumenti.h"
#include "RefLavoratori.h"
#include "modCartelle.h"
#include "modDemoCorpi.h"
#include "modDemoErrori.h"
#include "modFileDocumento.h"
#include "modProprieta.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <atomic>
#include <thread>
#include <vector>

using namespace Qt::StringLiterals;

namespace modDemo {

namespace {

// A small deterministic generator (SplitMix64): one stream per document.
struct Caso
{
    quint64 Stato;
    quint64 Prossimo()
    {
        quint64 z = (Stato += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int Fino(int n) { return static_cast<int>(Prossimo() % static_cast<quint64>(n)); }
    template <typename T, size_t N> const T& Uno(const std::array<T, N>& a) { return a[static_cast<size_t>(Fino(N))]; }
};

// Share of the documents per folder, in the folder table's order, in thousandths.
constexpr std::array<int, 7> Quote = {50, 250, 200, 300, 50, 70, 80};

constexpr std::array<const char*, 8> Utenti = {"mrossi", "lbianchi", "gverdi", "afontana", "sgallo", "pconti", "mesposito", "fricci"};
constexpr std::array<const char*, 8> Nomi = {"Mario Rossi", "Laura Bianchi", "Giuseppe Verdi", "Anna Fontana",
                                             "Sara Gallo", "Paolo Conti", "Marco Esposito", "Francesca Ricci"};
constexpr std::array<const char*, 10> Clienti = {"Ferramenta Bassi", "Edil Nord", "Ottica Moretti", "Trasporti Lario",
                                                 "Caseificio Valle", "Studio Greco", "Agraria Po", "Tessile Serra",
                                                 "Meccanica Fabbri", "Vini Colombo"};
constexpr std::array<const char*, 6> Funzioni = {"FATTURE", "DDT", "ORDINI", "SOLLECITI", "CEDOLINI", "PREVENTIVI"};
constexpr std::array<const char*, 6> Stampanti = {"Laser amministrazione", "Laser produzione", "Generica testo",
                                                  "Ufficio colori", "Aghi bolle", "Etichette magazzino"};
constexpr std::array<int, 6> NumeriStampanti = {4, 5, 1, 2, 8, 3};
constexpr size_t StampanteBolle = 4, StampanteEtichette = 5;
constexpr std::array<const char*, 8> Dipendenti = {"Elena Marchetti", "Davide Russo", "Chiara Lombardi", "Luca Moretti",
                                                   "Giulia Barbieri", "Andrea Colombo", "Silvia Ferrara", "Matteo Galli"};

// Where a queue stands against the folder's delivery stages, the ones that count attempts:
// before them, waiting for another attempt, in one, or past them.
enum class Fase { Prima, NuovoTentativo, InCorso, Dopo };

Fase FaseDi(const modCartelle::Definizione& def, qint32 coda)
{
    std::vector<qint32> consegne;
    for (const modCartelle::Passo& p : def.Passi)
        if (RefLavoratori::ContaTentativi(p)) {
            if (coda == p.Da)
                return Fase::InCorso;
            if (coda == RefLavoratori::CodaNuovoTentativo(def, p))
                return Fase::NuovoTentativo;
            consegne.push_back(p.Da);
        }
    // Before when a delivery lies ahead along the stages.
    std::vector<qint32> visti{coda};
    for (size_t i = 0; i < visti.size(); ++i)
        for (const modCartelle::Passo& p : def.Passi)
            if (p.Da == visti[i] && std::find(visti.begin(), visti.end(), p.A) == visti.end()) {
                if (std::find(consegne.begin(), consegne.end(), p.A) != consegne.end())
                    return Fase::Prima;
                visti.push_back(p.A);
            }
    return consegne.empty() ? Fase::Prima : Fase::Dopo;
}

// A rejection as the workers make it: which stage failed, with one of its worker's errors, and
// the attempts the document had by then (the number its text names, when it names one).
void Rifiuto(const modCartelle::Definizione& def, DatiDocumento& d, Caso& c)
{
    std::vector<const modCartelle::Passo*> possibili, consegne;
    for (const modCartelle::Passo& p : def.Passi)
        if (p.PuoRespingere) {
            possibili.push_back(&p);
            if (RefLavoratori::ContaTentativi(p))
                consegne.push_back(&p);
        }
    if (possibili.empty())
        return;
    const modCartelle::Passo& passo = !consegne.empty() && c.Fino(10) < 7 ? *consegne[static_cast<size_t>(c.Fino(static_cast<int>(consegne.size())))]
                                                                          : *possibili[static_cast<size_t>(c.Fino(static_cast<int>(possibili.size())))];
    const auto errori = modDemoErrori::Di(QString::fromLatin1(passo.Lavoratore));
    const modDemoErrori::Errore& e = errori[static_cast<size_t>(c.Fino(static_cast<int>(errori.size())))];
    constexpr qint32 massimo = modDemoErrori::TentativiPredefiniti;
    if (RefLavoratori::ContaTentativi(passo))
        d.Tentativi = e.Ripetibile ? massimo : 1 + c.Fino(massimo);
    else
        d.Tentativi = e.Ripetibile ? massimo : 0;
    d.CodiceErrore = e.Codice;
    d.Errore = modDemoErrori::Testo(e, d.Tentativi);
}

// Which queue a document of `def` sits in: most are done, some wait, a few failed.
qint32 CodaDemo(const modCartelle::Definizione& def, Caso& c)
{
    const int p = c.Fino(100);
    const qint32 fatti = def.CodaRespinti - 1;
    if (def.Genere == GenereCartella::Fax) {
        if (p < 55) return 8;
        if (p < 63) return 9;
        if (p < 66) return 10;
        constexpr std::array<qint32, 9> attesa = {0, 1, 2, 3, 4, 5, 6, 7, 12};
        return c.Uno(attesa);
    }
    if (p < 60) return fatti;
    if (p < 68) return def.CodaRespinti;
    if (p < 71) return def.CodaScartati;
    return c.Fino(fatti);
}

// Whether a document in `coda` has passed the stage that writes its output.
bool HaUscita(const modCartelle::Definizione& def, qint32 coda)
{
    for (const modCartelle::Passo& passo : def.Passi)
        if (passo.Produce != modCartelle::Uscita::Nessuna)
            return coda != passo.Da && coda != 0 && coda != def.CodaRespinti && coda != def.CodaScartati;
    return false;
}

modCartelle::Uscita TipoUscita(const modCartelle::Definizione& def)
{
    for (const modCartelle::Passo& passo : def.Passi)
        if (passo.Produce != modCartelle::Uscita::Nessuna)
            return passo.Produce;
    return modCartelle::Uscita::Nessuna;
}

// One document, and in `contenuto` what its body says.
DatiDocumento Documento(const modCartelle::Definizione& def, int numero, int globale, Caso& c, modDemoCorpi::Contenuto& contenuto)
{
    DatiDocumento d;
    d.Genere = def.Genere;
    d.Id = QStringLiteral("%1-%2").arg(QString::fromLatin1(def.Prefisso)).arg(numero, 6, 10, QChar(u'0'));
    d.Coda = CodaDemo(def, c);
    const int u = c.Fino(static_cast<int>(Utenti.size()));
    d.Utente = QString::fromLatin1(Utenti[static_cast<size_t>(u)]);
    d.UtenteDescrizione = QString::fromLatin1(Nomi[static_cast<size_t>(u)]);
    const auto modelli = modDemoCorpi::Modelli(def.Genere);
    contenuto.Tipo = modelli[static_cast<size_t>(c.Fino(static_cast<int>(modelli.size())))];
    contenuto.Numero = 1000 + numero;
    const QString cliente = QString::fromUtf8(c.Uno(Clienti));
    contenuto.Destinatario = contenuto.Tipo == modDemoCorpi::Modello::Cedolino ? QString::fromUtf8(c.Uno(Dipendenti)) : cliente;
    d.Descrizione = QStringLiteral("%1 n. %2 - %3").arg(modDemoCorpi::Nome(contenuto.Tipo)).arg(contenuto.Numero).arg(contenuto.Destinatario);
    d.Funzione = QString::fromLatin1(c.Uno(Funzioni));
    d.Sigla = QStringLiteral("%1").arg(c.Fino(900) + 100, 3, 10, QChar(u'0'));
    d.Ip = QStringLiteral("192.168.10.%1").arg(100 + u);
    d.Priorita = c.Fino(10) == 0 ? 2 : (c.Fino(5) == 0 ? 1 : 0);
    d.Pagine = 1 + c.Fino(4);
    // A fixed calendar: the demo is the same whenever it is made.
    const QDateTime base(QDate(2026, 11, 2), QTime(7, 30));
    d.Inserito = base.addSecs(static_cast<qint64>(globale) * 23 + c.Fino(20));
    if (d.Coda != 0)
        d.Elaborato = d.Inserito.addSecs(30 + c.Fino(3600));
    d.Stato = modProprieta::DescrizioneCoda(def.Genere, d.Coda);
    if (d.Coda == def.CodaRespinti || d.Coda == def.CodaScartati) {
        Rifiuto(def, d, c);
        d.Stato = d.Errore;
        d.Rifiuti = d.Coda == def.CodaScartati ? 2 : 1;
    } else {
        constexpr qint32 massimo = modDemoErrori::TentativiPredefiniti;
        switch (FaseDi(def, d.Coda)) {
        case Fase::Prima:
            d.Tentativi = 0;
            break;
        case Fase::NuovoTentativo:
            // Back after a busy line, some of them: the state says so, as the worker writes it.
            d.Tentativi = c.Fino(massimo);
            if (d.Tentativi > 0) {
                d.Stato = RefLavoratori::StatoNuovoTentativo(d.Tentativi, massimo);
                d.Elaborato = d.Inserito.addSecs(30 + c.Fino(3600));
            }
            break;
        case Fase::InCorso:
            d.Tentativi = c.Fino(massimo);
            break;
        case Fase::Dopo: {
            const int p = c.Fino(20);
            d.Tentativi = p < 16 ? 1 : (p < 19 ? 2 : 3);
            break;
        }
        }
    }
    const QString contatto = cliente.toLower().remove(u' ').remove(u'\'');
    switch (def.Genere) {
    case GenereCartella::Stampa: {
        // Labels go to the label printer, delivery notes to the dot-matrix one, the rest to a laser.
        const size_t s = contenuto.Tipo == modDemoCorpi::Modello::Etichetta ? StampanteEtichette
            : contenuto.Tipo == modDemoCorpi::Modello::Ddt                  ? StampanteBolle
                                                                            : static_cast<size_t>(c.Fino(4));
        d.Stampante = QString::fromLatin1(Stampanti[s]);
        d.NumeroTarquel = NumeriStampanti[s];
        d.Copie = 1 + c.Fino(2);
        break;
    }
    case GenereCartella::Email:
        d.Oggetto = d.Descrizione;
        d.Da = d.Utente + u"@pelorix.local"_s;
        d.A = QStringLiteral("amministrazione@%1.it").arg(contatto);
        if (c.Fino(3) == 0)
            d.Cc = QStringLiteral("ufficio@%1.it").arg(contatto);
        if (c.Fino(6) == 0)
            d.Ccn = u"archivio@pelorix.local"_s;
        break;
    case GenereCartella::Fax:
    case GenereCartella::PFax:
    case GenereCartella::EFax:
        d.PrefissoInternazionale = u"39"_s;
        d.PrefissoLocale = QStringLiteral("0%1").arg(2 + c.Fino(90));
        d.NumeroFax = QStringLiteral("%1").arg(5000000 + c.Fino(4999999));
        if (def.Genere == GenereCartella::Fax && c.Fino(3) == 0)
            d.Collegati.append({d.Id + u"-C"_s, u"Copertina"_s});
        break;
    case GenereCartella::Pbl:
        for (int a = 0, n = c.Fino(3); a < n; ++a)
            d.Collegati.append({QStringLiteral("%1-A%2").arg(d.Id).arg(a + 1), QStringLiteral("Allegato %1").arg(a + 1)});
        break;
    case GenereCartella::Anteprima:
        d.KeyUtente = QStringLiteral("U-%1").arg(u + 1, 4, 10, QChar(u'0'));
        break;
    }
    contenuto.Lingua = modProprieta::CodiceLingua(d);
    contenuto.Seme = c.Prossimo();
    d.FileCorpo = d.Id + u".bpx"_s;
    d.FileIntestazione = d.Id + u".hpx"_s;
    d.FileScript = d.Id + u".spx"_s;
    d.FileLog = d.Id + u".log"_s;
    if (HaUscita(def, d.Coda))
        d.FileOutput = d.Id + (TipoUscita(def) == modCartelle::Uscita::Tiff ? u".tif"_s : u".pdf"_s);
    return d;
}

bool Scrivi(const QString& file, const QByteArray& dati)
{
    QFile f(file);
    return f.open(QIODevice::WriteOnly | QIODevice::Truncate) && f.write(dati) == dati.size();
}

// Writes one document; "" or what failed.
QString ScriviDocumento(const QString& radice, const modCartelle::Definizione& def, const DatiDocumento& d,
                        const modDemoCorpi::Contenuto& contenuto)
{
    const QString cartella = radice + u"/Coda_"_s + QString::number(d.Coda) + u'/' + d.Id;
    if (!QDir().mkpath(cartella))
        return QStringLiteral("impossibile creare %1").arg(cartella);
    const QString base = cartella + u'/';
    bool ok = Scrivi(base + d.Id + u".xml"_s, RefCartellaDocumenti::TestoDescrizione(d, cartella))
        && Scrivi(base + d.FileCorpo, modDemoCorpi::Corpo(d, contenuto))
        && Scrivi(base + d.FileIntestazione, modFileDocumento::Intestazione(d).Serializza());
    if (ok && !d.FileScript.isEmpty())
        ok = Scrivi(base + d.FileScript, modFileDocumento::Script(d));
    if (ok && !d.FileOutput.isEmpty())
        ok = Scrivi(base + d.FileOutput, TipoUscita(def) == modCartelle::Uscita::Tiff ? modFileDocumento::Tiff(d)
                                                                                     : modFileDocumento::Pdf(d));
    if (ok) {
        QByteArray log = modRigaLog::Formatta(2, d.Inserito.time(),
                                              QStringLiteral("Documento %1 ricevuto").arg(d.Id));
        if (d.Elaborato.isValid())
            log += modRigaLog::Formatta(d.CodiceErrore ? 0 : 2, d.Elaborato.time(), d.Stato);
        ok = Scrivi(base + d.FileLog, log);
    }
    return ok ? QString() : QStringLiteral("impossibile scrivere il documento %1").arg(d.Id);
}

} // namespace

QString CreaDocumentiDemo(const QString& cartella, int numero, quint64 seme)
{
    const auto definizioni = modCartelle::Cartelle();
    // How many documents each folder gets, and where each folder's numbers start globally.
    std::vector<int> perCartella(definizioni.size());
    int assegnati = 0;
    for (size_t i = 0; i < definizioni.size(); ++i) {
        perCartella[i] = static_cast<int>(static_cast<qint64>(numero) * Quote[i] / 1000);
        assegnati += perCartella[i];
    }
    perCartella[3] += numero - assegnati; // the remainder to the fax folder
    struct Lavoro
    {
        size_t Cartella;
        int Numero;
        int Globale;
    };
    std::vector<Lavoro> lavori;
    lavori.reserve(static_cast<size_t>(numero));
    int globale = 0;
    for (size_t i = 0; i < definizioni.size(); ++i) {
        const QString radice = RefCartellaDocumenti::RadiceDi(definizioni[i], cartella);
        for (qint32 coda = 0; coda < definizioni[i].NumeroCode; ++coda)
            QDir().mkpath(radice + u"/Coda_"_s + QString::number(coda));
        for (int n = 1; n <= perCartella[i]; ++n)
            lavori.push_back({i, n, globale++});
    }
    std::atomic<size_t> prossimo{0};
    std::atomic<bool> fallito{false};
    QString errore;
    std::atomic_flag bloccoErrore = ATOMIC_FLAG_INIT;
    const auto lavora = [&] {
        for (size_t k = prossimo++; k < lavori.size() && !fallito; k = prossimo++) {
            const Lavoro& l = lavori[k];
            const modCartelle::Definizione& def = definizioni[l.Cartella];
            Caso c{seme * 1000003u + static_cast<quint64>(l.Globale)};
            modDemoCorpi::Contenuto contenuto;
            const DatiDocumento d = Documento(def, l.Numero, l.Globale, c, contenuto);
            if (QString e = ScriviDocumento(RefCartellaDocumenti::RadiceDi(def, cartella), def, d, contenuto); !e.isEmpty()) {
                if (!bloccoErrore.test_and_set())
                    errore = e;
                fallito = true;
            }
        }
    };
    const unsigned fili = std::max(1u, std::min(4u, std::thread::hardware_concurrency()));
    std::vector<std::thread> gruppo;
    for (unsigned t = 1; t < fili; ++t)
        gruppo.emplace_back(lavora);
    lavora();
    for (std::thread& t : gruppo)
        t.join();
    return errore;
}

} // namespace modDemo
