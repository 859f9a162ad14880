#include "clsSrvCartella.h"

#include "PxBarraComandi.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxErrore.h"
#include "PxImmagini.h"
#include "PxLettoreIni.h"
#include "PxLogConsole.h"
#include "PxSrvCartellaDocumenti.h"
#include "PxSrvServer.h"
#include "PxXmlCallBack.h"
#include "modApri.h"
#include "modElenco.h"
#include "modTraccia.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>
#include <QTreeView>

#include <pugixml.hpp>

namespace {

using modTabellaCartelle::Campo;

// A wait cursor for the length of a scope.
struct Clessidra
{
    Clessidra() { QApplication::setOverrideCursor(Qt::WaitCursor); }
    ~Clessidra() { QApplication::restoreOverrideCursor(); }
};

void RegistraErrore(const char* procedura, const QString& testo)
{
    modTraccia::RegistraErrore(procedura, std::make_exception_ptr(PxErrore(modErrori::ErrGenerico, QString::fromLatin1(procedura), testo)));
}

} // namespace

clsSrvCartella::clsSrvCartella(PxAmbienteVista& ambiente, const modTabellaCartelle::Cartella& definizione, QObject* parent)
    : clsSrvVista(ambiente, QString::fromLatin1(definizione.Nodo), QString::fromLatin1(definizione.Versione), parent),
      mDef(definizione),
      mobjBkgXmlEventi(new PxXmlCallBack(this))
{
    const QByteArray nome = QByteArray(definizione.Nodo).mid(3); // "DocFax"
    mNomeAggiungi = "Aggiungi" + nome;
    mNomeAggiorna = "Aggiorna" + nome;
    if (PxSrvServer* server = mContesto.Server())
        mCartella = server->CartellaDocumenti(QString::fromLatin1(definizione.Chiave));
    connect(mobjBkgXmlEventi, &PxXmlCallBack::XmlCallBack, this, &clsSrvCartella::mobjBkgXmlEventi_XmlCallBack);
    connect(mobjBkgXmlEventi, &PxXmlCallBack::Errore, this, [this](qint32, const QString& motivo) {
        RegistraErrore("mobjBkgXmlEventi_XmlCallBack", motivo);
        Avvisa(8022, motivo);
    });
}

clsSrvCartella::~clsSrvCartella() = default;

QList<PxModelloContenuto::Colonna> clsSrvCartella::CreaColonne()
{
    const PxConsoleResDll& testi = mContesto.Testi();
    QList<PxModelloContenuto::Colonna> colonne;
    for (const modTabellaCartelle::Colonna& c : mDef.Colonne)
        colonne.append({c.Testo ? testi.LoadDllString(c.Testo) : QString::fromLatin1("-"),
                        c.Campo == Campo::Inserito || c.Campo == Campo::Elaborato, c.Testo == 0, false});
    PxImmagini& immagini = PxImmagini::Istanza();
    mAmbiente.Modello.ImpostaIcone(immagini.IconaChiave(QString::fromLatin1(mDef.Icona)),
                                   immagini.IconaChiave(QString::fromLatin1(*mDef.IconaCollegato ? mDef.IconaCollegato : mDef.Icona)));
    mAmbiente.Modello.ImpostaTestiDate(testi.LoadDllString(113), testi.LoadDllString(114), testi.LoadDllString(117));
    return colonne;
}

int clsSrvCartella::RaggruppamentoPredefinito() const
{
    for (size_t k = 0; k < mDef.Colonne.size(); ++k)
        if (mDef.Colonne[k].Campo == Campo::Stato)
            return static_cast<int>(k);
    return -1;
}

