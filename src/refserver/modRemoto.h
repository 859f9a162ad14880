#pragma once

class QRemoteObjectHostBase;
class RefServer;

// The reference server published through Qt Remote Objects.
namespace modRemoto {

// Enables remoting of every object `server` publishes that `host` does not publish yet, each
// under its contract name (`host` lives on the server's thread). Called at the start and again
// once the server has loaded. Returns how many objects were added.
int Pubblica(QRemoteObjectHostBase& host, const RefServer& server);

} // namespace modRemoto
