#include "masterdata/frmtipodocumento.h"

#include "common/italiantext.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "masterdata/stampantidocumenti.h"
#include "printing/printscreens.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/listhelpers.h"

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

using namespace fields;

namespace {

const QString kPredefinita = QStringLiteral("Predefinita");
const QString kFrmCausali = QStringLiteral("frmCausali");
const QString kNumeratori = QStringLiteral("SELECT RID, DESCRIZIONE FROM Numeratori ORDER BY DESCRIZIONE");
// The templates offered for documents.
constexpr int kFunzionalitaDocumenti = 1;
constexpr int kNumeratoreBrowse = 2;

FieldList tipoDocumentoFields()
{
    return {QStringLiteral("TipoDocumenti"),
            {field("CODICE", "txtCodice", "Codice", Required),
             field("DESCRIZIONE", "txtDescrizione", "Descrizione", Required),
             field("DESCSTAMPA", "txtDescStampa", "Descrizione Stampa", Required),
             key("FK_CAUSALE", "txtCausale", "Causale", lookup::causali, Required),
             combo("NCONTATORE", "cmbNumeratore", "Contatore", Required),
             combo("REPORT", "cmbReport", "Report", Required | ComboText),
             field("ACCOMPAGNATORIO", "chkAccompagnatorio", "Accompagnatorio"),
             field("STAMPAELENCOSPECIALE", "chkStampaElencoSpeciale", "Stampa Elenco Speciale"),
             field("MODIFICAPREZZOACQUISTO", "chkModificaPrezzoAcquisto", "Modifica Prezzo Acquisto"),
             field("USAPREZZIIVA", "chkUsaPrezziIva", "Usa prezzi con IVA"),
             field("FLEXCOUNTER", "chkFlexCounter", "Numeratore flessibile"),
             field("MOSTRAVB", "chkMostraVB", "Mostra in V.B."),
             field("NONSTAMPAREVB", "chkNonStampareVB", "Non stampare in V.B."),
             field("HIDEMENU", "chkHideMenu", "Nascondi nel menù"),
             field("HIDERICERCA", "chkHideRicerca", "Nascondi nella ricerca"),
             field("USARDA", "chkRDA", "Utilizza R.D.A."), number("RDA1", "txtRDA1", "R.D.A. % (1)", 2, ZeroWhenEmpty),
             number("RDA2", "txtRDA2", "R.D.A. % (2)", 2, ZeroWhenEmpty)}};
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
    setFields(tipoDocumentoFields());
    QWidget* frame = fraMain();
    for (const char* name : {"cmbNumeratore", "cmbReport"})
        combo(name)->setMinimumWidth(260);
    m_cmbStampante = new QComboBox(frame);
    m_cmbStampante->setObjectName(QStringLiteral("cmbStampante"));
    m_cmbStampante->setMinimumWidth(260);
    (new cComboBox(m_cmbStampante, this))->setCKeyRef(keys());
    m_cmdCausale = new QToolButton(frame);
    m_cmdCausale->setObjectName(QStringLiteral("cmdCausale"));
    m_cmdCausale->setIcon(QIcon::fromTheme(QStringLiteral("document-open")));
    m_cmdCausale->setToolTip(QStringLiteral("Apri la Causale"));
    m_cmdCausale->setFocusPolicy(Qt::NoFocus);
    m_cmdCausale->setEnabled(false);
    connect(m_cmdCausale, &QToolButton::clicked, this, &frmTipoDocumento::cmdCausale_Click);
    lookupOf(QStringLiteral("txtCausale"))->setSearchTitle(QStringLiteral("Ricerca - Causali"));
    connect(lookupOf(QStringLiteral("txtCausale")), &cLookupField::changed, this, &frmTipoDocumento::causaleChanged);

    // --- layout
    auto* causale = new QHBoxLayout;
    causale->setSpacing(4);
    causale->addWidget(fieldRow(QStringLiteral("txtCausale")), 1);
    causale->addWidget(m_cmdCausale);

    auto* form = new QGridLayout;
    int row = 0;
    auto addRow = [&](const char* text, QWidget* field) {
        form->addWidget(caption(QString::fromUtf8(text), frame), row, 0);
        form->addWidget(field, row++, 1);
    };
    addRow("Codice:", fieldRow(QStringLiteral("txtCodice")));
    addRow("Descrizione:", fieldRow(QStringLiteral("txtDescrizione")));
    addRow("Descrizione Stampa:", fieldRow(QStringLiteral("txtDescStampa")));
    form->addWidget(caption(QStringLiteral("Causale:"), frame), row, 0);
    form->addLayout(causale, row++, 1);
    addRow("Contatore:", withBrowseButton(combo("cmbNumeratore"), kNumeratoreBrowse));
    addRow("Report:", leftAligned(combo("cmbReport")));
    addRow("Stampante:", leftAligned(m_cmbStampante));
    form->setColumnStretch(1, 1);

    auto* opzioni = new QGroupBox(QStringLiteral(" Opzioni "), frame);
    auto* flags = new QGridLayout(opzioni);
    const char* const ordered[] = {"chkAccompagnatorio",
                                   "chkStampaElencoSpeciale",
                                   "chkModificaPrezzoAcquisto",
                                   "chkUsaPrezziIva",
                                   "chkFlexCounter",
                                   "chkMostraVB",
                                   "chkNonStampareVB",
                                   "chkHideMenu",
                                   "chkHideRicerca"};
    for (int i = 0; i < int(std::size(ordered)); ++i) {
        QWidget* check = control(QString::fromLatin1(ordered[i]));
        check->setParent(opzioni);
        flags->addWidget(check, i % 5, i / 5);
    }

    auto* rda = new QGroupBox(QStringLiteral(" R.D.A. "), frame);
    auto* rdaRow = new QHBoxLayout(rda);
    rdaRow->addWidget(control(QStringLiteral("chkRDA")));
    rdaRow->addSpacing(12);
    rdaRow->addWidget(new QLabel(QStringLiteral("valore R.D.A. %"), rda));
    rdaRow->addWidget(control(QStringLiteral("txtRDA1")));
    rdaRow->addWidget(new QLabel(QStringLiteral("sul"), rda));
    rdaRow->addWidget(control(QStringLiteral("txtRDA2")));
    rdaRow->addWidget(new QLabel(QStringLiteral("% dell' imponibile"), rda));
    rdaRow->addStretch(1);
    connect(static_cast<QCheckBox*>(control(QStringLiteral("chkRDA"))), &QCheckBox::toggled, this,
            &frmTipoDocumento::chkRDA_Click);

    auto* layout = new QVBoxLayout(frame);
    layout->addLayout(form);
    layout->addWidget(opzioni);
    layout->addWidget(rda);
    layout->addStretch(1);

    fillNumeratori();
    fillCmbReport(kFunzionalitaDocumenti, combo("cmbReport"));
    fillStampanti();
    chkRDA_Click();
    resize(620, 540);
}

QComboBox* frmTipoDocumento::combo(const char* name) const
{
    return static_cast<QComboBox*>(control(QString::fromLatin1(name)));
}

// The numerators may have changed in their own screen: the list is read
// again, keeping the choice.
void frmTipoDocumento::fillNumeratori()
{
    QComboBox* numeratori = combo("cmbNumeratore");
    const QVariant chosen = numeratori->currentData();
    fillComboBox(kNumeratori, numeratori);
    setListindexByItemData(numeratori, chosen);
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

// A type shows only with a valid numerator.
QString frmTipoDocumento::selectStatement() const
{
    return QStringLiteral("SELECT * FROM (") + cRecordScreen::selectStatement()
        + QStringLiteral(" WHERE NCONTATORE IN (SELECT RID FROM Numeratori)) TD");
}

void frmTipoDocumento::fillFields(const Recordset& rs)
{
    fillStampanti();
    cRecordScreen::fillFields(rs);
    chkRDA_Click();
    causaleChanged();
    // A printer that is no longer installed still shows what is stored.
    const QString stampante = getStampanteDocumento(codeText().trimmed());
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
    QStringList found = cRecordScreen::faults();
    const QStringList shown = shownValues();
    const FieldList& list = fieldList();
    if (shown.at(list.indexOf(QStringLiteral("chkRDA"))) == QLatin1String("1"))
        for (const char* rate : {"txtRDA1", "txtRDA2"}) {
            const int i = list.indexOf(QString::fromLatin1(rate));
            if (getValoreSingle(shown.at(i)) == 0)
                found << obbligatorio(list.at(i).caption);
        }
    return found;
}

QString frmTipoDocumento::searchStatement() const
{
    return QStringLiteral("SELECT RID, Codice, Descrizione FROM TipoDocumenti ORDER BY DESCRIZIONE");
}

void frmTipoDocumento::showData(int rid, const QString& codice)
{
    fillNumeratori();
    cRecordScreen::showData(rid, codice);
}

bool frmTipoDocumento::newRecord()
{
    fillNumeratori();
    fillStampanti();
    cRecordScreen::newRecord();
    chkRDA_Click();
    causaleChanged();
    static_cast<QCheckBox*>(control(QStringLiteral("chkUsaPrezziIva")))->setChecked(gOptions().usaPrezziIva);
    if (combo("cmbReport")->count() > 0)
        combo("cmbReport")->setCurrentIndex(0);
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

// No check for documents of the type: the database's keys answer.
bool frmTipoDocumento::deleteRecord()
{
    if (!cRecordScreen::deleteRecord())
        return false;
    screens::notifyDocumentTypesChanged();
    return true;
}

void frmTipoDocumento::chkRDA_Click()
{
    const bool on = isChecked(QStringLiteral("chkRDA"));
    for (const char* name : {"txtRDA1", "txtRDA2"}) {
        auto* rate = lineEdit(QString::fromLatin1(name));
        rate->setEnabled(on);
        if (!on || rate->text().isEmpty())
            rate->setText(formattaImporto(QVariant(), 2));
    }
}

void frmTipoDocumento::causaleChanged()
{
    m_cmdCausale->setEnabled(lookupOf(QStringLiteral("txtCausale"))->rid() > 0 && screens::findScreen(kFrmCausali));
}

void frmTipoDocumento::cmdCausale_Click()
{
    const int rid = lookupOf(QStringLiteral("txtCausale"))->rid();
    if (rid > 0)
        screens::openScreen(kFrmCausali, rid);
}

void frmTipoDocumento::cmdSfoglia_Click(int index)
{
    if (index != kNumeratoreBrowse)
        return cRecordScreen::cmdSfoglia_Click(index);
    fillNumeratori();
    const int rid = frmRicerca::cerca(kNumeratori, QStringLiteral("Ricerca - Numeratori"));
    if (rid > 0)
        setListindexByItemData(combo("cmbNumeratore"), rid);
}

void frmTipoDocumento::onFunctionKey(const QString& controlName, int keyCode, int shift)
{
    if (keyCode == vbKey::F3 && controlName == QLatin1String("cmbNumeratore"))
        cmdSfoglia_Click(kNumeratoreBrowse);
    else
        cRecordScreen::onFunctionKey(controlName, keyCode, shift);
}
