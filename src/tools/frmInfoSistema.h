#pragma once

#include <QWidget>

#include <array>

class PxContesto;
class QLabel;

// The server machine's load: processor use, physical and virtual memory, each as a line of
// text and a running graph of its last 49 samples (a vertical bar per sample). The samples
// come from the server's system-usage component through the boundary.
class frmInfoSistema : public QWidget
{
    Q_OBJECT

public:
    explicit frmInfoSistema(PxContesto& contesto, QWidget* parent = nullptr);

    // The three graph switches, from "PlxConfigurazione.ini" [Console].
    bool GraficoCpu = true;
    bool GraficoMemHw = true;
    bool GraficoMemPg = true;
    bool Inizializzato() const { return mInizializzato; }

    // Reads the settings, clears the histories and starts the sampling.
    void Inizializza();
    void Termina();

    static constexpr int Campioni = 49;
    using Storia = std::array<qint32, Campioni>;
    // The histories, in the order CPU, physical memory, virtual memory.
    const Storia& Storico(int grafico) const { return mStorie[static_cast<size_t>(grafico)]; }
    QLabel* Etichetta(int grafico) const { return mEtichette[static_cast<size_t>(grafico)]; }
    // How many bars the last DisegnaGrafico drew, per graph.
    int Barre(int grafico) const;

    void mobjUsoSistema_Aggiornamento(qint32 usoCpu, qint32 memoriaFisicaUsata, qint32 memoriaFisicaDisponibileMb,
                                      qint32 memoriaVirtualeUsata, qint32 memoriaVirtualeDisponibileMb);
    void DisegnaGrafico();

private:
    bool Acceso(int grafico) const { return grafico == 0 ? GraficoCpu : grafico == 1 ? GraficoMemHw : GraficoMemPg; }

    PxContesto& mContesto;
    std::array<Storia, 3> mStorie{};
    std::array<QLabel*, 3> mEtichette{};
    std::array<QWidget*, 3> mGrafici{};
    bool mInizializzato = false;
};
