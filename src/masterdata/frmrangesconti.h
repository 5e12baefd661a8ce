#pragma once
// The ranges of a discount category: for one brand the discounts by
// quantity ("Configura Categoria di Sconto"), or for one product the net
// prices by quantity (frmRangePrezzi, the same screen on other tables). One
// grid per side: suppliers on purchases, customer bands on sales.

#include "masterdata/rangeeditor.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class cGrid;
class cLookupField;

class frmRangeSconti : public QWidget
{
    Q_OBJECT

public:
    explicit frmRangeSconti(TipoRange tipo = TipoRange::Sconti, QWidget* parent = nullptr);

    // The category and the brand (or product) to show; 0 for none.
    void startMe(int categoria, int chiave);
    bool saveRecord();
    void newRecord();
    void refreshRecord();

    RangeEditor& editor() { return m_editor; }
    // The grids show the editor's groups again.
    void mostra();
    // A supplier or band chosen in the search becomes a group.
    void cmdAggiungiGruppo_Click(Lato lato);
    // A group, or a row, given to a side; the grids follow.
    void aggiungiGruppo(Lato lato, int id, const QString& numero, const QString& nome);
    void aggiungiRiga(Lato lato, int row);
    void eliminaGruppo(Lato lato, int row);

private:
    void mostraLato(Lato lato);
    void cellaModificata(Lato lato, int row, int column);
    // The group and its row shown on a grid row; false for none.
    bool posizione(Lato lato, int row, int& gruppo, int& riga) const;
    int categoria() const;
    int chiave() const;

    RangeEditor m_editor;
    cLookupField* m_categoria = nullptr;
    cLookupField* m_chiave = nullptr;
    cGrid* m_grid[2] = {nullptr, nullptr};
    bool m_filling = false;
};
