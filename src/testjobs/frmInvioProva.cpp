#include "frmInvioProva.h"

#include "PxAttesaLavoro.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxImpostazioniMacchina.h"
#include "PxSrvServer.h"
#include "PxSrvServizio.h"
#include "modPortachiavi.h"
#include "modTraccia.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <pugixml.hpp>

frmInvioProva::frmInvioProva(PxContesto& contesto, const char* gruppo, const QString& servizio, qint32 titolo, qint32 cornice,
                             std::span<const Campo> campi, QWidget* parent)
    : QDialog(parent), mContesto(contesto), mGruppo(QString::fromLatin1(gruppo)), mServizio(servizio), mDefinizione(campi),
      mPulsanti(new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel)), mAvviso(new QLabel)
{
    const PxConsoleResDll& testi = mContesto.Testi();
    setWindowTitle(testi.LoadDllString(titolo));
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* riquadro = new QGroupBox(testi.LoadDllString(cornice));
    auto* modulo = new QFormLayout(riquadro);
    layout->addWidget(riquadro);
    for (const Campo& c : campi) {
        if (c.Tipo == Genere::Cornice) {
            riquadro = new QGroupBox(testi.LoadDllString(c.Etichetta));
            modulo = new QFormLayout(riquadro);
            layout->addWidget(riquadro);
            continue;
        }
        QWidget* w = nullptr;
        switch (c.Tipo) {
        case Genere::Testo: w = new QLineEdit; break;
        case Genere::Password:
        case Genere::Conferma: {
            auto* p = new QLineEdit;
            p->setEchoMode(QLineEdit::Password);
            w = p;
            break;
        }
        case Genere::Spunta: w = new QCheckBox; break;
        case Genere::Elenco:
        case Genere::Modificabile: {
            auto* e = new QComboBox;
            e->setEditable(c.Tipo == Genere::Modificabile);
            w = e;
            break;
        }
        case Genere::Note: {
            auto* n = new QPlainTextEdit;
            n->setTabChangesFocus(true);
            n->setFixedHeight(90);
            w = n;
            break;
        }
        case Genere::Sola: w = new QLabel; break;
        case Genere::Cornice: break;
        }
        w->setObjectName(QString::fromLatin1(c.Chiave));
        mCampi.insert(QByteArray(c.Chiave), w);
        modulo->addRow(c.Etichetta ? testi.LoadDllString(c.Etichetta) : QString::fromUtf8(c.Nome), w);
    }
    mAvviso->setWordWrap(true);
    mAvviso->setVisible(false);
    layout->addWidget(mAvviso);
    mPulsanti->button(QDialogButtonBox::Ok)->setText(testi.LoadDllString(50));
    mPulsanti->button(QDialogButtonBox::Cancel)->setText(testi.LoadDllString(51));
    layout->addWidget(mPulsanti);
    connect(mPulsanti, &QDialogButtonBox::accepted, this, &frmInvioProva::accept);
    connect(mPulsanti, &QDialogButtonBox::rejected, this, &QDialog::reject);

    // The input folder, as the service describes itself: where the server puts the job.
    if (PxSrvServer* server = mContesto.Server())
        if (const PxSrvServizio* s = server->Servizio(servizio))
            mCartellaIngresso = s->CartellaIngresso();
    mMacchina = std::make_unique<PxImpostazioniMacchina>(mContesto.Server() ? mContesto.Server()->Cartella() : QString());
}

frmInvioProva::~frmInvioProva() = default;

QString frmInvioProva::Testo(const char* chiave) const
{
    QWidget* w = Widget(chiave);
    if (auto* l = qobject_cast<QLineEdit*>(w))
        return l->text();
    if (auto* n = qobject_cast<QPlainTextEdit*>(w))
        return n->toPlainText().replace(u'\n', QStringLiteral("\r\n"));
    if (auto* e = qobject_cast<QComboBox*>(w))
        return e->currentText();
    if (auto* s = qobject_cast<QLabel*>(w))
        return s->text();
    return {};
}

