#include "RefCartellaDocumenti.h"

#include "RefAccesso.h"
#include "modXml.h"

#include "PxRigaLog.h"
#include "RefLog.h"
#include "RefServizio.h"
#include "modDisco.h"
#include "modProprieta.h"
#include "modFileDocumento.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <QSaveFile>

#include <pugixml.hpp>

#include <algorithm>
#include <limits>
#include <atomic>
#include <thread>
#include <sstream>

using namespace Qt::StringLiterals;

namespace {

// Appends `testo` escaped for XML character data; control characters other than tab and
// line breaks are dropped, since XML 1.0 cannot carry them.
void Escape(QByteArray& out, const QString& testo)
{
    const QByteArray utf8 = testo.toUtf8();
    for (const char c : utf8) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n' || c == '\r')
                out += c;
        }
    }
}

QString Priorita(qint32 p)
{
    switch (p) {
    case 1: return u"Alta"_s;
    case 2: return u"Urgente"_s;
    default: return u"Normale"_s;
    }
}

QString Campo(const DatiDocumento& d, modCartelle::Campo c)
{
    using enum modTabellaCartelle::Campo;
    switch (c) {
    case Id: return d.Id;
    case Descrizione: return d.Descrizione;
    case Stato: return d.Stato;
    case Utente: return d.Utente;
    case Sigla: return d.Sigla;
    case Numero: return QString::number(d.NumeroTarquel);
    case Stampante: return d.Stampante;
    case A: return d.A;
    case Cc: return d.Cc;
    case Ccn: return d.Ccn;
    case Priorita: return ::Priorita(d.Priorita);
    case PrefissoInternazionale: return d.PrefissoInternazionale;
    case PrefissoLocale: return d.PrefissoLocale;
    case NumeroFax: return d.NumeroFax;
    case KeyUtente: return d.KeyUtente;
    case Pagine: return QString::number(d.Pagine);
    case Ip: return d.Ip;
    case Inserito: return modDate::Testo(d.Inserito);
    case Elaborato: return modDate::Testo(d.Elaborato);
    }
    return {};
}

// The selected ids of a selection document, without repeats; nullopt when it does not parse.
std::optional<QStringList> Selezione(const QString& xml)
{
    pugi::xml_document doc;
    const QByteArray utf8 = xml.toUtf8();
    if (!doc.load_buffer(utf8.constData(), static_cast<size_t>(utf8.size())) || !doc.document_element())
        return std::nullopt;
    QStringList id;
    for (const pugi::xml_node n : doc.document_element().children("ID")) {
        const QString testo = QString::fromUtf8(n.child_value()).trimmed();
        if (!testo.isEmpty() && !id.contains(testo))
            id << testo;
    }
    return id;
}

} // namespace

RefCartellaDocumenti::RefCartellaDocumenti(const modCartelle::Definizione& definizione, const QString& cartellaServer,
                                           RefServizio* servizio, RefServizio* stato, RefLog& logServer, QObject* parent)
    : QObject(parent),
      mDef(definizione),
      mCartellaServer(cartellaServer),
      mRadice(RadiceDi(definizione, cartellaServer)),
      mServizio(servizio),
      mStato(stato),
      mLogServer(logServer),
      mCode(static_cast<size_t>(definizione.NumeroCode))
{
}

QString RefCartellaDocumenti::RadiceDi(const modCartelle::Definizione& def, const QString& cartellaServer)
{
    return QDir(cartellaServer).filePath(u"Documenti/"_s + QString::fromLatin1(def.Chiave));
}

QString RefCartellaDocumenti::CartellaCoda(qint32 coda) const
{
    return mRadice + u"/Coda_"_s + QString::number(coda);
}

QString RefCartellaDocumenti::CartellaDi(const DatiDocumento& d) const
{
    return CartellaCoda(d.Coda) + u'/' + d.Id;
}

QString RefCartellaDocumenti::NuovoId()
{
    // Past every id seen on disk at start; and never one that some folder holds now.
    const auto suDisco = [this](const QString& id) {
        for (qint32 coda = 0; coda < mDef.NumeroCode; ++coda)
            if (modDisco::Occupato(CartellaCoda(coda) + u'/' + id) || modDisco::Occupato(CartellaCoda(coda) + u"/."_s + id + u".nuovo"_s))
                return true;
        return false;
    };
    QString id;
    do {
        id = QStringLiteral("%1-%2").arg(QString::fromLatin1(mDef.Prefisso)).arg(mProssimoId++, 6, 10, QChar(u'0'));
    } while (mIndice.contains(id) || suDisco(id));
    return id;
}

