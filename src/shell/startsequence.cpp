#include "shell/startsequence.h"

#include "common/msgbox.h"
#include "core/appinfo.h"
#include "core/dialogservice.h"
#include "core/optionstore.h"
#include "core/passwordchange.h"
#include "core/serversettings.h"
#include "core/startup.h"
#include "data/cadosqlserver.h"
#include "data/scoped.h"
#include "data/session.h"
#include "shell/frmmain.h"
#include "shell/frmoptionserver.h"
#include "shell/frmpw.h"
#include "shell/frmsplash.h"
#include "shell/helpfiles.h"
#include "shell/singleinstance.h"

#include <QApplication>
#include <QPrinterInfo>
#include <QThread>

StartSequence::StartSequence(ShellOptions options)
    : m_options(std::move(options))
{ }

StartSequence::~StartSequence() = default;

std::unique_ptr<frmMain> StartSequence::run()
{
    gSession().moduleName = QStringLiteral("bOrvantis");

    m_instance = std::make_unique<SingleInstance>(
        m_options.instanceKey.isEmpty() ? SingleInstance::keyForProgramFolder() : m_options.instanceKey);
    if (!m_instance->claim()) {
        m_exitCode = 0; // the running copy has come forward
        return nullptr;
    }

    m_splash = std::make_unique<frmSplash>();
    m_splash->show();
    m_splash->addInfo(QStringLiteral("Inizializzazione in corso..."));
    helpIndexFile();

    m_splash->addInfo(QStringLiteral("Lettura informazioni..."));
    gSession().sqlSeparator = gAdoSqlServer().getSQLSeparator();
    readServerSettings();
    // Asked before "path" is written for this start.
    m_mayCreateDatabase = firstStartOnProgramFolder();
    saveRunningInfo(versionText());
    gSession().defaultPrinter = QPrinterInfo::defaultPrinterName();

    if (!connectDatabase())
        return nullptr;
    if (m_options.pauseMs > 0)
        QThread::msleep(m_options.pauseMs);
    m_splash->hide();

    if (!login())
        return nullptr;

    m_splash->show();
    m_splash->addInfo(QStringLiteral("Lettura informazioni..."));
    loadOptionGlobals();

    auto main = std::make_unique<frmMain>(m_splash.get());
    QObject::connect(m_instance.get(), &SingleInstance::raiseRequested, main.get(), &frmMain::bringForward);
    main->show();
    m_splash->addInfo(QStringLiteral("Connessione avvenuta."));
    m_splash->closeIt();
    // The splash goes away by its own timer.
    m_splash.release()->setAttribute(Qt::WA_DeleteOnClose);
    return main;
}

bool StartSequence::connectDatabase()
{
    auto tryConnect = [this](bool silent) {
        m_splash->addInfo(QStringLiteral("Connessione al DB ") + gSession().strDescrizioneDB + QStringLiteral("..."));
        QString message;
        if (!prepareFileDatabase(m_mayCreateDatabase, &message)) {
            // A file that is missing, empty or not ours is named at once, even
            // on the quiet first attempt: the settings that open next are where
            // the path is put right.
            m_splash->hide();
            msgBox(message, vb::Critical);
            return false;
        }
        return connectionCheck(silent);
    };
    if (tryConnect(true))
        return true;
    if (m_options.interactive) {
        m_splash->hide();
        // A file chosen in the settings is used as it is, never made.
        if (frmOptionServer::startMe(nullptr, true))
            m_mayCreateDatabase = false;
        readServerSettings();
        m_splash->show();
        if (tryConnect(false))
            return true;
    }
    msgBox(QStringLiteral("Impossibile connettere il DataBase!"), vb::Critical);
    m_exitCode = 1;
    return false;
}

bool StartSequence::askPassword(QString& typed, bool& settingsChanged)
{
    if (m_options.hasPassword) {
        // The switch answers the first question; a person answers the next ones.
        m_options.hasPassword = false;
        typed = m_options.password;
        return true;
    }
    if (!m_options.interactive) {
        m_exitCode = 1;
        return false;
    }
    frmPw dialog;
    dialogs::exec(dialog);
    typed = dialog.password();
    if (dialog.exitAsked()) {
        m_exitCode = 0;
        return false;
    }
    settingsChanged = dialog.settingsChanged();
    if (settingsChanged)
        readServerSettings();
    return true;
}

bool StartSequence::login()
{
    for (;;) {
        QString typed;
        bool settingsChanged = false;
        if (!askPassword(typed, settingsChanged))
            return false;
        gSession().password = typed;
        if (settingsChanged) {
            // Another database was chosen from the login: it is checked as at
            // start, and never made.
            QString message;
            if (!prepareFileDatabase(false, &message)) {
                msgBox(message, vb::Critical);
                continue;
            }
        }
        if (passwordAccepted(typed))
            return true;
        msgBox(QStringLiteral("Password non corretta.\nAccesso negato!"), vb::Critical);
    }
}
