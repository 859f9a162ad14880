#include "modTabellaCartelle.h"

namespace modTabellaCartelle {

namespace {

using enum Campo;
using G = GenereCartella;

constexpr Colonna ColonneFax[] = {{2000, Id}, {2001, Descrizione}, {2003, Stato}, {2002, Utente},
                                  {2015, PrefissoInternazionale}, {2016, PrefissoLocale}, {2017, NumeroFax},
                                  {2009, Priorita}, {2004, Inserito}, {2005, Elaborato}};
constexpr Colonna ColonnePbl[] = {{2000, Id}, {2001, Descrizione}, {2003, Stato}, {2002, Utente}, {2004, Inserito},
                                  {2005, Elaborato}};
constexpr Colonna ColonneStampa[] = {{2000, Id}, {2006, Sigla}, {2001, Descrizione}, {2003, Stato}, {2002, Utente},
                                     {2007, Numero}, {2008, Stampante}, {2004, Inserito}, {2005, Elaborato}};
constexpr Colonna ColonneEmail[] = {{2000, Id}, {2006, Sigla}, {2001, Descrizione}, {2003, Stato}, {2002, Utente},
                                    {2012, A}, {2013, Cc}, {2014, Ccn}, {2009, Priorita}, {2004, Inserito},
                                    {2005, Elaborato}};
// The previews' listing carries the asking client and the page count, which the list hides.
constexpr Colonna ColonneAnteprima[] = {{2000, Id}, {2001, Descrizione}, {2003, Stato}, {2002, Utente}, {0, KeyUtente},
                                        {0, Pagine}, {2018, Ip}, {2004, Inserito}, {2005, Elaborato}};

// Every toggle and move entry is described by its caption's description (caption + 100),
// except "Respinti" in the printing and printer-fax folders, which says "Mostra i documenti
// inviati" (1322) there: kept as the product has always shown it.
constexpr Coda CodeStampa[] = {{5900, 1204, 1304, Nero}, {5901, 1205, 1305, Nero}, {5902, 1221, 1321, Verde},
                               {5903, 1226, 1322, Rosso}, {5904, 1227, 1327, Rosso}};
constexpr Spostamento SpostaStampa[] = {{5905, 1204, 1304, 0}, {5906, 1205, 1305, 1}, {5907, 1221, 1321, 2},
                                        {5908, 1226, 1322, 3}};

constexpr Coda CodeAnteprima[] = {{5800, 1210, 1310, Nero}, {5801, 1211, 1311, Nero}, {5802, 1224, 1324, Verde},
                                  {5803, 1226, 1326, Rosso}, {5804, 1227, 1327, Rosso}};
constexpr Spostamento SpostaAnteprima[] = {{5805, 1210, 1310, 0}, {5806, 1211, 1311, 1}, {5807, 1224, 1324, 2},
                                           {5808, 1226, 1326, 3}};

constexpr Coda CodeEmail[] = {{6000, 1206, 1306, Nero}, {6001, 1207, 1307, Nero}, {6002, 1214, 1314, Nero},
                              {6003, 1215, 1315, Nero}, {6004, 1204, 1304, Nero}, {6005, 1205, 1305, Nero},
                              {6006, 1223, 1323, Verde}, {6007, 1226, 1326, Rosso}, {6008, 1227, 1327, Rosso}};
constexpr Spostamento SpostaEmail[] = {{6009, 1206, 1306, 0}, {6010, 1207, 1307, 1}, {6011, 1214, 1314, 2},
                                       {6012, 1215, 1315, 3}, {6013, 1204, 1304, 4}, {6014, 1205, 1305, 5},
                                       {6015, 1223, 1323, 6}, {6016, 1226, 1326, 7}};

constexpr Coda CodePbl[] = {{6200, 1206, 1306, Nero}, {6201, 1207, 1307, Nero}, {6202, 1218, 1318, Nero},
                            {6203, 1219, 1319, Nero}, {6204, 1225, 1325, Verde}, {6205, 1226, 1326, Rosso},
                            {6206, 1227, 1327, Rosso}};
constexpr Spostamento SpostaPbl[] = {{6207, 1206, 1306, 0}, {6208, 1207, 1307, 1}, {6209, 1218, 1318, 2},
                                     {6210, 1219, 1319, 3}, {6211, 1225, 1325, 4}, {6212, 1226, 1326, 5}};

constexpr Coda CodePFax[] = {{6300, 1204, 1304, Nero}, {6301, 1205, 1305, Nero}, {6302, 1221, 1321, Verde},
                             {6303, 1226, 1322, Rosso}, {6304, 1227, 1327, Rosso}};
constexpr Spostamento SpostaPFax[] = {{6305, 1204, 1304, 0}, {6306, 1205, 1305, 1}, {6307, 1221, 1321, 2},
                                      {6308, 1226, 1322, 3}};

constexpr Coda CodeEFax[] = {{6400, 1206, 1306, Nero}, {6401, 1207, 1307, Nero}, {6402, 1218, 1318, Nero},
                             {6403, 1219, 1319, Nero}, {6404, 1225, 1325, Verde}, {6405, 1226, 1326, Rosso},
                             {6406, 1227, 1327, Rosso}};
constexpr Spostamento SpostaEFax[] = {{6407, 1206, 1306, 0}, {6408, 1207, 1307, 1}, {6409, 1218, 1318, 2},
                                      {6410, 1219, 1319, 3}, {6411, 1225, 1325, 4}, {6412, 1226, 1326, 5}};

// The fax folder's toggles are not in queue order: queue 12 ("Da pubblicare") took 6104,
// between queues 3 and 4, and the saved layouts of every installation refer to these ids.
// Queues 2 and 3 are "Da inviare" / "In uscita" as filters but "Da trasmettere" /
// "In trasmissione" as move targets. Queue 11 (awaiting confirmation) is never shown.
constexpr Coda CodeFax[] = {{6100, 1208, 1308, Nero}, {6101, 1209, 1309, Nero}, {6102, 1212, 1312, Nero},
                            {6103, 1213, 1313, Nero}, {6105, 1204, 1304, Nero}, {6106, 1205, 1305, Nero},
                            {6107, 1216, 1316, Nero}, {6108, 1217, 1317, Nero}, {6109, 1223, 1323, Verde},
                            {6110, 1226, 1326, Rosso}, {6111, 1227, 1327, Rosso}, {0, 1220, 1320, Nero},
                            {6104, 1218, 1318, Arancio}};
// "Da pubblicare" (6116) has no target: the menu shows it and it does nothing.
constexpr Spostamento SpostaFax[] = {{6112, 1208, 1308, 0}, {6113, 1209, 1309, 1}, {6114, 1214, 1314, 2},
                                     {6115, 1215, 1315, 3}, {6116, 1218, 1318, -1}, {6117, 1204, 1304, 4},
                                     {6118, 1205, 1305, 5}, {6119, 1216, 1316, 6}, {6120, 1217, 1317, 7},
                                     {6121, 1223, 1323, 8}, {6122, 1226, 1326, 9}};

constexpr Comando Nessuno{0, 0, 0};
constexpr Comando Pdf{5306, 1242, 1342}, Tiff{5307, 1243, 1343};

constexpr Cartella Tabella[] = {
    {G::Anteprima, "SrvDocAnteprime", "PxSrvDocAnteprime", "PxSrvAnteprime", "01.00.04", "DocAnteprima", "",
     ColonneAnteprima, CodeAnteprima, 3, 4, -1, SpostaAnteprima, Nessuno, false, Nessuno},
    {G::Stampa, "SrvDocStampe", "PxSrvDocStampe", "PxSrvStampe", "01.00.04", "DocStampa", "", ColonneStampa,
     CodeStampa, 3, 4, -1, SpostaStampa, Nessuno, true, Nessuno},
    {G::Email, "SrvDocEmail", "PxSrvDocEmail", "PxSrvEmail", "01.00.06", "DocEmail", "", ColonneEmail, CodeEmail, 7,
     8, -1, SpostaEmail, {5310, 1230, 1330}, false, Pdf},
    {G::Fax, "SrvDocFax", "PxSrvDocFax", "PxSrvFax", "01.00.04", "DocFax", "DocFaxCollegato", ColonneFax, CodeFax, 9,
     10, 12, SpostaFax, {5311, 1231, 1331}, false, Tiff},
    {G::PFax, "SrvDocPFax", "PxSrvDocPFax", "PxSrvPFax", "01.00.04", "DocPFax", "", ColonneFax, CodePFax, 3, 4,
     -1, SpostaPFax, {5313, 1231, 1331}, false, Nessuno},
    {G::EFax, "SrvDocEFax", "PxSrvDocEFax", "PxSrvEFax", "01.00.04", "DocEFax", "", ColonneFax, CodeEFax, 5, 6,
     -1, SpostaEFax, {5314, 1231, 1331}, false, Pdf},
    {G::Pbl, "SrvDocPbl", "PxSrvDocPbl", "PxSrvPbl", "01.00.04", "DocPbl", "DocPblCollegato", ColonnePbl, CodePbl, 5,
     6, -1, SpostaPbl, {5312, 1232, 1332}, false, Pdf},
};

} // namespace

std::span<const Cartella> Cartelle() { return Tabella; }

const Cartella* Trova(QStringView chiave)
{
    for (const Cartella& c : Tabella)
        if (chiave == QLatin1StringView(c.Chiave) || chiave == QLatin1StringView(c.Nodo))
            return &c;
    return nullptr;
}

const Cartella& Di(GenereCartella genere)
{
    for (const Cartella& c : Tabella)
        if (c.Genere == genere)
            return c;
    return Tabella[0];
}

qint32 CodaDelFiltro(const Cartella& cartella, qint32 filtro)
{
    for (size_t k = 0; k < cartella.Code.size(); ++k)
        if (filtro != 0 && cartella.Code[k].Filtro == filtro)
            return static_cast<qint32>(k);
    return -1;
}

} // namespace modTabellaCartelle
