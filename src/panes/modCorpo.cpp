#include "modCorpo.h"

#include "PxSrvServer.h"
#include "modCp1252.h"

#include <QDir>

#include <pugixml.hpp>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <vector>

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

// The catalogue's sequences looked for in the body's own bytes, all at once (Aho-Corasick): one
// pass gives, for every byte, the sequence that starts there. A trie of the sequences, each node
// with its failure link (the longest proper suffix that is also in the trie) and its dictionary
// link (the nearest node on that chain where a sequence ends).
struct Nodo
{
    std::vector<std::pair<unsigned char, int>> Figli;
    int Ritorno = 0;
    int Uscita = -1; // the sequence ending here
    int Altra = -1;  // the dictionary link
};

struct Automa
{
    std::vector<Nodo> Nodi{Nodo{}};
    std::array<int, 256> Radice{}; // the root's moves, dense: most bytes stay there
    std::vector<qsizetype> Lunghezze;
};

int Figlio(const Nodo& n, unsigned char c)
{
    for (const auto& [b, f] : n.Figli)
        if (b == c)
            return f;
    return -1;
}

// From node `s` on byte `c`; amortised constant over a run of bytes.
int Passo(const Automa& a, int s, unsigned char c)
{
    for (; s != 0; s = a.Nodi[static_cast<size_t>(s)].Ritorno)
        if (const int f = Figlio(a.Nodi[static_cast<size_t>(s)], c); f >= 0)
            return f;
    return a.Radice[c];
}

// `sequenze` in order of precedence: the same bytes listed twice keep the first.
Automa Costruisci(const std::vector<QByteArray>& sequenze)
{
    Automa a;
    for (size_t j = 0; j < sequenze.size(); ++j) {
        a.Lunghezze.push_back(sequenze[j].size());
        if (sequenze[j].isEmpty())
            continue;
        int n = 0;
        for (const char ch : sequenze[j]) {
            const auto c = static_cast<unsigned char>(ch);
            int f = Figlio(a.Nodi[static_cast<size_t>(n)], c);
            if (f < 0) {
                f = static_cast<int>(a.Nodi.size());
                a.Nodi[static_cast<size_t>(n)].Figli.emplace_back(c, f);
                a.Nodi.emplace_back();
            }
            n = f;
        }
        if (a.Nodi[static_cast<size_t>(n)].Uscita < 0)
            a.Nodi[static_cast<size_t>(n)].Uscita = static_cast<int>(j);
    }
    for (const auto& [c, f] : a.Nodi[0].Figli)
        a.Radice[c] = f;
    // Breadth first, so that every failure link points at a node already done.
    std::vector<int> coda;
    for (const auto& [c, f] : a.Nodi[0].Figli)
        coda.push_back(f);
    for (size_t k = 0; k < coda.size(); ++k) {
        const int u = coda[k];
        for (const auto& [c, v] : a.Nodi[static_cast<size_t>(u)].Figli) {
            Nodo& nv = a.Nodi[static_cast<size_t>(v)];
            nv.Ritorno = u == 0 ? 0 : Passo(a, a.Nodi[static_cast<size_t>(u)].Ritorno, c);
            const Nodo& r = a.Nodi[static_cast<size_t>(nv.Ritorno)];
            nv.Altra = nv.Ritorno != 0 && r.Uscita >= 0 ? nv.Ritorno : r.Altra;
            coda.push_back(v);
        }
    }
    return a;
}

// Where the sequences are in `corpo`, in order: the place and the sequence. The bytes are taken as
// the printer takes them: left to right, at one place the longest sequence ("ESC w 1" is not a
// shorter "ESC w" followed by "1"), and a sequence is not looked for inside one already taken.
std::vector<std::pair<qsizetype, int>> Trovate(const QByteArray& corpo, const std::vector<QByteArray>& sequenze)
{
    const Automa a = Costruisci(sequenze);
    const qsizetype n = corpo.size();
    const auto* dati = reinterpret_cast<const unsigned char*>(corpo.constData());
    std::vector<signed char> inizi(static_cast<size_t>(n), -1); // the longest sequence from each byte
    int s = 0;
    for (qsizetype i = 0; i < n; ++i) {
        if (s == 0) {
            s = a.Radice[dati[i]];
            if (s == 0)
                continue;
        } else {
            s = Passo(a, s, dati[i]);
        }
        const Nodo& nodo = a.Nodi[static_cast<size_t>(s)];
        for (int t = nodo.Uscita >= 0 ? s : nodo.Altra; t > 0; t = a.Nodi[static_cast<size_t>(t)].Altra) {
            const int j = a.Nodi[static_cast<size_t>(t)].Uscita;
            signed char& inizio = inizi[static_cast<size_t>(i - a.Lunghezze[static_cast<size_t>(j)] + 1)];
            if (inizio < 0 || a.Lunghezze[static_cast<size_t>(j)] > a.Lunghezze[static_cast<size_t>(inizio)])
                inizio = static_cast<signed char>(j);
        }
    }
    // Leftmost first: what starts inside a sequence already taken is dropped.
    std::vector<std::pair<qsizetype, int>> trovate;
    for (qsizetype i = 0; i < n;) {
        const int j = inizi[static_cast<size_t>(i)];
        if (j < 0) {
            ++i;
            continue;
        }
        trovate.emplace_back(i, j);
        i += a.Lunghezze[static_cast<size_t>(j)];
    }
    return trovate;
}