void RefCartellaDocumenti::OsservaId(QStringView nome)
{
    // "<prefix>-<digits>" at the start of a name: a document folder, or a creation set aside.
    const QString prefisso = QString::fromLatin1(mDef.Prefisso) + u'-';
    if (!nome.startsWith(prefisso))
        return;
    qsizetype fine = prefisso.size();
    while (fine < nome.size() && nome[fine].isDigit())
        ++fine;
    bool ok = false;
    const quint64 numero = nome.mid(prefisso.size(), fine - prefisso.size()).toULongLong(&ok);
    if (ok && numero < std::numeric_limits<quint64>::max())
        mProssimoId = std::max<quint64>(mProssimoId, numero + 1);
}

const DatiDocumento* RefCartellaDocumenti::Trova(const QString& id) const
{
    const auto it = mIndice.constFind(id);
    return it == mIndice.cend() ? nullptr : &it->Dati;
}

QStringList RefCartellaDocumenti::Coda(qint32 coda, int massimo, const std::function<bool(const QString&)>& salta) const
{
    QStringList id;
    if (coda < 0 || coda >= mDef.NumeroCode)
        return id;
    for (const auto& [ordine, documento] : mCode[static_cast<size_t>(coda)]) {
        if (massimo >= 0 && id.size() >= massimo)
            break;
        if (!salta || !salta(documento))
            id << documento;
    }
    return id;
}

QString RefCartellaDocumenti::ImpostaStato(const QString& id, const QString& stato)
{
    const auto it = mIndice.find(id);
    if (it == mIndice.end())
        return QStringLiteral("documento %1 sconosciuto").arg(id);
    it->Dati.Stato = stato;
    Rinnova(*it);
    QString errore;
    if (!ScriviDescrizione(it->Dati, &errore))
        mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: descrizione di %2 non aggiornata: %3").arg(Chiave(), id, errore));
    Registra(it->Dati, stato);
    mServizio->AnnunciaSpostamento(it->Dati.Coda, id, Nodo(id));
    return errore;
}

qsizetype RefCartellaDocumenti::Conteggio(qint32 coda) const
{
    return coda < 0 || coda >= mDef.NumeroCode ? 0 : static_cast<qsizetype>(mCode[static_cast<size_t>(coda)].size());
}

void RefCartellaDocumenti::Inserisci(DatiDocumento d)
{
    const quint64 ordine = mProssimoOrdine++;
    mCode[static_cast<size_t>(d.Coda)].emplace(ordine, d.Id);
    const QString id = d.Id;
    Voce& voce = *mIndice.insert(id, Voce{std::move(d), ordine, {}});
    Rinnova(voce);
}

void RefCartellaDocumenti::Registra(const DatiDocumento& d, const QString& testo) const
{
    if (d.FileLog.isEmpty())
        return;
    RefLog(CartellaDi(d) + u'/' + d.FileLog).Scrivi(modRigaLog::LivelloInformazione, testo);
}

QByteArray RefCartellaDocumenti::TestoDescrizione(const DatiDocumento& d, const QString& cartella)
{
    pugi::xml_document doc;
    modXml::Dichiara(doc);
    modProprieta::Scrivi(doc.append_child("Documento"), d, QDir::toNativeSeparators(cartella));
    std::ostringstream out;
    doc.save(out, "", pugi::format_raw, pugi::encoding_utf8);
    return QByteArray::fromStdString(out.str());
}

bool RefCartellaDocumenti::ScriviDescrizione(const DatiDocumento& d, QString* errore) const
{
    // Written aside (in the queue's folder, where a start finds what a crash left) and renamed
    // over the old one: a reader never sees half a description.
    return modDisco::Sostituisci(CartellaDi(d) + u'/' + d.Id + u".xml"_s, TestoDescrizione(d, CartellaDi(d)), errore,
                                 CartellaCoda(d.Coda));
}

void RefCartellaDocumenti::AggiornaContatori()
{
    if (!mStato)
        return;
    pugi::xml_node contatori = mStato->Elemento(mDef.Contatori);
    const auto imposta = [&](const char* nome, qint64 valore) {
        pugi::xml_node n = contatori.child(nome);
        if (!n)
            n = contatori.append_child(nome);
        n.text().set(static_cast<long long>(valore));
    };
    imposta("Count", static_cast<qint64>(mIndice.size()));
    for (qint32 coda = 0; coda < mDef.NumeroCode && coda < static_cast<qint32>(mDef.NomiContatori.size()); ++coda)
        if (const char* nome = mDef.NomiContatori[static_cast<size_t>(coda)])
            imposta(nome, Conteggio(coda));
    mStato->Pubblica(true);
}

