#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The point table window. Its editor arrives with the point table subsystem.
class PointTblWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit PointTblWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;
};

}  // namespace velora
