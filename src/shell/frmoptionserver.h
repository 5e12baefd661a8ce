#pragma once
// The connection settings of this machine: which back end, how to reach it,
// and where the report templates are (for expert users).

#include "core/serversettings.h"

#include <QDialog>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QRadioButton;
class QStackedWidget;

class frmOptionServer : public QDialog
{
    Q_OBJECT

public:
    explicit frmOptionServer(QWidget* parent = nullptr);

    // Shows the dialog; `duringStart` leaves out the advice to restart after saving.
    // Returns true when the settings were saved.
    static bool startMe(QWidget* owner, bool duringStart = false);

    int chosenTipoServer() const;
    bool saved() const { return m_saved; }
    void setDuringStart(bool value) { m_duringStart = value; }

private:
    void selectTipoServer(int tipo);
    void onTipoServerChosen();
    void loadFields(int tipo);
    void validaStringaDNS();
    void systemDSNs();
    void onSfoglia();
    void onODBC();
    void saveServerSettings();

    QRadioButton* m_optMySql;
    QRadioButton* m_optSqlServer;
    QRadioButton* m_optAccess;
    QLabel* m_lblPrompt;
    QStackedWidget* m_pages;
    QLineEdit* m_txtFileDBAccess;
    QComboBox* m_cmbDSN;
    QLineEdit* m_txtUserName;
    QLineEdit* m_txtPassword;
    QPlainTextEdit* m_txtConnectionString;
    QLineEdit* m_txtReportPath;
    QLineEdit* m_txtReportConnect;
    int m_shownTipo = -1;
    bool m_duringStart = false;
    bool m_saved = false;
    bool m_loading = false;
};
