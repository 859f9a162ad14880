#include "PxSegnaliArresto.h"

#include <QSocketNotifier>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace {

int gScrittura = -1;
constexpr int Segnali[] = {SIGTERM, SIGINT, SIGHUP};

void Gestore(int segnale)
{
    // Only async-signal-safe calls here; a full pipe drops the byte, and one is enough.
    const int errnoPrima = errno;
    const unsigned char numero = static_cast<unsigned char>(segnale);
    [[maybe_unused]] const ssize_t scritti = ::write(gScrittura, &numero, 1);
    errno = errnoPrima;
}

} // namespace

PxSegnaliArresto::PxSegnaliArresto(QObject* parent) : QObject(parent)
{
    int tubo[2];
    if (gScrittura >= 0 || ::pipe2(tubo, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    mLettura = tubo[0];
    gScrittura = tubo[1];
    mNotifica = new QSocketNotifier(mLettura, QSocketNotifier::Read, this);
    connect(mNotifica, &QSocketNotifier::activated, this, &PxSegnaliArresto::Leggi);
    struct sigaction azione {};
    azione.sa_handler = Gestore;
    sigemptyset(&azione.sa_mask);
    azione.sa_flags = SA_RESTART;
    for (const int segnale : Segnali)
        ::sigaction(segnale, &azione, nullptr);
}

PxSegnaliArresto::~PxSegnaliArresto()
{
    if (!mNotifica)
        return;
    for (const int segnale : Segnali)
        ::signal(segnale, SIG_DFL);
    ::close(gScrittura);
    ::close(mLettura);
    gScrittura = -1;
}

void PxSegnaliArresto::Leggi()
{
    unsigned char numero = 0;
    while (::read(mLettura, &numero, 1) == 1)
        emit Arresto(numero);
}
