#pragma once

#include <QtGlobal>

// What the icon resource needs of the server object: its state code (4 = running).
class IPxStatoServer
{
public:
    virtual ~IPxStatoServer() = default;
    virtual qint32 Stato() const = 0;
};
