#include "masterdata/frmduplicaprodotto.h"

#include "common/msgbox.h"
#include "core/serversettings.h"
#include "masterdata/frmprodotto.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QVBoxLayout>

namespace {

const QString kChiediConferma = QStringLiteral("Options/DuplicaProdottoChiediConferma");
const QString kSavePrd = QStringLiteral("Options/DuplicaProdottoAggiornaOrigine");
constexpr int kVarianti = 10;

} // namespace

frmDuplicaProdotto::frmDuplicaProdotto(frmProdotto* prodotto, const QString& codice)
    : QDialog(prodotto)
    , m_prodotto(prodotto)
{
    setObjectName(QStringLiteral("frmDuplicaProdotto"));
    setWindowTitle(QStringLiteral("Duplicazione assistita scheda prodotto"));
    auto* layout = new QVBoxLayout(this);
    auto* grid = new QGridLayout;
    auto* txtCodice = new QLineEdit(codice, this);
    txtCodice->setObjectName(QStringLiteral("txtCodice"));
    txtCodice->setReadOnly(true);
    grid->addWidget(new QLabel(QStringLiteral("Codice:"), this), 0, 0);
    grid->addWidget(txtCodice, 0, 1);
    for (int i = 0; i < kVarianti; ++i) {
        auto* check = new QCheckBox(QStringLiteral("Variante  - ") + QString::number(i + 1), this);
        check->setObjectName(QStringLiteral("chkVariante_") + QString::number(i));
        auto* text = new QLineEdit(this);
        text->setObjectName(QStringLiteral("txtVariante_") + QString::number(i));
        grid->addWidget(check, i + 1, 0);
        grid->addWidget(text, i + 1, 1);
        m_chkVariante << check;
        m_txtVariante << text;
    }
    layout->addLayout(grid);
    m_chkChiediConferma = new QCheckBox(QStringLiteral("Chiedi Conferma"), this);
    m_chkChiediConferma->setObjectName(QStringLiteral("chkChiediConferma"));
    m_chkChiediConferma->setChecked(machineSettings().value(kChiediConferma, true).toBool());
    m_chkSavePrd = new QCheckBox(QStringLiteral("Aggiorna Prodotto Origine"), this);
    m_chkSavePrd->setObjectName(QStringLiteral("chkSavePrd"));
    m_chkSavePrd->setChecked(machineSettings().value(kSavePrd, false).toBool());
    layout->addWidget(m_chkChiediConferma);
    layout->addWidget(m_chkSavePrd);
    m_pgbMain = new QProgressBar(this);
    m_pgbMain->setObjectName(QStringLiteral("pgbMain"));
    m_pgbMain->setValue(0);
    layout->addWidget(m_pgbMain);
    auto* buttons = new QDialogButtonBox(this);
    QPushButton* esegui = buttons->addButton(QStringLiteral("Esegui"), QDialogButtonBox::AcceptRole);
    esegui->setObjectName(QStringLiteral("cmdOk"));
    buttons->addButton(QStringLiteral("Chiudi"), QDialogButtonBox::RejectRole)
        ->setObjectName(QStringLiteral("cmdCancel"));
    connect(esegui, &QPushButton::clicked, this, &frmDuplicaProdotto::cmdEsegui_Click);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

frmDuplicaProdotto::~frmDuplicaProdotto()
{
    machineSettings().setValue(kChiediConferma, m_chkChiediConferma->isChecked());
    machineSettings().setValue(kSavePrd, m_chkSavePrd->isChecked());
}

QList<QPair<int, QString>> frmDuplicaProdotto::varianti() const
{
    QList<QPair<int, QString>> scelte;
    for (int i = 0; i < kVarianti; ++i)
        if (m_chkVariante.at(i)->isChecked())
            scelte.append({i + 1, m_txtVariante.at(i)->text().trimmed()});
    return scelte;
}

void frmDuplicaProdotto::cmdEsegui_Click()
{
    const auto scelte = varianti();
    if (scelte.isEmpty())
        return;
    if (m_chkChiediConferma->isChecked()
        && msgBox(QStringLiteral("Eseguire la duplicazione del prodotto con le varianti selezionate?"),
                  vb::YesNo | vb::Question)
            != vb::Yes)
        return;
    m_pgbMain->setMaximum(int(scelte.size()));
    m_pgbMain->setValue(0);
    if (!m_prodotto->duplicaVarianti(scelte, m_chkSavePrd->isChecked(),
                                     [this](int fatti) { m_pgbMain->setValue(fatti); }))
        return;
    msgBox(QStringLiteral("Duplicazione assistita completa"), vb::Information);
    accept();
}
