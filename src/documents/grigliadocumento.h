#pragma once
// The rows of a document as the grid holds them: 31 cells of text a row, in
// the order of the grid's columns, with the state of each row (column
// Gestione) that tells the save what to do. A deleted row stays, hidden,
// until the save; inserting or deleting a row marks the unchanged rows below
// it as changed, because their position is written with them.

#include "documents/calcoloriga.h"
#include "documents/totalidocumento.h"

#include <QList>
#include <QStringList>

namespace colonna {
enum : int {
    Key = 0,
    Icona,
    Marca,
    Codice,
    IdProdotto,
    Descrizione,
    IdIva,
    CodIva,
    DescIva,
    Quantita,
    OldQuantita,
    IdUM,
    UM,
    PrezzoListino,
    Sconti,
    Sc1,
    Sc2,
    Sc3,
    PrezzoNetto,
    NettoEsteso,
    Imponibile,
    Iva,
    Importo,
    Gestione,
    Rid,
    Taglio,
    IdDistintaBase,
    ScNetto,
    IvaProd,
    TotIvaProd,
    ElencoSpeciale,
    Numero // how many
};
} // namespace colonna

// The states of column Gestione.
namespace gestione {
constexpr int Invariata = 0, Nuova = 1, Modificata = 2, Eliminata = 3;
}

// What a confirmed row brings besides its amounts.
struct DatiRiga
{
    int prodotto = 0;
    QString marca, codice, descrizione;
    int iva = 0;
    QString codIva, descIva;
    int um = 0;
    QString codUM;
    QString taglio; // the lot, "-1" for none
    bool elencoSpeciale = false;
    QString padre; // the kit parent's key for a child row, empty otherwise
};

class GrigliaDocumento
{
public:
    int righe() const { return int(m_righe.size()); }
    const QStringList& riga(int i) const { return m_righe.at(i); }
    QString cella(int riga, int col) const { return m_righe.at(riga).at(col); }
    void setCella(int riga, int col, const QString& text) { m_righe[riga][col] = text; }
    bool visibile(int riga) const { return m_visibili.at(riga); }
    int stato(int riga) const { return cella(riga, colonna::Gestione).toInt(); }
    void clear();

    // A stored row, as read with the document: state unchanged.
    int aggiungiCaricata(const QStringList& celle, bool visibile = true);

    // Writes a confirmed row into row `riga`, or, for -1, into a new row:
    // after `corrente` and its children when there is a current row and
    // the entry is not added to a previous one, else at the end. Gives the
    // row written. A stored row written again is changed (2), a new one new.
    int addElement(int riga, const DatiRiga& dati, const CelleRiga& celle, bool aggiungiPrecedente, int corrente);
    // The row a new entry merges with: same product, VAT, discounts, list
    // price and text, not deleted, not a "/" code, same parent; -1 for none.
    int controllaPresenzaElemento(const DatiRiga& dati, const CelleRiga& celle) const;
    // The first row, not deleted, of this product (codes starting with "/"
    // left out): the row the user should edit instead of typing it twice.
    int controllaProdottoPresente(int prodotto) const;

    // The row goes: state 3, hidden; the unchanged rows below it are marked
    // changed.
    void eliminaRiga(int riga);
    // Each unchanged row from the last up to `riga` becomes changed.
    void updateNextRow(int riga);

    // The rows as the totals read them: deleted rows and kit parents left out.
    QList<RigaPerTotali> perTotali(const QString& carattereDistinta) const;

    // A row as copied text (no key, no stored key, no lot; a new row, and
    // not a child), and its cells back; empty for a child row.
    QString copiaRiga(int riga) const;
    static QStringList celleCopiate(const QString& testo);

private:
    void inserisci(int posizione, const QStringList& celle, bool visibile);

    QList<QStringList> m_righe;
    QList<bool> m_visibili;
};
