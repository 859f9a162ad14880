#include "PxCtl.h"

#include "PxAttesaLavoro.h"
#include "PxConsoleResDll.h"
#include "modContenuto.h"

#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "PxXmlCallBack.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <pugixml.hpp>

#include <cstdio>
#include <sstream>

namespace {

QString Testo(const pugi::xml_node& nodo, const char* percorso)
{
    return QString::fromUtf8(nodo.first_element_by_path(percorso).child_value());
}

// The selection of the documents `id`, as every document command carries it.
QString Selezione(const QStringList& id)
{
    pugi::xml_document doc;
    pugi::xml_node radice = doc.append_child("Root");
    for (const QString& i : id)
        radice.append_child("ID").text().set(i.toUtf8().constData());
    std::ostringstream testo;
    doc.save(testo, "", pugi::format_raw | pugi::format_no_declaration);
    return QString::fromStdString(testo.str());
}

// The queue number after --to or --queue in `argomenti` (taken out); -1 when absent.
int PrendiNumero(QStringList& argomenti, const QString& opzione, bool* valido)
{
    *valido = true;
    const qsizetype i = argomenti.indexOf(opzione);
    if (i < 0)
        return -1;
    const QString valore = argomenti.value(i + 1);
    argomenti.remove(i, std::min<qsizetype>(2, argomenti.size() - i));
    bool ok = false;
    const int numero = valore.toInt(&ok);
    *valido = ok && numero >= 0;
    return numero;
}

} // namespace

PxCtl::PxCtl(PxSrvServer& server, bool json, QObject* parent) : QObject(parent), mServer(server), mJson(json) {}

bool PxCtl::Conosciuto(const QString& comando)
{
    static const QStringList comandi = {QStringLiteral("status"), QStringLiteral("list"),    QStringLiteral("move"),
                                        QStringLiteral("start"),  QStringLiteral("suspend"), QStringLiteral("watch"),
                                        QStringLiteral("test-page")};
    return comandi.contains(comando);
}

void PxCtl::Esegui(const QString& comando, const QStringList& argomenti)
{
    if (comando == u"status")
        Stato();
    else if (comando == u"list")
        Elenco(argomenti);
    else if (comando == u"move")
        Sposta(argomenti);
    else if (comando == u"start" || comando == u"suspend")
        Servizio(comando, argomenti);
    else if (comando == u"watch")
        Osserva();
    else if (comando == u"test-page")
        PaginaDiProva(argomenti);
    else
        Termina(Uso, QStringLiteral("unknown command \"%1\" (see --help)").arg(comando));
}

void PxCtl::Stampa(const QByteArray& testo)
{
    std::fwrite(testo.constData(), 1, static_cast<size_t>(testo.size()), stdout);
    std::fflush(stdout);
}

void PxCtl::Termina(int esito, const QString& messaggio)
{
    if (!messaggio.isEmpty())
        std::fprintf(stderr, "plxsrvctl: %s\n", qPrintable(messaggio));
    emit Fine(esito);
}

QString PxCtl::Cartella(const QString& nome) const
{
    for (const QString& candidato : {nome, QStringLiteral("PxSrv") + nome, QStringLiteral("PxSrvDoc") + nome})
        for (const QString& servizio : mServer.Chiavi())
            if (mServer.CartellaDocumenti(servizio) && servizio.compare(candidato, Qt::CaseInsensitive) == 0)
                return servizio;
    return {};
}

QString PxCtl::ChiaveServizio(const QString& nome) const
{
    for (const QString& candidato : {nome, QStringLiteral("PxSrv") + nome})
        for (const QString& servizio : mServer.Chiavi())
            if (servizio.compare(candidato, Qt::CaseInsensitive) == 0)
                return servizio;
    return {};
}

