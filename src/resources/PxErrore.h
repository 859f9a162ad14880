#pragma once

#include <QString>

#include <exception>
#include <string>

// A numbered error, as the console raises it to its host and as every procedure
// logs it: the number, the source (the program's title or a component name) and
// the text. Plain value type; cheap to copy.
class PxErrore : public std::exception
{
public:
    PxErrore(qint32 numero, QString sorgente, QString descrizione)
        : mNumero(numero), mSorgente(std::move(sorgente)), mDescrizione(std::move(descrizione)),
          mUtf8(QStringLiteral("%1 - %2: %3").arg(mNumero).arg(mSorgente, mDescrizione).toStdString())
    {
    }

    qint32 Numero() const noexcept { return mNumero; }
    const QString& Sorgente() const noexcept { return mSorgente; }
    const QString& Descrizione() const noexcept { return mDescrizione; }
    const char* what() const noexcept override { return mUtf8.c_str(); }

private:
    qint32 mNumero;
    QString mSorgente;
    QString mDescrizione;
    std::string mUtf8;
};

// Error numbers of the runtime that the console keeps for compatibility with its host.
namespace modErrori {
inline constexpr qint32 ErrPercorsoNonTrovato = 76;   // path not found
inline constexpr qint32 ErrOggettoMancante = 91;      // object variable not set
inline constexpr qint32 ErrCaricamentoOggetto = 361;  // cannot load or unload this object
inline constexpr qint32 ErrAzioneNonSupportata = 445; // object does not support this action
inline constexpr qint32 ErrGenerico = 5;              // invalid procedure call or argument
inline constexpr qint32 ErrOverflow = 6;              // arithmetic overflow
inline constexpr qint32 ErrTipoNonCorrispondente = 13; // type mismatch (a text that is not a number)
inline constexpr qint32 ErrRisorsa = 50001;           // resource lookups of the resource module

// The runtime's own text for a number (the platform's message), "" when unknown.
QString TestoErrore(qint32 numero);
} // namespace modErrori
