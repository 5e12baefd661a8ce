#pragma once
// The words the demo firm is made of: Italian people, towns, streets and
// trades, and the catalogue of a hardware wholesaler (categories, brands,
// product lines with their sizes, kits). Plain tables; the generator picks
// from them with its own seeded random numbers.

#include <span>

namespace demo {

// A town: postcode, province, cadastral code (for the tax code), the
// province's number in the VAT number and the telephone prefix.
struct Comune
{
    const char* nome;
    const char* cap;
    const char* provincia;
    const char* catastale;
    const char* ufficioIva;
    const char* prefisso;
};

std::span<const Comune> comuni();
std::span<const char* const> cognomi();
std::span<const char* const> nomiMaschili();
std::span<const char* const> nomiFemminili();
std::span<const char* const> vie();
std::span<const char* const> vieIndustriali();
// Trades of customers ("Impianti Elettrici") and of suppliers ("Forniture Industriali").
std::span<const char* const> attivitaClienti();
std::span<const char* const> attivitaFornitori();

struct Categoria
{
    const char* codice;
    const char* descrizione;
};
std::span<const Categoria> categorie();

// A brand: the categories it makes (codes separated by blanks), how its
// prices stand to the others and the first seven digits of its barcodes.
struct Marca
{
    const char* codice;
    const char* nome;
    const char* categorie;
    double fattorePrezzo;
    const char* prefissoEan;
};
std::span<const Marca> marche();

// A product line: one product per size (sizes separated by "|", none for a
// single product), the cost of the first size and how much each following
// size costs more, the quantities a customer usually takes, the unit, the
// VAT code and the weight of one unit in kilograms.
struct Modello
{
    const char* categoria;
    const char* descrizione;
    const char* varianti;
    const char* um;
    double costo;
    double passo;
    int qMin, qMax;
    const char* iva;
    double peso;
};
std::span<const Modello> modelli();

// A kit and its components, each named by its line, the size's position and
// the quantity per kit; a component of an empty line ends the list.
struct ComponenteKit
{
    const char* modello;
    int variante;
    int quantita;
};
struct Kit
{
    const char* codice; // without the kit character
    const char* descrizione;
    const char* categoria;
    ComponenteKit componenti[6];
};
std::span<const Kit> kit();

} // namespace demo
