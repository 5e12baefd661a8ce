#pragma once
// The causals: what a document of each type does to stock, journal and due
// dates, who stands on its two sides, and the accounts of its journal lines.

#include "causale.h"
#include "crecordscreen.h"

#include <QList>

class QButtonGroup;
class QCheckBox;
class QLineEdit;
class cLookupField;

class frmCausali : public cRecordScreen
{
    Q_OBJECT

public:
    explicit frmCausali(QWidget* parent = nullptr);

protected:
    QString tableName() const override { return QStringLiteral("Causali"); }
    QString selectStatement() const override;
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    QStringList faults() const override;
    QString insertStatement() const override;
    QString updateStatement(int rid) const override;
    QString searchStatement() const override;

private:
    causale::Causale shown() const;
    QWidget* sideBox(const QString& title, const QString& name, QButtonGroup*& group, cLookupField*& warehouse, int index);
    QWidget* accountsBox();
    void applyDependencies();

    QLineEdit* m_txtCodice;
    QLineEdit* m_txtDescrizione;
    QCheckBox* m_chkOperazione;
    QCheckBox* m_chkGeneraPN;
    QCheckBox* m_chkGeneraScad;
    QCheckBox* m_chkScadenzeNegative;
    QCheckBox* m_chkTaglio;
    QCheckBox* m_chkMostraVB;
    QButtonGroup* m_origine = nullptr;
    QButtonGroup* m_destinazione = nullptr;
    cLookupField* m_magazzinoOrig = nullptr;
    cLookupField* m_magazzinoDest = nullptr;
    QList<cLookupField*> m_conti;   // Dare 1, Dare 2, Avere 1, Avere 2
};
