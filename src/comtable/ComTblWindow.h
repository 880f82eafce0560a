#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The velocity/ATC/torque command table window. Its editor arrives with the command table
// subsystem.
class ComTblWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit ComTblWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;
};

}  // namespace velora
