#include "documents/grigliamovimento.h"

#include "documents/grigliadocumento.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollBar>

namespace {

// The headers of the 31 columns; an empty one is a column of data only.
const char* const kIntestazioni[colonna::Numero] = {"",
                                                    "",
                                                    "Marca",
                                                    "Codice",
                                                    "",
                                                    "Descrizione",
                                                    "",
                                                    "",
                                                    "",
                                                    "Quantità",
                                                    "",
                                                    "",
                                                    "UM",
                                                    "Prezzo Listino",
                                                    "Sconto %",
                                                    "",
                                                    "",
                                                    "",
                                                    "Prezzo Netto",
                                                    "",
                                                    "Imponibile",
                                                    "IVA",
                                                    "Importo",
                                                    "",
                                                    "",
                                                    "",
                                                    "",
                                                    "",
                                                    "",
                                                    "",
                                                    ""};

// Characters of each shown column, for its width.
int larghezza(int c)
{
    switch (c) {
    case colonna::Icona: return 2;
    case colonna::Marca: return 6;
    case colonna::Codice: return 11;
    case colonna::Descrizione: return 16;
    case colonna::UM: return 3;
    case colonna::Sconti: return 8;
    case colonna::Iva: return 5;
    default: return 9;
    }
}

bool allineataADestra(int c)
{
    return c == colonna::Quantita || c == colonna::PrezzoListino || c == colonna::PrezzoNetto
        || c == colonna::Imponibile || c == colonna::Iva || c == colonna::Importo;
}

} // namespace

ModelloGriglia::ModelloGriglia(const GrigliaDocumento& griglia, const QString& carattereDistinta, QObject* parent)
    : QAbstractTableModel(parent)
    , m_griglia(griglia)
    , m_carattereDistinta(carattereDistinta)
{ }

int ModelloGriglia::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : m_griglia.righe(); }

int ModelloGriglia::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : colonna::Numero; }

QVariant ModelloGriglia::data(const QModelIndex& index, int role) const
{
    const int r = index.row(), c = index.column();
    if (role == Qt::TextAlignmentRole)
        return allineataADestra(c) ? QVariant(Qt::AlignRight | Qt::AlignVCenter) : QVariant(Qt::AlignVCenter);
    // A text cut short by the column is read whole in its tip.
    if (role == Qt::ToolTipRole && c == colonna::Descrizione)
        return m_griglia.cella(r, c);
    if (role != Qt::DisplayRole)
        return {};
    if (c != colonna::Icona)
        return m_griglia.cella(r, c);
    switch (m_griglia.icona(r, m_carattereDistinta)) {
    case IconaRiga::PadreAperto: return QStringLiteral("▼");
    case IconaRiga::PadreChiuso: return QStringLiteral("▶");
    case IconaRiga::Figlio: return QStringLiteral("  └");
    default: return {};
    }
}

QVariant ModelloGriglia::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole || section < 0 || section >= colonna::Numero)
        return QAbstractTableModel::headerData(section, orientation, role);
    return QString::fromUtf8(kIntestazioni[section]);
}

void ModelloGriglia::aggiorna()
{
    beginResetModel();
    endResetModel();
}

GrigliaMovimento::GrigliaMovimento(const GrigliaDocumento& griglia, const QString& carattereDistinta, QWidget* parent)
    : QTableView(parent)
    , m_modello(new ModelloGriglia(griglia, carattereDistinta, this))
{
    setObjectName(QStringLiteral("flxElement"));
    setModel(m_modello);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    horizontalHeader()->setHighlightSections(false);
    const int carattere = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (int c = 0; c < colonna::Numero; ++c) {
        if (*kIntestazioni[c] == '\0' && c != colonna::Icona)
            hideColumn(c);
        else
            setColumnWidth(c,
                           qMax(larghezza(c) * carattere,
                                fontMetrics().horizontalAdvance(QString::fromUtf8(kIntestazioni[c])))
                               + 12);
    }
    // The text takes the room left, never less than its own width.
    int larghezzaMinima = frameWidth() * 2 + verticalScrollBar()->sizeHint().width();
    for (int c = 0; c < colonna::Numero; ++c)
        larghezzaMinima += isColumnHidden(c) ? 0 : columnWidth(c);
    setMinimumWidth(larghezzaMinima);
    horizontalHeader()->setSectionResizeMode(colonna::Descrizione, QHeaderView::Stretch);
    // Arrows bring the row they reach to the editor; a click says which column it hit.
    connect(selectionModel(), &QItemSelectionModel::currentRowChanged, this, [this](const QModelIndex& now) {
        if (m_daTastiera && now.isValid())
            Q_EMIT rigaScelta(now.row(), -1);
    });
    connect(this, &QTableView::clicked, this,
            [this](const QModelIndex& index) { Q_EMIT rigaScelta(index.row(), index.column()); });
}

void GrigliaMovimento::aggiorna(int corrente)
{
    m_modello->aggiorna();
    const GrigliaDocumento& g = m_modello->griglia();
    for (int r = 0; r < g.righe(); ++r)
        setRowHidden(r, !g.visibile(r));
    seleziona(corrente);
}

void GrigliaMovimento::seleziona(int riga)
{
    if (riga >= 0 && riga < m_modello->rowCount())
        setCurrentIndex(m_modello->index(riga, colonna::Codice));
}

int GrigliaMovimento::rigaCorrente() const
{
    const QModelIndex i = currentIndex();
    return i.isValid() ? i.row() : -1;
}

bool GrigliaMovimento::colonnaModificabile(int c)
{
    return c == colonna::Quantita || c == colonna::PrezzoListino || c == colonna::PrezzoNetto || c == colonna::Iva;
}

void GrigliaMovimento::keyPressEvent(QKeyEvent* event)
{
    const int r = rigaCorrente();
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        Q_EMIT invio();
        return;
    }
    const QString testo = event->text();
    if (r >= 0 && colonnaModificabile(currentIndex().column()) && !testo.isEmpty() && testo.at(0).isPrint()) {
        Q_EMIT cellaDigitata(r, currentIndex().column(), testo);
        return;
    }
    m_daTastiera = true;
    QTableView::keyPressEvent(event);
    m_daTastiera = false;
}
