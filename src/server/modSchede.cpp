#include "modSchede.h"

#include <array>
#include <mutex>

namespace modSchede {

namespace {

constexpr Tipo T = Tipo::Testo, G = Tipo::Gruppo, E = Tipo::Elenco, I = Tipo::Inserto, D12 = Tipo::Data12;

// ---------------------------------------------------------------- fragments shared by the sheets

constexpr Voce Cod[] = {{1, 3009, T, "Codice"}, {1, 3008, T, "Descrizione"}};
constexpr Voce File[] = {{1, 3031, T, "Percorso", Percorso}, {1, 3032, T, "Nome", PercorsoFile, {}, "Percorso"}};
constexpr Voce SequenzeOn[] = {
    {1, 3045, T, "StrAscGrassettoOn"},  {1, 3046, T, "StrAscCompressoOn"},     {1, 3047, T, "StrAscDoppiaAltezzaOn"},
    {1, 3048, T, "StrAscRipassaOn"},    {1, 3049, T, "StrAscDodicesimiOn"},    {1, 3050, T, "StrAscLetterQualityOn"},
    {1, 3051, T, "StrAscSottolineatoOn"}, {1, 3052, T, "StrAscCustomAOn"},     {1, 3053, T, "StrAscCustomBOn"},
    {1, 3054, T, "StrAscCustomCOn"}};
constexpr Voce SequenzeOff[] = {
    {1, 3045, T, "StrAscGrassettoOff"},  {1, 3046, T, "StrAscCompressoOff"},   {1, 3047, T, "StrAscDoppiaAltezzaOff"},
    {1, 3048, T, "StrAscRipassaOff"},    {1, 3049, T, "StrAscDodicesimiOff"},  {1, 3050, T, "StrAscLetterQualityOff"},
    {1, 3051, T, "StrAscSottolineatoOff"}, {1, 3052, T, "StrAscCustomAOff"},   {1, 3053, T, "StrAscCustomBOff"},
    {1, 3054, T, "StrAscCustomCOff"}};
constexpr Voce Catalogo[] = {{1, 3043, G, "", Nessuna, SequenzeOn}, {1, 3044, G, "", Nessuna, SequenzeOff}};

// A document's identity, and the state, activity and error of a service.
constexpr Voce Identita[] = {{0, 3006, T, "Id"}, {0, 3007, T, "Funzione"}, {0, 3008, T, "Descrizione"}};
constexpr Voce Testa[] = {{0, 3200, T, "Stato/Descrizione"}, {0, 3201, T, "Attivita/Descrizione"},
                          {0, 3202, T, "Errore/Descrizione"}};
constexpr Voce TestaSenzaErrore[] = {{0, 3200, T, "Stato/Descrizione"}, {0, 3201, T, "Attivita/Descrizione"}};

// The "Specifiche" of the documents: the part every kind shares up to the user, then the part
// after it; the kinds differ in the user's folder, the e-mail options and the output file.
constexpr Voce SpecificheInizio[] = {
    {0, 3015, T, "Sigla"}, {0, 3361, T, "DittaTarquel"}, {0, 3016, T, "DittaOrigine"}, {0, 3017, T, "Ditta"},
    {0, 3018, T, "Suddivisione"}, {0, 3019, G, "Lingua", Nessuna, Cod}, {0, 3167, T, "TipologiaTarquel"},
    {0, 3020, T, "FormatoPagina"}};
constexpr Voce UtenteBreve[] = {{1, 3021, T, "Utente"}, {1, 3008, T, "UtenteDescrizione"}};
constexpr Voce UtenteConCartella[] = {{1, 3021, T, "Utente"}, {1, 3008, T, "UtenteDescrizione"},
                                      {1, 3269, T, "UtenteCartella", Percorso}};
constexpr Voce SpecificheDate[] = {{0, 3012, T, "Ip"}, {0, 3022, T, "DataOriginale"}, {0, 3023, T, "Data"},
                                   {0, 3024, T, "RighePagina"}};
constexpr Voce SpecificheAspetto[] = {{0, 3025, G, "Intestazione", Nessuna, Cod}, {0, 3026, T, "OttimizzaAreaPagina"},
                                      {0, 3027, T, "LetturaFacilitata"}, {0, 3028, G, "Tipo", Nessuna, Cod}};
constexpr Voce SpecificheStato[] = {{0, 3029, G, "Errore", Nessuna, Cod}, {0, 3030, G, "Bloccato", Nessuna, Cod},
                                    {0, 3033, G, "FileIntestazione", Nessuna, File},
                                    {0, 3034, G, "FileCorpo", Nessuna, File},
                                    {0, 3035, G, "FileScript", Nessuna, File}};
constexpr Voce CatalogoSorgente[] = {{0, 3041, G, "CatalogoSorgente", Nessuna, Catalogo}};

constexpr Voce Specifiche[] = {
    {1, 0, I, "", Nessuna, SpecificheInizio}, {1, 3021, G, "", Nessuna, UtenteBreve},
    {1, 0, I, "", Nessuna, SpecificheDate},   {1, 0, I, "", Nessuna, SpecificheAspetto},
    {1, 0, I, "", Nessuna, SpecificheStato},  {1, 0, I, "", Nessuna, CatalogoSorgente}};
constexpr Voce SpecificheStampa[] = {
    {1, 0, I, "", Nessuna, SpecificheInizio},  {1, 3021, G, "", Nessuna, UtenteConCartella},
    {1, 0, I, "", Nessuna, SpecificheDate},    {1, 0, I, "", Nessuna, SpecificheAspetto},
    {1, 0, I, "", Nessuna, SpecificheStato},   {1, 3038, G, "FileDiretto", Nessuna, File},
    {1, 0, I, "", Nessuna, CatalogoSorgente}};
constexpr Voce SpecificheEmail[] = {
    {1, 0, I, "", Nessuna, SpecificheInizio},     {1, 3021, G, "", Nessuna, UtenteBreve},
    {1, 0, I, "", Nessuna, SpecificheDate},       {1, 3336, T, "SoloAllegati"},
    {1, 0, I, "", Nessuna, SpecificheAspetto},    {1, 3348, G, "ModalitaErrori", Nessuna, Cod},
    {1, 3327, G, "TipoEmail", Nessuna, Cod},      {1, 0, I, "", Nessuna, SpecificheStato},
    {1, 3036, G, "FilePdf", Nessuna, File},       {1, 0, I, "", Nessuna, CatalogoSorgente}};
constexpr Voce SpecificheTiff[] = {
    {1, 0, I, "", Nessuna, SpecificheInizio}, {1, 3021, G, "", Nessuna, UtenteBreve},
    {1, 0, I, "", Nessuna, SpecificheDate},   {1, 0, I, "", Nessuna, SpecificheAspetto},
    {1, 0, I, "", Nessuna, SpecificheStato},  {1, 3037, G, "FileTif", Nessuna, File},
    {1, 0, I, "", Nessuna, CatalogoSorgente}};
constexpr Voce SpecifichePdf[] = {
    {1, 0, I, "", Nessuna, SpecificheInizio}, {1, 3021, G, "", Nessuna, UtenteBreve},
    {1, 0, I, "", Nessuna, SpecificheDate},   {1, 0, I, "", Nessuna, SpecificheAspetto},
    {1, 0, I, "", Nessuna, SpecificheStato},  {1, 3036, G, "FilePdf", Nessuna, File},
    {1, 0, I, "", Nessuna, CatalogoSorgente}};

// The queue and its stage dates, per kind.
constexpr Voce CodaInizio[] = {{0, 3009, T, "Codice"}, {0, 3008, T, "Descrizione"}, {0, 3056, T, "DataInserimento"}};
constexpr Voce CodaStampa[] = {{1, 0, I, "", Nessuna, CodaInizio}, {1, 3065, T, "DataDaStampare"},
                               {1, 3066, T, "DataInStampa"}, {1, 3071, T, "DataElaborazione"}};
constexpr Voce CodaEmail[] = {{1, 0, I, "", Nessuna, CodaInizio},        {1, 3059, T, "DataDaConvertirePdf"},
                              {1, 3060, T, "DataInConversionePdf"},     {1, 3063, T, "DataDaTrasmettere"},
                              {1, 3064, T, "DataInTrasmissione"},       {1, 3065, T, "DataDaStampare"},
                              {1, 3066, T, "DataInStampa"},             {1, 3071, T, "DataElaborazione"}};
constexpr Voce CodaFax[] = {{1, 0, I, "", Nessuna, CodaInizio},     {1, 3061, T, "DataDaConvertireTiff"},
                            {1, 3062, T, "DataInConversioneTiff"}, {1, 3063, T, "DataDaTrasmettere"},
                            {1, 3064, T, "DataInTrasmissione"},    {1, 3065, T, "DataDaStampare"},
                            {1, 3066, T, "DataInStampa"},          {1, 3067, T, "DataDaNotificare"},
                            {1, 3068, T, "DataInNotifica"},        {1, 3071, T, "DataElaborazione"}};
constexpr Voce CodaPubblicazione[] = {{1, 0, I, "", Nessuna, CodaInizio},  {1, 3059, T, "DataDaConvertirePdf"},
                                      {1, 3060, T, "DataInConversionePdf"}, {1, 3069, T, "DataDaPubblicare"},
                                      {1, 3070, T, "DataInPubblicazione"},  {1, 3071, T, "DataElaborazione"}};
constexpr Voce CodaAnteprima[] = {{1, 0, I, "", Nessuna, CodaInizio}, {1, 3057, T, "DataDaGenerare"},
                                  {1, 3058, T, "DataInGenerazione"}, {1, 3071, T, "DataElaborazione"}};

// Fax numbers, mail senders and SMTP servers of the documents.
constexpr Voce NumeroFax[] = {{1, 3105, T, "NumeroEsteso"}, {1, 3106, T, "PrefissoInternazionale"},
                              {1, 3107, T, "PrefissoLocale"}, {1, 3074, T, "Numero"}};
constexpr Voce Mittente[] = {{1, 3032, T, "NomiVisualizzati"}, {1, 3100, T, "IndirizziEmail"},
                             {1, 3165, T, "IndirizzoRisposta"}};
constexpr Voce Destinatario[] = {{1, 3032, T, "NomiVisualizzati"}, {1, 3100, T, "IndirizziEmail"}};
constexpr Voce Account[] = {{1, 3009, T, "Codice"}, {1, 3008, T, "Descrizione"}, {1, 2011, T, "Account"},
                            {1, 3098, T, "Password"}};
constexpr Voce AccountUtente[] = {{1, 3009, T, "Codice"}, {1, 3008, T, "Descrizione"}, {1, 3021, T, "Account"},
                                  {1, 3098, T, "Password"}};
constexpr Voce Smtp[] = {{1, 3094, T, "Server"}, {1, 3095, T, "Porta"}, {1, 3344, T, "Ssl"}, {1, 3096, T, "Dominio"},
                         {1, 3097, G, "Autenticazione", Nessuna, Account}};
constexpr Voce SmtpFax[] = {{1, 3094, T, "Server"}, {1, 3095, T, "Porta"}, {1, 3344, T, "Ssl"}, {1, 3096, T, "Dominio"},
                            {1, 3097, G, "Autenticazione", Nessuna, AccountUtente}};
constexpr Voce FinestraInvio[] = {{0, 3110, T, "OraInizio"}, {0, 3111, T, "OraFine"}, {0, 3090, T, "ProssimoTentativo"},
                                  {0, 3091, T, "TentativiEffettuati"}};
constexpr Voce ParametriFax[] = {{1, 3116, T, "Ecm"}, {1, 3117, T, "Bft"}, {1, 3118, T, "Pagina/Larghezza"},
                                 {1, 3119, T, "Pagina/Lunghezza"}, {1, 3120, T, "Velocita"}, {1, 3121, T, "Compressione"},
                                 {1, 3122, T, "Risoluzione"}, {1, 3123, T, "Colore/Gestione"},
                                 {1, 3124, T, "Colore/Profondita"}};
constexpr Voce TrasmissioneFax[] = {{1, 0, I, "", Nessuna, FinestraInvio}, {1, 3112, T, "Dispositivo"},
                                    {1, 3029, T, "Errore"}, {1, 3113, T, "TrmStatus"}, {1, 3114, T, "EcmAttivo"},
                                    {1, 3092, T, "Priorita"}, {1, 3115, G, "Parametri", Nessuna, ParametriFax}};
constexpr Voce TrasmissioneBreve[] = {{1, 0, I, "", Nessuna, FinestraInvio}};
constexpr Voce Frontespizio[] = {{1, 3109, T, "Inviare"}};

// The print settings of the print and preview documents.
constexpr Voce DimensioneDriver[] = {{1, 3009, T, "Codice"}, {1, 3008, T, "Descrizione"}, {1, 3345, T, "PaperSize"}};
constexpr Voce Diretta[] = {{1, 3131, T, "FinePagina"}, {1, 3132, T, "FoglioBianco"}, {1, 3133, T, "RigheBianche"}};
constexpr Voce Formato[] = {{0, 3077, G, "Dimensione", Nessuna, Cod}, {0, 3078, G, "Orientamento", Nessuna, Cod}};
constexpr Voce StampaAnteprima[] = {{0, 3077, G, "Dimensione", Nessuna, Cod},   {0, 3078, G, "Orientamento", Nessuna, Cod},
                                    {0, 3079, G, "Alimentazione", Nessuna, Cod}, {0, 3080, G, "Fascicolazione", Nessuna, Cod},
                                    {0, 3081, G, "FronteRetro", Nessuna, Cod}};

// ---------------------------------------------------------------- document sheets (39-45)

constexpr Voce DocAnteprima[] = {
    {0, 3000, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 2, G, "Client"},
    {2, 3012, T, "Ip"},
    {1, 3013, G, "Intestatario", Nessuna, Cod},
    {1, 3014, G, "", Nessuna, Specifiche},
    {1, 3055, G, "Coda", Nessuna, CodaAnteprima},
    {1, 3072, T, "Versione"},
    {0, 3073, G, ""},
    {1, 3074, T, "Numero"},
    {1, 3075, T, "Stampante"},
    {1, 3076, T, "Copie"},
    {1, 0, I, "", Nessuna, StampaAnteprima},
};

constexpr Voce StampaDoc[] = {{1, 3260, T, "Numero"}, {1, 3075, T, "Stampante"}, {1, 3076, T, "Copie"}};

constexpr Voce DocStampa[] = {
    {0, 3001, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 3128, G, "", Nessuna, StampaDoc},
    {1, 3014, G, "", Nessuna, SpecificheStampa},
    {1, 3055, G, "Coda", Nessuna, CodaStampa},
    {1, 3077, G, "Dimensione", Nessuna, DimensioneDriver},
    {1, 3078, G, "Orientamento", Nessuna, Cod},
    {1, 3079, G, "Alimentazione", Nessuna, Cod},
    {1, 3080, G, "Fascicolazione", Nessuna, Cod},
    {1, 3081, G, "FronteRetro", Nessuna, Cod},
    {1, 3346, G, "ModalitaColore", Nessuna, Cod},
    {1, 3129, G, "Pinzatura", Nessuna, Cod},
    {1, 3130, G, "Diretta", Nessuna, Diretta},
    {2, 3042, G, "CatalogoDestinazione", Nessuna, Catalogo},
    {1, 3072, T, "Versione"},
};

constexpr Voce MessaggioEmail[] = {{1, 3360, E, "Messaggio"}};
constexpr Voce TrasmissioneEmail[] = {{1, 3090, T, "ProssimoTentativo"}, {1, 3091, T, "TentativiEffettuati"},
                                      {1, 3092, T, "Priorita"}};
constexpr Voce NotificaEmail[] = {{1, 3101, T, "Notificare"}, {1, 3102, T, "Email"}, {1, 3103, T, "ConfermaLettura"}};

constexpr Voce DocEmail[] = {
    {0, 3002, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 3082, T, "Oggetto"},
    {1, 3083, G, "Da", Nessuna, Mittente},
    {1, 3084, G, "A", Nessuna, Destinatario},
    {1, 3085, G, "Cc", Nessuna, Destinatario},
    {1, 3086, G, "Ccn", Nessuna, Destinatario},
    {1, 3087, G, "", Nessuna, MessaggioEmail},
    {1, 3203, E, "Allegati/List", Percorso},
    {1, 4013, E, "Links/List", Nessuna, {}, "Links/Titolo"},
    {1, 3089, G, "Trasmissione", Nessuna, TrasmissioneEmail},
    {1, 3013, G, "Intestatario", Nessuna, Cod},
    {1, 3093, G, "Smtp", Nessuna, Smtp},
    {1, 3099, G, "Notifica", Nessuna, NotificaEmail},
    {1, 3014, G, "", Nessuna, SpecificheEmail},
    {1, 3055, G, "Coda", Nessuna, CodaEmail},
    {1, 3077, G, "Dimensione", Nessuna, Cod},
    {1, 3078, G, "Orientamento", Nessuna, Cod},
    {1, 3072, T, "Versione"},
};

constexpr Voce NotificaFax[] = {{1, 3101, T, "Notificare"}, {1, 3102, T, "Email"},
                                {1, 3093, G, "Smtp", Nessuna, SmtpFax}};
constexpr Voce Cedolino[] = {{1, 3126, T, "Stampare"}, {1, 3075, T, "Stampante"}};

constexpr Voce DocFax[] = {
    {0, 3003, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 3082, T, "Oggetto"},
    {1, 3104, G, "NumeroFax", Nessuna, NumeroFax},
    {1, 3108, G, "Frontespizio", Nessuna, Frontespizio},
    {1, 3089, G, "Trasmissione", Nessuna, TrasmissioneFax},
    {1, 3013, G, "Intestatario", Nessuna, Cod},
    {1, 3099, G, "Notifica", Nessuna, NotificaFax},
    {1, 3125, G, "Cedolino", Nessuna, Cedolino},
    {1, 3014, G, "", Nessuna, SpecificheTiff},
    {1, 3055, G, "Coda", Nessuna, CodaFax},
    {1, 0, I, "", Nessuna, Formato},
    {1, 3072, T, "Versione"},
};

constexpr Voce DocPubblicazione[] = {
    {0, 3004, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 3127, G, ""},
    {2, 3039, E, "Collegati"},
    {2, 3040, G, "Pubblicazione/FilePubblicazione", Nessuna, File},
    {1, 3014, G, "", Nessuna, SpecifichePdf},
    {1, 3055, G, "Coda", Nessuna, CodaPubblicazione},
    {1, 0, I, "", Nessuna, Formato},
    {1, 3081, G, "FronteRetro", Nessuna, Cod},
    {1, 3072, T, "Versione"},
};

constexpr Voce DocPFax[] = {
    {0, 3005, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 3082, T, "Oggetto"},
    {1, 3104, G, "NumeroFax", Nessuna, NumeroFax},
    {1, 3108, G, "Frontespizio", Nessuna, Frontespizio},
    {1, 3089, G, "Trasmissione", Nessuna, TrasmissioneBreve},
    {1, 3013, G, "Intestatario", Nessuna, Cod},
    {1, 3014, G, "", Nessuna, Specifiche},
    {1, 3055, G, "Coda", Nessuna, CodaStampa},
    {1, 0, I, "", Nessuna, Formato},
    {1, 3072, T, "Versione"},
};

constexpr Voce DocEFax[] = {
    {0, 3340, G, ""},
    {1, 0, I, "", Nessuna, Identita},
    {1, 3082, T, "Oggetto"},
    {1, 3104, G, "NumeroFax", Nessuna, NumeroFax},
    {1, 3013, G, "Intestatario", Nessuna, Cod},
    {1, 3083, G, "Da", Nessuna, Mittente},
    {1, 3093, G, "Smtp", Nessuna, Smtp},
    {1, 3014, G, "", Nessuna, SpecificheTiff},
    {1, 3055, G, "Coda", Nessuna, CodaPubblicazione},
    {1, 0, I, "", Nessuna, Formato},
    {1, 3072, T, "Versione"},
};

// ---------------------------------------------------------------- format and signature sheets (46-49)

constexpr Voce Carattere[] = {{1, 3157, T, "Nome"},         {1, 3077, T, "Dimensione"}, {1, 3045, T, "Grassetto"},
                              {1, 3158, T, "Corsivo"},      {1, 3051, T, "Sottolineato"}, {1, 3159, T, "Barrato"},
                              {1, 3160, T, "IgnoraGrassetto"}};
constexpr Voce Caratteri[] = {{1, 3161, G, "DoppiaLarghezza", Nessuna, Carattere}, {1, 3162, G, "Decimi", Nessuna, Carattere},
                              {1, 3049, G, "Dodicesimi", Nessuna, Carattere},     {1, 3163, G, "Quindicesimi", Nessuna, Carattere},
                              {1, 3164, G, "Compresso", Nessuna, Carattere}};
constexpr Voce AreaStampa[] = {{1, 3152, T, "Sinistro"}, {1, 3153, T, "Superiore"}, {1, 3154, T, "Destro"},
                               {1, 3155, T, "Inferiore"}};
constexpr Voce FormatoDitta[] = {{0, 3015, T, "Sigla"}, {0, 3136, T, "Ditta"}, {0, 3018, T, "Suddivisione"}};
constexpr Voce FormatoTesta[] = {{0, 3135, T, "Key"}, {0, 3008, T, "Descrizione"}, {0, 3006, T, "Id"},
                                 {0, 0, I, "", Nessuna, FormatoDitta}, {0, 3019, G, "Lingua", Nessuna, Cod},
                                 {0, 3142, G, "Tipo", Nessuna, Cod}, {0, 3143, T, "ValidoDal"}};
constexpr Voce FormatoPagina[] = {{0, 3077, G, "Dimensione", Nessuna, Cod},   {0, 3078, G, "Orientamento", Nessuna, Cod},
                                  {0, 3149, G, "Elaborazione", Nessuna, Cod}, {0, 3150, G, "StileTesto", Nessuna, Cod},
                                  {0, 3151, G, "AreaStampa", Nessuna, AreaStampa}, {0, 3156, G, "", Nessuna, Caratteri}};
constexpr Voce Modifica[] = {{0, 3137, T, "UltimaModifica"}, {0, 3138, T, "Riestratto"}};

constexpr Voce FormatoFronte[] = {
    {0, 3139, G, ""},
    {1, 0, I, "", Nessuna, FormatoTesta},
    {1, 3144, T, "KeyRetro"},
    {1, 3145, T, "RigheModulo"},
    {1, 3146, T, "CaratteriModulo"},
    {1, 3147, T, "NuovaPagina"},
    {1, 3148, T, "AreaPaginaOttimizzabile"},
    {1, 0, I, "", Nessuna, FormatoPagina},
    {1, 0, I, "", Nessuna, Modifica},
    {1, 3166, T, "CopieDelegabili"},
};

constexpr Voce FormatoRetro[] = {
    {0, 3140, G, ""},
    {1, 0, I, "", Nessuna, FormatoTesta},
    {1, 3145, T, "RigheModulo"},
    {1, 3146, T, "CaratteriModulo"},
    {1, 3148, T, "AreaPaginaOttimizzabile"},
    {1, 0, I, "", Nessuna, FormatoPagina},
    {1, 0, I, "", Nessuna, Modifica},
    {1, 3166, T, "CopieDelegabili"},
};

constexpr Voce FormatoFrontespizio[] = {
    {0, 3141, G, ""},
    {1, 3135, T, "Key"},
    {1, 3006, T, "Id"},
    {1, 3008, T, "Descrizione"},
    {1, 0, I, "", Nessuna, FormatoDitta},
    {1, 3019, G, "Lingua", Nessuna, Cod},
    {1, 3142, G, "Tipo", Nessuna, Cod},
    {1, 3143, T, "ValidoDal"},
    {1, 0, I, "", Nessuna, Modifica},
};

constexpr Voce FirmaEmail[] = {
    {0, 3134, G, ""},
    {1, 3135, T, "Key"},
    {1, 3008, T, "Descrizione"},
    {1, 0, I, "", Nessuna, FormatoDitta},
    {1, 3021, T, "Utente"},
    {1, 3019, G, "Lingua", Nessuna, Cod},
    {1, 0, I, "", Nessuna, Modifica},
};

// ---------------------------------------------------------------- service sheets (1-38)

constexpr Voce StampantiInutilizzabili[] = {{1, 3243, T, "RimuoviAutomaticamente"}, {1, 3244, T, "RimuoviDopoGiorni"}};
constexpr Voce Server[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3240, T, "LinguaPredefinita"},
    {1, 3241, T, "ArchiviaEliminati"},
    {1, 3242, G, "StampantiInutilizzabili", Nessuna, StampantiInutilizzabili},
};

constexpr Voce Formati[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3326, D12, "SrvFormati/PubblicazioneDatabase"}};
constexpr Voce Firme[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3326, D12, "PubblicazioneDatabase"}};

