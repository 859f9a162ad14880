#include "modPacchettoLavoro.h"

#include "PxContratto.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>

namespace modPacchettoLavoro {

namespace {

constexpr qsizetype LunghezzaFirma = sizeof(Firma) - 1;
// In publication order: the header last, since its arrival is what the service waits for.
constexpr std::array<const char*, 3> Estensioni = {".spx", ".bpx", ".hpx"};

int Indice(const char* estensione, qsizetype lunghezza)
{
    for (size_t i = 0; i < Estensioni.size(); ++i)
        if (lunghezza == 4 && std::memcmp(Estensioni[i], estensione, 4) == 0)
            return static_cast<int>(i);
    return -1;
}

bool Rifiuta(QString* errore, const QString& motivo)
{
    if (errore)
        *errore = motivo;
    return false;
}

bool Valido(const std::vector<modLavoro::File>& file, qint64 totale, QString* errore)
{
    std::array<bool, 3> visti{};
    for (const modLavoro::File& f : file) {
        const int i = f.Estensione ? Indice(f.Estensione, static_cast<qsizetype>(std::strlen(f.Estensione))) : -1;
        if (i < 0)
            return Rifiuta(errore, QStringLiteral("estensione non ammessa: %1").arg(QString::fromLatin1(f.Estensione)));
        if (visti[static_cast<size_t>(i)])
            return Rifiuta(errore, QStringLiteral("file %1 ripetuto").arg(QString::fromLatin1(f.Estensione)));
        visti[static_cast<size_t>(i)] = true;
    }
    if (!visti[1] || !visti[2])
        return Rifiuta(errore, QStringLiteral("un lavoro ha un'intestazione (.hpx) e un corpo (.bpx)"));
    if (totale > modContratto::MassimoLavoro)
        return Rifiuta(errore, QStringLiteral("lavoro di %1 byte, oltre il massimo di %2").arg(totale).arg(modContratto::MassimoLavoro));
    return true;
}

} // namespace

QByteArray Componi(const std::vector<modLavoro::File>& file)
{
    qint64 totale = 0;
    for (const modLavoro::File& f : file)
        totale += f.Dati.size();
    if (!Valido(file, totale, nullptr))
        return {};
    QByteArray dati;
    dati.reserve(static_cast<qsizetype>(LunghezzaFirma + 2 + 8 * static_cast<qint64>(file.size()) + totale));
    dati.append(Firma, LunghezzaFirma);
    dati.append(static_cast<char>(Versione));
    dati.append(static_cast<char>(file.size()));
    for (const modLavoro::File& f : file) {
        dati.append(f.Estensione, 4);
        char lunghezza[4];
        qToBigEndian(static_cast<quint32>(f.Dati.size()), lunghezza);
        dati.append(lunghezza, 4);
        dati.append(f.Dati);
    }
    return dati;
}

std::optional<std::vector<modLavoro::File>> Leggi(const QByteArray& dati, QString* errore)
{
    if (dati.size() > modContratto::MassimoLavoro + LunghezzaFirma + 2 + 3 * 8) {
        Rifiuta(errore, QStringLiteral("lavoro di %1 byte, oltre il massimo di %2").arg(dati.size()).arg(modContratto::MassimoLavoro));
        return std::nullopt;
    }
    if (dati.size() < LunghezzaFirma + 2 || std::memcmp(dati.constData(), Firma, LunghezzaFirma) != 0) {
        Rifiuta(errore, QStringLiteral("non è un lavoro"));
        return std::nullopt;
    }
    const auto versione = static_cast<quint8>(dati[LunghezzaFirma]);
    if (versione != Versione) {
        Rifiuta(errore, QStringLiteral("versione %1 del lavoro non conosciuta").arg(versione));
        return std::nullopt;
    }
    const auto quanti = static_cast<quint8>(dati[LunghezzaFirma + 1]);
    if (quanti < 2 || quanti > 3) {
        Rifiuta(errore, QStringLiteral("un lavoro ha 2 o 3 file, non %1").arg(quanti));
        return std::nullopt;
    }
    std::vector<modLavoro::File> file;
    qsizetype pos = LunghezzaFirma + 2;
    qint64 totale = 0;
    for (int n = 0; n < quanti; ++n) {
        if (dati.size() - pos < 8) {
            Rifiuta(errore, QStringLiteral("lavoro troncato"));
            return std::nullopt;
        }
        const int i = Indice(dati.constData() + pos, 4);
        if (i < 0) {
            Rifiuta(errore, QStringLiteral("estensione non ammessa: %1").arg(QString::fromLatin1(dati.mid(pos, 4).toHex())));
            return std::nullopt;
        }
        const quint32 lunghezza = qFromBigEndian<quint32>(dati.constData() + pos + 4);
        pos += 8;
        if (static_cast<quint64>(lunghezza) > static_cast<quint64>(dati.size() - pos)) {
            Rifiuta(errore, QStringLiteral("lavoro troncato"));
            return std::nullopt;
        }
        file.push_back({Estensioni[static_cast<size_t>(i)], dati.mid(pos, static_cast<qsizetype>(lunghezza))});
        pos += static_cast<qsizetype>(lunghezza);
        totale += lunghezza;
    }
    if (pos != dati.size()) {
        Rifiuta(errore, QStringLiteral("%1 byte dopo l'ultimo file").arg(dati.size() - pos));
        return std::nullopt;
    }
    if (!Valido(file, totale, errore))
        return std::nullopt;
    std::sort(file.begin(), file.end(), [](const modLavoro::File& a, const modLavoro::File& b) {
        return Indice(a.Estensione, 4) < Indice(b.Estensione, 4);
    });
    return file;
}

} // namespace modPacchettoLavoro
