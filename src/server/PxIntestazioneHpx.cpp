#include "PxIntestazioneHpx.h"
#include "modXml.h"

#include <pugixml.hpp>

#include <sstream>

namespace {

const char* NomeTipo(PxIntestazioneHpx::Tipo t)
{
    switch (t) {
    case PxIntestazioneHpx::Tipo::Intero: return "Intero";
    case PxIntestazioneHpx::Tipo::Decimale: return "Decimale";
    case PxIntestazioneHpx::Tipo::Data: return "Data";
    default: return "Testo";
    }
}

bool TipoDaNome(const char* nome, PxIntestazioneHpx::Tipo& t)
{
    const QLatin1StringView n(nome);
    if (n == QLatin1StringView("Testo"))
        t = PxIntestazioneHpx::Tipo::Testo;
    else if (n == QLatin1StringView("Intero"))
        t = PxIntestazioneHpx::Tipo::Intero;
    else if (n == QLatin1StringView("Decimale"))
        t = PxIntestazioneHpx::Tipo::Decimale;
    else if (n == QLatin1StringView("Data"))
        t = PxIntestazioneHpx::Tipo::Data;
    else
        return false;
    return true;
}

QString TestoDato(const PxIntestazioneHpx::Valore& v)
{
    switch (v.Genere) {
    case PxIntestazioneHpx::Tipo::Data: return v.Dato.toDateTime().toString(Qt::ISODate);
    case PxIntestazioneHpx::Tipo::Decimale: return QString::number(v.Dato.toDouble(), 'g', 17);
    default: return v.Dato.toString();
    }
}

} // namespace

void PxIntestazioneHpx::Aggiungi(const QString& sezione, const QString& nome, Tipo genere, QVariant dato)
{
    mValori.append({sezione, nome, genere, std::move(dato)});
}

void PxIntestazioneHpx::ScriviTesto(const QString& s, const QString& n, const QString& v) { Aggiungi(s, n, Tipo::Testo, v); }
void PxIntestazioneHpx::ScriviIntero(const QString& s, const QString& n, qint64 v) { Aggiungi(s, n, Tipo::Intero, v); }
void PxIntestazioneHpx::ScriviDecimale(const QString& s, const QString& n, double v) { Aggiungi(s, n, Tipo::Decimale, v); }
void PxIntestazioneHpx::ScriviData(const QString& s, const QString& n, const QDateTime& v) { Aggiungi(s, n, Tipo::Data, v); }

QVariant PxIntestazioneHpx::Leggi(const QString& sezione, const QString& nome) const
{
    for (auto it = mValori.crbegin(); it != mValori.crend(); ++it)
        if (it->Nome == nome && it->Sezione.compare(sezione, Qt::CaseInsensitive) == 0)
            return it->Dato;
    return {};
}

QString PxIntestazioneHpx::Testo(const QString& sezione, const QString& nome, const QString& predefinito) const
{
    const QVariant v = Leggi(sezione, nome);
    return v.isValid() ? v.toString() : predefinito;
}

qint64 PxIntestazioneHpx::Intero(const QString& sezione, const QString& nome, qint64 predefinito) const
{
    bool ok = false;
    const qint64 n = Leggi(sezione, nome).toLongLong(&ok);
    return ok ? n : predefinito;
}

QDateTime PxIntestazioneHpx::Data(const QString& sezione, const QString& nome) const
{
    return Leggi(sezione, nome).toDateTime();
}

