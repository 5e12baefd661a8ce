#include "frmiva.h"

#include "cinputs.h"
#include "ckeyfunction.h"
#include "fieldlimits.h"
#include "italiantext.h"
#include "recordset.h"
#include "sqlliteral.h"

#include <QFormLayout>
#include <QLineEdit>

frmIva::frmIva(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmIva"), QStringLiteral("Aliquote Iva"), parent)
{
    auto field = [this](const char* name) {
        auto* edit = new QLineEdit(fraMain());
        edit->setObjectName(QString::fromLatin1(name));
        return edit;
    };
    m_txtCodice = field("txtCodice");
    m_txtCodice->setMaximumWidth(120);
    m_txtDescrizione = field("txtDescrizione");
    m_txtValoreIva = field("txtValoreIva");
    m_txtValoreIva->setMaximumWidth(120);

    auto* form = new QFormLayout(fraMain());
    form->addRow(QStringLiteral("Codice:"), withBrowseButton(m_txtCodice, 0));
    form->addRow(QStringLiteral("Descrizione:"), m_txtDescrizione);
    form->addRow(QStringLiteral("Valore%:"), m_txtValoreIva);

    setCodeField(new cTextBox(m_txtCodice, typedinput::Testo, this));
    setDescriptionField(new cTextBox(m_txtDescrizione, typedinput::Testo, this));
    limitToColumn(m_txtCodice, QStringLiteral("Iva"), QStringLiteral("CODICE"));
    limitToColumn(m_txtDescrizione, QStringLiteral("Iva"), QStringLiteral("DESCRIZIONE"));
    m_valore = new cTextBox(m_txtValoreIva, typedinput::Decimale, this);
    m_valore->setCKeyRef(keys());
    resize(460, 180);
}

QString frmIva::selectStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE, VALORE FROM Iva");
}

void frmIva::clearFields()
{
    m_txtCodice->clear();
    m_txtDescrizione->clear();
    m_txtValoreIva->clear();
}

void frmIva::fillFields(const Recordset& rs)
{
    m_txtCodice->setText(rs.text(QStringLiteral("CODICE")));
    m_txtDescrizione->setText(rs.text(QStringLiteral("DESCRIZIONE")));
    const QVariant valore = rs.value(QStringLiteral("VALORE"));
    m_txtValoreIva->setText(valore.isNull() ? QString() : plainTextIt(valore.toDouble()));
    m_valore->contentValidate();
}

QStringList frmIva::faults() const
{
    QStringList found = requiredFaults();
    if (getValoreNumerico(m_txtValoreIva->text()) < 0)
        found << QStringLiteral(" - Campo [Valore%] Errato.");
    return found;
}

QString frmIva::insertStatement() const
{
    return QStringLiteral("INSERT INTO Iva (CODICE, DESCRIZIONE, VALORE) VALUES (") + sqlText(m_txtCodice->text())
        + QStringLiteral(", ") + sqlText(m_txtDescrizione->text()) + QStringLiteral(", ")
        + getSqlNumber(m_txtValoreIva->text()) + QStringLiteral(")");
}

QString frmIva::updateStatement(int rid) const
{
    return QStringLiteral("UPDATE Iva SET CODICE = ") + sqlText(m_txtCodice->text()) + QStringLiteral(", DESCRIZIONE = ")
        + sqlText(m_txtDescrizione->text()) + QStringLiteral(", VALORE = ") + getSqlNumber(m_txtValoreIva->text())
        + QStringLiteral(" WHERE RID = ") + QString::number(rid);
}

QString frmIva::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE, VALORE FROM Iva ORDER BY DESCRIZIONE ");
}
