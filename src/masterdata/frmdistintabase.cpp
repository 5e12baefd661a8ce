#include "masterdata/frmdistintabase.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/optionstore.h"
#include "data/recordset.h"
#include "data/sqlliteral.h"
#include "lookups/lookups.h"
#include "lookups/lookuptable.h"
#include "masterdata/prodotto.h"
#include "printing/anteprima.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/frmricerca.h"

#include <QCheckBox>
#include <QCloseEvent>
#include <QDateTime>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>

using namespace fields;
using namespace statoDistinta;

namespace {

// Browse buttons: the head's look-ups take 1 to 3.
constexpr int kSfogliaIva = 4, kSfogliaUM = 5, kSfogliaProdotto = 6;

// The columns of lswElenco.
enum Colonna {
    kCodice,
    kIdProdotto,
    kDescrizione,
    kIdIva,
    kCodIva,
    kDescIva,
    kIva,
    kQuantita,
    kIdUM,
    kUM,
    kPrezzo,
    kImporto,
    kGestione,
    kRid,
    kColonne
};

const char* const kIntestazioni[kColonne] = {"Codice",   "ID_PRODOTTO", "Descrizione", "Id Iva", "Cod Iva",
                                             "Desc Iva", "Iva",         "Quantità",    "ID_UM",  "U.M.",
                                             "Prezzo",   "Importo",     "Gestione",    "RID"};

QLabel* cornice(QLabel* label)
{
    label->setFrameShape(QFrame::StyledPanel);
    label->setFrameShadow(QFrame::Sunken);
    return label;
}

QLabel* named(QLabel* label, const char* name)
{
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

} // namespace

frmDistintaBase::frmDistintaBase(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmDistintaBase"), QStringLiteral("Distinta Base"), parent)
{
    setFields({QStringLiteral("DistintaBase"),
               {field("CODICE", "txtCodice", "Codice", Trimmed),
                field("BARCODE", "txtBarCode", "Codice a barre", Required | Trimmed),
                field("EXTRACOD", "txtExtraCod", "Extra codice", Trimmed),
                field("DESCRIZIONE", "txtDescrizione", "Descrizione", Required),
                key("FK_CATEGORIA", "txtCategoria", "Categoria", lookup::categorie),
                key("FK_GRUPPO", "txtGruppo", "Gruppo", lookup::gruppi),
                key("FK_UM", "txtUnitaMisura", "Unità di misura", lookup::unitaMisura)}});

    // The kit character stands before the code; the code leaves it room in the column.
    m_lblPrecodice = named(new QLabel(fraMain()), "lblPrecodice");
    m_lblPrecodice->setToolTip(QStringLiteral("Carattere della distinta base"));
    QFont grassetto = m_lblPrecodice->font();
    grassetto.setBold(true);
    m_lblPrecodice->setFont(grassetto);
    auto* codeRow = static_cast<QHBoxLayout*>(fieldRow(QStringLiteral("txtCodice"))->layout());
    codeRow->insertWidget(0, m_lblPrecodice);
    if (QLineEdit* code = lineEdit(QStringLiteral("txtCodice")); code->maxLength() > 1)
        code->setMaxLength(code->maxLength() - 1);

    auto* grid = new QGridLayout(fraMain());
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(fieldGroup(QStringLiteral("Distinta Base"),
                               {"txtCodice", "txtBarCode", "txtExtraCod", "txtDescrizione", "txtCategoria", "txtGruppo",
                                "txtUnitaMisura"}),
                    0, 0);
    grid->addWidget(buildEditor(), 1, 0);

    m_lswElenco = new QTreeWidget(fraMain());
    m_lswElenco->setObjectName(QStringLiteral("lswElenco"));
    m_lswElenco->setRootIsDecorated(false);
    m_lswElenco->setAlternatingRowColors(true);
    m_lswElenco->setUniformRowHeights(true);
    QStringList intestazioni;
    for (const char* testo : kIntestazioni)
        intestazioni << QString::fromUtf8(testo);
    m_lswElenco->setHeaderLabels(intestazioni);
    for (const int nascosta : {kIdProdotto, kIdIva, kIdUM, kGestione, kRid})
        m_lswElenco->setColumnHidden(nascosta, true);
    const std::pair<int, int> larghezze[] = {{kCodice, 100},  {kDescrizione, 220}, {kCodIva, 55},
                                             {kDescIva, 100}, {kIva, 55},          {kQuantita, 75},
                                             {kUM, 45},       {kPrezzo, 85},       {kImporto, 85}};
    for (const auto& [colonna, larghezza] : larghezze)
        m_lswElenco->setColumnWidth(colonna, larghezza);
    for (const int numero : {kIva, kQuantita, kPrezzo, kImporto})
        m_lswElenco->headerItem()->setTextAlignment(numero, Qt::AlignRight | Qt::AlignVCenter);
    m_lswElenco->setMinimumHeight(140);
    connect(m_lswElenco, &QTreeWidget::itemDoubleClicked, this,
            [this](QTreeWidgetItem* item) { lswElenco_DblClick(m_lswElenco->indexOfTopLevelItem(item)); });
    grid->addWidget(m_lswElenco, 2, 0);
    grid->addWidget(buildTotals(), 3, 0);
    grid->setRowStretch(2, 1);

    resize(sizeHint());
}

QSize frmDistintaBase::sizeHint() const { return cRecordScreen::sizeHint().expandedTo(QSize(880, 640)); }

QLineEdit* frmDistintaBase::editorField(const char* name, int typeFormat, int decimals, int width)
{
    auto* line = new QLineEdit(fraMain());
    line->setObjectName(QString::fromLatin1(name));
    auto* input = new cTextBox(line, typeFormat, line);
    input->setDecimalPrecision(decimals);
    input->setCKeyRef(keys());
    keepReadable(line, width);
    return line;
}

// A look-up of the row editor, laid out as the head's: field, browse button, description.
cLookupField* frmDistintaBase::editorLookup(int index, const char* name, QWidget*& row)
{
    auto* line = new QLineEdit(fraMain());
    line->setObjectName(QStringLiteral("txt") + QLatin1String(name));
    auto* label = cornice(new QLabel(fraMain()));
    label->setObjectName(QStringLiteral("lbl") + QLatin1String(name));
    label->setMinimumWidth(120);
    cLookupField* lookup = nullptr;
    if (index == kSfogliaIva) {
        lookup = addLookup(
            index, line, label,
            [this](QString& codice, QString& descrizione, int& rid) {
                Single valore = 0;
                const bool trovata = validaIva(codice, descrizione, rid, valore);
                m_valoreIva = trovata ? valore : 0;
                return trovata;
            },
            lookupSearch(lookup::iva));
        limitToColumn(line, QStringLiteral("Iva"), QStringLiteral("CODICE"));
    } else {
        lookup = addLookup(index, line, label, lookup::unitaMisura.validate, lookupSearch(lookup::unitaMisura));
        limitToColumn(line, QStringLiteral("UnitaMisura"), QStringLiteral("CODICE"));
    }
    keepReadable(line, 90);
    row = new QWidget(fraMain());
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(withBrowseButton(line, index));
    layout->addWidget(label, 1);
    return lookup;
}

QWidget* frmDistintaBase::buildEditor()
{
    auto* box = new QGroupBox(QStringLiteral("Componenti"), fraMain());
    auto* grid = new QGridLayout(box);

    m_txtProdotto = editorField("txtProdotto", typedinput::Testo, 0, 0);
    limitToColumn(m_txtProdotto, QStringLiteral("Prodotti"), QStringLiteral("CODICE"));
    keepReadable(m_txtProdotto, 140);
    m_txtProdotto->setToolTip(QStringLiteral("Codice, codice a barre o extra codice del prodotto [F3 Cerca]"));
    m_txtProdotto->findChild<cTextBox*>()->setCaseState(1);
    m_lblDescProdotto = cornice(named(new QLabel(box), "lblDescProdotto"));
    m_lblDescProdotto->setMinimumWidth(200);
    m_txtQuantita = editorField("txtQuantita", typedinput::DecimaleZero, 2, 110);
    m_txtPrezzo = editorField("txtPrezzo", typedinput::DecimaleZero, gOptions().decimaliDopo, 120);
    // Enter in the price confirms the row.
    auto* prezzo = m_txtPrezzo->findChild<cTextBox*>();
    prezzo->setActionKeyReturn(true);
    connect(prezzo, &cTextBox::evtActionKeyRetunr, this, &frmDistintaBase::cmdConferma_Click);
    QWidget* rigaIva = nullptr;
    QWidget* rigaUM = nullptr;
    m_iva = editorLookup(kSfogliaIva, "Iva", rigaIva);
    m_um = editorLookup(kSfogliaUM, "UM", rigaUM);

    grid->addWidget(new QLabel(QStringLiteral("Prodotto:"), box), 0, 0);
    grid->addWidget(withBrowseButton(m_txtProdotto, kSfogliaProdotto), 0, 1);
    grid->addWidget(m_lblDescProdotto, 0, 2, 1, 3);
    grid->addWidget(new QLabel(QStringLiteral("Quantità:"), box), 1, 0);
    grid->addWidget(m_txtQuantita, 1, 1);
    grid->addWidget(new QLabel(QStringLiteral("Prezzo:"), box), 1, 3);
    grid->addWidget(m_txtPrezzo, 1, 4);
    grid->addWidget(new QLabel(QStringLiteral("Iva:"), box), 2, 0);
    grid->addWidget(rigaIva, 2, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("U.M.:"), box), 2, 3);
    grid->addWidget(rigaUM, 2, 4);
    grid->setColumnStretch(2, 1);
    grid->setColumnStretch(4, 1);

    auto* comandi = new QHBoxLayout;
    m_chkAddPrev = new QCheckBox(QStringLiteral("Aggiungi alla riga precedente"), box);
    m_chkAddPrev->setObjectName(QStringLiteral("chkAddPrev"));
    m_chkAddPrev->setToolTip(QStringLiteral("La nuova riga prende il posto della riga selezionata"));
    comandi->addWidget(m_chkAddPrev);
    comandi->addStretch(1);
    const std::tuple<const char*, const char*, const char*, void (frmDistintaBase::*)()> bottoni[] = {
        {"cmdConferma", "Conferma riga", "list-add", &frmDistintaBase::cmdConferma_Click},
        {"cmdElimina", "Elimina riga", "list-remove", &frmDistintaBase::delProdotto},
        {"cmdAnnulla", "Annulla", "edit-clear", &frmDistintaBase::cmdAnnulla_Click}};
    for (const auto& [nome, testo, icona, azione] : bottoni) {
        auto* button = new QPushButton(QIcon::fromTheme(QString::fromLatin1(icona)), QString::fromLatin1(testo), box);
        button->setObjectName(QString::fromLatin1(nome));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, azione);
        comandi->addWidget(button);
    }
    grid->addLayout(comandi, 3, 0, 1, 5);
    return box;
}

