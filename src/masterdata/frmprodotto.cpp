#include "masterdata/frmprodotto.h"

#include "common/ean13.h"
#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "core/optionstore.h"
#include "core/screenregistry.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/sqlliteral.h"
#include "masterdata/frmduplicaprodotto.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/frmricerca.h"

#include <QCheckBox>
#include <QDateTime>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSettings>
#include <QTabWidget>
#include <QVBoxLayout>

using namespace fields;

namespace {

const QString kChkLike = QStringLiteral("Options/ChkLike_Prodotti");

QString dateText(const QVariant& v)
{
    return v.isNull() ? QStringLiteral("-") : v.toDate().toString(QStringLiteral("dd/MM/yyyy"));
}

} // namespace

frmProdotto::frmProdotto(QWidget* parent)
    : cRecordScreen(QStringLiteral("frmProdotto"), QStringLiteral("Prodotti"), parent)
{
    setFields(prodottoFields(gOptions().decimaliDopo));
    // lblIva is the rate's percent; the rate's description has its own name.
    findChild<QLabel*>(QStringLiteral("lblIva"))->setObjectName(QStringLiteral("lblIvaDescrizione"));

    auto* grid = new QGridLayout(fraMain());
    grid->setContentsMargins(0, 0, 0, 0);
    QWidget* anagrafica =
        fieldGroup(QStringLiteral("Prodotto"),
                   {"txtCodice1", "txtCodice2", "txtCodice3", "txtDescrizione", "txtCategoria", "txtMarca",
                    "txtCollezione", "txtGruppo", "txtUnitaMisura", "txtProdSost", "txtIva"});
    // The code field: its lock and the choice of exact or prefix search.
    auto* codeRow = static_cast<QHBoxLayout*>(fieldRow(QStringLiteral("txtCodice1"))->layout());
    m_cmdUnlock = new QPushButton(QStringLiteral("Sblocca"), fraMain());
    m_cmdUnlock->setObjectName(QStringLiteral("cmdUnlock"));
    m_cmdUnlock->setToolTip(QStringLiteral("Sblocca la casella del codice"));
    m_cmdUnlock->setFocusPolicy(Qt::NoFocus);
    connect(m_cmdUnlock, &QPushButton::clicked, this, &frmProdotto::cmdUnlock_Click);
    m_chkLike = new QCheckBox(QStringLiteral("Parte del codice"), fraMain());
    m_chkLike->setObjectName(QStringLiteral("chkLike"));
    m_chkLike->setToolTip(QStringLiteral("Cerca i prodotti il cui codice comincia con il testo scritto"));
    m_chkLike->setChecked(machineSettings().value(kChkLike, false).toBool());
    connect(m_chkLike, &QCheckBox::toggled, this, [](bool on) { machineSettings().setValue(kChkLike, on); });
    codeRow->insertWidget(codeRow->count() - 1, m_cmdUnlock);
    codeRow->insertWidget(codeRow->count() - 1, m_chkLike);
    control(QStringLiteral("txtDataListino"))->setMaximumWidth(control(QStringLiteral("txtSconto"))->maximumWidth());

    auto* altro = new QTabWidget(fraMain());
    altro->setObjectName(QStringLiteral("tabAltro"));
    altro->addTab(fieldGroup(QString(),
                             {"txtUbicazione", "ChkElencoSpeciale", "txtNumRegistrazione", "chkDisabilitato",
                              "chkBloccaPrezzo"}),
                  QStringLiteral("Altri dati"));
    altro->addTab(fieldGroup(QString(), {"txtCatScontoAcq", "txtCatScontoVen", "txtSconto", "txtDataListino"}),
                  QStringLiteral("Sconti"));
    altro->addTab(buildAlternatives(), QStringLiteral("Alternativi"));
    // Each discount category opens on its card, to configure its ranges.
    const char* const categorie[] = {"txtCatScontoAcq", "txtCatScontoVen"};
    for (int i = 0; i < 2; ++i) {
        auto* row = static_cast<QHBoxLayout*>(fieldRow(QString::fromLatin1(categorie[i]))->layout());
        auto* configura = new QPushButton(QStringLiteral("Configura"), fraMain());
        configura->setObjectName(QStringLiteral("cmdConfigura_") + QString::number(i));
        configura->setToolTip(QStringLiteral("Configura Categoria di Sconto"));
        configura->setAutoDefault(false);
        connect(configura, &QPushButton::clicked, this, [this, name = QString::fromLatin1(categorie[i])] {
            if (const int categoria = lookupOf(name)->rid(); categoria > 0)
                screens::openScreen(QStringLiteral("frmCategoriaSconti"), categoria);
        });
        row->addWidget(configura);
    }
    grid->addWidget(anagrafica, 0, 0);
    grid->addWidget(altro, 1, 0);
    grid->addWidget(buildPrices(), 0, 1);
    grid->addWidget(buildStock(), 1, 1);
    grid->setRowStretch(1, 1);

    auto* commands = new QHBoxLayout;
    const std::pair<const char*, void (frmProdotto::*)()> buttons[] = {{"Duplica", &frmProdotto::cmdDuplica_Click},
                                                                       {"Duplicazione assistita",
                                                                        &frmProdotto::cmdDuplicaAvanzata_Click},
                                                                       {"Aggiunti un prodotto con lo stesso codice",
                                                                        &frmProdotto::cmdAdd_Click}};
    const char* const names[] = {"cmdDuplica", "cmdDuplicaAvanzata", "cmdAdd"};
    for (int i = 0; i < 3; ++i) {
        auto* button = new QPushButton(QString::fromUtf8(buttons[i].first), fraMain());
        button->setObjectName(QString::fromLatin1(names[i]));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, buttons[i].second);
        commands->addWidget(button);
    }
    commands->addStretch(1);
    grid->addLayout(commands, 3, 0, 1, 3);

    connect(lookupOf(QStringLiteral("txtIva")), &cLookupField::changed, this, &frmProdotto::ivaChanged);
    auto* giacenza = static_cast<QCheckBox*>(control(QStringLiteral("chkGiacenza")));
    connect(giacenza, &QCheckBox::toggled, m_pctGiacenze, &QWidget::setVisible);
    auto* elenco = static_cast<QCheckBox*>(control(QStringLiteral("ChkElencoSpeciale")));
    connect(elenco, &QCheckBox::toggled, control(QStringLiteral("txtNumRegistrazione")), &QWidget::setEnabled);
    resize(900, 600);
}