constexpr Voce SignalR[] = {{1, 3407, T, "Connected"}, {1, 3350, T, "ConnessioniAttive"},
                            {1, 3202, T, "Errore/Descrizione"}, {1, 3408, T, "FileLog", FileLog}};
constexpr Voce Anteprima[] = {{1, 3409, T, "Enabled"}, {1, 3404, T, "ServerUrl"}, {1, 3405, T, "VirtualUpload"},
                              {1, 3406, G, "SrvSignalR", Nessuna, SignalR}};
constexpr Voce PxNetPreview[] = {{1, 3403, T, "PxNetPreviewLocal/NomeServer"},
                                 {1, 3401, G, "PxNetPreviewLocal", Nessuna, Anteprima},
                                 {1, 3402, G, "PxNetPreviewGlobal", Nessuna, Anteprima}};
constexpr Voce Anteprime[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3204, T, "SrvTcpTrasmissione/IndirizzoInAscolto"},
    {1, 3205, T, "SrvTcpTrasmissione/PortaInAscolto"},
    {1, 3350, T, "SrvTcpTrasmissione/ConnessioniAttive"},
    {1, 3362, T, "TerminalServer"},
    {1, 3400, G, "", Nessuna, PxNetPreview},
};

constexpr Voce Stampe[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3234, T, "AvvioStampantiMultiplo"},
    {1, 3331, T, "MaxJobsOpened"},
    {1, 3233, T, "StampantiInFunzione"}, // the printers at work, each with its job open
    {1, 3337, T, "PercorsoTxtOutput", Percorso},
    {1, 3338, T, "PercorsoPdfOutput", Percorso},
    {1, 3245, T, "PercorsoPdf", Percorso},
    {1, 3270, T, "TimeOutPdf"},
};