QWidget* frmDistintaBase::buildTotals()
{
    auto* panel = new QWidget(fraMain());
    auto* row = new QHBoxLayout(panel);
    row->setContentsMargins(0, 0, 0, 0);
    m_cmdStampa =
        new QPushButton(QIcon::fromTheme(QStringLiteral("document-print-preview")), QStringLiteral("Stampa"), panel);
    m_cmdStampa->setObjectName(QStringLiteral("cmdStampa"));
    m_cmdStampa->setAutoDefault(false);
    m_cmdStampa->setToolTip(QStringLiteral("Stampa la distinta base salvata"));
    m_cmdStampa->setEnabled(false);
    connect(m_cmdStampa, &QPushButton::clicked, this, &frmDistintaBase::printRecord);
    row->addWidget(m_cmdStampa);
    row->addStretch(1);
    const std::pair<const char*, QLabel**> totali[] = {{"lblTotaleImponibile", &m_lblTotaleImponibile},
                                                       {"lblTotaleIva", &m_lblTotaleIva},
                                                       {"lblTotaleImporto", &m_lblTotaleImporto}};
    const char* const didascalie[] = {"Imponibile:", "Iva:", "Totale:"};
    for (int i = 0; i < 3; ++i) {
        QLabel*& label = *totali[i].second;
        label = cornice(named(new QLabel(panel), totali[i].first));
        label->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QStringLiteral("0.000.000,00")) + 12);
        row->addWidget(new QLabel(QString::fromLatin1(didascalie[i]), panel));
        row->addWidget(label);
    }
    return panel;
}

