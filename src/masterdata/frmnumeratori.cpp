#include "masterdata/frmnumeratori.h"

#include "common/msgbox.h"
#include "core/optionstore.h"
#include "masterdata/numeratori.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/waitcursor.h"

#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int kTwipsPerPixel = 15;
const QString kKeyPrefix = QStringLiteral("L_");

struct Command
{
    const char* caption;
    const char* icon;
};

const Command kCommands[] = {
    {"&Aggiungi", "list-add"},
    {"&Elimina", "list-remove"},
    {"&Imposta Numero", "document-save"},
};

} // namespace

frmNumeratori::frmNumeratori(QWidget* parent)
    : QWidget(parent)
{
    setObjectName(QStringLiteral("frmNumeratori"));
    setWindowTitle(QStringLiteral("Numeratori"));
    m_keys = new cKeyFunction(this);

    m_anno = gOptions().annoCorrente.isEmpty() ? getOpzione(QStringLiteral("AnnoCorrente")) : gOptions().annoCorrente;

    auto named = [](QWidget* w, const char* name) {
        w->setObjectName(QString::fromLatin1(name));
        return w;
    };
    for (int i = 0; i < int(std::size(kCommands)); ++i) {
        auto* button = new QPushButton(QIcon::fromTheme(QString::fromLatin1(kCommands[i].icon)),
                                       QString::fromUtf8(kCommands[i].caption), this);
        button->setObjectName(QStringLiteral("cmdCommand_") + QString::number(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { cmdCommand_Click(i); });
        m_cmdCommand.append(button);
    }

    m_lblAnno = static_cast<QLabel*>(named(new QLabel(m_anno, this), "lblAnno"));
    QFont bold = m_lblAnno->font();
    bold.setBold(true);
    m_lblAnno->setFont(bold);

    m_lswNumeratori = static_cast<QTreeWidget*>(named(new QTreeWidget(this), "lswNumeratori"));
    m_lswNumeratori->setRootIsDecorated(false);
    m_lswNumeratori->setAlternatingRowColors(true);
    m_lswNumeratori->setHeaderLabels({QStringLiteral("Descrizione"), QStringLiteral("Numero")});
    m_lswNumeratori->setColumnWidth(0, 3600 / kTwipsPerPixel);
    m_lswNumeratori->headerItem()->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    m_lswNumeratori->setMinimumSize((3600 + 1100) / kTwipsPerPixel + 80, 200);
    connect(m_lswNumeratori, &QTreeWidget::itemSelectionChanged, this, [this] {
        const QList<QTreeWidgetItem*> selected = m_lswNumeratori->selectedItems();
        if (!selected.isEmpty())
            lswClick(selected.first());
    });
    connect(m_lswNumeratori, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) { lswClick(item); });
    connect(m_lswNumeratori, &QTreeWidget::itemDoubleClicked, this, [this] {
        m_txtNumero->setFocus();
        m_txtNumero->selectAll();
    });

    m_lblDescrizione = static_cast<QLabel*>(named(new QLabel(this), "lblDescrizione"));
    m_lblDescrizione->setFrameShape(QFrame::StyledPanel);
    m_lblDescrizione->setFrameShadow(QFrame::Sunken);
    m_lblDescrizione->setMinimumWidth(200);
    m_txtNumero = static_cast<QLineEdit*>(named(new QLineEdit(this), "txtNumero"));
    m_txtNumero->setMaximumWidth(110);
    auto* numero = new cTextBox(m_txtNumero, typedinput::InteroNonFormattato, this);
    numero->setCKeyRef(m_keys);
    m_txtDescrizione = static_cast<QLineEdit*>(named(new QLineEdit(this), "txtDescrizione"));
    auto* descrizione = new cTextBox(m_txtDescrizione, typedinput::Testo, this);
    limitToColumn(m_txtDescrizione, QStringLiteral("Numeratori"), QStringLiteral("DESCRIZIONE"));
    descrizione->setCKeyRef(m_keys);
    connect(m_txtDescrizione, &QLineEdit::textEdited, this, &frmNumeratori::txtDescrizioneChanged);

    auto* anno = new QHBoxLayout;
    anno->addWidget(new QLabel(QStringLiteral("Contatori dell'anno:"), this));
    anno->addWidget(m_lblAnno);
    anno->addStretch(1);

    auto* contatore = new QGroupBox(QStringLiteral(" Numeratore selezionato "), this);
    auto* grid = new QGridLayout(contatore);
    grid->addWidget(new QLabel(QStringLiteral("Descrizione:"), contatore), 0, 0);
    grid->addWidget(m_lblDescrizione, 0, 1, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("Numero:"), contatore), 1, 0);
    grid->addWidget(m_txtNumero, 1, 1);
    grid->addWidget(m_cmdCommand.at(2), 1, 2, Qt::AlignLeft);
    grid->addWidget(m_cmdCommand.at(1), 2, 2, Qt::AlignLeft);
    grid->setColumnStretch(2, 1);

    auto* nuovo = new QGroupBox(QStringLiteral(" Nuovo Numeratore "), this);
    auto* row = new QHBoxLayout(nuovo);
    row->addWidget(new QLabel(QStringLiteral("Descrizione:"), nuovo));
    row->addWidget(m_txtDescrizione, 1);
    row->addWidget(m_cmdCommand.at(0));

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(anno);
    layout->addWidget(m_lswNumeratori, 1);
    layout->addWidget(contatore);
    layout->addWidget(nuovo);

    auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    connect(escape, &QShortcut::activated, this, [this] {
        if (parentWidget() && parentWidget()->inherits("QMdiSubWindow"))
            parentWidget()->close();
        else
            close();
    });

    m_cmdCommand.at(0)->setEnabled(true);
    m_cmdCommand.at(1)->setEnabled(false);
    m_cmdCommand.at(2)->setEnabled(false);
    bindList();
    resize(440, 460);
}