bool Inizia(const QByteArray& t, qsizetype i, std::string_view s)
{
    return QByteArrayView(t).sliced(i).startsWith(QByteArrayView(s.data(), static_cast<qsizetype>(s.size())));
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
    // The sequences with their markers, in the catalogue's order (each "on" before its "off"). A
    // NUL is shown as ø and is never part of a sequence: one holding a NUL marks nothing, and a ø in
    // a sequence is a ø of the body, not a NUL.
    std::vector<QByteArray> sequenze;
    std::vector<QByteArray> segni;
    for (size_t i = 0; i < std::size(Codici); ++i) {
        for (const bool acceso : {true, false}) {
            const QByteArray& s = acceso ? catalogo.On[i] : catalogo.Off[i];
            sequenze.push_back(s.contains('\0') ? QByteArray() : s);
            segni.push_back(QByteArray(acceso ? "\\cf1 " : "\\cf0 ") + "\\cf1 [%$" + Codici[i] + (acceso ? "1" : "0")
                            + "]\\cf0 ");
        }
    }
    const bool conSequenze = std::any_of(sequenze.begin(), sequenze.end(), [](const QByteArray& s) { return !s.isEmpty(); });
    const std::vector<std::pair<qsizetype, int>> trovate = conSequenze ? Trovate(corpo, sequenze)
                                                                       : std::vector<std::pair<qsizetype, int>>();

    // One pass over the body's bytes; what is written is never read again. Besides the sequences:
    // a server command "[%#PLX ... %]" is coloured, "%%" is one "%", "[%%$#!On]" and "[%%$#!Off]"
    // switch the colour, line ends become paragraphs, and the characters RTF reserves are escaped.
    // What starts before a sequence ends where the sequence starts (`prossima`).
    static constexpr auto Speciale = [] {
        std::array<bool, 256> v{};
        for (const unsigned char c : std::string_view("[%\r\n\\{}"))
            v[c] = true;
        v[0] = true;
        return v;
    }();
    const qsizetype n = corpo.size();
    QByteArray t;
    t.reserve(n + n / 8 + 64);
    size_t m = 0;
    qsizetype prossima = trovate.empty() ? n : trovate[0].first;
    for (qsizetype i = 0; i < n;) {
        if (i == prossima) {
            const int j = trovate[m].second;
            t += segni[static_cast<size_t>(j)];
            i += sequenze[static_cast<size_t>(j)].size();
            prossima = ++m < trovate.size() ? trovate[m].first : n;
            continue;
        }
        qsizetype k = i;
        while (k < prossima && !Speciale[static_cast<unsigned char>(corpo[k])])
            ++k;
        if (k > i) {
            t.append(corpo.constData() + i, k - i);
            i = k;
            continue;
        }
        const char c = corpo[i];
        if (c == '[') {
            if (Inizia(corpo, i, "[%#PLX") && i + 6 <= prossima) {
                t += "\\cf1 [%#PLX";
                i += 6;
            } else if (Inizia(corpo, i, "[%%$#!On]") && i + 9 <= prossima) {
                t += "\\cf1 ";
                i += 9;
            } else if (Inizia(corpo, i, "[%%$#!Off]") && i + 10 <= prossima) {
                t += "\\cf0 ";
                i += 10;
            } else {
                t += '[';
                ++i;
            }
        } else if (c == '%') {
            // A run of "%" is halved (rounding up: "%%%" is "%%"); one before "]" ends a command,
            // as if written "%%]": "%]" shows as itself, "%%]" as "%%]".
            k = i + 1;
            while (k < prossima && corpo[k] == '%')
                ++k;
            const bool chiude = k < prossima && corpo[k] == ']';
            t.append((k - i + (chiude ? 2 : 1)) / 2, '%');
            if (chiude) {
                t += "]\\cf0 ";
                ++k;
            }
            i = k;
        } else if (c == '\r' || c == '\n') {
            t += "\\par ";
            i += c == '\r' && i + 1 < prossima && corpo[i + 1] == '\n' ? 2 : 1;
        } else {
            if (c == '\0') {
                t += '\xF8';
            } else {
                t += '\\';
                t += c;
            }
            ++i;
        }
    }
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
