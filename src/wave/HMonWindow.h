#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The wave monitor window. Its trigger settings and traces arrive with the wave subsystem; for
// now it keeps what the link tells it about a capture in progress.
class HMonWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit HMonWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;

    // The "reading" picture (PictYomitorichu) that covers the panel while a capture runs.
    void setWaveReadingShown(bool shown) { readingShown_ = shown; }
    [[nodiscard]] bool waveReadingShown() const { return readingShown_; }
    // The panel of the trigger settings usable again.
    void enableWavePanel() {}
    // The progress line of a long record: the status text and its marks.
    void showWaveProgress(const QString& /*label*/, const QString& /*marks*/) {}
    void setWaveCancelEnabled(bool /*enable*/) {}

private:
    bool readingShown_ = false;
};

}  // namespace velora
