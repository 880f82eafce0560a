#include "gui/shared/SpokenValue.h"

#include <QLabel>
#include <QVariant>

namespace velora::spoken {

namespace {

constexpr char kNameProperty[] = "veloraSpokenName";

void speak(QLabel* label) {
    const QString name = label->property(kNameProperty).toString();
    const QString value = label->text();
    // States are shown as ": ON", ": CLOSE"; other values get the colon here.
    const QString separator =
        value.startsWith(QLatin1Char(':')) ? QStringLiteral(" ") : QStringLiteral(": ");
    label->setAccessibleName(value.isEmpty() ? name : name + separator + value);
}

}  // namespace

void setName(QLabel* label, const QString& name) {
    label->setProperty(kNameProperty, name);
    speak(label);
}

void setValue(QLabel* label, const QString& value) {
    if (label->text() == value)
        return;
    label->setText(value);
    speak(label);
}

}  // namespace velora::spoken
