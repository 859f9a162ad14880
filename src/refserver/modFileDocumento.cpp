#include "modFileDocumento.h"

#include "modPdf.h"
#include "modTiff.h"

#include <QIODevice>

#include <zip.h>

#include <initializer_list>
#include <limits>
#include <utility>

using namespace Qt::StringLiterals;

namespace modFileDocumento {

namespace {

// Epson ESC/P, the catalogue the demo's clients print with.
constexpr char GrassettoOn[] = "\x1b" "E", GrassettoOff[] = "\x1b" "F";
constexpr char DoppioOn[] = "\x1b" "W1", DoppioOff[] = "\x1b" "W0";
constexpr char SottolineatoOn[] = "\x1b" "-1", SottolineatoOff[] = "\x1b" "-0";
constexpr char CompressoOn[] = "\x0f", CompressoOff[] = "\x12";

QStringList Righe(const DatiDocumento& d)
{
    QStringList r{
        QStringLiteral("Documento %1").arg(d.Id),
        QString(),
        d.Descrizione,
        QString(),
        QStringLiteral("Utente: %1 (%2)").arg(d.UtenteDescrizione, d.Utente),
        QStringLiteral("Data: %1").arg(modDate::Testo(d.Inserito)),
    };
    if (!d.Oggetto.isEmpty())
        r << QStringLiteral("Oggetto: %1").arg(d.Oggetto);
    if (!d.A.isEmpty())
        r << QStringLiteral("A: %1").arg(d.A);
    if (!d.NumeroFax.isEmpty())
        r << QStringLiteral("Fax: +%1 %2 %3").arg(d.PrefissoInternazionale, d.PrefissoLocale, d.NumeroFax);
    r << QString() << QStringLiteral("Pagine: %1").arg(d.Pagine);
    return r;
}

} // namespace

QByteArray Corpo(const DatiDocumento& d)
{
    QByteArray c;
    c += QByteArray(DoppioOn) + GrassettoOn + d.Descrizione.toUtf8() + GrassettoOff + DoppioOff + "\r\n\r\n";
    c += "Documento " + d.Id.toUtf8() + "  -  " + modDate::Testo(d.Inserito).toUtf8() + "\r\n";
    c += "Cliente " + d.Sigla.toUtf8() + "  utente " + d.Utente.toUtf8() + "\r\n\r\n";
    c += QByteArray(SottolineatoOn) + "Riepilogo" + SottolineatoOff + "\r\n";
    c += QByteArray(CompressoOn);
    for (int riga = 1; riga <= 12; ++riga)
        c += QStringLiteral("%1  Articolo %2  quantita' %3  importo %4,%5\r\n")
                 .arg(riga, 3)
                 .arg(riga * 7 + d.Pagine, 5, 10, QChar(u'0'))
                 .arg(riga % 5 + 1)
                 .arg(riga * 13 + 2)
                 .arg(riga * 17 % 100, 2, 10, QChar(u'0'))
                 .toUtf8();
    c += QByteArray(CompressoOff) + "\r\n" + GrassettoOn + "Totale pagine " + QByteArray::number(d.Pagine) + GrassettoOff
        + "\r\n\x0c";
    return c;
}

QByteArray Script(const DatiDocumento& d)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n<PLX><Pagina Numero=\"0001\" Linguaggio=\"VBScript\"><Rigo>"
           "Sub Main()&#13;&#10;  Plx.FontName = \"Courier New\"&#13;&#10;  Plx.FontSize = 33&#13;&#10;"
           "  Plx.Z_AddTextEx 90, 150, 0, 0, \""
        + d.Id.toUtf8()
        + "\", TXT_STANDARD&#13;&#10;End Sub</Rigo></Pagina></PLX>\r\n";
}

