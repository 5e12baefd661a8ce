#include "masterdata/frmopzioni.h"

#include "common/italiantext.h"
#include "common/msgbox.h"
#include "core/dialogservice.h"
#include "core/optionstore.h"
#include "data/session.h"
#include "masterdata/logoazienda.h"
#include "masterdata/opzionicampi.h"
#include "screens/framework/cinputs.h"
#include "screens/framework/ckeyfunction.h"
#include "screens/framework/clookupfield.h"
#include "screens/framework/fieldlimits.h"
#include "screens/framework/frmricerca.h"
#include "screens/framework/listhelpers.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QEvent>
#include <QFile>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

using opzioni::Campo;
using opzioni::Controllo;

namespace {

const QString kSalvate = QStringLiteral("Le impostazioni correnti sono state salvate.");
const QString kTestoLogo = QStringLiteral("Sfoglia/cambia immagine per logo... (H - L - Risoluzione) 4cm. - 9 cm.");
// The picture box on screen keeps the proportions of the printed logo.
const QSize kRiquadroLogo(405, 180);

QString name(const char* latin) { return QString::fromLatin1(latin); }

// The caption of a field without its colon, for the search's title.
QString titoloRicerca(const Campo& campo)
{
    QString caption = campo.caption;
    if (caption.endsWith(QLatin1Char(':')))
        caption.chop(1);
    return QStringLiteral("Ricerca - ") + caption;
}

} // namespace

