#pragma once
// The header of the document screen: number, year and date, the document
// type with what it says, origin and destination by the causal's kinds,
// payment and bank, references and the counterparty's original paper.
// Choosing a type or a counterparty runs their rules here and tells the
// screen.

#include "documents/campimovimento.h"
#include "documents/documento.h"
#include "lookups/lookups.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class cKeyFunction;

class IntestazioneMovimento : public QWidget
{
    Q_OBJECT

public:
    IntestazioneMovimento(cKeyFunction* keys, QWidget* parent = nullptr);

    // Every field blank, the number "(Auto)", today, the current year; kinds
    // and flags cleared, origin and destination disabled.
    void pulisci();
    // A stored header; the type's rules run as on choosing it.
    void mostra(const TestataDocumento& testata);
    // The type by key, as choosing it in the field.
    void caricaTipo(int tipoDocumento);
    // "Documento stampato il " and the date; an invalid date hides the label.
    void mostraDataStampa(const QDate& dataStampa);

    // The header as the fields hold it (key, journal links and the shipment
    // are the screen's).
    TestataDocumento testata() const;

    const InfoDocumento& info() const { return m_info; }
    const DocumentoEsteso& tipo() const { return m_tipo; }
    int tipoRid() const;
    // The counterparty's key, from the origin or else the destination field
    // when its kind is a customer or supplier; 0 for none.
    int controparte() const;
    int origine() const;
    int destinazione() const;
    int anno() const;
    int progressivo() const;
    bool prezziIvaInclusa() const;
    // The counterparty's general discount, for the prices of the rows.
    Currency scontoControparte() const { return m_scontoControparte; }
    // The texts of the withholding strip: percentage and share, two decimals.
    QString rdaPerc() const { return m_rdaPerc; }
    QString rdaPercSu() const { return m_rdaPercSu; }

    // Type and enabled counterparties chosen before rows: empty, or the box
    // that names what is missing (the cursor goes to the first).
    QString campiMancanti();

    // Leaving one of the header's fields; false keeps the cursor there.
    bool campoLasciato(QWidget* campo);
    // F3 in a coded field: its search. False when the field has none.
    bool sfoglia(const QString& nomeCampo);

    // The cursor to the first field after the type that takes input.
    void dopoTipo();

    QLineEdit* campoPrimo() const { return m_anno; }
    QLineEdit* campoProgressivo() const { return m_progressivo; }
    QLineEdit* campoTipo() const { return m_tipoDoc.campo; }

Q_SIGNALS:
    // The type changed and its rules ran: kinds, price panel, withholding.
    void tipoCambiato();
    // A counterparty or warehouse was chosen or emptied.
    void latoCambiato();
    // Any field was edited by the user.
    void modificato();

private:
    void applicaTipo();
    void applicaLato(CampoCodificato& campo, QLabel* didascalia, int tipo, int predefinito);
    void controparteScelta(bool destinazione);
    void riempiDaControparte(int rid);

    QLineEdit *m_anno, *m_progressivo, *m_data, *m_numeroOriginale, *m_dataOriginale, *m_riferimenti, *m_codPartita;
    CampoCodificato m_tipoDoc, m_origine, m_destinazione, m_pagamento, m_banca;
    QLabel *m_didOrigine, *m_didDestinazione, *m_stampato, *m_primaNota;
    QCheckBox* m_prezziIva;
    InfoDocumento m_info;
    DocumentoEsteso m_tipo;
    int m_tipoMostrato = 0; // the type whose kinds the fields follow
    Currency m_scontoControparte;
    QString m_rdaPerc = QStringLiteral("0,00"), m_rdaPercSu = QStringLiteral("0,00");
    bool m_caricando = false;
};
