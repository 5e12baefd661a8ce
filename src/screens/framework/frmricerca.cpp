#include "screens/framework/frmricerca.h"

#include "core/dialogservice.h"
#include "core/optionstore.h"
#include "core/serversettings.h"
#include "data/cadosqlserver.h"
#include "data/recordset.h"
#include "data/scoped.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/listcolumns.h"
#include "screens/framework/waitcursor.h"
#include "screens/services/ricercasql.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QTimer>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int kTwipsPerPixel = 15;
const QString kHeightKey = QStringLiteral("Options/FrmRicerca_Height");
const QString kWidthKey = QStringLiteral("Options/FrmRicerca_Widht"); // the key's own spelling

} // namespace

frmRicerca::frmRicerca(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmRicerca"));
    setWindowTitle(QStringLiteral("Ricerca"));

    m_txtFiltro = new QLineEdit(this);
    m_txtFiltro->setObjectName(QStringLiteral("txtFiltro"));
    m_chkLike = new QCheckBox(QStringLiteral("Contiene"), this);
    m_chkLike->setObjectName(QStringLiteral("chkLike"));
    m_chkLike->setToolTip(QStringLiteral("Cerca il testo in qualunque punto della colonna"));
    auto* lblMax = new QLabel(QStringLiteral("Max. Righe"), this);
    m_txtMax = new QLineEdit(this);
    m_txtMax->setObjectName(QStringLiteral("txtMax"));
    m_txtMax->setMaximumWidth(70);
    lblMax->setBuddy(m_txtMax);

    m_lswMain = new QTreeWidget(this);
    m_lswMain->setObjectName(QStringLiteral("lswMain"));
    m_lswMain->setRootIsDecorated(false);
    m_lswMain->setAlternatingRowColors(true);
    m_lswMain->setUniformRowHeights(true);
    m_lswMain->setAllColumnsShowFocus(true);
    m_lswMain->header()->setSectionsClickable(true);
    m_lswMain->header()->setSortIndicatorShown(true);
    m_lswMain->installEventFilter(this);

    m_lblInfo = new QLabel(this);
    m_lblInfo->setObjectName(QStringLiteral("lblInfo"));
    auto* cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    auto* cmdCancel = new QPushButton(QStringLiteral("&Annulla"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    m_cmdNuovo = new QPushButton(QStringLiteral("&Nuovo"), this);
    m_cmdNuovo->setObjectName(QStringLiteral("cmdNuovo"));
    m_cmdNuovo->setVisible(false);
    for (QPushButton* b : {cmdOK, cmdCancel, m_cmdNuovo})
        b->setAutoDefault(false);

    auto* top = new QHBoxLayout;
    top->addWidget(new QLabel(QStringLiteral("Cerca:"), this));
    top->addWidget(m_txtFiltro, 1);
    top->addWidget(m_chkLike);
    top->addSpacing(12);
    top->addWidget(lblMax);
    top->addWidget(m_txtMax);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_lblInfo, 1);
    bottom->addWidget(m_cmdNuovo);
    bottom->addWidget(cmdOK);
    bottom->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_lswMain, 1);
    layout->addLayout(bottom);
    setTabOrder(m_txtFiltro, m_lswMain);
    setTabOrder(m_lswMain, m_chkLike);
    setTabOrder(m_chkLike, m_txtMax);

    // Enter in the filter chooses the row in evidence, Enter in Max. Righe
    // runs the filter again; the arrows move between filter and list.
    m_filtro = new cTextBox(m_txtFiltro, typedinput::Testo, this);
    m_filtro->setActionKeyReturn(true);
    m_max = new cTextBox(m_txtMax, typedinput::InteroNonFormattato, this);
    m_max->setActionKeyReturn(true);
    connect(m_filtro, &cTextBox::evtActionKeyRetunr, this, &frmRicerca::choose);
    connect(m_max, &cTextBox::evtActionKeyRetunr, this, [this] { startMe(m_txtFiltro->text()); });
    connect(m_txtFiltro, &QLineEdit::textChanged, this, [this](const QString& text) { startMe(text); });
    connect(m_chkLike, &QCheckBox::toggled, this, [this] {
        if (!m_txtFiltro->text().isEmpty())
            startMe(m_txtFiltro->text());
    });
    connect(m_lswMain->header(), &QHeaderView::sectionClicked, this, &frmRicerca::sortBy);
    connect(m_lswMain, &QTreeWidget::itemDoubleClicked, this, &frmRicerca::choose);
    connect(cmdOK, &QPushButton::clicked, this, &frmRicerca::choose);
    connect(cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_cmdNuovo, &QPushButton::clicked, this, &frmRicerca::chooseNew);

    QSettings& settings = machineSettings();
    resize(settings.value(kWidthKey, 6165).toInt() / kTwipsPerPixel,
           settings.value(kHeightKey, 6150).toInt() / kTwipsPerPixel);
}

frmRicerca::~frmRicerca() = default;

