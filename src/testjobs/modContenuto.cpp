#include "modContenuto.h"

#include "PxConsoleResDll.h"
#include "PxErrore.h"
#include "PxRigaLog.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "modPacchettoLavoro.h"
#include "modCp1252.h"
#include "modTraccia.h"
#include "modXml.h"

#include <QCoreApplication>
#include <QLocale>

#include <pugixml.hpp>

namespace modContenuto {

namespace {

constexpr int Colonne = 80;
// String-table texts the page uses.
constexpr qint32 TestoTitolo = 8000, TestoSottotitolo = 8001, TestoDiritti = 8002, TestoFunzione = 122,
                 TestoUtente = 123, TestoUtenteDescrizione = 124;
constexpr const char* FontScript = "Courier New";

QString Versione() { return QStringLiteral(PLX_VERSION); }

// The text of `percorso` under `nodo`; throws when the element is missing, which ends the page.
QString Elemento(const pugi::xml_node& nodo, const char* percorso)
{
    const pugi::xml_node n = nodo.select_node(percorso).node();
    if (!n)
        throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("modContenuto"),
                       QStringLiteral("manca l'elemento ") + QString::fromLatin1(percorso));
    return QString::fromUtf8(n.child_value()).trimmed();
}

void PaginaDiTesto(Righe& r, const pugi::xml_node& s, const PxConsoleResDll& testi, const QString& data)
{
    Testata(r, data);
    r << QStringLiteral("   Nome stampante windows   -> ") + Elemento(s, "NomeStampanteWindows");
    r << QStringLiteral("   Driver in uso            -> ") + Elemento(s, "InfoStampante/DriverName");
    r << QStringLiteral("   Porta utilizzata         -> ") + Elemento(s, "InfoStampante/PortName");
    r << QStringLiteral("   Nome stampante di tarquel -> ") + Elemento(s, "NumeroTarquel");
    r.Vuote(5);
    Campioni(r);
    r.Vuote(20);
    r << QStringLiteral("                              Margine superiore: ") + Elemento(s, "Margini/Superiore");
    r << QStringLiteral("        Margine sinistro: ") + Elemento(s, "Margini/Sinistro")
            + QStringLiteral("                        Margine destro: ") + Elemento(s, "Margini/Destro");
    r << QStringLiteral("                              Margine inferiore: ") + Elemento(s, "Margini/Inferiore");
    Chiusura(r, testi);
}

// A VBScript string literal.
QString Stringa(const QString& testo) { return u'"' + QString(testo).replace(u'"', QStringLiteral("\"\"")) + u'"'; }

QByteArray Script()
{
    // The upper halves of the Central European (1250) and Western European (1252) codes.
    const QString centrale1 = QStringLiteral("ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß");
    const QString centrale2 = QStringLiteral("ŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ˙");
    const QString occidentale1 = QStringLiteral("ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß");
    const QString occidentale2 = QStringLiteral("àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ");
    QString ascii;
    for (char16_t c = u'!'; c <= u'z'; ++c)
        ascii += QChar(c);
    QStringList righe{QStringLiteral("Sub Main()"),
                      QStringLiteral("Plx.Current = OBJ_CURR_ATTR"),
                      QStringLiteral("Plx.FontName = \"%1\"").arg(QLatin1StringView(FontScript)),
                      QStringLiteral("Plx.FontSize = 33"),
                      QStringLiteral("Plx.TextVAlign = TXT_BASELINE"),
                      QStringLiteral("Plx.TextHAlign = TXT_LEFT")};
    const auto testo = [&righe](int y, const QString& t) {
        righe << QStringLiteral("Plx.Z_AddTextEx 90, %1, 0, 0, %2, TXT_STANDARD").arg(y).arg(Stringa(t));
    };
    testo(2150, QStringLiteral("Tastierino numerico"));
    testo(2200, QStringLiteral("0123456789./*-+"));
    testo(2300, QStringLiteral("Caratteri della tastiera italiana 102 tasti"));
    testo(2350, QStringLiteral("AaBbCcDdEeFfGgHhIiJjKkLlMmNnOoPpQqRrSsTtUuVvWwXxYyZz ìèéòàùç|\\!\"£$%&/()=?^'[]+*@#°§<>,;.:-_"));
    testo(2450, QStringLiteral("Caratteri Europa Centrale"));
    testo(2500, ascii);
    testo(2550, centrale1);
    testo(2600, centrale2);
    testo(2700, QStringLiteral("Caratteri Europa Occidentale"));
    testo(2750, occidentale1);
    testo(2800, occidentale2);
    righe << QStringLiteral("End Sub");

    pugi::xml_document doc;
    doc.append_child(pugi::node_declaration).append_attribute("version") = "1.0";
    pugi::xml_node pagina = doc.append_child("PLX").append_child("Pagina");
    pagina.append_attribute("Numero") = "0001";
    pagina.append_attribute("Linguaggio") = "VBScript";
    pagina.append_child("Rigo").text().set(righe.join(QStringLiteral("\r\n")).toUtf8().constData());
    return modXml::Testo(doc);
}

// The ZPL label's logo: 64 x 51 dots, a frame around a "P", 8 bytes a row.
QByteArray Logo()
{
    QByteArray esadecimale;
    for (int r = 0; r < 51; ++r)
        for (int b = 0; b < 8; ++b) {
            int byte = 0;
            for (int bit = 0; bit < 8; ++bit) {
                const int c = b * 8 + bit;
                const bool cornice = r < 2 || r >= 49 || c < 2 || c >= 62;
                const bool asta = c >= 14 && c < 22 && r >= 8 && r < 43;
                const bool occhiello = (r >= 8 && r < 14 && c >= 14 && c < 44) || (r >= 24 && r < 30 && c >= 14 && c < 44)
                    || (c >= 38 && c < 46 && r >= 10 && r < 28);
                if (cornice || asta || occhiello)
                    byte |= 0x80 >> bit;
            }
            esadecimale += QByteArray::number(byte, 16).rightJustified(2, '0').toUpper();
        }
    return esadecimale;
}

void Datamax(Righe& r, const QString& data, const PxConsoleResDll& testi)
{
    const QString stx(QChar(2));
    r << stx + QStringLiteral("c0000") << stx + QStringLiteral("f0250") << stx + QStringLiteral("L");
    r << QStringLiteral("H20") << QStringLiteral("D11") << QStringLiteral("Q0001") << QStringLiteral("PC") << QStringLiteral("SC");
    r << QStringLiteral("131100000900003") + data << QStringLiteral("1X1100000500001l02500001")
      << QStringLiteral("132200000530003Stampante Datamax (DPL)")
      << QStringLiteral("131100000200003") + testi.LoadDllString(TestoTitolo) + u' ' + Versione();
    r << QStringLiteral("E");
}

void Zebra(Righe& r, const QString& data)
{
    // Code 1 where ZPL has its caret: the service's printing path expects it so.
    const QString c(QChar(1));
    const auto riga = [&r, &c](std::initializer_list<QString> comandi) {
        QString t;
        for (const QString& comando : comandi)
            t += c + comando;
        r << t;
    };
    for (const char* comando : {"XA", "MCY", "XZ", "XA"})
        riga({QString::fromLatin1(comando)});
    riga({QStringLiteral("FWN"), QStringLiteral("CFD,24"), QStringLiteral("PW831"), QStringLiteral("LH0,0")});
    riga({QStringLiteral("CI0"), QStringLiteral("PRA"), QStringLiteral("PON"), QStringLiteral("PMN"), QStringLiteral("LRN")});
    for (const char* comando : {"XZ", "XA", "DFTEMP_FMT.ZPL", "LRN"})
        riga({QString::fromLatin1(comando)});
    riga({QStringLiteral("A0N,20,20"), QStringLiteral("FO34,98"), QStringLiteral("FDStampante Zebra (ZPL)"), QStringLiteral("FS")});
    riga({QStringLiteral("FO20,80"), QStringLiteral("GB302,160,1,B,0"), QStringLiteral("FS")});
    riga({QStringLiteral("A0N,20,20"), QStringLiteral("FO34,201"), QStringLiteral("FDPelorix"), QStringLiteral("FS")});
    riga({QStringLiteral("A0N,20,20"), QStringLiteral("FO34,139"), QStringLiteral("FD") + data, QStringLiteral("FS")});
    riga({QStringLiteral("FO237,172"), QStringLiteral("GFA,00408,00408,00008,")});
    // 816 digits over eleven lines: five rows of the image a line, the last row alone.
    const QByteArray logo = Logo();
    for (qsizetype i = 0; i < logo.size(); i += 80)
        r << QString::fromLatin1(logo.mid(i, 80));
    for (const char* comando : {"XZ", "XA", "XFTEMP_FMT.ZPL", "PQ1,0,1,Y", "XZ", "XA", "IDTEMP_FMT.ZPL", "XZ"})
        riga({QString::fromLatin1(comando)});
}

void ZebraEpl(Righe& r, const QString& data)
{
    r << QStringLiteral("N") << QStringLiteral("A50,50,0,4,1,1,N,\"Stampante Zebra (EPL2)\"")
      << QStringLiteral("A50,150,0,4,1,1,N,\"Pelorix\"") << QStringLiteral("A50,250,0,2,1,1,N,\"") + data + u'"'
      << QStringLiteral("X30,0,5,480,320") << QStringLiteral("P1");
}

void Toshiba(Righe& r, const QString& data)
{
    r << QStringLiteral("{D1520,0995,1500|}") << QStringLiteral("{C|}")
      << QStringLiteral("{PC000;0775,260,1,1,M,22,B=Stampante Toshiba|}")
      << QStringLiteral("{PC001;0775,180,1,1,M,22,B=Pelorix|}")
      << QStringLiteral("{PC002;0775,100,1,1,M,22,B=") + data + QStringLiteral("|}")
      << QStringLiteral("{XS;I,0001,0000C6211|}");
}

// Every printer function mapped to its own markup tag, so the service hands the tags on to its
// text renderer. The first "GrassettoOn" of the original catalogue lacks its final ";", and
// custom B and C switch nothing at the destination: both are what the service has always read.
void Cataloghi(PxIntestazioneHpx& h)
{
    struct Voce
    {
        const char* Nome;
        const char* Originale;
        const char* Destinazione;
    };
    constexpr const char* Nulla = "000;000;000;000;000;000;000;";
    const Voce voci[] = {
        {"GrassettoOn", "091;037;036;071;082;049;093", "091;037;036;071;082;049;093;"},
        {"GrassettoOff", "091;037;036;071;082;048;093;", nullptr},
        {"CompressoOn", "091;037;036;067;077;049;093;", nullptr},
        {"CompressoOff", "091;037;036;067;077;048;093;", nullptr},
        {"DoppioOn", "091;037;036;068;065;049;093;", nullptr},
        {"DoppioOff", "091;037;036;068;065;048;093;", nullptr},
        {"RipassaOn", "091;037;036;071;082;049;093;", nullptr},
        {"RipassaOff", "091;037;036;071;082;048;093;", nullptr},
        {"DodicesimiOn", "091;037;036;068;079;049;093;", nullptr},
        {"DodicesimiOff", "091;037;036;068;079;048;093;", nullptr},
        {"LetterQualityOn", Nulla, nullptr},
        {"LetterQualityOff", Nulla, nullptr},
        {"SottolineatoOn", "091;037;036;083;084;049;093;", nullptr},
        {"SottolineatoOff", "091;037;036;083;084;048;093;", nullptr},
        {"CustomAOn", "091;037;036;073;084;049;093;", nullptr},
        {"CustomAOff", "091;037;036;073;084;048;093;", nullptr},
        {"CustomBOn", "091;037;036;066;082;049;093;", Nulla},
        {"CustomBOff", "091;037;036;066;082;048;093;", Nulla},
        {"CustomCOn", "091;037;036;081;085;049;093;", Nulla},
        {"CustomCOff", "091;037;036;081;085;048;093;", Nulla},
    };
    for (const Voce& v : voci)
        h.ScriviTesto(QStringLiteral("CATALOGOORIGINALE"), QString::fromLatin1(v.Nome), QString::fromLatin1(v.Originale));
    for (const Voce& v : voci)
        h.ScriviTesto(QStringLiteral("CATALOGODESTINAZIONE"), QString::fromLatin1(v.Nome),
                      QString::fromLatin1(v.Destinazione ? v.Destinazione : v.Originale));
}

void Intestazione(PxIntestazioneHpx& h, const QString& nome, const QString& base, const QString& numero,
                  const PxConsoleResDll& testi, const QDateTime& quando)
{
    Proprieta p;
    p.Tipo = 2;
    p.Id = base;
    p.Descrizione = QStringLiteral("Stampa pagina di prova di ") + nome;
    ScriviProprieta(h, p, testi, quando);
    const QString s = QStringLiteral("STAMPA");
    h.ScriviTesto(s, QStringLiteral("Stampante"), nome);
    h.ScriviTesto(s, QStringLiteral("Numero"), numero);
    h.ScriviIntero(s, QStringLiteral("Dimensione"), 1);
    h.ScriviIntero(s, QStringLiteral("Orientamento"), 1);
    h.ScriviIntero(s, QStringLiteral("Alimentazione"), 7);
    h.ScriviIntero(s, QStringLiteral("FronteRetro"), 3);
    h.ScriviIntero(s, QStringLiteral("ModalitaColore"), 1);
    h.ScriviIntero(s, QStringLiteral("Copie"), 1);
}

} // namespace

