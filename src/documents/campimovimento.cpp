#include "documents/campimovimento.h"

#include "lookups/lookuptable.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"

#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>

QLineEdit* campo(QWidget* parent, const QString& nome, int tipo, cKeyFunction* keys, int decimali)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(nome);
    auto* input = new cTextBox(edit, tipo, edit);
    input->setObjectName(QStringLiteral("input"));
    input->setDecimalPrecision(decimali);
    input->setCKeyRef(keys);
    keepReadable(edit);
    return edit;
}

cTextBox* inputDi(const QLineEdit* campo) { return campo->findChild<cTextBox*>(QStringLiteral("input")); }

QWidget* conSfoglia(QLineEdit* campo, QLabel* etichetta, QToolButton*& pulsante)
{
    auto* riga = new QWidget(campo->parentWidget());
    campo->setParent(riga);
    pulsante = new QToolButton(riga);
    pulsante->setObjectName(QStringLiteral("cmdSfoglia_") + campo->objectName());
    pulsante->setIcon(QIcon::fromTheme(QStringLiteral("edit-find")));
    pulsante->setText(QStringLiteral("..."));
    pulsante->setToolTip(QStringLiteral("Cerca [F3]"));
    pulsante->setFocusPolicy(Qt::NoFocus);
    auto* layout = new QHBoxLayout(riga);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(campo, etichetta ? 0 : 1);
    layout->addWidget(pulsante);
    if (etichetta) {
        etichetta->setParent(riga);
        layout->addSpacing(4);
        layout->addWidget(etichetta, 1);
    }
    return riga;
}

CampoCodificato campoCodificato(QWidget* parent, const QString& nome, const LookupTable* tabella, cKeyFunction* keys,
                                const QString& titoloRicerca)
{
    CampoCodificato c;
    c.campo = campo(parent, nome, typedinput::Testo, keys);
    inputDi(c.campo)->setIsCodice(true);
    inputDi(c.campo)->setCaseState(1); // codes are upper case
    c.campo->setMaximumWidth(readableWidth(c.campo, 14));
    c.etichetta = new QLabel(parent);
    c.etichetta->setObjectName(QStringLiteral("lbl") + nome.mid(3));
    c.etichetta->setFrameShape(QFrame::StyledPanel);
    c.etichetta->setFrameShadow(QFrame::Sunken);
    c.etichetta->setMinimumWidth(readableWidth(c.campo, 12));
    if (tabella)
        limitToColumn(c.campo, QLatin1String(tabella->table), QLatin1String(tabella->codeColumn));
    QToolButton* sfoglia = nullptr;
    c.riga = conSfoglia(c.campo, c.etichetta, sfoglia);
    c.lookup = new cLookupField(
        c.campo, c.etichetta,
        tabella ? cLookupField::Validator(tabella->validate) : [](QString&, QString&, int&) { return false; },
        tabella ? lookupSearch(*tabella) : QString(), c.riga);
    c.lookup->setSearchTitle(titoloRicerca);
    c.lookup->setButton(sfoglia);
    if (tabella && *tabella->editor)
        c.lookup->setEditor(QString::fromLatin1(tabella->editor), QString::fromLatin1(tabella->editorArgument));
    return c;
}
