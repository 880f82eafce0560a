#include "gui/monitor/IOStatusWindow.h"

#include "core/shared/ParamTables.h"
#include "core/shared/TextCatalogue.h"
#include "gui/shared/SpokenValue.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QVBoxLayout>

namespace velora {

namespace {

constexpr int LampSize = 14;

QLabel* makeLabel(QWidget* parent, const QString& name) {
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    return label;
}

}  // namespace

IOStatusWindow::IOStatusWindow(const ParamTables& params, QWidget* parent)
    : ChildWindow(QStringLiteral("IOStatus"), parent), params_(params) {
    auto* column = new QVBoxLayout(this);
    column->addWidget(
        buildFrame(0, iostatus::InputCount, ShpInLamp.data(), LblInName.data(), LblInState.data()));
    column->addWidget(buildFrame(1, iostatus::OutputCount, ShpOutLamp.data(), LblOutName.data(),
                                 LblOutState.data()));
    column->addStretch(1);

    const iostatus::InputNames inputs = iostatus::defaultInputNames();
    const iostatus::OutputNames outputs = iostatus::outputNames();
    for (int i = 0; i < iostatus::OutputCount; ++i) {
        const auto at = static_cast<std::size_t>(i);
        LblOutName[at]->setText(outputs[at]);
        spoken::setName(LblOutState[at], outputs[at]);
    }
    for (int i = 0; i < iostatus::InputCount; ++i) {
        const auto at = static_cast<std::size_t>(i);
        LblInName[at]->setText(inputs[at]);
        spoken::setName(LblInState[at], inputs[at]);
    }
    ShowIoState(0);
}

QGroupBox* IOStatusWindow::buildFrame(int index, int count, QFrame** lamps, QLabel** names,
                                      QLabel** states) {
    const bool inputs = index == 0;
    auto* frame = new QGroupBox(this);
    frame->setObjectName(QStringLiteral("Frame%1").arg(index + 1));
    auto* grid = new QGridLayout(frame);
    for (int i = 0; i < count; ++i) {
        lamps[i] = new QFrame(frame);
        lamps[i]->setObjectName(
            (inputs ? QStringLiteral("ShpInLamp(%1)") : QStringLiteral("ShpOutLamp(%1)")).arg(i));
        lamps[i]->setFixedSize(LampSize, LampSize);
        names[i] = makeLabel(
            frame,
            (inputs ? QStringLiteral("LblInName(%1)") : QStringLiteral("LblOutName(%1)")).arg(i));
        states[i] = makeLabel(
            frame,
            (inputs ? QStringLiteral("LblInState(%1)") : QStringLiteral("LblOutState(%1)")).arg(i));
        grid->addWidget(lamps[i], i, 0);
        grid->addWidget(names[i], i, 1);
        grid->addWidget(states[i], i, 2);
    }
    grid->setColumnStretch(1, 1);
    Frame[static_cast<std::size_t>(index)] = frame;
    return frame;
}

void IOStatusWindow::LanguageSelect(Language languageId) {
    setWindowTitle(TextCatalogue::text(languageId, Text::CaptionIOStatus));
    Frame[0]->setTitle(TextCatalogue::text(languageId, Text::IoInput));
    Frame[1]->setTitle(TextCatalogue::text(languageId, Text::IoOutput));
}

void IOStatusWindow::showRow(QFrame* lamp, QLabel* state, bool closed) {
    spoken::setValue(state, iostatus::stateCaption(closed));
    lamp->setStyleSheet(QStringLiteral("background-color: %1; border: 1px solid black;"
                                       " border-radius: %2px;")
                            .arg(QColor(closed ? ClosedLamp : OpenLamp).name())
                            .arg(LampSize / 2));
}

void IOStatusWindow::ShowIoState(quint16 word) {
    // Replies come far more often than contacts change; restyling the lamps costs.
    if (shownWord_ == word)
        return;
    shownWord_ = word;
    for (int i = 0; i < iostatus::OutputCount; ++i) {
        const auto at = static_cast<std::size_t>(i);
        showRow(ShpOutLamp[at], LblOutState[at], iostatus::outputClosed(word, i));
    }
    for (int i = 0; i < iostatus::InputCount; ++i) {
        const auto at = static_cast<std::size_t>(i);
        showRow(ShpInLamp[at], LblInState[at], iostatus::inputClosed(word, i));
    }
}

void IOStatusWindow::UpdateInputNames() {
    iostatus::InputNames current;
    for (int i = 0; i < iostatus::InputCount; ++i)
        current[static_cast<std::size_t>(i)] = LblInName[static_cast<std::size_t>(i)]->text();
    const iostatus::InputNames names =
        iostatus::UpdateInputNames(current, params_.ParamValue[iostatus::CommandModeParam],
                                   params_.ParamValue[iostatus::VelocityControlDriveParam],
                                   params_.ParamValue[iostatus::InputPinFunctionParam]);
    for (int i = 0; i < iostatus::InputCount; ++i) {
        const auto at = static_cast<std::size_t>(i);
        LblInName[at]->setText(names[at]);
        // The state is read out under the contact's name.
        spoken::setName(LblInState[at], names[at]);
    }
}

}  // namespace velora