QString AllineaADestra(const QString& testo)
{
    return testo.size() >= Colonne ? testo : QString(Colonne - testo.size(), u' ') + testo;
}

void Testata(Righe& r, const QString& data)
{
    r << QString() << AllineaADestra(MaiuscoleIniziali(data));
    r.Vuote(8);
}

void Campioni(Righe& r)
{
    r << QStringLiteral("   [%$DA1]Rigo di stampa in doppia larghezza[%$DA0]") << QStringLiteral("   Rigo di stampa in decimi")
      << QStringLiteral("   [%$DO1]Rigo di stampa in dodicesimi[%$DO0]")
      << QStringLiteral("   [%$QU1]Rigo di stampa in quindicesimi[%$QU0]")
      << QStringLiteral("   [%$CM1]Rigo di stampa in diciassettesimi[%$CM0]");
    r << QString() << QStringLiteral("   [%$GR1]Rigo di stampa in grassetto[%$GR0]")
      << QStringLiteral("   [%$IT1]Rigo di stampa in corsivo[%$IT0]")
      << QStringLiteral("   [%$ST1]Rigo di stampa sottolineato[%$ST0]") << QStringLiteral("   [%$BR1]Rigo di stampa barrato[%$BR0]");
    r.Vuote(5);
    r << QStringLiteral("   Codice a barre")
      << QStringLiteral("   [%#PLX.Z_AddBarCodeEx 90, 1750, 500, 100, \"ABCDEFGHIJ\", sbc_Code39, True#%]"
                        "[%#PLX.Z_AddBarCodeEx 1000, 1750, 500, 100, \"123456789012\", sbc_Ean13, True#%]");
    r.Vuote(4);
    r << QStringLiteral("   AaBbCcDdEeFfGgHhIiJjKkLlMmNnOoPpQqRrSsTtUuVvWwXxYyZz")
      << QStringLiteral("   ìèéòàùç|\\!\"£$%&/()=?^'[]+*@#°§<>,;.:-_");
}