QWidget* frmProdotto::buildPrices()
{
    auto* box = static_cast<QGroupBox*>(
        fieldGroup(QStringLiteral("Prezzi"),
                   {"txtPrezzoAcquisto", "txtListino1", "txtListino2", "txtListino3", "txtListino4", "txtPListino"}));
    auto* form = static_cast<QFormLayout*>(box->layout());
    m_lblIva = new QLabel(box);
    m_lblIva->setObjectName(QStringLiteral("lblIva"));
    form->insertRow(0, QStringLiteral("Aliquota Iva %:"), m_lblIva);
    // The screen's own values, not stored: gross prices and markup.
    const std::tuple<const char*, const char*, int> extra[] = {{"txtPrezzoAcquistoLordo", "Pr. Acquisto lordo:", 2},
                                                               {"txtRicarico", "Ricarico:", 3},
                                                               {"txtListino1Lordo", "Pr. Vendita lordo:", 5}};
    for (const auto& [name, caption, row] : extra) {
        auto* line = new QLineEdit(box);
        line->setObjectName(QString::fromLatin1(name));
        auto* input = new cTextBox(line, typedinput::Decimale, line);
        input->setDecimalPrecision(QLatin1String(name) == QLatin1String("txtRicarico") ? 2 : gOptions().decimaliDopo);
        input->setCKeyRef(keys());
        line->setMaximumWidth(control(QStringLiteral("txtPrezzoAcquisto"))->maximumWidth());
        form->insertRow(row, QString::fromUtf8(caption), line);
    }
    control(QStringLiteral("txtPListino"))
        ->setToolTip(QStringLiteral("Il Prezzo Listino Riferimento è solo un campo indicativo!"));
    return box;
}

