#pragma once

#include "PxVistaTesto.h"

#include <QFutureWatcher>
#include <QWidget>

class PxContesto;
class QLabel;
namespace pugi { class xml_node; }

// The body viewer: the selected document's body as it goes to the printer (its first MiB), in a
// fixed-pitch 9 pt font, control sequences and server commands in magenta, with the caret's line
// and column in the status bar. The file is read through the server and converted off the interface
// thread; a newer document replaces a reading or conversion still under way.
class frmCorpoDocumento : public QWidget
{
    Q_OBJECT

public:
    explicit frmCorpoDocumento(PxContesto& contesto, QWidget* parent = nullptr);
    ~frmCorpoDocumento() override;

    // Shows the body of the document whose properties are `proprieta` (FileCorpo/{Percorso, Nome},
    // CatalogoSorgente); a document without a body file empties the box.
    void CaricaCorpo(const pugi::xml_node& proprieta);
    void PulisciCorpo();

    // The body file on display ("" when none).
    const QString& File() const { return mFile; }
    PxVistaTesto* Testo() const { return mrtfCopo; }
    // Shows a converted body (the conversion's last step, on the interface thread).
    void Mostra(PxVistaTesto::Contenuto contenuto);

signals:
    // A body has been shown (or the box emptied).
    void Caricato();

private:
    void AggiornaPosizione();

    PxContesto& mContesto;
    PxVistaTesto* mrtfCopo;
    QLabel* mRiga;
    QLabel* mColonna;
    QString mFile;
    QByteArray mCatalogo;  // the catalogue's XML text, to tell a real change from a refresh
    quint64 mGenerazione = 0;
};