qint64 RefCartellaDocumenti::Prepara()
{
    mCandidati.clear();
    for (qint32 coda = 0; coda < mDef.NumeroCode; ++coda) {
        const QDir cartella(CartellaCoda(coda));
        QDir().mkpath(cartella.path());
        Recupera(cartella.path());
        // What a crash left half-written: the document kept its old file, whole.
        for (const QString& nome : cartella.entryList({QString::fromLatin1(modDisco::PrefissoTemporaneo) + u'*'},
                                                       QDir::Files | QDir::Hidden | QDir::System)) {
            QFile::remove(cartella.filePath(nome));
            mLogServer.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("%1: file temporaneo %2 rimosso").arg(Chiave(), cartella.filePath(nome)));
        }
        for (const QString& nome : cartella.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name)) {
            OsservaId(nome); // unreadable ones too: their ids are taken
            mCandidati.push_back({coda, nome});
        }
    }
    // Creations and jobs set aside keep their ids in their names.
    const QDir respinti(QDir(mCartellaServer).filePath(u"LavoriRespinti/"_s + ChiaveServizio()));
    for (const QString& nome : respinti.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        OsservaId(nome);
    return static_cast<qint64>(mCandidati.size());
}

int RefCartellaDocumenti::Carica(const std::function<void(qint64 letti)>& avanzamento, const std::atomic<bool>* interrompi)
{
    struct Letto
    {
        qint32 Coda;
        QString Nome;
        DatiDocumento Dati;
        QString Motivo; // why it was skipped; "" when read
        bool FuoriCoda = false; // its description names another queue
    };
    if (mCandidati.empty())
        Prepara();
    std::vector<Letto> letti;
    letti.reserve(mCandidati.size());
    for (Candidato& c : mCandidati)
        letti.push_back({c.Coda, std::move(c.Nome), {}, {}, false});
    mCandidati.clear();
    // Reading and parsing the descriptions is most of a large folder's start: shared by threads.
    std::atomic<size_t> prossimo{0};
    const auto leggi = [&](bool riferisci) {
        for (size_t i = prossimo++; i < letti.size(); i = prossimo++) {
            if (interrompi && interrompi->load(std::memory_order_relaxed))
                return;
            if (riferisci && avanzamento && (i & 255) == 0)
                avanzamento(static_cast<qint64>(i));
            Letto& l = letti[i];
            const QString file = CartellaCoda(l.Coda) + u'/' + l.Nome + u'/' + l.Nome + u".xml"_s;
            pugi::xml_document doc;
            const pugi::xml_parse_result esito = doc.load_file(QFile::encodeName(file).constData());
            if (!esito)
                l.Motivo = QStringLiteral("descrizione illeggibile (%1)").arg(QString::fromUtf8(esito.description()));
            else if (!modProprieta::Leggi(doc.document_element(), l.Dati))
                l.Motivo = u"descrizione non valida"_s;
            else if (l.Dati.Id != l.Nome || l.Dati.Genere != mDef.Genere)
                l.Motivo = u"descrizione di un altro documento"_s;
            l.FuoriCoda = l.Dati.Coda != l.Coda;
            l.Dati.Coda = l.Coda; // the folder it lies in is the truth
        }
    };
    std::vector<std::thread> fili;
    // Mostly waiting on the disk when the cache is cold: more readers than cores keep it busy.
    for (unsigned t = 1; t < 8 && letti.size() > 64; ++t)
        fili.emplace_back(leggi, false);
    leggi(true); // this thread, the server's, reports the progress
    for (std::thread& t : fili)
        t.join();
    if (interrompi && interrompi->load())
        return 0;

    const auto chiave = [](const Letto& l) { return l.Dati.Elaborato.isValid() ? l.Dati.Elaborato : l.Dati.Inserito; };
    std::stable_sort(letti.begin(), letti.end(), [&](const Letto& a, const Letto& b) { return chiave(a) < chiave(b); });
    mIndice.reserve(static_cast<qsizetype>(letti.size()));
    for (Letto& l : letti) {
        if (!l.Motivo.isEmpty()) {
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: documento %2 saltato, %3")
                                                             .arg(Chiave(), CartellaCoda(l.Coda) + u'/' + l.Nome, l.Motivo));
            continue;
        }
        if (const auto doppio = mIndice.constFind(l.Dati.Id); doppio != mIndice.cend()) {
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: documento %2 presente in due code, tenuto in %3")
                                                             .arg(Chiave(), l.Dati.Id)
                                                             .arg(doppio->Dati.Coda));
            continue;
        }
        // File names come from a file anyone could have edited: one that would leave the
        // document's folder is dropped, never joined.
        for (QString* nome : {&l.Dati.FileCorpo, &l.Dati.FileScript, &l.Dati.FileIntestazione, &l.Dati.FileOutput,
                              &l.Dati.FileLog}) {
            if (nome->isEmpty() || modDisco::NomeSemplice(*nome))
                continue;
            mLogServer.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("%1: documento %2, nome di file \"%3\" ignorato")
                                                             .arg(Chiave(), l.Dati.Id, *nome));
            nome->clear();
        }
        const bool riscrivi = l.FuoriCoda;
        const QString id = l.Dati.Id;
        Inserisci(std::move(l.Dati));
        if (riscrivi) {
            // A move a crash cut short between the rename and the rewrite: the queue wins.
            QString errore;
            const DatiDocumento& d = mIndice.constFind(id)->Dati;
            mLogServer.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("%1: descrizione di %2 corretta alla coda %3").arg(Chiave(), id).arg(d.Coda));
            if (!ScriviDescrizione(d, &errore))
                mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: %2").arg(Chiave(), errore));
        }
    }
    AggiornaContatori();
    return static_cast<int>(mIndice.size());
}

