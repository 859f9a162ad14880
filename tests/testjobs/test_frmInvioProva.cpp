#include "ServerInLinea.h"
#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxIconResource.h"
#include "PxImpostazioni.h"
#include "PxImpostazioniMacchina.h"
#include "PxIntestazioneHpx.h"
#include "RefCartellaDocumenti.h"
#include "PxLogConsole.h"
#include "PxSrvServer.h"
#include "RefIngresso.h"
#include "RefServer.h"
#include "frmInvioProvaEmail.h"
#include "frmInvioProvaFax.h"
#include "modDemo.h"
#include "DiscoGuasto.h"
#include "modPortachiavi.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <cerrno>

using namespace Qt::StringLiterals;

namespace {

bool Attendi(const std::function<bool()>& c) { return QTest::qWaitFor(c, 10000); }

// A keyring of the test's own.
QHash<QString, QString> Chiavi;
const modPortachiavi::Portachiavi Memoria{
    [](const QString& k, std::function<void(bool, const QString&)> fatto) { fatto(Chiavi.contains(k), Chiavi.value(k)); },
    [](const QString& k, const QString& v, std::function<void(bool)> fatto) {
        Chiavi.insert(k, v);
        fatto(true);
    }};

class Moduli : public ::testing::Test
{
protected:
    void SetUp() override
    {
        // As a console on another machine: every job goes through the server.
        ASSERT_TRUE(mS.Avvia(0, false));
        Chiavi.clear();
        modPortachiavi::ImpostaPortachiavi(&Memoria);
        PxImpostazioniMacchina(mS.Dir.path()).Impostazioni().clear();
    }
    void TearDown() override { modPortachiavi::ImpostaPortachiavi(nullptr); }

    void Scrivi(frmInvioProva& f, const char* chiave, const QString& testo)
    {
        if (auto* l = qobject_cast<QLineEdit*>(f.Widget(chiave)))
            l->setText(testo);
        else if (auto* n = qobject_cast<QPlainTextEdit*>(f.Widget(chiave)))
            n->setPlainText(testo);
    }

    // The server looks at the input folder of `servizio` once the form's job is there whole
    // (a server in another process looks on its own).
    void Prendi(const char* servizio)
    {
        if (!mS.Ref)
            return;
        RefIngresso* ingresso = mS.Ref->Ingresso(QLatin1StringView(servizio));
        ASSERT_TRUE(Attendi([&] { return !QDir(ingresso->Cartella()).entryList({u"*.hpx"_s}, QDir::Files).isEmpty(); }));
        ingresso->Scansiona();
    }

    QStringList Lavori(const char* servizio) const
    {
        return QDir(QDir(mS.Dir.path()).filePath(u"Ingresso/"_s + QLatin1StringView(servizio))).entryList(QDir::Files | QDir::Hidden);
    }

