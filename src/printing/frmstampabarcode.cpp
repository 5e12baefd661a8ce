#include "printing/frmstampabarcode.h"

#include "common/msgbox.h"
#include "core/serversettings.h"
#include "lookups/lookups.h"
#include "lookups/lookuptable.h"
#include "printing/anteprima.h"
#include "printing/stampadb.h"
#include "screens/framework/chiusura.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/named.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSettings>
#include <QShortcut>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

const QString kChkLike = QStringLiteral("Options/ChkLike_Barcode");
constexpr int kChiave = Qt::UserRole;        // "P_" and the RID
constexpr int kPosizione = Qt::UserRole + 1; // place in the list of products found
// How often a print brings the screen up to date and lets it draw.
constexpr qint64 kIntervalloDisegnoMs = 80;

// The commands, by index of m_comandi.
enum Comando {
    EseguiRicerca,
    NuovaRicerca,
    Stampa,
    Aggiungi,
    AggiungiTutti,
    Rimuovi,
    Chiudi
};

QTreeWidget* nuovaLista(const char* nome, const QStringList& colonne, const QList<int>& larghezze, QWidget* parent)
{
    auto* lista = named(new QTreeWidget(parent), nome);
    lista->setRootIsDecorated(false);
    lista->setAlternatingRowColors(true);
    lista->setUniformRowHeights(true);
    lista->setSelectionMode(QAbstractItemView::ExtendedSelection);
    lista->setHeaderLabels(colonne);
    for (int i = 0; i < larghezze.size(); ++i)
        lista->setColumnWidth(i, larghezze.at(i));
    lista->setMinimumSize(200, 120);
    return lista;
}

void riempiRiga(QTreeWidgetItem* item, int prima, const ProdottoEtichetta& p)
{
    item->setText(prima, p.codice);
    item->setText(prima + 1, p.descrizione);
    item->setText(prima + 2, p.marca);
    item->setData(0, kChiave, p.chiave());
}

int ridDi(const QTreeWidgetItem* item) { return ridDaChiave(item->data(0, kChiave).toString()); }

} // namespace

