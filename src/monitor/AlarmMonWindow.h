#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The alarm monitor window. Its present alarm and history arrive with the alarm monitor.
class AlarmMonWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit AlarmMonWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;
};

}  // namespace velora