void PxCtl::Stato()
{
    QJsonArray servizi;
    QByteArray testo = QStringLiteral("%1\nfolder: %2\nstate: %3\n\n")
                           .arg(mServer.Identificativo(), mServer.Cartella())
                           .arg(mServer.Stato() == modContratto::ServerInFunzione ? QStringLiteral("running")
                                                                                  : QString::number(mServer.Stato()))
                           .toUtf8();
    for (const QString& chiave : mServer.Chiavi()) {
        const PxSrvServizio* s = mServer.Servizio(chiave);
        pugi::xml_document doc;
        if (!s || !s->LeggiStato(doc))
            continue;
        const pugi::xml_node radice = doc.document_element();
        const QString codice = Testo(radice, "Stato/Codice"), stato = Testo(radice, "Stato/Descrizione"),
                      attivita = Testo(radice, "Attivita"), errore = Testo(radice, "Errore/Descrizione");
        servizi.append(QJsonObject{{QStringLiteral("key"), chiave},
                                   {QStringLiteral("state"), codice.toInt()},
                                   {QStringLiteral("stateText"), stato},
                                   {QStringLiteral("activity"), attivita},
                                   {QStringLiteral("error"), errore}});
        testo += QStringLiteral("%1  %2  %3%4\n")
                     .arg(chiave, -22)
                     .arg(stato, -16)
                     .arg(attivita, errore.isEmpty() ? QString() : QStringLiteral("  [%1]").arg(errore))
                     .toUtf8();
    }
    if (mJson)
        Stampa(QJsonDocument(QJsonObject{{QStringLiteral("server"), mServer.Identificativo()},
                                         {QStringLiteral("folder"), mServer.Cartella()},
                                         {QStringLiteral("state"), mServer.Stato()},
                                         {QStringLiteral("services"), servizi}})
                   .toJson(QJsonDocument::Indented));
    else
        Stampa(testo);
    Termina(Fatto);
}

void PxCtl::Elenco(const QStringList& argomentiDati)
{
    QStringList argomenti = argomentiDati;
    bool valido = false;
    const int coda = PrendiNumero(argomenti, QStringLiteral("--queue"), &valido);
    if (!valido || argomenti.size() != 1) {
        Termina(Uso, QStringLiteral("usage: list FOLDER [--queue N]"));
        return;
    }
    const QString chiave = Cartella(argomenti.constFirst());
    PxSrvCartellaDocumenti* cartella = chiave.isEmpty() ? nullptr : mServer.CartellaDocumenti(chiave);
    if (!cartella) {
        Termina(Rifiutato, QStringLiteral("no document folder \"%1\"").arg(argomenti.constFirst()));
        return;
    }
    auto* callback = new PxXmlCallBack(this);
    connect(callback, &PxXmlCallBack::XmlCallBack, this, [this, coda, chiave](const QByteArray& xml) {
        pugi::xml_document doc;
        if (!doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()))) {
            Termina(Rifiutato, QStringLiteral("the server's listing does not read"));
            return;
        }
        QJsonArray code;
        QByteArray testo;
        for (const pugi::xml_node c : doc.document_element().children()) {
            const std::string_view nome = c.name();
            if (!nome.starts_with("Coda_"))
                continue;
            const int numero = QByteArray(nome.substr(5).data(), static_cast<qsizetype>(nome.size() - 5)).toInt();
            if (coda >= 0 && numero != coda)
                continue;
            QJsonArray documenti;
            for (const pugi::xml_node d : c.children("D")) {
                QStringList campi;
                for (const pugi::xml_node f : d.children("F"))
                    campi << QString::fromUtf8(f.child_value());
                documenti.append(QJsonArray::fromStringList(campi));
                testo += (QString::number(numero) + u'\t' + campi.join(u'\t') + u'\n').toUtf8();
            }
            code.append(QJsonObject{{QStringLiteral("queue"), numero}, {QStringLiteral("documents"), documenti}});
        }
        if (mJson)
            Stampa(QJsonDocument(QJsonObject{{QStringLiteral("folder"), chiave}, {QStringLiteral("queues"), code}})
                       .toJson(QJsonDocument::Indented));
        else
            Stampa(testo);
        Termina(Fatto);
    });
    cartella->Elenca(callback);
}

