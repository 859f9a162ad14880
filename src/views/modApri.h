#pragma once

#include <QString>
#include <QStringList>

// Opening a document's folder or output file for the operator with the desktop's handler.
// Only a folder, or a file of an expected kind, that lies inside the server folder (links
// resolved) is handed on; nothing is ever run.
namespace modApri {

// Why a path may not be opened: the value is the id of the text that says so (0: it may).
enum Motivo : qint32 {
    Consentito = 0,
    NonEsiste = 8030,
    FuoriCartella = 8031,
    NonCartella = 8032,
    NonFile = 8033,
    TipoImprevisto = 8034,
    NessunProgramma = 8035,
};

Motivo Verifica(const QString& percorso, const QString& cartellaServer, bool cartella, const QStringList& estensioni = {});
// Opens it when Verifica allows; returns why not.
Motivo Apri(const QString& percorso, const QString& cartellaServer, bool cartella, const QStringList& estensioni = {});

} // namespace modApri
