#include "modDemoCorpi.h"

#include "modCp1252.h"

#include <array>
#include <string_view>

namespace modDemoCorpi {

namespace {

using M = Modello;

// Epson ESC/P, the catalogue the demo's clients print with.
constexpr char GrassettoOn[] = "\x1b" "E", GrassettoOff[] = "\x1b" "F";
constexpr char DoppioOn[] = "\x1b" "W1", DoppioOff[] = "\x1b" "W0";
constexpr char SottolineatoOn[] = "\x1b" "-1", SottolineatoOff[] = "\x1b" "-0";
constexpr char CompressoOn[] = "\x0f", CompressoOff[] = "\x12";
constexpr char Riga[] = "\r\n";
constexpr char FinePagina[] = "\r\n\x0c";

constexpr Modello Stampe[] = {M::Fattura, M::Ddt, M::Cedolino, M::Etichetta, M::EstrattoConto};
constexpr Modello Fax[] = {M::Lettera, M::Ordine, M::Sollecito, M::ConfermaOrdine};
constexpr Modello Email[] = {M::Fattura, M::Sollecito, M::Preventivo, M::EstrattoConto, M::ConfermaOrdine};
constexpr Modello Pubblicazioni[] = {M::Listino, M::Circolare, M::EstrattoConto, M::Fattura};
constexpr Modello Anteprime[] = {M::Fattura, M::Ddt, M::Cedolino, M::Preventivo};

constexpr const char* NomiIt[] = {"Fattura", "Documento di trasporto", "Cedolino", "Etichette di spedizione",
                                  "Estratto conto", "Lettera", "Ordine fornitore", "Sollecito di pagamento",
                                  "Conferma d'ordine", "Preventivo", "Listino prezzi", "Circolare ai clienti"};

// What a document says, in one language. UTF-8 here; the body is written in Windows-1252.
struct Frasi
{
    const char* Codice;
    std::array<const char*, 12> Titoli; // in Modello order
    const char* Numero, *Del, *Spettabile, *Pagina;
    const char* Codice_, *Descrizione, *Quantita, *Prezzo, *Importo, *Imponibile, *Iva, *Totale, *Scadenza;
    const char* Apertura, *Chiusura, *Firma;
    const char* Lettera, *Sollecito, *Ordine, *Conferma, *Preventivo, *Circolare, *Listino, *Email, *Estratto;
    const char* Saldo, *DataDoc;
    const char* Dipendente, *Periodo, *Retribuzione, *Straordinari, *Contributi, *Ritenute, *Netto;
    const char* Destinatario, *Colli, *Peso, *Vettore, *Causale, *Fragile;
    const char* FaxA, *FaxDa, *FaxNumero, *FaxPagine, *FaxOggetto, *FaxAvviso;
    const char* AreaClienti, *Pubblicato;
    std::array<const char*, 8> Merci;
    std::array<const char*, 12> Mesi;
};

constexpr Frasi Lingue[] = {
    {"IT",
     {"FATTURA", "DOCUMENTO DI TRASPORTO", "CEDOLINO PAGA", "ETICHETTA DI SPEDIZIONE", "ESTRATTO CONTO", "LETTERA",
      "ORDINE A FORNITORE", "SOLLECITO DI PAGAMENTO", "CONFERMA D'ORDINE", "PREVENTIVO", "LISTINO PREZZI",
      "CIRCOLARE"},
     "n.", "del", "Spett.le", "Pagina",
     "Codice", "Descrizione", "Q.tà", "Prezzo", "Importo", "Imponibile", "IVA 22%", "Totale", "Scadenza pagamento",
     "Gentile cliente,", "Cordiali saluti.", "L'ufficio amministrativo",
     "con la presente vi informiamo che dal prossimo mese i nostri uffici osserveranno l'orario continuato dalle 8 alle 17. "
     "Per qualsiasi chiarimento restiamo a vostra disposizione.",
     "dai nostri controlli risulta ancora aperta la fattura indicata di seguito. Vi preghiamo di provvedere al "
     "pagamento entro 10 giorni; se lo avete già fatto, considerate nulla la presente.",
     "vi preghiamo di fornirci quanto segue, alle condizioni concordate, con consegna presso il nostro magazzino:",
     "confermiamo il vostro ordine alle condizioni seguenti; la merce sarà pronta per la spedizione entro 5 giorni lavorativi.",
     "come da vostra richiesta vi sottoponiamo la nostra migliore offerta, valida 30 giorni:",
     "desideriamo informarvi che il nostro magazzino resterà chiuso per inventario dal 27 al 31 dicembre. "
     "Gli ordini ricevuti in quei giorni saranno evasi dal 2 gennaio.",
     "prezzi in euro, IVA esclusa, validi fino a nuovo listino.",
     "in allegato trova il documento indicato in oggetto, che resta disponibile anche nella nostra area clienti. "
     "Per qualsiasi domanda può rispondere a questo messaggio.",
     "di seguito il riepilogo delle partite aperte alla data odierna:",
     "Saldo a vostro debito", "Data",
     "Dipendente", "Periodo di paga", "Retribuzione base", "Straordinari", "Contributi INPS", "Ritenute IRPEF",
     "Netto in busta",
     "Destinatario", "Colli", "Peso kg", "Vettore", "Causale: vendita", "FRAGILE - NON CAPOVOLGERE",
     "A", "Da", "Fax n.", "Pagine (compresa questa)", "Oggetto",
     "Se questo fax non vi è giunto completo, chiamate il mittente.",
     "AREA CLIENTI", "Documento pubblicato per",
     {"Viti inox M6x20", "Tasselli nylon 8 mm", "Guanti da lavoro", "Nastro isolante", "Silicone trasparente",
      "Cavo elettrico 3x1,5", "Pannello OSB 18 mm", "Colla vinilica 1 kg"},
     {"gennaio", "febbraio", "marzo", "aprile", "maggio", "giugno", "luglio", "agosto", "settembre", "ottobre",
      "novembre", "dicembre"}},
    {"EN",
     {"INVOICE", "DELIVERY NOTE", "PAY SLIP", "SHIPPING LABEL", "STATEMENT OF ACCOUNT", "LETTER", "PURCHASE ORDER",
      "PAYMENT REMINDER", "ORDER CONFIRMATION", "QUOTATION", "PRICE LIST", "CIRCULAR"},
     "No.", "of", "To", "Page",
     "Code", "Description", "Qty", "Price", "Amount", "Net amount", "VAT 22%", "Total", "Payment due",
     "Dear customer,", "Kind regards.", "Accounts department",
     "please note that from next month our offices will be open without a lunch break, from 8 am to 5 pm. "
     "Do not hesitate to contact us with any question.",
     "according to our records the invoice below is still unpaid. Please settle it within 10 days; if you have "
     "already done so, kindly disregard this reminder.",
     "please supply the following at the agreed terms, delivered to our warehouse:",
     "we confirm your order on the terms below; the goods will be ready for shipping within 5 working days.",
     "as requested, please find below our best offer, valid for 30 days:",
     "we would like to inform you that our warehouse will be closed for stocktaking from 27 to 31 December. "
     "Orders received on those days will be processed from 2 January.",
     "prices in euro, VAT excluded, valid until the next price list.",
     "please find attached the document named in the subject. Simply reply to this message with any question.",
     "below is a summary of the open items as of today:",
     "Balance due", "Date",
     "Employee", "Pay period", "Basic pay", "Overtime", "Social security", "Income tax",
     "Net pay",
     "Consignee", "Parcels", "Weight kg", "Carrier", "Reason: sale", "FRAGILE - THIS WAY UP",
     "To", "From", "Fax No.", "Pages (including this one)", "Subject",
     "If you did not receive all pages, please call the sender.",
     "CUSTOMER AREA", "Document published for",
     {"Stainless screws M6x20", "Nylon wall plugs 8 mm", "Work gloves", "Insulating tape", "Clear silicone",
      "Power cable 3x1.5", "OSB board 18 mm", "PVA glue 1 kg"},
     {"January", "February", "March", "April", "May", "June", "July", "August", "September", "October", "November",
      "December"}},
    {"DE",
     {"RECHNUNG", "LIEFERSCHEIN", "LOHNABRECHNUNG", "VERSANDETIKETT", "KONTOAUSZUG", "BRIEF", "BESTELLUNG",
      "ZAHLUNGSERINNERUNG", "AUFTRAGSBESTÄTIGUNG", "ANGEBOT", "PREISLISTE", "RUNDSCHREIBEN"},
     "Nr.", "vom", "An", "Seite",
     "Artikel", "Beschreibung", "Menge", "Preis", "Betrag", "Nettobetrag", "MwSt. 22%", "Gesamt", "Fällig am",
     "Sehr geehrte Damen und Herren,", "Mit freundlichen Grüßen.", "Buchhaltung",
     "ab dem nächsten Monat sind unsere Büros durchgehend von 8 bis 17 Uhr geöffnet. "
     "Für Rückfragen stehen wir Ihnen gerne zur Verfügung.",
     "laut unserer Buchhaltung ist die unten genannte Rechnung noch offen. Bitte überweisen Sie den Betrag "
     "innerhalb von 10 Tagen; sollte die Zahlung bereits erfolgt sein, betrachten Sie dieses Schreiben als gegenstandslos.",
     "bitte liefern Sie uns zu den vereinbarten Bedingungen frei Lager:",
     "wir bestätigen Ihre Bestellung zu folgenden Bedingungen; die Ware ist innerhalb von 5 Werktagen versandbereit.",
     "wie gewünscht unterbreiten wir Ihnen unser bestes Angebot, gültig 30 Tage:",
     "wir möchten Sie informieren, dass unser Lager vom 27. bis 31. Dezember wegen Inventur geschlossen bleibt. "
     "In dieser Zeit eingehende Bestellungen werden ab dem 2. Januar bearbeitet.",
     "Preise in Euro, zuzüglich MwSt., gültig bis zur nächsten Preisliste.",
     "anbei erhalten Sie das im Betreff genannte Dokument, das Sie auch in unserem Kundenbereich finden. "
     "Bei Fragen antworten Sie einfach auf diese Nachricht.",
     "nachstehend die offenen Posten zum heutigen Tag:",
     "Offener Saldo", "Datum",
     "Mitarbeiter", "Abrechnungszeitraum", "Grundlohn", "Überstunden", "Sozialversicherung", "Lohnsteuer",
     "Auszahlungsbetrag",
     "Empfänger", "Packstücke", "Gewicht kg", "Spediteur", "Grund: Verkauf", "ZERBRECHLICH - OBEN",
     "An", "Von", "Fax-Nr.", "Seiten (mit Deckblatt)", "Betreff",
     "Sollten Sie nicht alle Seiten erhalten haben, rufen Sie bitte den Absender an.",
     "KUNDENBEREICH", "Veröffentlicht für",
     {"Edelstahlschrauben M6x20", "Nylondübel 8 mm", "Arbeitshandschuhe", "Isolierband", "Silikon transparent",
      "Stromkabel 3x1,5", "OSB-Platte 18 mm", "Weißleim 1 kg"},
     {"Januar", "Februar", "März", "April", "Mai", "Juni", "Juli", "August", "September", "Oktober", "November",
      "Dezember"}},
    {"FR",
     {"FACTURE", "BON DE LIVRAISON", "BULLETIN DE PAIE", "ÉTIQUETTE D'EXPÉDITION", "RELEVÉ DE COMPTE", "LETTRE",
      "BON DE COMMANDE", "RELANCE DE PAIEMENT", "CONFIRMATION DE COMMANDE", "DEVIS", "TARIF", "CIRCULAIRE"},
     "n°", "du", "À l'attention de", "Page",
     "Code", "Désignation", "Qté", "Prix", "Montant", "Total HT", "TVA 22%", "Total TTC", "Échéance",
     "Madame, Monsieur,", "Veuillez agréer nos salutations distinguées.", "Service comptabilité",
     "nous vous informons qu'à partir du mois prochain nos bureaux seront ouverts en journée continue de 8 h à 17 h. "
     "Nous restons à votre disposition pour tout renseignement.",
     "sauf erreur de notre part, la facture ci-dessous reste impayée. Merci de bien vouloir la régler sous 10 jours ; "
     "si le paiement a déjà été effectué, veuillez ne pas tenir compte de ce courrier.",
     "merci de nous livrer, aux conditions convenues, franco notre entrepôt :",
     "nous confirmons votre commande aux conditions ci-dessous ; la marchandise sera prête à l'expédition sous 5 jours ouvrés.",
     "suite à votre demande, voici notre meilleure offre, valable 30 jours :",
     "nous vous informons que notre entrepôt sera fermé pour inventaire du 27 au 31 décembre. "
     "Les commandes reçues pendant cette période seront traitées à partir du 2 janvier.",
     "prix en euros, hors TVA, valables jusqu'au prochain tarif.",
     "veuillez trouver ci-joint le document indiqué en objet, que vous retrouverez aussi dans notre espace clients. "
     "Pour toute question, répondez simplement à ce message.",
     "voici le récapitulatif des écritures ouvertes à ce jour :",
     "Solde dû", "Date",
     "Salarié", "Période", "Salaire de base", "Heures supplémentaires", "Cotisations sociales", "Impôt sur le revenu",
     "Net à payer",
     "Destinataire", "Colis", "Poids kg", "Transporteur", "Motif : vente", "FRAGILE - HAUT",
     "À", "De", "N° de fax", "Pages (y compris celle-ci)", "Objet",
     "Si vous n'avez pas reçu toutes les pages, veuillez appeler l'expéditeur.",
     "ESPACE CLIENTS", "Document publié pour",
     {"Vis inox M6x20", "Chevilles nylon 8 mm", "Gants de travail", "Ruban isolant", "Silicone transparent",
      "Câble électrique 3x1,5", "Panneau OSB 18 mm", "Colle vinylique 1 kg"},
     {"janvier", "février", "mars", "avril", "mai", "juin", "juillet", "août", "septembre", "octobre", "novembre",
      "décembre"}},
};

const Frasi& FrasiDi(QStringView lingua)
{
    for (const Frasi& f : Lingue)
        if (lingua == QLatin1StringView(f.Codice))
            return f;
    return Lingue[0];
}

// SplitMix64: the body's own stream, from its seed.
struct Caso
{
    quint64 Stato;
    int Fino(int n)
    {
        quint64 z = (Stato += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return static_cast<int>((z ^ (z >> 31)) % static_cast<quint64>(n));
    }
};

// The body is put together in UTF-8, then written in Windows-1252 once.
class Testo
{
public:
    Testo(const Frasi& f, QStringView lingua) : F(f), mInglese(lingua == u"EN") { mB.reserve(2048); }

