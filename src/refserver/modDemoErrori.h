#pragma once

#include <QString>
#include <QStringView>

#include <span>

// What can go wrong in each kind of work, one table per kind: a printer runs out of paper, a
// fax line is busy, an SMTP server answers 550, an FTP server refuses the login. The workers
// draw from their own table when they reject a document, and the demo's documents that were
// already rejected carry the same texts, so a folder reads as the live server writes it.
namespace modDemoErrori {

struct Errore
{
    qint32 Codice;     // the document's Errore/Codice (for SMTP and FTP, the reply code)
    const char* Testo; // "%1" stands for the attempts made, when the text speaks of them
    bool Ripetibile;   // a passing fault: the worker tries again, and rejects only after its last attempt
};

// The faults of the worker (or service) `chiave`, "PxSrvFaxVm"; a key without a table of its
// own gets a generic one, never an empty one.
std::span<const Errore> Di(QStringView chiave);

// The text of `e` for a document that has had `tentativi` attempts.
QString Testo(const Errore& e, qint32 tentativi);

// The attempts a text speaks of ("dopo 3 tentativi", "dopo 1 tentativo"); -1 when it speaks of none.
qint32 TentativiNelTesto(QStringView testo);

// Attempts a worker makes when its configuration does not say (NumeroTentativiInvio).
inline constexpr qint32 TentativiPredefiniti = 3;

} // namespace modDemoErrori
