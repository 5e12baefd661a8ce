#include "documents/totalimovimento.h"

#include "common/italiantext.h"
#include "documents/totalidocumento.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>

namespace {

// A caption above its amount, in one column of the grid.
QLabel* importo(QGridLayout* griglia, int colonna, const QString& didascalia, const QString& nome, QWidget* parent)
{
    auto* caption = new QLabel(didascalia, parent);
    caption->setAlignment(Qt::AlignRight);
    auto* label = new QLabel(parent);
    label->setObjectName(nome);
    label->setFrameShape(QFrame::StyledPanel);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("0.000.000,00")) + 10);
    griglia->addWidget(caption, 0, colonna);
    griglia->addWidget(label, 1, colonna);
    return label;
}

} // namespace

TotaliMovimento::TotaliMovimento(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("fraTotali"));
    auto* griglia = new QGridLayout;
    griglia->setVerticalSpacing(2);
    m_righe = importo(griglia, 0, QStringLiteral("Righe"), QStringLiteral("lblTotRighe"), this);
    m_quantita = importo(griglia, 1, QStringLiteral("Quantità"), QStringLiteral("lblTotQuantita"), this);
    griglia->setColumnStretch(2, 1);
    m_imponibile = importo(griglia, 3, QStringLiteral("Imponibile"), QStringLiteral("lblTotaleImponibile"), this);
    m_iva = importo(griglia, 4, QStringLiteral("IVA"), QStringLiteral("lblTotaleIva"), this);
    m_importo = importo(griglia, 5, QStringLiteral("Totale Documento"), QStringLiteral("lblTotaleImporto"), this);
    QFont grassetto = m_importo->font();
    grassetto.setBold(true);
    m_importo->setFont(grassetto);

    m_striscia = new QWidget(this);
    m_striscia->setObjectName(QStringLiteral("pctRDA"));
    auto* striscia = new QGridLayout(m_striscia);
    striscia->setContentsMargins(0, 0, 0, 0);
    striscia->setVerticalSpacing(2);
    m_rdaPerc = importo(striscia, 0, QStringLiteral("Ritenuta %"), QStringLiteral("lblRDAPerc"), m_striscia);
    m_rdaPercSu = importo(striscia, 1, QStringLiteral("su % imponibile"), QStringLiteral("lblRDAPercSu"), m_striscia);
    striscia->setColumnStretch(2, 1);
    m_rda = importo(striscia, 3, QStringLiteral("Ritenuta d'acconto"), QStringLiteral("lblTotRDA"), m_striscia);
    m_daPagare = importo(striscia, 4, QStringLiteral("Netto a pagare"), QStringLiteral("lblNettoPagare"), m_striscia);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(griglia);
    layout->addWidget(m_striscia);
}

void TotaliMovimento::mostra(const TotaliDocumento& t, const QString& rdaPerc, const QString& rdaPercSu)
{
    m_righe->setText(t.righe);
    m_quantita->setText(t.quantita);
    m_imponibile->setText(t.imponibile);
    m_iva->setText(t.iva);
    m_importo->setText(t.importo);
    const bool ritenuta = getValoreCurrency(rdaPerc) > Currency();
    m_striscia->setVisible(ritenuta);
    m_rdaPerc->setText(rdaPerc);
    m_rdaPercSu->setText(rdaPercSu);
    m_rda->setText(t.rda);
    m_daPagare->setText(t.daPagare);
}
