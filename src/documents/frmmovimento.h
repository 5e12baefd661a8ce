#pragma once
// The document screen: invoices, delivery notes, orders, stock loads and
// transfers alike, steered by the document type and its causal. It lays
// out the header, the row editor, the grid of rows and the totals, and
// runs the document's life: load, new, delete, the questions before work
// is lost. What the rows mean is decided by the document editor.

#include "documents/documento.h"
#include "documents/editordocumento.h"

#include <QWidget>

class GrigliaMovimento;
class IntestazioneMovimento;
class QCheckBox;
class QCloseEvent;
class QPushButton;
class RigaMovimento;
class TotaliMovimento;
class cFieldLeave;
class cKeyFunction;

class frmMovimento : public QWidget
{
    Q_OBJECT

public:
    explicit frmMovimento(QWidget* parent = nullptr);

    // rid above 0 shows that document, else a new one; tipoDocumento above
    // 0 fixes the type of the screen's new documents.
    void startMe(int rid, int tipoDocumento, bool nuovoSubito = false);

    // The stored document by key, or by number in the year and type shown.
    // False when none was found (the screen is then cleared).
    bool showData(int rid, int progressivo = 0);
    bool newRecord();
    bool saveRecord();
    bool deleteRecord();
    void refreshRecord();
    // Before changes to a printed document; false when the user stops.
    bool controllaDataStampa();

    void cmdCommand_Click(int indice);
    void cmdAction_Click(int indice);

    int currentRid() const { return m_testata.rid; }
    bool modificato() const { return m_modificato; }
    EditorDocumento& editor() { return m_editor; }
    const DatiSpedizione& spedizione() const { return m_spedizione; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    // "Salvare le modifiche al Documento corrente?": false when the user
    // cancels or the save failed.
    bool chiediSalvataggio();
    void pulisci();
    void tipoCambiato();
    void latoCambiato();
    bool campoLasciato(QWidget* campo);
    void funzione(const QString& nomeCampo, int tasto);
    void rigaScelta(int riga, int colonna);
    void cellaDigitata(int riga, int colonna, const QString& testo);
    // The rows and totals shown again, `corrente` selected.
    void aggiornaRighe(int corrente);
    void spostaRiga(int passo);
    void showDettagliSpedizione();
    // The rows for the barcode labels: "key\tquantity\r" a row, codes
    // starting with "/" left out.
    QString generaBarCode() const;
    void segna() { m_modificato = true; }

    EditorDocumento m_editor;
    TestataDocumento m_testata;
    DatiSpedizione m_spedizione;
    int m_tipoFisso = 0;
    bool m_modificato = false;
    cKeyFunction* m_keys;
    cFieldLeave* m_leave;
    IntestazioneMovimento* m_intestazione;
    RigaMovimento* m_riga;
    GrigliaMovimento* m_griglia;
    TotaliMovimento* m_totali;
    QCheckBox* m_anteprima;
    QList<QPushButton*> m_comandi;
    QWidget* m_daGriglia = nullptr; // the field that took a key typed over the grid
};
