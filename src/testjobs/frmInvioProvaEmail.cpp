#include "frmInvioProvaEmail.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxSrvServer.h"

#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>

namespace {

using G = frmInvioProva::Genere;

constexpr frmInvioProva::Campo CampiEmail[] = {
    {1600, "SMTP", G::Testo},       {1601, "Porta", G::Testo},          {8038, "SSL", G::Elenco},
    {1602, "Dominio", G::Modificabile}, {1603, "Da", G::Testo},         {1604, "A", G::Testo},
    {1605, "Oggetto", G::Testo},    {1606, "Autenticazione", G::Elenco}, {1607, "Account", G::Testo},
    {1608, "Password", G::Password}, {1609, "Conferma", G::Conferma},   {1610, "Notifica", G::Spunta},
    {1611, "Firma", G::Sola},
};

} // namespace

frmInvioProvaEmail::frmInvioProvaEmail(PxContesto& contesto, const QString& servizio, QWidget* parent)
    : frmInvioProva(contesto, "Email", servizio, 1230, 1612, CampiEmail, parent)
{
    Carica();
}

void frmInvioProvaEmail::RiempiElenchi()
{
    RiempiSsl();
    RiempiAutenticazione();
}

void frmInvioProvaEmail::showEvent(QShowEvent* evento)
{
    // The signature under test, as the caller set it.
    if (auto* f = qobject_cast<QLabel*>(Widget("Firma")))
        f->setText(Firma);
    frmInvioProva::showEvent(evento);
}

modProva::DatiPosta frmInvioProvaEmail::DatiPosta() const
{
    modProva::DatiPosta p = LeggiPosta();
    p.Firma = Firma;
    p.PercorsoFileZip = PercorsoFileZip;
    return p;
}

bool frmInvioProvaEmail::Valida()
{
    // Only an authentication needs the password, and then typed twice alike.
    if (Dato("Autenticazione").toInt() != 0 && Testo("Password") != Testo("Conferma")) {
        QMessageBox::warning(this, windowTitle(), mContesto.Testi().LoadDllString(10002));
        return false;
    }
    return true;
}

std::optional<modContenuto::Lavoro> frmInvioProvaEmail::Componi(QString*)
{
    // The vendor's links are the installation's, read when the mail is made.
    const modProva::Collegamenti collegamenti =
        mContesto.Server() ? modProva::LeggiCollegamenti(mContesto.Server()->Configurazione()) : modProva::Collegamenti();
    return modProva::Email(DatiPosta(), Formato ? &*Formato : nullptr, mContesto.Testi(), QDateTime::currentDateTime(),
                           collegamenti);
}
