#pragma once

#include "core/params/ParamEditOutcome.h"
#include "core/shared/NextFieldIndex.h"

#include <QString>

#include <cstddef>

namespace velora {

struct ParamTables;

// The editing rules of the system parameter window: box k is parameter 60 + k. A value
// outside the range is refused rather than clamped, and the boxes are never coloured. Box
// numbers outside 0..59 throw std::out_of_range.
class SprmEdit {
public:
    static constexpr int BoxCount = 60;
    static constexpr int BoxesPerTab = 10;
    static constexpr int FirstParam = 60;

    explicit SprmEdit(ParamTables& tables) : tables_(tables) {}

    [[nodiscard]] static int parameterOf(int k) { return FirstParam + k; }
    // The text box k shows for its table value.
    [[nodiscard]] QString boxText(int k) const;
    // A key pressed in box k: only the focus moves.
    [[nodiscard]] static KeyOutcome keyDown(int k, FieldKey key);
    // Box k lost the focus with `text`: a numeric text within the range is stored (and
    // marked when it differs); anything else gives the stored value back.
    [[nodiscard]] EditOutcome leave(int k, const QString& text);

private:
    static void checkBox(int k);
    [[nodiscard]] static std::size_t index(int k);

    ParamTables& tables_;
};

}  // namespace velora
