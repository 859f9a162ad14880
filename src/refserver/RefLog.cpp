#include "RefLog.h"

#include "PxRigaLog.h"

#include <QTime>

RefLog::RefLog(QString percorso) : mPercorso(std::move(percorso)), mFile(mPercorso) {}

void RefLog::Scrivi(int livello, const QString& testo)
{
    if (!mFile.isOpen() && !mFile.open(QIODevice::WriteOnly | QIODevice::Append))
        return;
    mFile.write(modRigaLog::Formatta(livello, QTime::currentTime(), testo));
    mFile.flush();
}
