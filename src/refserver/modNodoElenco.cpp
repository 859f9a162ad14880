#include "modNodoElenco.h"

using namespace Qt::StringLiterals;

namespace modNodoElenco {
namespace {

// Appends `testo` escaped for XML character data; control characters other than tab and
// line breaks are dropped, since XML 1.0 cannot carry them.
void Escape(QByteArray& out, const QString& testo)
{
    const QByteArray utf8 = testo.toUtf8();
    for (const char c : utf8) {
        switch (c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        default:
            if (static_cast<unsigned char>(c) >= 0x20 || c == '\t' || c == '\n' || c == '\r')
                out += c;
        }
    }
}

QString Priorita(qint32 p)
{
    switch (p) {
    case 1: return u"Alta"_s;
    case 2: return u"Urgente"_s;
    default: return u"Normale"_s;
    }
}

QString Campo(const DatiDocumento& d, modCartelle::Campo c)
{
    using enum modTabellaCartelle::Campo;
    switch (c) {
    case Id: return d.Id;
    case Descrizione: return d.Descrizione;
    case Stato: return d.Stato;
    case Utente: return d.Utente;
    case Sigla: return d.Sigla;
    case Numero: return QString::number(d.NumeroTarquel);
    case Stampante: return d.Stampante;
    case A: return d.A;
    case Cc: return d.Cc;
    case Ccn: return d.Ccn;
    case Priorita: return modNodoElenco::Priorita(d.Priorita);
    case PrefissoInternazionale: return d.PrefissoInternazionale;
    case PrefissoLocale: return d.PrefissoLocale;
    case NumeroFax: return d.NumeroFax;
    case KeyUtente: return d.KeyUtente;
    case Pagine: return QString::number(d.Pagine);
    case Ip: return d.Ip;
    case Inserito: return modDate::Testo(d.Inserito);
    case Elaborato: return modDate::Testo(d.Elaborato);
    }
    return {};
}

} // namespace

void Appendi(QByteArray& out, const DatiDocumento& d, const modCartelle::Definizione& def)
{
    out += "<D>";
    for (const modTabellaCartelle::Colonna& c : def.Campi) {
        out += "<F>";
        Escape(out, Campo(d, c.Campo));
        out += "</F>";
    }
    out += "<C>";
    for (const Collegato& c : d.Collegati) {
        out += "<L><F>";
        Escape(out, c.Id);
        out += "</F><F>";
        Escape(out, c.Descrizione);
        out += "</F></L>";
    }
    out += "</C></D>";
}

} // namespace modNodoElenco