QWidget* frmProdotto::buildStock()
{
    auto* box = new QGroupBox(QStringLiteral("Magazzino"), fraMain());
    auto* layout = new QVBoxLayout(box);
    layout->addWidget(fieldRow(QStringLiteral("chkGiacenza")));
    m_pctGiacenze = new QWidget(box);
    m_pctGiacenze->setObjectName(QStringLiteral("pctGiacenze"));
    auto* form = new QFormLayout(m_pctGiacenze);
    form->setContentsMargins(0, 0, 0, 0);
    m_lblGiacenza = new QLabel(m_pctGiacenze);
    m_lblGiacenza->setObjectName(QStringLiteral("lblGiacenza"));
    form->addRow(QStringLiteral("Giacenza:"), m_lblGiacenza);
    for (const char* name : {"txtScortaMinima", "txtPeso", "txtColli"})
        form->addRow(fieldList().at(fieldList().indexOf(QString::fromLatin1(name))).label(),
                     fieldRow(QString::fromLatin1(name)));
    layout->addWidget(m_pctGiacenze);
    auto* statistiche = new QGroupBox(QStringLiteral("Informazioni Statistiche"), box);
    m_lblStatistiche = new QLabel(statistiche);
    m_lblStatistiche->setObjectName(QStringLiteral("lblStatistiche"));
    m_lblStatistiche->setTextInteractionFlags(Qt::TextSelectableByMouse);
    (new QVBoxLayout(statistiche))->addWidget(m_lblStatistiche);
    layout->addWidget(statistiche);
    return box;
}

QWidget* frmProdotto::buildAlternatives()
{
    auto* box = new QWidget(fraMain());
    auto* layout = new QVBoxLayout(box);
    m_lstAlternativi = new QListWidget(box);
    m_lstAlternativi->setObjectName(QStringLiteral("lstAlternativi"));
    layout->addWidget(m_lstAlternativi);
    auto* buttons = new QHBoxLayout;
    auto* add = new QPushButton(QIcon::fromTheme(QStringLiteral("list-add")), QString(), box);
    add->setObjectName(QStringLiteral("cmdAddProdAlt"));
    add->setToolTip(QStringLiteral("Aggiungi un prodotto alternativo"));
    auto* remove = new QPushButton(QIcon::fromTheme(QStringLiteral("list-remove")), QString(), box);
    remove->setObjectName(QStringLiteral("cmdRemProdAlt"));
    remove->setToolTip(QStringLiteral("Rimuovi il prodotto alternativo"));
    buttons->addWidget(add);
    buttons->addWidget(remove);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    connect(add, &QPushButton::clicked, this, [this] {
        addAlternativo(frmRicerca::cerca(
            QStringLiteral("SELECT P.RID, P.DESCRIZIONE, P.CODICE, C.DESCRIZIONE AS CATEGORIA, P.BARCODE, "
                           "P.EXTRACODICE FROM Prodotti P LEFT JOIN CategorieMerceologiche C ON P.FK_CATEGORIA = "
                           "C.RID WHERE P.DISTINTABASE = 0 ORDER BY P.DESCRIZIONE"),
            QStringLiteral("Prodotti Alternativi")));
    });
    connect(remove, &QPushButton::clicked, this, &frmProdotto::cmdRemProdAlt_Click);
    connect(m_lstAlternativi, &QListWidget::itemDoubleClicked, this,
            [this](QListWidgetItem* item) { showData(item->data(Qt::UserRole).toInt(), QString()); });
    return box;
}

QLineEdit* frmProdotto::edit(const char* name) const { return findChild<QLineEdit*>(QString::fromLatin1(name)); }

// --- load and clear --------------------------------------------------------------

