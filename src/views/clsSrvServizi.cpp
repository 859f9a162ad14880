#include "clsSrvServizi.h"

#include "PxBarraComandi.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImmagini.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "modAlberoServer.h"
#include "modTraccia.h"

#include <QAction>
#include <QSet>

#include <pugixml.hpp>

namespace {

using modAlberoServer::Genere;

QByteArray Testo(const pugi::xml_node& n, const char* percorso)
{
    return QByteArray(n.select_node(percorso).node().child_value()).trimmed();
}

QString VersioneLayout(const QString& chiave)
{
    for (const char* k : {"SrvStampe", "SrvEmlPdfVm", "SrvDocEmail", "SrvSmtp"})
        if (chiave == QLatin1StringView(k))
            return QStringLiteral("01.00.06");
    return QStringLiteral("01.00.04");
}

} // namespace

clsSrvServizi::clsSrvServizi(PxAmbienteVista& ambiente, const QString& chiaveNodo, QObject* parent)
    : clsSrvVista(ambiente, chiaveNodo.section(u'|', 0, 0), VersioneLayout(chiaveNodo.section(u'|', 0, 0)), parent),
      mNodo(chiaveNodo.section(u'|', 0, 0)), mVoce(chiaveNodo.section(u'|', 1))
{
    // The node's own row first, then what hangs under it; the server shows its services.
    const auto nodi = modAlberoServer::Nodi();
    for (const modAlberoServer::Nodo& n : nodi) {
        const bool proprio = mNodo == QLatin1StringView(n.Chiave) && n.Tipo != Genere::Server;
        const bool figlio = mNodo == QLatin1StringView(n.Padre) && n.Tipo != Genere::Cartella;
        if (proprio || figlio)
            mNodi.append(&n);
    }
}

QStringList clsSrvServizi::Oggetti() const
{
    QStringList oggetti;
    for (const modAlberoServer::Nodo* n : mNodi)
        if (!oggetti.contains(QLatin1StringView(n->Oggetto)))
            oggetti << QString::fromLatin1(n->Oggetto);
    return oggetti;
}

namespace {
// The keys of the selected printer rows ("SrvStampante|3" gives "3").
QStringList Stampanti(const QStringList& chiavi)
{
    QStringList stampanti;
    for (const QString& k : chiavi)
        if (k.startsWith(u"SrvStampante|"))
            stampanti << k.section(u'|', 1);
    return stampanti;
}
} // namespace

void clsSrvServizi::CreaPulsanti()
{
    // The printing service sends test pages to the printers selected; a printer's node to
    // its own printer.
    if (mNodo == u"SrvStampe" || mNodo == u"SrvStampante")
        mAmbiente.Barra.Pulsante(IdPaginaDiProva, 1233, 1333)->setEnabled(!StampantiScelte().isEmpty());
}

QStringList clsSrvServizi::StampantiScelte() const
{
    if (mNodo == u"SrvStampante" && !mVoce.isEmpty())
        return {mVoce};
    return Stampanti(ChiaviSelezionate());
}

void clsSrvServizi::AbilitaPulsanti(bool abilita)
{
    // `abilita` is false while the console is busy, and when no row is selected; a printer's
    // own node needs no selection.
    const bool propria = mNodo == u"SrvStampante" && !mVoce.isEmpty();
    mAmbiente.Barra.Abilita(IdPaginaDiProva, propria ? !mContesto.Occupato() : abilita && !StampantiScelte().isEmpty());
}

void clsSrvServizi::Esegui(int id)
{
    if (id == IdPaginaDiProva)
        if (const QStringList stampanti = StampantiScelte(); !stampanti.isEmpty())
            emit PaginaDiProva(stampanti);
}

QList<PxModelloContenuto::Colonna> clsSrvServizi::CreaColonne()
{
    const PxConsoleResDll& t = mContesto.Testi();
    mAmbiente.Modello.ImpostaIcone({}, {}, [](qint32 n) { return PxImmagini::Istanza().Icona(n); });
    return {{t.LoadDllString(2023), false, true},       {t.LoadDllString(2019)},
            {t.LoadDllString(2003)},                    {t.LoadDllString(2020)},
            {t.LoadDllString(2021), false, false, true}, {t.LoadDllString(2022)}};
}

void clsSrvServizi::AggiornaContenuto()
{
    modTraccia::Proteggi("AggiornaContenuto", [&] {
        emit ContenutoInAggiornamento();
        Applica(
            [this] {
                RicaricaMantenendo([&] {
                    mAmbiente.Modello.IniziaCaricamento();
                    for (const modAlberoServer::Nodo* n : std::as_const(mNodi))
                        Righe(*n, false);
                    mAmbiente.Modello.FineCaricamento();
                });
                emit ContenutoCambiato();
            },
            true);
    });
}

