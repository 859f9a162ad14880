#include "modRemoto.h"

#include "RefServer.h"

#include <QRemoteObjectHost>

namespace modRemoto {

int Pubblica(QRemoteObjectHostBase& host, const RefServer& server)
{
    int pubblicati = 0;
    for (const QString& nome : server.Nomi())
        if (QObject* oggetto = server.Oggetto(nome); oggetto && host.enableRemoting(oggetto, nome))
            ++pubblicati;
    return pubblicati;
}

} // namespace modRemoto
