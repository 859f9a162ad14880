#pragma once

#include <QString>

// The server's file operations that must not be fooled by what lies on disk: links are
// never followed, a rename never overwrites, names read from files never leave their folder.
namespace modDisco {

// Whether `percorso` itself is a regular file (a link to one is not).
bool FileRegolare(const QString& percorso);
// Whether anything (a link included, even a dangling one) has the name `percorso`.
bool Occupato(const QString& percorso);
// Renames `da` to `a` without following a link and without replacing what `a` names;
// false (and the reason in `errore`) when it cannot.
bool Rinomina(const QString& da, const QString& a, QString* errore = nullptr);
// Whether `nome` is a plain file name: not empty, no separator, not "." or "..".
bool NomeSemplice(const QString& nome);

} // namespace modDisco
