#include "RefCartellaDocumenti.h"
#include "RefLavoratori.h"
#include "RefServer.h"
#include "modCartelle.h"
#include "modCp1252.h"
#include "modDemo.h"
#include "modDemoErrori.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <pugixml.hpp>

#include <memory>

using namespace Qt::StringLiterals;

namespace {

// What the description file of a document says, read the way the property sheets read it.
struct Descritto
{
    QString Errore;
    qint32 CodiceErrore = 0;
    qint32 Tentativi = 0;
    QString Lingua;
};

Descritto Descrizione(const RefCartellaDocumenti& c, const QString& id)
{
    pugi::xml_document doc;
    const QByteArray xml = c.DocumentoXml(id).toUtf8();
    EXPECT_TRUE(doc.load_buffer(xml.constData(), static_cast<size_t>(xml.size()))) << qPrintable(id);
    const pugi::xml_node p = doc.document_element().child("Proprieta");
    Descritto d;
    d.Errore = QString::fromUtf8(p.first_element_by_path("Errore/Descrizione").child_value());
    d.CodiceErrore = p.first_element_by_path("Errore/Codice").text().as_int();
    // Kinds with a transmission keep the attempts there, the others beside the rest.
    const pugi::xml_node tentativi = p.first_element_by_path("Trasmissione/TentativiEffettuati");
    d.Tentativi = (tentativi ? tentativi : p.child("Tentativi")).text().as_int(0); // written only when not 0
    d.Lingua = QString::fromUtf8(p.first_element_by_path("Lingua/Codice").child_value());
    return d;
}

QString Corpo(const RefCartellaDocumenti& c, const QString& id)
{
    QFile f(c.CartellaDocumentoDi(id) + u'/' + c.Trova(id)->FileCorpo);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly)) << qPrintable(f.fileName());
    return modCp1252::Decodifica(f.readAll());
}

// The body as it reads on paper: printer control sequences and control characters dropped.
QString Leggibile(const QString& corpo)
{
    static const QRegularExpression controlli(u"\\x1b(?:[EF]|[W\\-][01])|[\\x00-\\x09\\x0b-\\x1f]"_s);
    return QString(corpo).remove(controlli);
}

// The language most of a text's common words belong to; "" when it has too few to tell.
QString LinguaDelTesto(const QString& testo)
{
    static const QHash<QString, QSet<QString>> parole = {
        {u"IT"_s, {u"di"_s, u"il"_s, u"che"_s, u"per"_s, u"del"_s, u"della"_s, u"vi"_s, u"con"_s, u"nostri"_s, u"alla"_s, u"questo"_s, u"sarà"_s}},
        {u"EN"_s, {u"the"_s, u"of"_s, u"and"_s, u"to"_s, u"for"_s, u"with"_s, u"your"_s, u"our"_s, u"please"_s, u"we"_s, u"is"_s, u"this"_s}},
        {u"DE"_s, {u"der"_s, u"die"_s, u"das"_s, u"und"_s, u"zu"_s, u"den"_s, u"sie"_s, u"wir"_s, u"mit"_s, u"von"_s, u"für"_s, u"ist"_s, u"bitte"_s}},
        {u"FR"_s, {u"de"_s, u"le"_s, u"les"_s, u"et"_s, u"des"_s, u"pour"_s, u"vous"_s, u"nous"_s, u"du"_s, u"au"_s, u"est"_s, u"sous"_s, u"ce"_s, u"à"_s}},
    };
    static const QRegularExpression separatori(u"[^\\p{L}]+"_s);
    QHash<QString, int> conti;
    for (const QString& parola : testo.toLower().split(separatori, Qt::SkipEmptyParts))
        for (auto it = parole.cbegin(); it != parole.cend(); ++it)
            if (it->contains(parola))
                ++conti[it.key()];
    QString migliore;
    int massimo = 2, secondo = 0;
    for (auto it = conti.cbegin(); it != conti.cend(); ++it) {
        if (*it > massimo) {
            secondo = std::max(secondo, massimo);
            massimo = *it;
            migliore = it.key();
        } else {
            secondo = std::max(secondo, *it);
        }
    }
    return massimo >= 2 * std::max(secondo, 1) ? migliore : QString();
}

