#pragma once

#include <QLabel>

namespace velora {

class LinkEngine;
struct DriveId;

// The line under a table window that names the drive its table came from ("Drive: axis 0
// (/dev/ttyS0)"). It stands out while the link addresses another drive, so that nobody takes
// one drive's values for another's.
class DriveLine : public QLabel {
    Q_OBJECT
public:
    DriveLine(const DriveId& origin, const LinkEngine& engine, QWidget* parent = nullptr);

    // Shows the origin as it is now, in the link's language.
    void refresh();

private:
    const DriveId& origin_;
    const LinkEngine& engine_;
};

}  // namespace velora
