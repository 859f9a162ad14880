#pragma once

#include "PxContratto.h"

#include <QString>
#include <QStringList>

#include <optional>

class RefCartellaDocumenti;

// The commands that make documents in another folder from a selection of a folder's: previews
// and compressed sends. Each answers as the request does (refused or failed with the reason);
// the folder that was asked logs the answer.
namespace modComandiCartella {

// The selected ids of a selection document, without repeats; nullopt when it does not parse.
std::optional<QStringList> Selezione(const QString& xml);

// A preview document in `anteprime` for each of `id` of `da`, for the client at `indirizzo`,
// carrying a copy of its body.
PxRisposta Anteprime(const RefCartellaDocumenti& da, const QStringList& id, const QString& indirizzo,
                     RefCartellaDocumenti& anteprime);

// One e-mail in `email` with the documents of `id` (their own regular files) in a ZIP archive
// named with `estensioneZip`.
PxRisposta Comprimi(const RefCartellaDocumenti& da, const QStringList& id, RefCartellaDocumenti& email,
                    const QString& estensioneZip);

} // namespace modComandiCartella
