#pragma once

#include <QtGlobal>

// Process priority by the classes of the platform the console comes from (0x20 normal,
// 0x40 idle, 0x80 high, 0x100 realtime, 0x4000 below normal, 0x8000 above normal),
// mapped onto nice values. A value that is not one of those classes is refused and the
// priority stays as it is. Raising the priority needs privileges: refused without them.
namespace modPriorita {
bool ImpostaClassePriorita(quint32 classe);
}
