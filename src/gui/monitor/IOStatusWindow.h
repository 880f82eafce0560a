#pragma once

#include "core/monitor/IoStatus.h"
#include "core/shared/Language.h"
#include "gui/shared/ChildWindow.h"

#include <array>
#include <optional>

class QFrame;
class QGroupBox;
class QLabel;

namespace velora {

struct ParamTables;

// The I/O status window: the driver's five inputs and four outputs, each with its name, a lamp
// that lights while the contact is closed, and ": CLOSE" or ": OPEN".
class IOStatusWindow : public ChildWindow {
    Q_OBJECT
public:
    // The lamp of a closed contact and of an open one.
    static constexpr QRgb ClosedLamp = 0x00E000;
    static constexpr QRgb OpenLamp = 0x505050;

    // The parameter tables must outlive the window; the input names follow them.
    explicit IOStatusWindow(const ParamTables& params, QWidget* parent = nullptr);
    Q_DISABLE_COPY_MOVE(IOStatusWindow)

    void LanguageSelect(Language languageId) override;

    // The I/O word of a monitor reply: outputs in bits 0-3, inputs in bits 8-12.
    void ShowIoState(quint16 word);
    // The input names for the command mode of the parameters last read.
    void UpdateInputNames();

private:
    QGroupBox* buildFrame(int index, int count, QFrame** lamps, QLabel** names, QLabel** states);
    void showRow(QFrame* lamp, QLabel* state, bool closed);

    const ParamTables& params_;
    std::array<QGroupBox*, 2> Frame{};
    std::array<QFrame*, iostatus::InputCount> ShpInLamp{};
    std::array<QLabel*, iostatus::InputCount> LblInName{};
    std::array<QLabel*, iostatus::InputCount> LblInState{};
    std::array<QFrame*, iostatus::OutputCount> ShpOutLamp{};
    std::array<QLabel*, iostatus::OutputCount> LblOutName{};
    std::array<QLabel*, iostatus::OutputCount> LblOutState{};
    std::optional<quint16> shownWord_;
};

}  // namespace velora
