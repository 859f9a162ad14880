#pragma once

#include <QObject>
#include <QTimer>

// The reference server's console companion: every few seconds it checks, on the console's
// behalf, that the server folder is still there and writable. The check is bracketed by
// Inizio and Fine; a folder that has gone raises Errore, which closes the console.
class RefBkgConsole : public QObject
{
    Q_OBJECT

public:
    explicit RefBkgConsole(QObject* parent = nullptr);

    void ImpostaIntervallo(int millisecondi) { mTimer.setInterval(millisecondi); }
    // Starts checking the folder of the console of `percorsoGui`.
    void AvviaControllo(const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui);
    // One check now (also what the timer runs).
    void Controlla();

public slots:
    void Avvia(quint64 richiesta, const QString& cartellaServer, const QString& identificativo, const QString& percorsoGui);
    void Termina(quint64 richiesta);

signals:
    void Inizio();
    void Fine();
    void Errore(qint32 numero, const QString& sorgente, const QString& descrizione);
    void Risposta(quint64 richiesta, qint32 esito, const QString& testo, const QByteArray& dati);

private:
    QTimer mTimer;
    QString mCartella;
    QString mIdentificativo;
    QString mPercorsoGui;
    bool mSegnalato = false;
};
