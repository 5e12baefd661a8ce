#pragma once
// The VAT rates: code, description and rate.

#include "crecordscreen.h"

class QLineEdit;
class cTextBox;

class frmIva : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmIva(QWidget* parent = nullptr);

protected:
    QString tableName() const override { return QStringLiteral("Iva"); }
    QString selectStatement() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    QString insertStatement() const override;
    QString updateStatement(int rid) const override;
    QString searchStatement() const override;

private:
    QLineEdit* m_txtCodice;
    QLineEdit* m_txtDescrizione;
    QLineEdit* m_txtValoreIva;
    cTextBox* m_valore;
};
