#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class PxSrvServer;

// One command of plxsrvctl, carried out against a bound server; ends the event loop with the
// command's exit status. Human-readable output by default, JSON (one document, or one line
// per notice for watch) with `json`.
class PxCtl : public QObject
{
    Q_OBJECT

public:
    // Exit statuses, as --help lists them.
    enum : int { Fatto = 0, Rifiutato = 1, Uso = 2, Irraggiungibile = 3 };

    PxCtl(PxSrvServer& server, bool json, QObject* parent = nullptr);

    // Runs `comando` with `argomenti` once the server is ready; Fine follows.
    void Esegui(const QString& comando, const QStringList& argomenti);
    // Whether `comando` is one of ours.
    static bool Conosciuto(const QString& comando);

signals:
    void Fine(int esito);

private:
    void Stato();
    void Elenco(const QStringList& argomenti);
    void Sposta(const QStringList& argomenti);
    void Servizio(const QString& comando, const QStringList& argomenti);
    void Osserva();
    void PaginaDiProva(const QStringList& argomenti);

    // The folder or service key an operator typed ("fax", "DocFax", "PxSrvDocFax"), or "".
    QString Cartella(const QString& nome) const;
    QString ChiaveServizio(const QString& nome) const;
    void Termina(int esito, const QString& messaggio = {});
    void Stampa(const QByteArray& testo);

    PxSrvServer& mServer;
    bool mJson;
};
