#include "PxContesto.h"

PxContesto::PxContesto(const PxConsoleResDll& testi, const PxIconResource& icone, const PxImpostazioni& impostazioni,
                       PxLogConsole& log, PxSrvServer* server, QObject* parent)
    : QObject(parent), mTesti(testi), mIcone(icone), mImpostazioni(impostazioni), mLog(log), mServer(server)
{
}
