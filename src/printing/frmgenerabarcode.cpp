#include "printing/frmgenerabarcode.h"

#include "common/msgbox.h"
#include "printing/codiciabarre.h"
#include "screens/framework/chiusura.h"
#include "screens/framework/named.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QString kPronto = QStringLiteral("Pronto per generare i Codici a Barre dei prodotti.");

} // namespace

frmGeneraBarCodeIntoProdotti::frmGeneraBarCodeIntoProdotti(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("frmGeneraBarCodeIntoProdotti"));
    setWindowTitle(QStringLiteral("Genera Codici a Barre"));

    auto* gruppo = named(new QGroupBox(QStringLiteral(" Codici a Barre dei prodotti "), this), "fraMain");
    auto* spiegazione = named(new QLabel(QStringLiteral("Per ogni prodotto viene scritto il Codice a Barre (EAN-13)\n"
                                                        "nella forma che le etichette stampano."),
                                         gruppo),
                              "lblDescrizione");
    m_pgbMain = named(new QProgressBar(gruppo), "pgbMain");
    m_pgbMain->setRange(0, 100);
    m_lblInfo = named(new QLabel(gruppo), "lblInfo");
    // Two lines, the count and the product; a long description is cut at
    // the border and never widens the window during a run.
    m_lblInfo->setMinimumHeight(2 * m_lblInfo->fontMetrics().lineSpacing());
    m_lblInfo->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_lblInfo->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto* colonna = new QVBoxLayout(gruppo);
    colonna->addWidget(spiegazione);
    colonna->addSpacing(6);
    colonna->addWidget(m_pgbMain);
    colonna->addWidget(m_lblInfo);

    m_cmdOK = named(new QPushButton(QIcon::fromTheme(QStringLiteral("system-run")), QStringLiteral("&Genera"), this),
                    "cmdOK");
    m_cmdOK->setAutoDefault(false);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmGeneraBarCodeIntoProdotti::cmdOk_Click);
    m_cmdCancel = pulsanteChiudi(this);
    auto* pulsanti = new QHBoxLayout;
    pulsanti->addStretch(1);
    pulsanti->addWidget(m_cmdOK);
    pulsanti->addWidget(m_cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(gruppo);
    layout->addStretch(1);
    layout->addLayout(pulsanti);

    pronto();
    resize(480, 220);
}

void frmGeneraBarCodeIntoProdotti::pronto()
{
    m_pgbMain->setValue(0);
    m_lblInfo->setText(kPronto);
}

void frmGeneraBarCodeIntoProdotti::cmdOk_Click()
{
    if (m_inCorso)
        return;
    if (msgBox(QStringLiteral("Eseguire la generazione dei Codici a Barre per i prodotti presenti?"),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return;
    m_inCorso = true;
    m_cmdOK->setEnabled(false);
    m_cmdCancel->setEnabled(false);
    QApplication::setOverrideCursor(Qt::BusyCursor);
    m_ritmo.azzera();
    const bool fatto =
        generaBarCode([this](int n, int totale, const QString& descrizione) { avanzamento(n, totale, descrizione); });
    QApplication::restoreOverrideCursor();
    // Clicks held back during the run reach the buttons while they are
    // still off, so none of them starts a second run.
    QCoreApplication::processEvents();
    m_inCorso = false;
    m_cmdOK->setEnabled(true);
    m_cmdCancel->setEnabled(true);
    // Done, the last product stays in view with the full bar; undone, the
    // screen is ready again.
    if (!fatto)
        pronto();
}

void frmGeneraBarCodeIntoProdotti::avanzamento(int n, int totale, const QString& descrizione)
{
    if (!m_ritmo.tocca(n, totale))
        return;
    m_pgbMain->setValue(totale > 0 ? int(std::min<qint64>(100, qint64(n) * 100 / totale)) : 0);
    m_lblInfo->setText(testoAvanzamentoBarCode(n, totale, descrizione));
    // The window draws itself and answers the window system; what the user
    // types or clicks waits until the run is over, as the transaction is
    // open on the one connection that every screen shares.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmGeneraBarCodeIntoProdotti::closeEvent(QCloseEvent* event)
{
    if (m_inCorso)
        event->ignore();
    else
        QWidget::closeEvent(event);
}
