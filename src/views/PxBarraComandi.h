#pragma once

#include <QHash>
#include <QObject>
#include <QPointer>

class PxConsoleResDll;
class QAction;
class QMenu;
class QToolBar;
namespace pugi { class xml_node; }

// The command bar set the main window owns and the live view fills: a tool bar and a menu
// that hold the same actions, each carrying its numeric control id. A view declares its
// controls when it starts; they go when it ends. Executing a control raises Esegui(id).
class PxBarraComandi : public QObject
{
    Q_OBJECT

public:
    PxBarraComandi(const PxConsoleResDll& testi, QToolBar* barra, QMenu* menu, QObject* parent = nullptr);

    // Drops every control a view declared.
    void Svuota();
    // A plain button (or a toggle); `nuovoGruppo` puts a separator before it.
    QAction* Pulsante(int id, int testo, int descrizione, bool spuntabile = false, bool nuovoGruppo = false);
    // A pop-up control holding entries.
    QMenu* Tendina(int id, int testo, int descrizione);
    QAction* Voce(QMenu* tendina, int id, int testo, int descrizione);

    // The control of `id` (buttons and pop-up entries alike); nullptr when none.
    QAction* Azione(int id) const { return mAzioni.value(id); }
    void Abilita(int id, bool abilitato);
    bool Spuntato(int id) const;

    // The checked state of the toggles, under `nodo` / read back from it.
    void SalvaStato(pugi::xml_node nodo) const;
    void CaricaStato(const pugi::xml_node& nodo);

    static constexpr const char* ProprietaId = "IdComando";

signals:
    void Esegui(int id);

private:
    QAction* Nuova(int id, int testo, int descrizione, QObject* genitore);

    const PxConsoleResDll& mTesti;
    QPointer<QToolBar> mBarra;
    QPointer<QMenu> mMenu;
    QHash<int, QAction*> mAzioni;
    QList<QObject*> mPropri; // what Svuota deletes
};