QString frmProdotto::selectStatement() const
{
    const QString byKey = letturaProdotto(gOptions().decimaliDopo, 0);
    return byKey.left(byKey.lastIndexOf(QStringLiteral(" WHERE RID = ")));
}

// By any of the three codes, or by the beginning of the code.
QString frmProdotto::codeCondition(const QString& code) const
{
    if (m_chkLike->isChecked())
        return QStringLiteral("CODICE LIKE ") + sqlText(code + QLatin1Char('%'));
    const QString text = sqlText(code);
    return QStringLiteral("(CODICE = ") + text + QStringLiteral(" OR BARCODE = ") + text
        + QStringLiteral(" OR EXTRACODICE = ") + text + QLatin1Char(')');
}

QString frmProdotto::searchStatement() const { return ricercaProdotti(); }

void frmProdotto::clearFields()
{
    cRecordScreen::clearFields();
    PrezziProdotto vuoti;
    vuoti.decimali = gOptions().decimaliDopo;
    for (QString* value : {&vuoti.acquisto, &vuoti.acquistoLordo, &vuoti.listino1, &vuoti.listino1Lordo,
                           &vuoti.ricarico, &vuoti.pListino})
        *value = formattaImporto(Currency(), 2);
    mostraPrezzi(vuoti);
    for (const char* name :
         {"txtListino2", "txtListino3", "txtListino4", "txtSconto", "txtScortaMinima", "txtPeso", "txtColli"})
        edit(name)->setText(formattaImporto(Currency(), 2));
    m_lblIva->clear();
    m_iva = 0;
    m_lblGiacenza->setText(formattaImporto(Currency(), 2));
    m_lblStatistiche->clear();
    m_lstAlternativi->clear();
    m_pctGiacenze->setVisible(false);
    control(QStringLiteral("txtNumRegistrazione"))->setEnabled(false);
}

void frmProdotto::fillFields(const Recordset& rs)
{
    cRecordScreen::fillFields(rs);
    ivaChanged();
    m_lblGiacenza->setText(formattaImporto(rs.value(QStringLiteral("GIACENZA")), 2));
    m_lblStatistiche->setText(
        QStringLiteral("Ultimo fornitore: %1\nUltimo carico: %2 a %3\nUltimo scarico: %4 a %5\nUltima modifica: %6")
            .arg(rs.value(QStringLiteral("ULTIMOFORNITORE")).toString(),
                 dateText(rs.value(QStringLiteral("DATAULTIMOCARICO"))),
                 formattaImporto(rs.value(QStringLiteral("PREZZOULTIMOCARICO")), 2),
                 dateText(rs.value(QStringLiteral("DATAULTIMOSCARICO"))),
                 formattaImporto(rs.value(QStringLiteral("PREZZOULTIMOSCARICO")), 2),
                 dateText(rs.value(QStringLiteral("DATAULTIMAMODIFICA")))));
    m_pctGiacenze->setVisible(isChecked(QStringLiteral("chkGiacenza")));
    control(QStringLiteral("txtNumRegistrazione"))->setEnabled(isChecked(QStringLiteral("ChkElencoSpeciale")));
    // The gross prices and the markup follow the stored net prices.
    PrezziProdotto p = prezzi();
    PrezziProdotto calcolati = p;
    ricalcolaPrezzi(calcolati, PrezzoCambiato::Iva);
    p.acquistoLordo = calcolati.acquistoLordo;
    p.listino1Lordo = calcolati.listino1Lordo;
    p.ricarico = calcolati.ricarico;
    mostraPrezzi(p);
    showAlternativi(int(rs.integer(QStringLiteral("RID"))));
    lockCode(true);
}

bool frmProdotto::newRecord()
{
    cRecordScreen::newRecord();
    m_codiceTenuto.clear();
    // The defaults of a new card, where the options give them.
    const OptionGlobals& o = gOptions();
    const std::pair<const char*, int> defaults[] = {{"txtIva", o.ridIvaProdotti},
                                                    {"txtUnitaMisura", o.ridUMProdotti},
                                                    {"txtMarca", o.ridMarcaProdotti},
                                                    {"txtCollezione", o.ridCollezioneProdotti}};
    for (const auto& [name, rid] : defaults)
        if (rid > 0)
            lookupOf(QString::fromLatin1(name))->setRid(rid);
    ivaChanged();
    lockCode(false);
    return true;
}

