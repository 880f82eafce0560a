#pragma once

#include <Qt>

namespace velora {

// Key codes of the table editors' focus movement, as the keyboard reports them on the
// platform the editors were first written for.
enum class FieldKey : int { Other = 0, Enter = 13, Up = 38, Down = 40 };

// The focus movement key of a Qt key; every other key is FieldKey::Other.
[[nodiscard]] constexpr FieldKey fieldKeyOf(int qtKey) {
    switch (qtKey) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return FieldKey::Enter;
        case Qt::Key_Up:
            return FieldKey::Up;
        case Qt::Key_Down:
            return FieldKey::Down;
        default:
            return FieldKey::Other;
    }
}

// The box that takes the focus after `key` in box `index` of `count` boxes: Enter and Down go
// to the next one, Up to the previous one, wrapping at both ends; any other key stays.
[[nodiscard]] constexpr int NextFieldIndex(int index, FieldKey key, int count) {
    if (count <= 0)
        return index;
    switch (key) {
        case FieldKey::Enter:
        case FieldKey::Down:
            return index + 1 >= count ? 0 : index + 1;
        case FieldKey::Up:
            return index <= 0 ? count - 1 : index - 1;
        case FieldKey::Other:
            break;
    }
    return index;
}

}  // namespace velora
