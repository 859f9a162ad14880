#include "PxSrvServizio.h"

PxSrvServizio::PxSrvServizio(const QString& chiave, const QString& statoXml, QObject* parent)
    : PxSrvOggetto(modContratto::NomeServizio(chiave), parent), mChiave(chiave), mStatoXml(statoXml)
{
}

void PxSrvServizio::AlCollegamento(QObject*)
{
    Inoltra("StatoXmlCambiato(QString)", SLOT(AlStatoXml(QString)));
    Inoltra("CambioStato()", SIGNAL(CambioStato()));
    Inoltra("CambioAttivita()", SIGNAL(CambioAttivita()));
    Inoltra("NotificaErrore(qint32,QString)", SIGNAL(NotificaErrore(qint32,QString)));
    Inoltra("Avanzamento(QString,qint32,qint32)", SIGNAL(Avanzamento(QString,qint32,qint32)));
    Inoltra("DocumentiSpostati(QByteArray)", SLOT(AlDocumentiSpostati(QByteArray)));
    Inoltra("LavoroPreso(QString,QString)", SIGNAL(LavoroPreso(QString,QString)));
    Inoltra("LavoroRespinto(QString,QString)", SIGNAL(LavoroRespinto(QString,QString)));
    // What changed between the description this copy came from and the binding above
    // arrives with this answer; every later change follows it in order.
    Chiama("RichiediStato", this, [this](const PxRisposta& r) {
        if (r.Riuscita())
            AlStatoXml(r.Testo);
    });
}

void PxSrvServizio::AlStatoXml(const QString& xml)
{
    if (xml == mStatoXml)
        return;
    mStatoXml = xml;
    emit StatoXmlCambiato();
}

void PxSrvServizio::AlDocumentiSpostati(const QByteArray& lotto)
{
    // The moves a server made together arrive in one message; the views take them one by one,
    // inside this one turn of the event loop, so they are drawn once.
    for (const modContratto::Spostamento& s : modContratto::SpacchettaSpostamenti(lotto))
        emit DocumentoSpostato(s.Coda, s.Id, s.Nodo);
}

void PxSrvServizio::Avvia(QObject* richiedente, Esito fatto) { Chiama("Avvia", richiedente, std::move(fatto)); }

void PxSrvServizio::Sospendi(QObject* richiedente, Esito fatto) { Chiama("Sospendi", richiedente, std::move(fatto)); }

void PxSrvServizio::ConsegnaLavoro(const QString& base, const QByteArray& file, QObject* richiedente, Esito fatto)
{
    Chiama("ConsegnaLavoro", richiedente, std::move(fatto), base, file);
}

bool PxSrvServizio::LeggiStato(pugi::xml_document& doc) const
{
    const QByteArray xml = mStatoXml.toUtf8();
    if (doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size())) && doc.document_element())
        return true;
    doc.reset();
    return false;
}

QString PxSrvServizio::CartellaIngresso() const
{
    pugi::xml_document doc;
    return LeggiStato(doc) ? QString::fromUtf8(doc.document_element().child_value("CartellaIngresso")).trimmed() : QString();
}
