#pragma once

#include <QObject>
#include <QString>

// The small callback object a view hands to a folder when it asks for a listing. The
// folder answers later, from the event loop, by raising XmlCallBack with the whole text.
class PxXmlCallBack : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void XmlCallBack(const QString& xml);
};
