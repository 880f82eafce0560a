#pragma once

#include <QList>
#include <QString>
#include <QtGlobal>

#include "core/shared/Language.h"

namespace velora {

class LinkEngine;

// The values of a file that lay outside their range and were loaded as the nearest limit. A
// load collects them and ends with one message, so that nothing is changed silently.
class ClampReport {
public:
    // How many changed values the message lists one by one.
    static constexpr int Listed = 5;

    // `what` names the value as the window shows it ("Parameter No. 10", "Point5 Vel. Select").
    void add(const QString& what, qint64 inFile, qint64 taken);
    [[nodiscard]] int count() const { return count_; }
    [[nodiscard]] QString text(Language languageId) const;
    // The one message, through the link's modal messages; nothing when no value was changed.
    void show(LinkEngine& engine) const;

private:
    struct Entry {
        QString what;
        qint64 inFile = 0;
        qint64 taken = 0;
    };
    QList<Entry> listed_;
    int count_ = 0;
};

}  // namespace velora
