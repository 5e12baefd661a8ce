#include "frmcausali.h"

#include "cinputs.h"
#include "clookupfield.h"
#include "fieldlimits.h"
#include "lookups.h"
#include "recordset.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

const QString kMagazzini = QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM Magazzini ORDER BY DESCRIZIONE");
const QString kConti = QStringLiteral("SELECT RID, CODICE, DESCRIZIONE FROM PianoConti ORDER BY CODICE");

QLineEdit* codeEdit(QWidget* parent, const QString& name)
{
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setMaximumWidth(110);
    return edit;
}

QLabel* descriptionLabel(QWidget* parent, const QString& name)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setMinimumWidth(200);
    return label;
}

QCheckBox* check(QWidget* parent, const char* name, const char* caption)
{
    auto* box = new QCheckBox(QString::fromUtf8(caption), parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

} // namespace

frmCausali::frmCausali(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmCausali"), QStringLiteral("Causali Contabili/Magazzino"), parent)
{
    m_txtCodice = codeEdit(fraMain(), QStringLiteral("txtCodice"));
    m_txtDescrizione = new QLineEdit(fraMain());
    m_txtDescrizione->setObjectName(QStringLiteral("txtDescrizione"));
    m_chkOperazione = check(fraMain(), "chkOperazione", "Aggiorna giacenze");
    m_chkTaglio = check(fraMain(), "chkTaglio", "Imposta Taglio");
    m_chkMostraVB = check(fraMain(), "chkMostraVB", "Mostra in V.B.");

    auto* head = new QFormLayout;
    head->addRow(QStringLiteral("Codice:"), withBrowseButton(m_txtCodice, 0));
    head->addRow(QStringLiteral("Descrizione:"), m_txtDescrizione);
    auto* flags = new QHBoxLayout;
    for (QCheckBox* box : {m_chkOperazione, m_chkTaglio, m_chkMostraVB})
        flags->addWidget(box);
    flags->addStretch(1);
    head->addRow(QString(), flags);

    auto* sides = new QHBoxLayout;
    sides->addWidget(sideBox(QStringLiteral(" Origine "), QStringLiteral("Orig"), m_origine, m_magazzinoOrig, 1));
    sides->addWidget(sideBox(QStringLiteral(" Destinazione "), QStringLiteral("Dest"), m_destinazione, m_magazzinoDest, 2));

    auto* layout = new QVBoxLayout(fraMain());
    layout->addLayout(head);
    layout->addLayout(sides);
    layout->addWidget(accountsBox());
    layout->addStretch(1);

    setCodeField(new cTextBox(m_txtCodice, typedinput::Testo, this));
    setDescriptionField(new cTextBox(m_txtDescrizione, typedinput::Testo, this));
    limitToColumn(m_txtCodice, QStringLiteral("Causali"), QStringLiteral("CODICE"));
    limitToColumn(m_txtDescrizione, QStringLiteral("Causali"), QStringLiteral("DESCRIZIONE"));
    for (QCheckBox* box : findChildren<QCheckBox*>())
        (new cCheckBox(box, this))->setCKeyRef(keys());
    connect(m_chkGeneraPN, &QCheckBox::toggled, this, &frmCausali::applyDependencies);
    connect(m_chkGeneraScad, &QCheckBox::toggled, this, &frmCausali::applyDependencies);
    connect(m_origine, &QButtonGroup::idToggled, this, &frmCausali::applyDependencies);
    connect(m_destinazione, &QButtonGroup::idToggled, this, &frmCausali::applyDependencies);
    applyDependencies();
    resize(720, 520);
}

// One side: the four kinds and the warehouse of the warehouse kind.
QWidget* frmCausali::sideBox(const QString& title, const QString& name, QButtonGroup*& group,
                             cLookupField*& warehouse, int index)
{
    auto* box = new QGroupBox(title, fraMain());
    box->setObjectName(QStringLiteral("fra") + (name == QLatin1String("Orig") ? QStringLiteral("Origine")
                                                                               : QStringLiteral("Destinazione")));
    group = new QButtonGroup(box);
    auto* layout = new QGridLayout(box);
    const QString option = name == QLatin1String("Orig") ? QStringLiteral("optOrigine_") : QStringLiteral("optDestinazione_");
    const char* kinds[] = {"Nessuna", "Cliente", "Fornitore", "Magazzino"};
    for (int i = 0; i < 4; ++i) {
        auto* radio = new QRadioButton(QString::fromLatin1(kinds[i]), box);
        radio->setObjectName(option + QString::number(i));
        group->addButton(radio, i);
        layout->addWidget(radio, i / 2, i % 2);
        (new cOptionButton(radio, this))->setCKeyRef(keys());
    }
    QLineEdit* field = codeEdit(box, QStringLiteral("txtMagazzino") + name);
    QLabel* label = descriptionLabel(box, QStringLiteral("lblMagazzino") + name);
    warehouse = addLookup(index, field, label, &validaMagazzino, kMagazzini);
    limitToColumn(field, QStringLiteral("Magazzini"), QStringLiteral("CODICE"));
    auto* row = new QHBoxLayout;
    row->addWidget(new QLabel(QStringLiteral("Magazzino:"), box));
    row->addWidget(withBrowseButton(field, index));
    warehouse->setEditor(QStringLiteral("frmSimpleForm"), QStringLiteral("mnuTab_6"));
    row->addWidget(label, 1);
    layout->addLayout(row, 2, 0, 1, 2);
    return box;
}

QWidget* frmCausali::accountsBox()
{
    auto* box = new QGroupBox(QStringLiteral(" Contabilità "), fraMain());
    m_chkGeneraPN = check(box, "chkGeneraPN", "Genera Prima Nota");
    m_chkGeneraScad = check(box, "chkGeneraScad", "Genera Scadenze");
    m_chkScadenzeNegative = check(box, "chkScadenzeNegative", "Scadenze negative");
    auto* layout = new QGridLayout(box);
    layout->addWidget(m_chkGeneraPN, 0, 0);
    layout->addWidget(m_chkGeneraScad, 0, 1);
    layout->addWidget(m_chkScadenzeNegative, 0, 2);
    const char* names[] = {"Dare1", "Dare2", "Avere1", "Avere2"};
    const char* captions[] = {"Conto Dare 1", "Conto Dare 2", "Conto Avere 1", "Conto Avere 2"};
    for (int i = 0; i < 4; ++i) {
        QLineEdit* field = codeEdit(box, QStringLiteral("txt") + QString::fromLatin1(names[i]));
        QLabel* label = descriptionLabel(box, QStringLiteral("lbl") + QString::fromLatin1(names[i]));
        m_conti << addLookup(3 + i, field, label, &validaConto, kConti);
        limitToColumn(field, QStringLiteral("PianoConti"), QStringLiteral("CODICE"));
        layout->addWidget(new QLabel(QString::fromLatin1(captions[i]) + QLatin1Char(':'), box), 1 + i, 0);
        layout->addWidget(withBrowseButton(field, 3 + i), 1 + i, 1);
        m_conti.last()->setEditor(QStringLiteral("frmPianoConti"));
        layout->addWidget(label, 1 + i, 2);
    }
    layout->setColumnStretch(2, 1);
    return box;
}

void frmCausali::applyDependencies()
{
    const bool journal = m_chkGeneraPN->isChecked();
    for (cLookupField* conto : std::as_const(m_conti))
        conto->setEnabled(journal);
    m_chkGeneraScad->setEnabled(journal);
    m_chkScadenzeNegative->setEnabled(journal && m_chkGeneraScad->isChecked());
    m_magazzinoOrig->setEnabled(m_origine->checkedId() == causale::Magazzino);
    m_magazzinoDest->setEnabled(m_destinazione->checkedId() == causale::Magazzino);
}

QString frmCausali::selectStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE, Operazione, ORIGINE, DESTINAZIONE, FK_MagazzinoOrig, "
                          "FK_MagazzinoDest, GENERAPN, GENERASCAD, SCADENZENEGATIVE, TAGLIO, MOSTRAVB, FK_CONTODARE1, "
                          "FK_CONTODARE2, FK_ContoAvere1, FK_CONTOAVERE2 FROM Causali");
}