void Chiusura(Righe& r, const PxConsoleResDll& testi)
{
    r.Vuote(4);
    r << QStringLiteral("   [%$ST1][%$GR1]") + testi.LoadDllString(TestoTitolo) + u' ' + Versione() + QStringLiteral("[%$ST0][%$GR0]");
    r << AllineaADestra(testi.LoadDllString(TestoSottotitolo) + QStringLiteral(" - ") + testi.LoadDllString(TestoDiritti));
}

void ScriviProprieta(PxIntestazioneHpx& h, const Proprieta& v, const PxConsoleResDll& testi, const QDateTime& quando)
{
    const QString p = QStringLiteral("PROPRIETA");
    h.ScriviIntero({}, QStringLiteral("Tipo"), v.Tipo);
    h.ScriviTesto({}, QStringLiteral("Versione"), QStringLiteral("2.0.0"));
    h.ScriviTesto(p, QStringLiteral("Id"), v.Id);
    h.ScriviTesto(p, QStringLiteral("Funzione"), testi.LoadDllString(TestoFunzione));
    h.ScriviData(p, QStringLiteral("Data"), quando);
    h.ScriviTesto(p, QStringLiteral("Descrizione"), v.Descrizione);
    h.ScriviIntero(p, QStringLiteral("Priorita"), 0);
    h.ScriviTesto(p, QStringLiteral("Sigla"), v.Sigla.trimmed().isEmpty() ? QStringLiteral("000") : v.Sigla.trimmed());
    h.ScriviTesto(p, QStringLiteral("Ditta"), v.Ditta.trimmed().isEmpty() ? QStringLiteral("000") : v.Ditta.trimmed());
    // Written twice, as every client of the service does.
    h.ScriviTesto(p, QStringLiteral("Suddivisione"), v.Suddivisione);
    h.ScriviTesto(p, QStringLiteral("Suddivisione"), v.Suddivisione);
    h.ScriviIntero(p, QStringLiteral("Lingua"), v.Lingua);
    h.ScriviTesto(p, QStringLiteral("Utente"), testi.LoadDllString(TestoUtente));
    h.ScriviTesto(p, QStringLiteral("UtenteDescrizione"), testi.LoadDllString(TestoUtenteDescrizione));
    h.ScriviData(p, QStringLiteral("DataOriginale"), quando);
    h.ScriviTesto(p, QStringLiteral("IP"), QString());
    h.ScriviTesto(p, QStringLiteral("FormatoPagina"), v.FormatoPagina);
    h.ScriviIntero(p, QStringLiteral("LunghezzaPagina"), v.LunghezzaPagina);
    h.ScriviIntero(p, QStringLiteral("OttimizzaFoglio"), 0);
    Cataloghi(h);
}

