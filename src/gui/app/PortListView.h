#pragma once

#include "core/connect/PortHint.h"
#include "core/shared/Language.h"

#include <QTreeWidget>

#include <functional>

namespace velora {

// The serial ports of the system as a table (device, description, maker, USB ID, serial
// number), filled when asked. Choosing a row reports its port.
class PortListView : public QTreeWidget {
    Q_OBJECT
public:
    using PortLister = std::function<QList<PortHint>()>;

    explicit PortListView(QWidget* parent = nullptr);

    void LanguageSelect(Language languageId);
    // Reads the system's ports again; the row of device stays chosen if it is still there.
    void refresh(const QString& device);
    // Tests hand in their own table of ports.
    void setPortLister(PortLister lister) { lister_ = std::move(lister); }

signals:
    void portChosen(const velora::PortHint& port);

private:
    PortLister lister_ = &PortHint::systemPorts;
    QList<PortHint> ports_;
};

}  // namespace velora