bool RefCartellaDocumenti::RimettiInIngresso(const QString& provvisoria)
{
    // The record a creation writes before it moves a job's files in: "<from>\t<name>" a line.
    QFile origine(provvisoria + u"/.origine"_s);
    if (!modDisco::FileRegolare(origine.fileName()) || !origine.open(QIODevice::ReadOnly))
        return false;
    const QString ingresso = QDir(mCartellaServer).filePath(u"Ingresso/"_s);
    std::vector<std::pair<QString, QString>> ritorni; // in the folder -> back where it came from
    for (const QByteArray& riga : origine.read(64 * 1024).split('\n')) {
        const QList<QByteArray> campi = riga.split('\t');
        if (campi.size() != 2)
            continue;
        const QString da = QDir::cleanPath(QString::fromUtf8(campi[0]));
        const QString nome = QString::fromUtf8(campi[1]);
        // Only back into an input folder of this server, and only a plain name from here.
        if (!da.startsWith(ingresso) || !modDisco::NomeSemplice(nome))
            return false;
        if (modDisco::Occupato(provvisoria + u'/' + nome))
            ritorni.emplace_back(provvisoria + u'/' + nome, da);
    }
    for (const auto& [qui, la] : ritorni)
        if (modDisco::Occupato(la))
            return false; // something new took the name meanwhile: set the folder aside instead
    for (const auto& [qui, la] : ritorni)
        if (!modDisco::Rinomina(qui, la))
            return false;
    QDir(provvisoria).removeRecursively();
    mLogServer.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("%1: creazione interrotta %2, lavoro rimesso in ingresso (%3 file)")
                                                     .arg(Chiave(), provvisoria)
                                                     .arg(ritorni.size()));
    return true;
}