frmOpzioni::frmOpzioni(QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmOpzioni"));
    setWindowTitle(QStringLiteral("Opzioni"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    m_keys = new cKeyFunction(this);
    connect(m_keys, &cKeyFunction::evtFunctionKeyPressed, this, &frmOpzioni::onFunctionKey);
    costruisci();
    caricaOpzioni();
    // The dialog opens on the first field of its first tab, ready for typing.
    if (QWidget* primo = findChild<QWidget*>(opzioni::primoCampo(opzioni::Generali)))
        primo->setFocus();
}

template <typename T> T* frmOpzioni::control(const QString& controlName) const { return findChild<T*>(controlName); }

// --- building ---------------------------------------------------------------

void frmOpzioni::costruisci()
{
    m_tbsMain = new QTabWidget(this);
    m_tbsMain->setObjectName(QStringLiteral("tbsMain"));
    for (int frame = opzioni::Generali; frame <= opzioni::ElencoSpeciale; ++frame)
        m_tbsMain->addTab(costruisciFrame(frame), opzioni::captionFrame(opzioni::Frame(frame)));
    // The order conversion keeps its fields, off the tabs.
    costruisciFrame(opzioni::Promozioni)->hide();
    connect(m_tbsMain, &QTabWidget::currentChanged, this, &frmOpzioni::onTabChanged);

    auto* cmdOk = new QPushButton(QStringLiteral("OK"), this);
    cmdOk->setObjectName(QStringLiteral("cmdOk"));
    cmdOk->setDefault(true);
    auto* cmdAnnulla = new QPushButton(QStringLiteral("Annulla"), this);
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    cmdAnnulla->setAutoDefault(false);
    connect(cmdOk, &QPushButton::clicked, this, &frmOpzioni::cmdOk_Click);
    connect(cmdAnnulla, &QPushButton::clicked, this, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cmdOk);
    buttons->addWidget(cmdAnnulla);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tbsMain, 1);
    layout->addLayout(buttons);
    aggiungiDipendenze();
    m_tbsMain->setUsesScrollButtons(false); // every tab in sight
    resize(sizeHint().expandedTo(QSize(760, 560)));
}

// A frame: option buttons on top, then the fields in a form, then the check
// boxes in two columns, each with the panel that it governs below it.
QWidget* frmOpzioni::costruisciFrame(int frame)
{
    auto* fra = new QFrame(this);
    fra->setObjectName(opzioni::nomeFrame(opzioni::Frame(frame)));
    auto* layout = new QVBoxLayout(fra);
    if (frame == opzioni::Logo) {
        layout->addWidget(costruisciLogo());
        layout->addStretch(1);
        return fra;
    }
    if (frame == opzioni::Promozioni)
        layout->addWidget(new QLabel(opzioni::captionFrame(opzioni::Promozioni), fra));
    auto* form = new QFormLayout;
    form->setLabelAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* checks = new QGridLayout;
    checks->setColumnStretch(0, 1);
    checks->setColumnStretch(1, 1);
    int checkCount = 0;
    QVBoxLayout* lastCheck = nullptr;

    for (const Campo& campo : opzioni::campi()) {
        if (campo.frame != frame)
            continue;
        if (!campo.contenitore.isEmpty() && lastCheck) {
            // The panel of the check box just above.
            QWidget* pct = fra->findChild<QWidget*>(campo.contenitore);
            if (!pct) {
                pct = new QWidget(fra);
                pct->setObjectName(campo.contenitore);
                auto* row = new QHBoxLayout(pct);
                row->setContentsMargins(22, 0, 0, 0);
                row->addStretch(1);
                QSizePolicy policy = pct->sizePolicy();
                policy.setRetainSizeWhenHidden(true);
                pct->setSizePolicy(policy);
                lastCheck->addWidget(pct);
            }
            auto* row = static_cast<QHBoxLayout*>(pct->layout());
            const int at = row->count() - 1;
            if (campo.tipo == Controllo::Opzione) {
                auto* option = new QRadioButton(campo.caption, pct);
                option->setObjectName(campo.control);
                new cOptionButton(option, this);
                row->insertWidget(at, option);
            } else {
                row->insertWidget(at, new QLabel(campo.caption, pct));
                row->insertWidget(at + 1, campoInForm(campo, pct));
            }
            continue;
        }
        switch (campo.tipo) {
        case Controllo::Flag: {
            auto* check = new QCheckBox(campo.caption, fra);
            check->setObjectName(campo.control);
            new cCheckBox(check, this);
            lastCheck = new QVBoxLayout;
            lastCheck->setSpacing(2);
            lastCheck->addWidget(check);
            checks->addLayout(lastCheck, checkCount / 2, checkCount % 2, Qt::AlignTop);
            ++checkCount;
            break;
        }
        case Controllo::OpzioniIndice: {
            auto* group = new QGroupBox(campo.caption, fra);
            auto* row = new QHBoxLayout(group);
            const QStringList captions = opzioni::captionsDistintaBase();
            for (int i = 0; i < captions.size(); ++i) {
                auto* option = new QRadioButton(captions.at(i), group);
                option->setObjectName(campo.control + QLatin1Char('_') + QString::number(i));
                new cOptionButton(option, this);
                row->addWidget(option);
            }
            row->addStretch(1);
            layout->addWidget(group);
            break;
        }
        default: form->addRow(campo.caption, campoInForm(campo, fra)); break;
        }
    }
    layout->addLayout(form);
    layout->addSpacing(8);
    layout->addLayout(checks);
    layout->addStretch(1);
    return fra;
}

QWidget* frmOpzioni::campoInForm(const Campo& campo, QWidget* parent)
{
    switch (campo.tipo) {
    case Controllo::Chiave: return campoChiave(campo, parent);
    case Controllo::TestoMultiriga: {
        auto* edit = new QPlainTextEdit(parent);
        edit->setObjectName(campo.control);
        edit->setTabChangesFocus(true);
        edit->setFixedHeight(edit->fontMetrics().lineSpacing() * 4 + 12);
        return edit;
    }
    case Controllo::ComboReport:
    case Controllo::ComboNumeratore: {
        auto* combo = new QComboBox(parent);
        combo->setObjectName(campo.control);
        combo->setMinimumWidth(260);
        combo->setMaximumWidth(360);
        new cComboBox(combo, this);
        return combo;
    }
    default: {
        auto* edit = new QLineEdit(parent);
        edit->setObjectName(campo.control);
        const int kind = campo.tipo == Controllo::Intero ? typedinput::Intero
            : campo.tipo == Controllo::Anno              ? typedinput::InteroNonFormattato
                                                         : typedinput::Testo;
        auto* box = new cTextBox(edit, kind, this);
        box->setCKeyRef(m_keys);
        // Options are kept in a memo column or in the machine settings: a
        // length here is the option's own rule (a year, a one-character
        // mark), not a limit of the database.
        if (campo.length > 0) {
            edit->setMaxLength(campo.length);
            edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QLatin1Char('W')) * (campo.length + 2) + 12);
        }
        return edit;
    }
    }
}

