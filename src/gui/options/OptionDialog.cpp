#include "gui/options/OptionDialog.h"

#include "core/link/LinkEngine.h"
#include "core/shared/Global.h"
#include "core/shared/NumericText.h"
#include "core/shared/TextCatalogue.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace velora {

namespace {

// The dialog's two sizes, from twips at 15 per pixel.
constexpr QSize kFullSize(4260 / 15, 6585 / 15);
constexpr QSize kCompactSize(3405 / 15, 4365 / 15);

template <typename W>
W* named(W* widget, const QString& name) {
    widget->setObjectName(name);
    return widget;
}

}  // namespace

OptionDialog::OptionDialog(Global& global, LinkEngine& engine, std::function<bool()> fullSize,
                           QWidget* parent)
    : QDialog(parent), global_(global), engine_(engine), fullSize_(std::move(fullSize)) {
    setObjectName(QStringLiteral("OptionDialog"));
    setWindowModality(Qt::ApplicationModal);
    buildLayout();
    LanguageSelect(global_.Link.LanguageId);
}

OptionDialog::~OptionDialog() {
    // Leaving the box while the dialog goes would run its check on a dialog that is no longer one.
    TxtRetryTime->disconnect(this);
}

void OptionDialog::buildLayout() {
    auto* column = new QVBoxLayout(this);

    auto* retryRow = new QHBoxLayout;
    Label1 = named(new QLabel(this), QStringLiteral("Label1"));
    TxtRetryTime = named(new QLineEdit(this), QStringLiteral("TxtRetryTime"));
    TxtRetryTime->setMaximumWidth(80);
    Label1->setBuddy(TxtRetryTime);
    retryRow->addWidget(Label1);
    retryRow->addWidget(TxtRetryTime);
    column->addLayout(retryRow);

    ChkRtmon = named(new QCheckBox(this), QStringLiteral("ChkRtmon"));
    ChkAxisCtn = named(new QCheckBox(this), QStringLiteral("ChkAxisCtn"));
    column->addWidget(ChkRtmon);
    column->addWidget(ChkAxisCtn);

    Frame2 = named(new QGroupBox(this), QStringLiteral("Frame2"));
    auto* connectBox = new QVBoxLayout(Frame2);
    Label2 = named(new QLabel(Frame2), QStringLiteral("Label2"));
    CmbConnectSel = named(new QComboBox(Frame2), QStringLiteral("CmbConnectSel"));
    Label2->setBuddy(CmbConnectSel);
    ChkPrmCngCtn = named(new QCheckBox(Frame2), QStringLiteral("ChkPrmCngCtn"));
    connectBox->addWidget(Label2);
    connectBox->addWidget(CmbConnectSel);
    connectBox->addWidget(ChkPrmCngCtn);
    column->addWidget(Frame2);

    auto* buttons = new QHBoxLayout;
    for (int i = 0; i < 2; ++i) {
        auto* b = named(new QPushButton(this), QStringLiteral("CmdOkCancel(%1)").arg(i));
        connect(b, &QPushButton::clicked, this, [this, i] { CmdOkCancel_Click(i); });
        buttons->addWidget(b);
        CmdOkCancel[static_cast<std::size_t>(i)] = b;
    }
    CmdOkCancel[0]->setDefault(true);
    column->addLayout(buttons);

    Frame1 = named(new QGroupBox(this), QStringLiteral("Frame1"));
    auto* kinds = new QGridLayout(Frame1);
    for (int k = 0; k < 3; ++k) {
        const auto i = static_cast<std::size_t>(k);
        LblDataKind[i] = named(new QLabel(Frame1), QStringLiteral("LblDataKind(%1)").arg(k));
        CmbWriteSel[i] = named(new QComboBox(Frame1), QStringLiteral("CmbWriteSel(%1)").arg(k));
        LblDataKind[i]->setBuddy(CmbWriteSel[i]);
        kinds->addWidget(LblDataKind[i], k, 0);
        kinds->addWidget(CmbWriteSel[i], k, 1);
    }
    column->addWidget(Frame1);
    column->addStretch(1);

    connect(TxtRetryTime, &QLineEdit::editingFinished, this, &OptionDialog::TxtRetryTime_LostFocus);
}