constexpr Voce Email[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3239, T, "StampantePredefinita"},
                          {1, 3245, T, "PercorsoPdf", Percorso}};

constexpr Voce Modem[] = {{1, 3095, G, "", Nessuna, {}, "Porta"},
                          {2, 3237, T, "DescrizioneClasse"}};
constexpr Voce Fax[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3235, T, "PercorsoPubblicazioneRiepilogo", Percorso},
    {1, 3236, E, "InfoFaxModems", Nessuna, Modem},
    {1, 3238, T, "PercorsoPubblicazioneFax", Percorso},
};

constexpr Voce Pbl[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3245, T, "PercorsoPdf", Percorso},
                        {1, 3298, T, "PercorsoPubblicazione", Percorso}};
constexpr Voce SoloTesta[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}};
constexpr Voce Importa[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3246, T, "PercorsiHpx", Percorso}};
constexpr Voce WebUpdate[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3248, T, "VersioneInstallataEstesa"},
    {1, 3249, T, "PercorsoPubblicazioneAggiornamenti", Percorso},
    {1, 3250, T, "VersioneAggiornamentoQorvMsi"},
    {1, 3251, T, "VersioneAggiornamentoQorvMsp"},
};

// Document folders: the counts per queue and the minutes a document stays in a final queue.
constexpr Voce ContaAnteprime[] = {{1, 3215, T, "DaGenerare"}, {1, 3216, T, "InGenerazione"}, {1, 3229, T, "Generati"},
                                   {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce TimeOutAnteprime[] = {{1, 3229, T, "Generati"}, {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce ContaStampe[] = {{1, 3209, T, "DaStampare"}, {1, 3210, T, "InStampa"}, {1, 3226, T, "Stampati"},
                                {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce TimeOutStampe[] = {{1, 3226, T, "Stampati"}, {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce ContaEmail[] = {{1, 3211, T, "DaConvertire"},  {1, 3212, T, "InConversione"}, {1, 3217, T, "DaTrasmettere"},
                               {1, 3218, T, "InTrasmissione"}, {1, 3221, T, "DaStampare"},   {1, 3222, T, "InStampa"},
                               {1, 3227, T, "Trasmessi"},     {1, 3231, T, "Respinti"},      {1, 3232, T, "Scartati"}};
constexpr Voce TimeOutEmail[] = {{1, 3227, T, "Trasmessi"}, {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce ContaFax[] = {{1, 3213, T, "DaConvertire"},  {1, 3214, T, "InConversione"}, {1, 3219, T, "DaTrasmettere"},
                             {1, 3220, T, "InTrasmissione"}, {1, 3225, T, "DaConfermare"},  {1, 3209, T, "DaStampare"},
                             {1, 3210, T, "InStampa"},       {1, 3221, T, "DaNotificare"},  {1, 3222, T, "InNotifica"},
                             {1, 3228, T, "Trasmessi"},      {1, 3231, T, "Respinti"},      {1, 3232, T, "Scartati"}};
constexpr Voce TimeOutFax[] = {{1, 3228, T, "Trasmessi"}, {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce ContaPbl[] = {{1, 3211, T, "DaConvertire"}, {1, 3212, T, "InConversione"}, {1, 3223, T, "DaPubblicare"},
                             {1, 3224, T, "InPubblicazione"}, {1, 3230, T, "Pubblicati"}, {1, 3231, T, "Respinti"},
                             {1, 3232, T, "Scartati"}};
constexpr Voce TimeOutPbl[] = {{1, 3230, T, "Pubblicati"}, {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};
constexpr Voce ContaEFax[] = {{1, 3213, T, "DaConvertire"}, {1, 3214, T, "InConversione"}, {1, 3219, T, "DaPubblicare"},
                              {1, 3220, T, "InPubblicazione"}, {1, 3228, T, "Pubblicati"}, {1, 3231, T, "Respinti"},
                              {1, 3232, T, "Scartati"}};
constexpr Voce TimeOutEFax[] = {{1, 3228, T, "Pubblicati"}, {1, 3231, T, "Respinti"}, {1, 3232, T, "Scartati"}};

constexpr Voce DocAnteprime[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, TestaSenzaErrore},
                                 {1, 3208, G, "Anteprime", Nessuna, ContaAnteprime},
                                 {1, 3207, G, "Anteprime/TimeOut", Nessuna, TimeOutAnteprime}};
constexpr Voce DocStampe[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, TestaSenzaErrore},
                              {1, 3208, G, "Stampe", Nessuna, ContaStampe},
                              {1, 3207, G, "Stampe/TimeOut", Nessuna, TimeOutStampe}};
constexpr Voce DocEmailServizio[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa},
                                     {1, 3208, G, "Email", Nessuna, ContaEmail},
                                     {1, 3207, G, "Email/TimeOut", Nessuna, TimeOutEmail}};
constexpr Voce DocFaxServizio[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3208, G, "Fax", Nessuna, ContaFax},
                                   {1, 3207, G, "Fax/TimeOut", Nessuna, TimeOutFax}};
constexpr Voce DocPblServizio[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3208, G, "Pbl", Nessuna, ContaPbl},
                                   {1, 3207, G, "Pbl/TimeOut", Nessuna, TimeOutPbl}};
constexpr Voce DocPFaxServizio[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, TestaSenzaErrore},
                                    {1, 3208, G, "Fax", Nessuna, ContaStampe},
                                    {1, 3207, G, "Fax/TimeOut", Nessuna, TimeOutStampe}};
constexpr Voce DocEFaxServizio[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa},
                                    {1, 3208, G, "EFax", Nessuna, ContaEFax},
                                    {1, 3207, G, "EFax/TimeOut", Nessuna, TimeOutEFax}};

constexpr Voce Connessione[] = {{1, 3315, T, "Stato/Descrizione"}, {1, 3316, T, "Attivita/Descrizione"},
                                {1, 3317, T, "Errore/Descrizione"}, {1, 3318, T, "VersioneClient"},
                                {1, 3095, T, "PortaRemota"},        {1, 3319, T, "Socket"},
                                {1, 3320, T, "VersioneProtocollo"}};
constexpr Voce Opzioni[] = {{1, 3322, T, "InviaDocumento"}, {1, 3264, T, "EmulaFronteRetro"}, {1, 3359, T, "UsaCompressione"}};
constexpr Voce Utente[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3012, T, "TcpConnessione/IndirizzoRemoto"},
    {1, 3314, G, "TcpConnessione", Nessuna, Connessione},
    {1, 3321, G, "ClientInfo", Nessuna, Opzioni},
    {1, 3268, T, "ProcessId"},
};

// What every printer-driving worker tells of its Windows printer.
constexpr Voce InfoStampante[] = {{0, 3252, T, "InfoStampante/UsableDesc"}, {0, 3253, T, "InfoStampante/StatusDesc"},
                                  {0, 3254, T, "InfoStampante/LastDateUsable"}, {0, 3255, T, "InfoStampante/Jobs"},
                                  {0, 3256, T, "InfoStampante/DriverName"}, {0, 3257, T, "NomeStampanteWindows"}};
constexpr Voce Verifiche[] = {{0, 3266, T, "Verifica"}, {0, 3267, T, "ApiError"}, {0, 3268, T, "ProcessId"}};
constexpr Voce Stampante[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 0, I, "", Nessuna, InfoStampante},
    {1, 3341, T, "InfoStampante/Location"},
    {1, 3258, T, "InfoStampante/PortName"},
    {1, 3259, T, "InfoStampante/PrinterIP"},
    {1, 3351, T, "InfoStampante/PrinterIPToPing"},
    {1, 3342, T, "InfoStampante/Comment"},
    {1, 3260, T, "NumeroTarquel"},
    {1, 3261, T, "Modello/Descrizione"},
    {1, 3262, T, "FronteRetro"},
    {1, 3347, T, "Colore"},
    {1, 3263, T, "Pinzatura"},
    {1, 3264, T, "EmulaFronteRetro"},
    {1, 3265, T, "TipoCopie"},
    {1, 0, I, "", Nessuna, Verifiche},
    {1, 3337, T, "PercorsoFileOutput", Percorso},
    {1, 3338, T, "PercorsoPdfOutput", Percorso},
    {1, 3245, T, "PercorsoPdf", Percorso},
    {1, 3270, T, "TimeOutPdf"},
};
constexpr Voce VmPdf[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 0, I, "", Nessuna, InfoStampante},
    {1, 3258, T, "InfoStampante/PortName"},
    {1, 3343, T, "IntervalloPresenzaPdf"},
    {1, 3270, T, "TimeOutPdf"},
    {1, 3264, T, "EmulaFronteRetro"},
    {1, 0, I, "", Nessuna, Verifiche},
};
constexpr Voce PFaxVm[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 0, I, "", Nessuna, InfoStampante},
    {1, 3258, T, "InfoStampante/PortName"},
    {1, 3262, T, "EmulaFronteRetro"},
    {1, 0, I, "", Nessuna, Verifiche},
};

constexpr Voce OAuth2[] = {{1, 3354, T, "TokenDataScadenza"}, {1, 3355, T, "TokenDataInizio"}, {1, 3356, T, "TokenDataFine"},
                           {1, 3357, T, "TokenException"}, {1, 3358, T, "TokenDebug"}};
constexpr Voce NotificaUtente[] = {{1, 3306, T, "Descrizione"}, {1, 3307, T, "DescrizioneNotificaEsitoUtente"}};
constexpr Voce NotificaAmministratore[] = {{1, 3309, T, "NomeVisualizzatoAmministratore"},
                                           {1, 3310, T, "IndirizzoEmailAmministratore"},
                                           {1, 3307, T, "DescrizioneNotificaEsitoAmministratore"}};
constexpr Voce Notifiche[] = {{1, 3305, G, "", Nessuna, NotificaUtente}, {1, 3308, G, "", Nessuna, NotificaAmministratore}};
constexpr Voce Plugin[] = {{1, 3334, T, "ConfermaLettura"}};
constexpr Voce TrasmissioneSmtp[] = {{1, 3284, T, "IntervalloTrasmissione"}, {1, 3311, T, "PausaSocketError"},
                                     {1, 3285, T, "NumeroTentativiInvio"}, {1, 3286, T, "IntervalloTentativiInvio"}};
constexpr Voce ErroreSmtp[] = {{1, 3009, T, "SrvBkgSmtpErroreCodice"}, {1, 3008, T, "SrvBkgSmtpErroreDescrizione"}};
constexpr Voce ErroreSocket[] = {{1, 3009, T, "WindowsSocketsErrorCodice"}, {1, 3008, T, "WindowsSocketsErrorDescrizione"}};
constexpr Voce SmtpServizio[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3301, T, "DefaultMailServer"},
    {1, 3302, T, "DefaultMailPort"},
    {1, 3349, T, "SSL"},
    {1, 3303, T, "DefaultMailDomain"},
    {1, 3304, T, "Encoding"},
    {1, 3352, G, "OAuth2", Nessuna, OAuth2},
    {1, 3332, G, "Notifica", Nessuna, Notifiche},
    {1, 3333, G, "Plugin", Nessuna, Plugin},
    {1, 3089, G, "", Nessuna, TrasmissioneSmtp},
    {1, 3312, G, "", Nessuna, ErroreSmtp},
    {1, 3313, G, "SocketError", Nessuna, ErroreSocket},
};

constexpr Voce Report[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3299, T, "StampantePredefinita"},
                           {1, 3300, T, "PercorsoCedolini", Percorso}};
