#include "printing/frmsceltastampante.h"

#include "core/dialogservice.h"
#include "data/session.h"
#include "printing/creport.h"

#include <QFont>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPrinterInfo>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const QString kPredefinita = QStringLiteral("Predefinita");

enum Colonna {
    Nome = 0,
    Descrizione,
    Note
};

} // namespace

frmSceltaStampante::frmSceltaStampante(const QString& attuale, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmSceltaStampante"));
    setWindowTitle(QStringLiteral("Imposta Stampante"));

    auto* lblStampanti = new QLabel(QStringLiteral("Selezionare la stampante:"), this);
    lblStampanti->setObjectName(QStringLiteral("lblStampanti"));
    m_lswStampanti = new QTreeWidget(this);
    m_lswStampanti->setObjectName(QStringLiteral("lswStampanti"));
    m_lswStampanti->setRootIsDecorated(false);
    m_lswStampanti->setAllColumnsShowFocus(true);
    m_lswStampanti->setHeaderLabels({QStringLiteral("Stampante"), QStringLiteral("Descrizione"), QString()});
    lblStampanti->setBuddy(m_lswStampanti);

    const QString predefinita = QPrinterInfo::defaultPrinterName();
    QTreeWidgetItem* selezionata = nullptr;
    for (const QString& nome : stampantiDisponibili()) {
        auto* riga = new QTreeWidgetItem(m_lswStampanti);
        riga->setText(Nome, nome);
        if (nome == stampantePdf()) {
            riga->setText(Descrizione, QStringLiteral("Stampa su file PDF"));
            riga->setIcon(Nome, QIcon::fromTheme(QStringLiteral("x-office-document")));
        } else {
            const QPrinterInfo info = QPrinterInfo::printerInfo(nome);
            QString descrizione = info.description();
            if (!info.location().isEmpty())
                descrizione += (descrizione.isEmpty() ? QString() : QStringLiteral(" - ")) + info.location();
            riga->setText(Descrizione, descrizione);
            riga->setIcon(Nome, QIcon::fromTheme(QStringLiteral("printer")));
        }
        if (nome == predefinita) {
            riga->setText(Note, kPredefinita);
            QFont grassetto = m_lswStampanti->font();
            grassetto.setBold(true);
            for (int c = Nome; c <= Note; ++c)
                riga->setFont(c, grassetto);
        }
        if (nome == attuale || (!selezionata && nome == predefinita))
            selezionata = riga;
    }
    if (!selezionata)
        selezionata = m_lswStampanti->topLevelItem(0);
    m_lswStampanti->setCurrentItem(selezionata);
    for (int c = Nome; c <= Note; ++c)
        m_lswStampanti->resizeColumnToContents(c);

    m_cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    auto* cmdAnnulla = new QPushButton(QStringLiteral("&Annulla"), this);
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    cmdAnnulla->setAutoDefault(false);
    connect(m_cmdOK, &QPushButton::clicked, this, &frmSceltaStampante::conferma);
    connect(cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_lswStampanti, &QTreeWidget::itemActivated, this, &frmSceltaStampante::conferma);
    connect(m_lswStampanti, &QTreeWidget::currentItemChanged, this,
            [this](QTreeWidgetItem* riga) { m_cmdOK->setEnabled(riga != nullptr); });

    auto* pulsanti = new QHBoxLayout;
    pulsanti->addStretch(1);
    pulsanti->addWidget(m_cmdOK);
    pulsanti->addWidget(cmdAnnulla);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblStampanti);
    layout->addWidget(m_lswStampanti, 1);
    layout->addLayout(pulsanti);
    resize(480, 280);
}

void frmSceltaStampante::conferma()
{
    QTreeWidgetItem* riga = m_lswStampanti->currentItem();
    if (!riga)
        return;
    m_scelta = riga->text(Nome);
    accept();
}

QString scegliStampante(QWidget* parent, const QString& attuale)
{
    frmSceltaStampante dialogo(attuale, parent ? parent : dialogs::ownerWindow());
    if (dialogs::exec(dialogo) != QDialog::Accepted)
        return QString();
    return dialogo.stampante();
}

QStringList stampantiDisponibili()
{
    QStringList nomi = QPrinterInfo::availablePrinterNames();
    nomi.removeAll(stampantePdf());
    nomi.append(stampantePdf());
    return nomi;
}

QString risolviStampante(const QString& nome)
{
    const QString n = nome.trimmed();
    if (!n.isEmpty() && n.compare(kPredefinita, Qt::CaseInsensitive) != 0)
        return n;
    const QString predefinita = QPrinterInfo::defaultPrinterName();
    if (!predefinita.isEmpty())
        return predefinita;
    const QStringList sistema = QPrinterInfo::availablePrinterNames();
    return sistema.isEmpty() ? stampantePdf() : sistema.first();
}

QString stampanteApplicazione() { return risolviStampante(gSession().defaultPrinter); }

bool stampanteInstallata(const QString& device)
{
    return device == stampantePdf() || QPrinterInfo::availablePrinterNames().contains(device);
}

QString portaStampante(const QString& device)
{
    if (device.isEmpty())
        return QString();
    return device == stampantePdf() ? QStringLiteral("FILE:") : QStringLiteral("CUPS");
}