void RefCartellaDocumenti::Recupera(const QString& cartellaCoda)
{
    const QDir cartella(cartellaCoda);
    const QStringList interrotte =
        cartella.entryList({u".*.nuovo"_s}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    if (interrotte.isEmpty())
        return;
    const QString respinti = QDir(mCartellaServer).filePath(u"LavoriRespinti/"_s + ChiaveServizio());
    QDir().mkpath(respinti);
    for (const QString& nome : interrotte) {
        OsservaId(QStringView(nome).mid(1)); // whatever happens to it, its id stays taken
        if (RimettiInIngresso(cartella.filePath(nome)))
            continue;
        if (QDir(cartella.filePath(nome)).isEmpty()) {
            // Stopped before anything was written or moved in: nothing to keep.
            QDir().rmdir(cartella.filePath(nome));
            continue;
        }
        const QString destinazione = respinti + u'/' + nome.mid(1).chopped(6) + u"-interrotto-"_s
            + QDateTime::currentDateTime().toString(u"yyyyMMddHHmmsszzz"_s);
        const bool ok = QDir().rename(cartella.filePath(nome), destinazione);
        mLogServer.Scrivi(modRigaLog::LivelloAvviso,
                          ok ? QStringLiteral("%1: creazione interrotta di %2 messa da parte in %3").arg(Chiave(), nome, destinazione)
                             : QStringLiteral("%1: impossibile mettere da parte %2").arg(Chiave(), cartella.filePath(nome)));
    }
}

QString RefCartellaDocumenti::Crea(DatiDocumento d, const std::vector<FileNuovo>& file, bool annuncia)
{
    if (d.Id.isEmpty())
        d.Id = NuovoId();
    if (mIndice.contains(d.Id))
        return QStringLiteral("il documento %1 esiste già").arg(d.Id);
    if (d.Coda < 0 || d.Coda >= mDef.NumeroCode)
        return QStringLiteral("coda %1 non valida").arg(d.Coda);
    d.Genere = mDef.Genere;
    if (d.FileLog.isEmpty())
        d.FileLog = d.Id + u".log"_s;
    const QString finale = CartellaDi(d);
    const QString provvisoria = CartellaCoda(d.Coda) + u"/."_s + d.Id + u".nuovo"_s;
    // One left by an earlier attempt may hold a job's files: never removed here (a start
    // sets it aside or puts its files back).
    if (modDisco::Occupato(provvisoria))
        return QStringLiteral("creazione di %1 già avviata in %2").arg(d.Id, provvisoria);
    QString errore;
    if (!modDisco::CreaCartella(provvisoria, &errore))
        return QStringLiteral("impossibile creare %1").arg(errore);
    std::vector<std::pair<QString, QString>> spostati; // moved in: where from, where to
    {
        // Where each file comes from, on disk before the first moves: a crash half-way is
        // undone at the next start by putting them back.
        QByteArray origine;
        for (const FileNuovo& f : file)
            if (!f.DaSpostare.isEmpty())
                origine += f.DaSpostare.toUtf8() + '\t' + f.Nome.toUtf8() + '\n';
        if (!origine.isEmpty() && !modDisco::ScriviNuovo(provvisoria + u"/.origine"_s, origine, &errore)) {
            QDir(provvisoria).removeRecursively();
            return QStringLiteral("impossibile scrivere %1").arg(errore);
        }
    }
    const auto annulla = [&](const QString& motivo) {
        // Files moved in go back where they came from: a failed creation loses nothing. If
        // one cannot go back, the folder stays, and the next start sets it aside whole.
        bool tutti = true;
        for (auto it = spostati.rbegin(); it != spostati.rend(); ++it)
            tutti = modDisco::Rinomina(it->second, it->first) && tutti;
        if (tutti)
            QDir(provvisoria).removeRecursively();
        else
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: file di %2 lasciati in %3").arg(Chiave(), d.Id, provvisoria));
        return motivo;
    };
    for (const FileNuovo& f : file) {
        const QString destinazione = provvisoria + u'/' + f.Nome;
        if (!f.DaSpostare.isEmpty()) {
            if (!modDisco::Rinomina(f.DaSpostare, destinazione, &errore))
                return annulla(QStringLiteral("impossibile spostare %1").arg(errore));
            spostati.emplace_back(f.DaSpostare, destinazione);
        } else if (!modDisco::ScriviNuovo(destinazione, f.Dati, &errore)) {
            return annulla(QStringLiteral("impossibile scrivere %1").arg(errore));
        }
    }
    // Written in the provisional folder, but it names the folder the document will have.
    if (!modDisco::ScriviNuovo(provvisoria + u'/' + d.Id + u".xml"_s, TestoDescrizione(d, finale), &errore))
        return annulla(QStringLiteral("impossibile scrivere la descrizione: %1").arg(errore));
    RefLog(provvisoria + u'/' + d.FileLog)
        .Scrivi(modRigaLog::LivelloInformazione,
                QStringLiteral("Documento %1 accodato in \"%2\"").arg(d.Id, modProprieta::DescrizioneCoda(mDef.Genere, d.Coda)));
    // Everything on disk before the one rename that publishes it, and the rename too.
    if (!modDisco::SincronizzaCartella(provvisoria, &errore) || !modDisco::Rinomina(provvisoria, finale, &errore))
        return annulla(QStringLiteral("impossibile pubblicare %1").arg(errore));
    if (!modDisco::SincronizzaCartella(CartellaCoda(d.Coda), &errore))
        mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: %2").arg(Chiave(), errore));
    // Published: the record of where its files came from has done its work.
    QFile::remove(finale + u"/.origine"_s);
    const QString id = d.Id;
    const qint32 coda = d.Coda;
    Inserisci(std::move(d));
    if (annuncia) {
        AggiornaContatori();
        mServizio->AnnunciaSpostamento(coda, id, Nodo(id));
    }
    return {};
}

QString RefCartellaDocumenti::Verifica(const QString& id, qint32 coda) const
{
    if (!mIndice.contains(id))
        return QStringLiteral("documento %1 sconosciuto").arg(id);
    if (coda < 0 || coda >= mDef.NumeroCode)
        return QStringLiteral("coda %1 non valida").arg(coda);
    return {};
}

QString RefCartellaDocumenti::Sposta(const QString& id, qint32 coda, const QString& stato, qint32 tentativi)
{
    if (const QString errore = Verifica(id, coda); !errore.isEmpty())
        return errore;
    const auto it = mIndice.find(id);
    DatiDocumento& d = it->Dati;
    const qint32 prima = d.Coda;
    if (prima != coda) {
        const QString da = CartellaDi(d);
        const QString a = CartellaCoda(coda) + u'/' + id;
        QString motivo;
        if (!modDisco::Rinomina(da, a, &motivo))
            return QStringLiteral("impossibile spostare %1").arg(motivo);
        if (!modDisco::SincronizzaCartella(CartellaCoda(coda), &motivo) || !modDisco::SincronizzaCartella(CartellaCoda(prima), &motivo))
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: %2").arg(Chiave(), motivo));
        mCode[static_cast<size_t>(prima)].erase(it->Ordine);
        it->Ordine = mProssimoOrdine++;
        mCode[static_cast<size_t>(coda)].emplace(it->Ordine, id);
        d.Coda = coda;
    }
    d.Elaborato = QDateTime::currentDateTime();
    if (!stato.isEmpty())
        d.Stato = stato;
    if (tentativi >= 0)
        d.Tentativi = tentativi;
    Rinnova(*it);
    QString errore;
    if (!ScriviDescrizione(d, &errore))
        mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: descrizione di %2 non aggiornata: %3").arg(Chiave(), id, errore));
    Registra(d, QStringLiteral("Da \"%1\" a \"%2\"%3")
                    .arg(modProprieta::DescrizioneCoda(mDef.Genere, prima), modProprieta::DescrizioneCoda(mDef.Genere, coda),
                         stato.isEmpty() ? QString() : u": "_s + stato));
    AggiornaContatori();
    mServizio->AnnunciaSpostamento(coda, id, Nodo(id));
    return {};
}

QString RefCartellaDocumenti::Respingi(const QString& id, qint32 coda, qint32 codice, const QString& motivo, qint32 tentativi)
{
    if (const QString errore = Verifica(id, coda); !errore.isEmpty())
        return errore;
    const auto it = mIndice.find(id);
    DatiDocumento& d = it->Dati;
    const DatiDocumento prima = d;
    d.CodiceErrore = codice;
    d.Errore = motivo;
    ++d.Rifiuti;
    const QString errore = Sposta(id, coda, motivo, tentativi);
    if (!errore.isEmpty()) {
        d = prima;
        Rinnova(*it);
    }
    return errore;
}

QString RefCartellaDocumenti::ScriviUscita(const QString& id, modCartelle::Uscita tipo)
{
    const auto it = mIndice.find(id);
    if (it == mIndice.end() || tipo == modCartelle::Uscita::Nessuna)
        return {};
    DatiDocumento& d = it->Dati;
    const bool tiff = tipo == modCartelle::Uscita::Tiff;
    const QString nome = d.Id + (tiff ? u".tif"_s : u".pdf"_s);
    const QByteArray dati = tiff ? modFileDocumento::Tiff(d) : modFileDocumento::Pdf(d);
    QString errore;
    if (!modDisco::Sostituisci(CartellaDi(d) + u'/' + nome, dati, &errore, CartellaCoda(d.Coda)))
        return QStringLiteral("impossibile scrivere %1").arg(errore);
    d.FileOutput = nome;
    return {};
}

PxRisposta RefCartellaDocumenti::Rifiuta(const QString& motivo, qint32 esito) const
{
    mLogServer.Scrivi(modRigaLog::LivelloAvviso, Chiave() + u": "_s + motivo);
    return {esito, motivo, {}};
}

void RefCartellaDocumenti::AppendiNodo(QByteArray& out, const DatiDocumento& d) const
{
    out += "<D>";
    for (const modTabellaCartelle::Colonna& c : mDef.Campi) {
        out += "<F>";
        Escape(out, Campo(d, c.Campo));
        out += "</F>";
    }
    out += "<C>";
    for (const Collegato& c : d.Collegati) {
        out += "<L><F>";
        Escape(out, c.Id);
        out += "</F><F>";
        Escape(out, c.Descrizione);
        out += "</F></L>";
    }
    out += "</C></D>";
}

QByteArray RefCartellaDocumenti::TestoElenco() const
{
    QByteArray out;
    out.reserve(static_cast<qsizetype>(mIndice.size()) * 256 + 256);
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Elenco>";
    for (qint32 coda = 0; coda < mDef.NumeroCode; ++coda) {
        const QByteArray elemento = "Coda_" + QByteArray::number(coda);
        out += '<' + elemento + '>';
        for (const auto& [ordine, id] : mCode[static_cast<size_t>(coda)])
            out += mIndice.constFind(id)->Nodo;
        out += "</" + elemento + '>';
    }
    out += "</Elenco>";
    return out;
}

QString RefCartellaDocumenti::Nodo(const QString& id) const
{
    const auto it = mIndice.constFind(id);
    return it == mIndice.cend() ? QString() : QString::fromUtf8(it->Nodo);
}

void RefCartellaDocumenti::RichiediElenco(quint64 richiesta) { emit Risposta(richiesta, modContratto::Ok, {}, TestoElenco()); }

bool RefCartellaDocumenti::Consentito(quint64 richiesta, const QString& operazione, const QString& selezioneXml)
{
    QString motivo;
    if (!RefAccesso::PuoAgire(operazione, &motivo)) {
        mLogServer.Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("%1: %2").arg(Chiave(), motivo));
        Rispondi(richiesta, {modContratto::Rifiutato, motivo, {}});
        return false;
    }
    // Every command carried out says who asked for it.
    mLogServer.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("%1: %2 chiesto %3: %4")
                                                           .arg(Chiave(), operazione, RefAccesso::Chi(), selezioneXml.left(400)));
    return true;
}