// A saved kit only: what is on screen and not saved yet is not in the database.
void frmDistintaBase::printRecord()
{
    const int rid = currentRid();
    if (rid <= 0)
        return;
    mostraAnteprima(QStringLiteral("DistintaBase.rpt"), QStringLiteral("{DistintaBase.RID}=") + QString::number(rid),
                    QStringLiteral("Stampa Distinta Base: ") + text(QStringLiteral("txtDescrizione")));
}

// --- head ------------------------------------------------------------------------

QString frmDistintaBase::precodice() const { return gOptions().distintaBase; }

TestaDistinta frmDistintaBase::testa() const
{
    TestaDistinta t;
    t.codice = precodice() + codeText().trimmed();
    t.barcode = text(QStringLiteral("txtBarCode")).trimmed();
    t.extraCod = text(QStringLiteral("txtExtraCod")).trimmed();
    t.descrizione = text(QStringLiteral("txtDescrizione"));
    t.categoria = lookupOf(QStringLiteral("txtCategoria"))->rid();
    t.gruppo = lookupOf(QStringLiteral("txtGruppo"))->rid();
    t.um = lookupOf(QStringLiteral("txtUnitaMisura"))->rid();
    return t;
}

QString frmDistintaBase::codeCondition(const QString& code) const
{
    return QStringLiteral("CODICE = ") + sqlText(precodice() + code);
}

