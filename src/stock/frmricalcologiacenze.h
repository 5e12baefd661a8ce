#pragma once
// Ricalcolo Giacenze: rebuilds the stock of one product (chosen in
// txtProdotto) or of all of them, the standard way or, with chkForced,
// replaying every document row. While it runs the controls are off, the bar
// and lblInfo follow the products (rows) done and lblTimeRemaining tells the
// time left; the window keeps drawing itself, takes no input and does not
// close until the run is over.

#include "screens/framework/ritmodisegno.h"

#include <QElapsedTimer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;
class cLookupField;

class frmRicalcoloGiacenze : public QWidget
{
    Q_OBJECT

public:
    explicit frmRicalcoloGiacenze(QWidget* parent = nullptr);

    void cmdOk_Click();
    bool inCorso() const { return m_inCorso; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void abilita(bool abilitato);
    void avanzamento(int fatti, int totale);
    void pronto();

    cLookupField* m_prodotto;
    QLineEdit* m_txtProdotto;
    QToolButton* m_cmdSfoglia;
    QCheckBox* m_chkForced;
    QCheckBox* m_chkModifyOrigDest;
    QPushButton* m_cmdOK;
    QPushButton* m_cmdCancel;
    QProgressBar* m_pgbMain;
    QLabel* m_lblInfo;
    QLabel* m_lblTimeRemaining;
    bool m_inCorso = false;
    bool m_forzato = false;
    QElapsedTimer m_tempo; // since the first product (row) of the run
    RitmoDisegno m_ritmo;
};