void frmProdotto::lockCode(bool locked)
{
    edit("txtCodice1")->setReadOnly(locked);
    m_cmdUnlock->setEnabled(locked);
}

void frmProdotto::cmdUnlock_Click()
{
    lockCode(false);
    edit("txtCodice1")->setFocus();
}

// --- prices ---------------------------------------------------------------------

PrezziProdotto frmProdotto::prezzi() const
{
    PrezziProdotto p;
    p.acquisto = edit("txtPrezzoAcquisto")->text();
    p.acquistoLordo = edit("txtPrezzoAcquistoLordo")->text();
    p.listino1 = edit("txtListino1")->text();
    p.listino1Lordo = edit("txtListino1Lordo")->text();
    p.ricarico = edit("txtRicarico")->text();
    p.pListino = edit("txtPListino")->text();
    p.iva = m_iva;
    p.decimali = gOptions().decimaliDopo;
    return p;
}

void frmProdotto::mostraPrezzi(const PrezziProdotto& p)
{
    edit("txtPrezzoAcquisto")->setText(p.acquisto);
    edit("txtPrezzoAcquistoLordo")->setText(p.acquistoLordo);
    edit("txtListino1")->setText(p.listino1);
    edit("txtListino1Lordo")->setText(p.listino1Lordo);
    edit("txtRicarico")->setText(p.ricarico);
    edit("txtPListino")->setText(p.pListino);
}

void frmProdotto::cambiaPrezzo(PrezzoCambiato cambiato)
{
    PrezziProdotto p = prezzi();
    ricalcolaPrezzi(p, cambiato);
    mostraPrezzi(p);
}

void frmProdotto::ivaChanged()
{
    const int rid = lookupOf(QStringLiteral("txtIva"))->rid();
    m_iva = rid > 0 ? gAdoSqlServer()
                          .getValueBySQL(QStringLiteral("SELECT VALORE FROM Iva WHERE RID = ") + QString::number(rid),
                                         QStringLiteral("frmProdotto.txtIva"))
                          .toDouble()
                    : 0;
    m_lblIva->setText(rid > 0 ? formattaImporto(m_iva, 2) : QString());
}

bool frmProdotto::fieldLeft(const QString& controlName)
{
    if (controlName == QLatin1String("txtPrezzoAcquisto")) {
        cambiaPrezzo(PrezzoCambiato::Acquisto);
    } else if (controlName == QLatin1String("txtPrezzoAcquistoLordo")) {
        cambiaPrezzo(PrezzoCambiato::AcquistoLordo);
    } else if (controlName == QLatin1String("txtListino1")) {
        cambiaPrezzo(PrezzoCambiato::Listino1);
    } else if (controlName == QLatin1String("txtIva")) {
        ivaChanged();
        cambiaPrezzo(PrezzoCambiato::Iva);
    } else if (controlName == QLatin1String("txtRicarico")) {
        PrezziProdotto p = prezzi();
        calcolaRicarico(p, true);
        mostraPrezzi(p);
    } else if (controlName == QLatin1String("txtListino1Lordo")) {
        cambiaPrezzo(PrezzoCambiato::Listino1Lordo);
        // The indicative list price may follow the gross price.
        const QString lordo = formattaImporto(getValoreCurrency(edit("txtListino1Lordo")->text()), 2);
        if (!gOptions().prezzoListino && formattaImporto(getValoreCurrency(edit("txtPListino")->text()), 2) != lordo
            && msgBox(QStringLiteral("Si desidera aggiornare il Prezzo di Listino?"), vb::YesNo | vb::Question)
                == vb::Yes)
            edit("txtPListino")->setText(lordo);
    } else if (controlName == QLatin1String("txtCodice2")) {
        txtCodice2_Validate();
    }
    return true;
}