frmStampaBarCode::frmStampaBarCode(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("frmStampaBarCode"));
    setWindowTitle(QStringLiteral("Stampa Codici a Barre"));

    const struct
    {
        const char* nome;
        const char* didascalia;
        const char* icona;
        const char* suggerimento;
    } comandi[] = {
        {"cmdEseguiRicerca", "&Esegui ricerca", "edit-find", "Cerca i prodotti con i criteri selezionati"},
        {"cmdNuovaRicerca", "&Nuova ricerca", "edit-clear", "Svuota i criteri e l'elenco dei prodotti trovati"},
        {"cmdStampa", "&Stampa", "document-print", "Stampa le etichette dei prodotti selezionati"},
        {"cmdAdd", "Aggiungi", "go-next", "Aggiunge i prodotti selezionati all'elenco di stampa"},
        {"cmdAddAll", "Tutti", "go-last", "Aggiunge tutti i prodotti trovati all'elenco di stampa"},
        {"cmdRem", "Rimuovi", "go-previous", "Toglie i prodotti selezionati dall'elenco di stampa"},
        {"cmdChiudi", "&Chiudi", "window-close", "Chiude la finestra"},
    };
    for (const auto& c : comandi) {
        auto* button = named(new QPushButton(QIcon::fromTheme(QString::fromLatin1(c.icona)),
                                             QString::fromUtf8(c.didascalia), this),
                             c.nome);
        button->setToolTip(QString::fromUtf8(c.suggerimento));
        button->setAutoDefault(false);
        m_comandi.append(button);
    }
    connect(m_comandi.at(EseguiRicerca), &QPushButton::clicked, this, &frmStampaBarCode::eseguiRicerca);
    connect(m_comandi.at(NuovaRicerca), &QPushButton::clicked, this, &frmStampaBarCode::nuovaRicerca);
    connect(m_comandi.at(Stampa), &QPushButton::clicked, this, &frmStampaBarCode::cmdStampa_Click);
    connect(m_comandi.at(Aggiungi), &QPushButton::clicked, this, &frmStampaBarCode::addProdotto);
    connect(m_comandi.at(AggiungiTutti), &QPushButton::clicked, this, &frmStampaBarCode::addAllProdotti);
    connect(m_comandi.at(Rimuovi), &QPushButton::clicked, this, &frmStampaBarCode::remProdotto);
    connect(m_comandi.at(Chiudi), &QPushButton::clicked, this, [this] { chiudiSchermata(this); });

    // --- the filters
    auto* criteri = named(new QGroupBox(QStringLiteral(" Criteri di ricerca "), this), "fraRicerca");
    auto* griglia = new QGridLayout(criteri);
    m_chkLike = named(new QCheckBox(QStringLiteral("Parte del codice"), criteri), "chkLike");
    m_chkLike->setToolTip(QStringLiteral("Cerca i prodotti il cui codice comincia con il testo scritto"));
    m_chkLike->setChecked(machineSettings().value(kChkLike, false).toBool());
    // With chkLike the text typed is the beginning of the codes, not a code
    // to look up; a product chosen from the search still shows as itself.
    m_prodotto = filtro("txtProdotto", QStringLiteral("Prodotto:"), lookup::prodotti, 0, griglia, criteri,
                        [this](QString& codice, QString& descrizione, int& rid) {
                            if (!m_chkLike->isChecked() || codice.isEmpty())
                                return validaProdotto(codice, descrizione, rid);
                            rid = 0;
                            descrizione =
                                QStringLiteral("Prodotti il cui codice inizia con \"") + codice + QLatin1Char('"');
                            return true;
                        });
    m_txtProdotto = m_prodotto->field();
    griglia->addWidget(m_chkLike, 1, 1, 1, 3);
    m_marca = filtro("txtMarca", QStringLiteral("Marca:"), lookup::marche, 2, griglia, criteri);
    m_categoria = filtro("txtCategoria", QStringLiteral("Categoria:"), lookup::categorie, 3, griglia, criteri);
    m_gruppo = filtro("txtGruppo", QStringLiteral("Gruppo:"), lookup::gruppi, 4, griglia, criteri);
    m_collezione = filtro("txtCollezione", QStringLiteral("Collezione:"), lookup::collezioni, 5, griglia, criteri);
    griglia->setColumnStretch(3, 1);
    connect(m_chkLike, &QCheckBox::toggled, this, [this](bool attivo) {
        machineSettings().setValue(kChkLike, attivo);
        // The text typed is read again the new way.
        const QString scritto = m_txtProdotto->text();
        m_prodotto->clear();
        m_txtProdotto->setText(scritto);
        m_prodotto->validate();
    });
    auto* ricerca = new QHBoxLayout;
    ricerca->addStretch(1);
    ricerca->addWidget(m_comandi.at(EseguiRicerca));
    ricerca->addWidget(m_comandi.at(NuovaRicerca));
    griglia->addLayout(ricerca, 6, 0, 1, 4);

    // --- the two lists
    auto* disponibili = named(new QGroupBox(QStringLiteral(" Prodotti disponibili "), this), "fraDisponibili");
    m_lswElencoDisponibile =
        nuovaLista("lswElencoDisponibile", {QStringLiteral("Cod"), QStringLiteral("Prodotto"), QStringLiteral("Marca")},
                   {100, 200, 100}, disponibili);
    connect(m_lswElencoDisponibile, &QTreeWidget::itemDoubleClicked, this, &frmStampaBarCode::addProdotto);
    m_lblInfo = named(new QLabel(disponibili), "lblInfo");
    m_lblInfo->setMinimumWidth(m_lblInfo->fontMetrics().horizontalAdvance(testoProdottiTrovati(99999)));
    auto* colonnaDisponibili = new QVBoxLayout(disponibili);
    colonnaDisponibili->addWidget(m_lswElencoDisponibile, 1);
    colonnaDisponibili->addWidget(m_lblInfo);

    auto* daStampare = named(new QGroupBox(QStringLiteral(" Prodotti da stampare "), this), "fraStampa");
    m_lswElencoStampa =
        nuovaLista("lswElencoStampa",
                   {QStringLiteral("Qtà"), QStringLiteral("Cod"), QStringLiteral("Prodotto"), QStringLiteral("Marca")},
                   {45, 100, 200, 100}, daStampare);
    m_lswElencoStampa->headerItem()->setTextAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
    auto* canc = new QShortcut(QKeySequence(Qt::Key_Delete), m_lswElencoStampa, nullptr, nullptr, Qt::WidgetShortcut);
    connect(canc, &QShortcut::activated, this, &frmStampaBarCode::remProdotto);
    m_lblTickets = named(new QLabel(daStampare), "lblTickets");
    // As wide as a long list needs from the start: the window does not
    // grow while products come and go.
    ElencoEtichette lunga;
    lunga.aggiungi(ProdottoEtichetta{1, {}, {}, {}, 1}, 99999);
    m_lblTickets->setMinimumWidth(
        m_lblTickets->fontMetrics().horizontalAdvance(lunga.testoEtichette() + QStringLiteral("999")));
    auto* colonnaStampa = new QVBoxLayout(daStampare);
    colonnaStampa->addWidget(m_lswElencoStampa, 1);
    colonnaStampa->addWidget(m_lblTickets);

    auto* sposta = new QVBoxLayout;
    sposta->addStretch(1);
    sposta->addWidget(m_comandi.at(Aggiungi));
    sposta->addWidget(m_comandi.at(AggiungiTutti));
    sposta->addSpacing(12);
    sposta->addWidget(m_comandi.at(Rimuovi));
    sposta->addStretch(1);

    auto* liste = new QHBoxLayout;
    liste->addWidget(disponibili, 1);
    liste->addLayout(sposta);
    liste->addWidget(daStampare, 1);

    // --- the print
    m_pgbMain = named(new QProgressBar(this), "pgbMain");
    m_pgbMain->setRange(0, 100);
    m_pgbMain->setValue(0);
    m_pgbMain->setTextVisible(false);
    auto* pulsanti = new QHBoxLayout;
    pulsanti->addWidget(m_pgbMain, 1);
    pulsanti->addWidget(m_comandi.at(Stampa));
    pulsanti->addWidget(m_comandi.at(Chiudi));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(criteri);
    layout->addLayout(liste, 1);
    layout->addLayout(pulsanti);

    escChiudeSchermata(this);

    checkTickets();
    resize(860, 560);
}

