#include "masterdata/frmrangesconti.h"

#include "common/msgbox.h"
#include "lookups/lookuptable.h"
#include "screens/framework/cgrid.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/frmricerca.h"
#include "screens/services/typedinput.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int kPrimaColonnaValori = 4; // after number, name, from, to

// A code field with its browse button and description, as in the cards.
cLookupField* lookupRow(QFormLayout* form, const QString& name, const QString& caption, const LookupTable& table,
                        QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* field = new QLineEdit(row);
    field->setObjectName(name);
    keepReadable(field, 110);
    auto* label = new QLabel(row);
    label->setObjectName(QStringLiteral("lbl") + name.mid(3));
    label->setFrameShape(QFrame::StyledPanel);
    label->setFrameShadow(QFrame::Sunken);
    label->setMinimumWidth(200);
    auto* browse = new QToolButton(row);
    browse->setIcon(QIcon::fromTheme(QStringLiteral("edit-find")));
    browse->setToolTip(QStringLiteral("Cerca [F3]"));
    browse->setFocusPolicy(Qt::NoFocus);
    layout->addWidget(field);
    layout->addWidget(browse);
    layout->addWidget(label, 1);
    auto* lookup = new cLookupField(field, label, table.validate, lookupSearch(table), parent);
    lookup->setButton(browse);
    auto* f3 = new QShortcut(QKeySequence(Qt::Key_F3), field, nullptr, nullptr, Qt::WidgetShortcut);
    QObject::connect(f3, &QShortcut::activated, lookup, &cLookupField::browse);
    form->addRow(caption, row);
    return lookup;
}

} // namespace