void frmRicerca::startMe(const QString& sql, int, bool startEmpty, bool allowNew, int sortColumn, const QString& title,
                         const QString& optionKey, bool multiSelect)
{
    if (gOptions().usaGrassetto) {
        QFont font = m_lswMain->font();
        font.setBold(true);
        m_lswMain->setFont(font);
    }
    if (!title.isEmpty())
        setWindowTitle(title);
    m_optionKey = optionKey;
    if (!optionKey.isEmpty()) {
        const QSignalBlocker quiet(m_chkLike);
        m_chkLike->setChecked(
            machineSettings().value(QStringLiteral("Options/") + optionKey, QStringLiteral("0")).toInt() != 0);
    }
    m_cmdNuovo->setVisible(allowNew);
    m_lswMain->setSelectionMode(multiSelect ? QAbstractItemView::ExtendedSelection
                                            : QAbstractItemView::SingleSelection);
    m_sortColumn = qMax(1, sortColumn);
    m_sqlGiven = sql;
    m_sql = ricerca::prepareStatement(sql, startEmpty);
    if (m_txtMax->text().trimmed().isEmpty())
        m_txtMax->setText(QStringLiteral("500"));
    bindData(m_sql);
}

void frmRicerca::startMe(const QString& sFiltro)
{
    if (m_sql.isEmpty())
        return;
    // The filter replaces the start-empty guard: it works on the statement as given.
    const QString statement = sFiltro.isEmpty()
        ? m_sql
        : ricerca::addCondition(ricerca::prepareStatement(m_sqlGiven, false),
                                ricerca::likeCondition(getNomeCampo(m_sortColumn), sFiltro, m_chkLike->isChecked()));
    if (m_txtMax->text().trimmed().isEmpty())
        m_txtMax->setText(QStringLiteral("500"));
    bindData(statement);
}

QString frmRicerca::getNomeCampo(int column) const { return ricerca::nomeCampo(m_sql, column); }

void frmRicerca::bindData(const QString& statement)
{
    QString sql = ricerca::withMaxRows(statement, m_txtMax->text(), gAdoSqlServer().TipoServer());
    WaitCursor wait;
    const cReader rs(sql, objectName() + QStringLiteral(".startMe"));
    m_lswMain->clear();
    if (!rs)
        return;
    const ListColumns columns = ListColumns::fromRecordset(*rs);
    columns.applyHeaders(*m_lswMain);
    for (; !rs->eof(); rs->moveNext())
        columns.addRow(*m_lswMain, *rs, QStringLiteral("RID"));
    columns.fitWidths(*m_lswMain);
    const int listColumn = qMin(m_sortColumn, m_lswMain->columnCount() - 1);
    if (listColumn >= 1) {
        m_lswMain->sortItems(listColumn, m_order);
        m_lswMain->header()->setSortIndicator(listColumn, m_order);
    }
    if (QTreeWidgetItem* first = m_lswMain->topLevelItem(0))
        m_lswMain->setCurrentItem(first);
    const int shown = m_lswMain->topLevelItemCount();
    m_lblInfo->setText(shown == 1 ? QStringLiteral("1 riga") : QString::number(shown) + QStringLiteral(" righe"));
}

void frmRicerca::sortBy(int listColumn)
{
    if (listColumn < 1)
        return;
    m_order = listColumn == m_sortColumn && m_order == Qt::AscendingOrder ? Qt::DescendingOrder : Qt::AscendingOrder;
    m_sortColumn = listColumn;
    m_lswMain->sortItems(listColumn, m_order);
    m_lswMain->header()->setSortIndicator(listColumn, m_order);
}

void frmRicerca::choose()
{
    QTreeWidgetItem* current = m_lswMain->currentItem();
    QList<QTreeWidgetItem*> selected = m_lswMain->selectedItems();
    if (!current && selected.isEmpty())
        return;
    if (!current)
        current = selected.first();
    m_rid = ListColumns::itemKey(*current, QStringLiteral("RID")).toInt();
    m_strRid.clear();
    if (selected.isEmpty())
        selected << current;
    for (QTreeWidgetItem* item : std::as_const(selected))
        m_strRid += QLatin1Char(',') + ListColumns::itemKey(*item, QStringLiteral("RID"));
    accept();
}

void frmRicerca::chooseNew()
{
    m_rid = -1;
    m_strRid = QStringLiteral("-1");
    accept();
}

void frmRicerca::done(int result)
{
    if (result == QDialog::Rejected) {
        m_rid = 0;
        m_strRid.clear();
    }
    if (!m_optionKey.isEmpty())
        machineSettings().setValue(QStringLiteral("Options/") + m_optionKey, m_chkLike->isChecked() ? 1 : 0);
    if (!isMinimized()) {
        machineSettings().setValue(kHeightKey, height() * kTwipsPerPixel);
        machineSettings().setValue(kWidthKey, width() * kTwipsPerPixel);
    }
    QDialog::done(result);
}

void frmRicerca::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    QTimer::singleShot(0, m_txtFiltro, [this] { m_txtFiltro->setFocus(Qt::OtherFocusReason); });
}

bool frmRicerca::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_lswMain && event->type() == QEvent::KeyPress) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) {
            choose();
            return true;
        }
        if (key->key() == Qt::Key_Up && m_lswMain->currentItem() == m_lswMain->topLevelItem(0)) {
            m_txtFiltro->setFocus(Qt::BacktabFocusReason);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

int frmRicerca::cerca(const QString& sql, const QString& title, int sortColumn, bool startEmpty, bool allowNew,
                      const QString& optionKey)
{
    frmRicerca dialog(dialogs::ownerWindow());
    dialog.startMe(sql, 0, startEmpty, allowNew, sortColumn, title, optionKey, false);
    dialogs::exec(dialog);
    return dialog.RID();
}