QList<PxModelloContenuto::Fase> clsSrvCartella::Fasi() const
{
    // The toggles stand in the order of the work (the fax folder's queue 12 between 3 and 4);
    // a queue without a toggle has no caption and comes after, named by its rows' state.
    std::vector<std::pair<qint32, qint16>> perFiltro;
    for (size_t k = 0; k < mDef.Code.size(); ++k)
        if (mDef.Code[k].Filtro)
            perFiltro.emplace_back(mDef.Code[k].Filtro, static_cast<qint16>(k));
    std::sort(perFiltro.begin(), perFiltro.end());
    QList<PxModelloContenuto::Fase> fasi;
    for (const auto& [filtro, coda] : perFiltro)
        fasi.append({coda, mContesto.Testi().LoadDllString(mDef.Code[static_cast<size_t>(coda)].Testo)});
    return fasi;
}

void clsSrvCartella::CreaPulsanti()
{
    PxBarraComandi& barra = mAmbiente.Barra;
    // The test form is the main window's to open.
    if (mDef.Prova.Id)
        barra.Pulsante(mDef.Prova.Id, mDef.Prova.Testo, mDef.Prova.Descrizione);
    barra.Pulsante(5315, 1256, 1356);
    barra.Pulsante(5302, 1200, 1300);
    barra.Pulsante(5303, 1201, 1301);
    if (mDef.CopiaStampa) // the print copy form is not part of the console yet
        barra.Pulsante(5301, 1241, 1341)->setEnabled(false);
    QMenu* sposta = barra.Tendina(5300, 1203, 1303);
    for (const modTabellaCartelle::Spostamento& s : mDef.Spostamenti)
        barra.Voce(sposta, s.Id, s.Testo, s.Descrizione);
    // The toggles by id: the fax folder's queue 12 sits between queues 3 and 4.
    std::vector<const modTabellaCartelle::Coda*> filtri;
    for (const modTabellaCartelle::Coda& c : mDef.Code)
        if (c.Filtro)
            filtri.push_back(&c);
    std::sort(filtri.begin(), filtri.end(), [](auto a, auto b) { return a->Filtro < b->Filtro; });
    for (const modTabellaCartelle::Coda* c : filtri)
        barra.Pulsante(c->Filtro, c->Testo, c->Descrizione, true)->setChecked(true);
    barra.Pulsante(5305, 1202, 1302, false, true);
    if (mDef.Uscita.Id)
        barra.Pulsante(mDef.Uscita.Id, mDef.Uscita.Testo, mDef.Uscita.Descrizione);
    AbilitaPulsanti(false);
}

// ---- listing and notices

bool clsSrvCartella::CodaMostrata(int coda) const
{
    if (coda < 0 || static_cast<size_t>(coda) >= mDef.Code.size())
        return true; // not a queue of ours: a full listing keeps it
    const qint32 filtro = mDef.Code[static_cast<size_t>(coda)].Filtro;
    if (coda == mDef.CodaOpzionale && !(mCartella && mCartella->CodaOpzionale(coda)))
        return false;
    return filtro == 0 || mAmbiente.Barra.Spuntato(filtro);
}

quint32 clsSrvCartella::ColoreCoda(int coda) const
{
    return coda >= 0 && static_cast<size_t>(coda) < mDef.Code.size() ? mDef.Code[static_cast<size_t>(coda)].Colore
                                                                      : modTabellaCartelle::Nero;
}

void clsSrvCartella::AggiornaContenuto()
{
    modTraccia::Proteggi("AggiornaContenuto", [&] {
        emit ContenutoInAggiornamento();
        AbilitaPulsanti(false);
        if (mCartella)
            mCartella->Elenca(mobjBkgXmlEventi);
    });
}

void clsSrvCartella::mobjBkgXmlEventi_XmlCallBack(const QByteArray& xml)
{
    Applica(
        [this, xml] {
            modTraccia::Proteggi("mobjBkgXmlEventi_XmlCallBack", [&] {
                const modElenco::Code code{[this](int c) { return CodaMostrata(c); }, [this](int c) { return ColoreCoda(c); }};
                mAbilitatoPer.clear();
                RicaricaMantenendo([&] {
                    modElenco::Carica(mAmbiente.Modello, xml, code, [this] {
                        RegistraErrore(mNomeAggiungi.constData(), QStringLiteral("campi mancanti"));
                    });
                });
            });
            emit ContenutoCambiato();
        },
        true);
}

