#include "modComandiCartella.h"

#include "RefCartellaDocumenti.h"
#include "modDisco.h"
#include "modFileDocumento.h"

#include <QDir>
#include <QFile>

#include <pugixml.hpp>

using namespace Qt::StringLiterals;

namespace modComandiCartella {

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

PxRisposta Anteprime(const RefCartellaDocumenti& da, const QStringList& id, const QString& indirizzo,
                     RefCartellaDocumenti& anteprime)
{
    for (const QString& i : id) {
        const DatiDocumento* origine = da.Trova(i);
        if (!origine)
            return {modContratto::Rifiutato, QStringLiteral("anteprime rifiutate: documento %1 sconosciuto").arg(i), {}};
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
        std::vector<RefCartellaDocumenti::FileNuovo> file;
        const QString percorsoCorpo = da.CartellaDi(*origine) + u'/' + origine->FileCorpo;
        if (!origine->FileCorpo.isEmpty() && modDisco::FileRegolare(percorsoCorpo)) {
            QFile corpo(percorsoCorpo);
            if (corpo.open(QIODevice::ReadOnly))
                file.push_back({u"corpo.bpx"_s, corpo.readAll(), {}});
        }
        d.Id = anteprime.NuovoId();
        if (!file.empty()) {
            file.front().Nome = d.Id + u".bpx"_s;
            d.FileCorpo = file.front().Nome;
        }
        if (const QString errore = anteprime.Crea(std::move(d), file); !errore.isEmpty())
            return {modContratto::Fallito, u"anteprima non creata: "_s + errore, {}};
    }
    return {};
}

PxRisposta Comprimi(const RefCartellaDocumenti& da, const QStringList& id, RefCartellaDocumenti& email,
                    const QString& estensioneZip)
{
    std::vector<modFileDocumento::FileArchivio> contenuto;
    for (const QString& i : id) {
        const DatiDocumento* d = da.Trova(i);
        if (!d)
            return {modContratto::Rifiutato, QStringLiteral("invio compresso rifiutato: documento %1 sconosciuto").arg(i), {}};
        const QDir cartella(da.CartellaDi(*d));
        // Links are never followed: only the document's own regular files go.
        for (const QString& nome : cartella.entryList(QDir::Files | QDir::NoSymLinks, QDir::Name)) {
            QFile f(cartella.filePath(nome));
            if (modDisco::FileRegolare(f.fileName()) && f.open(QIODevice::ReadOnly))
                contenuto.push_back({i + u'/' + nome, f.readAll()});
        }
    }
    DatiDocumento m;
    m.Id = email.NuovoId();
    m.Descrizione = QStringLiteral("Documenti compressi: %1").arg(id.join(u", "_s));
    m.Oggetto = m.Descrizione;
    m.Da = u"plxsrv@pelorix.local"_s;
    m.A = u"amministratore@pelorix.local"_s;
    m.Utente = u"plxsrv"_s;
    m.Stato = u"In attesa"_s;
    m.Inserito = QDateTime::currentDateTime();
    const QString allegato = m.Id + estensioneZip;
    m.FileOutput.clear();
    QString errore;
    const QByteArray archivio = modFileDocumento::Archivio(contenuto, &errore);
    if (archivio.isEmpty())
        return {modContratto::Fallito, u"invio compresso non riuscito: "_s + errore, {}};
    std::vector<RefCartellaDocumenti::FileNuovo> file{{allegato, archivio, {}}};
    if (const QString motivo = email.Crea(std::move(m), file); !motivo.isEmpty())
        return {modContratto::Fallito, u"invio compresso non riuscito: "_s + motivo, {}};
    return {};
}

} // namespace modComandiCartella
