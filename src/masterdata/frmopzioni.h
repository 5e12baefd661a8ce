#pragma once
// The options of the firm and of this machine, on seven tabs. The fields
// show the option globals; OK writes them back to the globals, the table
// Opzioni and the settings store, Annulla leaves everything as it was.

#include <QDialog>
#include <QImage>
#include <QList>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QTabWidget;
class QVBoxLayout;
class cKeyFunction;
class cLookupField;

namespace opzioni {
struct Campo;
}

class frmOpzioni : public QDialog
{
    Q_OBJECT

public:
    explicit frmOpzioni(QWidget* parent = nullptr);

    void cmdOk_Click();
    void cmdSfoglia_Click(int index);
    void cmdLogoStretch_Click();

private:
    // A field that holds the code of another table's row.
    struct CampoChiave
    {
        const opzioni::Campo* campo;
        cLookupField* lookup;
    };

    void costruisci();
    QWidget* costruisciFrame(int frame);
    QWidget* campoInForm(const opzioni::Campo& campo, QWidget* parent);
    QWidget* campoChiave(const opzioni::Campo& campo, QWidget* parent);
    QWidget* costruisciLogo();
    void aggiungiDipendenze();

    void caricaOpzioni();
    void initReport();
    void copiaInGlobali();
    void caricaImmagine(const QString& file);
    void mostraLogo(const QImage& logo);
    void onTabChanged(int index);
    void onFunctionKey(const QString& controlName, int keyCode, int shift);

    template <typename T> T* control(const QString& name) const;
    template <typename T> T* control(const char* name) const { return control<T>(QString::fromLatin1(name)); }

    QTabWidget* m_tbsMain = nullptr;
    cKeyFunction* m_keys = nullptr;
    QList<CampoChiave> m_chiavi;
    QLabel* m_pctImmagine = nullptr;
    QImage m_logoNuovo; // chosen, written at OK
};