// One demo, made once for the suite: the tests only read it.
class DemoDocumenti : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        sDir = std::make_unique<QTemporaryDir>();
        ASSERT_EQ(modDemo::CreaServerDemo(sDir->path(), 1500), QString());
        sServer = std::make_unique<RefServer>(sDir->path(), RefServer::Opzioni{false});
    }
    static void TearDownTestSuite()
    {
        sServer.reset();
        sDir.reset();
    }
    static std::unique_ptr<QTemporaryDir> sDir;
    static std::unique_ptr<RefServer> sServer;
};
std::unique_ptr<QTemporaryDir> DemoDocumenti::sDir;
std::unique_ptr<RefServer> DemoDocumenti::sServer;

} // namespace

TEST_F(DemoDocumenti, RejectedDocumentsCarryAnErrorOfAWorkerOfTheirOwnFolder)
{
    int rifiutati = 0;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        const RefCartellaDocumenti& c = *sServer->CartellaRef(QString::fromLatin1(def.Chiave));
        for (const qint32 coda : {def.CodaRespinti, def.CodaScartati})
            for (const QString& id : c.Coda(coda)) {
                const Descritto d = Descrizione(c, id);
                bool suo = false;
                for (const modCartelle::Passo& p : def.Passi)
                    if (p.PuoRespingere)
                        for (const modDemoErrori::Errore& e : modDemoErrori::Di(QString::fromLatin1(p.Lavoratore)))
                            suo = suo || (e.Codice == d.CodiceErrore && modDemoErrori::Testo(e, d.Tentativi) == d.Errore);
                EXPECT_TRUE(suo) << def.Chiave << " " << qPrintable(id) << ": \"" << qPrintable(d.Errore)
                                 << "\" is no error of the folder's workers";
                ++rifiutati;
            }
    }
    EXPECT_GT(rifiutati, 50);
}

TEST_F(DemoDocumenti, AnErrorThatNamesItsAttemptsNamesTheAttemptsRecorded)
{
    int conNumero = 0, ripetuti = 0;
    for (const modCartelle::Definizione& def : modCartelle::Cartelle()) {
        const RefCartellaDocumenti& c = *sServer->CartellaRef(QString::fromLatin1(def.Chiave));
        for (qint32 coda = 0; coda < def.NumeroCode; ++coda)
            for (const QString& id : c.Coda(coda)) {
                const Descritto d = Descrizione(c, id);
                EXPECT_GE(d.Tentativi, 0) << qPrintable(id);
                const qint32 nominati = modDemoErrori::TentativiNelTesto(d.Errore);
                if (nominati < 0)
                    continue;
                EXPECT_EQ(d.Tentativi, nominati) << qPrintable(id) << ": \"" << qPrintable(d.Errore) << "\"";
                ++conNumero;
                ripetuti += nominati > 1 ? 1 : 0;
            }
    }
    EXPECT_GT(conNumero, 10);
    EXPECT_GT(ripetuti, 0);
}

TEST_F(DemoDocumenti, AFaxNotYetSentHasNoAttemptsAndASentOneAtLeastOne)
{
    const RefCartellaDocumenti& fax = *sServer->Cartella(GenereCartella::Fax);
    for (const qint32 coda : {0, 1})
        for (const QString& id : fax.Coda(coda))
            EXPECT_EQ(Descrizione(fax, id).Tentativi, 0) << qPrintable(id);
    ASSERT_FALSE(fax.Coda(8).isEmpty());
    for (const QString& id : fax.Coda(8))
        EXPECT_GE(Descrizione(fax, id).Tentativi, 1) << qPrintable(id);
}