QString frmDistintaBase::searchStatement() const
{
    return QStringLiteral("SELECT RID, CODICE, DESCRIZIONE, BARCODE FROM DistintaBase ORDER BY DESCRIZIONE ");
}

void frmDistintaBase::clearFields()
{
    cRecordScreen::clearFields();
    m_cmdStampa->setEnabled(false); // a kit prints once it is saved
    m_lblPrecodice->setText(precodice());
    m_elenco.clear();
    resetEditor();
    mostraElenco();
    calcolaTotali();
}

void frmDistintaBase::fillFields(const Recordset& rs)
{
    cRecordScreen::fillFields(rs);
    m_cmdStampa->setEnabled(true);
    QLineEdit* code = lineEdit(QStringLiteral("txtCodice"));
    code->setText(codiceSenzaPrecodice(code->text(), precodice()));
    m_elenco.carica(leggiRigheDistinta(int(rs.integer(QStringLiteral("RID"))), gOptions().decimaliDopo));
    resetEditor();
    mostraElenco();
    calcolaTotali();
}

bool frmDistintaBase::chiediSalvataggio()
{
    if (!m_elenco.modificato())
        return true;
    if (msgBox(QStringLiteral("Salvare le modifiche alla Distinta ") + text(QStringLiteral("txtDescrizione"))
                   + QStringLiteral("?"),
               vb::YesNo | vb::Question)
        != vb::Yes) {
        m_elenco.clear();
        return true;
    }
    return saveRecord();
}

