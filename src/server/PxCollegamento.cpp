#include "PxCollegamento.h"

void PxCollegamentoDiretto::Acquisisci(const QString& nome, QObject* contesto, Pronta pronta)
{
    if (contesto && pronta)
        pronta(mTrova ? mTrova(nome) : nullptr);
}
