#include "demo/frmdatidimostrativi.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "demo/datidimostrativi.h"
#include "screens/framework/named.h"

#include <QApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QSpinBox>
#include <QVBoxLayout>

frmDatiDimostrativi::frmDatiDimostrativi(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmDatiDimostrativi"));
    setWindowTitle(QStringLiteral("Dati dimostrativi"));

    auto* descrizione =
        named(new QLabel(QStringLiteral(
                             "Riempie la ditta con clienti, fornitori, prodotti, distinte base, range di sconto "
                             "e documenti di ogni tipo datati nell'anno corrente, salvati come dalla "
                             "schermata dei documenti: giacenze, prima nota e scadenze comprese."),
                         this),
              "lblDescrizione");
    descrizione->setWordWrap(true);
    m_txtDocumenti = named(new QSpinBox(this), "txtDocumenti");
    m_txtDocumenti->setRange(kMinimoDocumentiDemo, 100000);
    m_txtDocumenti->setValue(500);
    m_txtDocumenti->setGroupSeparatorShown(true);
    auto* campi = new QFormLayout;
    campi->addRow(QStringLiteral("Numero di documenti:"), m_txtDocumenti);

    m_pgbMain = named(new QProgressBar(this), "pgbMain");
    m_pgbMain->setRange(0, 100);
    m_pgbMain->setValue(0);
    m_lblInfo = named(new QLabel(QStringLiteral("Pronto."), this), "lblInfo");

    m_cmdAvvia = named(new QPushButton(QIcon::fromTheme(QStringLiteral("system-run")), QStringLiteral("&Genera"), this),
                       "cmdAvvia");
    m_cmdAvvia->setAutoDefault(false);
    connect(m_cmdAvvia, &QPushButton::clicked, this, &frmDatiDimostrativi::cmdAvvia_Click);
    m_cmdChiudi =
        named(new QPushButton(QIcon::fromTheme(QStringLiteral("window-close")), QStringLiteral("&Chiudi"), this),
              "cmdChiudi");
    m_cmdChiudi->setAutoDefault(false);
    connect(m_cmdChiudi, &QPushButton::clicked, this, &frmDatiDimostrativi::reject);
    auto* pulsanti = new QHBoxLayout;
    pulsanti->addStretch(1);
    pulsanti->addWidget(m_cmdAvvia);
    pulsanti->addWidget(m_cmdChiudi);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(descrizione);
    layout->addLayout(campi);
    layout->addSpacing(8);
    layout->addWidget(m_pgbMain);
    layout->addWidget(m_lblInfo);
    layout->addStretch(1);
    layout->addLayout(pulsanti);
    resize(460, 220);
}

void frmDatiDimostrativi::cmdAvvia_Click()
{
    if (m_inCorso)
        return;
    const int documenti = m_txtDocumenti->value();
    if (msgBox(QStringLiteral("Generare i dati dimostrativi con %1 documenti?").arg(documenti),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return;
    m_inCorso = true;
    m_interrompi = false;
    m_txtDocumenti->setEnabled(false);
    m_cmdAvvia->setEnabled(false);
    m_cmdChiudi->setText(QStringLiteral("&Interrompi"));
    m_ritmo.azzera();
    QElapsedTimer tempo;
    tempo.start();
    QApplication::setOverrideCursor(Qt::BusyCursor);
    QString errore;
    RiepilogoDemo riepilogo;
    const bool fatto = generaDatiDimostrativi(
        documenti, [this](int f, int t, const QString& cosa) { return avanzamento(f, t, cosa); }, &errore, &riepilogo);
    QApplication::restoreOverrideCursor();
    m_inCorso = false;
    // The firm is no longer empty, whatever happened: a second run would be refused.
    if (fatto)
        msgBox(QStringLiteral("Dati dimostrativi creati in %1 secondi.\n\n")
                       .arg(formattaImporto(double(tempo.elapsed()) / 1000.0, 1))
                   + testoRiepilogo(riepilogo),
               vb::Information);
    else
        msgBox(errore + QStringLiteral("\n\n") + testoRiepilogo(riepilogo), vb::Exclamation);
    done(fatto ? QDialog::Accepted : QDialog::Rejected);
}

bool frmDatiDimostrativi::avanzamento(int fatto, int totale, const QString& cosa)
{
    if (m_ritmo.tocca(fatto, totale)) {
        m_pgbMain->setValue(totale > 0 ? int(qint64(fatto) * 100 / totale) : 0);
        m_lblInfo->setText(QStringLiteral("%1 di %2: %3").arg(fatto).arg(totale).arg(cosa));
        // Called between one transaction and the next: the window may take
        // the click on "Interrompi".
        QCoreApplication::processEvents();
    }
    return !m_interrompi;
}

void frmDatiDimostrativi::reject()
{
    if (m_inCorso) {
        m_interrompi = true;
        m_lblInfo->setText(QStringLiteral("Interruzione in corso..."));
        return;
    }
    QDialog::reject();
}
