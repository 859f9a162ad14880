#include "RefCartellaDocumenti.h"

#include "RefAccesso.h"
#include "modComandiCartella.h"
#include "modNodoElenco.h"
#include "modXml.h"

#include "PxRigaLog.h"
#include "RefLog.h"
#include "RefServizio.h"
#include "modDisco.h"
#include "modFileDocumento.h"
#include "modProprieta.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMetaObject>
#include <QSaveFile>

#include <pugixml.hpp>

#include <algorithm>
#include <limits>
#include <sstream>

using namespace Qt::StringLiterals;

RefCartellaDocumenti::RefCartellaDocumenti(const modCartelle::Definizione& definizione, const QString& cartellaServer,
                                           RefServizio* servizio, RefServizio* stato, RefLog& logServer, QObject* parent)
    : QObject(parent),
      mDef(definizione),
      mCartellaServer(cartellaServer),
      mRadice(RadiceDi(definizione, cartellaServer)),
      mServizio(servizio),
      mStato(stato),
      mLogServer(logServer),
      mCode(static_cast<size_t>(definizione.NumeroCode)),
      mCaricamento(definizione, cartellaServer, mRadice, logServer, [this](QStringView nome) { OsservaId(nome); })
{
}

RefCartellaDocumenti::~RefCartellaDocumenti() { Consolida(false); }

void RefCartellaDocumenti::CompletaInSospeso()
{
    if (!mAParte.empty() || mDaSincronizzare || !mDopo.empty() || !mSpostati.empty())
        Consolida();
}