void clsSrvCartella::DocumentoSpostato(qint32 coda, const QString& id, const QString& nodoXml)
{
    Applica([this, coda, id, nodoXml] {
        modTraccia::Proteggi("DocumentoSpostato", [&] {
            PxModelloContenuto& modello = mAmbiente.Modello;
            const QByteArray chiave = id.toUtf8();
            const qint32 riga = modello.Riga(std::string_view(chiave.constData(), static_cast<size_t>(chiave.size())));
            if (id == mAbilitatoPer)
                mAbilitatoPer.clear(); // its folder or output may have changed: ask again
            // A queue without a toggle, or one hidden, means the document is no longer shown.
            const qint32 filtro = coda >= 0 && static_cast<size_t>(coda) < mDef.Code.size()
                ? mDef.Code[static_cast<size_t>(coda)].Filtro
                : 0;
            if (!filtro || !mAmbiente.Barra.Spuntato(filtro)) {
                modello.Rimuovi(riga);
                return;
            }
            pugi::xml_document doc;
            const QByteArray testo = nodoXml.toUtf8();
            doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size()), pugi::parse_default | pugi::parse_embed_pcdata);
            modElenco::Nodo nodo;
            const char* procedura = riga < 0 ? mNomeAggiungi.constData() : mNomeAggiorna.constData();
            if (!modElenco::LeggiNodo(doc.document_element(), static_cast<int>(mDef.Colonne.size()), nodo)) {
                RegistraErrore(procedura, QStringLiteral("campi mancanti"));
                return;
            }
            // The notice's id is the row's key, whatever the node's first field says.
            nodo.Celle[0] = std::string_view(chiave.constData(), static_cast<size_t>(chiave.size()));
            modTraccia::Traccia traccia(procedura);
            const qint16 fase = static_cast<qint16>(coda);
            if (riga < 0)
                modello.Inserisci(nodo.Celle, ColoreCoda(coda), nodo.Collegati, 0, fase);
            else
                modello.Aggiorna(riga, nodo.Celle, ColoreCoda(coda), 0, fase);
        });
        emit ContenutoCambiato();
    });
}

// ---- commands

QString clsSrvCartella::DocumentoScelto() const
{
    const QString corrente = ChiaveCorrente();
    const QStringList selezionati = ChiaviSelezionate();
    if (selezionati.contains(corrente))
        return corrente;
    return selezionati.isEmpty() ? QString() : selezionati.first();
}

void clsSrvCartella::AbilitaPulsanti(bool abilita)
{
    PxBarraComandi& barra = mAmbiente.Barra;
    for (const int id : {5315, 5302, 5303, 5300})
        barra.Abilita(id, abilita);
    const QString id = abilita ? DocumentoScelto() : QString();
    // Asked already for this document, and it has not moved since: the answers stand. Notices
    // of other documents do not cost two requests each.
    if (!id.isEmpty() && id == mAbilitatoPer)
        return;
    barra.Abilita(5305, false);
    if (mDef.Uscita.Id)
        barra.Abilita(mDef.Uscita.Id, false);
    mAbilitatoPer = id;
    if (id.isEmpty() || !mCartella)
        return;
    // The folder and the output file are tested where they are: the answers come later and
    // count only if the same document is still the chosen one.
    const bool locali = mContesto.Server() && mContesto.Server()->FileLocali();
    // The one command a console without the server's files cannot offer says why.
    if (QAction* cartella = barra.Azione(5305)) {
        const PxConsoleResDll& testi = mContesto.Testi();
        const QString descrizione = locali ? testi.LoadDllString(1302) : testi.LoadDllString(1302) + u'\n' + testi.LoadDllString(8049);
        cartella->setToolTip(descrizione);
        cartella->setStatusTip(locali ? testi.LoadDllString(1302) : testi.LoadDllString(8049));
    }
    if (locali)
        mCartella->CartellaDocumento(id, this, [this, id](const PxRisposta& r) {
            if (id == mAbilitatoPer && r.Riuscita())
                mAmbiente.Barra.Abilita(5305, QFileInfo(QDir::fromNativeSeparators(r.Testo)).isDir());
        });
    // A server elsewhere would send the whole file to answer: there the viewer is offered and
    // a document without output says so when asked.
    if (mDef.Uscita.Id && !locali)
        barra.Abilita(mDef.Uscita.Id, true);
    else if (mDef.Uscita.Id)
        mCartella->FileOutput(id, this, [this, id](const PxRisposta& r) {
            if (id == mAbilitatoPer && r.Riuscita())
                mAmbiente.Barra.Abilita(mDef.Uscita.Id, QFileInfo(QDir::fromNativeSeparators(r.Testo)).isFile());
        });
}