bool frmInvioProva::Spuntato(const char* chiave) const
{
    auto* s = qobject_cast<QCheckBox*>(Widget(chiave));
    return s && s->isChecked();
}

QComboBox* frmInvioProva::Elenco(const char* chiave) const { return qobject_cast<QComboBox*>(Widget(chiave)); }

QVariant frmInvioProva::Dato(const char* chiave) const
{
    const QComboBox* e = Elenco(chiave);
    return e ? e->currentData() : QVariant();
}

qint32 frmInvioProva::Indice(const char* chiave) const
{
    const QComboBox* e = Elenco(chiave);
    return e ? e->currentIndex() : -1;
}

modProva::DatiPosta frmInvioProva::LeggiPosta() const
{
    modProva::DatiPosta p;
    p.Server = Testo("SMTP").trimmed();
    p.Porta = Testo("Porta").trimmed();
    p.Dominio = Testo("Dominio").trimmed();
    p.Ssl = Dato("SSL").toInt() != 0;
    p.Da = Testo("Da").trimmed();
    p.A = Testo("A").trimmed();
    p.Oggetto = Testo("Oggetto");
    p.Autenticazione = Dato("Autenticazione").toInt();
    p.Account = Testo("Account");
    p.Password = Testo("Password");
    p.Notifica = Spuntato("Notifica");
    return p;
}

void frmInvioProva::RiempiAutenticazione()
{
    if (QComboBox* e = Elenco("Autenticazione"))
        for (const auto& [testo, modo] : {std::pair{600, 0}, {601, 1}, {602, 2}, {603, 3}, {608, 8}})
            e->addItem(mContesto.Testi().LoadDllString(testo), modo);
}

void frmInvioProva::RiempiSsl()
{
    if (QComboBox* e = Elenco("SSL")) {
        e->addItem(mContesto.Testi().LoadDllString(101), 0);
        e->addItem(mContesto.Testi().LoadDllString(100), 1);
    }
}

void frmInvioProva::Segnala(const QString& testo)
{
    mAvviso->setText(testo);
    mAvviso->setVisible(!testo.isEmpty());
}

void frmInvioProva::Carica()
{
    modTraccia::Proteggi("frmInvioProva_Carica", [&] {
        RiempiElenchi();
        QSettings& s = mMacchina->Impostazioni();
        s.beginGroup(mGruppo);
        for (const Campo& c : mDefinizione) {
            const QString chiave = QString::fromLatin1(c.Chiave);
            if (c.Tipo == Genere::Password || c.Tipo == Genere::Conferma || c.Tipo == Genere::Sola || c.Tipo == Genere::Cornice
            || !s.contains(chiave))
                continue;
            const QVariant v = s.value(chiave);
            QWidget* w = Widget(c.Chiave);
            if (auto* l = qobject_cast<QLineEdit*>(w))
                l->setText(v.toString());
            else if (auto* n = qobject_cast<QPlainTextEdit*>(w))
                n->setPlainText(v.toString());
            else if (auto* k = qobject_cast<QCheckBox*>(w))
                k->setChecked(v.toInt() != 0);
            else if (auto* e = qobject_cast<QComboBox*>(w)) {
                if (e->isEditable())
                    e->setCurrentText(v.toString());
                else if (v.toInt() >= 0 && v.toInt() < e->count())
                    e->setCurrentIndex(v.toInt());
            }
        }
        s.endGroup();
        if (!mMacchina->Scrivibile())
            Segnala(mContesto.Testi().LoadDllString(8039) + u' ' + mMacchina->Dove());
    });
    // The password, from the keyring when there is one; otherwise it is asked each time.
    if (auto* p = qobject_cast<QLineEdit*>(Widget("Password")))
        modPortachiavi::Leggi(mGruppo, this, [this, p](bool riuscito, const QString& password) {
            if (riuscito && p->text().isEmpty()) {
                p->setText(password);
                if (auto* c = qobject_cast<QLineEdit*>(Widget("Conferma")))
                    c->setText(password);
            }
        });
}