void frmProdotto::txtCodice2_Validate()
{
    QLineEdit* barcode = edit("txtCodice2");
    if (barcode->text().isEmpty()) {
        barcode->setText(nuovoBarcode(QDateTime::currentDateTime()));
        return;
    }
    const QString errore = erroreCheckCode(barcode->text());
    if (!errore.isEmpty())
        msgBox(errore, vb::Information);
}

// --- save and delete --------------------------------------------------------------

QStringList frmProdotto::faults() const
{
    QStringList found;
    const QString codice = edit("txtCodice1")->text().trimmed();
    if (codice.isEmpty())
        found << obbligatorio(QStringLiteral("CODICE"));
    if (edit("txtDescrizione")->text().isEmpty())
        found << obbligatorio(QStringLiteral("Descrizione"));
    const QString rigaLibera = gOptions().rigaLibera.isEmpty() ? QStringLiteral("/") : gOptions().rigaLibera;
    if (lookupOf(QStringLiteral("txtUnitaMisura"))->rid() <= 0 && !codice.startsWith(rigaLibera))
        found << obbligatorio(QStringLiteral("Unita di Misura"));
    if (currentRid() <= 0 && !codice.isEmpty()
        && esisteMarcaCodice(codice, lookupOf(QStringLiteral("txtMarca"))->rid()))
        found << QStringLiteral(" - La combinazione Marca/Codice crea un duplicato nell'indice della chiave.");
    return found;
}

QString frmProdotto::insertStatement() const
{
    const QString barcode = edit("txtCodice2")->text().trimmed();
    return sqlInsert(QStringLiteral("Prodotti"),
                     fieldList().columns() << QStringLiteral("GIACENZA") << QStringLiteral("DISTINTABASE")
                                           << QStringLiteral("DATAULTIMAMODIFICA") << QStringLiteral("EAN13CODE"),
                     fieldList().sqlValues(shownValues())
                         << QStringLiteral("0") << QStringLiteral("0")
                         << gAdoSqlServer().getSQLDate(QDate::currentDate()) << sqlText(EncodeEAN13(barcode)));
}

QString frmProdotto::updateStatement(int rid) const
{
    const QString barcode = edit("txtCodice2")->text().trimmed();
    return sqlUpdate(QStringLiteral("Prodotti"),
                     fieldList().columns() << QStringLiteral("DATAULTIMAMODIFICA") << QStringLiteral("EAN13CODE"),
                     fieldList().sqlValues(shownValues())
                         << gAdoSqlServer().getSQLDate(QDate::currentDate()) << sqlText(EncodeEAN13(barcode)),
                     rid);
}

bool frmProdotto::saveDetails(int rid) { return saveAlternativi(rid, alternativi()); }

bool frmProdotto::saveRecord()
{
    if (controllaInserimento())
        return false;
    if (currentRid() > 0
        && msgBox(QStringLiteral("Sovrascrivere la scheda del Prodotto corrente?"), vb::YesNo | vb::Question)
            != vb::Yes)
        return false;
    if (!cRecordScreen::saveRecord())
        return false;
    refreshRecord();
    return true;
}

bool frmProdotto::deleteRecord()
{
    const int rid = currentRid();
    if (rid <= 0)
        return false;
    if (getGiacenzaProdotto(rid)) {
        msgBox(QStringLiteral("Impossibile seguire la cancellazione. Il prodotto risulta in giacenza"),
               vb::Exclamation);
        return false;
    }
    if (msgBox(QStringLiteral("Eliminare il prodotto [") + edit("txtCodice1")->text() + QStringLiteral(" - ")
                   + edit("txtDescrizione")->text() + QStringLiteral("]?"),
               vb::YesNo | vb::Question | vb::DefaultButton2)
        != vb::Yes)
        return false;
    if (!eliminaProdotto(rid)) {
        msgBox(QStringLiteral("Impossibile seguire la cancellazione dell'elemento richiesto"), vb::Critical);
        return false;
    }
    newRecord();
    return true;
}