void frmCausali::clearFields()
{
    m_txtCodice->clear();
    m_txtDescrizione->clear();
    for (QCheckBox* box : findChildren<QCheckBox*>())
        box->setChecked(false);
    m_origine->button(causale::Nessuna)->setChecked(true);
    m_destinazione->button(causale::Nessuna)->setChecked(true);
    m_magazzinoOrig->clear();
    m_magazzinoDest->clear();
    for (cLookupField* conto : std::as_const(m_conti))
        conto->clear();
    applyDependencies();
}

void frmCausali::fillFields(const Recordset& rs)
{
    m_txtCodice->setText(rs.text(QStringLiteral("CODICE")));
    m_txtDescrizione->setText(rs.text(QStringLiteral("DESCRIZIONE")));
    m_chkOperazione->setChecked(rs.flag(QStringLiteral("Operazione")));
    m_chkGeneraPN->setChecked(rs.flag(QStringLiteral("GENERAPN")));
    m_chkGeneraScad->setChecked(rs.flag(QStringLiteral("GENERASCAD")));
    m_chkScadenzeNegative->setChecked(rs.flag(QStringLiteral("SCADENZENEGATIVE")));
    m_chkTaglio->setChecked(rs.flag(QStringLiteral("TAGLIO")));
    m_chkMostraVB->setChecked(rs.flag(QStringLiteral("MOSTRAVB")));
    if (QAbstractButton* kind = m_origine->button(int(rs.integer(QStringLiteral("ORIGINE")))))
        kind->setChecked(true);
    if (QAbstractButton* kind = m_destinazione->button(int(rs.integer(QStringLiteral("DESTINAZIONE")))))
        kind->setChecked(true);
    m_magazzinoOrig->setRid(int(rs.integer(QStringLiteral("FK_MagazzinoOrig"))));
    m_magazzinoDest->setRid(int(rs.integer(QStringLiteral("FK_MagazzinoDest"))));
    const char* accounts[] = {"FK_CONTODARE1", "FK_CONTODARE2", "FK_ContoAvere1", "FK_CONTOAVERE2"};
    for (int i = 0; i < 4; ++i)
        m_conti.at(i)->setRid(int(rs.integer(QString::fromLatin1(accounts[i]))));
    applyDependencies();
}

