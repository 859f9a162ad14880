#pragma once

#include <QWidget>

class PxContesto;
class QTreeWidget;
namespace pugi { class xml_node; }

// The script viewer: the document's XML script as a tree that opens and closes, element names,
// attributes and texts each in their colour. With no script it shows the blank page. The script
// is read off the interface thread; it is also left in the temporary folder as "~PlxDoc.xml".
class frmScriptDocumento : public QWidget
{
    Q_OBJECT

public:
    explicit frmScriptDocumento(PxContesto& contesto, QWidget* parent = nullptr);

    // Shows the script of the document whose properties are `proprieta` (FileScript/{Percorso, Nome}).
    void CaricaScript(const pugi::xml_node& proprieta);
    void PulisciScript();

    const QString& File() const { return mFile; }
    QTreeWidget* Albero() const { return mwbrXml; }
    // Where the work files go (the system's temporary folder unless a test says otherwise).
    static QString CartellaLavoro();
    // A script larger than this is not shown.
    static constexpr qint64 Massimo = 16 * 1024 * 1024;

signals:
    void Caricato();

private:
    void Mostra(const QByteArray& xml);

    PxContesto& mContesto;
    QTreeWidget* mwbrXml;
    QString mFile;
    quint64 mGenerazione = 0;
};