void RefCartellaDocumenti::SpostaDocumenti(quint64 richiesta, const QString& selezioneXml, qint32 coda)
{
    if (Consentito(richiesta, QStringLiteral("Spostamento in coda %1").arg(coda), selezioneXml))
        Rispondi(richiesta, SpostaSelezione(selezioneXml, coda));
}

void RefCartellaDocumenti::GeneraAnteprime(quint64 richiesta, const QString& selezioneXml, const QString& indirizzo)
{
    if (Consentito(richiesta, QStringLiteral("Generazione delle anteprime"), selezioneXml))
        Rispondi(richiesta, Anteprime(selezioneXml, indirizzo));
}

void RefCartellaDocumenti::InviaCompresso(quint64 richiesta, const QString& selezioneXml)
{
    if (Consentito(richiesta, QStringLiteral("Invio compresso"), selezioneXml))
        Rispondi(richiesta, Comprimi(selezioneXml));
}

void RefCartellaDocumenti::CartellaDocumento(quint64 richiesta, const QString& id)
{
    const QString cartella = CartellaDocumentoDi(id);
    Rispondi(richiesta, cartella.isEmpty() ? PxRisposta{modContratto::Rifiutato, QStringLiteral("documento %1 sconosciuto").arg(id), {}}
                                           : PxRisposta{modContratto::Ok, cartella, {}});
}

