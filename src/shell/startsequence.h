#pragma once
// The way from a bare process to the open main window: one copy, settings,
// database, login, option globals, main window.

#include <QString>

#include <memory>

class frmMain;
class frmSplash;
class SingleInstance;

struct ShellOptions
{
    bool hasPassword = false; // --password TEXT answers the login
    QString password;
    bool interactive = true; // false: nobody to ask (--screenshot); failures end the run
    int pauseMs = 1000;      // the pause with the splash after the connection test
    QString instanceKey;     // the one-copy key; empty: this user and program folder
};

class StartSequence
{
public:
    explicit StartSequence(ShellOptions options);
    ~StartSequence();

    // Runs the start. Returns the main window shown, or nullptr when the
    // program ends here; then exitCode() tells how.
    std::unique_ptr<frmMain> run();
    int exitCode() const { return m_exitCode; }

    // The copy that listens for later starts (valid after run()).
    SingleInstance* instance() const { return m_instance.get(); }

private:
    bool connectDatabase();
    bool login();
    bool askPassword(QString& typed, bool& settingsChanged);

    ShellOptions m_options;
    std::unique_ptr<SingleInstance> m_instance;
    std::unique_ptr<frmSplash> m_splash;
    int m_exitCode = 0;
    bool m_mayCreateDatabase = false; // a missing file database may be made from the model
};