constexpr Voce TifVm[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3262, T, "EmulaFronteRetro"}};

constexpr Voce ColoreFax[] = {{1, 3282, T, "DescrizioneGestione"}, {1, 3283, T, "DescrizioneTipo"}};
constexpr Voce ModemFax[] = {{1, 3095, T, "Porta"}, {1, 3237, T, "DescrizioneClasse"}, {1, 3272, T, "Modello"},
                             {1, 3273, T, "Costruttore"}};
constexpr Voce Composizione[] = {{1, 3275, T, "IdLocale"}, {1, 3276, T, "AccessoLineaInterurbana"},
                                 {1, 3277, T, "AccessoLineaUrbana"}, {1, 3106, T, "PrefissoInternazionale"},
                                 {1, 3107, T, "PrefissoLocale"}, {1, 3278, T, "ComposizioneConPause"}};
constexpr Voce Linea[] = {{0, 3112, T, "Dispositivo"}, {0, 3029, T, "Errore/Descrizione"}, {0, 3113, T, "TRMStatus"},
                          {0, 3116, T, "ECM"}, {0, 3117, T, "BFT"}};
constexpr Voce PortaFax[] = {
    {1, 0, I, "", Nessuna, Linea},
    {1, 3118, G, ""},
    {2, 3279, T, "PaginaMin/DescrizioneWidth"}, {2, 3280, T, "PaginaMax/DescrizioneWidth"},
    {1, 3119, G, ""},
    {2, 3279, T, "PaginaMin/DescrizioneLength"}, {2, 3280, T, "PaginaMax/DescrizioneLength"},
    {1, 3121, G, ""},
    {2, 3279, T, "CompressioneMin"}, {2, 3280, T, "CompressioneMax"},
    {1, 3122, G, ""},
    {2, 3279, T, "RisoluzioneMin"}, {2, 3280, T, "RisoluzioneMax"},
    {1, 3281, G, "Colore", Nessuna, ColoreFax},
};
constexpr Voce TrasmissioneFaxVm[] = {
    {1, 3284, T, "IntervalloTrasmissione"}, {1, 3285, T, "NumeroTentativiInvio"}, {1, 3286, T, "IntervalloTentativiInvio"},
    {1, 3287, T, "NumeroTentativiDisattivazioneECM"}, {1, 0, I, "", Nessuna, Linea},
    {1, 3118, T, "Pagina/DescrizioneWidth"}, {1, 3119, T, "Pagina/DescrizioneLength"}, {1, 3121, T, "Compressione"},
    {1, 3122, T, "Risoluzione"}, {1, 3281, G, "Colore", Nessuna, ColoreFax}};
