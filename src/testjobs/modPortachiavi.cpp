#include "modPortachiavi.h"

#include <QObject>
#include <QPointer>

#include <qt6keychain/keychain.h>

namespace modPortachiavi {

namespace {
const Portachiavi* Sostituto = nullptr;
const QString Servizio = QStringLiteral("PlxSrvConsole");
} // namespace

void ImpostaPortachiavi(const Portachiavi* portachiavi) { Sostituto = portachiavi; }

void Leggi(const QString& chiave, QObject* contesto, std::function<void(bool, const QString&)> fatto)
{
    QPointer<QObject> vivo(contesto);
    const auto consegna = [vivo, fatto](bool riuscito, const QString& password) {
        if (vivo)
            fatto(riuscito, password);
    };
    if (Sostituto) {
        Sostituto->Leggi(chiave, consegna);
        return;
    }
    auto* lavoro = new QKeychain::ReadPasswordJob(Servizio);
    lavoro->setAutoDelete(true);
    lavoro->setInsecureFallback(false);
    lavoro->setKey(chiave);
    QObject::connect(lavoro, &QKeychain::Job::finished, contesto, [consegna](QKeychain::Job* j) {
        auto* r = static_cast<QKeychain::ReadPasswordJob*>(j);
        consegna(r->error() == QKeychain::NoError, r->error() == QKeychain::NoError ? r->textData() : QString());
    });
    lavoro->start();
}

void Scrivi(const QString& chiave, const QString& password, QObject* contesto, std::function<void(bool)> fatto)
{
    QPointer<QObject> vivo(contesto);
    const auto consegna = [vivo, fatto](bool riuscito) {
        if (vivo)
            fatto(riuscito);
    };
    if (Sostituto) {
        Sostituto->Scrivi(chiave, password, consegna);
        return;
    }
    auto* lavoro = new QKeychain::WritePasswordJob(Servizio);
    lavoro->setAutoDelete(true);
    lavoro->setInsecureFallback(false);
    lavoro->setKey(chiave);
    lavoro->setTextData(password);
    QObject::connect(lavoro, &QKeychain::Job::finished, contesto,
                     [consegna](QKeychain::Job* j) { consegna(j->error() == QKeychain::NoError); });
    lavoro->start();
}

} // namespace modPortachiavi
