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

// The picture a row shows in its first column.
enum class IconaRiga {
    Nessuna,
    PadreAperto, // a kit whose components are shown
    PadreChiuso, // a kit whose components are hidden
    Figlio       // a component of a kit, shown
};

class GrigliaDocumento
{
public:
    int righe() const { return int(m_righe.size()); }
    const QStringList& riga(int i) const { return m_righe.at(i); }
    QString cella(int riga, int col) const { return m_righe.at(riga).at(col); }
    void setCella(int riga, int col, const QString& text) { m_righe[riga][col] = text; }
    bool visibile(int riga) const { return m_visibili.at(riga); }
    void setVisibile(int riga, bool visibile) { m_visibili[riga] = visibile; }
    int stato(int riga) const { return cella(riga, colonna::Gestione).toInt(); }
    void clear();

    // A stored row, as read with the document: state unchanged.
    int aggiungiCaricata(const QStringList& celle, bool visibile = true);

    // Writes a confirmed row into row `riga`, or, for -1, into a new row:
    // after `corrente` and its children when there is a current row and
    // the entry is not added to a previous one, else at the end. A kit's
    // component (dati.padre set) is new and hidden, and `corrente` is its
    // kit's row: it goes after the components already there. Gives the row
    // written. A stored row written again is changed (2), a new one new. A
    // kit row (padreKit) keeps its list price, net price and amount, which
    // are the sums of its components.
    int addElement(int riga, const DatiRiga& dati, const CelleRiga& celle, bool aggiungiPrecedente, int corrente,
                   bool padreKit = false);
    // The row a new entry merges with: same product, VAT, discounts, list
    // price and text, not deleted, not a "/" code, same parent; -1 for none.
    int controllaPresenzaElemento(const DatiRiga& dati, const CelleRiga& celle) const;
    // The first row, not deleted, of this product (codes starting with "/"
    // and the components of kits left out): the row the user should edit
    // instead of typing it twice.
    int controllaProdottoPresente(int prodotto) const;

    // --- kits: a kit row is followed by its components, which hold the
    // kit's key in column IdDistintaBase (its RID once stored, else "*" and
    // its row) and stay hidden until the kit is opened.
    bool padreKit(int riga, const QString& carattereDistinta) const;
    bool figlio(int riga) const { return !cella(riga, colonna::IdDistintaBase).isEmpty(); }
    // The row after the last component of the kit at `riga` (riga + 1 for
    // a row without components).
    int fineFigli(int riga) const;
    // Shows or hides the components of the kit; true when they are shown
    // now. Deleted components stay hidden.
    bool apriChiudiFigli(int rigaPadre);
    bool figliAperti(int rigaPadre) const;
    // What the row's first column shows.
    IconaRiga icona(int riga, const QString& carattereDistinta) const;

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
