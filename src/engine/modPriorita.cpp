#include "modPriorita.h"

#include <sys/resource.h>

namespace modPriorita {

bool ImpostaClassePriorita(quint32 classe)
{
    int nice = 0;
    switch (classe) {
    case 0x20: nice = 0; break;
    case 0x40: nice = 19; break;
    case 0x80: nice = -10; break;
    case 0x100: nice = -20; break;
    case 0x4000: nice = 5; break;
    case 0x8000: nice = -5; break;
    default: return false;
    }
    return setpriority(PRIO_PROCESS, 0, nice) == 0;
}

} // namespace modPriorita
