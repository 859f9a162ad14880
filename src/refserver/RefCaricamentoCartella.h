#pragma once

#include "DatiDocumento.h"
#include "modCartelle.h"

#include <QString>

#include <atomic>
#include <functional>
#include <vector>

class RefLog;

// A document folder's start, from its disk: first what a crash left is put right (a creation
// interrupted goes back to its input folder or is set aside whole, temporary files go), then
// every document's description is read, by several threads, and checked (readable, its own
// id and kind, file names that stay in its folder, each id once).
class RefCaricamentoCartella
{
public:
    // `osserva` hears of every id found on disk, unreadable documents' and set-aside
    // creations' too, so that no new id takes one of them.
    RefCaricamentoCartella(const modCartelle::Definizione& definizione, const QString& cartellaServer, const QString& radice,
                           RefLog& logServer, std::function<void(QStringView nome)> osserva);

    // Puts right what a crash left and lists the document folders; how many there are.
    qint64 Prepara();

    struct Documento
    {
        DatiDocumento Dati;
        bool FuoriCoda = false; // its description named another queue than the one it lies in
    };
    // Reads what Prepara listed (calling Prepara first if it was not), in the order the
    // documents were last processed; empty once `interrompi` became true. Documents that
    // cannot be used are left out, with a line in the server log each.
    std::vector<Documento> Leggi(const std::function<void(qint64 letti)>& avanzamento, const std::atomic<bool>* interrompi);

private:
    QString Chiave() const { return QString::fromLatin1(mDef.Chiave); }
    QString CartellaCoda(qint32 coda) const;
    // A creation a crash interrupted leaves a hidden ".<id>.nuovo" folder: its files (maybe a
    // job's, moved in from an input folder) are set aside whole, never deleted.
    void Recupera(const QString& cartellaCoda);
    // A creation that was taking a job's files: puts them back where they came from, whole.
    bool RimettiInIngresso(const QString& provvisoria);

    struct Candidato
    {
        qint32 Coda;
        QString Nome;
    };

    const modCartelle::Definizione& mDef;
    QString mCartellaServer;
    QString mRadice;
    RefLog& mLogServer;
    std::function<void(QStringView)> mOsserva;
    std::vector<Candidato> mCandidati;
    bool mPreparato = false;
};