bool frmDistintaBase::newRecord()
{
    if (!chiediSalvataggio())
        return false;
    return cRecordScreen::newRecord();
}

void frmDistintaBase::showData(int rid, const QString& codice)
{
    if (m_elenco.modificato()) {
        // Asked only when another kit is about to take the screen.
        const int altra = rid > 0 ? rid : ridDistinta(precodice() + codice.trimmed());
        if (altra <= 0 || !chiediSalvataggio())
            return;
        rid = altra;
    }
    cRecordScreen::showData(rid, codice);
}

void frmDistintaBase::cmdSfoglia_Click(int index)
{
    if (index == 0) {
        const int rid = frmRicerca::cerca(searchStatement(), QStringLiteral("Ricerca - ") + title(), 0, false, false,
                                          QStringLiteral("ChkLike_Distinta"));
        if (rid > 0)
            showData(rid, QString());
        return;
    }
    if (index == kSfogliaProdotto) {
        const int rid = frmRicerca::cerca(ricercaComponenti(), QStringLiteral("Ricerca - Prodotti"));
        if (rid > 0 && controllaModifica(rid))
            prodottoScelto(rid);
        m_txtProdotto->setFocus();
        return;
    }
    cRecordScreen::cmdSfoglia_Click(index);
}

void frmDistintaBase::onFunctionKey(const QString& controlName, int keyCode, int shift)
{
    if (keyCode == vbKey::F3 && controlName == m_txtProdotto->objectName()) {
        cmdSfoglia_Click(kSfogliaProdotto);
        return;
    }
    cRecordScreen::onFunctionKey(controlName, keyCode, shift);
}

bool frmDistintaBase::fieldLeft(const QString& controlName)
{
    if (controlName == QLatin1String("txtBarCode"))
        return txtBarCode_Validate();
    if (controlName == m_txtProdotto->objectName())
        txtProdotto_Validate();
    return true;
}

// An empty barcode is made from the moment; a wrong check digit asks.
bool frmDistintaBase::txtBarCode_Validate()
{
    QLineEdit* barcode = lineEdit(QStringLiteral("txtBarCode"));
    if (barcode->text().trimmed().isEmpty()) {
        barcode->setText(nuovoBarcode(QDateTime::currentDateTime()));
        return true;
    }
    const QString errore = erroreCheckCode(barcode->text().trimmed());
    return errore.isEmpty()
        || msgBox(errore + QStringLiteral("Codice a Barre non valido!\rSi desidera continuare?"),
                  vb::YesNo | vb::Question)
        == vb::Yes;
}

// --- save and delete -------------------------------------------------------------

QStringList frmDistintaBase::faults() const
{
    QStringList found = cRecordScreen::faults();
    const TestaDistinta t = testa();
    if (esisteDistinta(t.codice, currentRid()))
        found << erroreDistintaDuplicata(t.codice);
    return found;
}

int frmDistintaBase::writeRecord(int rid) { return scriviTestaDistinta(rid, testa(), m_precedente); }

bool frmDistintaBase::saveDetails(int rid)
{
    return salvaDettagliDistinta(rid, testa(), m_precedente, m_elenco.righe());
}

bool frmDistintaBase::saveRecord()
{
    if (!cRecordScreen::saveRecord())
        return false;
    // The rows as stored, with their keys.
    m_elenco.clear();
    refreshRecord();
    return true;
}

QString frmDistintaBase::deleteQuestion() const
{
    return QStringLiteral("Eliminare la distinta [") + text(QStringLiteral("txtDescrizione")) + QStringLiteral("]?");
}

bool frmDistintaBase::removeRecord(int rid)
{
    if (!eliminaDistinta(rid))
        return false;
    m_elenco.clear();
    newRecord();
    return true;
}

void frmDistintaBase::closeEvent(QCloseEvent* event)
{
    if (!chiediSalvataggio()) {
        event->ignore();
        return;
    }
    cRecordScreen::closeEvent(event);
}