void RefCartellaDocumenti::Consolida(bool avvisa)
{
    mConsolidaProgrammata = false;
    const std::vector<DescrizioneAParte> aParte = std::exchange(mAParte, {});
    const std::vector<modContratto::Spostamento> spostati = std::exchange(mSpostati, {});
    const std::vector<std::function<void()>> dopo = std::exchange(mDopo, {});
    if (std::exchange(mDaSincronizzare, false)) {
        // What the batch wrote aside and the folders it renamed reach the disk; then the
        // descriptions take their places, and that reaches it too.
        QString errore;
        if (!modDisco::SincronizzaTutto(mRadice, &errore))
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: %2").arg(Chiave(), errore));
        for (const DescrizioneAParte& d : aParte)
            if (!modDisco::Scambia(d.Finale, &errore))
                mLogServer.Scrivi(modRigaLog::LivelloErrore,
                                  QStringLiteral("%1: descrizione di %2 non aggiornata: %3").arg(Chiave(), d.Id, errore));
        if (!aParte.empty() && !modDisco::SincronizzaTutto(mRadice, &errore))
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: %2").arg(Chiave(), errore));
    }
    if (!avvisa)
        return;
    mServizio->AnnunciaSpostamenti(spostati);
    for (const std::function<void()>& f : dopo)
        f();
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
    CompletaInSospeso();
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

qint64 RefCartellaDocumenti::Prepara() { return mCaricamento.Prepara(); }

int RefCartellaDocumenti::Carica(const std::function<void(qint64 letti)>& avanzamento, const std::atomic<bool>* interrompi)
{
    std::vector<RefCaricamentoCartella::Documento> letti = mCaricamento.Leggi(avanzamento, interrompi);
    if (interrompi && interrompi->load())
        return 0;
    mIndice.reserve(static_cast<qsizetype>(letti.size()));
    for (RefCaricamentoCartella::Documento& l : letti) {
        const QString id = l.Dati.Id;
        Inserisci(std::move(l.Dati));
        if (l.FuoriCoda) {
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

QString RefCartellaDocumenti::Crea(DatiDocumento d, const std::vector<FileNuovo>& file, bool annuncia)
{
    CompletaInSospeso();
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
    // Outside a batch, or a document already moved in it (its description aside names its
    // old place): the batch completes first.
    if (!mDifferite || std::any_of(mAParte.cbegin(), mAParte.cend(), [&](const DescrizioneAParte& a) { return a.Id == id; }))
        CompletaInSospeso();
    const auto it = mIndice.find(id);
    DatiDocumento& d = it->Dati;
    const qint32 prima = d.Coda;
    if (prima != coda) {
        const QString da = CartellaDi(d);
        const QString a = CartellaCoda(coda) + u'/' + id;
        QString motivo;
        if (!modDisco::Rinomina(da, a, &motivo))
            return QStringLiteral("impossibile spostare %1").arg(motivo);
        mDaSincronizzare = mDaSincronizzare || mDifferite;
        if (!mDifferite
            && (!modDisco::SincronizzaCartella(CartellaCoda(coda), &motivo) || !modDisco::SincronizzaCartella(CartellaCoda(prima), &motivo)))
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
    if (mDifferite) {
        const QString finale = CartellaDi(d) + u'/' + d.Id + u".xml"_s;
        if (modDisco::ScriviRiserva(finale, TestoDescrizione(d, CartellaDi(d)), &errore)) {
            mAParte.push_back({id, finale});
            mDaSincronizzare = true;
        } else {
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: descrizione di %2 non aggiornata: %3").arg(Chiave(), id, errore));
        }
    } else if (!ScriviDescrizione(d, &errore)) {
        mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: descrizione di %2 non aggiornata: %3").arg(Chiave(), id, errore));
    }
    Registra(d, QStringLiteral("Da \"%1\" a \"%2\"%3")
                    .arg(modProprieta::DescrizioneCoda(mDef.Genere, prima), modProprieta::DescrizioneCoda(mDef.Genere, coda),
                         stato.isEmpty() ? QString() : u": "_s + stato));
    AggiornaContatori();
    if (mDifferite)
        mSpostati.push_back({coda, id, Nodo(id)});
    else
        mServizio->AnnunciaSpostamento(coda, id, Nodo(id));
    return {};
}

QString RefCartellaDocumenti::Respingi(const QString& id, qint32 coda, qint32 codice, const QString& motivo, qint32 tentativi)
{
    CompletaInSospeso();
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
    CompletaInSospeso();
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

PxRisposta RefCartellaDocumenti::Esito(const PxRisposta& r) const { return r.Riuscita() ? r : Rifiuta(r.Testo, r.Esito); }

void RefCartellaDocumenti::AppendiNodo(QByteArray& out, const DatiDocumento& d) const { modNodoElenco::Appendi(out, d, mDef); }

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
    if (!Consentito(richiesta, QStringLiteral("Spostamento in coda %1").arg(coda), selezioneXml))
        return;
    // Moves asked together share their syncs; the answer goes once they are on disk.
    mDifferite = true;
    const PxRisposta r = SpostaSelezione(selezioneXml, coda);
    mDifferite = false;
    mDopo.push_back([this, richiesta, r] { Rispondi(richiesta, r); });
    if (!mConsolidaProgrammata) {
        mConsolidaProgrammata = true;
        QMetaObject::invokeMethod(this, [this] { Consolida(); }, Qt::QueuedConnection);
    }
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
    const std::optional<QStringList> id = modComandiCartella::Selezione(selezioneXml);
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
    const std::optional<QStringList> id = modComandiCartella::Selezione(selezioneXml);
    if (!id)
        return Rifiuta(u"anteprime rifiutate: selezione non leggibile"_s);
    RefCartellaDocumenti* anteprime = mDestinazione ? mDestinazione(GenereCartella::Anteprima) : nullptr;
    if (!anteprime)
        return Rifiuta(u"anteprime rifiutate: nessuna cartella anteprime"_s);
    return Esito(modComandiCartella::Anteprime(*this, *id, indirizzo, *anteprime));
}

PxRisposta RefCartellaDocumenti::Comprimi(const QString& selezioneXml)
{
    const std::optional<QStringList> id = modComandiCartella::Selezione(selezioneXml);
    if (!id || id->isEmpty())
        return Rifiuta(u"invio compresso rifiutato: selezione vuota o non leggibile"_s);
    RefCartellaDocumenti* email = mDestinazione ? mDestinazione(GenereCartella::Email) : nullptr;
    if (!email)
        return Rifiuta(u"invio compresso rifiutato: nessuna cartella email"_s);
    return Esito(modComandiCartella::Comprimi(*this, *id, *email, mEstensioneZip));
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