PxIntestazioneHpx Intestazione(const DatiDocumento& d)
{
    PxIntestazioneHpx h;
    const QString p = u"PROPRIETA"_s;
    h.ScriviIntero({}, u"Tipo"_s, 2);
    h.ScriviTesto({}, u"Versione"_s, QString::fromLatin1(PxIntestazioneHpx::Versione));
    h.ScriviTesto(p, u"Id"_s, d.Id);
    h.ScriviTesto(p, u"Funzione"_s, d.Funzione);
    h.ScriviData(p, u"Data"_s, d.Inserito);
    h.ScriviTesto(p, u"Descrizione"_s, d.Descrizione);
    h.ScriviIntero(p, u"Priorita"_s, d.Priorita);
    h.ScriviTesto(p, u"Sigla"_s, d.Sigla);
    h.ScriviTesto(p, u"Utente"_s, d.Utente);
    h.ScriviTesto(p, u"UtenteDescrizione"_s, d.UtenteDescrizione);
    h.ScriviTesto(p, u"IP"_s, d.Ip);
    h.ScriviIntero(p, u"Pagine"_s, d.Pagine);
    if (!d.Stampante.isEmpty()) {
        h.ScriviTesto(u"STAMPA"_s, u"Stampante"_s, d.Stampante);
        h.ScriviIntero(u"STAMPA"_s, u"Numero"_s, d.NumeroTarquel);
        h.ScriviIntero(u"STAMPA"_s, u"Copie"_s, d.Copie);
    }
    if (!d.A.isEmpty()) {
        // The keys the console's test e-mail writes, which every client writes.
        h.ScriviTesto(u"EMAIL"_s, u"Oggetto"_s, d.Oggetto);
        h.ScriviTesto(u"EMAIL"_s, u"Account_IndirizzoEmail"_s, d.Da);
        h.ScriviTesto(u"EMAIL"_s, u"A_IndirizziEmail"_s, d.A);
        h.ScriviTesto(u"EMAIL"_s, u"Cc"_s, d.Cc);
        h.ScriviTesto(u"EMAIL"_s, u"Ccn"_s, d.Ccn);
    }
    if (!d.NumeroFax.isEmpty()) {
        h.ScriviTesto(u"FAX"_s, u"PrefissoInternazionale"_s, d.PrefissoInternazionale);
        h.ScriviTesto(u"FAX"_s, u"PrefissoLocale"_s, d.PrefissoLocale);
        h.ScriviTesto(u"FAX"_s, u"NumeroFax"_s, d.NumeroFax);
    }
    return h;
}

namespace {

// The first of `chiavi` (section, key) with a value that is not blank: the keys clients write
// first, then the shorter ones older headers carry.
QString Primo(const PxIntestazioneHpx& h, std::initializer_list<std::pair<const char*, const char*>> chiavi)
{
    for (const auto& [sezione, chiave] : chiavi)
        if (const QString v = h.Testo(QLatin1StringView(sezione), QLatin1StringView(chiave)); !v.trimmed().isEmpty())
            return v;
    return {};
}

} // namespace

QString DaIntestazione(const PxIntestazioneHpx& h, GenereCartella genere, DatiDocumento& d)
{
    const QString p = u"PROPRIETA"_s;
    if (!h.Leggi(p, u"Descrizione"_s).isValid())
        return u"manca PROPRIETA/Descrizione"_s;
    d.Genere = genere;
    d.Descrizione = h.Testo(p, u"Descrizione"_s);
    d.Funzione = h.Testo(p, u"Funzione"_s);
    d.Sigla = h.Testo(p, u"Sigla"_s);
    d.Utente = h.Testo(p, u"Utente"_s);
    d.UtenteDescrizione = h.Testo(p, u"UtenteDescrizione"_s);
    d.Ip = h.Testo(p, u"IP"_s);
    d.Priorita = static_cast<qint32>(std::clamp<qint64>(h.Intero(p, u"Priorita"_s), 0, 2));
    d.Pagine = static_cast<qint32>(std::clamp<qint64>(h.Intero(p, u"Pagine"_s, 1), 1, 9999));
    d.Stampante = h.Testo(u"STAMPA"_s, u"Stampante"_s);
    const qint64 numero = h.Intero(u"STAMPA"_s, u"Numero"_s);
    if (numero < std::numeric_limits<qint32>::min() || numero > std::numeric_limits<qint32>::max())
        return QStringLiteral("STAMPA/Numero %1 fuori intervallo").arg(numero);
    d.NumeroTarquel = static_cast<qint32>(numero);
    d.Copie = static_cast<qint32>(std::clamp<qint64>(h.Intero(u"STAMPA"_s, u"Copie"_s, 1), 1, 999));
    // A fax carries its subject and its sending account (fax by e-mail) in sections of its own.
    d.Oggetto = Primo(h, {{"EMAIL", "Oggetto"}, {"FAX", "Oggetto"}});
    d.Da = Primo(h, {{"EMAIL", "Account_IndirizzoEmail"}, {"EMAIL", "Da"}, {"NOTIFICA", "Account_IndirizzoEmail"}});
    d.A = Primo(h, {{"EMAIL", "A_IndirizziEmail"}, {"EMAIL", "A"}});
    d.Cc = h.Testo(u"EMAIL"_s, u"Cc"_s);
    d.Ccn = h.Testo(u"EMAIL"_s, u"Ccn"_s);
    d.PrefissoInternazionale = h.Testo(u"FAX"_s, u"PrefissoInternazionale"_s);
    d.PrefissoLocale = h.Testo(u"FAX"_s, u"PrefissoLocale"_s);
    d.NumeroFax = h.Testo(u"FAX"_s, u"NumeroFax"_s);
    switch (genere) {
    case GenereCartella::Stampa:
        if (d.Stampante.isEmpty())
            return u"manca STAMPA/Stampante"_s;
        break;
    case GenereCartella::Email:
        if (d.A.isEmpty())
            return u"manca EMAIL/A_IndirizziEmail"_s;
        break;
    case GenereCartella::Fax:
    case GenereCartella::PFax:
    case GenereCartella::EFax:
        if (d.NumeroFax.isEmpty())
            return u"manca FAX/NumeroFax"_s;
        break;
    default:
        break;
    }
    return {};
}

