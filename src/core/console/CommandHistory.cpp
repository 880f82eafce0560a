#include "core/console/CommandHistory.h"

namespace velora {

void CommandHistory::add(const QString& text) {
    if (!text.isEmpty() && (texts_.isEmpty() || texts_.constLast() != text)) {
        texts_.append(text);
        if (texts_.size() > Capacity)
            texts_.removeFirst();
    }
    cursor_ = static_cast<int>(texts_.size());
}

QString CommandHistory::older() {
    if (texts_.isEmpty())
        return {};
    if (cursor_ > 0)
        --cursor_;
    return texts_.at(cursor_);
}

QString CommandHistory::newer() {
    if (cursor_ < texts_.size())
        ++cursor_;
    return cursor_ < texts_.size() ? texts_.at(cursor_) : QString();
}

}  // namespace velora
