#pragma once
// The chart of accounts: three levels in one table, the level being the
// length of the code (mastro 2, conto 5, sottoconto 8 characters).

#include "screens/framework/ctablescreen.h"

class QLabel;
class QLineEdit;

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
    bool saveRecord() override;

protected:
    void clearFields() override;
    void fillFields(const Recordset& rs) override;
    void codeLeft(const QString& code) override;

private:
    QVariant descriptionOf(const QString& code) const;
    QLineEdit* codeEdit() const;
    // A code of the right shape whose mastro and conto exist; otherwise its
    // message is shown and false comes back.
    bool codeAccepted(const QString& code);

    QLabel* m_lblMastro;
    QLabel* m_lblConto;
};
