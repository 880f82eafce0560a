#pragma once

#include <QString>
#include <QtGlobal>

#include <array>

namespace velora {

// The driver's five inputs and four outputs: their names and what the I/O word of a monitor reply
// says about them. No state: the I/O status window keeps what it shows.
namespace iostatus {

inline constexpr int InputCount = 5;
inline constexpr int OutputCount = 4;
// Bits of the I/O word: output i at bit i, input i at bit InputBitOffset + i.
inline constexpr int InputBitOffset = 8;

// Parameters that decide the input names.
inline constexpr int CommandModeParam = 1;
inline constexpr int VelocityControlDriveParam = 38;
inline constexpr int InputPinFunctionParam = 46;

using InputNames = std::array<QString, InputCount>;
using OutputNames = std::array<QString, OutputCount>;

// The fixed output names.
[[nodiscard]] OutputNames outputNames();
// The names of command mode 0, shown until parameters have been read.
[[nodiscard]] InputNames defaultInputNames();

// The input names for the given values of parameters 01 (command mode), 38 (velocity control
// drive) and 46 (input pin function bits); a command mode without names keeps current.
[[nodiscard]] InputNames UpdateInputNames(const InputNames& current, qint32 commandMode,
                                          qint32 velocityControlDrive, qint32 inputPinFunction);

// Whether input index 0..4 / output index 0..3 is closed in the I/O word.
[[nodiscard]] bool inputClosed(quint16 word, int index);
[[nodiscard]] bool outputClosed(quint16 word, int index);
// ": CLOSE" or ": OPEN".
[[nodiscard]] QString stateCaption(bool closed);

}  // namespace iostatus

}  // namespace velora
