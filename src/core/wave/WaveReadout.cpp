#include "core/wave/WaveReadout.h"

#include "core/shared/TextCatalogue.h"
#include "core/wave/WaveScale.h"

namespace velora::wave {

namespace {

QString row(const QString& title, const QString& colour, const Reading& r, bool difference) {
    const auto cell = [](const QString& text) {
        return QStringLiteral("<td align=right>&nbsp;%1&nbsp;</td>").arg(text);
    };
    // A difference shows its sign even when it is positive.
    const auto number = [difference](const QString& text) {
        return difference && !text.startsWith(QLatin1Char('-')) ? QLatin1Char('+') + text : text;
    };
    const QString logic = number(QString::number(r.logic));
    return QStringLiteral("<tr><td><font color=%1>%2</font></td>").arg(colour, title) +
           cell(number(QString::number(r.timeMs, 'f', 2)) + QStringLiteral(" ms")) +
           cell(number(QString::number(r.velocity)) + QStringLiteral(" rpm")) +
           cell(number(QString::number(r.torquePercent, 'f', 1)) + QStringLiteral(" %")) +
           cell(QStringLiteral("L ") + logic) + QStringLiteral("</tr>");
}

}  // namespace

Reading readingAt(const WaveStore& store, int sample, int timeScaleIndex) {
    Reading r;
    r.timeMs = sample * sampleMs(timeScaleIndex);
    r.velocity = store.sample(1, sample, 0);
    r.torquePercent = store.sample(1, sample, 1) / 10.0;
    r.logic = store.logic(1, sample) & 1;
    return r;
}

QString formatReading(const Reading& r) {
    return QStringLiteral("%1 ms   %2 rpm   %3 %   L %4")
        .arg(QString::number(r.timeMs, 'f', 2))
        .arg(r.velocity)
        .arg(QString::number(r.torquePercent, 'f', 1))
        .arg(r.logic);
}

QString cursorTable(const WaveStore& store, const std::array<int, 2>& cursors, int timeScaleIndex,
                    Language languageId) {
    QString table = QStringLiteral("<table cellspacing=0>");
    const std::array<QString, 2> colours{QStringLiteral("#00a8c8"), QStringLiteral("#c040c0")};
    std::array<Reading, 2> at{};
    for (std::size_t c = 0; c < 2; ++c) {
        if (cursors[c] < 0)
            continue;
        at[c] = readingAt(store, cursors[c], timeScaleIndex);
        table += row(TextCatalogue::text(languageId, Text::ScopeCursor1, static_cast<int>(c)),
                     colours[c], at[c], false);
    }
    if (cursors[0] >= 0 && cursors[1] >= 0) {
        Reading d;
        d.timeMs = at[1].timeMs - at[0].timeMs;
        d.velocity = at[1].velocity - at[0].velocity;
        d.torquePercent = at[1].torquePercent - at[0].torquePercent;
        d.logic = at[1].logic - at[0].logic;
        table += row(TextCatalogue::text(languageId, Text::ScopeDifference),
                     QStringLiteral("#808080"), d, true);
    }
    if (cursors[0] < 0 && cursors[1] < 0)
        return TextCatalogue::text(languageId, Text::ScopeLeftClickPlacesCursor);
    return table + QStringLiteral("</table>");
}

}  // namespace velora::wave
