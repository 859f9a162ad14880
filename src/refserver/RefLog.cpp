#include "RefLog.h"

#include "PxRigaLog.h"

#include <QFileInfo>
#include <QTime>

namespace {

RefLog::Eco& EcoGlobale()
{
    static RefLog::Eco eco;
    return eco;
}

} // namespace

RefLog::RefLog(QString percorso) : mPercorso(std::move(percorso)), mFile(mPercorso) {}

void RefLog::ImpostaEco(Eco eco) { EcoGlobale() = std::move(eco); }

bool RefLog::Scrivi(int livello, const QString& testo)
{
    if (const Eco& eco = EcoGlobale())
        eco(QFileInfo(mPercorso).completeBaseName(), livello, testo);
    if (!mFile.isOpen() && !mFile.open(QIODevice::WriteOnly | QIODevice::Append))
        return Fallito(mFile.errorString());
    const QByteArray riga = modRigaLog::Formatta(livello, QTime::currentTime(), testo);
    // A full disk shows at the write or at the flush.
    if (mFile.write(riga) != riga.size() || !mFile.flush()) {
        const QString motivo = mFile.errorString();
        mFile.close(); // reopened on the next line
        return Fallito(motivo);
    }
    mGuasto = false;
    return true;
}

bool RefLog::Fallito(const QString& motivo)
{
    if (!mGuasto) {
        mGuasto = true; // before the handler: it may well write to this log itself
        if (mAlGuasto)
            mAlGuasto(motivo);
    }
    return false;
}
