#pragma once
// The fields of the document screen are made the same way everywhere: a
// typed line edit wrapped for the keys, and a coded field with its browse
// button and the label of the row found.

#include <QString>

class QLabel;
class QLineEdit;
class QToolButton;
class QWidget;
class cKeyFunction;
class cLookupField;
class cTextBox;
struct LookupTable;

// A line edit named `nome` of the kind (typedinput::Kind), keys passed to `keys`.
QLineEdit* campo(QWidget* parent, const QString& nome, int tipo, cKeyFunction* keys, int decimali = 2);
// The wrapper of a field made by campo().
cTextBox* inputDi(const QLineEdit* campo);

// The field with a browse button beside it (and the label after, when
// given), in a row of their own.
QWidget* conSfoglia(QLineEdit* campo, QLabel* etichetta, QToolButton*& pulsante);

struct CampoCodificato
{
    QWidget* riga = nullptr; // field, browse button and label
    QLineEdit* campo = nullptr;
    QLabel* etichetta = nullptr;
    cLookupField* lookup = nullptr;
};
// A coded field on `tabella` (nullptr: the screen sets it later); F3 in it
// and the button browse.
CampoCodificato campoCodificato(QWidget* parent, const QString& nome, const LookupTable* tabella, cKeyFunction* keys,
                                const QString& titoloRicerca);
