#pragma once

#include "PxConsoleStato.h"

#include <QObject>
#include <QString>

#include <pugixml.hpp>

class PxConsoleResDll;
class PxIconResource;
class PxLogConsole;
class PxSrvServer;
struct PxImpostazioni;

// What a window or pane may use of the console: the texts, the icons, the server's console-
// side objects, the operator's settings, the console log and the layout document, and the
// console's state and busy mark as they change. The engine makes one and hands it to the
// main window, which hands it on; no window sees the engine itself.
class PxContesto : public QObject
{
    Q_OBJECT

public:
    PxContesto(const PxConsoleResDll& testi, const PxIconResource& icone, const PxImpostazioni& impostazioni,
               PxLogConsole& log, PxSrvServer* server = nullptr, QObject* parent = nullptr);

    const PxConsoleResDll& Testi() const { return mTesti; }
    const PxIconResource& Icone() const { return mIcone; }
    const PxImpostazioni& Impostazioni() const { return mImpostazioni; }
    PxLogConsole& Log() const { return mLog; }
    // The server, once the host has given it (nullptr before).
    PxSrvServer* Server() const { return mServer; }
    // The root element "PLX" of "UIConsole.xml": each view keeps its layout under it.
    pugi::xml_node UIRoot() const { return mUIRoot; }
    // From "PlxConfigurazione.ini", section "Console".
    QString EstensioneFileZip() const { return mEstensioneFileZip; }
    bool MostraStrumentiProcessi() const { return mMostraStrumentiProcessi; }
    // Set between the background worker's Inizio and Fine: document commands stay disabled.
    bool Occupato() const { return mOccupato; }
    const PxConsoleStato& Stato() const { return mStato; }

signals:
    void CambioOccupato(bool occupato);
    void CambioStato(qint32 codice);

private:
    friend class PxSrvConsole;
    friend struct PxContestoSonda; // tests lend it a layout document

    const PxConsoleResDll& mTesti;
    const PxIconResource& mIcone;
    const PxImpostazioni& mImpostazioni;
    PxLogConsole& mLog;
    PxSrvServer* mServer = nullptr;
    pugi::xml_node mUIRoot;
    QString mEstensioneFileZip = QStringLiteral(".pxz");
    bool mMostraStrumentiProcessi = false;
    bool mOccupato = false;
    PxConsoleStato mStato;
};
