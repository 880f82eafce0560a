#pragma once

#include <QDialog>

#include "core/shared/Language.h"

class QLabel;

namespace velora {

struct LinkState;

// The program's software version and that of the connected drive.
class VersionDialog : public QDialog {
    Q_OBJECT
public:
    // This program's software version x 100.
    static constexpr int SoftwareVersion = 106;

    explicit VersionDialog(const LinkState& state, QWidget* parent = nullptr);

    void LanguageSelect(Language languageId);

    // A version x 100 as "0.00": 110 gives "1.10", 5 gives "0.05".
    [[nodiscard]] static QString formatVersion(int versionTimes100);

protected:
    void showEvent(QShowEvent* event) override;

private:
    const LinkState& state_;
    QLabel* Label2 = nullptr;
    QLabel* Label3 = nullptr;
    QLabel* Label5 = nullptr;
    QLabel* LblOrvixK7Ver = nullptr;
};

}  // namespace velora
