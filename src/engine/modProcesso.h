#pragma once

#include <QtGlobal>

// Facts about this process that the platform keeps.
namespace modProcesso {

// Milliseconds since the process started (from the kernel's start time, 10 ms grain);
// -1 when the platform does not say.
qint64 MillisecondiDallAvvio();

} // namespace modProcesso