QString TestoData(const QDateTime& quando)
{
    const QLocale italiano(QLocale::Italian, QLocale::Italy);
    const QDate g = quando.date();
    const QTime o = quando.time();
    return QStringLiteral("%1 %2 %3 %4 %5.%6.%7")
        .arg(italiano.dayName(g.dayOfWeek(), QLocale::LongFormat))
        .arg(g.day())
        .arg(italiano.monthName(g.month(), QLocale::LongFormat))
        .arg(g.year())
        .arg(o.hour(), 2, 10, QLatin1Char('0'))
        .arg(o.minute(), 2, 10, QLatin1Char('0'))
        .arg(o.second(), 2, 10, QLatin1Char('0'));
}

QString MaiuscoleIniziali(const QString& testo)
{
    QString r = testo;
    bool inizio = true;
    for (QChar& c : r) {
        c = inizio ? c.toUpper() : c.toLower();
        inizio = c.isSpace();
    }
    return r;
}

namespace {
// The printer record whose `elemento` reads `valore`.
pugi::xml_node Stampante(const pugi::xml_node& statoStampe, const char* elemento, const QString& valore)
{
    const QByteArray v = valore.toUtf8();
    for (const pugi::xml_node s : statoStampe.child("Stampanti").children("Stampante"))
        if (QByteArray(s.child_value(elemento)).trimmed() == v)
            return s;
    return {};
}
} // namespace

