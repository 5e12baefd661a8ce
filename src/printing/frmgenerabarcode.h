#pragma once
// Genera Codici a Barre: writes into every product the barcode-font text of
// its barcode, after a question. While it runs the button is off, lblInfo
// names the product at hand and pgbMain follows the products done; the
// window keeps drawing itself, takes no input and does not close until the
// run is over.

#include "screens/framework/ritmodisegno.h"

#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

class frmGeneraBarCodeIntoProdotti : public QWidget
{
    Q_OBJECT

public:
    explicit frmGeneraBarCodeIntoProdotti(QWidget* parent = nullptr);

    void cmdOk_Click();
    bool inCorso() const { return m_inCorso; }

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void avanzamento(int n, int totale, const QString& descrizione);
    void pronto();

    QPushButton* m_cmdOK;
    QPushButton* m_cmdCancel;
    QProgressBar* m_pgbMain;
    QLabel* m_lblInfo;
    bool m_inCorso = false;
    RitmoDisegno m_ritmo;
};
