#include "modRemoto.h"

#include "RefServer.h"

#include <QRemoteObjectHost>

namespace modRemoto {

int Pubblica(QRemoteObjectHostBase& host, const RefServer& server)
{
    // The host remembers what it publishes, so that the second call adds only the rest.
    static constexpr const char* Pubblicati = "plxPubblicati";
    QStringList pubblicati = host.property(Pubblicati).toStringList();
    int aggiunti = 0;
    for (const QString& nome : server.Nomi()) {
        QObject* oggetto = server.Oggetto(nome);
        if (!oggetto || pubblicati.contains(nome) || !host.enableRemoting(oggetto, nome))
            continue;
        pubblicati << nome;
        ++aggiunti;
    }
    host.setProperty(Pubblicati, pubblicati);
    return aggiunti;
}

} // namespace modRemoto