// The code, its browse button and the description of the row.
QWidget* frmOpzioni::campoChiave(const Campo& campo, QWidget* parent)
{
    auto* row = new QWidget(parent);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    auto* edit = new QLineEdit(row);
    edit->setObjectName(campo.control);
    const bool numero = QLatin1String(campo.lookup->codeColumn) == QLatin1String("NUMERO");
    auto* box = new cTextBox(edit, numero ? typedinput::InteroNonFormattato : typedinput::Testo, this);
    box->setCaseState(1);
    box->setCKeyRef(m_keys);
    // Eight characters of a code in the field's own font, at the least.
    edit->setFixedWidth(qMax(110, edit->fontMetrics().horizontalAdvance(QLatin1Char('X')) * 8 + 12));
    limitToColumn(edit, QString::fromLatin1(campo.lookup->table), QString::fromLatin1(campo.lookup->codeColumn));
    auto* button = new QToolButton(row);
    button->setObjectName(QStringLiteral("cmdSfoglia_") + QString::number(campo.sfoglia));
    button->setIcon(QIcon::fromTheme(QStringLiteral("edit-find")));
    button->setToolTip(QStringLiteral("Cerca [F3]"));
    button->setFocusPolicy(Qt::NoFocus);
    const int index = campo.sfoglia;
    connect(button, &QToolButton::clicked, this, [this, index] { cmdSfoglia_Click(index); });
    auto* descrizione = new QLabel(row);
    descrizione->setObjectName(campo.etichettaDescrizione());
    descrizione->setMinimumWidth(280);
    layout->addWidget(edit);
    layout->addWidget(button);
    layout->addSpacing(6);
    layout->addWidget(descrizione, 1);
    const Campo* chiave = &campo;
    auto* lookup = new cLookupField(
        edit, descrizione, [chiave](QString& c, QString& d, int& r) { return opzioni::valida(*chiave, c, d, r); },
        lookupSearch(*campo.lookup), this);
    lookup->setSearchTitle(titoloRicerca(campo));
    lookup->setButton(button);
    m_chiavi.append({&campo, lookup});
    return row;
}

QWidget* frmOpzioni::costruisciLogo()
{
    auto* box = new QWidget(this);
    auto* layout = new QVBoxLayout(box);
    auto* row = new QHBoxLayout;
    auto* cmdLogoStretch =
        new QPushButton(QIcon::fromTheme(QStringLiteral("document-open")), QStringLiteral("..."), box);
    cmdLogoStretch->setObjectName(QStringLiteral("cmdLogoStretch"));
    cmdLogoStretch->setAutoDefault(false);
    connect(cmdLogoStretch, &QPushButton::clicked, this, &frmOpzioni::cmdLogoStretch_Click);
    row->addWidget(cmdLogoStretch);
    row->addWidget(new QLabel(kTestoLogo, box), 1);
    m_pctImmagine = new QLabel(box);
    m_pctImmagine->setObjectName(QStringLiteral("pctImmagine"));
    m_pctImmagine->setFixedSize(kRiquadroLogo);
    m_pctImmagine->setFrameShape(QFrame::Box);
    m_pctImmagine->setAlignment(Qt::AlignCenter);
    m_pctImmagine->setStyleSheet(QStringLiteral("background: white"));
    layout->addLayout(row);
    layout->addWidget(m_pctImmagine);
    return box;
}

void frmOpzioni::aggiungiDipendenze()
{
    for (const opzioni::Dipendenza& d : opzioni::dipendenze()) {
        auto* check = control<QCheckBox>(d.check);
        QWidget* dipendente = control<QWidget>(d.dipendente);
        const bool mostra = d.mostra;
        auto apply = [dipendente, mostra](bool on) {
            if (mostra)
                dipendente->setVisible(on);
            else
                dipendente->setEnabled(on);
        };
        connect(check, &QCheckBox::toggled, dipendente, apply);
        apply(check->isChecked());
    }
}

// --- loading ----------------------------------------------------------------

void frmOpzioni::caricaOpzioni()
{
    initReport();
    fillComboBox(QStringLiteral("SELECT RID, DESCRIZIONE FROM Numeratori ORDER BY DESCRIZIONE"),
                 control<QComboBox>("cmbNumeratore"));
    const OptionGlobals& o = gOptions();
    for (const Campo& campo : opzioni::campi()) {
        const QString valore = optionText(o, campo.column);
        switch (campo.tipo) {
        case Controllo::Testo:
        case Controllo::Anno: control<QLineEdit>(campo.control)->setText(valore); break;
        case Controllo::Intero: control<QLineEdit>(campo.control)->setText(formattaIntero(valore.toLongLong())); break;
        case Controllo::Chiave: break; // below, with the look-ups
        case Controllo::Flag:
        case Controllo::Opzione:
            // An option button can only be switched on: the pair starts with neither.
            if (valore == QLatin1String("1"))
                control<QAbstractButton>(campo.control)->setChecked(true);
            break;
        case Controllo::OpzioniIndice:
            if (auto* option = findChild<QRadioButton*>(campo.control + QLatin1Char('_') + valore))
                option->setChecked(true);
            break;
        case Controllo::TestoMultiriga: control<QPlainTextEdit>(campo.control)->setPlainText(valore); break;
        case Controllo::ComboReport: {
            auto* combo = control<QComboBox>(campo.control);
            // A template no longer in the folder stays chosen until changed.
            if (!valore.isEmpty() && combo->findText(valore) < 0)
                combo->insertItem(0, valore);
            combo->setCurrentIndex(combo->findText(valore));
            break;
        }
        case Controllo::ComboNumeratore:
            setListindexByItemData(control<QComboBox>(campo.control), valore.toInt());
            break;
        }
    }
    for (CampoChiave& chiave : m_chiavi)
        chiave.lookup->setRid(optionText(o, chiave.campo->column).toInt());

    const QString logo = logoazienda::percorso(gSession().strReportPath);
    if (QFile::exists(logo))
        mostraLogo(QImage(logo));
}