QByteArray Pdf(const DatiDocumento& d)
{
    return modPdf::Documento(d.Descrizione, Righe(d));
}

QByteArray Tiff(const DatiDocumento& d)
{
    return modTiff::Fax(Righe(d), std::clamp(d.Pagine, 1, 3));
}

QByteArray Archivio(const std::vector<FileArchivio>& file, QString* errore)
{
    const auto fallisci = [errore](const QString& motivo) {
        if (errore)
            *errore = motivo;
        return QByteArray();
    };
    // The archive is built in memory: a buffer source the archive is written into.
    zip_error_t e;
    zip_error_init(&e);
    zip_source_t* memoria = zip_source_buffer_create(nullptr, 0, 0, &e);
    if (!memoria)
        return fallisci(QString::fromUtf8(zip_error_strerror(&e)));
    zip_source_keep(memoria); // still ours after the archive closes
    zip_t* zip = zip_open_from_source(memoria, ZIP_TRUNCATE, &e);
    if (!zip) {
        zip_source_free(memoria);
        return fallisci(QString::fromUtf8(zip_error_strerror(&e)));
    }
    for (const FileArchivio& f : file) {
        // libzip reads the bytes at close: they must live until then, as `file` does.
        zip_source_t* dati = zip_source_buffer(zip, f.Dati.constData(), static_cast<zip_uint64_t>(f.Dati.size()), 0);
        const QByteArray nome = f.Nome.toUtf8();
        const zip_int64_t indice = dati ? zip_file_add(zip, nome.constData(), dati, ZIP_FL_ENC_UTF_8) : -1;
        if (indice < 0) {
            if (dati)
                zip_source_free(dati);
            const QString motivo = QString::fromUtf8(zip_strerror(zip));
            zip_discard(zip);
            zip_source_free(memoria);
            return fallisci(motivo);
        }
        zip_set_file_compression(zip, static_cast<zip_uint64_t>(indice), ZIP_CM_DEFLATE, 0);
    }
    if (zip_close(zip) != 0) {
        const QString motivo = QString::fromUtf8(zip_strerror(zip));
        zip_discard(zip);
        zip_source_free(memoria);
        return fallisci(motivo);
    }
    QByteArray out;
    zip_stat_t stat;
    if (zip_source_stat(memoria, &stat) == 0 && zip_source_open(memoria) == 0) {
        out.resize(static_cast<qsizetype>(stat.size));
        if (zip_source_read(memoria, out.data(), stat.size) != static_cast<zip_int64_t>(stat.size))
            out.clear();
        zip_source_close(memoria);
    }
    zip_source_free(memoria);
    return out.isEmpty() ? fallisci(QStringLiteral("archivio non leggibile dalla memoria")) : out;
}

} // namespace modFileDocumento