constexpr Voce IntestazioneFax[] = {{1, 3288, T, "Attivata"}, {1, 3289, T, "Altezza"}, {1, 3290, T, "NomeCarattere"},
                                    {1, 3291, T, "DimensioneCarattere"}, {1, 3292, T, "Sinistra"},
                                    {1, 3293, T, "Centrale"}, {1, 3294, T, "Destra"}};
constexpr Voce Altoparlante[] = {{1, 3296, T, "DescrizioneSpeakerModo"}, {1, 3297, T, "DescrizioneSpeakerVolume"}};
constexpr Voce FaxVm[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3271, G, "InfoFaxModem", Nessuna, ModemFax},
    {1, 3274, G, "", Nessuna, Composizione},
    {1, 3095, G, "Porta", Nessuna, PortaFax},
    {1, 3089, G, "Trasmissione", Nessuna, TrasmissioneFaxVm},
    {1, 3025, G, "Intestazione", Nessuna, IntestazioneFax},
    {1, 3295, G, "Speaker", Nessuna, Altoparlante},
};

constexpr Voce NotificaFaxServizio[] = {
    {0, 0, G, ""},
    {1, 0, I, "", Nessuna, Testa},
    {1, 3328, T, "PercorsoNotifiche", Percorso},
    {1, 3305, G, "Notifica", Nessuna, NotificaUtente},
    {1, 3308, G, "Notifica", Nessuna, NotificaAmministratore},
};
constexpr Voce NeFax[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3249, T, "PercorsoNef", Percorso},
                          {1, 3207, T, "TimeOutNef"}};
