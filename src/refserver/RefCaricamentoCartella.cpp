#include "RefCaricamentoCartella.h"

#include "PxRigaLog.h"
#include "RefLog.h"
#include "modDisco.h"
#include "modProprieta.h"

#include <QDir>
#include <QFile>
#include <QHash>

#include <pugixml.hpp>

#include <algorithm>
#include <thread>

using namespace Qt::StringLiterals;

RefCaricamentoCartella::RefCaricamentoCartella(const modCartelle::Definizione& definizione, const QString& cartellaServer,
                                               const QString& radice, RefLog& logServer,
                                               std::function<void(QStringView nome)> osserva)
    : mDef(definizione), mCartellaServer(cartellaServer), mRadice(radice), mLogServer(logServer), mOsserva(std::move(osserva))
{
}

QString RefCaricamentoCartella::CartellaCoda(qint32 coda) const { return mRadice + u"/Coda_"_s + QString::number(coda); }

qint64 RefCaricamentoCartella::Prepara()
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
            mOsserva(nome); // unreadable ones too: their ids are taken
            mCandidati.push_back({coda, nome});
        }
    }
    // Creations and jobs set aside keep their ids in their names.
    const QDir respinti(QDir(mCartellaServer).filePath(u"LavoriRespinti/"_s + QString::fromLatin1(mDef.Servizio)));
    for (const QString& nome : respinti.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot))
        mOsserva(nome);
    mPreparato = true;
    return static_cast<qint64>(mCandidati.size());
}

std::vector<RefCaricamentoCartella::Documento> RefCaricamentoCartella::Leggi(const std::function<void(qint64 letti)>& avanzamento,
                                                                            const std::atomic<bool>* interrompi)
{
    struct Letto
    {
        qint32 Coda;
        QString Nome;
        DatiDocumento Dati;
        QString Motivo; // why it was skipped; "" when read
        bool FuoriCoda = false;
    };
    if (!mPreparato)
        Prepara();
    mPreparato = false;
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
        return {};

    const auto chiave = [](const Letto& l) { return l.Dati.Elaborato.isValid() ? l.Dati.Elaborato : l.Dati.Inserito; };
    std::stable_sort(letti.begin(), letti.end(), [&](const Letto& a, const Letto& b) { return chiave(a) < chiave(b); });
    std::vector<Documento> documenti;
    documenti.reserve(letti.size());
    QHash<QString, qint32> visti; // id -> the queue it was kept in
    visti.reserve(static_cast<qsizetype>(letti.size()));
    for (Letto& l : letti) {
        if (!l.Motivo.isEmpty()) {
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: documento %2 saltato, %3")
                                                             .arg(Chiave(), CartellaCoda(l.Coda) + u'/' + l.Nome, l.Motivo));
            continue;
        }
        if (const auto doppio = visti.constFind(l.Dati.Id); doppio != visti.cend()) {
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: documento %2 presente in due code, tenuto in %3")
                                                             .arg(Chiave(), l.Dati.Id)
                                                             .arg(*doppio));
            continue;
        }
        visti.insert(l.Dati.Id, l.Dati.Coda);
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
        documenti.push_back({std::move(l.Dati), l.FuoriCoda});
    }
    return documenti;
}

bool RefCaricamentoCartella::RimettiInIngresso(const QString& provvisoria)
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

void RefCaricamentoCartella::Recupera(const QString& cartellaCoda)
{
    const QDir cartella(cartellaCoda);
    const QStringList interrotte =
        cartella.entryList({u".*.nuovo"_s}, QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    if (interrotte.isEmpty())
        return;
    const QString respinti = QDir(mCartellaServer).filePath(u"LavoriRespinti/"_s + QString::fromLatin1(mDef.Servizio));
    QDir().mkpath(respinti);
    for (const QString& nome : interrotte) {
        mOsserva(QStringView(nome).mid(1)); // whatever happens to it, its id stays taken
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