QStringList frmCausali::faults() const
{
    return requiredFaults();
}

causale::Causale frmCausali::shown() const
{
    causale::Causale c;
    c.codice = m_txtCodice->text();
    c.descrizione = m_txtDescrizione->text();
    c.operazione = m_chkOperazione->isChecked();
    c.origine = qMax(0, m_origine->checkedId());
    c.destinazione = qMax(0, m_destinazione->checkedId());
    c.magazzinoOrig = m_magazzinoOrig->rid();
    c.magazzinoDest = m_magazzinoDest->rid();
    c.generaPN = m_chkGeneraPN->isChecked();
    c.generaScad = m_chkGeneraScad->isChecked();
    c.scadenzeNegative = m_chkScadenzeNegative->isChecked();
    c.taglio = m_chkTaglio->isChecked();
    c.mostraVB = m_chkMostraVB->isChecked();
    c.contoDare1 = m_conti.at(0)->rid();
    c.contoDare2 = m_conti.at(1)->rid();
    c.contoAvere1 = m_conti.at(2)->rid();
    c.contoAvere2 = m_conti.at(3)->rid();
    return c;
}

QString frmCausali::insertStatement() const
{
    return causale::insertStatement(shown());
}

QString frmCausali::updateStatement(int rid) const
{
    return causale::updateStatement(shown(), rid);
}

QString frmCausali::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, Descrizione FROM Causali ORDER BY DESCRIZIONE");
}
