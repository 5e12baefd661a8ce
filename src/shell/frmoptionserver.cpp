#include "shell/frmoptionserver.h"

#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "data/connectionstring.h"
#include "data/session.h"
#include "data/sqldialect.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace {
const QString kPromptFile = QStringLiteral("Digitare il percorso completo del DataBase");
const QString kPromptServer = QStringLiteral("Digitare i dati per la connessione al DataBase (per esperti)");
const QString kFileFilter = QStringLiteral("File di DataBase SQLite (*.db)");

QString oneLine(const QString& text)
{
    return QString(text).remove(QLatin1Char('\r')).remove(QLatin1Char('\n')).trimmed();
}
} // namespace

frmOptionServer::frmOptionServer(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmOptionServer"));
    setWindowTitle(QStringLiteral("Opzioni Server (per utenti esperti)"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* grpTipo = new QGroupBox(QStringLiteral("Tipo di DataBase"), this);
    m_optMySql = new QRadioButton(QStringLiteral("MySQL"), grpTipo);
    m_optMySql->setObjectName(QStringLiteral("optMySql"));
    m_optSqlServer = new QRadioButton(QStringLiteral("SQLServer"), grpTipo);
    m_optSqlServer->setObjectName(QStringLiteral("optSqlServer"));
    m_optAccess = new QRadioButton(QStringLiteral("SQLite (file locale)"), grpTipo);
    m_optAccess->setObjectName(QStringLiteral("optAccess"));
    auto* tipoLayout = new QHBoxLayout(grpTipo);
    tipoLayout->addWidget(m_optMySql);
    tipoLayout->addWidget(m_optSqlServer);
    tipoLayout->addWidget(m_optAccess);
    tipoLayout->addStretch(1);

    auto* grpServer = new QGroupBox(QStringLiteral("Connessione al server"), this);
    m_pages = new QStackedWidget(grpServer);

    auto* filePage = new QWidget(m_pages);
    m_txtFileDBAccess = new QLineEdit(filePage);
    m_txtFileDBAccess->setObjectName(QStringLiteral("txtFileDBAccess"));
    auto* cmdSfoglia = new QPushButton(QStringLiteral("Sfoglia..."), filePage);
    cmdSfoglia->setObjectName(QStringLiteral("cmdSfoglia"));
    cmdSfoglia->setAutoDefault(false);
    auto* fileLayout = new QHBoxLayout(filePage);
    fileLayout->setContentsMargins(0, 0, 0, 0);
    fileLayout->addWidget(new QLabel(QStringLiteral("File del DataBase:"), filePage));
    fileLayout->addWidget(m_txtFileDBAccess, 1);
    fileLayout->addWidget(cmdSfoglia);

    auto* dsnPage = new QWidget(m_pages);
    m_cmbDSN = new QComboBox(dsnPage);
    m_cmbDSN->setObjectName(QStringLiteral("cmbDSN"));
    m_cmbDSN->setMinimumWidth(200);
    auto* cmdRefresh = new QPushButton(QStringLiteral("Aggiorna l'elenco D.S.N."), dsnPage);
    cmdRefresh->setObjectName(QStringLiteral("cmdRefresh"));
    cmdRefresh->setAutoDefault(false);
    auto* cmdODBC = new QPushButton(QStringLiteral("ODBC"), dsnPage);
    cmdODBC->setObjectName(QStringLiteral("cmdODBC"));
    cmdODBC->setAutoDefault(false);
    m_txtUserName = new QLineEdit(dsnPage);
    m_txtUserName->setObjectName(QStringLiteral("txtUserName"));
    m_txtPassword = new QLineEdit(dsnPage);
    m_txtPassword->setObjectName(QStringLiteral("txtPassword"));
    m_txtPassword->setEchoMode(QLineEdit::Password);
    auto* dsnRow = new QHBoxLayout;
    dsnRow->addWidget(m_cmbDSN, 1);
    dsnRow->addWidget(cmdRefresh);
    dsnRow->addWidget(cmdODBC);
    auto* dsnLayout = new QFormLayout(dsnPage);
    dsnLayout->setContentsMargins(0, 0, 0, 0);
    dsnLayout->addRow(QStringLiteral("Origine dati (D.S.N.):"), dsnRow);
    dsnLayout->addRow(QStringLiteral("Utente:"), m_txtUserName);
    dsnLayout->addRow(QStringLiteral("Password:"), m_txtPassword);

    m_pages->addWidget(filePage);
    m_pages->addWidget(dsnPage);

    m_lblPrompt = new QLabel(grpServer);
    m_lblPrompt->setObjectName(QStringLiteral("lblPrompt"));
    m_txtConnectionString = new QPlainTextEdit(grpServer);
    m_txtConnectionString->setObjectName(QStringLiteral("txtConnectionString"));
    m_txtConnectionString->setTabChangesFocus(true);
    m_txtConnectionString->setFixedHeight(m_txtConnectionString->fontMetrics().lineSpacing() * 3 + 12);
    auto* serverLayout = new QVBoxLayout(grpServer);
    serverLayout->addWidget(m_pages);
    serverLayout->addWidget(m_lblPrompt);
    serverLayout->addWidget(m_txtConnectionString);

    auto* grpReports = new QGroupBox(QStringLiteral("Reports"), this);
    m_txtReportPath = new QLineEdit(grpReports);
    m_txtReportPath->setObjectName(QStringLiteral("txtReportPath"));
    m_txtReportConnect = new QLineEdit(grpReports);
    m_txtReportConnect->setObjectName(QStringLiteral("txtReportConnect"));
    auto* reportLayout = new QFormLayout(grpReports);
    reportLayout->addRow(QStringLiteral("Cartella dei report:"), m_txtReportPath);
    reportLayout->addRow(QStringLiteral("Connessione dei report:"), m_txtReportConnect);

    auto* cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    auto* cmdCancel = new QPushButton(QStringLiteral("Annulla"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    cmdCancel->setAutoDefault(false);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(grpTipo);
    layout->addWidget(grpServer);
    layout->addWidget(grpReports);
    layout->addLayout(buttons);
    setMinimumWidth(620);

    for (QRadioButton* option : {m_optMySql, m_optSqlServer, m_optAccess})
        connect(option, &QRadioButton::toggled, this, [this](bool on) {
            if (on)
                onTipoServerChosen();
        });
    connect(cmdSfoglia, &QPushButton::clicked, this, &frmOptionServer::onSfoglia);
    connect(cmdRefresh, &QPushButton::clicked, this, &frmOptionServer::systemDSNs);
    connect(cmdODBC, &QPushButton::clicked, this, &frmOptionServer::onODBC);
    connect(m_cmbDSN, &QComboBox::currentTextChanged, this, &frmOptionServer::validaStringaDNS);
    connect(m_txtUserName, &QLineEdit::textEdited, this, &frmOptionServer::validaStringaDNS);
    connect(m_txtPassword, &QLineEdit::textEdited, this, &frmOptionServer::validaStringaDNS);
    connect(m_txtFileDBAccess, &QLineEdit::textEdited, this, &frmOptionServer::validaStringaDNS);
    connect(cmdOk, &QPushButton::clicked, this, &frmOptionServer::saveServerSettings);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);

    systemDSNs();
    selectTipoServer(gSession().tipoServer);
}

bool frmOptionServer::startMe(QWidget* owner, bool duringStart)
{
    frmOptionServer dialog(owner ? owner : dialogs::ownerWindow());
    dialog.setDuringStart(duringStart);
    dialogs::exec(dialog);
    return dialog.saved();
}

int frmOptionServer::chosenTipoServer() const
{
    if (m_optMySql->isChecked())
        return TipoServer::MySql;
    if (m_optSqlServer->isChecked())
        return TipoServer::SqlServer;
    return TipoServer::FileDb;
}

void frmOptionServer::selectTipoServer(int tipo)
{
    QRadioButton* option = tipo == TipoServer::MySql ? m_optMySql
        : tipo == TipoServer::SqlServer              ? m_optSqlServer
                                                     : m_optAccess;
    if (option->isChecked())
        onTipoServerChosen();
    else
        option->setChecked(true);
}

void frmOptionServer::onTipoServerChosen()
{
    const int tipo = chosenTipoServer();
    if (tipo == m_shownTipo)
        return;
    m_shownTipo = tipo;
    const bool fileDb = tipo == TipoServer::FileDb;
    m_pages->setCurrentIndex(fileDb ? 0 : 1);
    m_lblPrompt->setText(fileDb ? kPromptFile : kPromptServer);
    m_txtConnectionString->setPlaceholderText(fileDb ? kPromptFile : kPromptServer);
    m_txtConnectionString->setReadOnly(fileDb);
    loadFields(tipo);
}

void frmOptionServer::loadFields(int tipo)
{
    m_loading = true;
    const ServerFields fields = storedServerFields(tipo);
    m_txtConnectionString->setPlainText(fields.connection);
    m_txtReportPath->setText(fields.reportPath);
    m_txtReportConnect->setText(fields.reportConnection);
    if (tipo == TipoServer::FileDb) {
        m_txtFileDBAccess->setText(fields.connection);
    } else {
        // A stored "DSN=..;UID=..;PWD=.." fills the data source fields back.
        const QMap<QString, QString> parts = parseConnectionString(fields.connection);
        m_cmbDSN->setCurrentIndex(m_cmbDSN->findText(parts.value(QStringLiteral("dsn")), Qt::MatchFixedString));
        if (m_cmbDSN->currentIndex() < 0)
            m_cmbDSN->setCurrentIndex(0);
        m_txtUserName->setText(parts.value(QStringLiteral("uid")));
        m_txtPassword->setText(parts.value(QStringLiteral("pwd")));
    }
    m_loading = false;
}

void frmOptionServer::validaStringaDNS()
{
    if (m_loading)
        return;
    if (chosenTipoServer() == TipoServer::FileDb) {
        const QString file = m_txtFileDBAccess->text().trimmed();
        m_txtConnectionString->setPlainText(file);
        m_txtReportConnect->setText(fileDbConnectionString(file));
        return;
    }
    // Only a chosen data source composes the text; a string typed by hand stays.
    const QString dsn = m_cmbDSN->currentText();
    if (dsn.isEmpty())
        return;
    const QString connection = QStringLiteral("DSN=") + dsn + QStringLiteral(";UID=") + m_txtUserName->text()
        + QStringLiteral(";PWD=") + m_txtPassword->text();
    m_txtConnectionString->setPlainText(connection);
    m_txtReportConnect->setText(connection);
}

void frmOptionServer::systemDSNs()
{
    const QString current = m_cmbDSN->currentText();
    m_loading = true;
    m_cmbDSN->clear();
    m_cmbDSN->addItem(QString());
    m_cmbDSN->addItems(odbcDataSourceNames());
    m_cmbDSN->setCurrentIndex(qMax(0, m_cmbDSN->findText(current)));
    m_loading = false;
}

void frmOptionServer::onSfoglia()
{
    const QString start = QFileInfo(m_txtFileDBAccess->text()).absolutePath();
    const QString file = dialogs::getOpenFileName(this, QStringLiteral("Scegliere il DataBase"), start, kFileFilter);
    if (file.isEmpty())
        return;
    m_txtFileDBAccess->setText(file);
    validaStringaDNS();
    if (msgBox(QStringLiteral("Aggiornare automaticamente il percorso dei report di stampa?"), vb::YesNo | vb::Question)
        == vb::Yes)
        m_txtReportPath->setText(QDir(QFileInfo(file).absolutePath()).filePath(QStringLiteral("AccessReports"))
                                 + QLatin1Char('/'));
}

void frmOptionServer::onODBC()
{
    // The data sources of this user live in ~/.odbc.ini: open it in the desktop's editor.
    const QString file = QDir::homePath() + QStringLiteral("/.odbc.ini");
    if (!QFileInfo::exists(file)) {
        QFile ini(file);
        if (ini.open(QIODevice::WriteOnly | QIODevice::Text))
            ini.write("[ODBC Data Sources]\n");
    }
    dialogs::openUrl(QUrl::fromLocalFile(file));
}

void frmOptionServer::saveServerSettings()
{
    const int tipo = chosenTipoServer();
    gSession().tipoServer = tipo;
    validaStringaDNS();
    ::saveServerSettings(tipo,
                         {oneLine(m_txtConnectionString->toPlainText()), m_txtReportPath->text().trimmed(),
                          m_txtReportConnect->text().trimmed()});
    m_saved = true;
    QString text = QStringLiteral("Le impostazioni correnti sono state salvate.");
    if (!m_duringStart)
        text += QStringLiteral("\nPer rendere effettive le modifiche sarà necessario riavviare il programma.");
    msgBox(text, vb::Information);
    accept();
}
