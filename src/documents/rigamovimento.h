#pragma once
// The row editor of the document screen: one set of fields for one row,
// the price panel and the row commands. The fields mirror the document
// editor's row: what the user types goes into it, each field's rules run
// there, and the result is shown back.

#include <QWidget>

#include <functional>

class EditorDocumento;
class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class cKeyFunction;
class cLookupField;

class RigaMovimento : public QWidget
{
    Q_OBJECT

public:
    RigaMovimento(EditorDocumento& editor, cKeyFunction* keys, QWidget* parent = nullptr);

    // The row of the editor shown again.
    void mostra();
    // The fields' texts into the editor's row.
    void raccogli();
    // Leaving one of the row's fields; false keeps the cursor there.
    bool campoLasciato(QWidget* campo);

    // Before a product is taken: the header must name type and sides.
    // Gives true to go on.
    void setControlloIntestazione(std::function<bool()> controllo) { m_intestazioneOk = std::move(controllo); }

    // The price panel, or the message that replaces it for a transfer.
    void mostraPrezzi(bool visibili);
    // The taxable amount of the row under the prices (an option).
    void mostraTotaleRiga(bool visibile);
    // The field of the VAT-included price (types entered with VAT).
    void abilitaPrezzoIvaInclusa(bool abilitato);
    // May the list price change the product's purchase price.
    void setModificaPrezzoAcquisto(bool consentita) { m_modificaPrezzoAcquisto = consentita; }

    QLineEdit* campoProdotto() const { return m_prodotto; }
    // The field that takes a key typed over an amount of the grid.
    QLineEdit* campoDiColonna(int colonna) const;
    QCheckBox* like() const { return m_like; }
    QPushButton* azione(int indice) const { return m_azioni.at(indice); }
    // F3 in the product or VAT field.
    bool sfoglia(const QString& nomeCampo);

Q_SIGNALS:
    // cmdAction pressed: 0 confirm, 1 new row, 2 delete, 3 product card, 4 copy, 5 paste.
    void azionePremuta(int indice);
    // The row editor changed the document (rows written by a multiple choice).
    void righeCambiate();
    void modificato();

private:
    void prodottoLasciato();
    void apriNuovoProdotto(const QString& codice);

    EditorDocumento& m_editor;
    std::function<bool()> m_intestazioneOk;
    QLineEdit *m_prodotto, *m_descrizione, *m_quantita, *m_listino, *m_sconto1, *m_sconto2, *m_sconto3, *m_netto,
        *m_ivaInclusa, *m_iva;
    QLabel *m_marca, *m_um, *m_giacenza, *m_descIva, *m_totRiga, *m_messaggio;
    QWidget *m_prezzi, *m_pannelloTotale;
    cLookupField* m_lookupIva;
    QCheckBox *m_addPrev, *m_like;
    QList<QPushButton*> m_azioni;
    QString m_prodottoAccettato; // the last code taken (lblProdotto)
    bool m_modificaPrezzoAcquisto = false;
};
