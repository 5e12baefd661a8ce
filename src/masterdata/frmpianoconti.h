#pragma once
// The chart of accounts: three levels in one table, the level being the
// length of the code (mastro 2, conto 5, sottoconto 8 characters).

#include "ctablescreen.h"

class QLabel;

class frmPianoConti : public cTableScreen
{
    Q_OBJECT

public:
    explicit frmPianoConti(QWidget* parent = nullptr);

    // The descriptions of mastro and conto of a code; true when the parents
    // that the code's level needs exist.
    bool setInformation(const QString& code);
    // An existing code other than the open record's is loaded.
    void checkCodice(const QString& code);

    void cmdSfoglia_Click(int index) override;

protected:
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    void codeLeft(const QString& code) override;

private:
    QVariant descriptionOf(const QString& code) const;

    QLabel* m_lblMastro;
    QLabel* m_lblConto;
};
