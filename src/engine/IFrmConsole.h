#pragma once

class frmApertura;

// What the engine needs of the main window; the main window implements it, so the engine
// never includes it. Every call comes from the user-interface thread.
class IFrmConsole
{
public:
    virtual ~IFrmConsole() = default;

    // Builds the window's content, reporting each loading step to `apertura` (may be null).
    virtual void Inizializza(frmApertura* apertura) = 0;
    virtual void Mostra() = 0;
    virtual void Nascondi() = 0;
    // False once the operator has closed (hidden) the window.
    virtual bool Visibile() const = 0;
    // Releases the live view and saves the layout; the window is destroyed right after.
    virtual void Termina() = 0;
    // Sets the live view's command states again (the console-wide busy mark changed).
    virtual void ConfiguraPulsanti() = 0;
    // As above for views that follow the server's run state.
    virtual void ConfiguraPulsantiServer() = 0;
    virtual void AggiornaBarraComandi() = 0;
};
