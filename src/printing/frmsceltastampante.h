#pragma once
// The printer choice: the printers of the system (CUPS), the default one
// marked, and "PDF", which writes a file. Shown through dialogs::exec.
//
// The application's printer is the session's (gSession().defaultPrinter):
// empty or "Predefinita" stand for the system's default printer; a system
// without any printer prints to "PDF".

#include <QDialog>
#include <QString>
#include <QStringList>

class QTreeWidget;
class QPushButton;

class frmSceltaStampante : public QDialog
{
    Q_OBJECT

public:
    // `attuale`: the printer selected on opening.
    explicit frmSceltaStampante(const QString& attuale, QWidget* parent = nullptr);

    // The device chosen with OK.
    QString stampante() const { return m_scelta; }

private:
    void conferma();

    QTreeWidget* m_lswStampanti;
    QPushButton* m_cmdOK;
    QString m_scelta;
};

// Opens the choice; the device name chosen, or an empty text when cancelled.
QString scegliStampante(QWidget* parent, const QString& attuale);

// The printers offered: the system's, then "PDF".
QStringList stampantiDisponibili();

// The device a printer name stands for: empty or "Predefinita" the system's
// default (the first printer when none is the default, "PDF" when the system
// has none); any other name as it is.
QString risolviStampante(const QString& nome);

// The application's printer, resolved.
QString stampanteApplicazione();

// True for a printer of the system and for "PDF".
bool stampanteInstallata(const QString& device);

// The port handed to the print with the device: the system's printers are
// reached through CUPS, the "PDF" printer writes a file.
QString portaStampante(const QString& device);