frmRangeSconti::frmRangeSconti(TipoRange tipo, QWidget* parent)
    : QWidget(parent)
    , m_editor(tipo)
{
    const bool sconti = tipo == TipoRange::Sconti;
    setObjectName(sconti ? QStringLiteral("frmRangeSconti") : QStringLiteral("frmRangePrezzi"));
    setWindowTitle(sconti ? QStringLiteral("Configura Categoria di Sconto") : QStringLiteral("Configura Prezzi Netti"));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    m_categoria = lookupRow(form, QStringLiteral("txtCatSconto"), QStringLiteral("Categoria Sconto:"),
                            lookup::categorieSconti, this);
    m_chiave = sconti
        ? lookupRow(form, QStringLiteral("txtMarca"), QStringLiteral("Marca:"), lookup::marche, this)
        : lookupRow(form, QStringLiteral("txtProdotto"), QStringLiteral("Prodotto:"), lookup::prodotti, this);
    connect(m_categoria, &cLookupField::changed, this, &frmRangeSconti::refreshRecord);
    connect(m_chiave, &cLookupField::changed, this, &frmRangeSconti::refreshRecord);
    layout->addLayout(form);

    QStringList valori = sconti
        ? QStringList{QStringLiteral("Sconto 1"), QStringLiteral("Sconto 2"), QStringLiteral("Sconto 3")}
        : QStringList{QStringLiteral("Prezzo")};
    for (Lato lato : {Acquisti, Vendite}) {
        const bool acquisti = lato == Acquisti;
        auto* box = new QGroupBox(acquisti ? QStringLiteral("Acquisti") : QStringLiteral("Vendite"), this);
        auto* boxLayout = new QVBoxLayout(box);
        cGrid* grid = new cGrid(acquisti ? QStringLiteral("flxRangeScAcquisti") : QStringLiteral("flxRangeScVendite"),
                                QStringList{acquisti ? QStringLiteral("Fornitore") : QStringLiteral("Fascia"),
                                            acquisti ? QStringLiteral("Denominazione") : QStringLiteral("Descrizione"),
                                            QStringLiteral("Da Q.ta"), QStringLiteral("A Q.ta")}
                                    + valori,
                                box);
        grid->setEditable(2, typedinput::InteroNonFormattato);
        grid->setEditable(3, typedinput::InteroNonFormattato);
        for (int c = 0; c < valori.size(); ++c)
            grid->setEditable(kPrimaColonnaValori + c, typedinput::Decimale, 2);
        grid->setColumnWidth(1, 200);
        connect(grid, &cGrid::cellEdited, this,
                [this, lato](int row, int column) { cellaModificata(lato, row, column); });
        m_grid[lato] = grid;
        boxLayout->addWidget(grid);
        auto* buttons = new QHBoxLayout;
        const std::pair<QString, std::function<void()>> comandi[] = {
            {acquisti ? QStringLiteral("Aggiungi Fornitore") : QStringLiteral("Aggiungi Fascia"),
             [this, lato] { cmdAggiungiGruppo_Click(lato); }},
            {QStringLiteral("Aggiungi Range"), [this, lato] { aggiungiRiga(lato, m_grid[lato]->currentRow()); }},
            {acquisti ? QStringLiteral("Elimina Fornitore") : QStringLiteral("Elimina Fascia"),
             [this, lato] { eliminaGruppo(lato, m_grid[lato]->currentRow()); }}};
        int i = 0;
        for (const auto& [caption, action] : comandi) {
            auto* button = new QPushButton(caption, box);
            button->setObjectName(QStringLiteral("cmdGriglia_%1_%2").arg(int(lato)).arg(i++));
            button->setAutoDefault(false);
            connect(button, &QPushButton::clicked, this, action);
            buttons->addWidget(button);
        }
        buttons->addStretch(1);
        boxLayout->addLayout(buttons);
        layout->addWidget(box, 1);
    }

    auto* commands = new QHBoxLayout;
    const std::tuple<const char*, const char*, Qt::Key, std::function<void()>> kCommands[] = {
        {"Nuovo [F2]", "document-new", Qt::Key_F2, [this] { newRecord(); }},
        {"Salva [F5]", "document-save", Qt::Key_F5, [this] { saveRecord(); }},
        {"Aggiorna [F11]", "view-refresh", Qt::Key_F11, [this] { refreshRecord(); }}};
    int index = 0;
    for (const auto& [caption, icon, key, action] : kCommands) {
        auto* button = new QPushButton(QIcon::fromTheme(QString::fromLatin1(icon)), QString::fromLatin1(caption), this);
        button->setObjectName(QStringLiteral("cmdCommand_") + QString::number(index++));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, action);
        auto* shortcut = new QShortcut(QKeySequence(key), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
        connect(shortcut, &QShortcut::activated, this, [button] {
            button->setFocus(Qt::ShortcutFocusReason); // the cell being edited is written first
            button->click();
        });
        commands->addWidget(button);
    }
    commands->addStretch(1);
    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, [this] {
        if (QWidget* w = parentWidget(); w && w->inherits("QMdiSubWindow"))
            w->close();
        else
            close();
    });
    layout->addLayout(commands);
    resize(760, 560);
}

int frmRangeSconti::categoria() const { return m_categoria->rid(); }

int frmRangeSconti::chiave() const { return m_chiave->rid(); }

void frmRangeSconti::startMe(int categoria, int chiave)
{
    m_categoria->setRid(categoria);
    m_chiave->setRid(chiave);
    refreshRecord();
    m_categoria->field()->setFocus();
}

void frmRangeSconti::newRecord()
{
    m_categoria->clear();
    m_chiave->clear();
    m_editor.carica(0, -1);
    mostra();
    m_categoria->field()->setFocus();
}

void frmRangeSconti::refreshRecord()
{
    if (categoria() > 0)
        m_editor.carica(categoria(), chiave());
    else
        m_editor.carica(0, -1);
    mostra();
}

bool frmRangeSconti::saveRecord()
{
    const QString errore = m_editor.controlla(categoria());
    if (!errore.isEmpty()) {
        msgBox(errore, vb::Exclamation);
        return false;
    }
    if (!m_editor.salva(categoria(), chiave()))
        return false;
    refreshRecord();
    return true;
}

