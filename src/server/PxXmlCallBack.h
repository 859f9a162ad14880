#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

// The small callback object a view hands to a folder or catalogue when it asks for a
// listing. The answer comes later, from the event loop: XmlCallBack with the whole text
// (UTF-8 XML), or Errore when the server refused or could not be reached. Destroying the
// callback first cancels the request.
class PxXmlCallBack : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void XmlCallBack(const QByteArray& xml);
    void Errore(qint32 esito, const QString& motivo);
};

#include "PxContratto.h"

#include <functional>

// The answer handler that hands a listing to `callback` (XmlCallBack, or Errore).
std::function<void(const PxRisposta&)> ConsegnaXml(PxXmlCallBack* callback);
