#pragma once

#include <QString>
#include <QStringList>

// The selection document the console sends with a document command: <Root><ID>id</ID>...</Root>.
inline QString Selezione(const QStringList& id)
{
    QString xml = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?><Root>");
    for (const QString& i : id)
        xml += QStringLiteral("<ID>") + i + QStringLiteral("</ID>");
    return xml + QStringLiteral("</Root>");
}
