#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The I/O status window. Its input and output lamps arrive with the alarm and I/O monitor.
class IOStatusWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit IOStatusWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;
};

}  // namespace velora
