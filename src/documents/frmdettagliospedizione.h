#pragma once
// The shipment details of a document that accompanies goods: delivery
// address, date and time, weight and parcels, goods' appearance, transport
// reason, carrier and payment, and the special list's texts. It edits a copy
// of the document's data; Salva gives the copy back (and remembers the
// special list's recipient on this machine), Esci drops it.

#include "documents/spedizione.h"

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;
class cKeyFunction;
class cLookupField;
struct LookupTable;

class frmDettaglioSpedizione : public QDialog
{
    Q_OBJECT

public:
    // nuovoPeso, nuoviColli: what the rows of the document add up to, for
    // the button that brings the two fields up to date.
    frmDettaglioSpedizione(const DatiSpedizione& dati, Single nuovoPeso, qint16 nuoviColli, QWidget* parent = nullptr);

    // The data as saved; until then, as the dialog opened with them.
    const DatiSpedizione& dati() const { return m_dati; }

    // Shows the dialog modally; on Salva the edited data come back in
    // `dati` and the answer is true.
    static bool mostra(DatiSpedizione& dati, Single nuovoPeso, qint16 nuoviColli, QWidget* parent = nullptr);

    void cmdAggiornaPesoColli_Click();
    void cmdSalva_Click();

private:
    QLineEdit* campoTesto(QWidget* parent, const QString& name, const char* colonna, int caratteri,
                          bool maiuscolo = false);
    cLookupField* campoCodice(const QString& suffisso, const QString& campo, const LookupTable& tabella,
                              const QString& titolo, QWidget* parent, QWidget*& riga);
    void carica();
    void onFunctionKey(const QString& controlName, int keyCode, int shift);

    DatiSpedizione m_dati;
    Single m_nuovoPeso;
    qint16 m_nuoviColli;
    cKeyFunction* m_keys = nullptr;

    QLineEdit *m_txtVia = nullptr, *m_txtCivico = nullptr, *m_txtCitta = nullptr, *m_txtProvincia = nullptr,
              *m_txtCAP = nullptr, *m_txtTelefono = nullptr, *m_txtFax = nullptr;
    QLineEdit *m_txtData = nullptr, *m_txtOra = nullptr, *m_txtPeso = nullptr, *m_txtColli = nullptr;
    QLineEdit *m_txtDest = nullptr, *m_txtDocum = nullptr, *m_txtAut = nullptr;
    cLookupField *m_aspetto = nullptr, *m_causale = nullptr, *m_spedizione = nullptr, *m_pagamento = nullptr;
};

// Registers "frmDettaglioSpedizione" for --open: the dialog with no data.
void registerSpedizioneScreen();
