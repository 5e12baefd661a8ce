#pragma once
// The change of the access password, guarded by the password itself.

#include <QDialog>

class QLineEdit;

class frmCambiaPW : public QDialog
{
    Q_OBJECT

public:
    explicit frmCambiaPW(QWidget* parent = nullptr);
    static void startMe(QWidget* owner);

private:
    void cmdOk_Click();

    QLineEdit* m_txtOld;
    QLineEdit* m_txtNewPw;
    QLineEdit* m_txtNewPw2;
};
