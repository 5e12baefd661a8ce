#include "frmtipodocumento.h"

#include "clookupfield.h"

#include "cinputs.h"
#include "fieldlimits.h"
#include "frmricerca.h"
#include "italiantext.h"
#include "listhelpers.h"
#include "lookups.h"
#include "msgbox.h"
#include "optionstore.h"
#include "recordset.h"
#include "screenregistry.h"
#include "stampantidocumenti.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPrinterInfo>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const QString kPredefinita = QStringLiteral("Predefinita");
const QString kFrmCausali = QStringLiteral("frmCausali");

// fillCmbReport: the report files of a function, by name.
void fillCmbReport(int funzionalita, QComboBox* combo)
{
    fillComboBox(reportFunzionalita(funzionalita), combo);
}

QLabel* caption(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(text, parent);
    label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return label;
}

// A field at its own width, at the left of its row.
QWidget* leftAligned(QWidget* field)
{
    auto* row = new QWidget(field->parentWidget());
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    field->setParent(row);
    layout->addWidget(field);
    layout->addStretch(1);
    return row;
}

} // namespace

frmTipoDocumento::frmTipoDocumento(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmTipoDocumento"), QStringLiteral("Tipi di Documento"), parent)
{
    QWidget* frame = fraMain();
    m_txtCodice = lineEdit("txtCodice");
    m_txtCodice->setMaximumWidth(120);
    m_txtDescrizione = lineEdit("txtDescrizione");
    m_txtDescStampa = lineEdit("txtDescStampa");
    m_txtCausale = lineEdit("txtCausale");
    m_txtCausale->setMaximumWidth(90);
    m_lblCausale = new QLabel(frame);
    m_lblCausale->setObjectName(QStringLiteral("lblCausale"));
    m_lblCausale->setFrameShape(QFrame::StyledPanel);
    m_lblCausale->setFrameShadow(QFrame::Sunken);
    m_lblCausale->setMinimumWidth(220);
    m_cmdCausale = new QToolButton(frame);
    m_cmdCausale->setObjectName(QStringLiteral("cmdCausale"));
    m_cmdCausale->setIcon(QIcon::fromTheme(QStringLiteral("document-open")));
    m_cmdCausale->setToolTip(QStringLiteral("Apri la Causale"));
    m_cmdCausale->setFocusPolicy(Qt::NoFocus);
    m_cmdCausale->setEnabled(false);
    connect(m_cmdCausale, &QToolButton::clicked, this, &frmTipoDocumento::cmdCausale_Click);

    auto combo = [frame](const char* name) {
        auto* box = new QComboBox(frame);
        box->setObjectName(QString::fromLatin1(name));
        box->setMinimumWidth(260);
        return box;
    };
    m_cmbNumeratore = combo("cmbNumeratore");
    m_cmbReport = combo("cmbReport");
    m_cmbStampante = combo("cmbStampante");

    m_chkAccompagnatorio = checkBox("chkAccompagnatorio", "Accompagnatorio");
    m_chkMostraVB = checkBox("chkMostraVB", "Mostra in V.B.");
    m_chkNonStampareVB = checkBox("chkNonStampareVB", "Non stampare in V.B.");
    m_chkStampaElencoSpeciale = checkBox("chkStampaElencoSpeciale", "Stampa Elenco Speciale");
    m_chkModificaPrezzoAcquisto = checkBox("chkModificaPrezzoAcquisto", "Modifica Prezzo Acquisto");
    m_chkUsaPrezziIva = checkBox("chkUsaPrezziIva", "Usa prezzi con IVA");
    m_chkFlexCounter = checkBox("chkFlexCounter", "Numeratore flessibile");
    m_chkHideMenu = checkBox("chkHideMenu", "Nascondi nel menù");
    m_chkHideRicerca = checkBox("chkHideRicerca", "Nascondi nella ricerca");
    m_chkRDA = checkBox("chkRDA", "Utilizza R.D.A.");
    m_txtRDA1 = lineEdit("txtRDA1");
    m_txtRDA2 = lineEdit("txtRDA2");
    for (QLineEdit* rate : {m_txtRDA1, m_txtRDA2})
        rate->setMaximumWidth(80);
    connect(m_chkRDA, &QCheckBox::toggled, this, &frmTipoDocumento::chkRDA_Click);

    // --- layout
    auto* causale = new QHBoxLayout;
    causale->setSpacing(4);
    m_causale = addLookup(1, m_txtCausale, m_lblCausale, &validaCausale, causaleSearch());
    m_causale->setSearchTitle(QStringLiteral("Ricerca - Causali"));
    causale->addWidget(withBrowseButton(m_txtCausale, 1));
    causale->addWidget(m_cmdCausale);
    causale->addWidget(m_lblCausale, 1);

    auto* form = new QGridLayout;
    int row = 0;
    auto addRow = [&](const char* text, QWidget* field) {
        form->addWidget(caption(QString::fromUtf8(text), frame), row, 0);
        form->addWidget(field, row++, 1);
    };
    addRow("Codice:", withBrowseButton(m_txtCodice, 0));
    addRow("Descrizione:", m_txtDescrizione);
    addRow("Descrizione Stampa:", m_txtDescStampa);
    form->addWidget(caption(QStringLiteral("Causale:"), frame), row, 0);
    form->addLayout(causale, row++, 1);
    addRow("Contatore:", withBrowseButton(m_cmbNumeratore, 2));
    addRow("Report:", leftAligned(m_cmbReport));
    addRow("Stampante:", leftAligned(m_cmbStampante));
    form->setColumnStretch(1, 1);

    auto* opzioni = new QGroupBox(QStringLiteral(" Opzioni "), frame);
    auto* flags = new QGridLayout(opzioni);
    const QList<QCheckBox*> ordered{m_chkAccompagnatorio, m_chkStampaElencoSpeciale, m_chkModificaPrezzoAcquisto,
                                    m_chkUsaPrezziIva,     m_chkFlexCounter,          m_chkMostraVB,
                                    m_chkNonStampareVB,    m_chkHideMenu,             m_chkHideRicerca};
    for (int i = 0; i < int(ordered.size()); ++i) {
        ordered.at(i)->setParent(opzioni);
        flags->addWidget(ordered.at(i), i % 5, i / 5);
    }

    auto* rda = new QGroupBox(QStringLiteral(" R.D.A. "), frame);
    auto* rdaRow = new QHBoxLayout(rda);
    m_chkRDA->setParent(rda);
    rdaRow->addWidget(m_chkRDA);
    rdaRow->addSpacing(12);
    rdaRow->addWidget(new QLabel(QStringLiteral("valore R.D.A. %"), rda));
    rdaRow->addWidget(m_txtRDA1);
    rdaRow->addWidget(new QLabel(QStringLiteral("sul"), rda));
    rdaRow->addWidget(m_txtRDA2);
    rdaRow->addWidget(new QLabel(QStringLiteral("% dell' imponibile"), rda));
    rdaRow->addStretch(1);

    auto* layout = new QVBoxLayout(frame);
    layout->addLayout(form);
    layout->addWidget(opzioni);
    layout->addWidget(rda);
    layout->addStretch(1);

    // --- wrappers
    setCodeField(new cTextBox(m_txtCodice, typedinput::Testo, this));
    setDescriptionField(new cTextBox(m_txtDescrizione, typedinput::Testo, this));
    (new cTextBox(m_txtDescStampa, typedinput::Testo, this))->setCKeyRef(keys());
    limitToColumn(m_txtCodice, QStringLiteral("TipoDocumenti"), QStringLiteral("CODICE"));
    limitToColumn(m_txtDescrizione, QStringLiteral("TipoDocumenti"), QStringLiteral("DESCRIZIONE"));
    limitToColumn(m_txtDescStampa, QStringLiteral("TipoDocumenti"), QStringLiteral("DESCSTAMPA"));
    limitToColumn(m_txtCausale, QStringLiteral("Causali"), QStringLiteral("CODICE"));
    m_rda1 = new cTextBox(m_txtRDA1, typedinput::DecimaleZero, this);
    m_rda2 = new cTextBox(m_txtRDA2, typedinput::DecimaleZero, this);
    for (cTextBox* rate : {m_rda1, m_rda2})
        rate->setCKeyRef(keys());
    for (QComboBox* box : {m_cmbNumeratore, m_cmbReport, m_cmbStampante})
        (new cComboBox(box, this))->setCKeyRef(keys());
    for (QCheckBox* check : ordered + QList<QCheckBox*>{m_chkRDA})
        (new cCheckBox(check, this))->setCKeyRef(keys());
    connect(m_causale, &cLookupField::changed, this, [this](int rid) { setCausale(m_txtCausale->text(), m_lblCausale->text(), rid); });

    fillNumeratori();
    fillCmbReport(1, m_cmbReport);
    fillStampanti();
    resize(620, 540);
}

QLineEdit* frmTipoDocumento::lineEdit(const char* name)
{
    auto* edit = new QLineEdit(fraMain());
    edit->setObjectName(QString::fromLatin1(name));
    return edit;
}

QCheckBox* frmTipoDocumento::checkBox(const char* name, const char* text)
{
    auto* check = new QCheckBox(QString::fromUtf8(text), fraMain());
    check->setObjectName(QString::fromLatin1(name));
    return check;
}

// The numerators may have changed in their own screen: the list is read
// again, keeping the choice.
void frmTipoDocumento::fillNumeratori()
{
    const QVariant chosen = m_cmbNumeratore->currentData();
    fillComboBox(numeratoriCombo(), m_cmbNumeratore);
    setListindexByItemData(m_cmbNumeratore, chosen);
}

void frmTipoDocumento::fillStampanti()
{
    m_cmbStampante->clear();
    m_cmbStampante->addItem(kPredefinita);
    m_cmbStampante->addItems(QPrinterInfo::availablePrinterNames());
    m_cmbStampante->setCurrentIndex(0);
}

QString frmTipoDocumento::stampanteScelta() const
{
    return m_cmbStampante->currentIndex() <= 0 ? QString() : m_cmbStampante->currentText();
}

TipoDocumento frmTipoDocumento::tipoDocumento() const
{
    TipoDocumento td;
    td.codice = m_txtCodice->text().trimmed();
    td.descrizione = m_txtDescrizione->text();
    td.descStampa = m_txtDescStampa->text();
    td.fkCausale = m_causale->rid();
    td.nContatore = m_cmbNumeratore->currentIndex() < 0 ? 0 : m_cmbNumeratore->currentData().toInt();
    td.report = m_cmbReport->currentIndex() < 0 ? QString() : m_cmbReport->currentText();
    td.accompagnatorio = m_chkAccompagnatorio->isChecked();
    td.mostraVB = m_chkMostraVB->isChecked();
    td.nonStampareVB = m_chkNonStampareVB->isChecked();
    td.stampaElencoSpeciale = m_chkStampaElencoSpeciale->isChecked();
    td.modificaPrezzoAcquisto = m_chkModificaPrezzoAcquisto->isChecked();
    td.usaPrezziIva = m_chkUsaPrezziIva->isChecked();
    td.flexCounter = m_chkFlexCounter->isChecked();
    td.hideMenu = m_chkHideMenu->isChecked();
    td.hideRicerca = m_chkHideRicerca->isChecked();
    td.usaRda = m_chkRDA->isChecked();
    td.rda1 = m_txtRDA1->text();
    td.rda2 = m_txtRDA2->text();
    return td;
}

QString frmTipoDocumento::selectStatement() const
{
    return tipoDocumentoSelect();
}

void frmTipoDocumento::clearFields()
{
    for (QLineEdit* edit : {m_txtCodice, m_txtDescrizione, m_txtDescStampa})
        edit->clear();
    setCausale(QString(), QString(), 0);
    m_chkRDA->setChecked(false);
    for (QCheckBox* check : {m_chkAccompagnatorio, m_chkMostraVB, m_chkNonStampareVB, m_chkStampaElencoSpeciale,
                             m_chkModificaPrezzoAcquisto, m_chkUsaPrezziIva, m_chkFlexCounter, m_chkHideMenu,
                             m_chkHideRicerca})
        check->setChecked(false);
    m_txtRDA1->setText(formattaImporto(QVariant(), 2));
    m_txtRDA2->setText(formattaImporto(QVariant(), 2));
    chkRDA_Click();
    m_cmbNumeratore->setCurrentIndex(-1);
    m_cmbReport->setCurrentIndex(-1);
    fillStampanti();
}

void frmTipoDocumento::fillFields(const Recordset& rs)
{
    const TipoDocumento td = tipoDocumentoFromRecord(rs);
    m_txtCodice->setText(td.codice);
    m_txtDescrizione->setText(td.descrizione);
    m_txtDescStampa->setText(td.descStampa);
    setCausale(rs.text(QStringLiteral("CODCAUSALE")), rs.text(QStringLiteral("DESCCAUSALE")), td.fkCausale);
    setListindexByItemData(m_cmbNumeratore, td.nContatore);
    m_cmbReport->setCurrentIndex(m_cmbReport->findText(td.report));
    m_chkAccompagnatorio->setChecked(td.accompagnatorio);
    m_chkMostraVB->setChecked(td.mostraVB);
    m_chkNonStampareVB->setChecked(td.nonStampareVB);
    m_chkStampaElencoSpeciale->setChecked(td.stampaElencoSpeciale);
    m_chkModificaPrezzoAcquisto->setChecked(td.modificaPrezzoAcquisto);
    m_chkUsaPrezziIva->setChecked(td.usaPrezziIva);
    m_chkFlexCounter->setChecked(td.flexCounter);
    m_chkHideMenu->setChecked(td.hideMenu);
    m_chkHideRicerca->setChecked(td.hideRicerca);
    m_chkRDA->setChecked(td.usaRda);
    m_txtRDA1->setText(td.rda1);
    m_txtRDA2->setText(td.rda2);

    // A printer that is no longer installed still shows what is stored.
    const QString stampante = getStampanteDocumento(td.codice);
    if (!stampante.isEmpty()) {
        int index = m_cmbStampante->findText(stampante);
        if (index < 0) {
            m_cmbStampante->addItem(stampante);
            index = m_cmbStampante->count() - 1;
        }
        m_cmbStampante->setCurrentIndex(index);
    }
}

QStringList frmTipoDocumento::faults() const
{
    return tipoDocumentoFaults(tipoDocumento());
}

QString frmTipoDocumento::insertStatement() const
{
    return tipoDocumentoInsert(tipoDocumento());
}

QString frmTipoDocumento::updateStatement(int rid) const
{
    return tipoDocumentoUpdate(tipoDocumento(), rid);
}

QString frmTipoDocumento::searchStatement() const
{
    return tipoDocumentoSearch();
}

void frmTipoDocumento::showData(int rid, const QString& codice)
{
    fillNumeratori();
    cRecordScreen::showData(rid, codice);
}

bool frmTipoDocumento::newRecord()
{
    fillNumeratori();
    cRecordScreen::newRecord();
    m_chkUsaPrezziIva->setChecked(gOptions().usaPrezziIva);
    if (m_cmbReport->count() > 0)
        m_cmbReport->setCurrentIndex(0);
    m_cmbStampante->setCurrentIndex(0);
    return true;
}

bool frmTipoDocumento::saveRecord()
{
    if (!cRecordScreen::saveRecord())
        return false;
    setStampanteDocumento(codeText().trimmed(), stampanteScelta());
    screens::notifyDocumentTypesChanged();
    return true;
}

// No check for documents of the type, and no type of the system's own: the
// database's keys answer.
bool frmTipoDocumento::deleteRecord()
{
    if (!cRecordScreen::deleteRecord())
        return false;
    screens::notifyDocumentTypesChanged();
    return true;
}

void frmTipoDocumento::chkRDA_Click()
{
    const bool on = m_chkRDA->isChecked();
    m_txtRDA1->setEnabled(on);
    m_txtRDA2->setEnabled(on);
    if (!on) {
        m_txtRDA1->setText(formattaImporto(QVariant(), 2));
        m_txtRDA2->setText(formattaImporto(QVariant(), 2));
    }
}

void frmTipoDocumento::setCausale(const QString& codice, const QString& descrizione, int rid)
{
    m_causale->setRecord(rid, codice, descrizione);
    m_cmdCausale->setEnabled(m_causale->rid() > 0 && screens::findScreen(kFrmCausali));
}

void frmTipoDocumento::cmdCausale_Click()
{
    if (m_causale->rid() > 0)
        screens::openScreen(kFrmCausali, m_causale->rid());
}

void frmTipoDocumento::cmdSfoglia_Click(int index)
{
    switch (index) {
    case 2: {
        fillNumeratori();
        const int rid = frmRicerca::cerca(numeratoriCombo(), QStringLiteral("Ricerca - Numeratori"));
        if (rid > 0)
            setListindexByItemData(m_cmbNumeratore, rid);
        break;
    }
    default: cRecordScreen::cmdSfoglia_Click(index); break;
    }
}

void frmTipoDocumento::onFunctionKey(const QString& controlName, int keyCode, int shift)
{
    if (keyCode == 114 && controlName == m_cmbNumeratore->objectName())
        cmdSfoglia_Click(2);
    else
        cRecordScreen::onFunctionKey(controlName, keyCode, shift);
}
