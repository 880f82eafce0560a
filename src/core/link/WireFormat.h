#pragma once

#include <QByteArray>
#include <QChar>
#include <QString>
#include <QtGlobal>

namespace velora {

// The text frame between PC and drive: STX, axis character, two-letter code, data, EOT.
namespace wire {

inline constexpr char FrameStart = 0x02;
inline constexpr char FrameEndEtx = 0x03;
inline constexpr char FrameEnd = 0x04;

// The longest command text (axis, code and data, without the frame bytes).
inline constexpr int MaxCommandLength = 30;
// Axis 15 ("F") addresses every drive on the line; no drive answers it.
inline constexpr int AllAxes = 15;

// The axis number 0..15 as one upper-case hex digit.
[[nodiscard]] QChar axisCharacter(int axis);

// STX + text + EOT, one byte per character.
[[nodiscard]] QByteArray buildFrame(const QString& text);

// Why a command text cannot be framed, or Ok.
enum class TextCheck { Ok, TooLong, BadCharacter };
[[nodiscard]] TextCheck checkCommandText(const QString& text);

// Characters 2 and 3 of a command or reply text (positions counted from 1).
[[nodiscard]] QString codeOf(const QString& text);

// A code that sorts strictly between "a" and "z" is a polling code; its frames are echoed in
// the console only while the hidden echo switch is on.
[[nodiscard]] bool isPollingCode(const QString& code);

// Addressed to every drive: axis 15 configured, or the text starts with "f"/"F".
[[nodiscard]] bool isBroadcast(const QString& text, int axisNumber);

// The reply comes from the axis the command addressed, with the command's code or as an error
// reply ("ER").
[[nodiscard]] bool answers(const QString& reply, const QString& command);

}  // namespace wire

// Reads a reply field: 1-4 digits as a signed 16-bit number, 5-8 digits as a signed 32-bit
// number unless the upper four are zero (then unsigned 16-bit), 9 or more digits give 0.
// Reading stops at the first character that is not a hex digit.
[[nodiscard]] qint32 HexToLong(const QString& text);
// Reads the last eight hex digits of a field; up to four digits are unsigned.
[[nodiscard]] qint32 HexToLong32(const QString& text);

// Upper-case hex without leading zeros; negative values as 4-digit (16-bit) or 8-digit (32-bit)
// two's complement.
[[nodiscard]] QString hex16(qint32 value);
[[nodiscard]] QString hex32(qint32 value);

}  // namespace velora
