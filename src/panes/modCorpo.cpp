#include "modCorpo.h"

#include "PxSrvServer.h"
#include "modCp1252.h"

#include <QDir>

#include <pugixml.hpp>

#include <string_view>

namespace modCorpo {

namespace {

constexpr const char* Nomi[] = {"Grassetto", "Compresso", "DoppiaAltezza", "Ripassa", "Dodicesimi",
                                "LetterQuality", "Sottolineato", "CustomA", "CustomB", "CustomC"};
constexpr const char* Codici[] = {"GR", "CM", "DA", "DP", "DO", "LQ", "ST", "IT", "BR", "QU"};

QByteArray Sequenza(const char* testo)
{
    QByteArray s;
    for (const QByteArray& codice : QByteArray(testo).split(';')) {
        const QByteArray c = codice.trimmed();
        if (c.isEmpty())
            continue;
        bool ok = false;
        const int v = c.toInt(&ok);
        if (!ok || v < 0 || v > 255)
            return {};
        s += static_cast<char>(v);
    }
    return s;
}

// Every occurrence of `da` in `t` (left to right, not overlapping) replaced by `a`: what
// QByteArray::replace does, in one linear pass.
void Sostituisci(QByteArray& t, std::string_view da, std::string_view a)
{
    const std::string_view testo(t.constData(), static_cast<size_t>(t.size()));
    size_t trovato = testo.find(da);
    if (da.empty() || trovato == std::string_view::npos)
        return;
    QByteArray uscita;
    uscita.reserve(t.size() + (a.size() > da.size() ? t.size() / 4 : 0));
    size_t da_qui = 0;
    while (trovato != std::string_view::npos) {
        uscita.append(testo.data() + da_qui, static_cast<qsizetype>(trovato - da_qui));
        uscita.append(a.data(), static_cast<qsizetype>(a.size()));
        da_qui = trovato + da.size();
        trovato = testo.find(da, da_qui);
    }
    uscita.append(testo.data() + da_qui, static_cast<qsizetype>(testo.size() - da_qui));
    t = std::move(uscita);
}

void SostituisciTesto(QByteArray& t, const QByteArray& da, const QByteArray& a)
{
    Sostituisci(t, std::string_view(da.constData(), static_cast<size_t>(da.size())),
                std::string_view(a.constData(), static_cast<size_t>(a.size())));
}

// NUL shown as 248 (ø), then the three characters RTF reserves escaped.
QByteArray Proteggi(QByteArray t)
{
    t.replace('\0', '\xF8');
    Sostituisci(t, "\\", "\\\\");
    Sostituisci(t, "{", "\\{");
    Sostituisci(t, "}", "\\}");
    return t;
}

} // namespace

QString PercorsoFile(const pugi::xml_node& file, const QString& cartellaServer)
{
    const QString nome = QDir::fromNativeSeparators(QString::fromUtf8(file.child_value("Nome")).trimmed());
    const QString cartella = QDir::fromNativeSeparators(QString::fromUtf8(file.child_value("Percorso")).trimmed());
    if (nome.isEmpty())
        return {};
    return PxSrvServer::PercorsoLocale(cartella.isEmpty() ? nome : QDir(cartella).filePath(nome), cartellaServer);
}

Catalogo LeggiCatalogo(const pugi::xml_node& catalogo)
{
    Catalogo c;
    for (size_t i = 0; i < std::size(Nomi); ++i) {
        c.On[i] = Sequenza(catalogo.child_value((std::string("StrAsc") + Nomi[i] + "On").c_str()));
        c.Off[i] = Sequenza(catalogo.child_value((std::string("StrAsc") + Nomi[i] + "Off").c_str()));
    }
    return c;
}

QByteArray Rtf(QByteArray corpo, const Catalogo& catalogo)
{
    if (corpo.size() > Massimo)
        corpo.truncate(Massimo);
    QByteArray t = Proteggi(std::move(corpo));
    // Each sequence found as it stands in the escaped text.
    for (size_t i = 0; i < std::size(Codici); ++i) {
        const QByteArray codice(Codici[i]);
        if (const QByteArray on = Proteggi(catalogo.On[i]); !on.isEmpty())
            SostituisciTesto(t, on, "\\cf1 [%%$#!On][%%$" + codice + "1][%%$#!Off]");
        if (const QByteArray off = Proteggi(catalogo.Off[i]); !off.isEmpty())
            SostituisciTesto(t, off, "\\cf0 [%%$#!On][%%$" + codice + "0][%%$#!Off]");
    }
    Sostituisci(t, "[%#PLX", "\\cf1 [%%#PLX");
    Sostituisci(t, "%]", "%%]\\cf0 ");
    Sostituisci(t, "[%%$#!On]", "\\cf1 ");
    Sostituisci(t, "[%%$#!Off]", "\\cf0 ");
    Sostituisci(t, "%%", "%");
    Sostituisci(t, "\r\n", "\\par ");
    Sostituisci(t, "\r", "\\par ");
    Sostituisci(t, "\n", "\\par ");
    return "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fnil\\fcharset0 Courier New;}}{\\colortbl ;\\red255\\green0\\blue255;}"
           "\\viewkind4\\uc1\\pard\\f0\\fs18 "
        + t + "\\par }";
}

Documento Leggi(const QByteArray& rtf)
{
    Documento d; // the colour table's first entry (before its first ";") is the default
    enum class Dest { Testo, Caratteri, Colori, Salta };
    struct Stato
    {
        Dest Destinazione = Dest::Testo;
        int Colore = 0;
    };
    std::vector<Stato> pila{Stato{}};
    QByteArray run;   // the text so far, Windows-1252 (one byte, one character)
    int coloreRun = 0; // the colour of the text from `inizioRun` on
    qsizetype inizioRun = 0;
    QColor nuovo;     // the colour table entry being read
    bool nuovoValido = false;
    QByteArray carattere;
    const auto chiudi = [&] {
        if (coloreRun != 0 && run.size() > inizioRun)
            d.Tratti.push_back({inizioRun, run.size(), coloreRun});
        inizioRun = run.size();
    };
    const auto testo = [&](char c) {
        Stato& s = pila.back();
        if (s.Destinazione == Dest::Caratteri) {
            if (c == ';') {
                if (d.Carattere.isEmpty())
                    d.Carattere = QString::fromLatin1(carattere.trimmed());
                carattere.clear();
            } else {
                carattere += c;
            }
            return;
        }
        if (s.Destinazione == Dest::Colori) {
            if (c == ';') {
                d.Colori.push_back(nuovoValido ? nuovo : QColor());
                nuovo = QColor(0, 0, 0);
                nuovoValido = false;
            }
            return;
        }
        if (s.Destinazione != Dest::Testo)
            return;
        if (s.Colore != coloreRun) {
            chiudi();
            coloreRun = s.Colore;
        }
        run += c;
    };
    const qsizetype n = rtf.size();
    for (qsizetype i = 0; i < n; ++i) {
        const char c = rtf[i];
        if (c == '{') {
            pila.push_back(pila.back());
            continue;
        }
        if (c == '}') {
            if (pila.size() > 1)
                pila.pop_back();
            continue;
        }
        if (c == '\r' || c == '\n')
            continue; // line breaks in RTF source are not text
        if (c != '\\') {
            // A stretch of plain text goes in at once.
            qsizetype fine = i + 1;
            while (fine < n && rtf[fine] != '\\' && rtf[fine] != '{' && rtf[fine] != '}' && rtf[fine] != '\r'
                   && rtf[fine] != '\n')
                ++fine;
            if (pila.back().Destinazione == Dest::Testo) {
                if (pila.back().Colore != coloreRun) {
                    chiudi();
                    coloreRun = pila.back().Colore;
                }
                run.append(rtf.constData() + i, fine - i);
            } else {
                for (qsizetype k = i; k < fine; ++k)
                    testo(rtf[k]);
            }
            i = fine - 1;
            continue;
        }
        if (++i >= n)
            break;
        const char e = rtf[i];
        if (e == '\\' || e == '{' || e == '}') {
            testo(e);
            continue;
        }
        if (e == '\'') {
            if (i + 2 < n) {
                bool ok = false;
                const int v = rtf.mid(i + 1, 2).toInt(&ok, 16);
                i += 2;
                if (ok)
                    testo(static_cast<char>(v));
            }
            continue;
        }
        if (!std::isalpha(static_cast<unsigned char>(e))) {
            if (e == '*')
                pila.back().Destinazione = Dest::Salta;
            continue;
        }
        // A control word, an optional signed number, an optional space.
        qsizetype j = i;
        while (j < n && std::isalpha(static_cast<unsigned char>(rtf[j])))
            ++j;
        const QByteArrayView parola(rtf.constData() + i, j - i);
        qsizetype k = j;
        const bool negativo = k < n && rtf[k] == '-';
        if (negativo)
            ++k;
        int numero = 0;
        while (k < n && std::isdigit(static_cast<unsigned char>(rtf[k])) && numero < 100000000)
            numero = numero * 10 + (rtf[k++] - '0');
        const bool conNumero = k > j + (negativo ? 1 : 0);
        if (negativo)
            numero = -numero;
        if (k < n && rtf[k] == ' ')
            ++k;
        i = k - 1;
        Stato& s = pila.back();
        if (parola == "fonttbl")
            s.Destinazione = Dest::Caratteri;
        else if (parola == "colortbl")
            s.Destinazione = Dest::Colori;
        else if (parola == "red" || parola == "green" || parola == "blue") {
            if (!nuovoValido)
                nuovo = QColor(0, 0, 0);
            nuovoValido = true;
            if (parola == "red")
                nuovo.setRed(numero);
            else if (parola == "green")
                nuovo.setGreen(numero);
            else
                nuovo.setBlue(numero);
        } else if (parola == "cf")
            s.Colore = conNumero ? numero : 0;
        else if (parola == "fs" && conNumero)
            d.Punti = numero / 2;
        else if (parola == "par" || parola == "line") {
            if (s.Destinazione == Dest::Testo) {
                // A line end keeps the colour of the run it ends.
                if (s.Colore != coloreRun) {
                    chiudi();
                    coloreRun = s.Colore;
                }
                run += '\n';
            }
        } else if (parola == "tab")
            testo('\t');
    }
    // The wrapper's closing "\par" ends the text, not a line of it.
    if (run.endsWith('\n'))
        run.chop(1);
    chiudi();
    if (!d.Tratti.empty() && d.Tratti.back().Fine > run.size())
        d.Tratti.back().Fine = run.size();
    if (!d.Tratti.empty() && d.Tratti.back().Fine <= d.Tratti.back().Inizio)
        d.Tratti.pop_back();
    d.Testo = modCp1252::Decodifica(run);
    return d;
}

} // namespace modCorpo
