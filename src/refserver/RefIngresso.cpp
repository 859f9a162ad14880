#include "RefIngresso.h"

#include "PxIntestazioneHpx.h"
#include "PxRigaLog.h"
#include "RefCartellaDocumenti.h"
#include "RefLog.h"
#include "RefServizio.h"
#include "modDisco.h"
#include "modFileDocumento.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

RefIngresso::RefIngresso(const QString& cartellaServer, RefCartellaDocumenti& cartella, RefServizio& servizio,
                         RefLog& logServer, QObject* parent)
    : QObject(parent),
      mCartella(CartellaIngresso(cartellaServer, servizio.Chiave())),
      mRespinti(CartellaRespinti(cartellaServer, servizio.Chiave())),
      mDocumenti(cartella),
      mServizio(servizio),
      mLogServer(logServer),
      // Parented, so that they follow the server to its thread.
      mOsservatore(this),
      mTimer(this),
      mRitardo(this)
{
    QDir().mkpath(mCartella);
    mServizio.ImpostaCartellaIngresso(mCartella);
    pugi::xml_node ingresso = mServizio.Elemento("CartellaIngresso");
    ingresso.text().set(QDir::toNativeSeparators(mCartella).toUtf8().constData());
    mServizio.Pubblica();
    // A burst of changes (three files a job) makes one look, 50 ms after the first.
    mRitardo.setSingleShot(true);
    mRitardo.setInterval(50);
    connect(&mRitardo, &QTimer::timeout, this, &RefIngresso::Scansiona);
    connect(&mOsservatore, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!mRitardo.isActive())
            mRitardo.start();
    });
    connect(&mTimer, &QTimer::timeout, this, &RefIngresso::Scansiona);
}

QString RefIngresso::CartellaIngresso(const QString& cartellaServer, const QString& servizio)
{
    return QDir(cartellaServer).filePath(u"Ingresso/"_s + servizio);
}

QString RefIngresso::CartellaRespinti(const QString& cartellaServer, const QString& servizio)
{
    return QDir(cartellaServer).filePath(u"LavoriRespinti/"_s + servizio);
}

void RefIngresso::Avvia(int millisecondi)
{
    if (!mOsservatore.directories().contains(mCartella))
        mOsservatore.addPath(mCartella);
    if (millisecondi > 0)
        mTimer.start(millisecondi);
}

void RefIngresso::Ferma()
{
    if (!mOsservatore.directories().isEmpty())
        mOsservatore.removePaths(mOsservatore.directories());
    mTimer.stop();
    mRitardo.stop();
}

int RefIngresso::Scansiona()
{
    int presi = 0;
    const QDir cartella(mCartella);
    // Oldest first, so that jobs keep the order they arrived in. System entries too (pipes,
    // devices, dangling links): they are set aside, not left waiting unseen.
    for (const QFileInfo& f : cartella.entryInfoList({u"*.hpx"_s}, QDir::Files | QDir::System | QDir::Hidden,
                                                     QDir::Time | QDir::Reversed))
        if (Prendi(f.absolutePath() + u'/' + f.completeBaseName()))
            ++presi;
    // A body whose header never comes waits, but not unseen: one line each.
    QSet<QString> orfani;
    for (const QString& nome : cartella.entryList({u"*.bpx"_s}, QDir::Files | QDir::System | QDir::Hidden)) {
        const QString base = nome.chopped(4);
        if (modDisco::Occupato(cartella.filePath(base + u".hpx"_s)))
            continue;
        orfani.insert(base);
        if (!mOrfani.contains(base))
            mServizio.Log().Scrivi(modRigaLog::LivelloAvviso, QStringLiteral("Lavoro %1: corpo senza intestazione, in attesa").arg(base));
    }
    mOrfani = orfani;
    return presi;
}