void clsSrvCartella::Esegui(int id)
{
    if (id != 0 && id == mDef.Prova.Id) {
        emit Prova(id);
        return;
    }
    if (id >= 5300 && id < 5400) {
        switch (id) {
        case 5315: VisualizzaDocumento(); break;
        case 5302: GeneraAnteprime(); break;
        case 5303: InviaCompresso(); break;
        case 5305: CartellaDocumento(); break;
        case 5306:
        case 5307: VisualizzaUscita(); break;
        default: break;
        }
        return;
    }
    for (const modTabellaCartelle::Spostamento& s : mDef.Spostamenti)
        if (s.Id == id) {
            if (s.Coda >= 0)
                Sposta(s.Coda);
            return;
        }
    if (modTabellaCartelle::CodaDelFiltro(mDef, id) >= 0) {
        // The toggle has flipped (it is one action wherever the bars show it); filtering is
        // asking again, never hiding rows here.
        modTraccia::Proteggi("Filtro", [&] {
            Clessidra clessidra;
            AggiornaContenuto();
        });
    }
}

void clsSrvCartella::Attiva()
{
    if (NumeroSelezionati() > 0)
        VisualizzaDocumento();
}

std::function<void(const PxRisposta&)> clsSrvCartella::Esito(const char* procedura, bool ricarica)
{
    return [this, procedura, ricarica](const PxRisposta& r) {
        if (!r.Riuscita()) {
            RegistraErrore(procedura, r.Testo);
            Avvisa(8021, r.Testo);
        }
        if (ricarica)
            AggiornaContenuto();
    };
}

void clsSrvCartella::Avvisa(qint32 testo, const QString& dettaglio)
{
    emit Messaggio(mContesto.Testi().LoadDllString(testo) + (dettaglio.isEmpty() ? QString() : QStringLiteral(": ") + dettaglio));
}

void clsSrvCartella::Sposta(qint32 coda)
{
    modTraccia::Proteggi("Sposta", [&] {
        const QString selezione = CreaXmlSelezione();
        if (!mCartella || NumeroSelezionati() == 0)
            return;
        Clessidra clessidra;
        Segui(ChiaviSelezionate()); // the moved documents stay in sight where they land
        mCartella->SpostaDocumenti(selezione, coda, this, Esito("Sposta", true));
    });
}

void clsSrvCartella::GeneraAnteprime()
{
    modTraccia::Proteggi("GeneraAnteprime", [&] {
        if (!mCartella || NumeroSelezionati() == 0 || !mContesto.Server())
            return;
        const PxLettoreIni& ini = mContesto.Server()->Configurazione();
        const QString indirizzo = ini.Stringa(QStringLiteral("Server anteprime"), QStringLiteral("IndirizzoPredefinito"), {}, 1024);
        mCartella->GeneraAnteprime(CreaXmlSelezione(), indirizzo, this, Esito("GeneraAnteprime", true));
    });
}

void clsSrvCartella::InviaCompresso()
{
    modTraccia::Proteggi("InviaCompresso", [&] {
        if (mCartella && NumeroSelezionati() > 0)
            mCartella->InviaCompresso(CreaXmlSelezione(), this, Esito("InviaCompresso", true));
    });
}

