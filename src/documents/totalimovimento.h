#pragma once
// The totals under the rows: count of rows and quantities, taxable amount,
// VAT and total, and the withholding strip when the document has one.

#include <QWidget>

class QLabel;
struct TotaliDocumento;

class TotaliMovimento : public QWidget
{
    Q_OBJECT

public:
    explicit TotaliMovimento(QWidget* parent = nullptr);

    // rdaPerc, rdaPercSu: the withholding's percentage and share; the strip
    // shows only with a percentage above 0.
    void mostra(const TotaliDocumento& totali, const QString& rdaPerc, const QString& rdaPercSu);

private:
    QLabel *m_righe, *m_quantita, *m_imponibile, *m_iva, *m_importo;
    QWidget* m_striscia;
    QLabel *m_rdaPerc, *m_rdaPercSu, *m_rda, *m_daPagare;
};