pugi::xml_node TrovaStampante(const pugi::xml_node& statoStampe, const QString& nomeWindows)
{
    return Stampante(statoStampe, "NomeStampanteWindows", nomeWindows);
}

pugi::xml_node StampanteDellaChiave(const pugi::xml_node& statoStampe, const QString& chiave)
{
    return Stampante(statoStampe, "Chiave", chiave);
}

std::optional<Lavoro> PaginaDiProva(const pugi::xml_node& stampante, const PxConsoleResDll& testi, const QDateTime& quando,
                                    QString* errore)
{
    std::optional<Lavoro> lavoro;
    const bool riuscito = modTraccia::Proteggi("PaginaDiProva", [&] {
        if (!stampante)
            throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("modContenuto"), QStringLiteral("stampante sconosciuta"));
        Lavoro l;
        const QString nome = Elemento(stampante, "NomeStampanteWindows");
        bool numerico = false;
        const int codice = Elemento(stampante, "Modello/Codice").toInt(&numerico);
        if (!numerico)
            throw PxErrore(modErrori::ErrTipoNonCorrispondente, QStringLiteral("modContenuto"), QStringLiteral("codice del modello"));
        const QString data = TestoData(quando);
        // Label printers get the date without the weekday's accent: their fonts lack it.
        const QString dataEtichetta = QString(data).replace(u'ì', u'i');
        Righe r;
        switch (codice) {
        case 0: case 6: case 7: case 12:
            PaginaDiTesto(r, stampante, testi, data);
            l.Script = Script();
            break;
        case 1: Datamax(r, dataEtichetta, testi); break;
        case 2: Zebra(r, dataEtichetta); break;
        case 8: ZebraEpl(r, dataEtichetta); break;
        case 10: Toshiba(r, dataEtichetta); break;
        default: break;
        }
        l.Corpo = modCp1252::Codifica(r.Testo());
        l.Base = QStringLiteral("Pagina di prova di ") + modLavoro::Sanifica(nome);
        const pugi::xml_node numero = stampante.child("NumeroTarquel");
        Intestazione(l.Intestazione, nome, l.Base, QString::fromUtf8(numero.child_value()).trimmed(), testi, quando);
        lavoro = std::move(l);
    });
    if (!riuscito && errore)
        *errore = testi.LoadDllString(8040);
    return lavoro;
}

