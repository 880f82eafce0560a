#include "core/monitor/IoStatus.h"

namespace velora::iostatus {

OutputNames outputNames() {
    return {QStringLiteral("OUT1 (FIN/TSTBL)"), QStringLiteral("OUT2 (ALM)"),
            QStringLiteral("OUT3 (ZPLS)"), QStringLiteral("BK")};
}

InputNames defaultInputNames() {
    return UpdateInputNames({}, 0, 0, 0);
}

InputNames UpdateInputNames(const InputNames& current, qint32 commandMode,
                            qint32 velocityControlDrive, qint32 inputPinFunction) {
    // The names carry two blanks between the input number and the signal.
    const auto name = [](int input, const char* signal) {
        return QStringLiteral("IN%1  (%2)").arg(input).arg(QLatin1String(signal));
    };
    switch (commandMode) {
        case 0:
            return {name(1, "RSEL"), name(2, "TSEL1"), name(3, "TSEL2"), name(4, "TSEL3"),
                    name(5, "ARST")};
        case 1:
            return {name(1, "PJOG"), name(2, "NJOG"), name(3, "POT"), name(4, "NOT"),
                    name(5, "DEC")};
        case 2: {
            if (velocityControlDrive != 0) {
                return {name(1, "VSTR"), name(2, "VSEL0"), name(3, "VSEL1"), name(4, "VSEL2"),
                        name(5, "DIR")};
            }
            const bool jogInputs = (inputPinFunction & 0b10) != 0;
            const bool pointSelectOnIn5 = (inputPinFunction & 0b01) != 0;
            return {name(1, "PSEL0"), name(2, "STR"), name(3, jogInputs ? "PJOG" : "POT"),
                    name(4, jogInputs ? "NJOG" : "NOT"),
                    name(5, pointSelectOnIn5 ? "PSEL0" : "ARST")};
        }
        default:
            return current;
    }
}

bool inputClosed(quint16 word, int index) {
    return index >= 0 && index < InputCount && ((word >> (InputBitOffset + index)) & 1U) != 0;
}

bool outputClosed(quint16 word, int index) {
    return index >= 0 && index < OutputCount && ((word >> index) & 1U) != 0;
}

QString stateCaption(bool closed) {
    return closed ? QStringLiteral(": CLOSE") : QStringLiteral(": OPEN");
}

}  // namespace velora::iostatus