PxOggettoVista clsSrvCartella::OggettoCorrente() const
{
    const QModelIndex i = mAmbiente.Lista.selectionModel()->currentIndex();
    if (!i.isValid() || !mCartella)
        return {};
    PxOggettoVista o;
    o.Chiave = ChiaveCorrente();
    if (o.Chiave.isEmpty() && !i.data(PxModelloContenuto::RuoloGruppo).toBool() && i.parent().isValid()) {
        // A linked document's row: its id is its first cell.
        o.Chiave = i.siblingAtColumn(0).data().toString();
        o.Collegato = true;
    }
    if (o.Chiave.isEmpty())
        return {};
    o.Descrizione = [cartella = mCartella, id = o.Chiave](QObject* richiedente, PxSrvOggetto::Esito fatto) {
        if (cartella)
            cartella->Documento(id, richiedente, std::move(fatto));
    };
    return o;
}

void clsSrvCartella::VisualizzaDocumento()
{
    modTraccia::Proteggi("VisualizzaDocumento", [&] {
        const QString id = DocumentoScelto();
        if (!mCartella || id.isEmpty())
            return;
        mCartella->Documento(id, this, [this](const PxRisposta& r) {
            if (!r.Riuscita()) {
                RegistraErrore("VisualizzaDocumento", r.Testo);
                Avvisa(8021, r.Testo);
                return;
            }
            emit MostraDocumento(r.Testo);
        });
    });
}

void clsSrvCartella::CartellaDocumento()
{
    modTraccia::Proteggi("CartellaDocumento", [&] {
        const QString id = DocumentoScelto();
        if (!mCartella || id.isEmpty() || !mContesto.Server())
            return;
        const QString base = mContesto.Server()->Cartella();
        mCartella->CartellaDocumento(id, this, [this, base](const PxRisposta& r) {
            if (!r.Riuscita()) {
                RegistraErrore("CartellaDocumento", r.Testo);
                Avvisa(8021, r.Testo);
                return;
            }
            if (const modApri::Motivo m = modApri::Apri(r.Testo, base, true); m != modApri::Consentito) {
                RegistraErrore("CartellaDocumento", r.Testo);
                Avvisa(m, r.Testo);
            }
        });
    });
}

void clsSrvCartella::VisualizzaUscita()
{
    modTraccia::Proteggi("VisualizzaUscita", [&] {
        const QString id = DocumentoScelto();
        if (!mCartella || id.isEmpty() || !mContesto.Server())
            return;
        const bool locali = mContesto.Server()->FileLocali();
        const QString base = locali ? mContesto.Server()->Cartella()
                                    : QStandardPaths::writableLocation(QStandardPaths::TempLocation);
        const QStringList tipi = mDef.Uscita.Id == 5307 ? QStringList{QStringLiteral("tif"), QStringLiteral("tiff")}
                                                        : QStringList{QStringLiteral("pdf")};
        mCartella->FileOutput(id, this, [this, base, tipi, locali](const PxRisposta& r) {
            if (!r.Riuscita()) {
                RegistraErrore("VisualizzaUscita", r.Testo);
                Avvisa(8021, r.Testo);
                return;
            }
            QString percorso = r.Testo;
            if (!locali) {
                // A server elsewhere sends the bytes: they are kept in a file of ours to open.
                percorso = QDir(base).filePath(QFileInfo(QDir::fromNativeSeparators(r.Testo)).fileName());
                QFile file(percorso);
                if (!file.open(QIODevice::WriteOnly) || file.write(r.Dati) != r.Dati.size() || !file.flush()) {
                    RegistraErrore("VisualizzaUscita", file.errorString());
                    Avvisa(8035, percorso);
                    return;
                }
                file.close();
            }
            if (const modApri::Motivo m = modApri::Apri(percorso, base, false, tipi); m != modApri::Consentito) {
                RegistraErrore("VisualizzaUscita", percorso);
                Avvisa(m, percorso);
            }
        });
    });
}
