#include "PxSrvCartellaDocumenti.h"

#include "PxXmlCallBack.h"

PxSrvCartellaDocumenti::PxSrvCartellaDocumenti(const QString& chiave, const QString& chiaveServizio, bool fileLocali,
                                               QList<qint32> codeOpzionali, QObject* parent)
    : PxSrvOggetto(modContratto::NomeCartella(chiave), parent),
      mChiave(chiave),
      mChiaveServizio(chiaveServizio),
      mFileLocali(fileLocali),
      mCodeOpzionali(std::move(codeOpzionali))
{
}

void PxSrvCartellaDocumenti::Elenca(PxXmlCallBack* callback)
{
    if (callback)
        Chiama("RichiediElenco", callback, ConsegnaXml(callback));
}

void PxSrvCartellaDocumenti::SpostaDocumenti(const QString& selezioneXml, qint32 coda, QObject* richiedente, Esito fatto)
{
    Chiama("SpostaDocumenti", richiedente, std::move(fatto), selezioneXml, coda);
}

void PxSrvCartellaDocumenti::GeneraAnteprime(const QString& selezioneXml, const QString& indirizzo, QObject* richiedente,
                                             Esito fatto)
{
    Chiama("GeneraAnteprime", richiedente, std::move(fatto), selezioneXml, indirizzo);
}

void PxSrvCartellaDocumenti::InviaCompresso(const QString& selezioneXml, QObject* richiedente, Esito fatto)
{
    Chiama("InviaCompresso", richiedente, std::move(fatto), selezioneXml);
}

void PxSrvCartellaDocumenti::CartellaDocumento(const QString& id, QObject* richiedente, Esito fatto)
{
    Chiama("CartellaDocumento", richiedente, std::move(fatto), id);
}

void PxSrvCartellaDocumenti::FileOutput(const QString& id, QObject* richiedente, Esito fatto)
{
    Chiama("FileOutput", richiedente, std::move(fatto), id, !mFileLocali);
}

void PxSrvCartellaDocumenti::Documento(const QString& id, QObject* richiedente, Esito fatto)
{
    Chiama("Documento", richiedente, std::move(fatto), id);
}
