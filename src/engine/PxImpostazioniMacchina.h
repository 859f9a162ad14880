#pragma once

#include <QSettings>
#include <QString>

#include <memory>

// What every operator of this server shares, such as what the test forms last sent: the
// machine's own settings store when it can be written (the system scope), otherwise a file in
// the server folder ("Console/Macchina.ini"), which every console of the server reads too.
// When neither can be written the values are still read, and Scrivibile() says so: the
// caller tells the operator and goes on.
class PxImpostazioniMacchina
{
public:
    explicit PxImpostazioniMacchina(const QString& cartellaServer);

    QSettings& Impostazioni() { return *mImpostazioni; }
    bool Scrivibile() const { return mImpostazioni->isWritable(); }
    // Where the values live, to name it in a message.
    QString Dove() const { return mImpostazioni->fileName(); }

private:
    std::unique_ptr<QSettings> mImpostazioni;
};
