#pragma once

class QRemoteObjectHostBase;
class RefServer;

// The reference server published through Qt Remote Objects.
namespace modRemoto {

// Enables remoting of every object `server` publishes, each under its contract name, on
// `host` (which lives on the server's thread). Call once the server has loaded. Returns how
// many objects were published.
int Pubblica(QRemoteObjectHostBase& host, const RefServer& server);

} // namespace modRemoto
