#pragma once

#include "core/params/ParamEditOutcome.h"
#include "core/shared/Language.h"
#include "core/shared/NextFieldIndex.h"

#include <QString>
#include <Qt>

namespace velora {

struct Global;
struct ParamTables;

// The editing rules of the parameter window (servo parameters 00-59, box n is parameter n):
// the check of a box when it loses the focus, the preset key of box 10, the cautions of
// parameters 0, 1 and 43, the focus movement and the enabling of the buttons. It changes the
// parameter table and tells the window what to show; it never touches a widget. Box numbers
// outside 0..59 throw std::out_of_range.
class PrmEdit {
public:
    static constexpr int BoxCount = 60;
    static constexpr int BoxesPerTab = 10;
    // Only the last characters of a longer text are checked.
    static constexpr int MaxTypedLength = 9;

    explicit PrmEdit(Global& global);

    // The text box n shows for its table value.
    [[nodiscard]] QString boxText(int n) const;

    // A key pressed in box n (TxtPrm_KeyDown): Enter in box 10 marks parameter 10 and applies
    // the tuning preset its stored value selects to parameters 11..16, unmarked.
    [[nodiscard]] KeyOutcome keyDown(int n, FieldKey key);

    // Box n lost the focus with `text` (TxtPrm_LostFocus): a text that is not numeric gives
    // the stored value back; a number is rounded and clamped to the range, stored, and marked
    // when it differs. Then the coupled changes and cautions of parameters 0, 1, 10, 43, 45.
    [[nodiscard]] EditOutcome leave(int n, const QString& text);

    // The answer to the caution of the last outcome: true for OK or Yes, false for Cancel or
    // No. Returns what the answer changed, which may hold the next caution.
    [[nodiscard]] EditOutcome answer(bool yes);

    // Enabling by EnableControls(enable): the boxes and Read File follow `enable`, the two
    // buttons that talk to the drive follow `send` (the window's sending rule); both write
    // buttons only while the table holds values read from the drive or a file.
    struct Controls {
        bool boxes = false;
        bool readFile = false;
        bool readServo = false;
        bool writeFile = false;
        bool writeServo = false;
    };
    [[nodiscard]] static Controls controls(bool enable, bool send, bool paramsLoaded);

    // The system parameter window opens only by releasing the middle button over Write File
    // with Ctrl and Alt held, and Shift not.
    [[nodiscard]] static bool opensSystemWindow(Qt::MouseButton button,
                                                Qt::KeyboardModifiers modifiers);

private:
    [[nodiscard]] qint32& value(int n);
    [[nodiscard]] Language lang() const;
    void applyPreset(EditOutcome& out);
    void couple(EditOutcome& out);
    void connect45(EditOutcome& out);
    void decline45();
    void cautionAxisNumber(EditOutcome& out);
    void cautionBaudRate(EditOutcome& out);

    Global& global_;
    ParamTables& tables_;
    // The caution last handed out, waiting for answer().
    CautionKind asked_ = CautionKind::None;
};

}  // namespace velora