void RefCartellaDocumenti::FileOutput(quint64 richiesta, const QString& id, bool conDati)
{
    const QString percorso = FileOutputDi(id);
    if (percorso.isEmpty()) {
        Rispondi(richiesta, {modContratto::Rifiutato, QStringLiteral("il documento %1 non ha un file prodotto").arg(id), {}});
        return;
    }
    PxRisposta r{modContratto::Ok, percorso, {}};
    if (conDati) {
        QFile file(QDir::fromNativeSeparators(percorso));
        if (!modDisco::FileRegolare(file.fileName()))
            r = {modContratto::Rifiutato, QStringLiteral("%1 non è un file regolare").arg(percorso), {}};
        else if (!file.open(QIODevice::ReadOnly))
            r = {modContratto::Fallito, QStringLiteral("%1: %2").arg(percorso, file.errorString()), {}};
        else if (file.size() > modContratto::MassimoFileInviato)
            r = {modContratto::Fallito, QStringLiteral("%1 supera %2 byte").arg(percorso).arg(modContratto::MassimoFileInviato), {}};
        else
            r.Dati = file.read(modContratto::MassimoFileInviato + 1);
    }
    Rispondi(richiesta, r);
}

void RefCartellaDocumenti::Documento(quint64 richiesta, const QString& id)
{
    const QString xml = DocumentoXml(id);
    Rispondi(richiesta, xml.isEmpty() ? PxRisposta{modContratto::Rifiutato, QStringLiteral("documento %1 sconosciuto").arg(id), {}}
                                      : PxRisposta{modContratto::Ok, xml, {}});
}

PxRisposta RefCartellaDocumenti::SpostaSelezione(const QString& selezioneXml, qint32 coda)
{
    const std::optional<QStringList> id = Selezione(selezioneXml);
    if (!id)
        return Rifiuta(u"spostamento rifiutato: selezione non leggibile"_s);
    if (coda < 0 || coda >= mDef.NumeroCode)
        return Rifiuta(QStringLiteral("spostamento rifiutato: coda %1 non valida").arg(coda));
    QStringList sconosciuti;
    for (const QString& i : *id)
        if (!mIndice.contains(i))
            sconosciuti << i;
    if (!sconosciuti.isEmpty())
        return Rifiuta(QStringLiteral("spostamento rifiutato: documenti sconosciuti %1").arg(sconosciuti.join(u", "_s)));
    // All known and the queue valid: now move; a failure on disk puts back what was moved.
    std::vector<std::pair<QString, qint32>> fatti;
    for (const QString& i : *id) {
        const qint32 prima = mIndice.value(i).Dati.Coda;
        const QString errore = Sposta(i, coda, u"Spostato dall'operatore"_s);
        if (!errore.isEmpty()) {
            for (auto it = fatti.rbegin(); it != fatti.rend(); ++it)
                Sposta(it->first, it->second);
            return Rifiuta(u"spostamento annullato: "_s + errore, modContratto::Fallito);
        }
        fatti.emplace_back(i, prima);
    }
    return {};
}