void OptionDialog::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionOption));
    Label1->setText(TextCatalogue::text(languageId, Text::OptionsRetryTimeMs));
    ChkRtmon->setText(TextCatalogue::text(languageId, Text::OptionsRealTimeMonitor));
    ChkAxisCtn->setText(TextCatalogue::text(languageId, Text::OptionsPrm0AxisNoChangeCaution));
    Frame2->setTitle(TextCatalogue::text(languageId, Text::OptionsParameter145Connect));
    Label2->setText(TextCatalogue::text(languageId, Text::OptionsWhenParameter1Changed));
    CmbConnectSel->clear();
    CmbConnectSel->addItems({TextCatalogue::text(languageId, Text::OptionsSelectEverytime),
                             TextCatalogue::text(languageId, Text::OptionsConnect),
                             TextCatalogue::text(languageId, Text::OptionsNotConnect)});
    ChkPrmCngCtn->setText(TextCatalogue::text(languageId, Text::OptionsConnectCautionDialog));
    CmdOkCancel[0]->setText(TextCatalogue::text(languageId, Text::OptionsOK));
    CmdOkCancel[1]->setText(TextCatalogue::text(languageId, Text::OptionsCancel));
    Frame1->setTitle(TextCatalogue::text(languageId, Text::OptionsNonVolatileMemoryWrite));
    LblDataKind[0]->setText(TextCatalogue::text(languageId, Text::OptionsParameter));
    LblDataKind[1]->setText(TextCatalogue::text(languageId, Text::OptionsPointTable));
    LblDataKind[2]->setText(TextCatalogue::text(languageId, Text::OptionsVelocityATCTorque));
    for (QComboBox* choice : CmbWriteSel) {
        choice->clear();
        choice->addItems({TextCatalogue::text(languageId, Text::OptionsRamOnly),
                          TextCatalogue::text(languageId, Text::OptionsMemoryWrite)});
    }
}

void OptionDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous())
        activate();
}

void OptionDialog::activate() {
    LinkState& s = global_.Link;
    LanguageSelect(s.LanguageId);
    ChkRtmon->setChecked(s.RealTimeMonitor);
    ChkAxisCtn->setChecked(global_.AxisChangeCaution);
    ChkPrmCngCtn->setChecked(global_.ConnectCautionDialog);
    for (std::size_t k = 0; k < CmbWriteSel.size(); ++k) {
        if (!s.NonVolatileWrite[k] && s.DriverVersion < RamOnlyVersion)
            s.NonVolatileWrite[k] = true;
        CmbWriteSel[k]->setCurrentIndex(s.NonVolatileWrite[k] ? 1 : 0);
    }
    CmbConnectSel->setCurrentIndex(global_.Prm1To45Connect);
    TxtRetryTime->setText(QString::number(engine_.pollIntervalMs()));

    // The compact size leaves the non-volatile memory choices out of sight; hiding them also
    // keeps them out of the keyboard's reach.
    const bool full = fullSize_ && fullSize_();
    Frame1->setVisible(full);
    layout()->activate();
    setFixedSize((full ? kFullSize : kCompactSize).expandedTo(minimumSizeHint()));
}

void OptionDialog::TxtRetryTime_LostFocus() {
    const std::optional<qint32> ms = toWholeNumber(TxtRetryTime->text());
    if (!ms)
        TxtRetryTime->setText(QString::number(engine_.pollIntervalMs()));
    else if (*ms < MinRetryTime)
        TxtRetryTime->setText(QString::number(MinRetryTime));
    else if (*ms > MaxRetryTime)
        TxtRetryTime->setText(QString::number(MaxRetryTime));
}

void OptionDialog::CmdOkCancel_Click(int index) {
    if (index != 0) {
        reject();
        return;
    }
    TxtRetryTime_LostFocus();
    LinkState& s = global_.Link;
    s.RealTimeMonitor = ChkRtmon->isChecked();
    if (!s.RealTimeMonitor) {
        // Without the monitor no reply would come to unlock the windows.
        engine_.setMonitorRunning(false);
        engine_.EnableControls(true);
    }
    global_.AxisChangeCaution = ChkAxisCtn->isChecked();
    global_.ConnectCautionDialog = ChkPrmCngCtn->isChecked();
    for (std::size_t k = 0; k < CmbWriteSel.size(); ++k) {
        s.NonVolatileWrite[k] =
            s.DriverVersion < RamOnlyVersion || CmbWriteSel[k]->currentIndex() != 0;
    }
    global_.Prm1To45Connect = CmbConnectSel->currentIndex();

    const int period = toWholeNumber(TxtRetryTime->text()).value_or(engine_.pollIntervalMs());
    engine_.pauseTimer1();
    engine_.setPollIntervalMs(period);
    global_.RetryTime = period;
    engine_.resumeTimer1();
    accept();
}

}  // namespace velora
