#pragma once

#include "app/ChildWindow.h"

namespace velora {

// The numerical monitor window. Its values, status captions and the real-time monitor switch
// arrive with the real-time monitor.
class NumMonitorWindow : public ChildWindow {
    Q_OBJECT
public:
    explicit NumMonitorWindow(QWidget* parent = nullptr);

    void LanguageSelect(int languageId) override;

    // The real-time monitor switch shown as off (its "off" button chosen).
    void showRealTimeMonitorOff() {}
};

}  // namespace velora
