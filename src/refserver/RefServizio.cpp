#include "RefServizio.h"

#include "RefAccesso.h"

#include "PxContratto.h"
#include "PxRigaLog.h"
#include "modDisco.h"
#include "modLavoro.h"
#include "modPacchettoLavoro.h"

#include <QDir>
#include <QFileInfo>

#include <sstream>

namespace {

void ImpostaTesto(pugi::xml_node padre, const char* nome, const QString& valore)
{
    pugi::xml_node n = padre.child(nome);
    if (!n)
        n = padre.append_child(nome);
    n.text().set(valore.toUtf8().constData());
}

} // namespace

RefServizio::RefServizio(const modCatalogo::VoceServizio& voce, const pugi::xml_node& configurazione,
                         const QString& cartellaLog, QObject* parent)
    : QObject(parent),
      mVoce(voce),
      mChiave(QString::fromLatin1(voce.Chiave)),
      mLog(QDir(cartellaLog).filePath(mChiave + QStringLiteral(".log")))
{
    pugi::xml_node radice = mDoc.append_child(voce.Chiave);
    if (configurazione) {
        for (const pugi::xml_node figlio : configurazione.children())
            radice.append_copy(figlio);
    }
    // The configured state is where the service starts; a missing or unreadable one means running.
    const int iniziale = radice.child("Stato").child("Codice").text().as_int(modCatalogo::StatoInFunzione);
    mCodice = iniziale;
    pugi::xml_node stato = radice.child("Stato") ? radice.child("Stato") : radice.append_child("Stato");
    ImpostaTesto(stato, "Codice", QString::number(mCodice));
    ImpostaTesto(stato, "Descrizione", modCatalogo::DescrizioneStato(mCodice));
    pugi::xml_node attivita = radice.child("Attivita") ? radice.child("Attivita") : radice.append_child("Attivita");
    if (!attivita.child("Descrizione"))
        ImpostaTesto(attivita, "Descrizione", QStringLiteral("In attesa"));
    pugi::xml_node errore = radice.child("Errore") ? radice.child("Errore") : radice.append_child("Errore");
    if (!errore.child("Codice"))
        ImpostaTesto(errore, "Codice", QStringLiteral("0"));
    if (!errore.child("Descrizione"))
        ImpostaTesto(errore, "Descrizione", QString());
    ImpostaTesto(radice, "FileLog", QDir::toNativeSeparators(mLog.Percorso()));
    Componi();
}

pugi::xml_node RefServizio::Elemento(const char* nome)
{
    pugi::xml_node radice = mDoc.document_element();
    pugi::xml_node n = radice.child(nome);
    return n ? n : radice.append_child(nome);
}

void RefServizio::Componi()
{
    // A service with printers counts those at work beside their list, as every change of the
    // list or of a printer's state is published through here.
    pugi::xml_node radice = mDoc.document_element();
    if (const pugi::xml_node stampanti = radice.child("Stampanti")) {
        int inFunzione = 0;
        for (const pugi::xml_node s : stampanti.children("Stampante"))
            inFunzione += s.child("Stato").child("Codice").text().as_int() == modCatalogo::StatoInFunzione ? 1 : 0;
        ImpostaTesto(radice, "StampantiInFunzione", QString::number(inFunzione));
    }
    std::ostringstream out;
    mDoc.save(out, "", pugi::format_raw | pugi::format_no_declaration);
    mStatoXml = QString::fromStdString(out.str());
}

void RefServizio::Pubblica(bool presto)
{
    Componi();
    if (presto) {
        if (!mInAttesa) {
            mInAttesa = true;
            QMetaObject::invokeMethod(this, &RefServizio::PubblicaInAttesa, Qt::QueuedConnection);
        }
        return;
    }
    mInAttesa = false;
    emit StatoXmlCambiato(mStatoXml);
}

void RefServizio::PubblicaInAttesa()
{
    if (!mInAttesa)
        return;
    mInAttesa = false;
    emit StatoXmlCambiato(mStatoXml);
}

void RefServizio::AnnunciaSpostamento(qint32 coda, const QString& id, const QString& nodo)
{
    const modContratto::Spostamento uno{coda, id, nodo};
    AnnunciaSpostamenti({&uno, 1});
}

void RefServizio::AnnunciaSpostamenti(std::span<const modContratto::Spostamento> spostamenti)
{
    if (!spostamenti.empty())
        emit DocumentiSpostati(modContratto::ImpacchettaSpostamenti(spostamenti));
}

void RefServizio::RichiediStato(quint64 richiesta)
{
    emit Risposta(richiesta, modContratto::Ok, mStatoXml, {});
}

