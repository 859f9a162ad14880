#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QVariant>

// The header of a print job (".hpx"): a typed key/value document of type "HPX",
// version "2.0.0". Values stand at the top level or in named sections; each has a type:
// text, integer, floating point or date. A key may be written more than once; reading
// returns the last value written.
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <HPX Versione="2.0.0">
//     <Valore Nome="Tipo" Tipo="Intero">2</Valore>
//     <Sezione Nome="PROPRIETA">
//       <Valore Nome="Id" Tipo="Testo">Pagina di prova di Laser</Valore>
//       <Valore Nome="Data" Tipo="Data">2026-11-22T10:15:00</Valore>
//     </Sezione>
//   </HPX>
class PxIntestazioneHpx
{
public:
    enum class Tipo { Testo, Intero, Decimale, Data };

    struct Valore
    {
        QString Sezione; // "" at the top level
        QString Nome;
        Tipo Genere = Tipo::Testo;
        QVariant Dato;
    };

    static constexpr const char* Versione = "2.0.0";
    // What a reader accepts: a header of at most 1 MiB (a real one is a few kilobytes), each
    // value at most 8192 characters (every value may end up in a listing and a description).
    static constexpr qsizetype MassimoTesto = 1024 * 1024;
    static constexpr qsizetype MassimoValore = 8192;

    void ScriviTesto(const QString& sezione, const QString& nome, const QString& valore);
    void ScriviIntero(const QString& sezione, const QString& nome, qint64 valore);
    void ScriviDecimale(const QString& sezione, const QString& nome, double valore);
    void ScriviData(const QString& sezione, const QString& nome, const QDateTime& valore);

    // The last value written under `sezione`/`nome` (section names are case-insensitive);
    // an invalid QVariant when there is none.
    QVariant Leggi(const QString& sezione, const QString& nome) const;
    QString Testo(const QString& sezione, const QString& nome, const QString& predefinito = {}) const;
    qint64 Intero(const QString& sezione, const QString& nome, qint64 predefinito = 0) const;
    QDateTime Data(const QString& sezione, const QString& nome) const;
    const QList<Valore>& Valori() const { return mValori; }

    // The document text, UTF-8.
    QByteArray Serializza() const;
    // Reads a header; on failure returns false and puts the reason (with the offset) in
    // `errore`. A text over MassimoTesto, or a value over MassimoValore, is refused.
    bool Analizza(const QByteArray& testo, QString* errore = nullptr);

private:
    void Aggiungi(const QString& sezione, const QString& nome, Tipo genere, QVariant dato);
    QList<Valore> mValori;
};
