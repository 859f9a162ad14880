#pragma once

#include "frmInvioProva.h"
#include "modProva.h"

// The test fax: the destination number and the cover page, sent through the fax service (or
// the printer-fax service); with `Formato` set it tests that page format instead of the page.
class frmInvioProvaFax : public frmInvioProva
{
    Q_OBJECT

public:
    explicit frmInvioProvaFax(PxContesto& contesto, const QString& servizio = QStringLiteral("PxSrvFax"), QWidget* parent = nullptr);

    std::optional<modProva::Formato> Formato;

    // The fields as the job takes them.
    modProva::DatiFax DatiFax() const;

protected:
    frmInvioProvaFax(PxContesto& contesto, const char* gruppo, const QString& servizio, std::span<const Campo> campi,
                     QWidget* parent);
    std::optional<modContenuto::Lavoro> Componi(QString* errore) override;
    void RiempiElenchi() override;
};

// The test fax by e-mail: the fax fields but the report, and the account that sends it.
class frmInvioProvaEFax : public frmInvioProvaFax
{
    Q_OBJECT

public:
    explicit frmInvioProvaEFax(PxContesto& contesto, QWidget* parent = nullptr);

    modProva::DatiPosta DatiPosta() const;

protected:
    std::optional<modContenuto::Lavoro> Componi(QString* errore) override;
    void RiempiElenchi() override;
};
