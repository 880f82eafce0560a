#include "gui/app/PortListView.h"

#include "core/shared/TextCatalogue.h"

#include <QHeaderView>

namespace velora {

PortListView::PortListView(QWidget* parent) : QTreeWidget(parent) {
    setObjectName(QStringLiteral("PortList"));
    setColumnCount(5);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setSelectionMode(QAbstractItemView::SingleSelection);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // A few rows are enough; a long list scrolls rather than pushing the dialog off a small
    // screen.
    setMaximumHeight(fontMetrics().height() * 8);
    // Wide enough for the device, its description and its USB ID side by side.
    setMinimumWidth(fontMetrics().averageCharWidth() * 72);
    connect(this, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* item) {
        const int row = indexOfTopLevelItem(item);
        if (row >= 0 && row < ports_.size())
            emit portChosen(ports_.at(row));
    });
}

void PortListView::LanguageSelect(Language languageId) {
    setHeaderLabels({TextCatalogue::text(languageId, Text::CheckDevice),
                     TextCatalogue::text(languageId, Text::CheckDescription),
                     TextCatalogue::text(languageId, Text::CheckMaker),
                     TextCatalogue::text(languageId, Text::CheckUSBID),
                     TextCatalogue::text(languageId, Text::CheckSerialNumber)});
    setAccessibleName(TextCatalogue::text(languageId, Text::CheckSerialPortsSystem));
}

void PortListView::refresh(const QString& device) {
    clear();
    ports_ = lister_();
    for (const PortHint& port : ports_) {
        QString name = port.systemLocation.isEmpty() ? port.portName : port.systemLocation;
        if (const std::optional<int> number = port.portNumber())
            name += QStringLiteral(" (%1)").arg(*number);
        auto* item = new QTreeWidgetItem(
            this, {name, port.description, port.manufacturer, port.usbId(), port.serialNumber});
        // Which port number and back-end open it, in the words the comm settings use.
        item->setToolTip(0, port.line());
        if (port.systemLocation == device)
            setCurrentItem(item);
    }
}

}  // namespace velora