// --- row editor --------------------------------------------------------------------

void frmDistintaBase::txtProdotto_Validate()
{
    const QString typed = m_txtProdotto->text().trimmed();
    if (typed == m_editor.codice)
        return;
    if (typed.isEmpty()) {
        if (m_caricata >= 0)
            m_txtProdotto->setText(m_editor.codice);
        else
            m_editor = RigaDistinta();
        m_lblDescProdotto->setText(m_editor.descrizione);
        return;
    }
    // By code, barcode or extra code; a kit typed by its code is taken too.
    ProdottoEsteso p;
    p.codice = typed;
    if (!validaProdottoEsteso(p, RicercaProdotto()) || !controllaModifica(p.rid)) {
        m_txtProdotto->setText(m_editor.codice);
        return;
    }
    prodottoScelto(p.rid);
}

bool frmDistintaBase::controllaModifica(int fkProdotto)
{
    if (m_caricata < 0 || fkProdotto == m_elenco.at(m_caricata).prodotto)
        return true;
    msgBox(QStringLiteral("Attenzione non è possibile continuare con la modifica \rdi un prodotto diverso da quello "
                          "selezionato \rPer procedere sarà necessario rimuovere il prodotto selezionato."),
           vb::Exclamation);
    m_txtProdotto->setText(m_editor.codice);
    return false;
}

void frmDistintaBase::prodottoScelto(int fkProdotto)
{
    RigaDistinta r;
    if (!leggiProdottoDistinta(fkProdotto, gOptions().decimaliDopo, r))
        return;
    if (m_caricata >= 0) {
        // The loaded row keeps what was typed in it; the product is the same.
        m_txtProdotto->setText(m_editor.codice);
        return;
    }
    const QString quantita = m_txtQuantita->text();
    r.quantita = getValoreSingle(quantita) == 0 ? formattaImporto(Single(1), 2) : quantita;
    mostraEditor(r);
}

void frmDistintaBase::mostraEditor(const RigaDistinta& riga)
{
    m_editor = riga;
    m_txtProdotto->setText(riga.codice);
    m_lblDescProdotto->setText(riga.descrizione);
    m_txtQuantita->setText(riga.quantita);
    m_txtPrezzo->setText(riga.prezzo);
    m_iva->setRid(riga.iva);
    m_um->setRid(riga.um);
}

void frmDistintaBase::resetEditor()
{
    m_caricata = -1;
    m_editor = RigaDistinta();
    m_valoreIva = 0;
    for (QLineEdit* field : {m_txtProdotto, m_txtQuantita, m_txtPrezzo})
        field->clear();
    m_lblDescProdotto->clear();
    m_iva->clear();
    m_um->clear();
}

RigaDistinta frmDistintaBase::rigaEditor() const
{
    RigaDistinta r = m_editor;
    r.iva = m_iva->rid();
    r.codIva = m_iva->field()->text();
    r.descIva = findChild<QLabel*>(QStringLiteral("lblIva"))->text();
    r.valoreIva = r.iva > 0 ? formattaImporto(m_valoreIva, 2) : QString();
    r.um = m_um->rid();
    r.codUM = r.um > 0 ? m_um->field()->text() : QString();
    r.quantita = m_txtQuantita->text();
    r.prezzo = m_txtPrezzo->text();
    return r;
}

