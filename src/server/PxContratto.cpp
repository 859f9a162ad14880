#include "PxContratto.h"

#include <QDataStream>
#include <QIODevice>

namespace modContratto {

QString NomeServizio(const QString& chiave) { return QStringLiteral("Servizio/") + chiave; }
QString NomeCartella(const QString& chiave) { return QStringLiteral("Cartella/") + chiave; }
QString NomeCatalogo(const QString& chiave) { return QStringLiteral("Catalogo/") + chiave; }

namespace {

constexpr const char* SegnaliServer[] = {
    "Caricamento(qint32,qint32,QString)", "Pronto()", "CambioStatoServer(qint32)",
    "UtenteConnesso(QString)", "UtenteDisconnesso(QString)", "StampanteAggiunta(QString)",
    "StampanteRimossa(QString)", "FtpClienteConnesso(QString)", "FtpClienteDisconnesso(QString)",
    SegnaleRisposta,
};
constexpr const char* SlotServer[] = {"RichiediDescrizione(quint64)", "RichiediRuolo(quint64)",
                                     "LeggiFile(quint64,QString,qint64,qint32)"};

constexpr const char* SegnaliServizio[] = {
    "StatoXmlCambiato(QString)", "CambioStato()", "CambioAttivita()", "NotificaErrore(qint32,QString)",
    "Avanzamento(QString,qint32,qint32)", "DocumentiSpostati(QByteArray)", "LavoroPreso(QString,QString)",
    "LavoroRespinto(QString,QString)", SegnaleRisposta,
};
constexpr const char* SlotServizio[] = {"RichiediStato(quint64)", "Avvia(quint64)", "Sospendi(quint64)",
                                       "ConsegnaLavoro(quint64,QString,QByteArray)"};

constexpr const char* SegnaliSoloRisposta[] = {SegnaleRisposta};
constexpr const char* SlotCartella[] = {
    "RichiediElenco(quint64)", "SpostaDocumenti(quint64,QString,qint32)", "GeneraAnteprime(quint64,QString,QString)",
    "InviaCompresso(quint64,QString)", "CartellaDocumento(quint64,QString)", "FileOutput(quint64,QString,bool)",
    "Documento(quint64,QString)",
};
constexpr const char* SlotCatalogo[] = {"RichiediElenco(quint64)", "Oggetto(quint64,QString)"};

constexpr const char* SegnaliBkg[] = {"Inizio()", "Fine()", "Errore(qint32,QString,QString)", SegnaleRisposta};
constexpr const char* SlotBkg[] = {"Avvia(quint64,QString,QString,QString)", "Termina(quint64)"};

constexpr const char* SegnaliUso[] = {"Aggiornamento(qint32,qint32,qint32,qint32,qint32)", SegnaleRisposta};
constexpr const char* SlotUso[] = {"Avvia(quint64,qint32)", "Ferma(quint64)"};

} // namespace

Firme FirmeDi(Genere genere)
{
    switch (genere) {
    case Genere::Server: return {SegnaliServer, SlotServer};
    case Genere::Servizio: return {SegnaliServizio, SlotServizio};
    case Genere::Cartella: return {SegnaliSoloRisposta, SlotCartella};
    case Genere::Catalogo: return {SegnaliSoloRisposta, SlotCatalogo};
    case Genere::BkgConsole: return {SegnaliBkg, SlotBkg};
    case Genere::UsoSistema: return {SegnaliUso, SlotUso};
    }
    return {};
}

QByteArray ImpacchettaSpostamenti(std::span<const Spostamento> spostamenti)
{
    QByteArray lotto;
    QDataStream out(&lotto, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_6_0);
    out << static_cast<quint32>(spostamenti.size());
    for (const Spostamento& s : spostamenti)
        out << s.Coda << s.Id << s.Nodo;
    return lotto;
}

std::vector<Spostamento> SpacchettaSpostamenti(const QByteArray& lotto)
{
    QDataStream in(lotto);
    in.setVersion(QDataStream::Qt_6_0);
    quint32 quanti = 0;
    in >> quanti;
    std::vector<Spostamento> spostamenti;
    // Each move takes at least 12 bytes: a count past what the bytes can hold is not believed.
    if (in.status() != QDataStream::Ok || quanti > static_cast<quint32>(lotto.size() / 12))
        return {};
    spostamenti.reserve(quanti);
    for (quint32 i = 0; i < quanti; ++i) {
        Spostamento s;
        in >> s.Coda >> s.Id >> s.Nodo;
        spostamenti.push_back(std::move(s));
    }
    if (in.status() != QDataStream::Ok || !in.atEnd())
        return {};
    return spostamenti;
}

} // namespace modContratto
