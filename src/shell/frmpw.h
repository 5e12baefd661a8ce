#pragma once
// The login: one password for the whole firm. The caller reads what was
// typed, whether the user asked to leave and whether the connection settings
// were changed from here.

#include <QDialog>

class QLabel;
class QLineEdit;

class frmPw : public QDialog
{
    Q_OBJECT

public:
    explicit frmPw(QWidget* parent = nullptr);

    QString password() const;
    bool exitAsked() const { return m_exitAsked; }
    bool settingsChanged() const { return m_settingsChanged; }

public Q_SLOTS:
    void reject() override;

private:
    void showDatabase();
    void onAdvanced();

    QLineEdit* m_txtPassword;
    QLabel* m_lblDB;
    bool m_exitAsked = false;
    bool m_settingsChanged = false;
};
