#include "PxConsoleResDll.h"

#include "PxErrore.h"
#include "TabellaTesti.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPixmap>
#include <QResource>

#include <atomic>

using namespace Qt::StringLiterals;

namespace {

const QString RadiceProgramma = QStringLiteral(":/modulo");
const QString MappaEsterna = QStringLiteral("/plxmodulo");

quintptr NuovoHandle()
{
    static std::atomic<quintptr> prossimo{1};
    return prossimo++;
}

[[noreturn]] void Solleva(const QString& testo)
{
    throw PxErrore(modErrori::ErrRisorsa, QStringLiteral("PxConsoleResDll"), testo);
}

} // namespace

PxConsoleResDll::PxConsoleResDll()
{
    SetDllName(ProgrammaCorrente());
}

PxConsoleResDll::~PxConsoleResDll()
{
    Libera();
}

QString PxConsoleResDll::ProgrammaCorrente()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationFilePath();
    return QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
}

QString PxConsoleResDll::LoadDllString(qint32 id) const
{
    if ((id >= 1400 && id < 1500) || (id >= 6000 && id < 7000))
        return QString(u""_s);
    const QString testo = TabellaTesti::Italiano().Testo(id);
    return testo.isNull() ? QString(u""_s) : testo;
}

QString PxConsoleResDll::Percorso(qint32 id, const QString& tipo) const
{
    if (!mHandle)
        return {};
    const QString cartella = mRadice + u'/' + tipo.trimmed().toUpper();
    const QString esatto = cartella + u'/' + QString::number(id);
    if (QFileInfo::exists(esatto))
        return esatto;
    // Pictures keep their format's extension ("ICON/200.svg").
    const QStringList trovati = QDir(cartella).entryList({QString::number(id) + u".*"_s}, QDir::Files);
    return trovati.isEmpty() ? QString() : cartella + u'/' + trovati.first();
}

QString PxConsoleResDll::PercorsoObbligatorio(qint32 id, const QString& tipo, const char* prefissoErrore) const
{
    const QString percorso = Percorso(id, tipo);
    if (percorso.isEmpty())
        Solleva(QString::fromLatin1(prefissoErrore) + QString::number(id) + u" not found."_s);
    return percorso;
}

QByteArray PxConsoleResDll::LoadDllData(qint32 id, const QString& tipo) const
{
    QFile f(PercorsoObbligatorio(id, tipo, "Custom resource with Identifier "));
    if (!f.open(QIODevice::ReadOnly))
        Solleva(u"Error loading from file"_s);
    return f.readAll();
}

QString PxConsoleResDll::LoadDllText(qint32 id) const
{
    return QString::fromUtf8(LoadDllData(id, u"TEXT"_s));
}

void PxConsoleResDll::SaveDllData(qint32 id, const QString& tipo, const QString& file) const
{
    const QString percorso = PercorsoObbligatorio(id, tipo, "Resource with Identifier ");
    QFile sorgente(percorso);
    if (!sorgente.open(QIODevice::ReadOnly))
        Solleva(u"Error loading from file"_s);
    const QByteArray dati = sorgente.readAll();
    if (QFileInfo::exists(file) && !QFile::remove(file))
        Solleva(u"Cannot delete "_s + file);
    QFile destinazione(file);
    if (!destinazione.open(QIODevice::WriteOnly) || destinazione.write(dati) != dati.size())
        Solleva(u"Cannot write "_s + file);
}

QImage PxConsoleResDll::LoadDllPicture(qint32 id) const
{
    return QImage(PercorsoObbligatorio(id, u"PICTURE"_s, "Resource with Identifier "));
}

QImage PxConsoleResDll::LoadDllBitmap(qint32 id) const
{
    return QImage(PercorsoObbligatorio(id, u"BITMAP"_s, "Resource with Identifier "));
}

QIcon PxConsoleResDll::LoadDllIcon(qint32 id) const
{
    return QIcon(PercorsoObbligatorio(id, u"ICON"_s, "Resource with Identifier "));
}

QCursor PxConsoleResDll::LoadDllCursor(qint32 id) const
{
    const QPixmap immagine(PercorsoObbligatorio(id, u"CURSOR"_s, "Resource with Identifier "));
    return QCursor(immagine);
}

bool PxConsoleResDll::PlayWave(qint32 id) const
{
    PercorsoObbligatorio(id, u"WAVE"_s, "Resource with Identifier ");
    return false;
}

QString PxConsoleResDll::GetDllURL(const QString& tipo, qint32 id) const
{
    return u"RES://"_s + mDllName + u'/' + tipo.trimmed() + u'/' + QString::number(id);
}

void PxConsoleResDll::Libera()
{
    if (mHandle && mEsterno)
        QResource::unregisterResource(mDllName, MappaEsterna);
    mHandle = 0;
    mEsterno = false;
    mRadice.clear();
}

void PxConsoleResDll::SetDllName(const QString& nome)
{
    Libera();
    mDllName = nome;
    if (!nome.isEmpty() && QFileInfo(nome) == QFileInfo(ProgrammaCorrente())) {
        mRadice = RadiceProgramma;
        mHandle = NuovoHandle();
        return;
    }
    if (nome.isEmpty() || !QResource::registerResource(nome, MappaEsterna))
        Solleva(u"Error in loading DLL: "_s + nome);
    mRadice = u":"_s + MappaEsterna;
    mEsterno = true;
    mHandle = NuovoHandle();
}