constexpr Voce PblVm[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 5045, T, "Output"},
                          {1, 3298, T, "PercorsoPubblicazione", Percorso}};
constexpr Voce EFaxVm[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3298, T, "PercorsoPubblicazione", Percorso}};
constexpr Voce FtpSrv[] = {{0, 0, G, ""},
                           {1, 0, I, "", Nessuna, Testa},
                           {1, 3204, T, "IndirizzoLocale"},
                           {1, 3205, T, "PortaLocale"},
                           {1, 3021, T, "Utente"},
                           {1, 3098, T, "Password"},
                           {1, 3325, T, "PercorsoFtpRoot", Percorso}};
constexpr Voce ConnessioneFtp[] = {{1, 3315, T, "ConnessioneStato"}, {1, 3339, T, "Passive"}};
constexpr Voce TipoProxy[] = {{1, 3009, T, "TipoCodice"}, {1, 3008, T, "TipoDescrizione"}};
constexpr Voce Proxy[] = {{1, 3324, T, "Host"}, {1, 3095, T, "Porta"}, {1, 3021, T, "Utente"},
                          {1, 3028, G, "", Nessuna, TipoProxy}};
constexpr Voce FtpCln[] = {{0, 0, G, ""}, {1, 0, I, "", Nessuna, Testa}, {1, 3314, G, "", Nessuna, ConnessioneFtp},
                           {1, 3323, G, "Proxy", Nessuna, Proxy}};