void frmDistintaBase::cmdConferma_Click()
{
    // A code typed and not yet left is looked up first.
    if (m_txtProdotto->text().trimmed() != m_editor.codice)
        txtProdotto_Validate();
    for (cLookupField* lookup : {m_iva, m_um})
        lookup->validate();
    RigaDistinta r = rigaEditor();
    const QStringList faults = ElencoDistinta::controllaElemento(r);
    if (!faults.isEmpty()) {
        msgBox(faultsMessage(faults), vb::Exclamation);
        return;
    }
    r.quantita = formattaImporto(getValoreSingle(r.quantita), 2);
    r.prezzo = formattaImporto(getValoreCurrency(r.prezzo), gOptions().decimaliDopo);
    const int posizione = m_elenco.conferma(r, m_caricata, m_chkAddPrev->isChecked(), rigaSelezionata());
    resetEditor();
    mostraElenco();
    selezionaRiga(posizione);
    calcolaTotali();
    m_txtProdotto->setFocus();
}

void frmDistintaBase::delProdotto()
{
    const int riga = m_caricata >= 0 ? m_caricata : rigaSelezionata();
    if (riga < 0 || riga >= m_elenco.size() || m_elenco.at(riga).gestione == Eliminata)
        return;
    if (msgBox(QStringLiteral("Eliminare la riga selezionata?"), vb::YesNo | vb::Question) != vb::Yes)
        return;
    m_elenco.elimina(riga);
    resetEditor();
    mostraElenco();
    calcolaTotali();
}

void frmDistintaBase::cmdAnnulla_Click()
{
    resetEditor();
    m_txtProdotto->setFocus();
}

void frmDistintaBase::lswElenco_DblClick(int riga)
{
    if (riga < 0 || riga >= m_elenco.size())
        return;
    if (m_elenco.at(riga).gestione == Eliminata) {
        if (msgBox(QStringLiteral("Riga Eliminata! Ripristinare?"), vb::YesNo | vb::Question) != vb::Yes)
            return;
        m_elenco.ripristina(riga);
        resetEditor();
        mostraElenco();
        selezionaRiga(riga);
        calcolaTotali();
        return;
    }
    resetEditor();
    mostraEditor(m_elenco.at(riga));
    m_caricata = riga;
    selezionaRiga(riga);
    m_txtQuantita->setFocus();
}

int frmDistintaBase::rigaSelezionata() const
{
    QTreeWidgetItem* item = m_lswElenco->currentItem();
    return item && item->isSelected() ? m_lswElenco->indexOfTopLevelItem(item) : -1;
}

void frmDistintaBase::selezionaRiga(int riga)
{
    if (QTreeWidgetItem* item = m_lswElenco->topLevelItem(riga)) {
        m_lswElenco->setCurrentItem(item);
        item->setSelected(true);
    }
}

void frmDistintaBase::mostraElenco()
{
    m_lswElenco->clear();
    for (const RigaDistinta& r : m_elenco.righe()) {
        const QString id[] = {QString::number(r.prodotto), QString::number(r.iva), QString::number(r.um)};
        auto* item = new QTreeWidgetItem(m_lswElenco,
                                         {r.codice, id[0], r.descrizione, id[1], r.codIva, r.descIva, r.valoreIva,
                                          r.quantita, id[2], r.codUM, r.prezzo, formattaImporto(importoRiga(r), 2),
                                          QString::number(r.gestione), QString::number(r.rid)});
        for (const int numero : {kIva, kQuantita, kPrezzo, kImporto})
            item->setTextAlignment(numero, Qt::AlignRight | Qt::AlignVCenter);
        if (r.gestione == Eliminata) {
            // Struck out until the kit is saved; a double click brings it back.
            QFont font = item->font(0);
            font.setStrikeOut(true);
            for (int c = 0; c < kColonne; ++c) {
                item->setFont(c, font);
                item->setForeground(c, palette().brush(QPalette::Disabled, QPalette::Text));
            }
        }
    }
}

void frmDistintaBase::calcolaTotali()
{
    const TotaliDistinta t = ::calcolaTotali(m_elenco.righe());
    m_lblTotaleImponibile->setText(formattaImporto(t.imponibile, 2));
    m_lblTotaleIva->setText(formattaImporto(t.iva, 2));
    m_lblTotaleImporto->setText(formattaImporto(t.totale, 2));
}