void frmOpzioni::initReport()
{
    auto* combo = control<QComboBox>("cmbReport");
    combo->clear();
    combo->addItems(opzioni::fileReport(gSession().strReportPath));
}

// --- the fields -------------------------------------------------------------

void frmOpzioni::cmdSfoglia_Click(int index)
{
    for (const CampoChiave& chiave : std::as_const(m_chiavi))
        if (chiave.campo->sfoglia == index)
            chiave.lookup->browse();
}

void frmOpzioni::onFunctionKey(const QString& controlName, int keyCode, int)
{
    if (keyCode != vbKey::F3)
        return;
    if (const Campo* campo = opzioni::campo(controlName); campo && campo->tipo == Controllo::Chiave)
        cmdSfoglia_Click(campo->sfoglia);
}

void frmOpzioni::onTabChanged(int index)
{
    if (!isVisible())
        return;
    const QString primo = opzioni::primoCampo(opzioni::Frame(index));
    if (QWidget* field = primo.isEmpty() ? nullptr : findChild<QWidget*>(primo))
        field->setFocus();
}

// --- the logo ---------------------------------------------------------------

void frmOpzioni::cmdLogoStretch_Click()
{
    const QString file = dialogs::getOpenFileName(this, QStringLiteral("Logo azienda"), QDir::homePath(),
                                                  QStringLiteral("Immagini (*.bmp *.jpg *.jpeg *.png *.gif)"));
    if (!file.isEmpty())
        caricaImmagine(file);
}

void frmOpzioni::caricaImmagine(const QString& file)
{
    const QImage logo = logoazienda::scala(QImage(file));
    if (logo.isNull()) {
        msgBox(QStringLiteral("Impossibile leggere l'immagine ") + file, vb::Exclamation);
        return;
    }
    m_logoNuovo = logo;
    mostraLogo(logo);
}

void frmOpzioni::mostraLogo(const QImage& logo)
{
    m_pctImmagine->setPixmap(
        QPixmap::fromImage(logo.scaled(kRiquadroLogo - QSize(2, 2), Qt::KeepAspectRatio, Qt::SmoothTransformation)));
}

// --- saving -----------------------------------------------------------------

void frmOpzioni::copiaInGlobali()
{
    OptionGlobals& o = gOptions();
    for (const Campo& campo : opzioni::campi()) {
        QString valore;
        switch (campo.tipo) {
        case Controllo::Testo: valore = control<QLineEdit>(campo.control)->text(); break;
        case Controllo::Anno: valore = control<QLineEdit>(campo.control)->text().trimmed(); break;
        case Controllo::Intero:
            valore = QString::number(qint64(getValoreNumerico(control<QLineEdit>(campo.control)->text())));
            break;
        case Controllo::Chiave:
            for (const CampoChiave& chiave : m_chiavi)
                if (chiave.campo == &campo)
                    valore = QString::number(chiave.lookup->rid());
            break;
        case Controllo::Flag:
        case Controllo::Opzione:
            valore = control<QAbstractButton>(campo.control)->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
            break;
        case Controllo::OpzioniIndice: {
            valore = QStringLiteral("0");
            for (int i = 0;
                 auto* option = findChild<QRadioButton*>(campo.control + QLatin1Char('_') + QString::number(i)); ++i)
                if (option->isChecked())
                    valore = QString::number(i);
            break;
        }
        case Controllo::TestoMultiriga: valore = control<QPlainTextEdit>(campo.control)->toPlainText(); break;
        case Controllo::ComboReport: valore = control<QComboBox>(campo.control)->currentText(); break;
        case Controllo::ComboNumeratore: {
            auto* combo = control<QComboBox>(campo.control);
            valore = QString::number(combo->currentIndex() >= 0 ? combo->currentData().toInt() : 0);
            break;
        }
        }
        setOptionText(o, campo.column, valore);
    }
}

void frmOpzioni::cmdOk_Click()
{
    // A code typed and not yet left is looked up first, as leaving the field would.
    for (const CampoChiave& chiave : std::as_const(m_chiavi))
        chiave.lookup->validate();
    copiaInGlobali();
    saveOptionGlobals();
    if (!m_logoNuovo.isNull() && !logoazienda::salva(m_logoNuovo, gSession().strReportPath))
        msgBox(QStringLiteral("Impossibile salvare il logo ") + logoazienda::percorso(gSession().strReportPath),
               vb::Exclamation);
    msgBox(kSalvate, vb::Information);
    accept();
}
