#pragma once
// The option store: firm-wide options in the table Opzioni (NOME, VALORE as
// text), machine options in the settings store, and the globals that hold
// them for the session. Everyone reads the globals; the table is read once at
// start and written by the options screen.

#include <QString>
#include <QStringList>

// The value of an option, or an empty text (after an error report) when the
// row is missing or Null.
QString getOpzione(const QString& nome);

// Updates the option, or inserts it when it is new.
void setOpzione(const QString& nome, const QString& valore);

struct OptionGlobals
{
    // Firm options, in the order in which they are loaded.
    QString amministratore;
    int tipoStampaDistinta = 0; // 0 completa, 1 come unico prodotto, 2 come composizione
    int ivaPredRigaLibera = 0;  // key Iva
    int catPrezziNetti = 0;     // key CategorieSconti
    int clientePredefinito = 0; // key Anagrafiche
    int tipoDocVb = 0;          // key TipoDocumenti
    int causalePagVb = 0;       // key Causali
    QString annoCorrente;
    int contoClienti = 0;   // key PianoConti
    int contoFornitori = 0; // key PianoConti
    int decimaliDopo = 0;
    QString venditoreChar; // "%" when empty
    QString distintaBase;  // first character of a kit row's code
    QString rigaLibera;    // first character of a free row's code
    int gruppoPredefinito = 0;
    int gruppoProdInteg = 0;
    int gruppoProdCL = 0;
    int marca = 0;
    int fornitore = 0;
    int tipoDocProd = 0;
    int docConversione = 0;
    int docConversioneDDT = 0;
    int pagamentoVB = 0;
    bool prezzoMedio = false;
    int mesiPrezzoMedio = 0;
    bool bloccoPN = false;
    bool descPN = false;
    bool fidoAllaData = false;
    bool noShowCptEstratto = false;
    bool mostraTotaleRigaMov = false;
    bool usaPrezziIva = false;
    QString piePagina;
    int ridIvaProdotti = 0;
    int ridUMProdotti = 0;
    int ridMarcaProdotti = 0;
    int ridCollezioneProdotti = 0;
    QString reportElencoSpeciale;
    int numeratoreElencoSpeciale = 0;
    bool sottoScorta = false;
    bool bloccaSottoScorta = false;
    bool avvisaSottoScorta = false;
    bool venditeGiorniDiversi = false;
    bool bloccaVenditeGiorniDiversi = false;
    bool avvisaVenditeGiorniDiversi = false;
    bool lockVBEdit = false;
    bool lockVBPrezzo = false;
    bool venditoriObbligatori = false;
    bool venditoriBlocco = false;
    bool pagatoAltriClienti = false;
    bool prezzoListino = false;

    // Machine options.
    QString laserChar;
    QString clienteChar;
    bool usaGrassetto = false;
    bool mostraClienteVB = false;
    bool ignoraVerificaCodiceProdotto = false;
    bool checkUpgrade = false;
};

OptionGlobals& gOptions();

// Reads every firm option, in the order of the option table, and the machine
// options into gOptions().
void loadOptionGlobals();

// The firm options' names, in the order of the option table.
QStringList firmOptionNames();

// The global of an option (firm or machine, by its key) as text, the way the
// table keeps it: digits for numbers and keys, "0" or "1" for flags. Empty
// for an unknown name.
QString optionText(const OptionGlobals& options, const QString& nome);

// Sets the global of an option from text, read as at start (not a number
// gives 0). False for an unknown name.
bool setOptionText(OptionGlobals& options, const QString& nome, const QString& valore);

// Writes the machine options of the globals to the settings store.
void saveMachineOptions(const OptionGlobals& options);

// Writes every firm option of gOptions() by setOpzione, in the order of the
// option table, then the machine options.
void saveOptionGlobals();
