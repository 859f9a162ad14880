#include "modDemo.h"

#include "PxRigaLog.h"

#include "modDemoFormati.h"

#include "RefServer.h"
#include "modCatalogo.h"
#include "modDemoErrori.h"
#include "modDemoServizi.h"

#include <pugixml.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace modDemo {

namespace {

QString Scrivi(const QString& file, const QByteArray& dati)
{
    QFile f(file);
    if (!f.open(QIODevice::WriteOnly | QIODevice::Truncate) || f.write(dati) != dati.size())
        return QStringLiteral("Impossibile scrivere %1: %2").arg(file, f.errorString());
    return {};
}

} // namespace

namespace {

// The configuration tables speak of an installation in "D:\\Pelorix"; the demo's folders live
// in the server folder instead, and exist, so that the operator can open them.
void LocalizzaPercorsi(pugi::xml_node nodo, const QString& cartella)
{
    static const QString prefisso = QStringLiteral("D:\\Pelorix\\");
    for (pugi::xml_node figlio : nodo.children()) {
        if (figlio.type() == pugi::node_pcdata) {
            const QString testo = QString::fromUtf8(figlio.value());
            if (!testo.startsWith(prefisso, Qt::CaseInsensitive))
                continue;
            const QString percorso = QDir(cartella).filePath(testo.mid(prefisso.size()).replace(u'\\', u'/'));
            const QFileInfo info(percorso);
            QDir().mkpath(info.suffix().isEmpty() ? percorso : info.path());
            figlio.set_value(QDir::toNativeSeparators(QDir::cleanPath(percorso)).toUtf8().constData());
        } else {
            LocalizzaPercorsi(figlio, cartella);
        }
    }
}

} // namespace

bool EServer(const QString& cartella)
{
    return QFileInfo::exists(QDir(cartella).filePath(QStringLiteral("PlxConfigurazione.ini")))
        && QFileInfo(RefServer::CartellaServizi(cartella)).isDir();
}

namespace {

// A morning of work in the logs of the busiest workers, so that a new console shows logs with
// every level in them; always the same lines.
QString StoricoLog(const QString& cartella)
{
    struct Voce
    {
        const char* Chiave;
        const char* Cosa;
    };
    constexpr Voce voci[] = {{"PxSrvFaxVm", "trasmesso al 02 %1 (%2 pagine, %3 s)"},
                             {"PxSrvTifVm", "convertito in tiff (%2 pagine, %3 s)"},
                             {"PxSrvStampe", "stampato su Laser amministrazione (%2 pagine, %3 s)"},
                             {"PxSrvSmtp", "inviato a ufficio@cliente.it (%2 pagine, %3 s)"}};
    for (const Voce& v : voci) {
        // Each worker fails with its own errors, and retries only what it can retry.
        const auto errori = modDemoErrori::Di(QString::fromLatin1(v.Chiave));
        const bool ritenta = std::any_of(errori.begin(), errori.end(), [](const modDemoErrori::Errore& e) { return e.Ripetibile; });
        QByteArray testo;
        for (int i = 0; i < 240; ++i) {
            const QTime ora = QTime(7, 30).addSecs(i * 97);
            const int numero = 1000 + i * 7;
            if (i % 37 == 36) {
                const modDemoErrori::Errore& e = errori[static_cast<size_t>(i / 37) % errori.size()];
                testo += modRigaLog::Formatta(modRigaLog::LivelloErrore, ora,
                                              QStringLiteral("Documento %1 respinto: %2")
                                                  .arg(numero)
                                                  .arg(modDemoErrori::Testo(e, modDemoErrori::TentativiPredefiniti)));
            } else if (i % 11 == 10)
                testo += modRigaLog::Formatta(modRigaLog::LivelloAvviso, ora,
                                              ritenta ? QStringLiteral("Documento %1: nuovo tentativo fra 60 s").arg(numero)
                                                      : QStringLiteral("Documento %1: pagina %2 ridotta al formato A4").arg(numero).arg(1 + i % 5));
            else
                testo += modRigaLog::Formatta(i % 3 ? modRigaLog::LivelloInformazione : modRigaLog::LivelloDettaglio, ora,
                                              QStringLiteral("Documento %1 ").arg(numero)
                                                  + QString::fromLatin1(v.Cosa)
                                                        .replace(QStringLiteral("%1"), QString::number(7654321 - i))
                                                        .replace(QStringLiteral("%2"), QString::number(1 + i % 5))
                                                        .replace(QStringLiteral("%3"), QString::number(20 + i % 40)));
        }
        QFile file(QDir(RefServer::CartellaLog(cartella)).filePath(QString::fromLatin1(v.Chiave) + QStringLiteral(".log")));
        if (!file.open(QIODevice::WriteOnly) || file.write(testo) != testo.size() || !file.flush())
            return QStringLiteral("Impossibile scrivere %1").arg(file.fileName());
    }
    return {};
}

} // namespace

QString CreaCartellaServer(const QString& cartella)
{
    const QDir radice(cartella);
    if (!QDir().mkpath(RefServer::CartellaServizi(cartella)) || !QDir().mkpath(RefServer::CartellaLog(cartella)))
        return QStringLiteral("Impossibile creare la cartella %1").arg(cartella);

    const QByteArray ini =
        "; Configurazione dell'installazione\r\n"
        "[Console]\r\n"
        "EstenzioneFileZip=.pxz\r\n"
        "MostraStrumentiProcessi=0\r\n"
        "GraficoUsoCpu=1\r\n"
        "GraficoMemoriaFisica=1\r\n"
        "GraficoMemoriaPaginata=1\r\n"
        "VelocitaAggiorNamentoGrafico=1000\r\n"
        "\r\n"
        "[Server anteprime]\r\n"
        "IndirizzoPredefinito=127.0.0.1\r\n"
        "\r\n"
        "[Server di riferimento]\r\n"
        "IntervalloLavoro=2000\r\n"
        "PercentualeRespinti=5\r\n"
        "DocumentiPerPasso=3\r\n"
        "IntervalloIngresso=1000\r\n";
    if (QString errore = Scrivi(radice.filePath(QStringLiteral("PlxConfigurazione.ini")), ini); !errore.isEmpty())
        return errore;

    for (const modCatalogo::VoceServizio& voce : modCatalogo::Voci()) {
        pugi::xml_document doc;
        ConfigurazioneServizio(doc.append_child(voce.Chiave), voce.Chiave);
        LocalizzaPercorsi(doc, cartella);
        const QLatin1StringView chiave(voce.Chiave);
        const QString file = QDir(RefServer::CartellaServizi(cartella)).filePath(QString(chiave) + QStringLiteral(".xml"));
        if (!doc.save_file(file.toUtf8().constData(), "  ", pugi::format_indent, pugi::encoding_utf8))
            return QStringLiteral("Impossibile scrivere %1").arg(file);
    }
    return {};
}

QString CreaServerDemo(const QString& cartella, int documenti, quint64 seme)
{
    if (const QString errore = CreaCartellaServer(cartella); !errore.isEmpty())
        return errore;
    if (const QString errore = CreaFormatiDemo(cartella); !errore.isEmpty())
        return errore;
    if (const QString errore = StoricoLog(cartella); !errore.isEmpty())
        return errore;
    return documenti > 0 ? CreaDocumentiDemo(cartella, documenti, seme) : QString();
}

} // namespace modDemo
