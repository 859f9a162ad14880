#pragma once

#include <QString>

// Who is asking: every request a server carries out is checked against the caller's role.
// The listener of each connection names the caller before the requests it carries are read
// (on the server's thread, so the answer holds for the request being served). Local
// connections and callers in this process are operators; a TLS client is what the folder's
// roles file says of its certificate's common name, an observer when it says nothing.
//
// Roles file, "Ruoli.txt" in the server folder, one client a line ('#' starts a comment):
//   operatore    console-sala-controllo
//   osservatore  monitor-noc
namespace RefAccesso {

enum class Ruolo { Operatore, Osservatore };

struct Chiamante
{
    Ruolo Permessi = Ruolo::Operatore;
    QString Nome = QStringLiteral("locale"); // for the log: "locale", or the certificate's name
};

const Chiamante& Corrente();
void ImpostaCorrente(const Chiamante& chiamante);

// The role the roles file of `cartellaServer` gives to common name `nome`.
Ruolo RuoloDi(const QString& cartellaServer, const QString& nome);
QString NomeRuolo(Ruolo ruolo);

// Whether the current caller may change things; when not, `motivo` says why (for the answer).
bool PuoAgire(const QString& operazione, QString* motivo);
// "da <name> (<role>)", for the log line of a command carried out.
QString Chi();

} // namespace RefAccesso
