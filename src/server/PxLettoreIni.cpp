#include "PxLettoreIni.h"

#include "modCp1252.h"

#include <QFile>
#include <QSet>
#include <QStringDecoder>


PxLettoreIni::PxLettoreIni(const QString& file)
{
    QFile f(file);
    if (f.open(QIODevice::ReadOnly))
        Analizza(Decodifica(f.readAll()));
}

PxLettoreIni PxLettoreIni::DaDati(const QByteArray& dati)
{
    PxLettoreIni ini;
    ini.Analizza(Decodifica(dati));
    return ini;
}

QString PxLettoreIni::Decodifica(const QByteArray& dati)
{
    QByteArrayView testo(dati);
    if (testo.startsWith("\xEF\xBB\xBF"))
        testo = testo.sliced(3);
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString risultato = utf8.decode(testo);
    if (!utf8.hasError())
        return risultato;
    return modCp1252::Decodifica(testo);
}

QString PxLettoreIni::Chiave(const QString& sezione, const QString& chiave)
{
    return sezione.trimmed().toCaseFolded() + u'\n' + chiave.trimmed().toCaseFolded();
}

void PxLettoreIni::Analizza(const QString& testo)
{
    QSet<QString> sezioniViste;
    QString sezione;
    bool sezioneValida = false; // false before the first section and in a repeated one
    for (QStringView riga : QStringView(testo).split(u'\n')) {
        riga = riga.trimmed(); // also drops the CR of CR LF
        if (riga.isEmpty() || riga.startsWith(u';'))
            continue;
        if (riga.startsWith(u'[')) {
            const qsizetype fine = riga.indexOf(u']');
            sezione = riga.mid(1, fine < 0 ? -1 : fine - 1).trimmed().toString().toCaseFolded();
            sezioneValida = !sezioniViste.contains(sezione);
            sezioniViste.insert(sezione);
            continue;
        }
        const qsizetype uguale = riga.indexOf(u'=');
        if (!sezioneValida || uguale <= 0)
            continue;
        const QString chiave = Chiave(sezione, riga.left(uguale).toString());
        if (mValori.contains(chiave))
            continue;
        QStringView valore = riga.mid(uguale + 1).trimmed();
        if (valore.size() >= 2 && (valore.front() == u'"' || valore.front() == u'\'') && valore.back() == valore.front())
            valore = valore.mid(1, valore.size() - 2);
        mValori.insert(chiave, valore.toString());
    }
}

bool PxLettoreIni::Contiene(const QString& sezione, const QString& chiave) const
{
    return mValori.contains(Chiave(sezione, chiave));
}

QString PxLettoreIni::Stringa(const QString& sezione, const QString& chiave, const QString& predefinito,
                              int lunghezzaMassima) const
{
    QString valore = mValori.value(Chiave(sezione, chiave), predefinito);
    if (lunghezzaMassima > 0 && valore.size() > lunghezzaMassima - 1)
        valore.truncate(lunghezzaMassima - 1);
    return valore;
}

bool PxLettoreIni::Booleano(const QString& sezione, const QString& chiave, bool predefinito) const
{
    const auto it = mValori.constFind(Chiave(sezione, chiave));
    if (it == mValori.cend())
        return predefinito;
    const QString v = it->trimmed().toCaseFolded();
    bool numero = false;
    const int n = v.toInt(&numero);
    if (numero)
        return n != 0;
    static const QSet<QString> veri{QStringLiteral("true"), QStringLiteral("vero"), QStringLiteral("si"), QStringLiteral("sì"), QStringLiteral("yes"), QStringLiteral("on")};
    static const QSet<QString> falsi{QStringLiteral("false"), QStringLiteral("falso"), QStringLiteral("no"), QStringLiteral("off")};
    if (veri.contains(v))
        return true;
    if (falsi.contains(v))
        return false;
    return predefinito;
}

int PxLettoreIni::Intero(const QString& sezione, const QString& chiave, int predefinito) const
{
    bool ok = false;
    const int n = mValori.value(Chiave(sezione, chiave)).trimmed().toInt(&ok);
    return ok ? n : predefinito;
}
