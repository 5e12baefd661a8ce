#pragma once
// The look-ups of the fields that refer to another table. Each valida...
// takes a code, or an empty code and a key, and gives back code,
// description and key of the row found; every argument is input and
// output. When nothing is found the box "Codice: ... inesistente!" appears
// and the code comes back empty; the key keeps what the caller passed, so a
// caller clears it before looking up a code. They return whether a row was
// found (a key whose row is gone comes back unchanged, without the box). No widgets here: the document editor calls them too.

#include "common/single.h"

#include <QString>
#include <QStringList>

#include <functional>

class Recordset;

bool validaAnagrafe(QString& codice, QString& descrizione, int& rid);
bool validaAnagrafePagamento(QString& codice, QString& descrizione, int& rid, int& fkPagamento);
bool validaCliente(QString& codice, QString& descrizione, int& rid);
bool validaFornitore(QString& codice, QString& descrizione, int& rid);
bool validaCategoria(QString& codice, QString& descrizione, int& rid);
bool validaNumeratore(QString& descrizione, int& rid);
bool validaCategoriaSconto(QString& codice, QString& descrizione, int& rid);
bool validaFasciaCliente(QString& codice, QString& descrizione, int& rid);
bool validaMarca(QString& codice, QString& descrizione, int& rid);
bool validaCollezione(QString& codice, QString& descrizione, int& rid);
bool validaPagamento(QString& codice, QString& descrizione, int& rid);
bool validaBanca(QString& codice, QString& descrizione, int& rid);
bool validaFormatoCarta(QString& codice, QString& descrizione, int& rid);
bool validaIva(QString& codice, QString& descrizione, int& rid, Single& valore);
bool validaColore(QString& codice, QString& descrizione, int& rid);
bool validaGruppo(QString& codice, QString& descrizione, int& rid);
bool validaVenditore(QString& codice, QString& descrizione, int& rid);
bool validaUnitaMisura(QString& codice, QString& descrizione, int& rid);
bool validaFinestra(QString& codice, QString& descrizione, int& rid);
bool validaConfezione(QString& codice, QString& descrizione, int& rid);
bool validaCausale(QString& codice, QString& descrizione, int& rid);
// Only causals that write the journal; the two due-date flags come back.
bool validaCausaleScadenze(QString& codice, QString& descrizione, int& rid, bool& generaScad, bool& scadenzeNegative);
bool validaCentroCosto(QString& codice, QString& descrizione, int& rid);
bool validaConto(QString& codice, QString& descrizione, int& rid);
// By code, bar code or extra code.
bool validaProdotto(QString& codice, QString& descrizione, int& rid);
bool validaMagazzino(QString& codice, QString& descrizione, int& rid);
bool validaSpedizione(QString& codice, QString& descrizione, int& rid);
bool validaDocumento(QString& codice, QString& descrizione, int& rid);
bool validaAspetto(QString& codice, QString& descrizione, int& rid);
bool validaCausaleTrasporto(QString& codice, QString& descrizione, int& rid);

// --- the product look-up of the document rows ---------------------------------

// What validaProdottoEsteso reads and gives back.
struct ProdottoEsteso
{
    QString codice;
    QString descrizione;
    int rid = 0;
    Single valoreIva = 0;
    QString codIva;
    int fkUnitaMisura = 0;
    QString codUnitaMisura;
    QString codMarca;
    double giacenza = 0; // of the warehouse asked, or the product's total
    qint16 elencoSpeciale = 0;
    QString elencoRid;      // multiple choice: "12,15," (keys, each followed by a comma)
    bool creaNuovo = false; // not found, and the user wants a new product with the code
};

struct RicercaProdotto
{
    bool like = false; // the code is a beginning, not the whole code ("%" and "_" in it match themselves)
    bool multiSelect = false;
    int magazzino = 0;        // the stock of this warehouse; 0 the product's total
    bool chiediNuovo = false; // not found: ask "Creare un nuovo Prodotto?"
    QString filtro;           // a further condition on P, joined by AND
};

// The chooser's columns for products: brand, code, description.
QString colonneProdotto();

// Several rows open the chooser; one row fills the product; none shows the
// box (and the question, when asked for). True when a product was found.
bool validaProdottoEsteso(ProdottoEsteso& prodotto, const RicercaProdotto& ricerca);

// The stock of a product in a warehouse, 0 when it has no row there.
double getGiacenzaProdotto(int fkProdotto, int fkMagazzino);

// --- the document type with its flags -----------------------------------------

struct DocumentoEsteso
{
    QString codice;
    QString descrizione;
    int rid = 0;
    bool usaRda = false;
    QString rda1 = QStringLiteral("0");
    QString rda2 = QStringLiteral("0");
    bool usaPrezziIva = false;
    bool stampaElencoSpeciale = false;
    bool modificaPrezzoAcquisto = false;
};

bool validaDocumentoEsteso(DocumentoEsteso& documento);

// --- the chooser --------------------------------------------------------------

// Shows rows to choose among ("Marca¤800¤CODMARCA|..." columns) and gives
// back the keys chosen ("E_12"), {"-1"} for a new record, nothing when
// closed. The screens install frmSelectElement; without a chooser nothing
// is chosen.
using ElementChooser =
    std::function<QStringList(const QString& columns, const Recordset& rs, bool multiSelect, bool allowNew)>;
ElementChooser setElementChooser(ElementChooser chooser);
