#include "modDemoErrori.h"

#include <string_view>

using namespace Qt::StringLiterals;

namespace modDemoErrori {

namespace {

constexpr Errore Stampante[] = {
    {101, "Errore 101: carta esaurita nel cassetto 2", false},
    {102, "Errore 102: coperchio aperto", false},
    {103, "Errore 103: stampante non in linea dopo %1 tentativi", true},
    {104, "Errore 104: carta inceppata nel fronte-retro", false},
    {105, "Errore 105: toner esaurito", false},
    {106, "Errore 106: coda di stampa non raggiungibile dopo %1 tentativi", true},
};

constexpr Errore LineaFax[] = {
    {27, "Errore 27: linea occupata dopo %1 tentativi", true},
    {28, "Errore 28: nessuna risposta dopo %1 tentativi", true},
    {29, "Errore 29: numero inesistente", false},
    {30, "Errore 30: ha risposto una voce, non un fax", false},
    {31, "Errore 31: trasmissione interrotta a metà pagina dopo %1 tentativi", true},
    {32, "Errore 32: il fax remoto ha rifiutato la ricezione", false},
    {33, "Errore 33: nessun tono di linea dopo %1 tentativi", true},
};

constexpr Errore PrinterFax[] = {
    {71, "Errore 71: printer fax non in linea dopo %1 tentativi", true},
    {72, "Errore 72: linea del printer fax occupata dopo %1 tentativi", true},
    {73, "Errore 73: numero di fax non valido", false},
    {74, "Errore 74: driver del printer fax non installato", false},
    {75, "Errore 75: memoria del printer fax piena", false},
};

constexpr Errore Smtp[] = {
    {550, "550 5.1.1 Casella del destinatario inesistente", false},
    {552, "552 5.3.4 Messaggio troppo grande per il destinatario", false},
    {554, "554 5.7.1 Inoltro non consentito verso il dominio del destinatario", false},
    {535, "535 5.7.8 Autenticazione non riuscita", false},
    {421, "421 4.7.0 Server temporaneamente non disponibile: non consegnato dopo %1 tentativi", true},
    {451, "451 4.4.3 Errore del server di destinazione: non consegnato dopo %1 tentativi", true},
};

constexpr Errore Ftp[] = {
    {530, "Ftp 530: accesso negato, utente o password errati", false},
    {550, "Ftp 550: cartella di pubblicazione inesistente", false},
    {553, "Ftp 553: nome del file non consentito dal server", false},
    {452, "Ftp 452: spazio insufficiente sul server", false},
    {421, "Ftp 421: servizio non disponibile, connessione chiusa dopo %1 tentativi", true},
    {425, "Ftp 425: connessione dati non aperta dopo %1 tentativi", true},
};

constexpr Errore ConversionePdf[] = {
    {41, "Errore 41: formato del corpo non riconosciuto", false},
    {42, "Errore 42: script di pagina non valido", false},
    {43, "Errore 43: carattere \"Courier New\" non disponibile", false},
    {44, "Errore 44: formato di pagina sconosciuto", false},
    {45, "Errore 45: la stampante pdf non ha risposto entro 120 s", false},
};

constexpr Errore ConversioneTiff[] = {
    {51, "Errore 51: formato del corpo non riconosciuto", false},
    {52, "Errore 52: pagina più larga di 1728 punti", false},
    {53, "Errore 53: script di pagina non valido", false},
    {54, "Errore 54: immagine della pagina non generata", false},
    {55, "Errore 55: oltre 50 pagine, troppe per un fax", false},
};

constexpr Errore Anteprime[] = {
    {61, "Errore 61: client delle anteprime non raggiungibile", false},
    {62, "Errore 62: formato di pagina del documento non trovato", false},
    {63, "Errore 63: anteprima oltre il limite di 200 pagine", false},
    {64, "Errore 64: corpo del documento vuoto", false},
};

constexpr Errore Conferme[] = {
    {81, "Errore 81: conferma di ricezione non arrivata", false},
    {82, "Errore 82: rapporto di trasmissione illeggibile", false},
};

constexpr Errore Generici[] = {
    {99, "Errore 99: errore interno del servizio", false},
};

struct Voce
{
    std::string_view Chiave;
    std::span<const Errore> Errori;
};

// Workers that print use the printer's table; those that send mail, the SMTP replies.
constexpr Voce Voci[] = {
    {"PxSrvStampe", Stampante},      {"PxSrvRprtEml", Stampante},       {"PxSrvRprtFax", Stampante},
    {"PxSrvFaxVm", LineaFax},        {"PxSrvFax", LineaFax},            {"PxSrvPFaxVm", PrinterFax},
    {"PxSrvPFax", PrinterFax},       {"PxSrvSmtp", Smtp},               {"PxSrvEmail", Smtp},
    {"PxSrvNtfcFax", Smtp},          {"PxSrvEFaxVm", Smtp},             {"PxSrvEFax", Smtp},
    {"PxSrvPblVm", Ftp},             {"PxSrvPbl", Ftp},                 {"PxSrvFtp", Ftp},
    {"PxSrvFtpSrv", Ftp},            {"PxSrvEmlPdfVm", ConversionePdf}, {"PxSrvPblPdfVm", ConversionePdf},
    {"PxSrvEFaxPdfVm", ConversionePdf}, {"PxSrvTifVm", ConversioneTiff}, {"PxSrvAnteprime", Anteprime},
    {"PxSrvNeFax", Conferme},
};

} // namespace

std::span<const Errore> Di(QStringView chiave)
{
    for (const Voce& v : Voci)
        if (chiave == QLatin1StringView(v.Chiave.data(), static_cast<qsizetype>(v.Chiave.size())))
            return v.Errori;
    return Generici;
}

QString Testo(const Errore& e, qint32 tentativi)
{
    QString testo = QString::fromUtf8(e.Testo);
    if (!testo.contains(u"%1"_s))
        return testo;
    if (tentativi == 1)
        return testo.replace(u"%1 tentativi"_s, u"1 tentativo"_s);
    return testo.replace(u"%1"_s, QString::number(tentativi));
}

qint32 TentativiNelTesto(QStringView testo)
{
    for (const QStringView parola : {u"tentativi", u"tentativo"}) {
        const qsizetype dove = testo.indexOf(parola);
        if (dove < 2 || testo[dove - 1] != u' ')
            continue;
        qsizetype inizio = dove - 1;
        while (inizio > 0 && testo[inizio - 1].isDigit())
            --inizio;
        if (inizio == dove - 1)
            continue;
        return testo.mid(inizio, dove - 1 - inizio).toInt();
    }
    return -1;
}

} // namespace modDemoErrori
