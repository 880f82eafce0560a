#pragma once

#include <QString>

class QLabel;

namespace velora::spoken {

// A label that shows a value (a monitor reading, a contact state, an alarm entry) is read out by
// assistive technology under its accessible name. Named after its meaning alone, the value a
// person reads would be hidden; these keep both in the name, "Now Position 1234".

// What the value label stands for, in the present language.
void setName(QLabel* label, const QString& name);
// Shows a value and keeps the accessible name in step; an unchanged value costs nothing.
void setValue(QLabel* label, const QString& value);

}  // namespace velora::spoken
