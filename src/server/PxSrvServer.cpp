#include "PxSrvServer.h"

#include <QDir>

#include "PxCollegamento.h"
#include "PxLetturaFile.h"
#include "PxSrvBkgConsole.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvCatalogo.h"
#include "PxSrvEventiServer.h"
#include "PxSrvServizio.h"
#include "PxSrvUsoSistema.h"

#include <QTimer>
#include <QVariant>

#include <algorithm>

#include <pugixml.hpp>


PxSrvServer::PxSrvServer(PxCollegamento* collegamento, QObject* parent)
    : PxSrvOggetto(QString::fromLatin1(modContratto::NomeServer), parent),
      mCollegamento(collegamento),
      mEventi(new PxSrvEventiServer(this)),
      mBkgConsole(new PxSrvBkgConsole(this)),
      mUsoSistema(new PxSrvUsoSistema(this)),
      mRiprova(new QTimer(this))
{
    mRiprova->setSingleShot(true);
    connect(mRiprova, &QTimer::timeout, this, &PxSrvServer::Tentativo);
    if (mCollegamento)
        connect(mCollegamento, &PxCollegamento::Interrotto, this, &PxSrvServer::AlInterruzione);
}

PxSrvServer::~PxSrvServer() = default;

QString PxSrvServer::PercorsoLocale(const QString& scritto, const QString& cartellaServer)
{
    const QString percorso = QDir::fromNativeSeparators(scritto.trimmed());
    if (percorso.isEmpty() || !QDir::isRelativePath(percorso) || cartellaServer.isEmpty())
        return percorso;
    return QDir(cartellaServer).filePath(percorso);
}

bool PxSrvServer::FileLocali() const { return mCollegamento && mCollegamento->FileLocali(); }

void PxSrvServer::LeggiFile(const QString& percorso, qint64 inizio, qint32 quanti, QObject* richiedente, Esito fatto)
{
    Chiama("LeggiFile", richiedente, std::move(fatto), percorso, inizio, quanti);
}

void PxSrvServer::LeggiTutto(const QString& percorso, qint64 massimo, QObject* richiedente, Esito fatto)
{
    if (fatto)
        LeggiDa(percorso, {}, {}, massimo, richiedente, std::move(fatto));
}

void PxSrvServer::LeggiDa(const QString& percorso, QByteArray letti, const QString& identita, qint64 massimo,
                          QObject* richiedente, Esito fatto)
{
    // Up to one byte past the limit, which tells a file too large from one that fits.
    const auto quanti = static_cast<qint32>(std::min<qint64>(massimo + 1 - letti.size(), modContratto::MassimoLettura));
    LeggiFile(percorso, letti.size(), quanti, richiedente,
              [this, percorso, letti, identita, massimo, richiedente, fatto = std::move(fatto)](const PxRisposta& r) mutable {
                  PxLetturaFile pezzo;
                  if (!pezzo.Da(r)) {
                      fatto(r.Riuscita() ? PxRisposta{modContratto::Fallito, QStringLiteral("risposta non leggibile"), {}} : r);
                      return;
                  }
                  // Another file took the name between two pieces: no copy made of two files.
                  if (!identita.isEmpty() && pezzo.Identita != identita) {
                      fatto({modContratto::Fallito, QStringLiteral("%1 è cambiato durante la lettura").arg(percorso), {}});
                      return;
                  }
                  if (pezzo.Dimensione > massimo) {
                      fatto({modContratto::Rifiutato,
                             QStringLiteral("file di %1 byte, oltre il massimo di %2").arg(pezzo.Dimensione).arg(massimo), {}});
                      return;
                  }
                  letti += pezzo.Dati;
                  if (!pezzo.Dati.isEmpty() && letti.size() < pezzo.Dimensione) {
                      LeggiDa(percorso, std::move(letti), pezzo.Identita, massimo, richiedente, std::move(fatto));
                      return;
                  }
                  fatto({modContratto::Ok, r.Testo, letti});
              });
}

void PxSrvServer::Connetti()
{
    if (!mCollegamento) {
        AlInterruzione(QStringLiteral("nessun collegamento al server"));
        return;
    }
    Lega();
}

void PxSrvServer::Lega()
{
    mCollegamento->Acquisisci(Nome(), this, [this](QObject* sorgente) {
        if (!sorgente) {
            AlInterruzione(QStringLiteral("il server non pubblica %1").arg(Nome()));
            return;
        }
        // Constant for the server's life: read once, from the local object or the replica.
        // A server found again keeps the folder and text the console started with.
        if (!mLegatoUnaVolta) {
            mCartella = sorgente->property("Cartella").toString();
            mIdentificativo = sorgente->property("Identificativo").toString();
        }
        Collega(sorgente);
        AlCambioStatoServer(sorgente->property("Stato").toInt());
        Acquisisci(mBkgConsole, false);
        Acquisisci(mUsoSistema, false);
        if (!mLegatoUnaVolta) {
            mLegatoUnaVolta = true;
            emit Collegato();
        }
        Chiama("RichiediRuolo", this, [this](const PxRisposta& r) {
            if (!r.Riuscita())
                return;
            mRuolo = r.Testo;
            mNomeChiamante = QString::fromUtf8(r.Dati);
            emit RuoloCambiato();
        });
        // The installation's settings come through the server like every other file, before
        // the parts are ready: whoever reads them afterwards finds them there.
        mDaCollegare += 2; // the settings and the description
        LeggiFile(QString::fromLatin1(FileConfigurazione), 0, modContratto::MassimoLettura, this, [this](const PxRisposta& r) {
            mConfigurazione = r.Riuscita() ? PxLettoreIni::DaDati(r.Dati) : PxLettoreIni();
            ParteCollegata();
        });
        Chiama("RichiediDescrizione", this, [this](const PxRisposta& r) { AlDescrizione(r); });
    });
}