cLookupField* frmStampaBarCode::filtro(const char* nome, const QString& didascalia, const LookupTable& tabella,
                                       int riga, QGridLayout* griglia, QWidget* gruppo,
                                       std::function<bool(QString&, QString&, int&)> valida)
{
    const QString parte = QString::fromLatin1(nome).mid(3); // "Marca" of "txtMarca"
    auto* campo = new QLineEdit(gruppo);
    campo->setObjectName(QString::fromLatin1(nome));
    limitToColumn(campo, QString::fromLatin1(tabella.table), QString::fromLatin1(tabella.codeColumn));
    keepReadable(campo, 160);
    auto* sfoglia = new QToolButton(gruppo);
    sfoglia->setObjectName(QStringLiteral("cmdSfoglia") + parte);
    sfoglia->setIcon(QIcon::fromTheme(QStringLiteral("edit-find")));
    sfoglia->setToolTip(QStringLiteral("Cerca [F3]"));
    sfoglia->setFocusPolicy(Qt::NoFocus);
    auto* descrizione = new QLabel(gruppo);
    descrizione->setObjectName(QStringLiteral("lbl") + parte);
    descrizione->setFrameShape(QFrame::StyledPanel);
    descrizione->setFrameShadow(QFrame::Sunken);
    // A long description is cut, it never widens the window.
    descrizione->setMinimumWidth(120);
    descrizione->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* etichetta = new QLabel(didascalia, gruppo);
    etichetta->setBuddy(campo);

    auto* lookup = new cLookupField(campo, descrizione, valida ? std::move(valida) : tabella.validate,
                                    lookupSearch(tabella), this);
    lookup->setButton(sfoglia);
    connect(sfoglia, &QToolButton::clicked, lookup, &cLookupField::browse);
    auto* f3 = new QShortcut(QKeySequence(Qt::Key_F3), campo, nullptr, nullptr, Qt::WidgetShortcut);
    connect(f3, &QShortcut::activated, lookup, &cLookupField::browse);

    griglia->addWidget(etichetta, riga, 0);
    griglia->addWidget(campo, riga, 1);
    griglia->addWidget(sfoglia, riga, 2);
    griglia->addWidget(descrizione, riga, 3);
    return lookup;
}

void frmStampaBarCode::startMe(const QString& lista)
{
    if (lista.isEmpty())
        return;
    if (getLista(lista, m_elenco))
        mostraElencoStampa();
}

void frmStampaBarCode::eseguiRicerca()
{
    // A code typed and not yet left is looked up now; an unknown one (told
    // by the look-up) must not turn into a search without that filter.
    FiltriEtichette filtri;
    for (cLookupField* campo : {m_prodotto, m_marca, m_categoria, m_gruppo, m_collezione}) {
        const bool scritto = !campo->field()->text().trimmed().isEmpty();
        campo->validate();
        if (scritto && campo->field()->text().trimmed().isEmpty())
            return;
    }
    filtri.prodotto = m_prodotto->rid();
    filtri.codice = m_txtProdotto->text().trimmed();
    filtri.parteCodice = m_chkLike->isChecked();
    filtri.marca = m_marca->rid();
    filtri.categoria = m_categoria->rid();
    filtri.gruppo = m_gruppo->rid();
    filtri.collezione = m_collezione->rid();

    std::optional<QList<ProdottoEtichetta>> trovati;
    {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        trovati = cercaProdottiEtichette(filtri);
        QApplication::restoreOverrideCursor();
    }
    m_lswElencoDisponibile->clear();
    m_disponibili.clear();
    m_lblInfo->clear();
    if (!trovati)
        return;
    if (trovati->isEmpty()) {
        msgBox(QStringLiteral("Nessun prodotto tovato per i criteri selezonati!"), vb::Information);
        return;
    }
    m_disponibili = *trovati;
    QList<QTreeWidgetItem*> righe;
    righe.reserve(m_disponibili.size());
    for (int i = 0; i < m_disponibili.size(); ++i) {
        auto* item = new QTreeWidgetItem;
        riempiRiga(item, 0, m_disponibili.at(i));
        item->setData(0, kPosizione, i);
        righe.append(item);
    }
    m_lswElencoDisponibile->addTopLevelItems(righe);
    m_lswElencoDisponibile->setCurrentItem(righe.first());
    m_lblInfo->setText(testoProdottiTrovati(int(m_disponibili.size())));
}