void PxCtl::Sposta(const QStringList& argomentiDati)
{
    QStringList argomenti = argomentiDati;
    bool valido = false;
    const int coda = PrendiNumero(argomenti, QStringLiteral("--to"), &valido);
    if (!valido || coda < 0 || argomenti.size() < 2) {
        Termina(Uso, QStringLiteral("usage: move FOLDER --to N ID..."));
        return;
    }
    const QString nome = argomenti.takeFirst();
    PxSrvCartellaDocumenti* cartella = mServer.CartellaDocumenti(Cartella(nome));
    if (!cartella) {
        Termina(Rifiutato, QStringLiteral("no document folder \"%1\"").arg(nome));
        return;
    }
    cartella->SpostaDocumenti(Selezione(argomenti), coda, this, [this, argomenti, coda](const PxRisposta& r) {
        if (!r.Riuscita()) {
            Termina(r.Esito == modContratto::NonDisponibile ? Irraggiungibile : Rifiutato, r.Testo);
            return;
        }
        if (mJson)
            Stampa(QJsonDocument(QJsonObject{{QStringLiteral("moved"), QJsonArray::fromStringList(argomenti)},
                                             {QStringLiteral("queue"), coda}})
                       .toJson(QJsonDocument::Compact)
                   + '\n');
        else
            Stampa(QStringLiteral("%1 document(s) moved to queue %2\n").arg(argomenti.size()).arg(coda).toUtf8());
        Termina(Fatto);
    });
}

void PxCtl::Servizio(const QString& comando, const QStringList& argomenti)
{
    if (argomenti.size() != 1) {
        Termina(Uso, QStringLiteral("usage: %1 SERVICE").arg(comando));
        return;
    }
    PxSrvServizio* servizio = mServer.Servizio(ChiaveServizio(argomenti.constFirst()));
    if (!servizio) {
        Termina(Rifiutato, QStringLiteral("no service \"%1\"").arg(argomenti.constFirst()));
        return;
    }
    const auto fatto = [this, servizio, comando](const PxRisposta& r) {
        if (!r.Riuscita()) {
            Termina(r.Esito == modContratto::NonDisponibile ? Irraggiungibile : Rifiutato, r.Testo);
            return;
        }
        if (!mJson)
            Stampa(QStringLiteral("%1: %2\n").arg(servizio->Chiave(), comando == u"start" ? QStringLiteral("started") : QStringLiteral("suspended")).toUtf8());
        else
            Stampa(QJsonDocument(QJsonObject{{QStringLiteral("service"), servizio->Chiave()}, {QStringLiteral("done"), comando}})
                       .toJson(QJsonDocument::Compact)
                   + '\n');
        Termina(Fatto);
    };
    if (comando == u"start")
        servizio->Avvia(this, fatto);
    else
        servizio->Sospendi(this, fatto);
}

void PxCtl::PaginaDiProva(const QStringList& argomenti)
{
    if (argomenti.size() != 1) {
        Termina(Uso, QStringLiteral("usage: test-page PRINTER"));
        return;
    }
    // The console's own test page, handed over the console's way; done once the printing
    // service has taken it, refused if it set it aside.
    static const PxConsoleResDll testi;
    PxSrvServizio* stampe = mServer.Servizio(QStringLiteral("PxSrvStampe"));
    modContenuto::InviaPaginaDiProva(&mServer, argomenti.constFirst(), testi, this, [this, stampe](const PxRisposta& r) {
        if (!r.Riuscita()) {
            Termina(r.Esito == modContratto::NonDisponibile ? Irraggiungibile : Rifiutato, r.Testo);
            return;
        }
        auto* attesa = new PxAttesaLavoro(stampe, this);
        const auto riga = [this](const QString& esito, const QString& base, const QString& altro) {
            if (mJson)
                Stampa(QJsonDocument(QJsonObject{{QStringLiteral("job"), base}, {QStringLiteral("outcome"), esito},
                                                 {esito == u"taken" ? QStringLiteral("id") : QStringLiteral("reason"), altro}})
                           .toJson(QJsonDocument::Compact)
                       + '\n');
            else
                Stampa(QStringLiteral("%1: %2 %3\n").arg(base, esito, altro).toUtf8());
        };
        connect(attesa, &PxAttesaLavoro::Preso, this, [this, riga](const QString& base, const QString& id) {
            riga(QStringLiteral("taken"), base, id);
            Termina(Fatto);
        });
        connect(attesa, &PxAttesaLavoro::Respinto, this, [this, riga](const QString& base, const QString& motivo) {
            riga(QStringLiteral("setAside"), base, motivo);
            Termina(Rifiutato, motivo);
        });
        connect(attesa, &PxAttesaLavoro::Scaduto, this, [this, riga](const QString& base) {
            riga(QStringLiteral("handedOver"), base, QStringLiteral("not yet taken by the service"));
            Termina(Fatto);
        });
        attesa->Attendi(r.Testo, 10000);
    });
}

