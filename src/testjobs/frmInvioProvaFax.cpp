#include "frmInvioProvaFax.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"

#include <QComboBox>
#include <QLineEdit>

#include <pugixml.hpp>

namespace {

using G = frmInvioProva::Genere;

constexpr frmInvioProva::Campo CampiFax[] = {
    {1700, "PrefissoInternazionale", G::Testo}, {1701, "PrefissoLocale", G::Testo}, {1702, "NumeroFax", G::Testo},
    {1703, "Frontespizio", G::Spunta},          {1704, "SiglaCliente", G::Testo},   {1705, "CodiceDitta", G::Testo},
    {1706, "Suddivisione", G::Testo},           {1707, "Lingua", G::Elenco},        {1708, "SocietaDestinataria", G::Testo},
    {1709, "Mittente", G::Testo},               {1710, "Destinatario", G::Testo},   {1711, "Oggetto", G::Testo},
    {1712, "Note", G::Note},                    {1713, "StampaCedolino", G::Spunta},
};

constexpr frmInvioProva::Campo CampiEFax[] = {
    {1700, "PrefissoInternazionale", G::Testo}, {1701, "PrefissoLocale", G::Testo}, {1702, "NumeroFax", G::Testo},
    {1703, "Frontespizio", G::Spunta},          {1704, "SiglaCliente", G::Testo},   {1705, "CodiceDitta", G::Testo},
    {1706, "Suddivisione", G::Testo},           {1707, "Lingua", G::Elenco},        {1708, "SocietaDestinataria", G::Testo},
    {1709, "Mittente", G::Testo},               {1710, "Destinatario", G::Testo},   {1711, "Oggetto", G::Testo},
    {1712, "Note", G::Note},                    {1612, "", G::Cornice},             {1600, "SMTP", G::Testo},           {1601, "Porta", G::Testo},
    {1602, "Dominio", G::Modificabile},         {8038, "SSL", G::Elenco},           {1603, "Da", G::Testo},
    {1604, "A", G::Testo},                      {1606, "Autenticazione", G::Elenco}, {1607, "Account", G::Testo},
    {1608, "Password", G::Password},
};

// Until the operator types them: an area code and a number of the installation's own.
constexpr const char* PrefissoPredefinito = "02";
constexpr const char* NumeroPredefinito = "00000000";

} // namespace

frmInvioProvaFax::frmInvioProvaFax(PxContesto& contesto, const QString& servizio, QWidget* parent)
    : frmInvioProvaFax(contesto, "Fax", servizio, CampiFax, parent)
{
    Carica();
}

frmInvioProvaFax::frmInvioProvaFax(PxContesto& contesto, const char* gruppo, const QString& servizio,
                                   std::span<const Campo> campi, QWidget* parent)
    : frmInvioProva(contesto, gruppo, servizio, 1231, 1714, campi, parent)
{
    if (auto* p = qobject_cast<QLineEdit*>(Widget("PrefissoLocale")))
        p->setText(QString::fromLatin1(PrefissoPredefinito));
    if (auto* n = qobject_cast<QLineEdit*>(Widget("NumeroFax")))
        n->setText(QString::fromLatin1(NumeroPredefinito));
}

void frmInvioProvaFax::RiempiElenchi()
{
    // The clients' languages as the fax service lists them: "code [description]".
    QComboBox* lingue = Elenco("Lingua");
    const PxSrvServizio* fax = mContesto.Server() ? mContesto.Server()->Servizio(QStringLiteral("PxSrvFax")) : nullptr;
    pugi::xml_document doc;
    if (lingue && fax && fax->LeggiStato(doc))
        for (const pugi::xml_node l : doc.document_element().child("Lingue").children("Lingua"))
            lingue->addItem(QStringLiteral("%1 [%2]").arg(QString::fromUtf8(l.child_value("Codice")).trimmed(),
                                                         QString::fromUtf8(l.child_value("Descrizione")).trimmed()));
}

modProva::DatiFax frmInvioProvaFax::DatiFax() const
{
    modProva::DatiFax f;
    f.PrefissoInternazionale = Testo("PrefissoInternazionale").trimmed();
    f.PrefissoLocale = Testo("PrefissoLocale").trimmed();
    f.NumeroFax = Testo("NumeroFax").trimmed();
    f.Frontespizio = Spuntato("Frontespizio");
    f.SiglaCliente = Testo("SiglaCliente");
    f.CodiceDitta = Testo("CodiceDitta");
    f.Suddivisione = Testo("Suddivisione");
    f.Lingua = std::max(0, Indice("Lingua"));
    f.SocietaDestinataria = Testo("SocietaDestinataria");
    f.Mittente = Testo("Mittente");
    f.Destinatario = Testo("Destinatario");
    f.Oggetto = Testo("Oggetto");
    f.Note = Testo("Note");
    f.StampaCedolino = Spuntato("StampaCedolino");
    return f;
}

std::optional<modContenuto::Lavoro> frmInvioProvaFax::Componi(QString*)
{
    return modProva::Fax(DatiFax(), Formato ? &*Formato : nullptr, mContesto.Testi(), QDateTime::currentDateTime());
}

frmInvioProvaEFax::frmInvioProvaEFax(PxContesto& contesto, QWidget* parent)
    : frmInvioProvaFax(contesto, "EFax", QStringLiteral("PxSrvEFax"), CampiEFax, parent)
{
    Carica();
}

void frmInvioProvaEFax::RiempiElenchi()
{
    frmInvioProvaFax::RiempiElenchi();
    RiempiSsl();
    RiempiAutenticazione();
}

modProva::DatiPosta frmInvioProvaEFax::DatiPosta() const { return LeggiPosta(); }

std::optional<modContenuto::Lavoro> frmInvioProvaEFax::Componi(QString*)
{
    const modProva::DatiPosta conto = DatiPosta();
    return modProva::Fax(DatiFax(), Formato ? &*Formato : nullptr, mContesto.Testi(), QDateTime::currentDateTime(), &conto);
}
