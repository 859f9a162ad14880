#pragma once

#include <QByteArray>
#include <QCursor>
#include <QIcon>
#include <QImage>
#include <QString>

// Texts by number and the resources of a resource module.
//
// Texts always come from the program's own Italian string table. The other resources
// (data, text, pictures, icons, cursors, sounds) come from the module named by DllName:
// by default the program itself, whose compiled-in resources stand under ":/modulo";
// otherwise a compiled resource file (.rcc) laid out the same way, one folder per
// resource type holding files named by id ("CUSTOM/101", "ICON/200.svg").
class PxConsoleResDll
{
public:
    PxConsoleResDll();
    ~PxConsoleResDll();
    PxConsoleResDll(const PxConsoleResDll&) = delete;
    PxConsoleResDll& operator=(const PxConsoleResDll&) = delete;

    // Text of string `id`; "" for 1400-1499, 6000-6999 and ids the table lacks.
    QString LoadDllString(qint32 id) const;
    // UTF-8 text of the module's "TEXT" resource `id`; raises PxErrore when missing.
    QString LoadDllText(qint32 id) const;
    // Raw bytes of the module's resource `id` of `tipo`; raises PxErrore when missing.
    QByteArray LoadDllData(qint32 id, const QString& tipo) const;
    // Writes the bytes of resource `id` of `tipo` to `file`, deleting any file of that name first.
    void SaveDllData(qint32 id, const QString& tipo, const QString& file) const;
    QImage LoadDllPicture(qint32 id) const;
    QIcon LoadDllIcon(qint32 id) const;
    QCursor LoadDllCursor(qint32 id) const;
    QImage LoadDllBitmap(qint32 id) const;
    // Plays the module's "WAVE" resource `id`: there is no sound output here, so once the
    // resource is found the call only reports that it cannot play; a missing one raises.
    bool PlayWave(qint32 id) const;
    // "RES://" + DllName + "/" + tipo (trimmed) + "/" + id.
    QString GetDllURL(const QString& tipo, qint32 id) const;

    QString DllName() const { return mDllName; }
    // Frees the module loaded before and loads `nome`; raises "Error in loading DLL: " + nome
    // when it cannot be loaded, and then holds no module.
    void SetDllName(const QString& nome);
    // Non-zero while a module is loaded; a new number for each load.
    quintptr Handle() const { return mHandle; }

    // Path of the running program, the default module.
    static QString ProgrammaCorrente();

private:
    QString Percorso(qint32 id, const QString& tipo) const;
    QString PercorsoObbligatorio(qint32 id, const QString& tipo, const char* prefissoErrore) const;
    void Libera();

    QString mDllName;
    QString mRadice; // ":/modulo" for the program itself, the mapped root of an .rcc otherwise
    bool mEsterno = false;
    quintptr mHandle = 0;
};
