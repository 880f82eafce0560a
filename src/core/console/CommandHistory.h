#pragma once

#include <QString>
#include <QStringList>

namespace velora {

// The texts typed into the console during this run, newest last, for recall with Up and Down
// as in a shell. Recalling walks from the newest back; walking past the newest gives an empty
// line again.
class CommandHistory {
public:
    static constexpr int Capacity = 50;

    // Remembers text (not a repeat of the newest) and ends any walk through the history.
    void add(const QString& text);
    // One step older (stays at the oldest) / newer (empty past the newest) than the last
    // recalled text.
    [[nodiscard]] QString older();
    [[nodiscard]] QString newer();
    [[nodiscard]] int size() const { return static_cast<int>(texts_.size()); }

private:
    QStringList texts_;
    int cursor_ = 0;  // texts_.size() when not walking
};

}  // namespace velora
