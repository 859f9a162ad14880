#pragma once

#include "RefCartellaDocumenti.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QHash>

// Every document of `c` in exactly one queue on disk, where the index says, and nothing
// half-made (hidden creations, temporary files) left in a queue folder.
inline void ControllaCoerenza(const RefCartellaDocumenti& c)
{
    QHash<QString, qint32> disco;
    for (qint32 coda = 0; coda < c.Definizione().NumeroCode; ++coda) {
        const QDir cartella(c.Radice() + QStringLiteral("/Coda_") + QString::number(coda));
        for (const QString& id : cartella.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
            EXPECT_FALSE(disco.contains(id)) << qPrintable(id) << " in two queues";
            disco.insert(id, coda);
        }
        EXPECT_TRUE(cartella.entryList({QStringLiteral(".*")}, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).isEmpty())
            << "left half-made in queue " << coda;
    }
    EXPECT_EQ(disco.size(), c.Totale()) << c.Definizione().Chiave;
    qsizetype somma = 0;
    for (qint32 coda = 0; coda < c.Definizione().NumeroCode; ++coda) {
        somma += c.Conteggio(coda);
        for (const QString& id : c.Coda(coda)) {
            EXPECT_EQ(disco.value(id, -1), coda) << qPrintable(id);
            ASSERT_NE(c.Trova(id), nullptr);
            EXPECT_EQ(c.Trova(id)->Coda, coda);
        }
    }
    EXPECT_EQ(somma, c.Totale());
}