    ServerInLinea mS;
};

TEST_F(Moduli, ATestFaxIsSentThenRememberedForEveryOperatorOfTheMachine)
{
    RICHIEDE_SERVER_IN_LINEA(mS) << " (it watches the job wait in the input folder)";
    {
        frmInvioProvaFax f(*mS.Contesto);
        EXPECT_EQ(f.CartellaIngresso(), QDir(mS.Dir.path()).filePath(u"Ingresso/PxSrvFax"_s));
        QComboBox* lingue = qobject_cast<QComboBox*>(f.Widget("Lingua"));
        ASSERT_GE(lingue->count(), 3);
        EXPECT_EQ(lingue->itemText(1), u"1 [Inglese]"_s);
        lingue->setCurrentIndex(2);
        Scrivi(f, "NumeroFax", u"7654321"_s);
        Scrivi(f, "Note", u"prima\nseconda"_s);
        qobject_cast<QCheckBox*>(f.Widget("Frontespizio"))->setChecked(true);
        QSignalSpy consegnati(&f, &frmInvioProva::Consegnato);
        f.open();
        QTest::keyClick(f.Widget("Oggetto"), Qt::Key_Return); // Enter is OK
        // Written, but not yet taken: the form waits for the service.
        ASSERT_TRUE(Attendi([&] { return Lavori("PxSrvFax").size() == 2; }));
        EXPECT_EQ(Lavori("PxSrvFax"), (QStringList{u"Pagina di prova di 02 7654321.bpx"_s, u"Pagina di prova di 02 7654321.hpx"_s}));
        EXPECT_TRUE(f.isVisible());
        EXPECT_TRUE(consegnati.isEmpty());
        Prendi("PxSrvFax");
        ASSERT_TRUE(Attendi([&] { return consegnati.size() == 1; }));
        EXPECT_EQ(f.result(), QDialog::Accepted);
        EXPECT_EQ(QFileInfo(consegnati[0][0].toString()).fileName(), u"Pagina di prova di 02 7654321"_s);
        EXPECT_NE(mS.Ref->Cartella(GenereCartella::Fax)->Trova(consegnati[0][1].toString()), nullptr);
    }
    EXPECT_TRUE(Lavori("PxSrvFax").isEmpty()) << "the server took the job";
    // The next form, for any operator of the machine, starts from what was sent.
    frmInvioProvaFax di_nuovo(*mS.Contesto);
    EXPECT_EQ(qobject_cast<QLineEdit*>(di_nuovo.Widget("NumeroFax"))->text(), u"7654321"_s);
    EXPECT_EQ(qobject_cast<QComboBox*>(di_nuovo.Widget("Lingua"))->currentIndex(), 2);
    EXPECT_TRUE(qobject_cast<QCheckBox*>(di_nuovo.Widget("Frontespizio"))->isChecked());
    EXPECT_EQ(qobject_cast<QPlainTextEdit*>(di_nuovo.Widget("Note"))->toPlainText(), u"prima\nseconda"_s);
}

TEST_F(Moduli, AFailedSendKeepsTheFormOpenAndRemembersNothing)
{
    RICHIEDE_SERVER_IN_LINEA(mS) << " (it breaks the disk under the server)";
    frmInvioProvaFax f(*mS.Contesto);
    Scrivi(f, "NumeroFax", u"1111111"_s);
    f.open();
    {
        OperazioniGuaste pieno(1); // the first file cannot even be created
        f.accept();
        ASSERT_TRUE(Attendi([&] { return f.findChild<QDialogButtonBox*>()->isEnabled(); }));
    }
    EXPECT_TRUE(f.isVisible()) << "the form stays open";
    EXPECT_TRUE(Lavori("PxSrvFax").isEmpty());
    frmInvioProvaFax altro(*mS.Contesto);
    EXPECT_NE(qobject_cast<QLineEdit*>(altro.Widget("NumeroFax"))->text(), u"1111111"_s);
    // Escape closes the form without sending.
    QTest::keyClick(&f, Qt::Key_Escape);
    EXPECT_EQ(f.result(), QDialog::Rejected);
    EXPECT_TRUE(Lavori("PxSrvFax").isEmpty());
}

TEST_F(Moduli, TheEmailPasswordIsCheckedOnlyWithAnAuthenticationAndKeptInTheKeyringOnly)
{
    frmInvioProvaEmail f(*mS.Contesto);
    Scrivi(f, "A", u"operatore@ditta.it"_s);
    Scrivi(f, "Password", u"segreta"_s);
    Scrivi(f, "Conferma", u"diversa"_s);
    QComboBox* modo = qobject_cast<QComboBox*>(f.Widget("Autenticazione"));
    modo->setCurrentIndex(modo->findData(2));
    f.open();
    // LOGIN with a confirmation that differs: the message, and nothing sent.
    bool avvisato = false;
    QTimer::singleShot(50, [&avvisato] {
        if (auto* m = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            avvisato = m->text() == u"La password e la sua conferma non coincidono"_s;
            m->close();
        }
    });
    f.accept();
    EXPECT_TRUE(avvisato);
    EXPECT_TRUE(Lavori("PxSrvEmail").isEmpty());
    // No authentication: the confirmation does not matter.
    modo->setCurrentIndex(modo->findData(0));
    QSignalSpy consegnati(&f, &frmInvioProva::Consegnato);
    f.accept();
    Prendi("PxSrvEmail");
    ASSERT_TRUE(Attendi([&] { return consegnati.size() == 1; }));
    EXPECT_EQ(Chiavi.value(u"Email"_s), u"segreta"_s);
    PxImpostazioniMacchina macchina(mS.Dir.path());
    QFile file(macchina.Dove());
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray salvate = file.readAll();
    EXPECT_TRUE(salvate.contains("operatore@ditta.it"));
    EXPECT_FALSE(salvate.contains("segreta")) << "never in the settings";
    // The next form takes the password from the keyring.
    frmInvioProvaEmail di_nuovo(*mS.Contesto);
    EXPECT_TRUE(Attendi([&] { return qobject_cast<QLineEdit*>(di_nuovo.Widget("Password"))->text() == u"segreta"_s; }));
}

// The service sets the job aside: the form says why, stays open and remembers nothing; the
// next send, corrected, goes through.
TEST_F(Moduli, AJobTheServiceSetsAsideIsReportedWithItsReasonAndTheFormStaysOpen)
{
    frmInvioProvaEmail f(*mS.Contesto);
    Scrivi(f, "Oggetto", u"Senza destinatario"_s);
    QSignalSpy consegnati(&f, &frmInvioProva::Consegnato);
    QSignalSpy respinti(&f, &frmInvioProva::Respinto);
    f.open();
    f.accept();
    Prendi("PxSrvEmail");
    ASSERT_TRUE(Attendi([&] { return respinti.size() == 1; }));
    EXPECT_TRUE(consegnati.isEmpty());
    EXPECT_EQ(QFileInfo(respinti[0][0].toString()).fileName(), u"Pagina di prova di "_s);
    const QString motivo = respinti[0][1].toString();
    EXPECT_TRUE(motivo.contains(u"A_IndirizziEmail"_s)) << qPrintable(motivo);
    EXPECT_TRUE(f.isVisible()) << "the form stays open";
    EXPECT_TRUE(f.findChild<QDialogButtonBox*>()->isEnabled());
    bool detto = false;
    for (const QLabel* l : f.findChildren<QLabel*>())
        detto = detto || (l->isVisible() && l->text().startsWith(mS.Testi.LoadDllString(8075)) && l->text().contains(motivo));
    EXPECT_TRUE(detto) << "the reason shows in the form";
    EXPECT_FALSE(PxImpostazioniMacchina(mS.Dir.path()).Impostazioni().contains(u"Email/Oggetto"_s)) << "nothing remembered";

    Scrivi(f, "A", u"operatore@ditta.it"_s);
    f.accept();
    Prendi("PxSrvEmail");
    ASSERT_TRUE(Attendi([&] { return consegnati.size() == 1; }));
    EXPECT_EQ(respinti.size(), 1);
    EXPECT_EQ(f.result(), QDialog::Accepted);
}

// The server dies while an operator fills a form: sending says why it cannot and keeps the form
// as it is; once the server is back, the same form goes through.
TEST_F(Moduli, AFormOutlivesALostServerAndIsSentOnceTheServerIsBack)
{
    if (!mS.Figlio)
        GTEST_SKIP() << "needs a server in another process, to lose";
    frmInvioProvaEmail f(*mS.Contesto);
    Scrivi(f, "A", u"operatore@ditta.it"_s);
    Scrivi(f, "Oggetto", u"Dopo la caduta"_s);
    QSignalSpy consegnati(&f, &frmInvioProva::Consegnato);
    QSignalSpy riprova(mS.Server.get(), &PxSrvServer::Riprova);
    QSignalSpy ricollegato(mS.Server.get(), &PxSrvServer::Ricollegato);
    f.open();
    ASSERT_TRUE(mS.UccidiFiglio());
    ASSERT_TRUE(Attendi([&] { return !riprova.isEmpty(); })) << "the console noticed the loss";

    f.accept();
    auto* pulsanti = f.findChild<QDialogButtonBox*>();
    ASSERT_TRUE(Attendi([&] { return pulsanti->isEnabled(); })) << "the send ends, it does not hang";
    EXPECT_TRUE(f.isVisible());
    EXPECT_TRUE(consegnati.isEmpty());
    bool detto = false;
    for (const QLabel* l : f.findChildren<QLabel*>())
        detto = detto || (l->isVisible() && l->text().startsWith(mS.Testi.LoadDllString(8037)));
    EXPECT_TRUE(detto) << "the form says it could not send";
    EXPECT_EQ(qobject_cast<QLineEdit*>(f.Widget("Oggetto"))->text(), u"Dopo la caduta"_s) << "what was typed stays";

    ASSERT_TRUE(mS.RiavviaFiglio());
    ASSERT_TRUE(Attendi([&] { return !ricollegato.isEmpty(); }));
    f.accept();
    ASSERT_TRUE(Attendi([&] { return consegnati.size() == 1; }));
    EXPECT_EQ(f.result(), QDialog::Accepted);
}

// A server that never looks at its folder: the form does not hang; it says the job was handed
// over but not yet taken, and the job is still there for the service to take later.
TEST_F(Moduli, WithoutWordFromTheServiceTheFormClosesSayingTheJobWasHandedOverOnly)
{
    RICHIEDE_SERVER_IN_LINEA(mS) << " (it needs a server that does not take jobs)";
    frmInvioProvaFax f(*mS.Contesto);
    Scrivi(f, "NumeroFax", u"2223334"_s);
    f.ImpostaAttesa(1);
    QSignalSpy consegnati(&f, &frmInvioProva::Consegnato);
    QSignalSpy nonPresi(&f, &frmInvioProva::NonPreso);
    f.open();
    f.accept();
    ASSERT_TRUE(Attendi([&] { return nonPresi.size() == 1; }));
    EXPECT_TRUE(consegnati.isEmpty());
    EXPECT_EQ(f.result(), QDialog::Accepted);
    EXPECT_EQ(QFileInfo(nonPresi[0][0].toString()).fileName(), u"Pagina di prova di 02 2223334"_s);
    EXPECT_EQ(Lavori("PxSrvFax").size(), 2) << "handed over, waiting for the service";
    EXPECT_EQ(mS.Ref->Ingresso(u"PxSrvFax"_s)->Scansiona(), 1);
}

// The e-mail's vendor links are the installation's, from its ini file.
TEST_F(Moduli, TheTestEmailCarriesTheLinksTheInstallationNames)
{
    RICHIEDE_SERVER_IN_LINEA(mS) << " (it reads the job before the server takes it)";
    const QString file = QDir(mS.Dir.path()).filePath(u"PlxConfigurazione.ini"_s);
    QFile ini(file);
    ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
    QByteArray testo = ini.readAll();
    ini.close();
    const QByteArray chiavi = "TitoloLink=Ditta Rossi\r\nIndirizzoAggiornamenti=https://aggiornamenti.rossi.it\r\n"
                              "IndirizzoSito=https://www.rossi.it\r\n";
    const qsizetype console = testo.indexOf("[Console]");
    if (console < 0)
        testo += "\r\n[Console]\r\n" + chiavi;
    else
        testo.insert(testo.indexOf('\n', console) + 1, chiavi);
    ASSERT_TRUE(ini.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ini.write(testo);
    ini.close();
    // The settings are read through the server when a console connects.
    ASSERT_TRUE(mS.Ricollega());

    frmInvioProvaEmail f(*mS.Contesto);
    Scrivi(f, "A", u"operatore@ditta.it"_s);
    f.ImpostaAttesa(1);
    QSignalSpy nonPresi(&f, &frmInvioProva::NonPreso);
    f.open();
    f.accept();
    ASSERT_TRUE(Attendi([&] { return nonPresi.size() == 1; }));
    QFile hpx(QDir(mS.Ref->Ingresso(u"PxSrvEmail"_s)->Cartella()).filePath(nonPresi[0][0].toString() + u".hpx"_s));
    ASSERT_TRUE(hpx.open(QIODevice::ReadOnly));
    PxIntestazioneHpx h;
    ASSERT_TRUE(h.Analizza(hpx.readAll()));
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Titolo"_s), u"Ditta Rossi"_s);
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Href0"_s), u"https://aggiornamenti.rossi.it"_s);
    EXPECT_EQ(h.Testo(u"LINKS"_s, u"Href1"_s), u"https://www.rossi.it"_s);
}

} // namespace