void clsSrvServizi::AggiornaSrv(const QString& chiaveOggetto)
{
    Applica([this, chiaveOggetto] {
        modTraccia::Proteggi("AggiornaSrv", [&] {
            for (const modAlberoServer::Nodo* n : std::as_const(mNodi))
                if (chiaveOggetto == QLatin1StringView(n->Oggetto))
                    Righe(*n, true);
        });
    });
}

void clsSrvServizi::Avanzamento(const QString& chiaveOggetto, const QString& attivita, qint32 fatti, qint32 totale)
{
    mAvanzamento.insert(chiaveOggetto, totale > 0 && fatti < totale ? QStringLiteral("%1/%2").arg(fatti).arg(totale) : QString());
    mAttivita.insert(chiaveOggetto, attivita);
    AggiornaSrv(chiaveOggetto);
}

void clsSrvServizi::Righe(const modAlberoServer::Nodo& nodo, bool aggiorna)
{
    PxSrvServer* server = mContesto.Server();
    const QString oggetto = QString::fromLatin1(nodo.Oggetto);
    const PxSrvServizio* servizio = server ? server->Servizio(oggetto) : nullptr;
    if (!servizio)
        return;
    pugi::xml_document doc;
    if (!servizio->LeggiStato(doc))
        return;
    const pugi::xml_node radice = doc.document_element();
    PxModelloContenuto& modello = mAmbiente.Modello;
    // Progress is the service's own, not its printers' or clients'.
    const bool elenco = nodo.Tipo == Genere::Elenco;
    const QByteArray avanzamento = elenco ? QByteArray() : mAvanzamento.value(oggetto).toUtf8();
    const QByteArray attivitaProgresso = elenco ? QByteArray() : mAttivita.value(oggetto).toUtf8();
    const auto scrivi = [&](const QByteArray& chiave, const QByteArray& caption, const pugi::xml_node& stato, qint32 icona) {
        QByteArray attivita = Testo(stato, "Attivita");
        if (!avanzamento.isEmpty() && !attivitaProgresso.isEmpty())
            attivita = attivitaProgresso;
        const QByteArray celle[] = {chiave, caption, Testo(stato, "Stato/Descrizione"), attivita, avanzamento,
                                    Testo(stato, "Errore/Descrizione")};
        std::string_view viste[std::size(celle)];
        for (size_t i = 0; i < std::size(celle); ++i)
            viste[i] = std::string_view(celle[i].constData(), static_cast<size_t>(celle[i].size()));
        const quint32 colore = 0;
        const qint32 riga = modello.Riga(viste[0]);
        if (!aggiorna)
            modello.Aggiungi(viste, colore, icona);
        else if (riga >= 0)
            modello.Aggiorna(riga, viste, colore, icona);
        else
            modello.Inserisci(viste, colore, {}, icona);
    };
    const PxIconResource& icone = mContesto.Icone();
    const auto icona = [&](const pugi::xml_node& n) {
        qint32 v = 0;
        modTraccia::Proteggi("IconaServizio", [&] { v = nodo.Icona ? (icone.*nodo.Icona)(n) : 0; });
        return v;
    };
    if (nodo.Tipo == Genere::Elenco) {
        const QByteArray prefisso = QByteArray(nodo.Chiave) + '|';
        QSet<QByteArray> viste;
        // The node of one entry shows that entry only.
        const QByteArray sola = QLatin1StringView(nodo.Chiave) == mNodo ? mVoce.toUtf8() : QByteArray();
        for (const pugi::xml_node voce : radice.child(nodo.Elenco).children()) {
            if (!sola.isEmpty() && Testo(voce, nodo.ElementoChiave) != sola)
                continue;
            const QByteArray chiave = prefisso + Testo(voce, nodo.ElementoChiave);
            viste.insert(chiave);
            QByteArray caption = Testo(voce, "Utente");
            if (QLatin1StringView(nodo.Chiave) == u"SrvStampante")
                caption = Testo(voce, "NumeroTarquel") + ") " + Testo(voce, "NomeStampanteWindows");
            else if (caption.isEmpty())
                caption = mContesto.Testi().LoadDllString(nodo.Testo).toUtf8() + ' ' + Testo(voce, "Ip");
            scrivi(chiave, caption, voce, icona(voce));
        }
        // Entries that left the list leave the view.
        if (aggiorna) {
            std::vector<qint32> via;
            for (const quint32 r : modello.Ordine()) {
                const QByteArray k = modello.Testo(static_cast<qint32>(r), 0).toUtf8();
                if (k.startsWith(prefisso) && !viste.contains(k))
                    via.push_back(static_cast<qint32>(r));
            }
            for (const qint32 r : via)
                modello.Rimuovi(r);
        }
        return;
    }
    const QByteArray caption = nodo.Testo ? mContesto.Testi().LoadDllString(nodo.Testo).toUtf8()
                                          : Testo(radice, "NomeStampanteWindows");
    scrivi(QByteArray(nodo.Chiave), caption, radice, icona(radice));
}