    const Frasi& F;
    Testo& operator<<(const char* s) { mB += s; return *this; }
    Testo& operator<<(const QByteArray& s) { mB += s; return *this; }
    Testo& operator<<(const QString& s) { mB += s.toUtf8(); return *this; }
    Testo& operator<<(qint64 n) { mB += QByteArray::number(n); return *this; }

    // An amount in cents as the language writes it: "1.234,50" or "1,234.50".
    QByteArray Euro(qint64 centesimi) const
    {
        QByteArray intero = QByteArray::number(centesimi / 100);
        for (qsizetype i = intero.size() - 3; i > 0; i -= 3)
            intero.insert(i, mInglese ? ',' : '.');
        const qint64 c = centesimi % 100;
        return intero + (mInglese ? '.' : ',') + static_cast<char>('0' + c / 10) + static_cast<char>('0' + c % 10);
    }
    QByteArray Data(const QDate& d) const
    {
        return d.toString(F.Codice == std::string_view("DE") ? QStringLiteral("dd.MM.yyyy") : QStringLiteral("dd/MM/yyyy")).toLatin1();
    }
    // `s` left-aligned in `larghezza` columns (counted in characters, not bytes).
    QByteArray Colonna(const char* s, int larghezza) const
    {
        QByteArray c(s);
        const qsizetype caratteri = QString::fromUtf8(c).size();
        if (caratteri < larghezza)
            c += QByteArray(larghezza - caratteri, ' ');
        return c;
    }
    static QByteArray Destra(const QByteArray& s, int larghezza)
    {
        const qsizetype caratteri = QString::fromUtf8(s).size();
        return caratteri >= larghezza ? s : QByteArray(larghezza - caratteri, ' ') + s;
    }
    QByteArray Fine() const { return modCp1252::Codifica(QString::fromUtf8(mB)); }

private:
    QByteArray mB;
    bool mInglese;
};

constexpr const char* Azienda = "PELORIX DEMO S.p.A.";
constexpr const char* Indirizzo = "Via dei Mille 12 - 20121 Milano (MI) - P.IVA 01234567890";

void Titolo(Testo& t, Modello m, const Contenuto& c, const QDate& data)
{
    t << DoppioOn << GrassettoOn << t.F.Titoli[static_cast<size_t>(m)] << GrassettoOff << DoppioOff << Riga;
    t << t.F.Numero << " " << static_cast<qint64>(c.Numero) << " " << t.F.Del << " " << t.Data(data) << Riga << Riga;
}

void Mittente(Testo& t)
{
    t << GrassettoOn << Azienda << GrassettoOff << Riga << Indirizzo << Riga << Riga;
}

void Spettabile(Testo& t, const Contenuto& c)
{
    t << "                                        " << t.F.Spettabile << Riga;
    t << "                                        " << GrassettoOn << c.Destinatario << GrassettoOff << Riga << Riga;
}

// Lines of goods; `prezzi` false for a delivery note. Returns the net total in cents.
qint64 Merci(Testo& t, Caso& caso, int righe, bool prezzi)
{
    t << SottolineatoOn << t.Colonna(t.F.Codice_, 10) << t.Colonna(t.F.Descrizione, 32) << Testo::Destra(t.F.Quantita, 6);
    if (prezzi)
        t << Testo::Destra(t.F.Prezzo, 12) << Testo::Destra(t.F.Importo, 14);
    t << SottolineatoOff << Riga << CompressoOn;
    qint64 totale = 0;
    for (int r = 0; r < righe; ++r) {
        const int merce = caso.Fino(8);
        const qint64 quantita = 1 + caso.Fino(40);
        const qint64 prezzo = 50 + caso.Fino(4000);
        t << "A" << static_cast<qint64>(1000 + merce * 37) << "     " << t.Colonna(t.F.Merci[static_cast<size_t>(merce)], 32)
          << Testo::Destra(QByteArray::number(quantita), 6);
        if (prezzi)
            t << Testo::Destra(t.Euro(prezzo), 12) << Testo::Destra(t.Euro(prezzo * quantita), 14);
        t << Riga;
        totale += prezzo * quantita;
    }
    t << CompressoOff << Riga;
    return totale;
}

void Totali(Testo& t, qint64 imponibile, const QDate& data, bool scadenza)
{
    const qint64 iva = imponibile * 22 / 100;
    t << t.Colonna(t.F.Imponibile, 30) << Testo::Destra(t.Euro(imponibile), 14) << Riga;
    t << t.Colonna(t.F.Iva, 30) << Testo::Destra(t.Euro(iva), 14) << Riga;
    t << GrassettoOn << t.Colonna(t.F.Totale, 30) << Testo::Destra(t.Euro(imponibile + iva), 14) << GrassettoOff << Riga;
    if (scadenza)
        t << Riga << t.F.Scadenza << ": " << t.Data(data.addDays(30)) << Riga;
}

void Paragrafo(Testo& t, const char* testo)
{
    // Wrapped at 72 columns, as a text printer would print it.
    const QString s = QString::fromUtf8(testo);
    qsizetype inizio = 0;
    while (inizio < s.size()) {
        qsizetype fine = std::min<qsizetype>(inizio + 72, s.size());
        if (fine < s.size()) {
            const qsizetype spazio = s.lastIndexOf(u' ', fine);
            if (spazio > inizio)
                fine = spazio;
        }
        t << s.mid(inizio, fine - inizio).trimmed() << Riga;
        inizio = fine + 1;
    }
    t << Riga;
}

void Lettera(Testo& t, const Contenuto& c, const char* paragrafo)
{
    Spettabile(t, c);
    t << t.F.Apertura << Riga << Riga;
    Paragrafo(t, paragrafo);
}

void Saluti(Testo& t)
{
    t << t.F.Chiusura << Riga << Riga << "    " << t.F.Firma << Riga << "    " << Azienda << Riga;
}

void EstrattoConto(Testo& t, Caso& caso, const QDate& data)
{
    t << SottolineatoOn << t.Colonna(t.F.DataDoc, 14) << t.Colonna(t.F.Numero, 10) << Testo::Destra(t.F.Importo, 14)
      << SottolineatoOff << Riga << CompressoOn;
    qint64 saldo = 0;
    for (int r = 0, n = 2 + caso.Fino(4); r < n; ++r) {
        const qint64 importo = 10000 + caso.Fino(300000);
        t << t.Colonna(t.Data(data.addDays(-30 * (n - r))).constData(), 14)
          << t.Colonna(QByteArray::number(2000 + caso.Fino(900)).constData(), 10) << Testo::Destra(t.Euro(importo), 14) << Riga;
        saldo += importo;
    }
    t << CompressoOff << Riga << GrassettoOn << t.Colonna(t.F.Saldo, 24) << Testo::Destra(t.Euro(saldo), 14)
      << GrassettoOff << Riga << Riga;
}

void Cedolino(Testo& t, const Contenuto& c, Caso& caso, const QDate& data)
{
    const QDate mese = data.addMonths(-1);
    t << t.Colonna(t.F.Dipendente, 24) << GrassettoOn << c.Destinatario << GrassettoOff << Riga;
    t << t.Colonna(t.F.Periodo, 24) << t.F.Mesi[static_cast<size_t>(mese.month() - 1)] << " " << static_cast<qint64>(mese.year())
      << Riga << Riga << CompressoOn;
    const qint64 base = 150000 + caso.Fino(150000), straordinari = caso.Fino(30000);
    const qint64 contributi = (base + straordinari) * 919 / 10000, irpef = (base + straordinari - contributi) * 23 / 100;
    t << t.Colonna(t.F.Retribuzione, 30) << Testo::Destra(t.Euro(base), 14) << Riga;
    t << t.Colonna(t.F.Straordinari, 30) << Testo::Destra(t.Euro(straordinari), 14) << Riga;
    t << t.Colonna(t.F.Contributi, 30) << Testo::Destra("-" + t.Euro(contributi), 14) << Riga;
    t << t.Colonna(t.F.Ritenute, 30) << Testo::Destra("-" + t.Euro(irpef), 14) << Riga << CompressoOff << Riga;
    t << GrassettoOn << t.Colonna(t.F.Netto, 30) << Testo::Destra(t.Euro(base + straordinari - contributi - irpef), 14)
      << GrassettoOff << Riga;
}

void Etichetta(Testo& t, const DatiDocumento& d, const Contenuto& c, Caso& caso)
{
    static constexpr const char* Vettori[] = {"BRT", "GLS", "SDA", "TNT"};
    t << t.F.Destinatario << Riga << DoppioOn << GrassettoOn << c.Destinatario << GrassettoOff << DoppioOff << Riga;
    t << "Via Industria " << static_cast<qint64>(1 + caso.Fino(120)) << Riga << d.Ip.section(u'.', 3).toUtf8() << "100 "
      << "Lecco (LC)" << Riga << Riga;
    const int colli = 1 + caso.Fino(6);
    t << t.F.Colli << ": " << static_cast<qint64>(1 + caso.Fino(colli)) << "/" << static_cast<qint64>(colli) << "    "
      << t.F.Peso << ": " << static_cast<qint64>(2 + caso.Fino(60)) << "    " << t.F.Vettore << ": "
      << Vettori[caso.Fino(4)] << Riga;
    t << GrassettoOn << "*" << d.Id << "*" << GrassettoOff << Riga;
    if (caso.Fino(3) == 0)
        t << DoppioOn << t.F.Fragile << DoppioOff << Riga;
}

// The form itself: what a printer prints, and what a fax or a publication carries after its own lines.
void Modulo(Testo& t, const DatiDocumento& d, const Contenuto& c, Caso& caso)
{
    const QDate data = d.Inserito.date();
    switch (c.Tipo) {
    case M::Etichetta:
        Etichetta(t, d, c, caso);
        return;
    case M::Cedolino:
        Mittente(t);
        Titolo(t, c.Tipo, c, data);
        Cedolino(t, c, caso, data);
        return;
    case M::Lettera:
    case M::Sollecito:
    case M::Circolare: {
        Mittente(t);
        Titolo(t, c.Tipo, c, data);
        const char* paragrafo = c.Tipo == M::Lettera ? t.F.Lettera : c.Tipo == M::Sollecito ? t.F.Sollecito : t.F.Circolare;
        Lettera(t, c, paragrafo);
        if (c.Tipo == M::Sollecito)
            EstrattoConto(t, caso, data);
        Saluti(t);
        return;
    }
    case M::EstrattoConto:
        Mittente(t);
        Titolo(t, c.Tipo, c, data);
        Lettera(t, c, t.F.Estratto);
        EstrattoConto(t, caso, data);
        return;
    case M::Listino:
        Mittente(t);
        Titolo(t, c.Tipo, c, data);
        Paragrafo(t, t.F.Listino);
        Merci(t, caso, 6 + caso.Fino(6), true);
        return;
    case M::Fattura:
    case M::Ddt:
    case M::Ordine:
    case M::ConfermaOrdine:
    case M::Preventivo: {
        Mittente(t);
        Titolo(t, c.Tipo, c, data);
        Spettabile(t, c);
        if (c.Tipo == M::Ordine || c.Tipo == M::ConfermaOrdine || c.Tipo == M::Preventivo) {
            t << t.F.Apertura << Riga << Riga;
            Paragrafo(t, c.Tipo == M::Ordine ? t.F.Ordine : c.Tipo == M::ConfermaOrdine ? t.F.Conferma : t.F.Preventivo);
        }
        const bool prezzi = c.Tipo != M::Ddt;
        const qint64 imponibile = Merci(t, caso, 3 + caso.Fino(9), prezzi);
        if (prezzi)
            Totali(t, imponibile, data, c.Tipo == M::Fattura);
        else
            t << t.F.Causale << "    " << t.F.Colli << ": " << static_cast<qint64>(1 + caso.Fino(9)) << "    "
              << t.F.Peso << ": " << static_cast<qint64>(5 + caso.Fino(300)) << Riga;
        if (c.Tipo != M::Fattura && c.Tipo != M::Ddt) {
            t << Riga;
            Saluti(t);
        }
        return;
    }
    }
}

// The cover lines a fax sends before the document.
void Frontespizio(Testo& t, const DatiDocumento& d, const Contenuto& c)
{
    t << DoppioOn << GrassettoOn << "FAX" << GrassettoOff << DoppioOff << "    " << Azienda << Riga << Riga;
    t << t.Colonna(t.F.FaxA, 28) << c.Destinatario << Riga;
    t << t.Colonna(t.F.FaxNumero, 28) << "+" << d.PrefissoInternazionale << " " << d.PrefissoLocale << " " << d.NumeroFax << Riga;
    t << t.Colonna(t.F.FaxDa, 28) << d.UtenteDescrizione << Riga;
    t << t.Colonna(t.F.FaxOggetto, 28) << t.F.Titoli[static_cast<size_t>(c.Tipo)] << " " << t.F.Numero << " "
      << static_cast<qint64>(c.Numero) << Riga;
    t << t.Colonna(t.F.FaxPagine, 28) << static_cast<qint64>(d.Pagine + 1) << Riga;
    t << SottolineatoOn << t.F.FaxAvviso << SottolineatoOff << Riga << "\x0c";
}

// An e-mail's text: a message that speaks of the document it carries.
void Messaggio(Testo& t, const DatiDocumento& d, const Contenuto& c, Caso& caso)
{
    const QDate data = d.Inserito.date();
    t << t.F.FaxOggetto << ": " << t.F.Titoli[static_cast<size_t>(c.Tipo)] << " " << t.F.Numero << " "
      << static_cast<qint64>(c.Numero) << " " << t.F.Del << " " << t.Data(data) << Riga << Riga;
    t << t.F.Apertura << Riga << Riga;
    Paragrafo(t, c.Tipo == M::Sollecito ? t.F.Sollecito : t.F.Email);
    if (c.Tipo == M::EstrattoConto || c.Tipo == M::Sollecito)
        EstrattoConto(t, caso, data);
    else
        t << GrassettoOn << t.F.Totale << ": " << t.Euro(10000 + caso.Fino(500000)) << " EUR" << GrassettoOff << Riga << Riga;
    Saluti(t);
    t << "--" << Riga << d.UtenteDescrizione << " - " << Azienda << Riga << Indirizzo << Riga;
}

} // namespace

std::span<const Modello> Modelli(GenereCartella genere)
{
    switch (genere) {
    case GenereCartella::Stampa: return Stampe;
    case GenereCartella::Email: return Email;
    case GenereCartella::Fax:
    case GenereCartella::PFax:
    case GenereCartella::EFax: return Fax;
    case GenereCartella::Pbl: return Pubblicazioni;
    case GenereCartella::Anteprima: return Anteprime;
    }
    return Stampe;
}

QString Nome(Modello m)
{
    return QString::fromUtf8(NomiIt[static_cast<size_t>(m)]);
}

QByteArray Corpo(const DatiDocumento& d, const Contenuto& c)
{
    Testo t(FrasiDi(c.Lingua), c.Lingua);
    Caso caso{c.Seme};
    switch (d.Genere) {
    case GenereCartella::Email:
        Messaggio(t, d, c, caso);
        break;
    case GenereCartella::Fax:
    case GenereCartella::PFax:
    case GenereCartella::EFax:
        Frontespizio(t, d, c);
        Modulo(t, d, c, caso);
        break;
    case GenereCartella::Pbl:
        t << GrassettoOn << t.F.AreaClienti << GrassettoOff << " - " << t.F.Pubblicato << " " << c.Destinatario << Riga
          << Riga;
        Modulo(t, d, c, caso);
        break;
    case GenereCartella::Stampa:
    case GenereCartella::Anteprima:
        Modulo(t, d, c, caso);
        break;
    }
    t << FinePagina;
    return t.Fine();
}

} // namespace modDemoCorpi
