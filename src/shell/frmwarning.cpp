#include "shell/frmwarning.h"

#include "common/msgbox.h"
#include "core/dialogservice.h"

#include <QApplication>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

#include <cstdlib>

namespace {
const QString kAvanzate = QStringLiteral("Avanzate >>");
const QString kRipristina = QStringLiteral("<< Ripristina");

QPlainTextEdit* readOnlyText(const QString& name, const QString& text, int lines, QWidget* parent)
{
    auto* edit = new QPlainTextEdit(text, parent);
    edit->setObjectName(name);
    edit->setReadOnly(true);
    edit->setLineWrapMode(QPlainTextEdit::WidgetWidth);
    edit->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    edit->setFixedHeight(edit->fontMetrics().lineSpacing() * lines + 12);
    return edit;
}
} // namespace

frmWarning::frmWarning(const ErrorReport& report, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(QStringLiteral("frmWarning"));
    setWindowTitle(applicationTitle() + QStringLiteral(" - Segnalazione errore"));
    setWindowFlag(Qt::WindowStaysOnTopHint);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);

    auto* icon = new QLabel(this);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxCritical).pixmap(40, 40));
    auto* heading = new QLabel(QStringLiteral("Si è verificato un errore durante l'operazione."), this);
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);

    m_lblNumero = new QLabel(QString::number(report.number), this);
    m_lblNumero->setObjectName(QStringLiteral("lblNumero"));
    m_txtDescrizione = readOnlyText(QStringLiteral("txtDescrizione"), report.description, 3, this);
    m_txtModulo = new QLineEdit(report.module + QLatin1Char('.') + report.procedure, this);
    m_txtModulo->setObjectName(QStringLiteral("txtModulo"));
    m_txtModulo->setReadOnly(true);
    m_lblOrigine = new QLabel(report.source, this);
    m_lblOrigine->setObjectName(QStringLiteral("lblOrigine"));
    m_lblOrigine->setTextInteractionFlags(Qt::TextSelectableByMouse);
    const QString information =
        report.information.trimmed().isEmpty() ? QStringLiteral("Nessuna Informazione.") : report.information;
    m_txtAvanzate = readOnlyText(QStringLiteral("txtAvanzate"), information, 8, this);

    auto* shortForm = new QFormLayout;
    shortForm->addRow(QStringLiteral("Errore n.:"), m_lblNumero);
    shortForm->addRow(QStringLiteral("Descrizione:"), m_txtDescrizione);

    m_longPart = new QWidget(this);
    auto* longForm = new QFormLayout(m_longPart);
    longForm->setContentsMargins(0, 0, 0, 0);
    longForm->addRow(QStringLiteral("Modulo:"), m_txtModulo);
    longForm->addRow(QStringLiteral("Origine:"), m_lblOrigine);
    longForm->addRow(QStringLiteral("Informazioni:"), m_txtAvanzate);
    m_longPart->setVisible(false);

    m_cmdAvanzate = new QPushButton(kAvanzate, this);
    m_cmdAvanzate->setObjectName(QStringLiteral("cmdAvanzate"));
    m_cmdAvanzate->setAutoDefault(false);
    auto* cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    cmdOK->setDefault(true);
    auto* cmdAnnulla = new QPushButton(QStringLiteral("Esci da Orvantis"), this);
    cmdAnnulla->setObjectName(QStringLiteral("cmdAnnulla"));
    cmdAnnulla->setAutoDefault(false);

    connect(m_cmdAvanzate, &QPushButton::clicked, this, &frmWarning::toggleAvanzate);
    connect(cmdOK, &QPushButton::clicked, this, [this] { done(1); });
    connect(cmdAnnulla, &QPushButton::clicked, this, [this] { done(0); });

    auto* top = new QHBoxLayout;
    top->addWidget(icon, 0, Qt::AlignTop);
    auto* texts = new QVBoxLayout;
    texts->addWidget(heading);
    texts->addLayout(shortForm);
    top->addLayout(texts, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_cmdAvanzate);
    buttons->addStretch(1);
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdAnnulla);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(m_longPart);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setMinimumWidth(520);
    m_txtDescrizione->setMinimumWidth(420);
}

bool frmWarning::isLong() const { return !m_longPart->isHidden(); }

void frmWarning::toggleAvanzate()
{
    const bool toLong = !isLong();
    m_longPart->setVisible(toLong);
    m_cmdAvanzate->setText(toLong ? kRipristina : kAvanzate);
}

void frmWarning::reject() { done(1); }

void frmWarning::install()
{
    gError().setHandler([](const ErrorReport& report) {
        while (QApplication::overrideCursor())
            QApplication::restoreOverrideCursor();
        frmWarning dialog(report, dialogs::ownerWindow());
        return dialogs::exec(dialog) == 0 ? 0 : 1;
    });
    gError().setLeaveHook([] {
        // The open transaction, if any, is left to the back end, which undoes it.
        std::_Exit(1);
    });
}
