#pragma once
// The document under edit, without widgets: the row editor, the grid of rows
// and the totals, as the document screen shows them. The screen gathers
// input into it and shows what it holds; everything it decides is here, so
// that row entry and its arithmetic run in tests without a window.

#include "documents/grigliadocumento.h"

class EditorDocumento
{
public:
    // decimali: the option DecimaliDopo; carattereDistinta: the first
    // character of a kit row's code (the option DistintaBase).
    explicit EditorDocumento(int decimali = 2, const QString& carattereDistinta = QString());

    int decimali() const { return m_decimali; }
    GrigliaDocumento& griglia() { return m_griglia; }
    const GrigliaDocumento& griglia() const { return m_griglia; }

    // --- the row editor
    EditorRiga riga;
    DatiRiga dati;
    int posizione = -1;              // lblPos: the grid row under edit, -1 for a new row
    bool aggiungiPrecedente = false; // "Aggiungi alla riga precedente"
    int corrente = -1;               // the grid's current row
    bool prezziIvaInclusa = false;   // chkPrezziIva
    // rdaPerc, rdaPercSu: the withholding strip.
    QString rdaPerc = QStringLiteral("0,00"), rdaPercSu = QStringLiteral("0,00");

    // Empties the row editor: quantity 1, discounts and prices 0, no lot.
    void pulisciRiga();
    // Writes the row editor into the grid (merging with an equal row when
    // adding to the previous one), recomputes the totals and empties the
    // editor. Gives the row written, -1 when there is no product.
    int confermaRiga();
    // The grid row back into the editor; false for a row that can't be
    // edited there (a deleted row, a child of a stored kit).
    bool getRowFromGrid(int riga);
    void eliminaRiga(int riga);
    // A copied row as a new row; false when nothing was copied.
    bool incollaRiga(const QString& copiato);

    void calcolaTotali();
    const TotaliDocumento& totali() const { return m_totali; }

private:
    int m_decimali;
    QString m_carattereDistinta;
    GrigliaDocumento m_griglia;
    TotaliDocumento m_totali;
};