constexpr Voce WebSrv[] = {{0, 0, G, ""},
                           {1, 0, I, "", Nessuna, Testa},
                           {1, 3204, T, "IndirizzoLocale"},
                           {1, 3205, T, "PortaLocale"},
                           {1, 3329, T, "MaxIdleTime"},
                           {1, 3330, T, "PercorsoWebRoot", Percorso}};

constexpr Layout Tabella[] = {
    {1, "SrvServer", nullptr, "", Server},
    {2, "SrvFormati", nullptr, "", Formati},
    {3, "SrvFirme", nullptr, "", Firme},
    {4, "SrvAnteprime", nullptr, "", Anteprime},
    {5, "SrvStampe", nullptr, "", Stampe},
    {6, "SrvEmail", nullptr, "", Email},
    {7, "SrvFax", nullptr, "", Fax},
    {8, "SrvPbl", nullptr, "", Pbl},
    {9, "SrvPFax", nullptr, "", SoloTesta},
    {10, "SrvEFax", nullptr, "", SoloTesta},
    {11, "SrvFtp", nullptr, "", SoloTesta},
    {12, "SrvImporta", nullptr, "", Importa},
    {13, "SrvWebUpdate", nullptr, "", WebUpdate},
    {14, "SrvDocAnteprime", nullptr, "", DocAnteprime},
    {15, "SrvDocStampe", nullptr, "", DocStampe},
    {16, "SrvDocEmail", nullptr, "", DocEmailServizio},
    {17, "SrvDocFax", nullptr, "", DocFaxServizio},
    {18, "SrvDocPbl", nullptr, "", DocPblServizio},
    {19, "SrvDocPFax", nullptr, "", DocPFaxServizio},
    {20, "SrvDocEFax", nullptr, "", DocEFaxServizio},
    {21, "SrvUtente", nullptr, "", Utente},
    {22, "SrvStampante", nullptr, "", Stampante},
    {23, "SrvEmlPdfVm", nullptr, "", VmPdf},
    {24, "SrvSmtp", nullptr, "", SmtpServizio},
    {25, "SrvReportEmail", nullptr, "", Report},
    {26, "SrvTifVm", nullptr, "", TifVm},
    {27, "SrvFaxVm", nullptr, "", FaxVm},
    {28, "SrvReportFax", nullptr, "", Report},
    {29, "SrvNotificaFax", nullptr, "", NotificaFaxServizio},
    {30, "SrvNeFax", nullptr, "", NeFax},
    {31, "SrvPblPdfVm", nullptr, "", VmPdf},
    {32, "SrvPblVm", nullptr, "", PblVm},
    {33, "SrvPFaxVm", nullptr, "", PFaxVm},
    {34, "SrvEFaxPdfVm", nullptr, "", VmPdf},
    {35, "SrvEFaxVm", nullptr, "", EFaxVm},
    {36, "SrvFtpSrv", nullptr, "", FtpSrv},
    {37, "SrvFtpCln", nullptr, "", FtpCln},
    {38, "SrvWebSrv", nullptr, "", WebSrv},
    {39, "CaricaProprietaDocAnterpima", "Anteprima", "Proprieta", DocAnteprima},
    {40, "CaricaProprietaDocStampa", "Stampa", "Proprieta", DocStampa},
    {41, "CaricaProprietaDocEmail", "Email", "Proprieta", DocEmail},
    {42, "CaricaProprietaDocFax", "Fax", "Proprieta", DocFax},
    {43, "CaricaProprietaDocPbl", "Pbl", "Proprieta", DocPubblicazione},
    {44, "CaricaProprietaDocPFax", "PFax", "Proprieta", DocPFax},
    {45, "CaricaProprietaDocEFax", "EFax", "Proprieta", DocEFax},
    {46, "CaricaProprietaFormatoFronte", "Fronte", "Proprieta", FormatoFronte},
    {47, "CaricaProprietaFormatoRetro", "Retro", "Proprieta", FormatoRetro},
    {48, "CaricaProprietaFormatoFrontespizio", "Frontespizio", "Proprieta", FormatoFrontespizio},
    {49, "CaricaProprietaFirmaEmail", "Firma", "Proprieta", FirmaEmail},
};

