#include "masterdata/frmrubrica.h"

#include "common/errorlog.h"
#include "printing/anteprima.h"
#include "screens/framework/frmricerca.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>

using namespace fields;

frmRubrica::frmRubrica(QWidget* parent)
    : cNumberedScreen(QStringLiteral("frmRubrica"), QStringLiteral("Rubrica"), parent)
{
    writeDebugLine(QStringLiteral("frmRubrica: apertura"));
    setFields({QStringLiteral("Rubrica"),
               {number("NUMERO", "txtNumero", "Numero", 0, WholeNumber | Code),
                field("DENOMINAZIONE", "txtDenominazione", "Denominazione", Required | Trimmed),
                field("INDIRIZZO", "txtIndirizzo", "Indirizzo", Trimmed),
                field("CIVICO", "txtCivico", "Civico", Trimmed), field("CAP", "txtCAP", "CAP", Trimmed),
                field("CITTA", "txtCitta", "Città", Trimmed), field("PROVINCIA", "txtProvincia", "Provincia", Trimmed),
                field("TELEFONO", "txtTelefono", "Telefono", Trimmed), field("FAX", "txtFax", "Fax", Trimmed),
                field("CELL", "txtCellulare", "Cellulare", Trimmed), field("EMAIL", "txtEmail", "E-mail", Trimmed)}});
    writeDebugLine(QStringLiteral("frmRubrica: campi"));
    QFormLayout* form = layoutFields();
    auto* perCitta =
        new QPushButton(QIcon::fromTheme(QStringLiteral("edit-find")), QStringLiteral("Cerca per città"), fraMain());
    perCitta->setObjectName(QStringLiteral("cmdSfoglia_1"));
    perCitta->setAutoDefault(false);
    connect(perCitta, &QPushButton::clicked, this, [this] { cmdSfoglia_Click(1); });
    auto* row = new QHBoxLayout;
    row->addWidget(perCitta);
    row->addStretch(1);
    // The print of the whole address book.
    row->addWidget(pulsanteStampaElenco(fraMain(), QStringLiteral("Rubrica.rpt"), QStringLiteral("Stampa Rubrica")));
    form->addRow(QString(), row);
    resize(520, 420);
    writeDebugLine(QStringLiteral("frmRubrica: pronta"));
}

QString frmRubrica::searchStatement() const
{
    return QStringLiteral("SELECT RID, NUMERO, DENOMINAZIONE, CITTA FROM Rubrica ORDER BY DENOMINAZIONE ");
}

void frmRubrica::cmdSfoglia_Click(int index)
{
    if (index != 1) {
        cNumberedScreen::cmdSfoglia_Click(index);
        return;
    }
    const int rid =
        frmRicerca::cerca(QStringLiteral(
                              "SELECT RID, CITTA, DENOMINAZIONE, NUMERO FROM Rubrica ORDER BY CITTA, DENOMINAZIONE "),
                          QStringLiteral("Ricerca per città - Rubrica"));
    if (rid > 0)
        showData(rid, QString());
}
