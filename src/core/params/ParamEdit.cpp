#include "core/params/ParamEdit.h"

#include "core/params/ParamCatalogue.h"
#include "core/shared/Global.h"
#include "core/shared/NumericText.h"
#include "core/shared/TextCatalogue.h"

#include <stdexcept>
#include <utility>

namespace velora {

namespace {

const QString CrLf = QStringLiteral("\r\n");

// Parameter 43 picks the drive's baud rate by its remainder modulo 8; 2 is 38400 bit/s, the
// fastest rate the USB adapter can keep up with.
constexpr qint32 RateSteps = 8;
constexpr qint32 Rate38400 = 2;
constexpr qint32 Rate57600 = 3;
constexpr qint32 Rate115200 = 4;

// The settings' choices for coupling parameter 45 to parameter 1.
constexpr int AlwaysConnect = 1;
constexpr int NeverConnect = 2;

}  // namespace

PrmEdit::PrmEdit(Global& global) : global_(global), tables_(global.Params) {
}

qint32& PrmEdit::value(int n) {
    return tables_.ParamValue.at(static_cast<std::size_t>(n));
}

Language PrmEdit::lang() const {
    return global_.Link.LanguageId;
}

QString PrmEdit::boxText(int n) const {
    if (n < 0 || n >= BoxCount)
        throw std::out_of_range("parameter box");
    return QString::number(tables_.ParamValue[static_cast<std::size_t>(n)]);
}

KeyOutcome PrmEdit::keyDown(int n, FieldKey key) {
    if (n < 0 || n >= BoxCount)
        throw std::out_of_range("parameter box");
    KeyOutcome out;
    if (key == FieldKey::Enter && n == ParamCatalogue::PresetSelect) {
        // Enter asks for the preset again even when the value stays: always marked.
        tables_.ParamChanged[ParamCatalogue::PresetSelect] = true;
        out.edit.colour = BoxColour::Edited;
        applyPreset(out.edit);
    }
    out.focus = NextFieldIndex(n, key, BoxCount);
    out.tab = out.focus / BoxesPerTab;
    return out;
}

EditOutcome PrmEdit::leave(int n, const QString& typed) {
    if (n < 0 || n >= BoxCount)
        throw std::out_of_range("parameter box");
    asked_ = CautionKind::None;
    EditOutcome out;
    out.refreshed = {n};
    const QString checked = typed.size() > MaxTypedLength ? typed.right(MaxTypedLength) : typed;
    if (const std::optional<qint32> number = toWholeNumber(checked)) {
        const qint32 old = value(n);
        value(n) = tables_.clamped(n, *number);
        if (value(n) != old) {
            out.changed = true;
            tables_.ParamChanged[static_cast<std::size_t>(n)] = true;
            out.colour = BoxColour::Edited;
            switch (n) {
                case ParamCatalogue::AxisNo:
                    cautionAxisNumber(out);
                    break;
                case ParamCatalogue::CommandMode:
                    couple(out);
                    break;
                case ParamCatalogue::PresetSelect:
                    applyPreset(out);
                    break;
                case ParamCatalogue::CommandEnable:
                    // Edited on purpose: writing it now asks for a restart like any other.
                    tables_.Prm45Undo = false;
                    break;
                default:
                    break;
            }
        }
    }
    // Asked on every leave, changed or not: the value may have come from the drive or a file.
    if (n == ParamCatalogue::ComFormat && global_.Link.UsbMode)
        cautionBaudRate(out);
    return out;
}

EditOutcome PrmEdit::answer(bool yes) {
    EditOutcome out;
    switch (std::exchange(asked_, CautionKind::None)) {
        case CautionKind::ConnectQuestion:
            if (yes) {
                connect45(out);
            } else {
                decline45();
            }
            break;
        case CautionKind::BaudRate:
            if (!yes) {
                qint32& rate = value(ParamCatalogue::ComFormat);
                rate = rate - rate % RateSteps + Rate38400;
                out.refreshed = {ParamCatalogue::ComFormat};
            }
            break;
        case CautionKind::None:
        case CautionKind::AxisNumber:
        case CautionKind::ConnectNotice:
            break;
    }
    return out;
}

void PrmEdit::applyPreset(EditOutcome& out) {
    const qint32 column = value(ParamCatalogue::PresetSelect);
    // A value the drive sent from outside the range selects no preset.
    if (column < 0 || column >= ParamTables::PresetColumns)
        return;
    for (int row = 0; row < ParamTables::PresetRows; ++row) {
        const int n = ParamCatalogue::FirstPresetParam + row;
        value(n) =
            tables_.TuningPreset[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
        out.refreshed.append(n);
    }
}

void PrmEdit::cautionAxisNumber(EditOutcome& out) {
    if (!global_.AxisChangeCaution)
        return;
    out.pausePolling = true;
    out.caution = {CautionKind::AxisNumber, CautionButtons::Ok,
                   TextCatalogue::text(lang(), Text::MsgChangeParameterApplyed) + CrLf +
                       TextCatalogue::text(lang(), Text::MsgAfterRebootingOrvixServo),
                   TextCatalogue::text(lang(), Text::MsgAxisNumberChange)};
    asked_ = out.caution.kind;
}

void PrmEdit::couple(EditOutcome& out) {
    out.pausePolling = true;
    switch (global_.Prm1To45Connect) {
        case AlwaysConnect:
            connect45(out);
            break;
        case NeverConnect:
            decline45();
            break;
        default:
            out.caution = {CautionKind::ConnectQuestion, CautionButtons::OkCancel,
                           TextCatalogue::text(lang(), Text::MsgChangePrm45With),
                           TextCatalogue::text(lang(), Text::MsgParameter145Connect)};
            asked_ = out.caution.kind;
            break;
    }
}

void PrmEdit::connect45(EditOutcome& out) {
    const std::optional<qint32> belonging =
        ParamCatalogue::commandEnableFor(value(ParamCatalogue::CommandMode));
    if (!belonging)
        return;
    // The drive couples them itself, so the host copy follows without being marked.
    value(ParamCatalogue::CommandEnable) = *belonging;
    out.refreshed.append(ParamCatalogue::CommandEnable);
    if (global_.ConnectCautionDialog) {
        out.caution = {CautionKind::ConnectNotice, CautionButtons::Ok,
                       TextCatalogue::text(lang(), Text::MsgParameter45ChangedBelow) + CrLf +
                           QString::number(*belonging),
                       TextCatalogue::text(lang(), Text::MsgParameter145Connect)};
        asked_ = out.caution.kind;
    }
}

void PrmEdit::decline45() {
    // Writing the unchanged 45 after 01 undoes the drive's own coupling.
    tables_.ParamChanged[ParamCatalogue::CommandEnable] = true;
    tables_.Prm45Undo = true;
}

void PrmEdit::cautionBaudRate(EditOutcome& out) {
    QString firstLine;
    switch (value(ParamCatalogue::ComFormat) % RateSteps) {
        case Rate57600:
            firstLine = TextCatalogue::text(lang(), Text::MsgBaudRate57600bpsSelected);
            break;
        case Rate115200:
            firstLine = TextCatalogue::text(lang(), Text::MsgBaudRate115200bpsSelected);
            break;
        default:
            return;
    }
    out.caution = {CautionKind::BaudRate, CautionButtons::YesNo,
                   firstLine + CrLf + TextCatalogue::text(lang(), Text::MsgBaudRateUnsupported) +
                       CrLf + TextCatalogue::text(lang(), Text::MsgYesIgnore) + CrLf +
                       TextCatalogue::text(lang(), Text::MsgNoSet38400bps),
                   TextCatalogue::text(lang(), Text::MsgBaudRateCaution)};
    asked_ = out.caution.kind;
}

PrmEdit::Controls PrmEdit::controls(bool enable, bool send, bool paramsLoaded) {
    return {enable, enable, send, enable && paramsLoaded, send && paramsLoaded};
}

bool PrmEdit::opensSystemWindow(Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
    const Qt::KeyboardModifiers held =
        modifiers & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    return button == Qt::MiddleButton && held == (Qt::ControlModifier | Qt::AltModifier);
}

}  // namespace velora
