#include "RefUsoSistema.h"

#include "PxContratto.h"

#include <QFile>

#include <algorithm>

namespace {

QByteArray LeggiFile(const char* percorso)
{
    QFile f(QString::fromLatin1(percorso));
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

quint64 ValoreKb(const QByteArray& meminfo, const QByteArray& chiave)
{
    for (const QByteArray& riga : meminfo.split('\n')) {
        if (!riga.startsWith(chiave) || riga.size() <= chiave.size() || riga[chiave.size()] != ':')
            continue;
        const QByteArray valore = riga.mid(chiave.size() + 1).trimmed();
        const qsizetype spazio = valore.indexOf(' ');
        return valore.left(spazio < 0 ? valore.size() : spazio).toULongLong();
    }
    return 0;
}

qint32 Percento(quint64 parte, quint64 totale)
{
    return totale == 0 ? 0 : static_cast<qint32>(std::min<quint64>(100, (parte * 100 + totale / 2) / totale));
}

} // namespace

RefUsoSistema::RefUsoSistema(QObject* parent) : QObject(parent), mTimer(this)
{
    connect(&mTimer, &QTimer::timeout, this, &RefUsoSistema::Campiona);
}

RefUsoSistema::Campione RefUsoSistema::Leggi(const QByteArray& stat, const QByteArray& meminfo,
                                             std::optional<std::pair<quint64, quint64>>& precedente)
{
    Campione c;
    // "cpu  user nice system idle iowait irq softirq steal ..."
    const qsizetype fineRiga = stat.indexOf('\n');
    const QByteArray riga = stat.left(fineRiga < 0 ? stat.size() : fineRiga).simplified();
    const QList<QByteArray> campi = riga.split(' ');
    if (campi.size() >= 5 && campi[0] == "cpu") {
        quint64 totale = 0, inattivo = 0;
        for (qsizetype i = 1; i < campi.size() && i <= 8; ++i) {
            const quint64 v = campi[i].toULongLong();
            totale += v;
            if (i == 4 || i == 5) // idle, iowait
                inattivo += v;
        }
        const quint64 occupato = totale - inattivo;
        if (precedente && totale > precedente->second && occupato >= precedente->first)
            c.Cpu = Percento(occupato - precedente->first, totale - precedente->second);
        precedente = std::make_pair(occupato, totale);
    }
    const quint64 totaleKb = ValoreKb(meminfo, "MemTotal");
    const quint64 disponibileKb = std::min(totaleKb, ValoreKb(meminfo, "MemAvailable"));
    const quint64 swapKb = ValoreKb(meminfo, "SwapTotal");
    const quint64 swapLiberoKb = std::min(swapKb, ValoreKb(meminfo, "SwapFree"));
    c.FisicaUsata = Percento(totaleKb - disponibileKb, totaleKb);
    c.FisicaDisponibileMb = static_cast<qint32>(disponibileKb / 1024);
    const quint64 virtualeKb = totaleKb + swapKb;
    const quint64 virtualeLiberoKb = disponibileKb + swapLiberoKb;
    c.VirtualeUsata = Percento(virtualeKb - virtualeLiberoKb, virtualeKb);
    c.VirtualeDisponibileMb = static_cast<qint32>(virtualeLiberoKb / 1024);
    return c;
}

void RefUsoSistema::Avvia(quint64 richiesta, qint32 millisecondi)
{
    AvviaCampionamento(millisecondi);
    emit Risposta(richiesta, modContratto::Ok, {}, {});
}

void RefUsoSistema::Ferma(quint64 richiesta)
{
    FermaCampionamento();
    emit Risposta(richiesta, modContratto::Ok, {}, {});
}

void RefUsoSistema::AvviaCampionamento(qint32 millisecondi)
{
    Leggi(LeggiFile("/proc/stat"), {}, mPrecedente);
    mTimer.start(std::max(100, millisecondi));
}

void RefUsoSistema::FermaCampionamento()
{
    mTimer.stop();
    mPrecedente.reset();
}

void RefUsoSistema::Campiona()
{
    const Campione c = Leggi(LeggiFile("/proc/stat"), LeggiFile("/proc/meminfo"), mPrecedente);
    emit Aggiornamento(c.Cpu, c.FisicaUsata, c.FisicaDisponibileMb, c.VirtualeUsata, c.VirtualeDisponibileMb);
}