void frmRangeSconti::mostra()
{
    mostraLato(Acquisti);
    mostraLato(Vendite);
}

void frmRangeSconti::mostraLato(Lato lato)
{
    m_filling = true;
    cGrid* grid = m_grid[lato];
    grid->clearRows();
    for (const RangeGruppo& g : m_editor.gruppi(lato))
        for (int r = 0; r < g.righe.size(); ++r)
            grid->addRow(QStringList{r == 0 ? g.numero : QString(), r == 0 ? g.nome : QString(), g.righe.at(r).da,
                                     g.righe.at(r).a}
                         + g.righe.at(r).valori);
    m_filling = false;
}

bool frmRangeSconti::posizione(Lato lato, int row, int& gruppo, int& riga) const
{
    int first = 0;
    const QList<RangeGruppo>& gruppi = m_editor.gruppi(lato);
    for (gruppo = 0; gruppo < gruppi.size(); ++gruppo) {
        const int count = int(gruppi.at(gruppo).righe.size());
        if (row >= first && row < first + count) {
            riga = row - first;
            return true;
        }
        first += count;
    }
    return false;
}

void frmRangeSconti::cellaModificata(Lato lato, int row, int column)
{
    int gruppo = 0, riga = 0;
    if (m_filling || !posizione(lato, row, gruppo, riga))
        return;
    RangeRiga& r = m_editor.gruppi(lato)[gruppo].righe[riga];
    const QString text = m_grid[lato]->text(row, column);
    if (column == 2)
        r.da = text;
    else if (column == 3)
        r.a = text;
    else if (column >= kPrimaColonnaValori)
        r.valori[column - kPrimaColonnaValori] = text;
}

void frmRangeSconti::cmdAggiungiGruppo_Click(Lato lato)
{
    const QString sql = lato == Acquisti ? QStringLiteral("SELECT RID, NUMERO, DENOMINAZIONE FROM Anagrafiche WHERE "
                                                          "TIPO = \u00A4F\u00A4 ORDER BY Denominazione")
                                         : QStringLiteral("SELECT RID, Codice, Descrizione FROM FasceClienti ORDER "
                                                          "BY Descrizione");
    const int rid = frmRicerca::cerca(sql);
    if (rid <= 0)
        return;
    QString numero, nome;
    int found = rid;
    const bool ok = lato == Acquisti ? lookup::fornitori.validate(numero, nome, found)
                                     : lookup::fasceClienti.validate(numero, nome, found);
    if (ok)
        aggiungiGruppo(lato, rid, numero, nome);
}

void frmRangeSconti::aggiungiGruppo(Lato lato, int id, const QString& numero, const QString& nome)
{
    const QString errore = m_editor.aggiungiGruppo(lato, id, numero, nome);
    if (!errore.isEmpty()) {
        msgBox(errore, vb::Exclamation);
        return;
    }
    mostraLato(lato);
}

void frmRangeSconti::aggiungiRiga(Lato lato, int row)
{
    int gruppo = 0, riga = 0;
    if (!posizione(lato, row, gruppo, riga))
        return;
    const QStringList mancanti = m_editor.aggiungiRiga(lato, gruppo);
    if (!mancanti.isEmpty()) {
        msgBox(QStringLiteral("Attenzione:\n") + mancanti.join(QLatin1Char('\n')), vb::Exclamation);
        return;
    }
    mostraLato(lato);
}

void frmRangeSconti::eliminaGruppo(Lato lato, int row)
{
    int gruppo = 0, riga = 0;
    if (!posizione(lato, row, gruppo, riga))
        return;
    const RangeGruppo& g = m_editor.gruppi(lato).at(gruppo);
    if (msgBox(QStringLiteral("Eliminare l'elemento [") + g.numero + QStringLiteral(" - ") + g.nome
                   + QStringLiteral("] dalla griglia?"),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return;
    m_editor.rimuoviGruppo(lato, gruppo);
    mostraLato(lato);
}
