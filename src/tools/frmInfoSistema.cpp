#include "frmInfoSistema.h"

#include "PxConsoleResDll.h"
#include "PxContesto.h"
#include "PxLettoreIni.h"
#include "PxSrvServer.h"
#include "PxSrvUsoSistema.h"
#include "modTraccia.h"

#include <QDir>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>

namespace {

// One graph: a bar per sample from the bottom edge, samples 0 to 47 (the newest, at 48, is
// drawn once it has moved one place left). Heights are percentages of the picture's scale;
// the stored samples carry +6, so 100 % ends above the top edge.
class Grafico : public QWidget
{
public:
    Grafico(const frmInfoSistema::Storia& storia, const bool& acceso, QColor colore)
        : mStoria(storia), mAcceso(acceso), mColore(colore)
    {
        setMinimumSize(98, 40);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    int Barre = 0;

protected:
    void paintEvent(QPaintEvent*) override
    {
        Barre = 0;
        if (!mAcceso)
            return;
        QPainter p(this);
        p.fillRect(rect(), palette().base());
        constexpr int H = 100;
        p.setWindow(0, 0, frmInfoSistema::Campioni, H);
        QPen penna(mColore);
        penna.setCosmetic(true);
        penna.setWidth(qMax(1, width() / frmInfoSistema::Campioni));
        p.setPen(penna);
        for (int i = 0; i < frmInfoSistema::Campioni - 1; ++i) {
            const auto y = static_cast<qint16>(qRound(H - H * mStoria[static_cast<size_t>(i)] / 100.0));
            p.drawLine(QLineF(i + 0.5, H, i + 0.5, y));
            ++Barre;
        }
    }

private:
    const frmInfoSistema::Storia& mStoria;
    const bool& mAcceso;
    QColor mColore;
};

} // namespace

frmInfoSistema::frmInfoSistema(PxContesto& contesto, QWidget* parent) : QWidget(parent), mContesto(contesto)
{
    setObjectName(QStringLiteral("frmInfoSistema"));
    auto* griglia = new QGridLayout(this);
    const bool* acceso[3] = {&GraficoCpu, &GraficoMemHw, &GraficoMemPg};
    const QColor colori[3] = {QColor(0x1f, 0x77, 0xb4), QColor(0x2c, 0xa0, 0x2c), QColor(0xd6, 0x7a, 0x0c)};
    for (int g = 0; g < 3; ++g) {
        mEtichette[static_cast<size_t>(g)] = new QLabel;
        mGrafici[static_cast<size_t>(g)] = new Grafico(mStorie[static_cast<size_t>(g)], *acceso[g], colori[g]);
        griglia->addWidget(mEtichette[static_cast<size_t>(g)], 0, g);
        griglia->addWidget(mGrafici[static_cast<size_t>(g)], 1, g);
    }
    griglia->setRowStretch(1, 1);
}

int frmInfoSistema::Barre(int grafico) const { return static_cast<Grafico*>(mGrafici[static_cast<size_t>(grafico)])->Barre; }

void frmInfoSistema::Inizializza()
{
    modTraccia::Proteggi("frmInfoSistema_Inizializza", [&] {
        PxSrvServer* server = mContesto.Server();
        const PxLettoreIni ini = server ? server->Configurazione() : PxLettoreIni();
        const QString c = QStringLiteral("Console");
        GraficoCpu = ini.Booleano(c, QStringLiteral("GraficoUsoCpu"), true);
        GraficoMemHw = ini.Booleano(c, QStringLiteral("GraficoMemoriaFisica"), true);
        GraficoMemPg = ini.Booleano(c, QStringLiteral("GraficoMemoriaPaginata"), true);
        const int intervallo = qMax(100, ini.Intero(c, QStringLiteral("VelocitaAggiorNamentoGrafico"), 1000));
        for (Storia& s : mStorie)
            s.fill(0);
        for (int g = 0; g < 3; ++g)
            mGrafici[static_cast<size_t>(g)]->setVisible(Acceso(g));
        if (PxSrvUsoSistema* uso = server ? server->UsoSistema() : nullptr) {
            connect(uso, &PxSrvUsoSistema::Aggiornamento, this, &frmInfoSistema::mobjUsoSistema_Aggiornamento,
                    Qt::UniqueConnection);
            uso->Avvia(intervallo);
        }
        mInizializzato = true;
    });
}

void frmInfoSistema::Termina()
{
    if (PxSrvUsoSistema* uso = mContesto.Server() ? mContesto.Server()->UsoSistema() : nullptr) {
        disconnect(uso, nullptr, this, nullptr);
        uso->Ferma();
    }
    mInizializzato = false;
}

void frmInfoSistema::mobjUsoSistema_Aggiornamento(qint32 usoCpu, qint32 memoriaFisicaUsata, qint32 memoriaFisicaDisponibileMb,
                                                 qint32 memoriaVirtualeUsata, qint32 memoriaVirtualeDisponibileMb)
{
    modTraccia::Proteggi("mobjUsoSistema_Aggiornamento", [&] {
        const PxConsoleResDll& t = mContesto.Testi();
        const QString unita = t.LoadDllString(111); // MB
        const auto memoria = [&](int testo, qint32 disponibile, qint32 usata) {
            return t.LoadDllString(testo) + u' ' + QString::number(disponibile) + u' ' + unita + QStringLiteral(". ")
                + t.LoadDllString(121) + u' ' + QString::number(usata) + u'%';
        };
        if (GraficoCpu)
            mEtichette[0]->setText(t.LoadDllString(118) + u' ' + QString::number(usoCpu) + u'%');
        if (GraficoMemHw)
            mEtichette[1]->setText(memoria(119, memoriaFisicaDisponibileMb, memoriaFisicaUsata));
        if (GraficoMemPg)
            mEtichette[2]->setText(memoria(120, memoriaVirtualeDisponibileMb, memoriaVirtualeUsata));
        // Only a graph that is on moves; every graph takes the new sample, +6 as always.
        const qint32 nuovi[3] = {usoCpu + 6, memoriaFisicaUsata + 6, memoriaVirtualeUsata + 6};
        for (int g = 0; g < 3; ++g) {
            Storia& s = mStorie[static_cast<size_t>(g)];
            if (Acceso(g))
                std::move(s.begin() + 1, s.end(), s.begin());
            s[Campioni - 1] = nuovi[g];
        }
        DisegnaGrafico();
    });
}

void frmInfoSistema::DisegnaGrafico()
{
    for (int g = 0; g < 3; ++g) {
        auto* grafico = static_cast<Grafico*>(mGrafici[static_cast<size_t>(g)]);
        grafico->Barre = 0;
        if (Acceso(g))
            grafico->repaint();
    }
}