PxRisposta RefCartellaDocumenti::Anteprime(const QString& selezioneXml, const QString& indirizzo)
{
    const std::optional<QStringList> id = Selezione(selezioneXml);
    if (!id)
        return Rifiuta(u"anteprime rifiutate: selezione non leggibile"_s);
    RefCartellaDocumenti* anteprime = mDestinazione ? mDestinazione(GenereCartella::Anteprima) : nullptr;
    if (!anteprime)
        return Rifiuta(u"anteprime rifiutate: nessuna cartella anteprime"_s);
    for (const QString& i : *id) {
        const DatiDocumento* origine = Trova(i);
        if (!origine)
            return Rifiuta(QStringLiteral("anteprime rifiutate: documento %1 sconosciuto").arg(i));
        DatiDocumento d;
        d.Descrizione = QStringLiteral("Anteprima di %1: %2").arg(origine->Id, origine->Descrizione);
        d.Utente = origine->Utente;
        d.UtenteDescrizione = origine->UtenteDescrizione;
        d.Funzione = origine->Funzione;
        d.Ip = indirizzo;
        d.KeyUtente = indirizzo;
        d.Pagine = origine->Pagine;
        d.Stato = u"In attesa"_s;
        d.Inserito = QDateTime::currentDateTime();
        std::vector<FileNuovo> file;
        const QString percorsoCorpo = CartellaDi(*origine) + u'/' + origine->FileCorpo;
        if (!origine->FileCorpo.isEmpty() && modDisco::FileRegolare(percorsoCorpo)) {
            QFile corpo(percorsoCorpo);
            if (corpo.open(QIODevice::ReadOnly))
                file.push_back({u"corpo.bpx"_s, corpo.readAll(), {}});
        }
        d.Id = anteprime->NuovoId();
        if (!file.empty()) {
            file.front().Nome = d.Id + u".bpx"_s;
            d.FileCorpo = file.front().Nome;
        }
        if (const QString errore = anteprime->Crea(std::move(d), file); !errore.isEmpty())
            return Rifiuta(u"anteprima non creata: "_s + errore, modContratto::Fallito);
    }
    return {};
}

PxRisposta RefCartellaDocumenti::Comprimi(const QString& selezioneXml)
{
    const std::optional<QStringList> id = Selezione(selezioneXml);
    if (!id || id->isEmpty())
        return Rifiuta(u"invio compresso rifiutato: selezione vuota o non leggibile"_s);
    RefCartellaDocumenti* email = mDestinazione ? mDestinazione(GenereCartella::Email) : nullptr;
    if (!email)
        return Rifiuta(u"invio compresso rifiutato: nessuna cartella email"_s);
    std::vector<modFileDocumento::FileArchivio> contenuto;
    for (const QString& i : *id) {
        const DatiDocumento* d = Trova(i);
        if (!d)
            return Rifiuta(QStringLiteral("invio compresso rifiutato: documento %1 sconosciuto").arg(i));
        const QDir cartella(CartellaDi(*d));
        // Links are never followed: only the document's own regular files go.
        for (const QString& nome : cartella.entryList(QDir::Files | QDir::NoSymLinks, QDir::Name)) {
            QFile f(cartella.filePath(nome));
            if (modDisco::FileRegolare(f.fileName()) && f.open(QIODevice::ReadOnly))
                contenuto.push_back({i + u'/' + nome, f.readAll()});
        }
    }
    DatiDocumento m;
    m.Id = email->NuovoId();
    m.Descrizione = QStringLiteral("Documenti compressi: %1").arg(id->join(u", "_s));
    m.Oggetto = m.Descrizione;
    m.Da = u"plxsrv@pelorix.local"_s;
    m.A = u"amministratore@pelorix.local"_s;
    m.Utente = u"plxsrv"_s;
    m.Stato = u"In attesa"_s;
    m.Inserito = QDateTime::currentDateTime();
    const QString allegato = m.Id + mEstensioneZip;
    m.FileOutput.clear();
    QString errore;
    const QByteArray archivio = modFileDocumento::Archivio(contenuto, &errore);
    if (archivio.isEmpty())
        return Rifiuta(u"invio compresso non riuscito: "_s + errore, modContratto::Fallito);
    std::vector<FileNuovo> file{{allegato, archivio, {}}};
    if (const QString motivo = email->Crea(std::move(m), file); !motivo.isEmpty())
        return Rifiuta(u"invio compresso non riuscito: "_s + motivo, modContratto::Fallito);
    return {};
}

QString RefCartellaDocumenti::CartellaDocumentoDi(const QString& id) const
{
    const DatiDocumento* d = Trova(id);
    return d ? QDir::toNativeSeparators(CartellaDi(*d)) : QString();
}

QString RefCartellaDocumenti::FileOutputDi(const QString& id) const
{
    const DatiDocumento* d = Trova(id);
    return d && !d->FileOutput.isEmpty() ? QDir::toNativeSeparators(CartellaDi(*d) + u'/' + d->FileOutput) : QString();
}

QString RefCartellaDocumenti::DocumentoXml(const QString& id) const
{
    const DatiDocumento* d = Trova(id);
    if (!d)
        return {};
    pugi::xml_document doc;
    const QByteArray testo = TestoDescrizione(*d, CartellaDi(*d));
    if (!doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size())))
        return {};
    pugi::xml_node elenco = doc.document_element().append_child("ElencoFile");
    const QDir cartella(CartellaDi(*d));
    for (const QString& nome : cartella.entryList(QDir::Files | QDir::NoSymLinks, QDir::Name)) {
        pugi::xml_node f = elenco.append_child("File");
        f.append_child("Percorso").text().set(QDir::toNativeSeparators(cartella.path()).toUtf8().constData());
        f.append_child("Nome").text().set(nome.toUtf8().constData());
    }
    std::ostringstream out;
    doc.save(out, "", pugi::format_raw, pugi::encoding_utf8);
    return QString::fromStdString(out.str());
}
