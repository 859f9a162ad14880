// The demo's documents: N documents spread over every folder and queue, each a complete
// document folder (description, body, script, header, output, log). Content depends only
// on the document's number, so the same N always gives the same folder; the work is split
// between threads by number.

#include "modDemo.h"

#include "PxRigaLog.h"
#include "RefCartellaDocumenti.h"
#include "modCartelle.h"
#include "modFileDocumento.h"
#include "modProprieta.h"

#include <QDir>
#include <QFile>

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
constexpr std::array<const char*, 10> Documenti = {"Fattura", "Documento di trasporto", "Ordine fornitore", "Conferma d'ordine",
                                                   "Estratto conto", "Sollecito di pagamento", "Bolla di consegna",
                                                   "Cedolino", "Preventivo", "Nota di credito"};
constexpr std::array<const char*, 10> Clienti = {"Ferramenta Bassi", "Edil Nord", "Ottica Moretti", "Trasporti Lario",
                                                 "Caseificio Valle", "Studio Greco", "Agraria Po", "Tessile Serra",
                                                 "Meccanica Fabbri", "Vini Colombo"};
constexpr std::array<const char*, 6> Funzioni = {"FATTURE", "DDT", "ORDINI", "SOLLECITI", "CEDOLINI", "PREVENTIVI"};
constexpr std::array<const char*, 6> Stampanti = {"Laser amministrazione", "Laser produzione", "Generica testo",
                                                  "Ufficio colori", "Aghi bolle", "Etichette magazzino"};
constexpr std::array<int, 6> NumeriStampanti = {4, 5, 1, 2, 8, 3};

// Which queue a document of `def` sits in: most are done, some wait, a few failed.
qint32 CodaDemo(const modCartelle::Definizione& def, Caso& c)
{
    const int p = c.Fino(100);
    const qint32 fatti = def.CodaRespinti - 1;
    if (def.Genere == GenereCartella::Fax) {
        if (p < 55) return 8;
        if (p < 63) return 9;
        if (p < 66) return 10;
        constexpr std::array<qint32, 10> attesa = {0, 1, 2, 3, 4, 5, 6, 7, 11, 12};
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

DatiDocumento Documento(const modCartelle::Definizione& def, int numero, int globale, Caso& c)
{
    DatiDocumento d;
    d.Genere = def.Genere;
    d.Id = QStringLiteral("%1-%2").arg(QString::fromLatin1(def.Prefisso)).arg(numero, 6, 10, QChar(u'0'));
    d.Coda = CodaDemo(def, c);
    const int u = c.Fino(static_cast<int>(Utenti.size()));
    d.Utente = QString::fromLatin1(Utenti[static_cast<size_t>(u)]);
    d.UtenteDescrizione = QString::fromLatin1(Nomi[static_cast<size_t>(u)]);
    const QString cliente = QString::fromUtf8(c.Uno(Clienti));
    d.Descrizione = QStringLiteral("%1 n. %2 - %3").arg(QString::fromUtf8(c.Uno(Documenti))).arg(1000 + numero).arg(cliente);
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
        // The same reasons as the workers give, so that the stages group as they would live.
        const modCartelle::Motivo& m = modCartelle::MotiviRifiuto()[static_cast<size_t>(c.Fino(5))];
        d.CodiceErrore = m.Codice;
        d.Errore = QString::fromUtf8(m.Testo);
        d.Stato = d.Errore;
        d.Rifiuti = d.Coda == def.CodaScartati ? 2 : 1;
    }
    d.Tentativi = d.Coda == 0 ? 0 : 1 + c.Fino(3);
    const QString contatto = cliente.toLower().remove(u' ').remove(u'\'');
    switch (def.Genere) {
    case GenereCartella::Stampa: {
        const int s = c.Fino(static_cast<int>(Stampanti.size()));
        d.Stampante = QString::fromLatin1(Stampanti[static_cast<size_t>(s)]);
        d.NumeroTarquel = NumeriStampanti[static_cast<size_t>(s)];
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
QString ScriviDocumento(const QString& radice, const modCartelle::Definizione& def, const DatiDocumento& d)
{
    const QString cartella = radice + u"/Coda_"_s + QString::number(d.Coda) + u'/' + d.Id;
    if (!QDir().mkpath(cartella))
        return QStringLiteral("impossibile creare %1").arg(cartella);
    const QString base = cartella + u'/';
    bool ok = Scrivi(base + d.Id + u".xml"_s, RefCartellaDocumenti::TestoDescrizione(d, cartella))
        && Scrivi(base + d.FileCorpo, modFileDocumento::Corpo(d))
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
            const DatiDocumento d = Documento(def, l.Numero, l.Globale, c);
            if (QString e = ScriviDocumento(RefCartellaDocumenti::RadiceDi(def, cartella), def, d); !e.isEmpty()) {
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