std::vector<modLavoro::File> File(const Lavoro& lavoro)
{
    std::vector<modLavoro::File> file;
    if (!lavoro.Script.isEmpty())
        file.push_back({".spx", lavoro.Script});
    file.push_back({".bpx", lavoro.Corpo});
    file.push_back({".hpx", lavoro.Intestazione.Serializza()});
    return file;
}

namespace {

// Answers `fatto` from the event loop, never inside the call, as the server's answers come;
// dropped if `richiedente` goes first.
void RispondiPiuTardi(QObject* richiedente, const PxSrvOggetto::Esito& fatto, const PxRisposta& r)
{
    QMetaObject::invokeMethod(
        richiedente ? richiedente : QCoreApplication::instance(),
        [fatto, r] {
            if (fatto)
                fatto(r);
        },
        Qt::QueuedConnection);
}

} // namespace

void Consegna(PxSrvServizio* servizio, const Lavoro& lavoro, QObject* richiedente, PxSrvOggetto::Esito fatto)
{
    modTraccia::Proteggi("ConsegnaLavoro", [&] {
        const QByteArray pacchetto = servizio ? modPacchettoLavoro::Componi(File(lavoro)) : QByteArray();
        if (pacchetto.isEmpty()) {
            const PxRisposta r{servizio ? modContratto::Rifiutato : modContratto::NonDisponibile,
                               servizio ? QStringLiteral("lavoro non valido: %1").arg(lavoro.Base)
                                        : QStringLiteral("servizio non disponibile"),
                               {}};
            RispondiPiuTardi(richiedente, fatto, r);
            throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("modContenuto"), r.Testo);
        }
        servizio->ConsegnaLavoro(lavoro.Base, pacchetto, richiedente, [fatto](const PxRisposta& r) {
            if (!r.Riuscita())
                modTraccia::Scrivi(modRigaLog::LivelloErrore,
                                   QStringLiteral("Errore in ConsegnaLavoro: %1 - %2").arg(r.Esito).arg(r.Testo));
            if (fatto)
                fatto(r);
        });
    });
}

void InviaPaginaDiProva(PxSrvServer* server, const QString& stampante, const PxConsoleResDll& testi, QObject* richiedente,
                        PxSrvOggetto::Esito fatto)
{
    modTraccia::Proteggi("InviaPaginaDiProva", [&] {
        PxSrvServizio* stampe = server ? server->Servizio(QStringLiteral("PxSrvStampe")) : nullptr;
        pugi::xml_document stato;
        if (stampe)
            stampe->LeggiStato(stato);
        pugi::xml_node nodo = StampanteDellaChiave(stato.document_element(), stampante);
        if (!nodo)
            nodo = TrovaStampante(stato.document_element(), stampante);
        QString errore = QStringLiteral("stampante sconosciuta");
        std::optional<Lavoro> lavoro;
        if (nodo)
            lavoro = PaginaDiProva(nodo, testi, QDateTime::currentDateTime(), &errore);
        if (!lavoro) {
            const PxRisposta r{stampe ? modContratto::Rifiutato : modContratto::NonDisponibile,
                               stampante + QStringLiteral(": ") + errore, {}};
            RispondiPiuTardi(richiedente, fatto, r);
            throw PxErrore(modErrori::ErrOggettoMancante, QStringLiteral("modContenuto"), r.Testo);
        }
        Consegna(stampe, *lavoro, richiedente, std::move(fatto));
    });
}

modLavoro::Esito ScriviPaginaDiProva(const Lavoro& lavoro, const QString& cartellaIngresso)
{
    modLavoro::Esito esito;
    modTraccia::Proteggi("ScriviPaginaDiProva", [&] {
        esito = modLavoro::Consegna(cartellaIngresso, lavoro.Base, File(lavoro));
        if (!esito.Riuscito)
            throw PxErrore(modErrori::ErrPercorsoNonTrovato, QStringLiteral("modContenuto"), esito.Errore);
    });
    return esito;
}

} // namespace modContenuto
