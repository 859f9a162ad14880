#pragma once

// The named members of the view family, one per kind of tree node. They are chosen by the
// node's key (modViste::Crea) and stay thin: what differs between them is data, the frames
// are clsSrvCartella (document folders), clsSrvServizi (server, groups, workers, lists) and
// clsSrvCatalogo (formats, signatures).

#include "clsSrvCartella.h"
#include "clsSrvCatalogo.h"
#include "clsSrvServizi.h"

class clsSrvDocStampe final : public clsSrvCartella
{
public:
    clsSrvDocStampe(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::Stampa), parent) {}
};

class clsSrvDocEmail final : public clsSrvCartella
{
public:
    clsSrvDocEmail(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::Email), parent) {}
};

class clsSrvDocFax final : public clsSrvCartella
{
public:
    clsSrvDocFax(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::Fax), parent) {}
};

class clsSrvDocPFax final : public clsSrvCartella
{
public:
    clsSrvDocPFax(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::PFax), parent) {}
};

class clsSrvDocEFax final : public clsSrvCartella
{
public:
    clsSrvDocEFax(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::EFax), parent) {}
};

class clsSrvDocPbl final : public clsSrvCartella
{
public:
    clsSrvDocPbl(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::Pbl), parent) {}
};

class clsSrvDocAnteprime final : public clsSrvCartella
{
public:
    clsSrvDocAnteprime(PxAmbienteVista& ambiente, const QString&, QObject* parent = nullptr)
        : clsSrvCartella(ambiente, modTabellaCartelle::Di(GenereCartella::Anteprima), parent) {}
};

class clsSrvServer final : public clsSrvServizi
{
public:
    clsSrvServer(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvFax final : public clsSrvServizi
{
public:
    clsSrvFax(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvEmail final : public clsSrvServizi
{
public:
    clsSrvEmail(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvEFax final : public clsSrvServizi
{
public:
    clsSrvEFax(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvPFax final : public clsSrvServizi
{
public:
    clsSrvPFax(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvPbl final : public clsSrvServizi
{
public:
    clsSrvPbl(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvStampe final : public clsSrvServizi
{
public:
    clsSrvStampe(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvAnteprime final : public clsSrvServizi
{
public:
    clsSrvAnteprime(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvFtp final : public clsSrvServizi
{
public:
    clsSrvFtp(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvNessuno final : public clsSrvServizi
{
public:
    clsSrvNessuno(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvWebUpdate final : public clsSrvServizi
{
public:
    clsSrvWebUpdate(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvStampante final : public clsSrvServizi
{
public:
    clsSrvStampante(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvUtente final : public clsSrvServizi
{
public:
    clsSrvUtente(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvFaxVm final : public clsSrvServizi
{
public:
    clsSrvFaxVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvTifVm final : public clsSrvServizi
{
public:
    clsSrvTifVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvSmtp final : public clsSrvServizi
{
public:
    clsSrvSmtp(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvReportFax final : public clsSrvServizi
{
public:
    clsSrvReportFax(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvNotificaFax final : public clsSrvServizi
{
public:
    clsSrvNotificaFax(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvEmlPdfVm final : public clsSrvServizi
{
public:
    clsSrvEmlPdfVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvEFaxPdfVm final : public clsSrvServizi
{
public:
    clsSrvEFaxPdfVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvEFaxVm final : public clsSrvServizi
{
public:
    clsSrvEFaxVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvPFaxVm final : public clsSrvServizi
{
public:
    clsSrvPFaxVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvPblVm final : public clsSrvServizi
{
public:
    clsSrvPblVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvPblPdfVm final : public clsSrvServizi
{
public:
    clsSrvPblPdfVm(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvReportEmail final : public clsSrvServizi
{
public:
    clsSrvReportEmail(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvNeFax final : public clsSrvServizi
{
public:
    clsSrvNeFax(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr) : clsSrvServizi(ambiente, chiave, parent) {}
};

class clsSrvFormati final : public clsSrvCatalogo
{
public:
    clsSrvFormati(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr)
        : clsSrvCatalogo(ambiente, chiave, QStringLiteral("PxSrvFormati"), parent) {}
};

class clsSrvFirme final : public clsSrvCatalogo
{
public:
    clsSrvFirme(PxAmbienteVista& ambiente, const QString& chiave, QObject* parent = nullptr)
        : clsSrvCatalogo(ambiente, chiave, QStringLiteral("PxSrvFirme"), parent) {}
};