void frmInvioProva::Salva()
{
    QSettings& s = mMacchina->Impostazioni();
    s.beginGroup(mGruppo);
    for (const Campo& c : mDefinizione) {
        const QString chiave = QString::fromLatin1(c.Chiave);
        QWidget* w = Widget(c.Chiave);
        if (c.Tipo == Genere::Password || c.Tipo == Genere::Conferma || c.Tipo == Genere::Sola || c.Tipo == Genere::Cornice)
            continue;
        if (auto* k = qobject_cast<QCheckBox*>(w))
            s.setValue(chiave, k->isChecked() ? 1 : 0);
        else if (auto* e = qobject_cast<QComboBox*>(w); e && !e->isEditable())
            s.setValue(chiave, e->currentIndex());
        else
            s.setValue(chiave, Testo(c.Chiave).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    }
    s.endGroup();
    s.sync();
    if (const QString password = Testo("Password"); Widget("Password"))
        modPortachiavi::Scrivi(mGruppo, password, this, [](bool) {});
}

void frmInvioProva::FineInvio()
{
    mInVio = false;
    mPulsanti->setEnabled(true);
}

void frmInvioProva::reject()
{
    if (!mInVio)
        QDialog::reject();
}

void frmInvioProva::accept()
{
    if (mInVio)
        return;
    if (!Valida())
        return;
    QString errore;
    std::optional<modContenuto::Lavoro> lavoro;
    modTraccia::Proteggi("frmInvioProva_Componi", [&] { lavoro = Componi(&errore); });
    if (!lavoro || mCartellaIngresso.isEmpty()) {
        Segnala(mContesto.Testi().LoadDllString(8037) + u' '
                + (mCartellaIngresso.isEmpty() ? mContesto.Testi().LoadDllString(8022) : errore));
        return;
    }
    // Listening before the job is written: the service may take it before the write returns.
    PxSrvServizio* servizio = mContesto.Server() ? mContesto.Server()->Servizio(mServizio) : nullptr;
    auto* attesa = new PxAttesaLavoro(servizio, this);
    connect(attesa, &PxAttesaLavoro::Preso, this, [this, attesa](const QString& base, const QString& id) {
        attesa->deleteLater();
        FineInvio();
        Segnala({});
        modTraccia::Proteggi("frmInvioProva_Salva", [&] { Salva(); });
        emit Consegnato(base, id);
        QDialog::accept();
    });
    connect(attesa, &PxAttesaLavoro::Respinto, this, [this, attesa](const QString& base, const QString& motivo) {
        // Set aside: the operator sees why and may correct the fields and send again.
        attesa->deleteLater();
        FineInvio();
        Segnala(mContesto.Testi().LoadDllString(8075) + u' ' + QFileInfo(base).fileName() + QStringLiteral(": ") + motivo);
        emit Respinto(base, motivo);
    });
    connect(attesa, &PxAttesaLavoro::Scaduto, this, [this, attesa](const QString& base) {
        // Handed over: the service may still take it, and the form must not hang on it.
        attesa->deleteLater();
        FineInvio();
        Segnala(mContesto.Testi().LoadDllString(8076) + u' ' + QFileInfo(base).fileName());
        modTraccia::Proteggi("frmInvioProva_Salva", [&] { Salva(); });
        emit NonPreso(base);
        QDialog::accept();
    });
    // The server writes the job into its input folder; the form waits, and closes only once
    // the service took the job.
    mInVio = true;
    mPulsanti->setEnabled(false);
    Segnala(mContesto.Testi().LoadDllString(8018));
    modContenuto::Consegna(servizio, *lavoro, attesa, [this, attesa](const PxRisposta& r) {
        if (!r.Riuscita()) {
            attesa->deleteLater();
            FineInvio();
            Segnala(mContesto.Testi().LoadDllString(8037) + u' ' + r.Testo);
            return;
        }
        attesa->Attendi(r.Testo, mAttesaMassima);
    });
}
