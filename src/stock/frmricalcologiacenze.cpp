#include "stock/frmricalcologiacenze.h"

#include "common/msgbox.h"
#include "core/optionstore.h"
#include "lookups/lookuptable.h"
#include "screens/framework/chiusura.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/named.h"
#include "stock/ricalcologiacenze.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const QString kPronto = QStringLiteral("Pronto per avviare il ricalcolo.");

} // namespace

frmRicalcoloGiacenze::frmRicalcoloGiacenze(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("frmRicalcoloGiacenze"));
    setWindowTitle(QStringLiteral("Ricalcolo Giacenze"));

    auto* prodotto = new QGroupBox(QStringLiteral("Selezionare un prodotto (facoltativo)"), this);
    m_txtProdotto = named(new QLineEdit(prodotto), "txtProdotto");
    keepReadable(m_txtProdotto, 160);
    m_cmdSfoglia = named(new QToolButton(prodotto), "cmdSfoglia");
    m_cmdSfoglia->setIcon(QIcon::fromTheme(QStringLiteral("edit-find")));
    m_cmdSfoglia->setToolTip(QStringLiteral("Cerca [F3]"));
    m_cmdSfoglia->setFocusPolicy(Qt::NoFocus);
    auto* lblProdotto = named(new QLabel(prodotto), "lblProdotto");
    lblProdotto->setFrameShape(QFrame::StyledPanel);
    lblProdotto->setFrameShadow(QFrame::Sunken);
    lblProdotto->setMinimumWidth(220);
    m_prodotto =
        new cLookupField(m_txtProdotto, lblProdotto, lookup::prodotti.validate, lookupSearch(lookup::prodotti), this);
    m_prodotto->setButton(m_cmdSfoglia);
    auto* f3 = new QShortcut(QKeySequence(Qt::Key_F3), m_txtProdotto, nullptr, nullptr, Qt::WidgetShortcut);
    connect(f3, &QShortcut::activated, m_prodotto, &cLookupField::browse);
    auto* riga = new QHBoxLayout(prodotto);
    riga->addWidget(m_txtProdotto);
    riga->addWidget(m_cmdSfoglia);
    riga->addWidget(lblProdotto, 1);

    m_chkForced = named(new QCheckBox(QStringLiteral("Ricalcolo forzato"), this), "chkForced");
    m_chkModifyOrigDest =
        named(new QCheckBox(QStringLiteral("Modifica Origine/Destinazione"), this), "chkModifyOrigDest");
    m_chkModifyOrigDest->setEnabled(false);
    connect(m_chkForced, &QCheckBox::toggled, this, [this](bool forzato) {
        m_chkModifyOrigDest->setEnabled(forzato && !m_inCorso);
        if (!forzato)
            m_chkModifyOrigDest->setChecked(false);
    });
    auto* scelte = new QHBoxLayout;
    scelte->addWidget(m_chkForced);
    scelte->addSpacing(16);
    scelte->addWidget(m_chkModifyOrigDest);
    scelte->addStretch(1);

    m_pgbMain = named(new QProgressBar(this), "pgbMain");
    m_pgbMain->setRange(0, 100);
    m_lblInfo = named(new QLabel(this), "lblInfo");
    m_lblTimeRemaining = named(new QLabel(this), "lblTimeRemaining");
    m_lblTimeRemaining->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* stato = new QHBoxLayout;
    stato->addWidget(m_lblInfo, 1);
    stato->addWidget(m_lblTimeRemaining);

    m_cmdOK = named(new QPushButton(QIcon::fromTheme(QStringLiteral("system-run")),
                                    QStringLiteral("&Avvia il ricalcolo"), this),
                    "cmdOK");
    m_cmdOK->setAutoDefault(false);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmRicalcoloGiacenze::cmdOk_Click);
    m_cmdCancel = pulsanteChiudi(this);
    auto* pulsanti = new QHBoxLayout;
    pulsanti->addStretch(1);
    pulsanti->addWidget(m_cmdOK);
    pulsanti->addWidget(m_cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(prodotto);
    layout->addLayout(scelte);
    layout->addSpacing(8);
    layout->addWidget(m_pgbMain);
    layout->addLayout(stato);
    layout->addStretch(1);
    layout->addLayout(pulsanti);

    pronto();
    resize(520, 250);
}

void frmRicalcoloGiacenze::pronto()
{
    m_pgbMain->setValue(0);
    m_lblInfo->setText(kPronto);
    m_lblTimeRemaining->clear();
}

void frmRicalcoloGiacenze::abilita(bool abilitato)
{
    m_prodotto->setEnabled(abilitato);
    m_chkForced->setEnabled(abilitato);
    m_chkModifyOrigDest->setEnabled(abilitato && m_chkForced->isChecked());
    m_cmdOK->setEnabled(abilitato);
    m_cmdCancel->setEnabled(abilitato);
}

void frmRicalcoloGiacenze::cmdOk_Click()
{
    if (m_inCorso)
        return;
    // A code typed and not yet left is looked up now; an unknown one (told
    // by the look-up) must not turn into a run over every product.
    const bool scritto = !m_txtProdotto->text().trimmed().isEmpty();
    m_prodotto->validate();
    const int ridProdotto = m_prodotto->rid();
    if (scritto && ridProdotto < 1)
        return;
    if (msgBox(QStringLiteral("Eseguire il ricalolo delle giacenze?"), vb::YesNo | vb::Question) != vb::Yes)
        return;

    OpzioniRicalcolo opzioni;
    opzioni.giacenza.prezzoMedio = gOptions().prezzoMedio;
    opzioni.giacenza.mesiPrezzoMedio = gOptions().mesiPrezzoMedio;
    opzioni.distintaBase = gOptions().distintaBase;
    opzioni.forzato = m_forzato = m_chkForced->isChecked();
    opzioni.modificaOrigDest = opzioni.forzato && m_chkModifyOrigDest->isChecked();

    m_inCorso = true;
    abilita(false);
    QApplication::setOverrideCursor(Qt::BusyCursor);
    m_ritmo.azzera();
    eseguiRicalcolo(ridProdotto, opzioni, [this](int fatti, int totale) { avanzamento(fatti, totale); });
    QApplication::restoreOverrideCursor();
    // Clicks held back during the run reach the controls while they are
    // still off, so none of them starts a second run.
    QCoreApplication::processEvents();
    m_inCorso = false;
    abilita(true);
    pronto();
}

void frmRicalcoloGiacenze::avanzamento(int fatti, int totale)
{
    if (fatti == 0)
        m_tempo.start();
    if (!m_ritmo.tocca(fatti, totale))
        return;
    m_pgbMain->setValue(totale > 0 ? int(qint64(fatti) * 100 / totale) : 0);
    m_lblInfo->setText((m_forzato ? QStringLiteral("Ricalcolo riga ") : QStringLiteral("Ricalcolo prodotto "))
                       + QString::number(fatti) + QStringLiteral(" di ") + QString::number(totale));
    m_lblTimeRemaining->setText(tempoRimanente(m_tempo.elapsed(), fatti, totale));
    // The window draws itself and answers the window system; what the user
    // types or clicks waits until the run is over, as the transaction is
    // open on the one connection that every screen shares.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void frmRicalcoloGiacenze::closeEvent(QCloseEvent* event)
{
    if (m_inCorso)
        event->ignore();
    else
        QWidget::closeEvent(event);
}
