#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>

// Reads an installation ini file by the rules of the platform it comes from: section and
// key names are case-insensitive, backslashes are plain characters, ';' at the start of a
// line begins a comment, a value wrapped in matching quotes loses them, the first of two
// equal keys (or sections) wins. The text is UTF-8 (with or without byte-order mark) or,
// when it is not valid UTF-8, Windows-1252. Read-only.
class PxLettoreIni
{
public:
    PxLettoreIni() = default;
    // Reads `file`; a missing or unreadable file reads as empty.
    explicit PxLettoreIni(const QString& file);

    static PxLettoreIni DaDati(const QByteArray& dati);

    // The value, cut to `lunghezzaMassima` - 1 characters like a fixed read buffer
    // (0: no limit); `predefinito` when the key is missing.
    QString Stringa(const QString& sezione, const QString& chiave, const QString& predefinito,
                    int lunghezzaMassima = 0) const;
    // 1/-1/true/vero/si/yes/on read true, 0/false/falso/no/off read false; otherwise `predefinito`.
    bool Booleano(const QString& sezione, const QString& chiave, bool predefinito) const;
    // An integer value; `predefinito` when missing or not a number.
    int Intero(const QString& sezione, const QString& chiave, int predefinito) const;
    bool Contiene(const QString& sezione, const QString& chiave) const;

    static QString Decodifica(const QByteArray& dati);

private:
    void Analizza(const QString& testo);
    static QString Chiave(const QString& sezione, const QString& chiave);

    QHash<QString, QString> mValori; // "section\nkey" folded to lower case -> value
};