bool PxSrvServer::Riprovando() const { return mRiprova->isActive(); }

void PxSrvServer::ProgrammaTentativo()
{
    mRiprova->start(mAttesa);
    emit Riprova(mAttesa);
    mAttesa = std::min(mAttesa * 2, AttesaMassima);
}

void PxSrvServer::Tentativo()
{
    if (!mCollegamento || !mCollegamento->Ricollega())
        return;
    mInRiconnessione = true;
    mDaCollegare = 0;
    // Should this attempt not be answered before the next is due, the next replaces it.
    ProgrammaTentativo();
    Lega();
}

void PxSrvServer::AlCollegamento(QObject*)
{
    Inoltra("Caricamento(qint32,qint32,QString)", SIGNAL(Caricamento(qint32,qint32,QString)));
    Inoltra("CambioStatoServer(qint32)", SLOT(AlCambioStatoServer(qint32)));
    // The notices of clients, printers and FTP clients go on to the events object.
    for (const char* firma : {"UtenteConnesso(QString)", "UtenteDisconnesso(QString)", "StampanteAggiunta(QString)",
                              "StampanteRimossa(QString)", "FtpClienteConnesso(QString)", "FtpClienteDisconnesso(QString)"})
        Inoltra(firma, mEventi, ('2' + QByteArray(firma)).constData());
}

void PxSrvServer::AlCambioStatoServer(qint32 codice)
{
    if (codice == mStato)
        return;
    mStato = codice;
    emit StatoCambiato(codice);
    emit mEventi->CambioStatoServer(codice);
}

void PxSrvServer::Acquisisci(PxSrvOggetto* parte, bool parteDescritta)
{
    if (parteDescritta)
        ++mDaCollegare;
    mCollegamento->Acquisisci(parte->Nome(), parte, [this, parte, parteDescritta](QObject* sorgente) {
        parte->Collega(sorgente);
        if (parteDescritta)
            ParteCollegata();
    });
}

void PxSrvServer::ParteCollegata()
{
    if (--mDaCollegare != 0)
        return;
    const bool ritrovato = std::exchange(mInRiconnessione, false);
    if (ritrovato) {
        mRiprova->stop();
        mAttesa = PrimaAttesa;
        mInterruzione.clear();
    }
    if (!mCaricato) {
        mCaricato = true;
        emit Pronto();
    } else if (ritrovato) {
        emit Ricollegato();
    }
}

void PxSrvServer::AlDescrizione(const PxRisposta& risposta)
{
    pugi::xml_document doc;
    const pugi::xml_node radice = risposta.Riuscita() && doc.load_buffer(risposta.Dati.constData(),
                                                                          static_cast<size_t>(risposta.Dati.size()))
        ? doc.child("Server")
        : pugi::xml_node();
    if (!radice) {
        AlInterruzione(risposta.Riuscita() ? QStringLiteral("descrizione del server non leggibile") : risposta.Testo);
        return;
    }
    AlCambioStatoServer(radice.attribute("Stato").as_int(mStato));
    for (const pugi::xml_node n : radice.children()) {
        const QString chiave = QString::fromUtf8(n.attribute("Chiave").value());
        if (chiave.isEmpty())
            continue;
        const std::string_view genere = n.name();
        // Found again: the parts the console holds bind to the server's new objects.
        if (PxSrvOggetto* parte = genere == "Servizio" ? static_cast<PxSrvOggetto*>(mServizi.value(chiave))
                : genere == "Cartella"                 ? static_cast<PxSrvOggetto*>(mCartelle.value(chiave))
                : genere == "Catalogo"                 ? static_cast<PxSrvOggetto*>(mCataloghi.value(chiave))
                                                       : nullptr) {
            Acquisisci(parte, true);
            continue;
        }
        if (genere == "Servizio") {
            auto* servizio = new PxSrvServizio(chiave, QString::fromUtf8(n.child_value()), this);
            mServizi.insert(chiave, servizio);
            mChiavi << chiave;
            Acquisisci(servizio, true);
        } else if (genere == "Cartella") {
            QList<qint32> opzionali;
            for (const QString& coda : QString::fromUtf8(n.attribute("CodeOpzionali").value()).split(u' ', Qt::SkipEmptyParts))
                opzionali << coda.toInt();
            auto* cartella = new PxSrvCartellaDocumenti(chiave, QString::fromUtf8(n.attribute("Servizio").value()),
                                                        FileLocali(), opzionali, this);
            mCartelle.insert(chiave, cartella);
            Acquisisci(cartella, true);
        } else if (genere == "Catalogo") {
            auto* catalogo = new PxSrvCatalogo(chiave, this);
            mCataloghi.insert(chiave, catalogo);
            Acquisisci(catalogo, true);
        }
    }
    ParteCollegata(); // the description's own hold, taken when it was asked for
}

void PxSrvServer::AlInterruzione(const QString& motivo)
{
    mInterruzione = motivo.isEmpty() ? QStringLiteral("collegamento interrotto") : motivo;
    Interrompi(mInterruzione);
    for (PxSrvOggetto* parte : findChildren<PxSrvOggetto*>(Qt::FindDirectChildrenOnly))
        parte->Interrompi(motivo);
    if (mRiprova->isActive())
        return; // an attempt after a loss failed: the next one is already due
    // A server that said it stops for good is not waited for; nor is one never reached.
    const bool riprova = mLegatoUnaVolta && mStato != modContratto::ServerInArresto && mCollegamento
        && mCollegamento->Ricollegabile();
    if (riprova)
        mRiprova->start(mAttesa); // before the notice, so that its handlers see it due
    emit Interrotto(mInterruzione);
    if (riprova)
        ProgrammaTentativo();
}