bool RefServizio::Consentito(quint64 richiesta, const QString& operazione)
{
    QString motivo;
    if (!RefAccesso::PuoAgire(operazione, &motivo)) {
        mLog.Scrivi(modRigaLog::LivelloAvviso, motivo);
        emit Risposta(richiesta, modContratto::Rifiutato, motivo, {});
        return false;
    }
    mLog.Scrivi(modRigaLog::LivelloInformazione, QStringLiteral("%1 chiesto %2").arg(operazione, RefAccesso::Chi()));
    return true;
}

void RefServizio::Avvia(quint64 richiesta)
{
    if (!Consentito(richiesta, QStringLiteral("Avvio di %1").arg(mChiave)))
        return;
    if (AvviaServizio())
        emit Risposta(richiesta, modContratto::Ok, {}, {});
    else
        emit Risposta(richiesta, modContratto::Rifiutato, QStringLiteral("%1 è disabilitato").arg(mChiave), {});
}

void RefServizio::Sospendi(quint64 richiesta)
{
    if (!Consentito(richiesta, QStringLiteral("Sospensione di %1").arg(mChiave)))
        return;
    if (SospendiServizio())
        emit Risposta(richiesta, modContratto::Ok, {}, {});
    else
        emit Risposta(richiesta, modContratto::Rifiutato, QStringLiteral("%1 è disabilitato").arg(mChiave), {});
}

void RefServizio::ConsegnaLavoro(quint64 richiesta, const QString& base, const QByteArray& file)
{
    const auto rifiuta = [&](qint32 esito, const QString& motivo) {
        mLog.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Lavoro consegnato non accettato: %1").arg(motivo));
        emit Risposta(richiesta, esito, motivo, {});
    };
    if (!Consentito(richiesta, QStringLiteral("Consegna del lavoro %1").arg(base.left(200))))
        return;
    if (mCartellaIngresso.isEmpty())
        return rifiuta(modContratto::Rifiutato, QStringLiteral("%1 non ha una cartella di ingresso").arg(mChiave));
    // The name is checked, not mended: what the console asked for is what it waits for.
    if (!modDisco::NomeSemplice(base) || base.contains(QStringLiteral("..")) || modLavoro::Sanifica(base) != base)
        return rifiuta(modContratto::Rifiutato, QStringLiteral("nome di lavoro non ammesso: %1").arg(base.left(200)));
    QString errore;
    const std::optional<std::vector<modLavoro::File>> lavoro = modPacchettoLavoro::Leggi(file, &errore);
    if (!lavoro)
        return rifiuta(modContratto::Rifiutato, errore);
    const modLavoro::Esito esito = modLavoro::Consegna(mCartellaIngresso, base, *lavoro);
    if (!esito.Riuscito)
        return rifiuta(modContratto::Fallito, esito.Errore);
    emit Risposta(richiesta, modContratto::Ok, QFileInfo(esito.Base).fileName(), {});
}

void RefServizio::CambiaStato(qint32 codice)
{
    if (codice == mCodice)
        return;
    mCodice = codice;
    pugi::xml_node stato = Elemento("Stato");
    ImpostaTesto(stato, "Codice", QString::number(codice));
    ImpostaTesto(stato, "Descrizione", modCatalogo::DescrizioneStato(codice));
    mLog.Scrivi(modRigaLog::LivelloInformazione,
                QStringLiteral("%1: %2").arg(QString::fromUtf8(mVoce.Nome), modCatalogo::DescrizioneStato(codice)));
    Pubblica();
    emit CambioStato();
}

bool RefServizio::AvviaServizio()
{
    if (mCodice == 8) // disabled by configuration: it cannot run
        return false;
    ImpostaErrore(0, QString());
    mLog.Riarma(); // a log still failing shows again on the state just cleared
    CambiaStato(modCatalogo::StatoInFunzione);
    return true;
}

bool RefServizio::SospendiServizio()
{
    if (mCodice == 8)
        return false;
    CambiaStato(modCatalogo::StatoSospeso);
    return true;
}

void RefServizio::ImpostaAttivita(const QString& attivita)
{
    pugi::xml_node n = Elemento("Attivita");
    if (QString::fromUtf8(n.child("Descrizione").child_value()) == attivita)
        return;
    ImpostaTesto(n, "Descrizione", attivita);
    Pubblica();
    emit CambioAttivita();
}

void RefServizio::ImpostaErrore(qint32 codice, const QString& descrizione)
{
    pugi::xml_node n = Elemento("Errore");
    ImpostaTesto(n, "Codice", QString::number(codice));
    ImpostaTesto(n, "Descrizione", descrizione);
    Pubblica();
    if (codice != 0) {
        mLog.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("Errore %1: %2").arg(codice).arg(descrizione));
        emit NotificaErrore(codice, descrizione);
    }
}
