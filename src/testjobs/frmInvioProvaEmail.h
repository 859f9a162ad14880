#pragma once

#include "frmInvioProva.h"
#include "modProva.h"

// The test e-mail: the mail server, sender, recipient and authentication; with `Formato` set
// it tests that page format, with `Firma` that signature; `PercorsoFileZip` adds an attachment.
class frmInvioProvaEmail : public frmInvioProva
{
    Q_OBJECT

public:
    explicit frmInvioProvaEmail(PxContesto& contesto, const QString& servizio = QStringLiteral("PxSrvEmail"),
                                QWidget* parent = nullptr);

    std::optional<modProva::Formato> Formato;
    QString Firma;
    QString PercorsoFileZip;
    QString NomeFileZip;

    modProva::DatiPosta DatiPosta() const;

protected:
    std::optional<modContenuto::Lavoro> Componi(QString* errore) override;
    bool Valida() override;
    void RiempiElenchi() override;
    void showEvent(QShowEvent* evento) override;
};
