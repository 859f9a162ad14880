#pragma once

#include <QString>
#include <QStringList>

// Opening a folder or file for the operator with the desktop's handler. Nothing is ever run:
// links are resolved first, and only a folder, or a regular, non-executable file of a document
// kind, reaches the desktop.
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
    Eseguibile = 8060,
};

// A document's own folder or output file: only inside the server folder (links resolved),
// a folder when `cartella`, otherwise a file whose suffix is one of `estensioni`.
Motivo Verifica(const QString& percorso, const QString& cartellaServer, bool cartella, const QStringList& estensioni = {});
// Opens it when Verifica allows; returns why not.
Motivo Apri(const QString& percorso, const QString& cartellaServer, bool cartella, const QStringList& estensioni = {});

// The kinds of file the server writes and the operator reads: documents (pdf, tif), their
// header, body and script texts, descriptions, logs, published texts, mail and archives.
const QStringList& TipiDocumento();
// Any path a sheet names (an absolute one): a folder wherever it is, or a regular file of a
// document kind that is neither executable by its permissions nor a program or script by its
// content. Links are judged by what they point to.
Motivo VerificaPercorso(const QString& percorso);
// Opens it when VerificaPercorso allows; returns why not.
Motivo ApriPercorso(const QString& percorso);

} // namespace modApri
