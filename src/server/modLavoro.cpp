#include "modLavoro.h"

#include "modDisco.h"

#include <QDir>
#include <QFile>
#include <QRandomGenerator>

namespace modLavoro {

QString Sanifica(const QString& nome)
{
    QString s;
    s.reserve(nome.size());
    for (const QChar c : nome)
        s += (c.unicode() < 0x20 || QStringView(u"\\/:*?\"<>|").contains(c)) ? u'-' : c;
    while (s.startsWith(u'.'))
        s.remove(0, 1);
    for (const char* dispositivo : {"CON", "PRN", "AUX", "NUL"}) {
        const QLatin1StringView d(dispositivo);
        if (s.compare(d, Qt::CaseInsensitive) == 0
            || (s.startsWith(d, Qt::CaseInsensitive) && s.size() > 3 && (s[3] == u'.' || s[3] == u' ')))
            s.prepend(u'_');
    }
    return s.left(120);
}

namespace {

// The final names of a job with `base`, none of which may exist yet.
bool Libero(const QString& base, const std::vector<File>& file)
{
    for (const File& f : file)
        if (modDisco::Occupato(base + QLatin1StringView(f.Estensione)))
            return false;
    return true;
}

} // namespace

Esito Consegna(const QString& cartella, const QString& base, const std::vector<File>& file)
{
    Esito esito;
    const QDir dir(cartella);
    // The temporary names end in neither job extension, so the service's watcher ignores them.
    std::vector<QString> temporanei;
    const auto pulisci = [&temporanei] {
        for (const QString& t : temporanei)
            QFile::remove(t);
    };
    for (const File& f : file) {
        const QString temporaneo = dir.filePath(QLatin1StringView(modDisco::PrefissoTemporaneo)
                                                + QString::number(QRandomGenerator::global()->generate64(), 36)
                                                + QStringLiteral(".parte"));
        if (!modDisco::ScriviNuovo(temporaneo, f.Dati, &esito.Errore)) {
            pulisci();
            return esito;
        }
        temporanei.push_back(temporaneo);
    }
    // A name no waiting job has; a rename that meets a file after all tries the next number.
    for (int numero = 1; numero <= 1000; ++numero) {
        const QString finale = dir.filePath(numero == 1 ? base : QStringLiteral("%1 (%2)").arg(base).arg(numero));
        if (!Libero(finale, file))
            continue;
        std::vector<QString> pubblicati;
        bool occupato = false;
        for (size_t i = 0; i < file.size(); ++i) {
            const QString nome = finale + QLatin1StringView(file[i].Estensione);
            if (!modDisco::Rinomina(temporanei[i], nome, &esito.Errore)) {
                occupato = modDisco::Occupato(nome) && QFile::exists(temporanei[i]);
                break;
            }
            pubblicati.push_back(nome);
        }
        if (pubblicati.size() == file.size()) {
            if (!modDisco::SincronizzaCartella(cartella, &esito.Errore)) {
                // Named but perhaps not on disk: taken back, so no half of it survives a crash.
                for (const QString& p : pubblicati)
                    QFile::remove(p);
                return esito;
            }
            esito.Riuscito = true;
            esito.Base = finale;
            esito.Errore.clear();
            return esito;
        }
        // Taken back before the header arrived: the service never saw this job.
        bool ripresi = true;
        for (size_t i = 0; i < pubblicati.size(); ++i)
            if (!QFile::rename(pubblicati[i], temporanei[i])) {
                QFile::remove(pubblicati[i]);
                ripresi = false;
            }
        if (!occupato || !ripresi) {
            pulisci();
            return esito;
        }
    }
    pulisci();
    esito.Errore = QStringLiteral("nessun nome libero per ") + base;
    return esito;
}

} // namespace modLavoro