std::string Unisci(const std::string& base, const char* percorso)
{
    if (!percorso || !*percorso)
        return base;
    return base.empty() ? std::string(percorso) : base + '/' + percorso;
}

// Appends `voci` to `uscita`: levels shifted by `scarto`, paths under `base`. A group's children
// (its fragment, then the entries that follow at deeper levels) sit under the group's path.
void Espandi(std::span<const Voce> voci, int scarto, const std::string& base, std::vector<VoceEspansa>& uscita)
{
    // The path each open level's children start from.
    std::vector<std::string> basi(16, base);
    for (const Voce& v : voci) {
        const int livello = v.Livello + scarto;
        const std::string& sopra = v.Livello == 0 ? base : basi[v.Livello - 1];
        if (v.Genere == Tipo::Inserto) {
            Espandi(v.Figli, livello - (v.Figli.empty() ? 0 : v.Figli.front().Livello), Unisci(sopra, v.Percorso), uscita);
            continue;
        }
        VoceEspansa e;
        e.Livello = livello;
        e.Testo = v.Testo;
        e.Genere = v.Genere;
        e.Azione = v.Azione;
        const std::string proprio = Unisci(sopra, v.Percorso);
        if (v.Genere == Tipo::Gruppo) {
            basi[v.Livello] = proprio;
            e.Percorso = v.Secondo ? Unisci(sopra, v.Secondo) : std::string();
            uscita.push_back(std::move(e));
            Espandi(v.Figli, livello, proprio, uscita);
            continue;
        }
        e.Percorso = proprio;
        if (v.Genere == Tipo::Elenco) {
            // The template's paths stay relative to each entry; a group value on the list itself.
            Espandi(v.Figli, 0, {}, e.Modello);
            e.Secondo = v.Secondo ? Unisci(sopra, v.Secondo) : std::string();
        } else if (v.Secondo) {
            e.Secondo = Unisci(sopra, v.Secondo);
        }
        basi[v.Livello] = proprio;
        uscita.push_back(std::move(e));
    }
}

} // namespace

std::span<const Layout> Layouts() { return Tabella; }

const Layout* Trova(int numero)
{
    for (const Layout& l : Tabella)
        if (l.Numero == numero)
            return &l;
    return nullptr;
}

const Layout* DelCodice(QStringView codice)
{
    for (const Layout& l : Tabella)
        if (codice == QLatin1StringView(l.Codice))
            return &l;
    return nullptr;
}

const Layout* DellOggetto(QStringView tipo)
{
    for (const Layout& l : Tabella)
        if (l.Oggetto && tipo == QLatin1StringView(l.Oggetto))
            return &l;
    return nullptr;
}

const std::vector<VoceEspansa>& Espansa(int numero)
{
    static const std::array<std::vector<VoceEspansa>, std::size(Tabella)> espanse = [] {
        std::array<std::vector<VoceEspansa>, std::size(Tabella)> a;
        for (std::size_t i = 0; i < std::size(Tabella); ++i)
            Espandi(Tabella[i].Voci, 0, {}, a[i]);
        return a;
    }();
    static const std::vector<VoceEspansa> nessuna;
    for (std::size_t i = 0; i < std::size(Tabella); ++i)
        if (Tabella[i].Numero == numero)
            return espanse[i];
    return nessuna;
}

std::vector<std::string> Percorsi(int numero)
{
    std::vector<std::string> percorsi;
    const auto aggiungi = [&percorsi](const std::string& p) {
        if (!p.empty())
            percorsi.push_back(p);
    };
    for (const VoceEspansa& v : Espansa(numero)) {
        aggiungi(v.Percorso);
        aggiungi(v.Secondo);
    }
    return percorsi;
}

} // namespace modSchede
