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
// The window may put fixed commands of its own at the head of both: they stay when a view
// ends, and the view's controls follow them.
class PxBarraComandi : public QObject
{
    Q_OBJECT

public:
    PxBarraComandi(const PxConsoleResDll& testi, QToolBar* barra, QMenu* menu, QObject* parent = nullptr);

    // Drops every control a view declared; the fixed commands stay.
    void Svuota();
    // Puts `azioni` (owned by the caller) at the head of the bar and the menu, with a separator
    // after them; they stay there through Svuota.
    void ImpostaFisse(const QList<QAction*>& azioni);
    // The controls a view declared, in order, as the bar shows them (a pop-up as its menu's
    // action, separators included): what a context menu of the view offers.
    QList<QAction*> AzioniVista() const;
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
    void AggiungiFisse();
    void Separatore();

    const PxConsoleResDll& mTesti;
    QPointer<QToolBar> mBarra;
    QPointer<QMenu> mMenu;
    QHash<int, QAction*> mAzioni;
    QList<QObject*> mPropri; // what Svuota deletes
    QList<QAction*> mFisse;
    QList<QAction*> mOrdine; // the view's controls as declared, separators included
};