void frmNumeratori::cmdCommand_Click(int index)
{
    switch (index) {
    case 0: addNewNumeratore(); break;
    case 1: delNumeratore(); break;
    case 2: getNewNumeroByNumeratore(); break;
    default: break;
    }
}

int frmNumeratori::selectedRid() const { return m_txtNumero->property("tag").toString().toInt(); }

void frmNumeratori::lswClick(QTreeWidgetItem* item)
{
    if (!item)
        return;
    m_txtNumero->setProperty("tag", item->data(0, Qt::UserRole).toString().mid(kKeyPrefix.size()));
    m_txtNumero->setText(QString::number(valIntero(item->text(1))));
    m_lblDescrizione->setText(item->text(0));
    m_cmdCommand.at(0)->setEnabled(false);
    m_cmdCommand.at(1)->setEnabled(true);
    m_cmdCommand.at(2)->setEnabled(true);
}

void frmNumeratori::txtDescrizioneChanged()
{
    m_cmdCommand.at(2)->setEnabled(false);
    m_cmdCommand.at(1)->setEnabled(false);
    m_cmdCommand.at(0)->setEnabled(true);
}

bool frmNumeratori::controllaPresenzaNum(const QString& descrizione) const
{
    for (int i = 0; i < m_lswNumeratori->topLevelItemCount(); ++i)
        if (m_lswNumeratori->topLevelItem(i)->text(0) == descrizione)
            return true;
    return false;
}

void frmNumeratori::addNewNumeratore()
{
    const QString nome = m_txtDescrizione->text().trimmed();
    if (nome.isEmpty()) {
        msgBox(QStringLiteral(
                   "Attenzione!! bisogna digitare una descrizione per il nuovo Numeratore che si vuole inserire."),
               vb::Exclamation);
        m_txtDescrizione->setFocus();
        return;
    }
    if (controllaPresenzaNum(nome)) {
        msgBox(QStringLiteral("Il Numeratore [") + nome + QStringLiteral("] è gia' presente!"), vb::Exclamation);
        return;
    }
    if (msgBox(QStringLiteral("Aggiungere il Numeratore [") + nome + QStringLiteral("] all'elenco?"),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return;
    {
        WaitCursor wait;
        if (aggiungiNumeratore(nome, m_anno) < 0)
            return;
    }
    m_txtDescrizione->clear();
    m_lblDescrizione->clear();
    bindList();
}

void frmNumeratori::delNumeratore()
{
    const int rid = selectedRid();
    if (rid <= 0)
        return;
    const QString nome = m_lblDescrizione->text();
    if (msgBox(QStringLiteral("Eliminare il Numeratore [") + nome + QStringLiteral("] all'elenco?"),
               vb::YesNo | vb::Question)
        != vb::Yes)
        return;
    const QStringList tipi = tipiDocumentoDelNumeratore(rid);
    if (!tipi.isEmpty()) {
        msgBox(QStringLiteral("Impossibile eliminare il numeratore selezionato [") + nome + QStringLiteral("].\n")
                   + QStringLiteral("Esistono relazioni con il documento [") + tipi.join(QStringLiteral(" - "))
                   + QLatin1Char(']'),
               vb::Critical);
        return;
    }
    {
        WaitCursor wait;
        if (!eliminaNumeratore(rid))
            return;
    }
    m_txtNumero->setProperty("tag", QString());
    m_txtNumero->clear();
    m_lblDescrizione->clear();
    m_cmdCommand.at(1)->setEnabled(false);
    m_cmdCommand.at(2)->setEnabled(false);
    bindList();
}

void frmNumeratori::getNewNumeroByNumeratore()
{
    const int rid = selectedRid();
    if (rid <= 0)
        return;
    if (impostaContatore(rid, m_anno, valIntero(m_txtNumero->text())))
        bindList(rid);
}

void frmNumeratori::bindList(int rid)
{
    m_lswNumeratori->clear();
    QList<NumeratoreAnno> righe;
    numeratoriAnno(m_anno, righe);
    QTreeWidgetItem* chosen = nullptr;
    for (const NumeratoreAnno& riga : std::as_const(righe)) {
        auto* item = new QTreeWidgetItem(m_lswNumeratori, {riga.descrizione, QString::number(riga.numero)});
        item->setData(0, Qt::UserRole, QString(kKeyPrefix + QString::number(riga.rid)));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
        if (riga.rid == rid)
            chosen = item;
    }
    if (!chosen)
        chosen = m_lswNumeratori->topLevelItem(0);
    if (chosen) {
        m_lswNumeratori->setCurrentItem(chosen);
        m_lswNumeratori->scrollToItem(chosen);
        lswClick(chosen);
    }
}