TEST_F(DemoDocumenti, LettersAndMessagesAreWrittenInTheDocumentsLanguage)
{
    QSet<QString> lingue;
    int letti = 0;
    for (const GenereCartella genere : {GenereCartella::Email, GenereCartella::Fax, GenereCartella::PFax, GenereCartella::EFax}) {
        const RefCartellaDocumenti& c = *sServer->Cartella(genere);
        for (qint32 coda = 0; coda < c.Definizione().NumeroCode; ++coda)
            for (const QString& id : c.Coda(coda)) {
                const QString lingua = Descrizione(c, id).Lingua;
                ASSERT_FALSE(lingua.isEmpty()) << qPrintable(id);
                EXPECT_EQ(LinguaDelTesto(Leggibile(Corpo(c, id))), lingua) << qPrintable(id);
                lingue.insert(lingua);
                ++letti;
            }
    }
    EXPECT_GT(letti, 500);
    EXPECT_EQ(lingue.size(), 4) << "the demo has documents in every language";
}

TEST_F(DemoDocumenti, APrintJobAFaxAnEmailAndAPublicationReadDifferently)
{
    // What each kind puts first: its first line with the numbers taken out.
    QHash<GenereCartella, QSet<QString>> aperture;
    for (const GenereCartella genere : {GenereCartella::Stampa, GenereCartella::Email, GenereCartella::Fax, GenereCartella::Pbl}) {
        const RefCartellaDocumenti& c = *sServer->Cartella(genere);
        QSet<QString> corpi;
        for (qint32 coda = 0; coda < c.Definizione().NumeroCode; ++coda)
            for (const QString& id : c.Coda(coda)) {
                const QString testo = Leggibile(Corpo(c, id));
                corpi.insert(testo);
                const QString prima = testo.section(u'\n', 0, 0).remove(QRegularExpression(u"[0-9]"_s)).trimmed();
                ASSERT_FALSE(prima.isEmpty()) << qPrintable(id);
                aperture[genere].insert(prima);
            }
        EXPECT_EQ(corpi.size(), c.Totale()) << "no two documents of " << c.Definizione().Chiave << " say the same";
    }
    for (auto a = aperture.cbegin(); a != aperture.cend(); ++a)
        for (auto b = std::next(a); b != aperture.cend(); ++b)
            EXPECT_FALSE(a->intersects(*b)) << "two kinds open alike: " << qPrintable(QStringList(QSet<QString>(*a).intersect(*b).values()).join(u" | "_s));
}

TEST(modDemoErrori, AttemptsAreReadBackFromTheTextsThatNameThem)
{
    for (const char* chiave : {"PxSrvFaxVm", "PxSrvSmtp", "PxSrvStampe", "PxSrvPblVm", "PxSrvPFaxVm"}) {
        int ripetibili = 0;
        for (const modDemoErrori::Errore& e : modDemoErrori::Di(QString::fromLatin1(chiave))) {
            for (const qint32 n : {1, 3, 12}) {
                const QString testo = modDemoErrori::Testo(e, n);
                EXPECT_FALSE(testo.contains(u"%1"_s)) << qPrintable(testo);
                EXPECT_EQ(modDemoErrori::TentativiNelTesto(testo), e.Ripetibile ? n : -1) << qPrintable(testo);
            }
            ripetibili += e.Ripetibile ? 1 : 0;
        }
        EXPECT_GT(ripetibili, 0) << chiave << " delivers, so some of its faults pass and are retried";
    }
    EXPECT_EQ(modDemoErrori::TentativiNelTesto(u"Errore 27: linea occupata dopo 1 tentativo"), 1);
    EXPECT_EQ(modDemoErrori::TentativiNelTesto(u"tentativi"), -1);
    EXPECT_EQ(modDemoErrori::TentativiNelTesto(u"Tentativo 2 di 3"), -1);
}