QByteArray PxIntestazioneHpx::Serializza() const
{
    pugi::xml_document doc;
    modXml::Dichiara(doc);
    pugi::xml_node radice = doc.append_child("HPX");
    radice.append_attribute("Versione") = Versione;
    QString sezioneCorrente;
    pugi::xml_node padre = radice;
    for (const Valore& v : mValori) {
        if (v.Sezione.isEmpty()) {
            padre = radice;
        } else if (v.Sezione != sezioneCorrente || padre == radice) {
            padre = radice.find_child_by_attribute("Sezione", "Nome", v.Sezione.toUtf8().constData());
            if (!padre) {
                padre = radice.append_child("Sezione");
                padre.append_attribute("Nome") = v.Sezione.toUtf8().constData();
            }
        }
        sezioneCorrente = v.Sezione;
        pugi::xml_node n = padre.append_child("Valore");
        n.append_attribute("Nome") = v.Nome.toUtf8().constData();
        n.append_attribute("Tipo") = NomeTipo(v.Genere);
        n.text().set(TestoDato(v).toUtf8().constData());
    }
    std::ostringstream out;
    doc.save(out, "  ", pugi::format_indent, pugi::encoding_utf8);
    return QByteArray::fromStdString(out.str());
}

bool PxIntestazioneHpx::Analizza(const QByteArray& testo, QString* errore)
{
    const auto fallisci = [errore](const QString& motivo) {
        if (errore)
            *errore = motivo;
        return false;
    };
    mValori.clear();
    if (testo.size() > MassimoTesto)
        return fallisci(QStringLiteral("intestazione di %1 byte, oltre il massimo di %2").arg(testo.size()).arg(MassimoTesto));
    pugi::xml_document doc;
    const pugi::xml_parse_result esito = doc.load_buffer(testo.constData(), static_cast<size_t>(testo.size()));
    if (!esito)
        return fallisci(QStringLiteral("XML non valido: %1 (posizione %2)")
                            .arg(QString::fromUtf8(esito.description()))
                            .arg(esito.offset));
    const pugi::xml_node radice = doc.document_element();
    if (QLatin1StringView(radice.name()) != QLatin1StringView("HPX"))
        return fallisci(QStringLiteral("radice \"%1\" invece di \"HPX\"").arg(QString::fromUtf8(radice.name())));
    const QLatin1StringView versione(radice.attribute("Versione").value());
    if (versione.isEmpty() || !versione.startsWith(QLatin1StringView("2.")))
        return fallisci(QStringLiteral("versione \"%1\" non supportata").arg(versione));
    const auto leggiValore = [&](const pugi::xml_node& n, const QString& sezione) {
        Tipo t = Tipo::Testo;
        const QString nome = QString::fromUtf8(n.attribute("Nome").value());
        if (nome.isEmpty() || !TipoDaNome(n.attribute("Tipo").as_string("Testo"), t))
            return false;
        const QString valore = QString::fromUtf8(n.child_value());
        if (valore.size() > MassimoValore)
            return false;
        QVariant dato;
        bool ok = true;
        switch (t) {
        case Tipo::Intero: dato = valore.trimmed().toLongLong(&ok); break;
        case Tipo::Decimale: dato = valore.trimmed().toDouble(&ok); break;
        case Tipo::Data: {
            const QDateTime d = QDateTime::fromString(valore.trimmed(), Qt::ISODate);
            ok = d.isValid();
            dato = d;
            break;
        }
        default: dato = valore; break;
        }
        if (!ok)
            return false;
        Aggiungi(sezione, nome, t, dato);
        return true;
    };
    for (const pugi::xml_node n : radice.children()) {
        if (n.type() != pugi::node_element)
            continue;
        const QLatin1StringView nome(n.name());
        if (nome == QLatin1StringView("Valore")) {
            if (!leggiValore(n, {}))
                return fallisci(QStringLiteral("valore \"%1\" non valido").arg(QString::fromUtf8(n.attribute("Nome").value())));
        } else if (nome == QLatin1StringView("Sezione")) {
            const QString sezione = QString::fromUtf8(n.attribute("Nome").value());
            if (sezione.isEmpty())
                return fallisci(QStringLiteral("sezione senza nome"));
            for (const pugi::xml_node v : n.children("Valore"))
                if (!leggiValore(v, sezione))
                    return fallisci(QStringLiteral("valore \"%1\" della sezione %2 non valido")
                                        .arg(QString::fromUtf8(v.attribute("Nome").value()), sezione));
        }
    }
    if (Intero({}, QStringLiteral("Tipo"), -1) < 0)
        return fallisci(QStringLiteral("manca il tipo del documento"));
    return true;
}