// --- alternatives -----------------------------------------------------------------

void frmProdotto::showAlternativi(int rid)
{
    m_lstAlternativi->clear();
    for (const Alternativo& a : leggiAlternativi(rid)) {
        auto* item = new QListWidgetItem(a.codice, m_lstAlternativi);
        item->setData(Qt::UserRole, a.rid);
    }
}

QList<Alternativo> frmProdotto::alternativi() const
{
    QList<Alternativo> list;
    for (int i = 0; i < m_lstAlternativi->count(); ++i)
        list.append({m_lstAlternativi->item(i)->data(Qt::UserRole).toInt(), m_lstAlternativi->item(i)->text()});
    return list;
}

void frmProdotto::addAlternativo(int rid)
{
    if (rid <= 0)
        return;
    for (const Alternativo& a : alternativi())
        if (a.rid == rid) {
            msgBox(QStringLiteral("Il prodotto selezionato è già presente tra gli alternativi."), vb::Exclamation);
            return;
        }
    const QVariant codice =
        gAdoSqlServer().getValueBySQL(QStringLiteral("SELECT CODICE FROM Prodotti WHERE RID = ") + QString::number(rid),
                                      QStringLiteral("frmProdotto.verifyAlternativoExist"));
    auto* item = new QListWidgetItem(codice.toString(), m_lstAlternativi);
    item->setData(Qt::UserRole, rid);
}

void frmProdotto::cmdRemProdAlt_Click()
{
    QListWidgetItem* item = m_lstAlternativi->currentItem();
    if (!item)
        return;
    if (msgBox(QStringLiteral("Rimuovere il Prodotto Alternativo selezionato: [") + item->text()
                   + QStringLiteral("] ?"),
               vb::YesNo | vb::Question)
        == vb::Yes)
        delete item;
}

// --- duplication ------------------------------------------------------------------

void frmProdotto::cmdDuplica_Click()
{
    if (currentRid() <= 0) {
        msgBox(QStringLiteral("Per duplicare un prodotto è necessario salvarlo."), vb::Exclamation);
        return;
    }
    setRid(0);
    lockCode(false);
    setWindowTitle(title());
}

void frmProdotto::cmdAdd_Click()
{
    const QString codice = edit("txtCodice1")->text().trimmed();
    const QString barcode = edit("txtCodice2")->text();
    newRecord();
    edit("txtCodice1")->setText(codice);
    edit("txtCodice2")->setText(barcode);
    m_codiceTenuto = codice;
}

// Typing a code loads its card, by any of the three codes; the code kept
// for a product of another brand stays on the new card.
void frmProdotto::codeLeft(const QString& code)
{
    if (currentRid() <= 0 && code == m_codiceTenuto)
        return;
    cRecordScreen::codeLeft(code);
}

bool frmProdotto::duplicaVarianti(const QList<QPair<int, QString>>& varianti, bool aggiornaOrigine,
                                  const std::function<void(int)>& avanza)
{
    const QString base = edit("txtCodice1")->text().trimmed();
    const QString descrizione = edit("txtDescrizione")->text();
    int fatti = 0;
    for (const auto& [indice, testo] : varianti) {
        if (!(aggiornaOrigine && fatti == 0)) {
            setRid(0);
            edit("txtCodice2")->setText(barcodeVariante(QDateTime::currentDateTime(), indice));
        }
        edit("txtCodice1")->setText(base + testo);
        edit("txtDescrizione")->setText(descrizione + QLatin1Char(' ') + testo);
        if (!saveRecord())
            return false;
        ++fatti;
        if (avanza)
            avanza(fatti);
    }
    return true;
}

void frmProdotto::cmdDuplicaAvanzata_Click()
{
    if (currentRid() <= 0) {
        msgBox(QStringLiteral("Per duplicare un prodotto è necessario salvarlo."), vb::Exclamation);
        return;
    }
    frmDuplicaProdotto dialog(this, edit("txtCodice1")->text().trimmed());
    dialogs::exec(dialog);
}
