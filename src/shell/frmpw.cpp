#include "shell/frmpw.h"

#include "core/serversettings.h"
#include "data/connectionstring.h"
#include "data/session.h"
#include "data/sqldialect.h"
#include "shell/frmoptionserver.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

frmPw::frmPw(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmPw"));
    setWindowTitle(QStringLiteral("Accesso a Orvantis"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* icon = new QLabel(this);
    icon->setPixmap(
        QIcon::fromTheme(QStringLiteral("system-lock-screen"), style()->standardIcon(QStyle::SP_MessageBoxInformation))
            .pixmap(48, 48));
    auto* prompt = new QLabel(QStringLiteral("Inserire la password di accesso"), this);
    m_txtPassword = new QLineEdit(this);
    m_txtPassword->setObjectName(QStringLiteral("txtPassword"));
    m_txtPassword->setEchoMode(QLineEdit::Password);
    m_txtPassword->setMinimumWidth(260);
    prompt->setBuddy(m_txtPassword);
    m_lblDB = new QLabel(this);
    m_lblDB->setObjectName(QStringLiteral("lblDB"));
    m_lblDB->setWordWrap(true);
    QFont small = m_lblDB->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    m_lblDB->setFont(small);

    auto* cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto* cmdAnnulla = new QPushButton(QStringLiteral("Annulla"), this);
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    cmdAnnulla->setAutoDefault(false);
    auto* cmdAdvanced = new QPushButton(QStringLiteral("Opzioni"), this);
    cmdAdvanced->setObjectName(QStringLiteral("cmdAdvanced"));
    cmdAdvanced->setAutoDefault(false);

    auto* fields = new QVBoxLayout;
    fields->addWidget(prompt);
    fields->addWidget(m_txtPassword);
    fields->addWidget(m_lblDB);
    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    top->addLayout(fields, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdAdvanced);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdAnnulla);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);

    connect(cmdOK, &QPushButton::clicked, this, &QDialog::accept);
    connect(cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    connect(cmdAdvanced, &QPushButton::clicked, this, &frmPw::onAdvanced);
    showDatabase();
    m_txtPassword->setFocus();
}

void frmPw::reject()
{
    // "Annulla", Esc and the close button all mean leaving the program.
    m_exitAsked = true;
    QDialog::reject();
}

QString frmPw::password() const { return m_txtPassword->text(); }

void frmPw::showDatabase()
{
    m_lblDB->setText(QStringLiteral("DataBase: ")
                     + (gSession().tipoServer == TipoServer::FileDb ? databaseName() : gSession().strDescrizioneDB));
}

void frmPw::onAdvanced()
{
    if (!frmOptionServer::startMe(this, true))
        return;
    m_settingsChanged = true;
    readServerSettings();
    if (gSession().tipoServer == TipoServer::FileDb)
        saveDatabaseName(fileDbPath(gSession().strConnessione));
    showDatabase();
    m_txtPassword->setFocus();
}
