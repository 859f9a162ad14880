#include "RefServer.h"
#include "RefServizio.h"
#include "modDemo.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <pugixml.hpp>

#include <memory>

namespace {

// One demo server (no documents) shared by the tests of a suite.
class ConServerDemo
{
protected:
    static void CreaServer()
    {
        sCartella = std::make_unique<QTemporaryDir>();
        ASSERT_EQ(modDemo::CreaServerDemo(sCartella->path(), 0), QString());
        sServer = std::make_unique<RefServer>(sCartella->path(), RefServer::Opzioni{false});
    }
    static void ChiudiServer()
    {
        sServer.reset();
        sCartella.reset();
    }
    // The parsed state XML of `chiave`; an empty document when the server has no such object.
    static pugi::xml_document StatoXml(const char* chiave)
    {
        pugi::xml_document d;
        const RefServizio* s = sServer ? sServer->ServizioRef(QString::fromLatin1(chiave)) : nullptr;
        if (s) {
            EXPECT_TRUE(d.load_string(s->StatoXml().toUtf8().constData())) << chiave;
        }
        return d;
    }

    static inline std::unique_ptr<QTemporaryDir> sCartella;
    static inline std::unique_ptr<RefServer> sServer;
};

class DemoServizi : public ::testing::Test, protected ConServerDemo
{
protected:
    static void SetUpTestSuite() { CreaServer(); }
    static void TearDownTestSuite() { ChiudiServer(); }
};

} // namespace

TEST_F(DemoServizi, PrintersCarryWhatTheirTestPageReads)
{
    const pugi::xml_document d = StatoXml("PxSrvStampe");
    int stampanti = 0;
    for (const pugi::xml_node s : d.document_element().child("Stampanti").children("Stampante")) {
        ++stampanti;
        for (const char* p : {"Modello/Codice", "NomeStampanteWindows", "InfoStampante/DriverName",
                              "InfoStampante/PortName", "Margini/Superiore", "Margini/Sinistro", "Margini/Destro",
                              "Margini/Inferiore", "NumeroTarquel"})
            EXPECT_TRUE(s.first_element_by_path(p)) << s.child_value("NomeStampanteWindows") << " lacks " << p;
    }
    EXPECT_GT(stampanti, 0);
}

TEST_F(DemoServizi, ListsOfAServiceKeepTheirEntriesApart)
{
    const pugi::xml_document d = StatoXml("PxSrvFax");
    int modem = 0;
    for (const pugi::xml_node m : d.document_element().child("InfoFaxModems").children("InfoFaxModem")) {
        ++modem;
        EXPECT_STRNE(m.child_value("Porta"), "");
        EXPECT_STRNE(m.child_value("Costruttore"), "");
    }
    EXPECT_EQ(modem, 2);
}
