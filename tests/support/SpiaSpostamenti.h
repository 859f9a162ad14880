#pragma once

#include "PxContratto.h"
#include "RefServizio.h"

#include <QSignalSpy>

#include <vector>

// The moves a service announced, unpacked from its DocumentiSpostati notices in order, and
// how many notices carried them.
class SpiaSpostamenti
{
public:
    explicit SpiaSpostamenti(RefServizio* servizio) : mSpia(servizio, &RefServizio::DocumentiSpostati) {}

    std::vector<modContratto::Spostamento> Tutti() const
    {
        std::vector<modContratto::Spostamento> tutti;
        for (const QList<QVariant>& notizia : mSpia)
            for (modContratto::Spostamento& s : modContratto::SpacchettaSpostamenti(notizia.at(0).toByteArray()))
                tutti.push_back(std::move(s));
        return tutti;
    }
    qsizetype Notizie() const { return mSpia.size(); }
    bool Attendi(int ms = 5000) { return mSpia.wait(ms); }

private:
    QSignalSpy mSpia;
};
