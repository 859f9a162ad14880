#pragma once

#include "modContenuto.h"
#include "modProva.h"

#include <QDialog>
#include <QHash>
#include <QVariant>

#include <optional>
#include <span>

class PxContesto;
class PxImpostazioniMacchina;
class QComboBox;
class QDialogButtonBox;
class QLabel;

// The frame of the test forms: one field per row of a table (label, the key it is remembered
// under, kind), filled from what the form last sent on this server machine, and on OK the job
// composed and handed to the service through the server, which puts it in its input folder. The form then
// waits for the service to say what became of the job: taken (the fields are remembered and
// the form closes), set aside (the reason shows and the form stays open, nothing remembered),
// or no word in time (the job was handed over but not yet taken: remembered, closed). A
// password goes to the desktop's keyring, never to the settings.
class frmInvioProva : public QDialog
{
    Q_OBJECT

public:
    // Cornice starts a new frame titled by the row's label.
    enum class Genere { Testo, Spunta, Elenco, Modificabile, Note, Password, Conferma, Sola, Cornice };
    struct Campo
    {
        qint32 Etichetta;   // text id of the label (0: the literal in Nome)
        const char* Chiave; // the value's key; also the field's object name
        Genere Tipo;
        const char* Nome = nullptr;
    };

    ~frmInvioProva() override;

    // OK: checks, composes and sends the job; the form closes once the service took the job.
    void accept() override;
    // Cancel and Escape close the form, but not while a job is on its way.
    void reject() override;

    // How long the form waits for the service's word on a job it handed over.
    static constexpr int AttesaPredefinita = 10000;
    void ImpostaAttesa(int millisecondi) { mAttesaMassima = millisecondi; }

    // The job's destination, for the caller to check: the service's input folder, as the
    // server names it ("" when the service takes no jobs).
    QString CartellaIngresso() const { return mCartellaIngresso; }
    // The field of `chiave` (tests and derived forms).
    QWidget* Widget(const char* chiave) const { return mCampi.value(QByteArray(chiave)); }

signals:
    // `base` is always the job's file name in the server's input folder, without extension.
    // The service took the job: it is the document `id`.
    void Consegnato(const QString& base, const QString& id);
    // The service set the job aside, not taken, because of `motivo`.
    void Respinto(const QString& base, const QString& motivo);
    // The job is in the input folder, but the service said nothing of it in time.
    void NonPreso(const QString& base);

protected:
    // `gruppo`: where the fields are remembered ("Fax", "EFax", "Email"); `servizio`: the
    // service whose input folder takes the job; `titolo`, `cornice`: text ids.
    frmInvioProva(PxContesto& contesto, const char* gruppo, const QString& servizio, qint32 titolo, qint32 cornice,
                  std::span<const Campo> campi, QWidget* parent);

    // The job from the fields; nullopt with the reason when it cannot be made.
    virtual std::optional<modContenuto::Lavoro> Componi(QString* errore) = 0;
    // False, having told the operator, when OK must not go on.
    virtual bool Valida() { return true; }
    // Fills the drop-down lists (called before the remembered values are set).
    virtual void RiempiElenchi() {}

    QString Testo(const char* chiave) const;
    bool Spuntato(const char* chiave) const;
    QVariant Dato(const char* chiave) const;   // the selected entry's item data
    qint32 Indice(const char* chiave) const;   // the selected entry's index
    QComboBox* Elenco(const char* chiave) const;
    // The mail fields the e-fax and e-mail forms share (those a form lacks stay empty).
    modProva::DatiPosta LeggiPosta() const;
    // The authentication modes (item data: the mode number) and the SSL choice (0 / 1).
    void RiempiAutenticazione();
    void RiempiSsl();

    // Fills the lists, then the fields with what the form last sent (derived forms call it last).
    void Carica();

    PxContesto& mContesto;

private:
    void Salva();
    void Segnala(const QString& testo);
    void FineInvio();

    QString mGruppo;
    QString mServizio;
    int mAttesaMassima = AttesaPredefinita;
    QString mCartellaIngresso;
    std::span<const Campo> mDefinizione;
    QHash<QByteArray, QWidget*> mCampi;
    QDialogButtonBox* mPulsanti;
    QLabel* mAvviso;
    std::unique_ptr<PxImpostazioniMacchina> mMacchina;
    bool mInVio = false;
};
