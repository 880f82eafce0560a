#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The parameter window (servo parameters 00-59). Its editor arrives with the parameter subsystem.
class PrmTblWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit PrmTblWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;
};

}  // namespace velora
