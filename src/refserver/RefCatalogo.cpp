#include "RefCatalogo.h"

#include "PxContratto.h"
#include "PxRigaLog.h"
#include "RefLog.h"

#include <QDir>
#include <QFile>
#include <QMetaObject>

#include <pugixml.hpp>

#include <sstream>

using namespace Qt::StringLiterals;

namespace {

void Escape(QByteArray& out, const char* testo)
{
    for (const char* c = testo; *c; ++c) {
        switch (*c) {
        case '&': out += "&amp;"; break;
        case '<': out += "&lt;"; break;
        case '>': out += "&gt;"; break;
        default: out += *c;
        }
    }
}

} // namespace

RefCatalogo::RefCatalogo(const QString& chiave, const QString& cartella, RefLog& log, QObject* parent)
    : QObject(parent), mChiave(chiave)
{
    mElenco = "<?xml version=\"1.0\" encoding=\"UTF-8\"?><Elenco>";
    const QDir dir(cartella);
    for (const QString& nome : dir.entryList({u"*.xml"_s}, QDir::Files, QDir::Name)) {
        pugi::xml_document doc;
        const pugi::xml_parse_result esito = doc.load_file(QFile::encodeName(dir.filePath(nome)).constData());
        const pugi::xml_node radice = doc.document_element();
        const pugi::xml_node proprieta = radice.child("Proprieta");
        const QString key = QString::fromUtf8(proprieta.child_value("Key")).trimmed();
        if (!esito || !proprieta || key.isEmpty() || mOggetti.contains(key)) {
            log.Scrivi(modRigaLog::LivelloErrore, QStringLiteral("%1: oggetto %2 saltato (%3)")
                                                      .arg(mChiave, dir.filePath(nome),
                                                           !esito ? QString::fromUtf8(esito.description())
                                                                  : key.isEmpty() ? u"senza Key"_s : u"Key ripetuta"_s));
            continue;
        }
        std::ostringstream out;
        doc.save(out, "", pugi::format_raw, pugi::encoding_utf8);
        mOggetti.insert(key, QString::fromStdString(out.str()));
        mOrdine << key;
        mElenco += "<Oggetto><F>";
        Escape(mElenco, proprieta.child_value("Key"));
        mElenco += "</F><F>";
        Escape(mElenco, radice.attribute("Genere").value());
        mElenco += "</F><F>";
        Escape(mElenco, proprieta.child_value("Descrizione"));
        mElenco += "</F></Oggetto>";
    }
    mElenco += "</Elenco>";
}

void RefCatalogo::RichiediElenco(quint64 richiesta) { emit Risposta(richiesta, modContratto::Ok, {}, mElenco); }

void RefCatalogo::Oggetto(quint64 richiesta, const QString& chiave)
{
    const QString xml = Descrizione(chiave);
    if (xml.isEmpty())
        emit Risposta(richiesta, modContratto::Rifiutato, QStringLiteral("%1: oggetto %2 sconosciuto").arg(mChiave, chiave), {});
    else
        emit Risposta(richiesta, modContratto::Ok, xml, {});
}
