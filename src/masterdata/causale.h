#pragma once
// A causal as the screen writes it: the kinds of origin and destination,
// the warehouses of the warehouse sides, the flags and the four accounts.
// The flags go to the table as -1/0, MOSTRAVB as the raw 0/1; negative due
// dates exist only with due dates; a warehouse only on a warehouse side.

#include <QString>

namespace causale {

// Kinds of origin and destination.
enum Tipo { Nessuna = 0, Cliente = 1, Fornitore = 2, Magazzino = 3 };

struct Causale
{
    QString codice;
    QString descrizione;
    bool operazione = false;        // "Aggiorna giacenze"
    int origine = Nessuna;
    int destinazione = Nessuna;
    int magazzinoOrig = 0;
    int magazzinoDest = 0;
    bool generaPN = false;
    bool generaScad = false;
    bool scadenzeNegative = false;
    bool taglio = false;
    bool mostraVB = false;
    int contoDare1 = 0;
    int contoDare2 = 0;
    int contoAvere1 = 0;
    int contoAvere2 = 0;
};

QString insertStatement(const Causale& c);
QString updateStatement(const Causale& c, int rid);

} // namespace causale