bool RefIngresso::Prendi(const QString& base)
{
    // Only regular files are read or taken: a link is never followed, and a pipe or a
    // device could be read for ever.
    for (const char* estensione : {".hpx", ".bpx", ".spx"}) {
        const QString f = base + QString::fromLatin1(estensione);
        if (modDisco::Occupato(f) && !modDisco::FileRegolare(f)) {
            Respingi(base, QStringLiteral("%1 non è un file regolare").arg(QFileInfo(f).fileName()));
            return false;
        }
    }
    QFile file(base + u".hpx"_s);
    if (!file.open(QIODevice::ReadOnly))
        return false; // gone meanwhile, or not readable yet: next look
    // One byte past the limit is enough to know the header is too long.
    const QByteArray testo = file.read(PxIntestazioneHpx::MassimoTesto + 1);
    PxIntestazioneHpx intestazione;
    QString errore;
    DatiDocumento d;
    if (!intestazione.Analizza(testo, &errore)) {
        Respingi(base, u"intestazione non valida: "_s + errore);
        return false;
    }
    file.close();
    if (const QString motivo = modFileDocumento::DaIntestazione(intestazione, mDocumenti.Definizione().Genere, d);
        !motivo.isEmpty()) {
        Respingi(base, u"intestazione incompleta: "_s + motivo);
        return false;
    }
    if (!QFileInfo::exists(base + u".bpx"_s)) {
        Respingi(base, u"manca il corpo (.bpx)"_s);
        return false;
    }
    // A job whose creation failed keeps the id it was given: retries use up no new ones.
    d.Id = mIdInAttesa.value(base);
    if (d.Id.isEmpty() || mDocumenti.Trova(d.Id) || modDisco::Occupato(mDocumenti.CartellaNuova(d.Id)))
        d.Id = mDocumenti.NuovoId();
    d.Coda = 0;
    d.Stato = u"In attesa"_s;
    d.Inserito = QDateTime::currentDateTime();
    d.FileCorpo = d.Id + u".bpx"_s;
    d.FileIntestazione = d.Id + u".hpx"_s;
    std::vector<RefCartellaDocumenti::FileNuovo> nuovi{{d.FileCorpo, {}, base + u".bpx"_s},
                                                       {d.FileIntestazione, {}, base + u".hpx"_s}};
    if (QFileInfo::exists(base + u".spx"_s)) {
        d.FileScript = d.Id + u".spx"_s;
        nuovi.push_back({d.FileScript, {}, base + u".spx"_s});
    }
    const QString id = d.Id;
    if (const QString errore2 = mDocumenti.Crea(std::move(d), nuovi); !errore2.isEmpty()) {
        mIdInAttesa.insert(base, id);
        mServizio.Log().Scrivi(modRigaLog::LivelloErrore,
                               QStringLiteral("Lavoro %1 non preso in carico: %2").arg(QFileInfo(base).fileName(), errore2));
        return false;
    }
    mIdInAttesa.remove(base);
    mServizio.Log().Scrivi(modRigaLog::LivelloInformazione,
                           QStringLiteral("Lavoro %1 preso in carico come documento %2").arg(QFileInfo(base).fileName(), id));
    mServizio.AnnunciaLavoroPreso(QFileInfo(base).fileName(), id);
    return true;
}

void RefIngresso::Respingi(const QString& base, const QString& motivo)
{
    QDir().mkpath(mRespinti);
    const QString nome = QFileInfo(base).fileName();
    // A name already set aside gets a number appended: nothing is overwritten, and a link
    // moves as a link.
    const auto libero = [](const QString& d) {
        return !modDisco::Occupato(d + u".hpx"_s) && !modDisco::Occupato(d + u".bpx"_s) && !modDisco::Occupato(d + u".spx"_s);
    };
    QString destinazione = mRespinti + u'/' + nome;
    for (int n = 2; !libero(destinazione); ++n)
        destinazione = mRespinti + u'/' + nome + u'-' + QString::number(n);
    for (const char* estensione : {".spx", ".bpx", ".hpx"}) {
        const QString da = base + QString::fromLatin1(estensione);
        QString errore;
        if (modDisco::Occupato(da) && !modDisco::Rinomina(da, destinazione + QString::fromLatin1(estensione), &errore))
            mLogServer.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Impossibile mettere da parte %1: %2").arg(da, errore));
    }
    QString errore;
    if (!modDisco::SincronizzaCartella(mRespinti, &errore) || !modDisco::SincronizzaCartella(mCartella, &errore))
        mLogServer.Scrivi(modRigaLog::LivelloErrore, errore);
    const QString riga = QStringLiteral("Lavoro %1 respinto, %2; messo da parte in %3").arg(nome, motivo, mRespinti);
    mServizio.Log().Scrivi(modRigaLog::LivelloErrore, riga);
    mLogServer.Scrivi(modRigaLog::LivelloErrore, mServizio.Chiave() + u": "_s + riga);
    // The console that dropped the job waits for its fate: the reason, not only the log line.
    mServizio.AnnunciaLavoroRespinto(nome, motivo);
}
