#include "modDemo.h"

#include "modDemoFormati.h"

#include "RefServer.h"
#include "modCatalogo.h"
#include "modDemoServizi.h"

#include <pugixml.hpp>

#include <QDir>
#include <QFile>
#include <QFileInfo>

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

QString CreaServerDemo(const QString& cartella, int documenti, quint64 seme)
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
    if (const QString errore = CreaFormatiDemo(cartella); !errore.isEmpty())
        return errore;
    return documenti > 0 ? CreaDocumentiDemo(cartella, documenti, seme) : QString();
}

} // namespace modDemo