void frmStampaBarCode::nuovaRicerca()
{
    for (cLookupField* campo : {m_prodotto, m_marca, m_categoria, m_gruppo, m_collezione})
        campo->clear();
    m_lswElencoDisponibile->clear();
    m_disponibili.clear();
    m_lblInfo->clear();
    m_txtProdotto->setFocus();
}

void frmStampaBarCode::addProdotto()
{
    int ultimo = 0;
    for (int i = 0; i < m_lswElencoDisponibile->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = m_lswElencoDisponibile->topLevelItem(i);
        if (!item->isSelected())
            continue;
        const ProdottoEtichetta& p = m_disponibili.at(item->data(0, kPosizione).toInt());
        m_elenco.aggiungi(p, 1);
        ultimo = p.rid;
    }
    if (ultimo > 0)
        mostraElencoStampa(ultimo);
}

void frmStampaBarCode::addAllProdotti()
{
    if (m_disponibili.isEmpty())
        return;
    m_elenco.aggiungiTutti(m_disponibili);
    mostraElencoStampa(m_disponibili.last().rid);
}

void frmStampaBarCode::remProdotto()
{
    QList<int> via;
    for (const QTreeWidgetItem* item : m_lswElencoStampa->selectedItems())
        via.append(ridDi(item));
    if (via.isEmpty())
        return;
    // The product after the last one taken out stays selected.
    int dopo = 0;
    const int ultimo = m_elenco.indice(via.last());
    for (int i = ultimo + 1; i < m_elenco.numeroProdotti() && dopo == 0; ++i)
        if (!via.contains(m_elenco.prodotti().at(i).rid))
            dopo = m_elenco.prodotti().at(i).rid;
    for (const int rid : via)
        m_elenco.rimuovi(rid);
    if (dopo == 0 && !m_elenco.isEmpty())
        dopo = m_elenco.prodotti().last().rid;
    mostraElencoStampa(dopo);
}

void frmStampaBarCode::mostraElencoStampa(int rid)
{
    m_lswElencoStampa->clear();
    QList<QTreeWidgetItem*> righe;
    righe.reserve(m_elenco.numeroProdotti());
    for (const ProdottoEtichetta& p : m_elenco.prodotti()) {
        auto* item = new QTreeWidgetItem;
        item->setText(0, QString::number(p.quantita));
        item->setTextAlignment(0, Qt::AlignRight | Qt::AlignVCenter);
        riempiRiga(item, 1, p);
        righe.append(item);
    }
    m_lswElencoStampa->addTopLevelItems(righe);
    if (const int i = m_elenco.indice(rid); i >= 0) {
        m_lswElencoStampa->setCurrentItem(righe.at(i));
        m_lswElencoStampa->scrollToItem(righe.at(i));
    }
    checkTickets();
}

void frmStampaBarCode::checkTickets() { m_lblTickets->setText(m_elenco.testoEtichette()); }

void frmStampaBarCode::abilita(bool abilitato)
{
    for (QPushButton* comando : std::as_const(m_comandi))
        comando->setEnabled(abilitato);
}

void frmStampaBarCode::cmdStampa_Click()
{
    if (m_elenco.isEmpty()) {
        msgBox(QStringLiteral("Nessun elemento da stampare"), vb::Exclamation);
        return;
    }
    abilita(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_ultimoDisegno.invalidate();
    m_pgbMain->setValue(0);
    const bool pronta = creaStampaDBVuoto()
        && fillBorcodesToPrint(m_elenco, [this](int n, int totale) { avanzamentoStampa(n, totale); });
    QApplication::restoreOverrideCursor();
    QCoreApplication::processEvents();
    abilita(true);
    m_pgbMain->setValue(0);
    if (pronta)
        mostraAnteprima(QStringLiteral("BarCode.rpt"), QString(), QStringLiteral("Stampa Codici a Barre"), QString(),
                        false, QString(), connessioneStampaDB(), QString());
}

void frmStampaBarCode::avanzamentoStampa(int n, int totale)
{
    if (n < totale && m_ultimoDisegno.isValid() && m_ultimoDisegno.elapsed() < kIntervalloDisegnoMs)
        return;
    m_ultimoDisegno.start();
    m_pgbMain->setValue(totale > 0 ? int(std::min<qint64>(100, qint64(n) * 100 / totale)) : 0);
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}