void PxCtl::Osserva()
{
    // One line per notice, as it comes, until the server stops or the connection goes.
    const auto riga = [this](const QString& genere, const QString& servizio, const QJsonObject& campi, const QString& umano) {
        const QString ora = QDateTime::currentDateTime().toString(Qt::ISODateWithMs);
        if (mJson) {
            QJsonObject o = campi;
            o.insert(QStringLiteral("time"), ora);
            o.insert(QStringLiteral("event"), genere);
            if (!servizio.isEmpty())
                o.insert(QStringLiteral("service"), servizio);
            Stampa(QJsonDocument(o).toJson(QJsonDocument::Compact) + '\n');
        } else {
            Stampa(QStringLiteral("%1 %2 %3 %4\n").arg(ora, genere, servizio, umano).toUtf8());
        }
    };
    for (const QString& chiave : mServer.Chiavi()) {
        PxSrvServizio* s = mServer.Servizio(chiave);
        connect(s, &PxSrvServizio::DocumentoSpostato, this, [riga, chiave](qint32 coda, const QString& id, const QString&) {
            riga(QStringLiteral("moved"), chiave, {{QStringLiteral("id"), id}, {QStringLiteral("queue"), coda}},
                 QStringLiteral("%1 -> %2").arg(id).arg(coda));
        });
        connect(s, &PxSrvServizio::CambioStato, this, [riga, chiave, s] {
            pugi::xml_document doc;
            const QString stato = s->LeggiStato(doc) ? Testo(doc.document_element(), "Stato/Descrizione") : QString();
            riga(QStringLiteral("state"), chiave, {{QStringLiteral("stateText"), stato}}, stato);
        });
        connect(s, &PxSrvServizio::NotificaErrore, this, [riga, chiave](qint32 codice, const QString& testo) {
            riga(QStringLiteral("error"), chiave, {{QStringLiteral("code"), codice}, {QStringLiteral("text"), testo}},
                 QStringLiteral("%1 %2").arg(codice).arg(testo));
        });
        connect(s, &PxSrvServizio::LavoroPreso, this, [riga, chiave](const QString& base, const QString& id) {
            riga(QStringLiteral("taken"), chiave, {{QStringLiteral("job"), base}, {QStringLiteral("id"), id}},
                 QStringLiteral("%1 -> %2").arg(base, id));
        });
        connect(s, &PxSrvServizio::LavoroRespinto, this, [riga, chiave](const QString& base, const QString& motivo) {
            riga(QStringLiteral("setAside"), chiave, {{QStringLiteral("job"), base}, {QStringLiteral("reason"), motivo}},
                 QStringLiteral("%1: %2").arg(base, motivo));
        });
    }
    connect(&mServer, &PxSrvServer::StatoCambiato, this, [this, riga](qint32 codice) {
        if (codice != modContratto::ServerInArresto)
            return;
        riga(QStringLiteral("stopping"), {}, {}, QStringLiteral("the server stops"));
        Termina(Fatto);
    });
}
