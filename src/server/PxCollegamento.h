#pragma once

#include <QObject>
#include <QString>

#include <functional>

// How the console reaches the server's published objects. A transport hands out, for a
// name of the contract, the object that carries that name's signals and slots: the server's
// own object (same thread or another one: Qt queues across threads) or a replica of it in
// another process. The console-side classes (PxSrvServer and its parts) bind to it by the
// contract's signatures, so they work the same over any transport.
class PxCollegamento : public QObject
{
    Q_OBJECT

public:
    using Pronta = std::function<void(QObject* sorgente)>;

    using QObject::QObject;

    // Calls `pronta` with the object named `nome` once it can be used (nullptr: the server
    // has no such object); dropped if `contesto` is destroyed first. It may be called
    // before this returns.
    virtual void Acquisisci(const QString& nome, QObject* contesto, Pronta pronta) = 0;
    // Whether paths the server gives can be read from here (same machine, same files).
    virtual bool FileLocali() const = 0;
    // Drops every object it handed out and reaches the server anew (objects are then acquired
    // again); false when this transport cannot lose its server (one in this process).
    virtual bool Ricollega() { return false; }
    virtual bool Ricollegabile() const { return false; }

signals:
    // The connection to the server was lost: pending requests fail, notices stop.
    void Interrotto(const QString& motivo);
};

// Objects of a server in this process, found by name: the transport of the embedded server.
class PxCollegamentoDiretto : public PxCollegamento
{
    Q_OBJECT

public:
    using Trova = std::function<QObject*(const QString& nome)>;

    // `fileLocali` false: the console behaves as one that cannot read the server's files
    // (a server on another machine), though it can.
    explicit PxCollegamentoDiretto(Trova trova, QObject* parent = nullptr, bool fileLocali = true)
        : PxCollegamento(parent), mTrova(std::move(trova)), mFileLocali(fileLocali) {}

    void Acquisisci(const QString& nome, QObject* contesto, Pronta pronta) override;
    bool FileLocali() const override { return mFileLocali; }

private:
    Trova mTrova;
    bool mFileLocali;
};
