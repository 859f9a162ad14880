#include "PxImpostazioni.h"

#include "TabellaTesti.h"

#include <QSettings>

namespace {

const QString ControlOption = QStringLiteral("ControlOption");

// Each option once: its name, whether it lies in the list subkey, and where it lives.
struct Opzione
{
    const char* Nome;
    bool Sottochiave;
    bool PxImpostazioni::*Booleano;
    int PxImpostazioni::*Intero;
    bool SoloLettura;
};

constexpr Opzione Opzioni[] = {
    {"RealTimeUpdateContenents", false, &PxImpostazioni::RealTimeUpdateContenents, nullptr, false},
    {"VisualTheme", false, nullptr, &PxImpostazioni::VisualTheme, false},
    {"IconSize", false, nullptr, &PxImpostazioni::IconSize, false},
    {"ShowTextBelowIcons", false, &PxImpostazioni::ShowTextBelowIcons, nullptr, false},
    {"AutoColumnSizing", true, &PxImpostazioni::AutoColumnSizing, nullptr, false},
    {"CollapseGroupRow", true, &PxImpostazioni::CollapseGroupRow, nullptr, false},
    {"ColumnBestFit", true, &PxImpostazioni::ColumnBestFit, nullptr, false},
    {"ColumnBestFitMode", true, nullptr, &PxImpostazioni::ColumnBestFitMode, true},
    {"ColumnBestFitContinuous", true, &PxImpostazioni::ColumnBestFitContinuous, nullptr, false},
    {"FullColumnScrolling", true, &PxImpostazioni::FullColumnScrolling, nullptr, false},
    {"GroupRowExpandCollapseColumnBestFit", true, &PxImpostazioni::GroupRowExpandCollapseColumnBestFit, nullptr, false},
    {"ShowProgressBar", true, &PxImpostazioni::ShowProgressBar, nullptr, false},
    {"AlternateRow", true, &PxImpostazioni::AlternateRow, nullptr, false},
};

QString Percorso(const Opzione& o)
{
    const QString nome = QString::fromLatin1(o.Nome);
    return o.Sottochiave ? ControlOption + u'/' + nome : nome;
}

} // namespace

void PxImpostazioni::Carica(QSettings& registro)
{
    for (const Opzione& o : Opzioni) {
        const QVariant v = registro.value(Percorso(o));
        if (!v.isValid())
            continue;
        bool ok = false;
        const int n = v.toInt(&ok);
        if (o.Intero) {
            if (ok)
                this->*o.Intero = n;
        } else if (ok) {
            this->*o.Booleano = n != 0;
        } else if (const QString t = v.toString().toLower(); t == u"true" || t == u"false") {
            this->*o.Booleano = t == u"true";
        }
    }
}

void PxImpostazioni::Salva(QSettings& registro) const
{
    for (const Opzione& o : Opzioni) {
        if (o.SoloLettura)
            continue;
        registro.setValue(Percorso(o), o.Intero ? this->*o.Intero : (this->*o.Booleano ? -1 : 0));
    }
    registro.sync();
}

std::unique_ptr<QSettings> PxImpostazioni::ApriRegistro()
{
    return std::make_unique<QSettings>(QSettings::NativeFormat, QSettings::UserScope,
                                       QString::fromLatin1(Produttore), TabellaTesti::Italiano().Testo(1));
}

namespace {
QString ChiaveGeometria(const QString& finestra) { return finestra + QStringLiteral("/Geometria"); }
QString ChiavePannelli(const QString& finestra) { return finestra + QStringLiteral("/Pannelli"); }
QString ChiaveNodo(const QString& finestra) { return finestra + QStringLiteral("/Nodo"); }
} // namespace

PxImpostazioni::Disposizione PxImpostazioni::CaricaDisposizione(const QString& finestra)
{
    const auto registro = ApriRegistro();
    return {registro->value(ChiaveGeometria(finestra)).toByteArray(), registro->value(ChiavePannelli(finestra)).toByteArray(),
            registro->value(ChiaveNodo(finestra)).toString()};
}

void PxImpostazioni::SalvaDisposizione(const QString& finestra, const Disposizione& disposizione)
{
    const auto registro = ApriRegistro();
    registro->setValue(ChiaveGeometria(finestra), disposizione.Geometria);
    registro->setValue(ChiavePannelli(finestra), disposizione.Pannelli);
    registro->setValue(ChiaveNodo(finestra), disposizione.Nodo);
    registro->sync();
}
